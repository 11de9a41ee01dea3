// PythonScriptMessaging: scripts find one another, switch one another on and off, and exchange
// messages shaped like the simulator's messages between plugins. Everything reads and changes the
// script table; the module keeps no state of its own.
#include <cstring>

#include "BindingModules.h"
#include "BindingSupport.h"
#include "CV_ScriptTable.h"
#include "LogFiles.h"
#include "PythonErrors.h"

namespace {

// The table while its script ids may be handed to scripts.
bool LiveTable() { return CVTestTable != nullptr && !CVTestTable->GetScriptsReleased(); }

PyObject* Text(const char* text) { return PyUnicode_DecodeUTF8(text, static_cast<Py_ssize_t>(strlen(text)), "replace"); }

PyObject* PY_CV_CountScripts(PyObject* self, PyObject* args) {
    return PyLong_FromLong(CVTestTable ? CVTestTable->GetScriptTableSize() : 0);
}

PyObject* PY_CV_GetNthScript(PyObject* self, PyObject* args) {
    int index = 0;
    if (!PyArg_ParseTuple(args, "i", &index)) return nullptr;
    // An index outside the table names no script, and neither does any once the scripts stopped.
    PyObject* id = LiveTable() ? CVTestTable->GetScriptId(index) : nullptr;
    if (id == nullptr) Py_RETURN_NONE;
    Py_INCREF(id);
    return id;
}

PyObject* PY_CV_FindScriptBySignature(PyObject* self, PyObject* args) {
    const char* signature = nullptr;
    if (!PyArg_ParseTuple(args, "s", &signature)) return nullptr;
    PyObject* id = LiveTable() ? CVTestTable->GetScriptIdFromSignature(signature) : nullptr;
    if (id == nullptr) Py_RETURN_NONE;
    Py_INCREF(id);
    return id;
}

PyObject* PY_CV_GetScriptInfo(PyObject* self, PyObject* args) {
    PyObject* id = nullptr;
    if (!PyArg_ParseTuple(args, "O", &id)) return nullptr;
    char name[256] = {0}, signature[256] = {0}, description[256] = {0};
    if (CVTestTable) CVTestTable->GetScriptDescriptions(id, name, signature, description);
    return Py_BuildValue("(NNN)", Text(name), Text(signature), Text(description));
}

PyObject* PY_CV_IsScriptEnabled(PyObject* self, PyObject* args) {
    PyObject* id = nullptr;
    if (!PyArg_ParseTuple(args, "O", &id)) return nullptr;
    return PyLong_FromLong(CVTestTable ? CVTestTable->GetScriptEnabledStatus(id) : 0);
}

PyObject* PY_CV_EnableScript(PyObject* self, PyObject* args) {
    PyObject* id = nullptr;
    if (!PyArg_ParseTuple(args, "O", &id)) return nullptr;
    return PyLong_FromLong(CVTestTable ? CVTestTable->SetScriptEnabledStatus(id, 1) : 0);
}

PyObject* PY_CV_DisableScript(PyObject* self, PyObject* args) {
    PyObject* id = nullptr;
    if (!PyArg_ParseTuple(args, "O", &id)) return nullptr;
    if (CVTestTable) CVTestTable->SetScriptEnabledStatus(id, 0);
    return PyLong_FromLong(1);
}

// Delivers one message to one script, if it is enabled; its failures are printed, never returned.
void CallScriptReceiveMessage(PyObject* target, PyObject* sender, long message, PyObject* param) {
    if (CVTestTable == nullptr || !CVTestTable->GetScriptEnabledStatus(target)) return;
    CV_PyRef method(PyObject_GetAttrString(target, "XPluginReceiveMessage"));
    if (!method) {
        CV_PrintPythonError();
        CV_WriteToLog("Cannot find method XPluginReceiveMessage\n");
        return;
    }
    {
        CV_PyRef args(Py_BuildValue("(OlO)", sender, message, param));
        CV_PyRef result(args ? PyObject_Call(method.get(), args.get(), nullptr) : nullptr);
    }
    CV_PrintPythonError();
}

void SelectScriptMessageRecipients(bool broadcast, PyObject* target, PyObject* sender, long message, PyObject* param) {
    if (!broadcast) {
        CallScriptReceiveMessage(target, sender, message, param);
        return;
    }
    // A receiver may change the table's flags while the broadcast runs; the walk re-reads the size.
    for (int i = 0; CVTestTable && i < CVTestTable->GetScriptTableSize(); ++i)
        CallScriptReceiveMessage(CVTestTable->GetScriptId(i), sender, message, param);
}

PyObject* PY_CV_SendMessageToScript(PyObject* self, PyObject* args) {
    PyObject *sender = nullptr, *target = nullptr, *param = nullptr;
    long message = 0;
    if (!PyArg_ParseTuple(args, "OOlO", &sender, &target, &message, &param)) return nullptr;
    SelectScriptMessageRecipients(target == Py_None, target, sender, message, param);
    return PyLong_FromLong(1);
}

PyMethodDef PythonScriptMessagingMethods[] = {
    {"CV_CountScripts", PY_CV_CountScripts, METH_VARARGS, "Count the number of scripts."},
    {"CV_GetNthScript", PY_CV_GetNthScript, METH_VARARGS, "Get the Nth scripts."},
    {"CV_FindScriptBySignature", PY_CV_FindScriptBySignature, METH_VARARGS, "Find script by signature."},
    {"CV_GetScriptInfo", PY_CV_GetScriptInfo, METH_VARARGS, "Get script info."},
    {"CV_IsScriptEnabled", PY_CV_IsScriptEnabled, METH_VARARGS, "Is the script enabled."},
    {"CV_EnableScript", PY_CV_EnableScript, METH_VARARGS, "Enable the script."},
    {"CV_DisableScript", PY_CV_DisableScript, METH_VARARGS, "Disable the script."},
    {"CV_SendMessageToScript", PY_CV_SendMessageToScript, METH_VARARGS, "Send message to a script."},
    {nullptr, nullptr, 0, nullptr},
};

}  // namespace

PyObject* initPythonScriptMessaging() { return CV_CreateModule("PythonScriptMessaging", PythonScriptMessagingMethods); }
