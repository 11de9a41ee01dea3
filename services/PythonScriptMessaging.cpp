// The script module PythonScriptMessaging.
#include "BindingModules.h"
#include "BindingSupport.h"

namespace {

PyMethodDef PythonScriptMessagingMethods[] = {
    {nullptr, nullptr, 0, nullptr},
};

PyModuleDef PythonScriptMessagingModule = {PyModuleDef_HEAD_INIT, "PythonScriptMessaging", nullptr, -1, PythonScriptMessagingMethods};

}  // namespace

PyObject* initPythonScriptMessaging() { return CV_CreateModule(&PythonScriptMessagingModule); }
