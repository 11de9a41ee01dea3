// Module creation and script-facing reporting shared by all binding modules.
#include "BindingSupport.h"

#include <cstdarg>
#include <cstdio>

#include "CV_ScriptTable.h"
#include "PythonErrors.h"

PyObject* CV_CreateModule(PyModuleDef* definition, const CV_IntConstant* constants, size_t constantCount) {
    PyObject* module = PyModule_Create(definition);
    if (module == nullptr) {
        CV_PrintPythonError();
        return nullptr;
    }
    PyObject* dict = PyModule_GetDict(module);
    for (size_t i = 0; i < constantCount; ++i) {
        PyObject* value = PyLong_FromLong(constants[i].value);
        if (value == nullptr || PyDict_SetItemString(dict, constants[i].name, value) != 0) CV_PrintPythonError();
        Py_XDECREF(value);
    }
    PyObject* modules = PyImport_GetModuleDict();
    if (PyDict_SetItemString(modules, definition->m_name, module) != 0) CV_PrintPythonError();
    Py_DECREF(module);  // sys.modules holds it
    return module;
}

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

bool CV_PointerWord(PyObject* object, void** word) {
    *word = PyLong_AsVoidPtr(object);
    return !(*word == nullptr && PyErr_Occurred());
}

bool CV_CheckOutputList(PyObject* object) {
    if (object == Py_None || PyList_Check(object)) return true;
    PyErr_SetString(PyExc_TypeError, "expected sequence");
    return false;
}

bool CV_StoreOutput(PyObject* list, PyObject* value) {
    if (value == nullptr) return false;
    if (list == Py_None) {
        Py_DECREF(value);
        return true;
    }
    if (PyList_GET_SIZE(list) == 0) {
        int rc = PyList_Append(list, value);
        Py_DECREF(value);
        return rc == 0;
    }
    return PyList_SetItem(list, 0, value) == 0;  // steals the reference
}

bool CV_AppendOutput(PyObject* list, PyObject* value) {
    if (value == nullptr) return false;
    int rc = PyList_Append(list, value);
    Py_DECREF(value);
    return rc == 0;
}
