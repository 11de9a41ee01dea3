// The binding toolkit shared by all script-facing modules.
#include "BindingSupport.h"

#include <climits>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <deque>

#include "CV_ScriptTable.h"
#include "LogFiles.h"
#include "PythonErrors.h"

PyObject* CV_CreateModule(const char* name, PyMethodDef* methods, const CV_IntConstant* constants,
                          size_t constantCount) {
    // A module keeps its definition for as long as it lives, so the definitions stay for the whole
    // load of the plugin, one per module, reused by every start of the interpreter.
    static std::deque<PyModuleDef> definitions;
    PyModuleDef* definition = nullptr;
    for (PyModuleDef& d : definitions)
        if (std::strcmp(d.m_name, name) == 0) definition = &d;
    if (definition == nullptr)
        definition = &definitions.emplace_back(PyModuleDef{PyModuleDef_HEAD_INIT, name, nullptr, -1, methods});
    PyObject* module = PyModule_Create(definition);
    if (module == nullptr) {
        CV_PrintPythonError();
        return nullptr;
    }
    PyObject* dict = PyModule_GetDict(module);
    for (size_t i = 0; i < constantCount; ++i) {
        CV_PyRef value(PyLong_FromLong(constants[i].value));
        if (!value || PyDict_SetItemString(dict, constants[i].name, value.get()) != 0) CV_PrintPythonError();
    }
    PyObject* modules = PyImport_GetModuleDict();
    if (PyDict_SetItemString(modules, definition->m_name, module) != 0) CV_PrintPythonError();
    Py_DECREF(module);  // sys.modules holds it
    return module;
}

// ---------------------------------------------------------------- reports

void PrintExceptionf(const char* module, const char* function, const char* format, ...) {
    char message[4096];
    va_list ap;
    va_start(ap, format);
    vsnprintf(message, sizeof message, format, ap);
    va_end(ap);
    PrintException(module, function, message);
}

void CV_GetScriptNameForMessages(PyObject* scriptId, char* outName) {
    char signature[256] = {0}, description[256] = {0};
    outName[0] = '\0';
    if (CVTestTable) CVTestTable->GetScriptDescriptions(scriptId, outName, signature, description);
}

void CV_ReportUnknownCallback(const char* module, const char* function, const char* scriptName, CV_MatchedBy by) {
    if (by == CV_MatchedBy::Refcon)
        PrintExceptionf(module, function,
                        "Script '%s.py' was unregistering a callback and refcon that does not exist, check refcon "
                        "matches the one that was used in registering.",
                        scriptName);
    else
        PrintExceptionf(module, function, "Script '%s.py' was unregistering a callback that does not exist.",
                        scriptName);
}

void CV_ReportChangedCall(const char* module, const char* function, const char* const* usageLines, size_t lineCount) {
    // The separator line around the usage help: 115 dashes.
    static const std::string separator = std::string(115, '-') + "\n";
    CV_WriteToLog(separator.c_str());
    PrintException(module, function, "Wrong number of parameters Error");
    CV_WriteToLog(separator.c_str());
    for (size_t i = 0; i < lineCount; ++i) CV_WriteToLog(usageLines[i]);
    CV_WriteToLog(separator.c_str());
}

void CV_ReportNotSupported(const char* module, const char* function, CV_SdkLevel level) {
    PrintException(
        module, function,
        level == CV_SdkLevel::Sdk200 ? "Not supported in SDK 1.02" : "Not supported in SDK 1.02 or SDK 2.00");
}

// ---------------------------------------------------------------- arguments

bool CV_PointerWord(PyObject* object, void** word) {
#if PY_VERSION_HEX < 0x030C0000
    // An exact int of up to two digits (60 bits: every address and refcon scripts hold) is read from
    // the object itself, as PyLong_AsVoidPtr reads it: negative values as a long.
    if (PyLong_CheckExact(object)) {
        const Py_ssize_t size = Py_SIZE(object);
        const digit* digits = reinterpret_cast<PyLongObject*>(object)->ob_digit;
        if (size >= -2 && size <= 2) {
            uint64_t magnitude = size == 0 ? 0 : digits[0];
            if (size == 2 || size == -2) magnitude |= static_cast<uint64_t>(digits[1]) << PyLong_SHIFT;
            const int64_t value = size < 0 ? -static_cast<int64_t>(magnitude) : static_cast<int64_t>(magnitude);
            *word = reinterpret_cast<void*>(static_cast<intptr_t>(value));
            return true;
        }
    }
#endif
    *word = PyLong_AsVoidPtr(object);
    return !(*word == nullptr && PyErr_Occurred());
}

int CV_PointerArg(PyObject* object, void* address) { return CV_PointerWord(object, static_cast<void**>(address)); }

PyObject* CV_SequenceItems(PyObject* sequence, const char* message) {
    CV_PyRef items(PySequence_Fast(sequence, message));
    if (!items || PyTuple_Check(items.get())) return items.release();
    return PyList_AsTuple(items.get());
}

bool CV_ArgCount(Py_ssize_t given, Py_ssize_t wanted) {
    if (given == wanted) return true;
    PyErr_Format(PyExc_TypeError, "function takes exactly %zd argument%s (%zd given)", wanted, wanted == 1 ? "" : "s",
                 given);
    return false;
}

bool CV_ConvertIntArg(PyObject* object, int* value) {
    const long number = PyLong_AsLong(object);
    if (number == -1 && PyErr_Occurred()) return false;
    if (number > INT_MAX || number < INT_MIN) {
        PyErr_SetString(PyExc_OverflowError, number > INT_MAX ? "signed integer is greater than maximum"
                                                              : "signed integer is less than minimum");
        return false;
    }
    *value = static_cast<int>(number);
    return true;
}

bool CV_ConvertLongArg(PyObject* object, long* value) {
    const long number = PyLong_AsLong(object);
    if (number == -1 && PyErr_Occurred()) return false;
    *value = number;
    return true;
}

bool CV_ConvertDoubleArg(PyObject* object, double* value) {
    const double number = PyFloat_AsDouble(object);
    if (number == -1.0 && PyErr_Occurred()) return false;
    *value = number;
    return true;
}

namespace {
// The parser's name of an argument's type: "None" for None, else the type's name.
const char* TypeName(PyObject* object) { return object == Py_None ? "None" : Py_TYPE(object)->tp_name; }
}  // namespace

bool CV_TextArg(PyObject* object, Py_ssize_t position, const char** text, size_t* length) {
    if (!PyUnicode_Check(object)) {
        PyErr_Format(PyExc_TypeError, "argument %zd must be str, not %.50s", position, TypeName(object));
        return false;
    }
    Py_ssize_t size = 0;
    const char* utf8 = PyUnicode_AsUTF8AndSize(object, &size);
    if (utf8 == nullptr) return false;
    if (std::memchr(utf8, '\0', static_cast<size_t>(size)) != nullptr) {
        PyErr_SetString(PyExc_ValueError, "embedded null character");
        return false;
    }
    *text = utf8;
    if (length != nullptr) *length = static_cast<size_t>(size);
    return true;
}

bool CV_FloatsArg(PyObject* object, Py_ssize_t position, float* values, Py_ssize_t count) {
    const bool direct = PyList_CheckExact(object) || PyTuple_CheckExact(object);
    if (!direct && (!PySequence_Check(object) || PyBytes_Check(object))) {
        PyErr_Format(PyExc_TypeError, "argument %zd must be %zd-item sequence, not %.50s", position, count,
                     TypeName(object));
        return false;
    }
    const Py_ssize_t length = direct ? PySequence_Fast_GET_SIZE(object) : PySequence_Size(object);
    if (length != count) {
        // A sequence that cannot tell its length keeps its own error.
        if (!PyErr_Occurred())
            PyErr_Format(PyExc_TypeError, "argument %zd must be sequence of length %zd, not %zd", position, count,
                         length);
        return false;
    }
    for (Py_ssize_t i = 0; i < count; ++i) {
        // A list's or tuple's item as PySequence_GetItem gives it, without the call: a conversion
        // may run script code that shortens the list.
        PyObject* listed = direct && i < PySequence_Fast_GET_SIZE(object) ? PySequence_Fast_ITEMS(object)[i] : nullptr;
        Py_XINCREF(listed);
        CV_PyRef item(direct ? listed : PySequence_GetItem(object, i));
        if (!item) {
            PyErr_Clear();
            PyErr_Format(PyExc_TypeError, "argument %zd, item %zd is not retrievable", position, i);
            return false;
        }
        if (!CV_FloatArg(item.get(), &values[i])) return false;
    }
    return true;
}

// ---------------------------------------------------------------- results

PyObject* CV_TextResult(const char* text, size_t length) {
    if (text == nullptr) return PyUnicode_FromStringAndSize("", 0);
    return PyUnicode_DecodeUTF8(text, static_cast<Py_ssize_t>(length), "replace");
}

PyObject* CV_TextResult(const char* text) { return CV_TextResult(text, text ? strlen(text) : 0); }

PyObject* CV_BufferText(const char* buffer, size_t size) { return CV_TextResult(buffer, strnlen(buffer, size)); }

// ---------------------------------------------------------------- output arguments

bool CV_CheckOutputList(PyObject* object) {
    if (object == Py_None || PyList_Check(object)) return true;
    PyErr_SetString(PyExc_TypeError, "expected sequence");
    return false;
}

bool CV_StoreOutput(PyObject* list, PyObject* value) {
    CV_PyRef owned(value);
    if (!owned) return false;
    if (list == Py_None) return true;
    if (PyList_GET_SIZE(list) == 0) return PyList_Append(list, owned.get()) == 0;
    return PyList_SetItem(list, 0, owned.release()) == 0;  // steals the reference
}

bool CV_AppendOutput(PyObject* list, PyObject* value) {
    CV_PyRef owned(value);
    return owned && PyList_Append(list, owned.get()) == 0;
}

void CV_RemoveOnce(const char* module, const char* function, CV_CallbackVector* list, PyObject* scriptId,
                   PyObject* callable, void* refcon, const char* scriptName) {
    if (!Py_IS_TYPE(callable, &PyMethod_Type)) return;
    int index = 0;
    _CallbackList* entry = CVTestTable->FindCallback(*list, scriptId, callable, refcon, nullptr, &index);
    CV_Unregister(module, function, list, entry, index, scriptName, CV_MatchedBy::Refcon, [] {});
}
