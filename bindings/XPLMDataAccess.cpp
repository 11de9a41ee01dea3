// The script module XPLMDataAccess: finding data references and reading and writing them,
// publishing a script's own data references (data accessors) and subscribing to shared data.
//
// Counts, offsets and maximums come from scripts. None of them ever makes the plugin read or write
// outside one of its own buffers, and a negative offset, count or maximum is never handed to the
// simulator: a read or write with one is reported as "Parameter Error" and returns 0.
#include <Python.h>

#include <algorithm>
#include <cmath>
#include <cfloat>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

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

struct FreeDeleter {
    void operator()(void* p) const { std::free(p); }
};
template <typename T>
using CBuffer = std::unique_ptr<T[], FreeDeleter>;

// Zero-filled, at least one element. calloc leaves large blocks untouched until they are used.
template <typename T>
CBuffer<T> AllocateZeroed(size_t count) {
    return CBuffer<T>(static_cast<T*>(std::calloc(count > 0 ? count : 1, sizeof(T))));
}

PyObject* Failure() { return PyLong_FromLong(0); }

// A negative offset or count is the script's mistake: the simulator never sees it.
bool CheckRange(const char* function, int offset, int count) {
    if (offset >= 0 && count >= 0) return true;
    PrintException(kModule, function, "Parameter Error");
    return false;
}

// Floats outside the float range become infinities instead of an undefined conversion.
float ToFloat(double value) {
    if (value > FLT_MAX) return HUGE_VALF;
    if (value < -FLT_MAX) return -HUGE_VALF;
    return static_cast<float>(value);
}

PyObject* FromInt(int value) { return PyLong_FromLong(value); }
PyObject* FromFloat(float value) { return PyFloat_FromDouble(value); }

// Appends each of the n items, in buffer order, to the end of the script's list.
template <typename T>
bool AppendItems(PyObject* list, const T* values, int n, PyObject* (*convert)(T)) {
    for (int i = 0; i < n; ++i) {
        PyObject* item = convert(values[i]);
        if (item == nullptr) return false;
        int rc = PyList_Append(list, item);
        Py_DECREF(item);
        if (rc != 0) return false;
    }
    return true;
}

// The list argument of the array getters: None asks for the size, otherwise a list to append to.
bool CheckOutputList(PyObject* list) {
    if (PyList_Check(list)) return true;
    PyErr_SetString(PyExc_TypeError, "expected sequence");
    return false;
}

// ---------------------------------------------------------------- look-up and scalar access

PyObject* PY_XPLMFindDataRef(PyObject* self, PyObject* args) {
    const char* name = nullptr;
    if (!PyArg_ParseTuple(args, "s", &name)) return nullptr;
    XPLMDataRef dataRef = nullptr;
    CV_SDK_GUARD(kModule, "XPLMFindDataRef", Failure(), dataRef = XPLMFindDataRef(name));
    if (dataRef == nullptr) {
        PrintExceptionf(kModule, "XPLMFindDataRef", "DataRef [%s] not found, check that DataRef string is correct",
                        name);
        Py_RETURN_NONE;
    }
    return PyLong_FromVoidPtr(dataRef);
}

PyObject* PY_XPLMCanWriteDataRef(PyObject* self, PyObject* args) {
    PyObject* handle = nullptr;
    XPLMDataRef dataRef = nullptr;
    if (!PyArg_ParseTuple(args, "O", &handle) || !CV_PointerWord(handle, &dataRef)) return nullptr;
    int result = 0;
    CV_SDK_GUARD(kModule, "XPLMCanWriteDataRef", Failure(), result = XPLMCanWriteDataRef(dataRef));
    return PyLong_FromLong(result);
}

PyObject* PY_XPLMGetDataRefTypes(PyObject* self, PyObject* args) {
    PyObject* handle = nullptr;
    XPLMDataRef dataRef = nullptr;
    if (!PyArg_ParseTuple(args, "O", &handle) || !CV_PointerWord(handle, &dataRef)) return nullptr;
    XPLMDataTypeID result = xplmType_Unknown;
    CV_SDK_GUARD(kModule, "XPLMGetDataRefTypes", Failure(), result = XPLMGetDataRefTypes(dataRef));
    return PyLong_FromLong(result);
}

PyObject* PY_XPLMGetDatai(PyObject* self, PyObject* args) {
    PyObject* handle = nullptr;
    XPLMDataRef dataRef = nullptr;
    if (!PyArg_ParseTuple(args, "O", &handle) || !CV_PointerWord(handle, &dataRef)) return nullptr;
    int result = 0;
    CV_SDK_GUARD(kModule, "XPLMGetDatai", Failure(), result = XPLMGetDatai(dataRef));
    return PyLong_FromLong(result);
}

PyObject* PY_XPLMSetDatai(PyObject* self, PyObject* args) {
    PyObject* handle = nullptr;
    int value = 0;
    XPLMDataRef dataRef = nullptr;
    if (!PyArg_ParseTuple(args, "Oi", &handle, &value) || !CV_PointerWord(handle, &dataRef)) return nullptr;
    CV_SDK_GUARD(kModule, "XPLMSetDatai", Failure(), XPLMSetDatai(dataRef, value));
    return PyLong_FromLong(1);
}

PyObject* PY_XPLMGetDataf(PyObject* self, PyObject* args) {
    PyObject* handle = nullptr;
    XPLMDataRef dataRef = nullptr;
    if (!PyArg_ParseTuple(args, "O", &handle) || !CV_PointerWord(handle, &dataRef)) return nullptr;
    float result = 0.0f;
    CV_SDK_GUARD(kModule, "XPLMGetDataf", Failure(), result = XPLMGetDataf(dataRef));
    return PyFloat_FromDouble(result);
}

PyObject* PY_XPLMSetDataf(PyObject* self, PyObject* args) {
    PyObject* handle = nullptr;
    float value = 0.0f;
    XPLMDataRef dataRef = nullptr;
    if (!PyArg_ParseTuple(args, "Of", &handle, &value) || !CV_PointerWord(handle, &dataRef)) return nullptr;
    CV_SDK_GUARD(kModule, "XPLMSetDataf", Failure(), XPLMSetDataf(dataRef, value));
    return PyLong_FromLong(1);
}

PyObject* PY_XPLMGetDatad(PyObject* self, PyObject* args) {
    PyObject* handle = nullptr;
    XPLMDataRef dataRef = nullptr;
    if (!PyArg_ParseTuple(args, "O", &handle) || !CV_PointerWord(handle, &dataRef)) return nullptr;
    double result = 0.0;
    CV_SDK_GUARD(kModule, "XPLMGetDatad", Failure(), result = XPLMGetDatad(dataRef));
    return PyFloat_FromDouble(result);
}

PyObject* PY_XPLMSetDatad(PyObject* self, PyObject* args) {
    PyObject* handle = nullptr;
    double value = 0.0;
    XPLMDataRef dataRef = nullptr;
    if (!PyArg_ParseTuple(args, "Od", &handle, &value) || !CV_PointerWord(handle, &dataRef)) return nullptr;
    CV_SDK_GUARD(kModule, "XPLMSetDatad", Failure(), XPLMSetDatad(dataRef, value));
    return PyLong_FromLong(1);
}

// ---------------------------------------------------------------- arrays

// XPLMGetDatavi and XPLMGetDatavf: a size query with None, otherwise up to maximum elements from
// offset appended to the script's list; returns the size or the number appended.
template <typename T>
PyObject* GetArray(PyObject* args, const char* function, int (*getter)(XPLMDataRef, T*, int, int),
                   PyObject* (*convert)(T)) {
    PyObject* handle = nullptr;
    PyObject* list = nullptr;
    int offset = 0, maximum = 0;
    XPLMDataRef dataRef = nullptr;
    if (!PyArg_ParseTuple(args, "OOii", &handle, &list, &offset, &maximum) || !CV_PointerWord(handle, &dataRef))
        return nullptr;

    // With no buffer the simulator reports the full element count and ignores offset and maximum.
    int size = 0;
    CV_SDK_GUARD(kModule, function, Failure(), size = getter(dataRef, nullptr, offset > 0 ? offset : 0,
                                                             maximum > 0 ? maximum : 0));
    if (list == Py_None) return PyLong_FromLong(size);
    if (!CheckOutputList(list)) return nullptr;
    if (!CheckRange(function, offset, maximum)) return Failure();

    if (size < maximum) maximum = size;
    if (maximum < 0) maximum = 0;
    CBuffer<T> buffer = AllocateZeroed<T>(static_cast<size_t>(maximum));
    if (!buffer) return PyErr_NoMemory();
    int copied = 0;
    CV_SDK_GUARD(kModule, function, Failure(), copied = getter(dataRef, buffer.get(), offset, maximum));
    if (copied > maximum) copied = maximum;
    if (copied < 0) copied = 0;
    if (!AppendItems<T>(list, buffer.get(), copied, convert)) return nullptr;
    return PyLong_FromLong(copied);
}

// One element of a script's sequence for an int array: ints only. A value beyond the C long range
// is refused like any other non-int; within it, the SDK's 32-bit int keeps its low 32 bits.
bool IntItem(PyObject* item, int* out) {
    if (!PyLong_Check(item)) {
        PyErr_SetString(PyExc_TypeError, "expected sequence of integers");
        return false;
    }
    int overflow = 0;
    long value = PyLong_AsLongAndOverflow(item, &overflow);
    if (overflow != 0 || (value == -1 && PyErr_Occurred())) {
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

// XPLMSetDatavi and XPLMSetDatavf: every item is converted first; the simulator then reads count
// elements from offset on. The buffer holds exactly the sequence, so a count larger than the
// sequence is cut to its length.
template <typename T>
PyObject* SetArray(PyObject* args, const char* function, void (*setter)(XPLMDataRef, T*, int, int),
                   bool (*convertItem)(PyObject*, T*)) {
    PyObject* handle = nullptr;
    PyObject* sequence = nullptr;
    int offset = 0, count = 0;
    XPLMDataRef dataRef = nullptr;
    if (!PyArg_ParseTuple(args, "OOii", &handle, &sequence, &offset, &count) || !CV_PointerWord(handle, &dataRef))
        return nullptr;
    if (!PySequence_Check(sequence)) {
        PyErr_SetString(PyExc_TypeError, "expected sequence");
        return nullptr;
    }
    Py_ssize_t length = PySequence_Size(sequence);
    if (length < 0) return nullptr;
    CBuffer<T> buffer = AllocateZeroed<T>(static_cast<size_t>(length));
    if (!buffer) return PyErr_NoMemory();
    for (Py_ssize_t i = 0; i < length; ++i) {
        PyObject* item = PySequence_GetItem(sequence, i);
        if (item == nullptr) return nullptr;
        bool ok = convertItem(item, &buffer[i]);
        Py_DECREF(item);
        if (!ok) return nullptr;
    }
    if (!CheckRange(function, offset, count)) return Failure();
    int passed = count < length ? count : static_cast<int>(length);
    CV_SDK_GUARD(kModule, function, Failure(), setter(dataRef, buffer.get(), offset, passed));
    return PyLong_FromLong(1);
}

PyObject* PY_XPLMGetDatavi(PyObject* self, PyObject* args) {
    return GetArray<int>(args, "XPLMGetDatavi", XPLMGetDatavi, FromInt);
}

PyObject* PY_XPLMSetDatavi(PyObject* self, PyObject* args) {
    return SetArray<int>(args, "XPLMSetDatavi", XPLMSetDatavi, IntItem);
}

PyObject* PY_XPLMGetDatavf(PyObject* self, PyObject* args) {
    return GetArray<float>(args, "XPLMGetDatavf", XPLMGetDatavf, FromFloat);
}

PyObject* PY_XPLMSetDatavf(PyObject* self, PyObject* args) {
    return SetArray<float>(args, "XPLMSetDatavf", XPLMSetDatavf, FloatItem);
}

// ---------------------------------------------------------------- byte arrays

// Appends one str: the bytes copied, cut at the first zero byte, decoded as UTF-8 with invalid
// bytes replaced.
PyObject* PY_XPLMGetDatab(PyObject* self, PyObject* args) {
    const char* const function = "XPLMGetDatab";
    PyObject* handle = nullptr;
    PyObject* list = nullptr;
    int offset = 0, maximum = 0;
    XPLMDataRef dataRef = nullptr;
    if (!PyArg_ParseTuple(args, "OOii", &handle, &list, &offset, &maximum) || !CV_PointerWord(handle, &dataRef))
        return nullptr;

    int size = 0;
    CV_SDK_GUARD(kModule, function, Failure(), size = XPLMGetDatab(dataRef, nullptr, offset > 0 ? offset : 0,
                                                                   maximum > 0 ? maximum : 0));
    if (list == Py_None) return PyLong_FromLong(size);
    if (!CheckOutputList(list)) return nullptr;
    if (!CheckRange(function, offset, maximum)) return Failure();

    if (size < maximum) maximum = size;
    if (maximum < 0) maximum = 0;
    // One byte more than the simulator may fill, so the text always ends in a zero byte.
    CBuffer<char> buffer = AllocateZeroed<char>(static_cast<size_t>(maximum) + 1);
    if (!buffer) return PyErr_NoMemory();
    int copied = 0;
    CV_SDK_GUARD(kModule, function, Failure(), copied = XPLMGetDatab(dataRef, buffer.get(), offset, maximum));
    if (copied > maximum) copied = maximum;
    if (copied < 0) copied = 0;
    buffer[maximum] = '\0';

    size_t textLength = strnlen(buffer.get(), static_cast<size_t>(maximum));
    PyObject* text = PyUnicode_DecodeUTF8(buffer.get(), static_cast<Py_ssize_t>(textLength), "replace");
    if (text == nullptr) return nullptr;
    int rc = PyList_Append(list, text);
    Py_DECREF(text);
    if (rc != 0) return nullptr;
    return PyLong_FromLong(copied);
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
PyObject* PY_XPLMSetDatab(PyObject* self, PyObject* args) {
    const char* const function = "XPLMSetDatab";
    PyObject* handle = nullptr;
    PyObject* values = nullptr;
    int offset = 0, count = 0;
    XPLMDataRef dataRef = nullptr;
    if (!PyArg_ParseTuple(args, "OOii", &handle, &values, &offset, &count) || !CV_PointerWord(handle, &dataRef))
        return nullptr;
    if (!PySequence_Check(values)) {
        PyErr_SetString(PyExc_TypeError, "expected sequence");
        return nullptr;
    }
    Py_ssize_t length = PySequence_Size(values);
    if (length < 0) return nullptr;
    if (length == 0) {
        PyErr_SetString(PyExc_TypeError, "expected sequence of bytes");
        return nullptr;
    }
    if (!CheckRange(function, offset, count)) return Failure();
    int passed = count < kByteStagingSize ? count : kByteStagingSize;

    unsigned char staging[kByteStagingSize];
    std::memset(staging, 0, sizeof staging);
    if (length == 1) {
        PyObject* item = PySequence_GetItem(values, 0);
        if (item == nullptr) return nullptr;
        const char* bytes = nullptr;
        Py_ssize_t byteCount = 0;
        bool failed = false;
        if (StringBytes(item, &bytes, &byteCount, &failed)) {
            size_t copy = static_cast<size_t>(byteCount < passed ? byteCount : passed);
            std::memcpy(staging, bytes, copy);
        }
        Py_DECREF(item);
        if (failed) return nullptr;
    } else {
        Py_ssize_t used = length < kByteStagingSize ? length : kByteStagingSize;
        for (Py_ssize_t i = 0; i < used; ++i) {
            PyObject* item = PySequence_GetItem(values, i);
            if (item == nullptr) return nullptr;
            // The low byte of the value, negative values in two's complement (-1 gives 0xff).
            if (PyLong_Check(item)) staging[i] = static_cast<unsigned char>(PyLong_AsUnsignedLongMask(item) & 0xff);
            Py_DECREF(item);
            if (PyErr_Occurred()) return nullptr;
        }
    }
    CV_SDK_GUARD(kModule, function, Failure(), XPLMSetDatab(dataRef, staging, offset, passed));
    return PyLong_FromLong(1);
}

// ---------------------------------------------------------------- data accessors and shared data

// The twelve accessor lists in the order of XPLMRegisterDataAccessor's callables: get int, set int,
// get float, set float, get double, set double, get int array, set int array, get float array,
// set float array, get byte array, set byte array. Getters sit at even, setters at odd positions;
// position / 2 is the slot in the read or write block.
struct AccessorList {
    CV_CallbackVector* list;
    const char* name;  // as its size line shows it
};
const AccessorList kAccessorLists[12] = {
    {&GetDataiCallbackList, "GetDataiCallbackList"},   {&SetDataiCallbackList, "SetDataiCallbackList"},
    {&GetDatafCallbackList, "GetDatafCallbackList"},   {&SetDatafCallbackList, "SetDatafCallbackList"},
    {&GetDatadCallbackList, "GetDatadCallbackList"},   {&SetDatadCallbackList, "SetDatadCallbackList"},
    {&GetDataviCallbackList, "GetDataviCallbackList"}, {&SetDataviCallbackList, "SetDataviCallbackList"},
    {&GetDatavfCallbackList, "GetDatavfCallbackList"}, {&SetDatavfCallbackList, "SetDatavfCallbackList"},
    {&GetDatabCallbackList, "GetDatabCallbackList"},   {&SetDatabCallbackList, "SetDatabCallbackList"},
};

// The debug trace of the accessor functions: their detail lines and the sizes of the twelve lists.
void TraceAccessorLists(const char* function, const std::string& details) {
    const AccessorList* a = kAccessorLists;
    CV_DebugCallbackTrace(function, details,
                          {{a[0].name, a[0].list->size()},   {a[1].name, a[1].list->size()},
                           {a[2].name, a[2].list->size()},   {a[3].name, a[3].list->size()},
                           {a[4].name, a[4].list->size()},   {a[5].name, a[5].list->size()},
                           {a[6].name, a[6].list->size()},   {a[7].name, a[7].list->size()},
                           {a[8].name, a[8].list->size()},   {a[9].name, a[9].list->size()},
                           {a[10].name, a[10].list->size()}, {a[11].name, a[11].list->size()}});
}

// What the simulator calls, and with which block, for as long as an accessor is registered.
//
// Unregistration removes records and blocks by the scripts' rules: records by script and data
// reference (the first match, which after two registrations of one method is the other accessor's
// record), blocks by the position where the last record was found (which may be another
// accessor's block). The lists follow those rules exactly. What is taken out of a list is freed
// only once no registered accessor can reach it any more; until then it waits in the detached
// lists, so the simulator never calls through freed memory.
struct LiveAccessor {
    XPLMDataRef dataRef;
    _CallbackList** readBlock;
    _CallbackList** writeBlock;
};
std::vector<LiveAccessor> gLiveAccessors;
std::vector<_CallbackList*> gDetachedAccessorRecords;
std::vector<_CallbackList**> gDetachedAccessorBlocks;

bool AccessorBlockIsLive(_CallbackList** block) {
    for (const LiveAccessor& a : gLiveAccessors)
        if (a.readBlock == block || a.writeBlock == block) return true;
    return false;
}

bool AccessorRecordIsLive(const _CallbackList* entry) {
    for (const LiveAccessor& a : gLiveAccessors)
        for (int slot = 0; slot < CV_AccessorBlockSlots; ++slot)
            if (a.readBlock[slot] == entry || a.writeBlock[slot] == entry) return true;
    return false;
}

// Frees what was taken out of the lists and can no longer be reached by the simulator.
void ReleaseDetachedAccessors() {
    auto& records = gDetachedAccessorRecords;
    for (size_t i = 0; i < records.size();) {
        if (AccessorRecordIsLive(records[i])) {
            ++i;
            continue;
        }
        _CallbackList* entry = records[i];
        records.erase(records.begin() + i);
        CVTestTable->DeleteCallback(nullptr, entry, -1);
    }
    auto& blocks = gDetachedAccessorBlocks;
    for (size_t i = 0; i < blocks.size();) {
        if (AccessorBlockIsLive(blocks[i])) {
            ++i;
            continue;
        }
        delete[] blocks[i];
        blocks.erase(blocks.begin() + i);
    }
}

// Removes the block at the position the unregistration rule chose. A position past the list's end
// (left by a record list that holds more records than there are blocks) falls back to the
// accessor's own block, or the last one. Returns the block removed.
_CallbackList** RemoveBlockAt(CV_BlockVector& list, int index, _CallbackList** ownBlock) {
    size_t at = static_cast<size_t>(std::max(index, 0));
    if (at >= list.size()) {
        auto own = std::find(list.begin(), list.end(), ownBlock);
        at = own != list.end() ? static_cast<size_t>(own - list.begin()) : list.size() - 1;
    }
    _CallbackList** block = list[at];
    list.erase(list.begin() + static_cast<long>(at));
    gDetachedAccessorBlocks.push_back(block);
    return block;
}

PyObject* PY_XPLMRegisterDataAccessor(PyObject* self, PyObject* args) {
    PyObject* scriptId = nullptr;
    const char* dataName = nullptr;
    int dataType = 0, isWritable = 0;
    PyObject* callables[12] = {};
    PyObject *readRefconObject = nullptr, *writeRefconObject = nullptr;
    if (!PyArg_ParseTuple(args, "OsiiOOOOOOOOOOOOOO", &scriptId, &dataName, &dataType, &isWritable, &callables[0],
                          &callables[1], &callables[2], &callables[3], &callables[4], &callables[5], &callables[6],
                          &callables[7], &callables[8], &callables[9], &callables[10], &callables[11],
                          &readRefconObject, &writeRefconObject))
        return nullptr;
    void *readRefcon = nullptr, *writeRefcon = nullptr;
    if (!CV_PointerWord(readRefconObject, &readRefcon) || !CV_PointerWord(writeRefconObject, &writeRefcon)) return nullptr;

    // Only bound methods are recorded; anything else (a plain function, None, 0) leaves the type
    // without an accessor, whose trampoline then answers 0.
    _CallbackList* entries[12] = {};
    for (int i = 0; i < 12; ++i) {
        if (Py_IS_TYPE(callables[i], &PyMethod_Type))
            entries[i] = CVTestTable->AddCallback(kAccessorLists[i].list, scriptId, nullptr, callables[i],
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
    CV_SDK_GUARD(kModule, "XPLMRegisterDataAccessor", Failure(),
                 dataRef = XPLMRegisterDataAccessor(
                     dataName, dataType, isWritable, CV_GetDatai_Callback, CV_SetDatai_Callback, CV_GetDataf_Callback,
                     CV_SetDataf_Callback, CV_GetDatad_Callback, CV_SetDatad_Callback, CV_GetDatavi_Callback,
                     CV_SetDatavi_Callback, CV_GetDatavf_Callback, CV_SetDatavf_Callback, CV_GetDatab_Callback,
                     CV_SetDatab_Callback, readBlock, writeBlock));
    if (dataRef != nullptr) gLiveAccessors.push_back({dataRef, readBlock, writeBlock});

    for (int i = 0; i < 12; ++i)
        if (entries[i] != nullptr) CVTestTable->UpdateCallback(kAccessorLists[i].list, scriptId, callables[i], dataRef);

    if (gCV_DebugCallbacks)
        TraceAccessorLists(
            "XPLMRegisterDataAccessor",
            CV_FormatText("pScriptId = %lx, inDataName = %s, inDataType = %d, inIsWritable = %d, inReadRefcon = %ld, "
                          "inWriteRefcon = %ld, DataRef = %lx\n",
                          CV_Hex(scriptId), dataName, dataType, isWritable, CV_Dec(readRefcon), CV_Dec(writeRefcon),
                          CV_Hex(dataRef)) +
                CV_FormatText("pDataAccessorGetCB = %lx\n", CV_Hex(readBlock)) +
                CV_FormatText("pDataAccessorSetCB = %lx\n", CV_Hex(writeBlock)));
    return PyLong_FromVoidPtr(dataRef);
}

PyObject* PY_XPLMUnregisterDataAccessor(PyObject* self, PyObject* args) {
    const char* const function = "XPLMUnregisterDataAccessor";
    PyObject *scriptId = nullptr, *handle = nullptr;
    XPLMDataRef dataRef = nullptr;
    if (!PyArg_ParseTuple(args, "OO", &scriptId, &handle) || !CV_PointerWord(handle, &dataRef)) return nullptr;

    // One index for all twelve searches: a search that finds nothing leaves it as it was, so it ends
    // as the position of the record found in the last list that held one.
    int index = 0;
    for (const AccessorList& a : kAccessorLists) {
        int found = 0;
        _CallbackList* entry = CVTestTable->FindCallback(*a.list, scriptId, dataRef, &found, &index);
        if (!found) continue;
        CV_TakeOutOfList(a.list, entry, index);
        gDetachedAccessorRecords.push_back(entry);
    }

    // The accessor's own blocks, for when the rule's position lies past the end of a block list.
    _CallbackList **ownRead = nullptr, **ownWrite = nullptr;
    for (const LiveAccessor& a : gLiveAccessors) {
        if (a.dataRef != dataRef) continue;
        ownRead = a.readBlock;
        ownWrite = a.writeBlock;
    }

    try {
        XPLMUnregisterDataAccessor(dataRef);
    } catch (...) {
        ReleaseDetachedAccessors();
        PrintException(kModule, function, "Parameter Error");
        return Failure();
    }
    // The simulator no longer calls this accessor's blocks.
    gLiveAccessors.erase(std::remove_if(gLiveAccessors.begin(), gLiveAccessors.end(),
                                        [&](const LiveAccessor& a) { return a.dataRef == dataRef; }),
                         gLiveAccessors.end());

    _CallbackList **removedRead = nullptr, **removedWrite = nullptr;
    if (GetDataMemoryPointerList.empty())
        PrintException(kModule, function, "GetData List Empty Error");
    else
        removedRead = RemoveBlockAt(GetDataMemoryPointerList, index, ownRead);
    if (SetDataMemoryPointerList.empty())
        PrintException(kModule, function, "GetData List Empty Error");
    else
        removedWrite = RemoveBlockAt(SetDataMemoryPointerList, index, ownWrite);
    ReleaseDetachedAccessors();

    if (gCV_DebugCallbacks) {
        char scriptName[256];
        CV_GetScriptNameForMessages(scriptId, scriptName);
        TraceAccessorLists(function, CV_FormatText("pScriptId = %lx, Script Name = %s, inDataRef = %lx\n",
                                                   CV_Hex(scriptId), scriptName, CV_Hex(dataRef)) +
                                         CV_FormatText("pDataAccessorGetCB = %lx\n", CV_Hex(removedRead)) +
                                         CV_FormatText("pDataAccessorSetCB = %lx\n", CV_Hex(removedWrite)));
    }
    return PyLong_FromLong(1);
}

// Shared data subscriptions the simulator accepted and still notifies. A record whose subscription
// the simulator did not give up (an unshare with another name or type than the share) leaves the
// list as the script asked but is never freed, since the simulator still calls with it.
std::vector<_CallbackList*> gSharedDataHeld;

PyObject* PY_XPLMShareData(PyObject* self, PyObject* args) {
    PyObject *scriptId = nullptr, *callable = nullptr, *refconObject = nullptr;
    const char* dataName = nullptr;
    int dataType = 0;
    if (!PyArg_ParseTuple(args, "OsiOO", &scriptId, &dataName, &dataType, &callable, &refconObject)) return nullptr;
    void* refcon = nullptr;
    if (!CV_PointerWord(refconObject, &refcon)) return nullptr;

    _CallbackList* entry = CVTestTable->AddCallback(&SharedDataCallbackList, scriptId, nullptr, callable, refcon);
    int result = 0;
    CV_SDK_GUARD(kModule, "XPLMShareData", Failure(),
                 result = XPLMShareData(dataName, dataType, CV_SharedDataCallback, entry));
    if (result) gSharedDataHeld.push_back(entry);

    if (gCV_DebugCallbacks)
        CV_DebugCallbackTrace("XPLMShareData",
                              CV_FormatText("pScriptId = %lx, inDataName = %s, inDataType = %d, "
                                            "inNotificationRefcon = %ld\n",
                                            CV_Hex(scriptId), dataName, dataType, CV_Dec(refcon)),
                              {{"SharedDataCallbackList", SharedDataCallbackList.size()}});
    return PyLong_FromLong(result);
}

PyObject* PY_XPLMUnshareData(PyObject* self, PyObject* args) {
    const char* const function = "XPLMUnshareData";
    PyObject *scriptId = nullptr, *callable = nullptr, *refconObject = nullptr;
    const char* dataName = nullptr;
    int dataType = 0;
    if (!PyArg_ParseTuple(args, "OsiOO", &scriptId, &dataName, &dataType, &callable, &refconObject)) return nullptr;
    void* refcon = nullptr;
    if (!CV_PointerWord(refconObject, &refcon)) return nullptr;

    char scriptName[256];
    CV_GetScriptNameForMessages(scriptId, scriptName);
    int found = 0, index = 0, result = 0;
    _CallbackList* entry = CVTestTable->FindCallback(SharedDataCallbackList, scriptId, callable, refcon, &found, &index);
    if (found) {
        CV_SDK_GUARD(kModule, function, Failure(),
                     result = XPLMUnshareData(dataName, dataType, CV_SharedDataCallback, entry));
        auto held = std::find(gSharedDataHeld.begin(), gSharedDataHeld.end(), entry);
        if (result && held != gSharedDataHeld.end()) {
            gSharedDataHeld.erase(held);
            held = gSharedDataHeld.end();
        }
        if (held == gSharedDataHeld.end())
            CVTestTable->DeleteCallback(&SharedDataCallbackList, entry, index);
        else
            CV_TakeOutOfList(&SharedDataCallbackList, entry, index);
    } else {
        PrintExceptionf(kModule, function,
                        CV_MSG_UNKNOWN_CALLBACK_AND_REFCON,
                        scriptName);
    }

    if (gCV_DebugCallbacks)
        CV_DebugCallbackTrace(function,
                              CV_FormatText("pScriptId = %lx, Script Name = %s, inDataName = %s, inDataType = %d, "
                                            "inNotificationRefcon = %ld\n",
                                            CV_Hex(scriptId), scriptName, dataName, dataType, CV_Dec(refcon)),
                              {{"SharedDataCallbackList", SharedDataCallbackList.size()}});
    return PyLong_FromLong(result);
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
    {"XPLMFindDataRef", PY_XPLMFindDataRef, METH_VARARGS, "Find Dataref."},
    {"XPLMCanWriteDataRef", PY_XPLMCanWriteDataRef, METH_VARARGS, "Test for writable Dataref."},
    {"XPLMGetDataRefTypes", PY_XPLMGetDataRefTypes, METH_VARARGS, "Get the Dataref Type."},
    {"XPLMGetDatai", PY_XPLMGetDatai, METH_VARARGS, "Get Integer Dataref."},
    {"XPLMSetDatai", PY_XPLMSetDatai, METH_VARARGS, "Set Integer Dataref."},
    {"XPLMGetDataf", PY_XPLMGetDataf, METH_VARARGS, "Get Float Dataref."},
    {"XPLMSetDataf", PY_XPLMSetDataf, METH_VARARGS, "Set Float Dataref."},
    {"XPLMGetDatad", PY_XPLMGetDatad, METH_VARARGS, "Get Double Dataref."},
    {"XPLMSetDatad", PY_XPLMSetDatad, METH_VARARGS, "Set Double Dataref."},
    {"XPLMGetDatavi", PY_XPLMGetDatavi, METH_VARARGS, "Get Integer Array Dataref."},
    {"XPLMSetDatavi", PY_XPLMSetDatavi, METH_VARARGS, "Set Integer Array Dataref."},
    {"XPLMGetDatavf", PY_XPLMGetDatavf, METH_VARARGS, "Get Float Array Dataref."},
    {"XPLMSetDatavf", PY_XPLMSetDatavf, METH_VARARGS, "Set Float Array Dataref."},
    {"XPLMGetDatab", PY_XPLMGetDatab, METH_VARARGS, "Get Byte Array Dataref."},
    {"XPLMSetDatab", PY_XPLMSetDatab, METH_VARARGS, "Set Byte Array Dataref."},
    {"XPLMRegisterDataAccessor", PY_XPLMRegisterDataAccessor, METH_VARARGS, "Register data accessor."},
    {"XPLMUnregisterDataAccessor", PY_XPLMUnregisterDataAccessor, METH_VARARGS, "Unregister data accessor."},
    {"XPLMShareData", PY_XPLMShareData, METH_VARARGS, "Share Data."},
    {"XPLMUnshareData", PY_XPLMUnshareData, METH_VARARGS, "Unshare Data."},
    {nullptr, nullptr, 0, nullptr},
};

PyModuleDef XPLMDataAccessModule = {PyModuleDef_HEAD_INIT, "XPLMDataAccess", nullptr, -1, XPLMDataAccessMethods};

}  // namespace

PyObject* initXPLMDataAccess() {
    return CV_CreateModule(&XPLMDataAccessModule, XPLMDataAccessConstants, std::size(XPLMDataAccessConstants));
}
