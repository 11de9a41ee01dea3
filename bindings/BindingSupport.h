// The toolkit every script-facing module is written with: creating the module, reading arguments,
// guarding SDK calls, the SDK-level gate, results and output lists, and the reports of a script's
// misuse. A binding is parse, gate, guard, call, result (see ARCHITECTURE.md); none of these pieces
// is written again in a module.
#pragma once

#include <Python.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>

#include "CV_ScriptTable.h"
#include "CallbackRegistry.h"
#include "PythonRef.h"
#include "ScriptThreads.h"

// ---------------------------------------------------------------- modules

// One integer constant of a module, by its SDK name.
struct CV_IntConstant {
    const char* name;
    long value;
};

// Creates the module `name` with its method table, adds the constants in order, and registers it
// in sys.modules so that scripts can import it. Returns a borrowed reference, or null on failure
// (the Python error is printed).
PyObject* CV_CreateModule(const char* name, PyMethodDef* methods, const CV_IntConstant* constants,
                          size_t constantCount);

inline PyObject* CV_CreateModule(const char* name, PyMethodDef* methods) {
    return CV_CreateModule(name, methods, nullptr, 0);
}

template <size_t N>
PyObject* CV_CreateModule(const char* name, PyMethodDef* methods, const CV_IntConstant (&constants)[N]) {
    return CV_CreateModule(name, methods, constants, N);
}

// ---------------------------------------------------------------- reports

// Reports a problem of the script's making: "Module - %s, Function - %s, Error = %s\n" to the
// print list and the log. Never raises.
void PrintException(const char* module, const char* function, const char* message);
// Formats the message first (cut to 4095 characters).
void PrintExceptionf(const char* module, const char* function, const char* format, ...)
    __attribute__((format(printf, 3, 4)));

// The name a script gave itself in its XPluginStart, for messages about it.
void CV_GetScriptNameForMessages(PyObject* scriptId, char* outName /* 256 bytes */);

// An unregistration found no record: "Script '<name>.py' was unregistering a callback that does not
// exist." or, for the kinds matched by callable and refcon, the longer text that asks the script to
// check its refcon. Nothing is removed and the SDK is not called.
enum class CV_MatchedBy { Handle, Refcon };
void CV_ReportUnknownCallback(const char* module, const char* function, const char* scriptName, CV_MatchedBy by);

// A call that scripts still make in an older form: the parse error reaches the script, and the log
// gets the "Wrong number of parameters Error" report and the usage lines between separator lines.
void CV_ReportChangedCall(const char* module, const char* function, const char* const* usageLines, size_t lineCount);
template <size_t N>
void CV_ReportChangedCall(const char* module, const char* function, const char* const (&usageLines)[N]) {
    CV_ReportChangedCall(module, function, usageLines, N);
}

// ---------------------------------------------------------------- the SDK guard

#define CV_PARAMETER_ERROR "Parameter Error"
#define CV_FUNCTION_ERROR "Function Error"
#define CV_FOREIGN_THREAD_ERROR "Not on the simulator's main thread: the SDK call was refused"

// Runs one SDK call, on the simulator's main thread only. Whatever it throws becomes a report (`error`: "Parameter
// Error", or "Function Error" for the functions that report that) and false, so that nothing crosses back into the
// simulator.
template <typename Call>
inline bool CV_Guarded(const char* module, const char* function, Call&& call, const char* error = CV_PARAMETER_ERROR) {
    // The simulator allows its SDK only on its main thread: a script's own thread is refused.
    if (!CV_OnMainThread()) {
        PrintException(module, function, CV_FOREIGN_THREAD_ERROR);
        return false;
    }
    try {
        call();
        return true;
    } catch (...) {
        PrintException(module, function, error);
        return false;
    }
}

// The common form: the statements run inside the guard, and a throw returns `failure` to the script.
#define CV_SDK_GUARD(module, function, failure, ...)                               \
    do {                                                                           \
        if (!CV_Guarded(module, function, [&]() { __VA_ARGS__; })) return failure; \
    } while (0)

// The end of every unregistration of a one-record kind. With the record found, `unregister` (the
// SDK call, and letting go of what the simulator held) runs inside the SDK guard and the record is
// retired from its list; without one, the "does not exist" report. False when the SDK call threw
// (reported; the record stays registered).
template <typename Unregister>
bool CV_Unregister(const char* module, const char* function, CV_CallbackVector* list, _CallbackList* entry, int index,
                   const char* scriptName, CV_MatchedBy by, Unregister&& unregister) {
    if (entry == nullptr) {
        CV_ReportUnknownCallback(module, function, scriptName, by);
        return true;
    }
    if (!CV_Guarded(module, function, unregister)) return false;
    CV_RetireRecord(list, entry, index);
    return true;
}

// Registrations that the simulator calls back during the call (enumerators) or once later
// (background loads) keep one record per script, bound method and refcon. With a bound method and no
// such record, a record is added and `call(entry)` (the SDK call) runs inside the guard; a throw
// takes the record out again and gives false. Anything else registers nothing and gives true.
// The simulator calls back with the record during the call, and a callback may take its own
// registration back: the record is held for the length of the call, so it is freed only after it.
template <typename Call>
bool CV_RegisterOnce(const char* module, const char* function, CV_CallbackVector* list, PyObject* scriptId,
                     PyObject* callable, void* refcon, Call&& call) {
    int found = 0, index = 0;
    CVTestTable->FindCallback(*list, scriptId, callable, refcon, &found, &index);
    if (!Py_IS_TYPE(callable, &PyMethod_Type) || found) return true;
    _CallbackList* entry = CVTestTable->AddCallback(list, scriptId, nullptr, callable, refcon);
    CV_Hold(list, &entry, entry);  // keyed by this call, apart from what `call` holds itself
    const bool called = CV_Guarded(module, function, [&] { call(entry); });
    if (!called && std::find(list->begin(), list->end(), entry) != list->end()) CV_RetireRecord(list, entry, -1);
    CV_Release(list, &entry);
    return called;
}
// Their removal: for a bound method, the record of the script, method and refcon is retired, or
// the refcon report goes out under `module`.
void CV_RemoveOnce(const char* module, const char* function, CV_CallbackVector* list, PyObject* scriptId,
                   PyObject* callable, void* refcon, const char* scriptName);

// ---------------------------------------------------------------- the SDK-level gate

// Functions newer than SDK 1.02 are reached through the `*_ptr` entries found at start, null where
// the simulator lacks them. A binding of one checks its entry before it even reads its arguments.
enum class CV_SdkLevel { Sdk200, Sdk210 };
// "Not supported in SDK 1.02" (an SDK 2.00 function) or "Not supported in SDK 1.02 or SDK 2.00".
void CV_ReportNotSupported(const char* module, const char* function, CV_SdkLevel level);

#define CV_REQUIRE_SDK(module, level, function)                           \
    do {                                                                  \
        if (function##_ptr == nullptr) {                                  \
            CV_ReportNotSupported(module, #function, CV_SdkLevel::level); \
            return CV_IntResult(0);                                       \
        }                                                                 \
    } while (0)

// ---------------------------------------------------------------- arguments

// A script's refcon or an SDK handle as the pointer-sized word it stands for. False with the
// Python error set when the object is not an integer.
bool CV_PointerWord(PyObject* object, void** word);
// The same as a PyArg_ParseTuple "O&" converter; `address` is the address of any pointer-typed
// handle (XPLMDataRef, XPLMWindowID, void* refcon ...).
int CV_PointerArg(PyObject* object, void* address);

// A script's sequence as a tuple of its items, for reading item by item: converting an item may run
// script code (__float__, __index__) that changes a list while it is read, but the tuple keeps the
// items it was made with. A tuple is used as it is; anything else that is not a sequence raises
// TypeError `message`. A new reference, or null with the Python error set.
PyObject* CV_SequenceItems(PyObject* sequence, const char* message);

// Per-frame bindings take their arguments as METH_FASTCALL vectors and convert them directly, with
// the texts PyArg_ParseTuple gives for the same mistakes: "function takes exactly 2 arguments (1
// given)", the int range errors of "i", the conversion errors of "l", "f" and "d", and for "s" and
// "(fff)" the messages that name the argument by its position (from 1). False with the Python
// error set.
bool CV_ArgCount(Py_ssize_t given, Py_ssize_t wanted);

// The value of an exact int of one digit (the coordinates, flags and counts scripts pass), read from
// the object itself; false for any other object, which the interpreter converts.
inline bool CV_SmallIntValue(PyObject* object, long* value) {
    if (!PyLong_CheckExact(object)) return false;
#if PY_VERSION_HEX >= 0x030C0000
    PyLongObject* number = reinterpret_cast<PyLongObject*>(object);
    if (!PyUnstable_Long_IsCompact(number)) return false;
    *value = static_cast<long>(PyUnstable_Long_CompactValue(number));
#else
    const Py_ssize_t size = Py_SIZE(object);
    if (size < -1 || size > 1) return false;
    *value = static_cast<long>(size) * static_cast<long>(reinterpret_cast<PyLongObject*>(object)->ob_digit[0]);
#endif
    return true;
}
// The interpreter's conversions, for whatever the direct reads leave.
bool CV_ConvertIntArg(PyObject* object, int* value);
bool CV_ConvertLongArg(PyObject* object, long* value);
bool CV_ConvertDoubleArg(PyObject* object, double* value);

inline bool CV_IntArg(PyObject* object, int* value) {
    long small = 0;
    if (!CV_SmallIntValue(object, &small)) return CV_ConvertIntArg(object, value);
    *value = static_cast<int>(small);  // one digit: within the int range
    return true;
}
inline bool CV_LongArg(PyObject* object, long* value) {
    return CV_SmallIntValue(object, value) || CV_ConvertLongArg(object, value);
}
inline bool CV_DoubleArg(PyObject* object, double* value) {
    if (!PyFloat_CheckExact(object)) return CV_ConvertDoubleArg(object, value);
    *value = PyFloat_AS_DOUBLE(object);
    return true;
}
inline bool CV_FloatArg(PyObject* object, float* value) {
    double number = 0.0;
    if (!CV_DoubleArg(object, &number)) return false;
    *value = static_cast<float>(number);
    return true;
}
// "s": a str without zero characters, as its UTF-8 text, which lives as long as the str, and the
// text's length in bytes when asked.
bool CV_TextArg(PyObject* object, Py_ssize_t position, const char** text, size_t* length = nullptr);
// "(fff)" and its like: a sequence of exactly `count` items, each read as "f".
bool CV_FloatsArg(PyObject* object, Py_ssize_t position, float* values, Py_ssize_t count);
// A METH_FASTCALL function for a method table.
#define CV_FASTCALL(function) reinterpret_cast<PyCFunction>(reinterpret_cast<void (*)()>(function))

// What CV_ParseArgs reads into, besides int*, long*, float*, double*, const char** and PyObject**:
// an SDK handle or refcon (as "O&" with CV_PointerArg), a text with its length, and a float tuple
// such as a colour.
struct CV_HandleTarget {
    void* address;
};
template <typename Handle>
CV_HandleTarget CV_Handle(Handle* handle) {
    static_assert(std::is_pointer_v<Handle>, "a handle is pointer-sized");
    return {handle};
}
// A text with its length in bytes.
struct CV_TextTarget {
    const char** text;
    size_t* length;
};
inline CV_TextTarget CV_Text(const char** text, size_t* length) { return {text, length}; }
template <size_t N>
struct CV_FloatsTarget {
    float* values;
};
template <size_t N>
CV_FloatsTarget<N> CV_Floats(float (&values)[N]) {
    return {values};
}

inline bool CV_ReadArg(PyObject* object, Py_ssize_t, int* value) { return CV_IntArg(object, value); }
inline bool CV_ReadArg(PyObject* object, Py_ssize_t, long* value) { return CV_LongArg(object, value); }
inline bool CV_ReadArg(PyObject* object, Py_ssize_t, float* value) { return CV_FloatArg(object, value); }
inline bool CV_ReadArg(PyObject* object, Py_ssize_t, double* value) { return CV_DoubleArg(object, value); }
inline bool CV_ReadArg(PyObject* object, Py_ssize_t position, const char** text) {
    return CV_TextArg(object, position, text);
}
inline bool CV_ReadArg(PyObject* object, Py_ssize_t position, CV_TextTarget text) {
    return CV_TextArg(object, position, text.text, text.length);
}
inline bool CV_ReadArg(PyObject* object, Py_ssize_t, PyObject** value) {
    *value = object;
    return true;
}
inline bool CV_ReadArg(PyObject* object, Py_ssize_t, CV_HandleTarget handle) {
    return CV_PointerArg(object, handle.address);
}
template <size_t N>
bool CV_ReadArg(PyObject* object, Py_ssize_t position, CV_FloatsTarget<N> floats) {
    return CV_FloatsArg(object, position, floats.values, N);
}
template <typename... Targets, size_t... Index>
bool CV_ReadArgs(PyObject* const* args, std::index_sequence<Index...>, Targets... targets) {
    return (CV_ReadArg(args[Index], static_cast<Py_ssize_t>(Index) + 1, targets) && ...);
}

// PyArg_ParseTuple for a METH_FASTCALL vector: the count first, then each argument in order, up to
// the first mistake, with the error the parser gives for it.
//     if (!CV_ParseArgs(args, count, CV_Floats(colour), &x, &y, &text, &wrapWidth, &font)) return nullptr;
template <typename... Targets>
bool CV_ParseArgs(PyObject* const* args, Py_ssize_t count, Targets... targets) {
    return CV_ArgCount(count, sizeof...(Targets)) &&
           CV_ReadArgs(args, std::index_sequence_for<Targets...>{}, targets...);
}

// ---------------------------------------------------------------- results

// The Python int a binding answers with; CV_IntResult(0) is the failure value of every binding.
inline PyObject* CV_IntResult(long value) { return PyLong_FromLong(value); }
// An SDK handle as the integer scripts hold.
inline PyObject* CV_HandleResult(const void* handle) { return PyLong_FromVoidPtr(const_cast<void*>(handle)); }
// A text from the simulator as a str; bytes that are not UTF-8 are replaced. Null gives "".
PyObject* CV_TextResult(const char* text, size_t length);
PyObject* CV_TextResult(const char* text);
inline PyObject* CV_TextResult(const std::string& text) { return CV_TextResult(text.data(), text.size()); }
// The text in a buffer of `size` bytes that the simulator filled, up to its first zero byte.
PyObject* CV_BufferText(const char* buffer, size_t size);

// ---------------------------------------------------------------- output arguments

// Output arguments are None (the SDK gets no buffer) or a list that receives the value; anything
// else raises TypeError "expected sequence".
bool CV_CheckOutputList(PyObject* object);
// The buffer handed to the SDK for an output argument: none for None.
template <typename T>
T* CV_OutPointer(PyObject* out, T* storage) {
    return out == Py_None ? nullptr : storage;
}
// Puts a value into an output argument: appended to an empty list, else stored as item 0; nothing
// for None. Takes the new reference of `value` in every case. False with the Python error set.
bool CV_StoreOutput(PyObject* list, PyObject* value);
// Appends a value to a list; takes the new reference of `value`. False with the Python error set.
bool CV_AppendOutput(PyObject* list, PyObject* value);

// ---------------------------------------------------------------- buffers

// A zero-filled buffer of `count` elements (at least one) for an SDK call to read or fill: on the
// stack up to the 256 elements that calls made every frame use, else on the heap. `!buffer` when the
// heap has no room.
template <typename T>
class CV_Buffer {
public:
    explicit CV_Buffer(size_t count) {
        if (count <= kLocal) {
            std::fill_n(local_, count > 0 ? count : 1, T{});
            data_ = local_;
        } else {
            heap_.reset(static_cast<T*>(std::calloc(count, sizeof(T))));
            data_ = heap_.get();
        }
    }
    CV_Buffer(const CV_Buffer&) = delete;
    CV_Buffer& operator=(const CV_Buffer&) = delete;
    T* get() const { return data_; }
    T& operator[](size_t i) const { return data_[i]; }
    explicit operator bool() const { return data_ != nullptr; }

private:
    struct Free {
        void operator()(T* p) const { std::free(p); }
    };
    static constexpr size_t kLocal = 256;
    T local_[kLocal];
    std::unique_ptr<T, Free> heap_;
    T* data_ = nullptr;
};

// ---------------------------------------------------------------- plain wrappers

// The binding of an SDK function of no argument, one int or one handle, whose answer goes back as
// it is: nothing as 1, a handle as the integer scripts hold, a number as an int. A function of no
// argument ignores whatever the script passes.
template <typename... P>
struct CV_OnlyParameter {
    using type = int;
};
template <typename P>
struct CV_OnlyParameter<P> {
    using type = P;
};

template <typename R, typename... P>
PyObject* CV_CallSdk(R (*sdk)(P...), const char* module, const char* function, PyObject* args) {
    static_assert(sizeof...(P) <= 1, "a plain wrapper takes at most one argument");
    typename CV_OnlyParameter<P...>::type argument{};
    if constexpr (sizeof...(P) == 1) {
        if constexpr (std::is_pointer_v<decltype(argument)>) {
            if (!PyArg_ParseTuple(args, "O&", CV_PointerArg, &argument)) return nullptr;
        } else {
            if (!PyArg_ParseTuple(args, "i", &argument)) return nullptr;
        }
    }
    auto call = [&] {
        if constexpr (sizeof...(P) == 1)
            return sdk(argument);
        else
            return sdk();
    };
    if constexpr (std::is_void_v<R>) {
        CV_SDK_GUARD(module, function, CV_IntResult(0), call());
        return CV_IntResult(1);
    } else {
        R answer{};
        CV_SDK_GUARD(module, function, CV_IntResult(0), answer = call());
        if constexpr (std::is_pointer_v<R>)
            return CV_HandleResult(answer);
        else
            return CV_IntResult(answer);
    }
}

// Defines PY_<function>, the binding of an SDK function that CV_CallSdk wraps as it is.
#define CV_PLAIN_BINDING(module, function) \
    PyObject* PY_##function(PyObject*, PyObject* args) { return CV_CallSdk(function, module, #function, args); }
