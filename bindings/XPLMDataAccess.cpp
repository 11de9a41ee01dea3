// The script module XPLMDataAccess: finding data references and reading and writing them,
// publishing a script's own data references (data accessors) and subscribing to shared data.
//
// Counts, offsets and maximums come from scripts. None of them ever makes the plugin read or write
// outside one of its own buffers, and a negative offset, count or maximum is never handed to the
// simulator: a read or write with one is reported as "Parameter Error" and returns 0.
#include <Python.h>

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <memory>
#include <string>

#include "BindingModules.h"
#include "BindingSupport.h"
#include "CV_ScriptTable.h"
#include "CallbackDispatch.h"
#include "CallbackRegistry.h"
#include "Paths.h"
#include "XPLMDataAccess.h"

namespace {

const char* const kModule = "XPLMDataAccess";

// XPLMSetDatab assembles its bytes here; longer counts and sequences are cut to this size.
constexpr int kByteStagingSize = 4096;

// A negative offset or count is the script's mistake: the simulator never sees it.
bool CheckRange(const char* function, int offset, int count) {
    if (offset >= 0 && count >= 0) return true;
    PrintException(kModule, function, CV_PARAMETER_ERROR);
    return false;
}

// Floats outside the float range become infinities instead of an undefined conversion.
float ToFloat(double value) {
    if (value > FLT_MAX) return HUGE_VALF;
    if (value < -FLT_MAX) return -HUGE_VALF;
    return static_cast<float>(value);
}

// ---------------------------------------------------------------- look-up and scalar access

PyObject* PY_XPLMFindDataRef(PyObject*, PyObject* const* args, Py_ssize_t count) {
    const char* name = nullptr;
    if (!CV_ParseArgs(args, count, &name)) return nullptr;
    XPLMDataRef dataRef = nullptr;
    CV_SDK_GUARD(kModule, "XPLMFindDataRef", CV_IntResult(0), dataRef = XPLMFindDataRef(name));
    if (dataRef == nullptr) {
        PrintExceptionf(kModule, "XPLMFindDataRef", "DataRef [%s] not found, check that DataRef string is correct",
                        name);
        Py_RETURN_NONE;
    }
    return CV_HandleResult(dataRef);
}

// How each scalar type is passed in and given back.
template <typename T>
struct Scalar;
template <>
struct Scalar<int> {
    static bool Arg(PyObject* object, int* value) { return CV_IntArg(object, value); }
    static PyObject* Result(int value) { return PyLong_FromLong(value); }
};
template <>
struct Scalar<float> {
    static bool Arg(PyObject* object, float* value) { return CV_FloatArg(object, value); }
    static PyObject* Result(float value) { return PyFloat_FromDouble(value); }
};
template <>
struct Scalar<double> {
    static bool Arg(PyObject* object, double* value) { return CV_DoubleArg(object, value); }
    static PyObject* Result(double value) { return PyFloat_FromDouble(value); }
};

// The functions of one data reference that answer one value: the typed getters,
// XPLMCanWriteDataRef and XPLMGetDataRefTypes. Scripts call the getters and setters every frame, so
// they convert their arguments directly.
template <typename T, T (*Get)(XPLMDataRef)>
PyObject* GetScalar(PyObject* const* args, Py_ssize_t count, const char* function) {
    XPLMDataRef dataRef = nullptr;
    if (!CV_ArgCount(count, 1) || !CV_PointerArg(args[0], &dataRef)) return nullptr;
    T value{};
    CV_SDK_GUARD(kModule, function, CV_IntResult(0), value = Get(dataRef));
    return Scalar<T>::Result(value);
}

template <typename T, void (*Set)(XPLMDataRef, T)>
PyObject* SetScalar(PyObject* const* args, Py_ssize_t count, const char* function) {
    XPLMDataRef dataRef = nullptr;
    T value{};
    if (!CV_ArgCount(count, 2) || !CV_PointerArg(args[0], &dataRef) || !Scalar<T>::Arg(args[1], &value))
        return nullptr;
    CV_SDK_GUARD(kModule, function, CV_IntResult(0), Set(dataRef, value));
    return CV_IntResult(1);
}

#define CV_SCALAR_BINDING(Kind, T, Function)                                           \
    PyObject* PY_##Function(PyObject*, PyObject* const* args, Py_ssize_t count) {      \
        return Kind##Scalar<T, Function>(args, count, #Function);                      \
    }
CV_SCALAR_BINDING(Get, int, XPLMCanWriteDataRef)
CV_SCALAR_BINDING(Get, XPLMDataTypeID, XPLMGetDataRefTypes)
CV_SCALAR_BINDING(Get, int, XPLMGetDatai)
CV_SCALAR_BINDING(Set, int, XPLMSetDatai)
CV_SCALAR_BINDING(Get, float, XPLMGetDataf)
CV_SCALAR_BINDING(Set, float, XPLMSetDataf)
CV_SCALAR_BINDING(Get, double, XPLMGetDatad)
CV_SCALAR_BINDING(Set, double, XPLMSetDatad)
#undef CV_SCALAR_BINDING

// ---------------------------------------------------------------- arrays

// The array getters (XPLMGetDatavi, XPLMGetDatavf, XPLMGetDatab): a size query with None, otherwise
// up to maximum elements from offset are read into a zeroed buffer one element longer than the
// simulator may fill, and `append` hands the `copied` elements to the script's list. Returns the
// size or the number copied.
template <typename T, typename Getter, typename Append>
PyObject* GetArray(PyObject* const* args, Py_ssize_t count, const char* function, Getter getter, Append append) {
    XPLMDataRef dataRef = nullptr;
    PyObject* list = nullptr;
    int offset = 0, maximum = 0;
    if (!CV_ParseArgs(args, count, CV_Handle(&dataRef), &list, &offset, &maximum)) return nullptr;

    // With no buffer the simulator reports the full element count and ignores offset and maximum.
    int size = 0;
    CV_SDK_GUARD(kModule, function, CV_IntResult(0),
                 size = getter(dataRef, nullptr, std::max(offset, 0), std::max(maximum, 0)));
    if (list == Py_None) return CV_IntResult(size);
    if (!CV_CheckOutputList(list)) return nullptr;
    if (!CheckRange(function, offset, maximum)) return CV_IntResult(0);

    maximum = std::max(0, std::min(size, maximum));
    CV_Buffer<T> buffer(static_cast<size_t>(maximum) + 1);
    if (!buffer) return PyErr_NoMemory();
    int copied = 0;
    CV_SDK_GUARD(kModule, function, CV_IntResult(0), copied = getter(dataRef, buffer.get(), offset, maximum));
    copied = std::max(0, std::min(copied, maximum));
    if (!append(list, buffer.get(), copied, maximum)) return nullptr;
    return CV_IntResult(copied);
}

// Appends each copied element, in buffer order, to the end of the script's list.
template <typename T>
bool AppendItems(PyObject* list, const T* values, int copied, int) {
    for (int i = 0; i < copied; ++i)
        if (!CV_AppendOutput(list, Scalar<T>::Result(values[i]))) return false;
    return true;
}

// Appends one str: the bytes read, cut at the first zero byte, decoded as UTF-8 with invalid bytes
// replaced.
bool AppendText(PyObject* list, const char* bytes, int, int maximum) {
    return CV_AppendOutput(list, CV_BufferText(bytes, static_cast<size_t>(maximum)));
}

PyObject* PY_XPLMGetDatavi(PyObject*, PyObject* const* args, Py_ssize_t count) {
    return GetArray<int>(args, count, "XPLMGetDatavi", XPLMGetDatavi, AppendItems<int>);
}
PyObject* PY_XPLMGetDatavf(PyObject*, PyObject* const* args, Py_ssize_t count) {
    return GetArray<float>(args, count, "XPLMGetDatavf", XPLMGetDatavf, AppendItems<float>);
}
PyObject* PY_XPLMGetDatab(PyObject*, PyObject* const* args, Py_ssize_t count) {
    return GetArray<char>(args, count, "XPLMGetDatab", XPLMGetDatab, AppendText);
}

// One element of a script's sequence for an int array: ints only. A value beyond the C long range
// is refused like any other non-int; within it, the SDK's 32-bit int keeps its low 32 bits.
bool IntItem(PyObject* item, int* out) {
    int overflow = 0;
    const long value = PyLong_Check(item) ? PyLong_AsLongAndOverflow(item, &overflow) : 0;
    if (!PyLong_Check(item) || overflow != 0 || (value == -1 && PyErr_Occurred())) {
        PyErr_Clear();
        PyErr_SetString(PyExc_TypeError, "expected sequence of integers");
        return false;
    }
    *out = static_cast<int>(value);
    return true;
}

// One element for a float array: floats only, ints are refused.
bool FloatItem(PyObject* item, float* out) {
    if (!PyFloat_Check(item)) {
        PyErr_SetString(PyExc_TypeError, "expected sequence of floats");
        return false;
    }
    double value = PyFloat_AsDouble(item);
    if (value == -1.0 && PyErr_Occurred()) return false;
    *out = ToFloat(value);
    return true;
}

// The arguments of the array setters: a data reference, a sequence (TypeError "expected sequence"
// for anything else), an offset and a count.
bool ParseSetterArgs(PyObject* const* args, Py_ssize_t argCount, XPLMDataRef* dataRef, PyObject** sequence, int* offset,
                     int* count, Py_ssize_t* length) {
    if (!CV_ParseArgs(args, argCount, CV_Handle(dataRef), sequence, offset, count)) return false;
    if (!PySequence_Check(*sequence)) {
        PyErr_SetString(PyExc_TypeError, "expected sequence");
        return false;
    }
    *length = PySequence_Size(*sequence);
    return *length >= 0;
}

// Item i of a sequence, a new reference.
PyObject* SequenceItem(PyObject* sequence, Py_ssize_t i) {
    // A list's or tuple's item directly: converting items runs no script code, so they stay put.
    if (PyList_CheckExact(sequence) || PyTuple_CheckExact(sequence)) {
        PyObject* item = PySequence_Fast_ITEMS(sequence)[i];
        Py_INCREF(item);
        return item;
    }
    return PySequence_GetItem(sequence, i);
}

// XPLMSetDatavi and XPLMSetDatavf: every item is converted first; the simulator then reads count
// elements from offset on. The buffer holds exactly the sequence, so a count larger than the
// sequence is cut to its length.
template <typename T>
PyObject* SetArray(PyObject* const* args, Py_ssize_t argCount, const char* function,
                   void (*setter)(XPLMDataRef, T*, int, int), bool (*convertItem)(PyObject*, T*)) {
    XPLMDataRef dataRef = nullptr;
    PyObject* sequence = nullptr;
    int offset = 0, count = 0;
    Py_ssize_t length = 0;
    if (!ParseSetterArgs(args, argCount, &dataRef, &sequence, &offset, &count, &length)) return nullptr;
    CV_Buffer<T> buffer(static_cast<size_t>(length));
    if (!buffer) return PyErr_NoMemory();
    for (Py_ssize_t i = 0; i < length; ++i) {
        CV_PyRef item(SequenceItem(sequence, i));
        if (!item || !convertItem(item.get(), &buffer[i])) return nullptr;
    }
    if (!CheckRange(function, offset, count)) return CV_IntResult(0);
    int passed = count < length ? count : static_cast<int>(length);
    CV_SDK_GUARD(kModule, function, CV_IntResult(0), setter(dataRef, buffer.get(), offset, passed));
    return CV_IntResult(1);
}

PyObject* PY_XPLMSetDatavi(PyObject*, PyObject* const* args, Py_ssize_t count) {
    return SetArray<int>(args, count, "XPLMSetDatavi", XPLMSetDatavi, IntItem);
}

PyObject* PY_XPLMSetDatavf(PyObject*, PyObject* const* args, Py_ssize_t count) {
    return SetArray<float>(args, count, "XPLMSetDatavf", XPLMSetDatavf, FloatItem);
}

// The bytes of a str (UTF-8), bytes or bytearray; false for anything else.
bool StringBytes(PyObject* item, const char** bytes, Py_ssize_t* length, bool* failed) {
    *failed = false;
    if (PyUnicode_Check(item)) {
        *bytes = PyUnicode_AsUTF8AndSize(item, length);
        if (*bytes == nullptr) *failed = true;
        return !*failed;
    }
    if (PyBytes_Check(item)) {
        *bytes = PyBytes_AS_STRING(item);
        *length = PyBytes_GET_SIZE(item);
        return true;
    }
    if (PyByteArray_Check(item)) {
        *bytes = PyByteArray_AS_STRING(item);
        *length = PyByteArray_GET_SIZE(item);
        return true;
    }
    return false;
}

// Writes either a one-item sequence holding a string (its bytes, then zeros up to the count) or a
// sequence of two or more ints (one byte each; items that are not ints give zero bytes). A
// one-item sequence holding anything but a string writes zeros.
PyObject* PY_XPLMSetDatab(PyObject*, PyObject* const* args, Py_ssize_t argCount) {
    const char* const function = "XPLMSetDatab";
    XPLMDataRef dataRef = nullptr;
    PyObject* values = nullptr;
    int offset = 0, count = 0;
    Py_ssize_t length = 0;
    if (!ParseSetterArgs(args, argCount, &dataRef, &values, &offset, &count, &length)) return nullptr;
    if (length == 0) {
        PyErr_SetString(PyExc_TypeError, "expected sequence of bytes");
        return nullptr;
    }
    if (!CheckRange(function, offset, count)) return CV_IntResult(0);
    int passed = count < kByteStagingSize ? count : kByteStagingSize;

    // The simulator reads the first `passed` bytes, so only those are cleared.
    unsigned char staging[kByteStagingSize];
    std::memset(staging, 0, static_cast<size_t>(passed));
    if (length == 1) {
        CV_PyRef item(SequenceItem(values, 0));
        if (!item) return nullptr;
        const char* bytes = nullptr;
        Py_ssize_t byteCount = 0;
        bool failed = false;
        if (StringBytes(item.get(), &bytes, &byteCount, &failed)) {
            size_t copy = static_cast<size_t>(byteCount < passed ? byteCount : passed);
            std::memcpy(staging, bytes, copy);
        }
        if (failed) return nullptr;
    } else {
        Py_ssize_t used = length < kByteStagingSize ? length : kByteStagingSize;
        for (Py_ssize_t i = 0; i < used; ++i) {
            CV_PyRef item(SequenceItem(values, i));
            if (!item) return nullptr;
            // The low byte of the value, negative values in two's complement (-1 gives 0xff).
            if (PyLong_Check(item.get()))
                staging[i] = static_cast<unsigned char>(PyLong_AsUnsignedLongMask(item.get()) & 0xff);
            if (PyErr_Occurred()) return nullptr;
        }
    }
    CV_SDK_GUARD(kModule, function, CV_IntResult(0), XPLMSetDatab(dataRef, staging, offset, passed));
    return CV_IntResult(1);
}

// ---------------------------------------------------------------- data accessors and shared data

// The twelve accessor lists follow each other in the table in the order of
// XPLMRegisterDataAccessor's callables: get int, set int, get float, ..., get byte array, set byte
// array. Getters sit at even, setters at odd positions; position / 2 is the slot in the read or
// write block.
constexpr size_t kAccessorListCount = 12;
const CV_ListEntry* AccessorLists() { return CV_FindList(&GetDataiCallbackList); }

// The debug trace of the accessor functions: their detail lines and the sizes of the twelve lists.
void TraceAccessorLists(const char* function, const std::string& details) {
    CV_DebugCallbackTrace(function, details, CV_ListSizes(GetDataiCallbackList, kAccessorListCount));
}

// An accessor's registration is held under its data reference with its read and write blocks, so
// the records and blocks that unregistrations take out by the scripts' rules (records by script and
// data reference, which after two registrations of one method is the other accessor's record;
// blocks by the position of the last record found, which may be another accessor's block) are
// freed only once no registered accessor reaches them.
PyObject* PY_XPLMRegisterDataAccessor(PyObject* self, PyObject* args) {
    PyObject* scriptId = nullptr;
    const char* dataName = nullptr;
    int dataType = 0, isWritable = 0;
    PyObject* callables[kAccessorListCount] = {};
    void *readRefcon = nullptr, *writeRefcon = nullptr;
    if (!PyArg_ParseTuple(args, "OsiiOOOOOOOOOOOOO&O&", &scriptId, &dataName, &dataType, &isWritable, &callables[0],
                          &callables[1], &callables[2], &callables[3], &callables[4], &callables[5], &callables[6],
                          &callables[7], &callables[8], &callables[9], &callables[10], &callables[11], CV_PointerArg,
                          &readRefcon, CV_PointerArg, &writeRefcon))
        return nullptr;

    // Only bound methods are recorded; anything else (a plain function, None, 0) leaves the type
    // without an accessor, whose trampoline then answers 0.
    const CV_ListEntry* lists = AccessorLists();
    _CallbackList* entries[kAccessorListCount] = {};
    for (size_t i = 0; i < kAccessorListCount; ++i) {
        if (Py_IS_TYPE(callables[i], &PyMethod_Type))
            entries[i] = CVTestTable->AddCallback(lists[i].callbacks, scriptId, nullptr, callables[i],
                                                  i % 2 == 0 ? readRefcon : writeRefcon);
    }
    _CallbackList** readBlock = new _CallbackList*[CV_AccessorBlockSlots]();
    _CallbackList** writeBlock = new _CallbackList*[CV_AccessorBlockSlots]();
    GetDataMemoryPointerList.push_back(readBlock);
    SetDataMemoryPointerList.push_back(writeBlock);
    for (int slot = 0; slot < CV_AccessorBlockSlots; ++slot) {
        readBlock[slot] = entries[2 * slot];
        writeBlock[slot] = entries[2 * slot + 1];
    }

    XPLMDataRef dataRef = nullptr;
    CV_SDK_GUARD(kModule, "XPLMRegisterDataAccessor", CV_IntResult(0),
                 dataRef = XPLMRegisterDataAccessor(dataName, dataType, isWritable, CV_GetDatai_Callback,
                                                    CV_SetDatai_Callback, CV_GetDataf_Callback, CV_SetDataf_Callback,
                                                    CV_GetDatad_Callback, CV_SetDatad_Callback, CV_GetDatavi_Callback,
                                                    CV_SetDatavi_Callback, CV_GetDatavf_Callback, CV_SetDatavf_Callback,
                                                    CV_GetDatab_Callback, CV_SetDatab_Callback, readBlock, writeBlock));
    if (dataRef != nullptr)
        CV_Hold(&GetDataMemoryPointerList, dataRef, nullptr, {readBlock, writeBlock}, CV_AccessorBlockSlots);

    for (size_t i = 0; i < kAccessorListCount; ++i)
        if (entries[i] != nullptr) CVTestTable->UpdateCallback(lists[i].callbacks, scriptId, callables[i], dataRef);

    if (gCV_DebugCallbacks)
        TraceAccessorLists(
            "XPLMRegisterDataAccessor",
            CV_FormatText("pScriptId = %lx, inDataName = %s, inDataType = %d, inIsWritable = %d, inReadRefcon = %ld, "
                          "inWriteRefcon = %ld, DataRef = %lx\n",
                          CV_Hex(scriptId), dataName, dataType, isWritable, CV_Dec(readRefcon), CV_Dec(writeRefcon),
                          CV_Hex(dataRef)) +
                CV_FormatText("pDataAccessorGetCB = %lx\n", CV_Hex(readBlock)) +
                CV_FormatText("pDataAccessorSetCB = %lx\n", CV_Hex(writeBlock)));
    return CV_HandleResult(dataRef);
}

PyObject* PY_XPLMUnregisterDataAccessor(PyObject* self, PyObject* args) {
    const char* const function = "XPLMUnregisterDataAccessor";
    PyObject* scriptId = nullptr;
    XPLMDataRef dataRef = nullptr;
    if (!PyArg_ParseTuple(args, "OO&", &scriptId, CV_PointerArg, &dataRef)) return nullptr;

    // One index for all twelve searches: a search that finds nothing leaves it as it was, so it ends
    // as the position of the record found in the last list that held one.
    const CV_ListEntry* lists = AccessorLists();
    int index = 0;
    for (size_t i = 0; i < kAccessorListCount; ++i) {
        int found = 0;
        _CallbackList* entry = CVTestTable->FindCallback(*lists[i].callbacks, scriptId, dataRef, &found, &index);
        if (found) CV_RetireRecord(lists[i].callbacks, entry, index);
    }

    // The accessor's own blocks, for when the rule's position lies past the end of a block list.
    _CallbackList** ownRead = CV_HeldBlock(&GetDataMemoryPointerList, dataRef, 0);
    _CallbackList** ownWrite = CV_HeldBlock(&GetDataMemoryPointerList, dataRef, 1);
    CV_SDK_GUARD(kModule, function, CV_IntResult(0), XPLMUnregisterDataAccessor(dataRef));
    CV_Release(&GetDataMemoryPointerList, dataRef);

    _CallbackList **removedRead = nullptr, **removedWrite = nullptr;
    if (GetDataMemoryPointerList.empty())
        PrintException(kModule, function, "GetData List Empty Error");
    else
        removedRead = CV_RetireBlock(&GetDataMemoryPointerList, index, ownRead);
    if (SetDataMemoryPointerList.empty())
        PrintException(kModule, function, "GetData List Empty Error");
    else
        removedWrite = CV_RetireBlock(&SetDataMemoryPointerList, index, ownWrite);

    if (gCV_DebugCallbacks) {
        char scriptName[256];
        CV_GetScriptNameForMessages(scriptId, scriptName);
        TraceAccessorLists(function, CV_FormatText("pScriptId = %lx, Script Name = %s, inDataRef = %lx\n",
                                                   CV_Hex(scriptId), scriptName, CV_Hex(dataRef)) +
                                         CV_FormatText("pDataAccessorGetCB = %lx\n", CV_Hex(removedRead)) +
                                         CV_FormatText("pDataAccessorSetCB = %lx\n", CV_Hex(removedWrite)));
    }
    return CV_IntResult(1);
}

// A subscription the simulator accepted is held under its record: an unshare with another name or
// type than the share leaves the list as the script asked, but the simulator still notifies it.
PyObject* PY_XPLMShareData(PyObject* self, PyObject* args) {
    PyObject *scriptId = nullptr, *callable = nullptr;
    const char* dataName = nullptr;
    int dataType = 0;
    void* refcon = nullptr;
    if (!PyArg_ParseTuple(args, "OsiOO&", &scriptId, &dataName, &dataType, &callable, CV_PointerArg, &refcon))
        return nullptr;

    _CallbackList* entry = CVTestTable->AddCallback(&SharedDataCallbackList, scriptId, nullptr, callable, refcon);
    int result = 0;
    CV_SDK_GUARD(kModule, "XPLMShareData", CV_IntResult(0),
                 result = XPLMShareData(dataName, dataType, CV_SharedDataCallback, entry));
    if (result) CV_Hold(&SharedDataCallbackList, entry, entry);

    if (gCV_DebugCallbacks)
        CV_DebugCallbackTrace("XPLMShareData",
                              CV_FormatText("pScriptId = %lx, inDataName = %s, inDataType = %d, "
                                            "inNotificationRefcon = %ld\n",
                                            CV_Hex(scriptId), dataName, dataType, CV_Dec(refcon)),
                              {SharedDataCallbackList});
    return CV_IntResult(result);
}

PyObject* PY_XPLMUnshareData(PyObject* self, PyObject* args) {
    const char* const function = "XPLMUnshareData";
    PyObject *scriptId = nullptr, *callable = nullptr;
    const char* dataName = nullptr;
    int dataType = 0;
    void* refcon = nullptr;
    if (!PyArg_ParseTuple(args, "OsiOO&", &scriptId, &dataName, &dataType, &callable, CV_PointerArg, &refcon))
        return nullptr;

    char scriptName[256];
    CV_GetScriptNameForMessages(scriptId, scriptName);
    int index = 0, result = 0;
    _CallbackList* entry =
        CVTestTable->FindCallback(SharedDataCallbackList, scriptId, callable, refcon, nullptr, &index);
    if (!CV_Unregister(kModule, function, &SharedDataCallbackList, entry, index, scriptName, CV_MatchedBy::Refcon, [&] {
            result = XPLMUnshareData(dataName, dataType, CV_SharedDataCallback, entry);
            if (result) CV_Release(&SharedDataCallbackList, entry);
        }))
        return CV_IntResult(0);

    if (gCV_DebugCallbacks)
        CV_DebugCallbackTrace(function,
                              CV_FormatText("pScriptId = %lx, Script Name = %s, inDataName = %s, inDataType = %d, "
                                            "inNotificationRefcon = %ld\n",
                                            CV_Hex(scriptId), scriptName, dataName, dataType, CV_Dec(refcon)),
                              {SharedDataCallbackList});
    return CV_IntResult(result);
}

// ---------------------------------------------------------------- the module

const CV_IntConstant XPLMDataAccessConstants[] = {
    // The data type bits of a data reference.
    {"xplmType_Unknown", 0},
    {"xplmType_Int", 1},
    {"xplmType_Float", 2},
    {"xplmType_Double", 4},
    {"xplmType_FloatArray", 8},
    {"xplmType_IntArray", 16},
    {"xplmType_Data", 32},
};

PyMethodDef XPLMDataAccessMethods[] = {
    {"XPLMFindDataRef", CV_FASTCALL(PY_XPLMFindDataRef), METH_FASTCALL, "Find Dataref."},
    {"XPLMCanWriteDataRef", CV_FASTCALL(PY_XPLMCanWriteDataRef), METH_FASTCALL, "Test for writable Dataref."},
    {"XPLMGetDataRefTypes", CV_FASTCALL(PY_XPLMGetDataRefTypes), METH_FASTCALL, "Get the Dataref Type."},
    {"XPLMGetDatai", CV_FASTCALL(PY_XPLMGetDatai), METH_FASTCALL, "Get Integer Dataref."},
    {"XPLMSetDatai", CV_FASTCALL(PY_XPLMSetDatai), METH_FASTCALL, "Set Integer Dataref."},
    {"XPLMGetDataf", CV_FASTCALL(PY_XPLMGetDataf), METH_FASTCALL, "Get Float Dataref."},
    {"XPLMSetDataf", CV_FASTCALL(PY_XPLMSetDataf), METH_FASTCALL, "Set Float Dataref."},
    {"XPLMGetDatad", CV_FASTCALL(PY_XPLMGetDatad), METH_FASTCALL, "Get Double Dataref."},
    {"XPLMSetDatad", CV_FASTCALL(PY_XPLMSetDatad), METH_FASTCALL, "Set Double Dataref."},
    {"XPLMGetDatavi", CV_FASTCALL(PY_XPLMGetDatavi), METH_FASTCALL, "Get Integer Array Dataref."},
    {"XPLMSetDatavi", CV_FASTCALL(PY_XPLMSetDatavi), METH_FASTCALL, "Set Integer Array Dataref."},
    {"XPLMGetDatavf", CV_FASTCALL(PY_XPLMGetDatavf), METH_FASTCALL, "Get Float Array Dataref."},
    {"XPLMSetDatavf", CV_FASTCALL(PY_XPLMSetDatavf), METH_FASTCALL, "Set Float Array Dataref."},
    {"XPLMGetDatab", CV_FASTCALL(PY_XPLMGetDatab), METH_FASTCALL, "Get Byte Array Dataref."},
    {"XPLMSetDatab", CV_FASTCALL(PY_XPLMSetDatab), METH_FASTCALL, "Set Byte Array Dataref."},
    {"XPLMRegisterDataAccessor", PY_XPLMRegisterDataAccessor, METH_VARARGS, "Register data accessor."},
    {"XPLMUnregisterDataAccessor", PY_XPLMUnregisterDataAccessor, METH_VARARGS, "Unregister data accessor."},
    {"XPLMShareData", PY_XPLMShareData, METH_VARARGS, "Share Data."},
    {"XPLMUnshareData", PY_XPLMUnshareData, METH_VARARGS, "Unshare Data."},
    {nullptr, nullptr, 0, nullptr},
};

}  // namespace

PyObject* initXPLMDataAccess() {
    return CV_CreateModule("XPLMDataAccess", XPLMDataAccessMethods, XPLMDataAccessConstants);
}
