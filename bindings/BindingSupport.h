// What every script-facing module shares: creating the module, installing its integer constants,
// and reporting a script's misuse without raising.
#pragma once

#include <Python.h>

// One integer constant of a module, by its SDK name.
struct CV_IntConstant {
    const char* name;
    long value;
};

// Creates the module from its definition, adds the constants in order, and registers it in
// sys.modules so that scripts can import it. Returns a borrowed reference, or null on failure
// (the Python error is printed).
PyObject* CV_CreateModule(PyModuleDef* definition, const CV_IntConstant* constants, size_t constantCount);

inline PyObject* CV_CreateModule(PyModuleDef* definition) { return CV_CreateModule(definition, nullptr, 0); }

template <size_t N>
PyObject* CV_CreateModule(PyModuleDef* definition, const CV_IntConstant (&constants)[N]) {
    return CV_CreateModule(definition, constants, N);
}

// Reports a problem of the script's making: "Module - %s, Function - %s, Error = %s\n" to the
// print list and the log. Never raises.
void PrintException(const char* module, const char* function, const char* message);

// The reports of an unregistration that found nothing to remove, formatted with the script's name.
#define CV_MSG_UNKNOWN_CALLBACK_AND_REFCON                                                              \
    "Script '%s.py' was unregistering a callback and refcon that does not exist, check refcon matches " \
    "the one that was used in registering."
#define CV_MSG_UNKNOWN_CALLBACK "Script '%s.py' was unregistering a callback that does not exist."

// Formats the message first (cut to 4095 characters).
void PrintExceptionf(const char* module, const char* function, const char* format, ...)
    __attribute__((format(printf, 3, 4)));

// The name a script gave itself in its XPluginStart, for messages about it.
void CV_GetScriptNameForMessages(PyObject* scriptId, char* outName /* 256 bytes */);

// A script's refcon or an SDK handle as the pointer-sized word it stands for. False with the
// Python error set when the object is not an integer.
bool CV_PointerWord(PyObject* object, void** word);

// Output arguments are None (the SDK gets no buffer) or a list that receives the value; anything
// else raises TypeError "expected sequence".
bool CV_CheckOutputList(PyObject* object);
// Puts a value into an output argument: appended to an empty list, else stored as item 0; nothing
// for None. Takes the new reference of `value` in every case. False with the Python error set.
bool CV_StoreOutput(PyObject* list, PyObject* value);
// Appends a value to a list; takes the new reference of `value`. False with the Python error set.
bool CV_AppendOutput(PyObject* list, PyObject* value);

// Every SDK call a binding makes runs inside this guard: an exception becomes a "Parameter Error"
// report and the failure value is returned to the script.
#define CV_SDK_GUARD(module, function, failure, ...)                    \
    try {                                                               \
        __VA_ARGS__;                                                    \
    } catch (...) {                                                     \
        PrintException(module, function, "Parameter Error");           \
        return failure;                                                 \
    }
