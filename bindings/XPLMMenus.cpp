// The script module XPLMMenus: menus in the simulator's menu bar whose handler is a script's
// method. XPLMCreateMenu records the handler in MenuCallbackList and gives the simulator the
// trampoline CV_MenuCallback with the record as the menu's refcon; item refcons go to the
// simulator as they are and come back to the handler through the trampoline.
#include <Python.h>

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

#include "BindingModules.h"
#include "BindingSupport.h"
#include "CV_ScriptTable.h"
#include "CallbackDispatch.h"
#include "CallbackRegistry.h"
#include "Paths.h"
#include "SdkDetect.h"
#include "XPLMMenus.h"

namespace {

const char* const kModule = "XPLMMenus";

// Installed in this order, each under its SDK name.
const CV_IntConstant XPLMMenusConstants[] = {
    // Menu item check states.
    {"xplm_Menu_NoCheck", 0},
    {"xplm_Menu_Unchecked", 1},
    {"xplm_Menu_Checked", 2},
};

PyObject* IntResult(long value) { return PyLong_FromLong(value); }

// The menus the simulator holds, each with the record its handler is called through. Two menus
// created with one handler leave the second menu's id in the first menu's record, so destroying
// the second removes the first one's record from the list; that record stays allocated while the
// first menu is still there and calls with it.
std::vector<std::pair<XPLMMenuID, _CallbackList*>> gScriptMenus;

bool MenuRecordInUse(const _CallbackList* entry) {
    for (const auto& menu : gScriptMenus)
        if (menu.second == entry) return true;
    return false;
}

PyObject* PY_XPLMFindPluginsMenu(PyObject* self, PyObject* args) {
    if (!PyArg_ParseTuple(args, "")) return nullptr;
    XPLMMenuID menu = nullptr;
    CV_SDK_GUARD(kModule, "XPLMFindPluginsMenu", IntResult(0), menu = XPLMFindPluginsMenu());
    return PyLong_FromVoidPtr(menu);
}

PyObject* PY_XPLMCreateMenu(PyObject* self, PyObject* args) {
    PyObject *scriptId = nullptr, *parentObject = nullptr, *handler = nullptr, *menuRefObject = nullptr;
    const char* name = nullptr;
    int parentItem = 0;
    if (!PyArg_ParseTuple(args, "OsOiOO", &scriptId, &name, &parentObject, &parentItem, &handler, &menuRefObject))
        return nullptr;
    void *parent = nullptr, *menuRef = nullptr;
    if (!CV_PointerWord(parentObject, &parent) || !CV_PointerWord(menuRefObject, &menuRef)) return nullptr;

    _CallbackList* entry = CVTestTable->AddCallback(&MenuCallbackList, scriptId, nullptr, handler, menuRef);
    XPLMMenuID menu = nullptr;
    CV_SDK_GUARD(kModule, "XPLMCreateMenu", IntResult(0),
                 menu = XPLMCreateMenu(name, parent, parentItem, CV_MenuCallback, entry));
    if (menu != nullptr) gScriptMenus.emplace_back(menu, entry);
    CVTestTable->UpdateCallback(&MenuCallbackList, scriptId, handler, menu);

    if (gCV_DebugCallbacks)
        CV_DebugCallbackTrace("XPLMCreateMenu",
                              CV_FormatText("pScriptId = %lx, inName = %s, inParentMenu = %lx, inParentItem = %d, "
                                            "inMenuRef = %ld\n",
                                            CV_Hex(scriptId), name, CV_Hex(parent), parentItem, CV_Dec(menuRef)),
                              {{"MenuCallbackList", MenuCallbackList.size()}});
    return PyLong_FromVoidPtr(menu);
}

PyObject* PY_XPLMDestroyMenu(PyObject* self, PyObject* args) {
    const char* const function = "XPLMDestroyMenu";
    PyObject *scriptId = nullptr, *idObject = nullptr;
    void* menu = nullptr;
    if (!PyArg_ParseTuple(args, "OO", &scriptId, &idObject) || !CV_PointerWord(idObject, &menu)) return nullptr;

    char scriptName[256];
    CV_GetScriptNameForMessages(scriptId, scriptName);
    int found = 0, index = 0;
    _CallbackList* entry = CVTestTable->FindCallback(MenuCallbackList, scriptId, menu, &found, &index);
    if (found) {
        CV_SDK_GUARD(kModule, function, IntResult(0), XPLMDestroyMenu(menu));
        gScriptMenus.erase(std::remove_if(gScriptMenus.begin(), gScriptMenus.end(),
                                          [&](const std::pair<XPLMMenuID, _CallbackList*>& m) { return m.first == menu; }),
                           gScriptMenus.end());
        if (MenuRecordInUse(entry)) {
            auto it = std::find(MenuCallbackList.begin(), MenuCallbackList.end(), entry);
            if (it != MenuCallbackList.end()) MenuCallbackList.erase(it);
        } else {
            CVTestTable->DeleteCallback(&MenuCallbackList, entry, index);
        }
    } else {
        // Only the script that created a menu can destroy it; the menu stays.
        PrintExceptionf(kModule, function, CV_MSG_UNKNOWN_CALLBACK,
                        scriptName);
    }

    if (gCV_DebugCallbacks)
        CV_DebugCallbackTrace(function,
                              CV_FormatText("pScriptId = %lx, Script Name = %s, inMenuID = %lx\n", CV_Hex(scriptId),
                                            scriptName, CV_Hex(menu)),
                              {{"MenuCallbackList", MenuCallbackList.size()}});
    return IntResult(1);
}

// SDK 2.10.
PyObject* PY_XPLMRemoveMenuItem(PyObject* self, PyObject* args) {
    const char* const function = "XPLMRemoveMenuItem";
    if (XPLMRemoveMenuItem_ptr == nullptr) {
        PrintException(kModule, function, "Not supported in SDK 1.02 or SDK 2.00");
        return IntResult(0);
    }
    PyObject* idObject = nullptr;
    int index = 0;
    void* menu = nullptr;
    if (!PyArg_ParseTuple(args, "Oi", &idObject, &index) || !CV_PointerWord(idObject, &menu)) return nullptr;
    CV_SDK_GUARD(kModule, function, IntResult(0), XPLMRemoveMenuItem_ptr(menu, index));
    return IntResult(1);
}

PyObject* PY_XPLMClearAllMenuItems(PyObject* self, PyObject* args) {
    PyObject* idObject = nullptr;
    void* menu = nullptr;
    if (!PyArg_ParseTuple(args, "O", &idObject) || !CV_PointerWord(idObject, &menu)) return nullptr;
    CV_SDK_GUARD(kModule, "XPLMClearAllMenuItems", IntResult(0), XPLMClearAllMenuItems(menu));
    return IntResult(1);
}

PyObject* PY_XPLMAppendMenuItem(PyObject* self, PyObject* args) {
    PyObject *idObject = nullptr, *itemRefObject = nullptr;
    const char* itemName = nullptr;
    int forceEnglish = 0;
    void *menu = nullptr, *itemRef = nullptr;
    if (!PyArg_ParseTuple(args, "OsOi", &idObject, &itemName, &itemRefObject, &forceEnglish) ||
        !CV_PointerWord(idObject, &menu) || !CV_PointerWord(itemRefObject, &itemRef))
        return nullptr;
    int index = 0;
    CV_SDK_GUARD(kModule, "XPLMAppendMenuItem", IntResult(0),
                 index = XPLMAppendMenuItem(menu, itemName, itemRef, forceEnglish));
    return IntResult(index);
}

PyObject* PY_XPLMAppendMenuSeparator(PyObject* self, PyObject* args) {
    PyObject* idObject = nullptr;
    void* menu = nullptr;
    if (!PyArg_ParseTuple(args, "O", &idObject) || !CV_PointerWord(idObject, &menu)) return nullptr;
    CV_SDK_GUARD(kModule, "XPLMAppendMenuSeparator", IntResult(0), XPLMAppendMenuSeparator(menu));
    return IntResult(1);
}

PyObject* PY_XPLMSetMenuItemName(PyObject* self, PyObject* args) {
    PyObject* idObject = nullptr;
    int index = 0, forceEnglish = 0;
    const char* itemName = nullptr;
    void* menu = nullptr;
    if (!PyArg_ParseTuple(args, "Oisi", &idObject, &index, &itemName, &forceEnglish) ||
        !CV_PointerWord(idObject, &menu))
        return nullptr;
    CV_SDK_GUARD(kModule, "XPLMSetMenuItemName", IntResult(0), XPLMSetMenuItemName(menu, index, itemName, forceEnglish));
    return IntResult(1);
}

PyObject* PY_XPLMCheckMenuItem(PyObject* self, PyObject* args) {
    PyObject* idObject = nullptr;
    int index = 0, check = 0;
    void* menu = nullptr;
    if (!PyArg_ParseTuple(args, "Oii", &idObject, &index, &check) || !CV_PointerWord(idObject, &menu)) return nullptr;
    CV_SDK_GUARD(kModule, "XPLMCheckMenuItem", IntResult(0), XPLMCheckMenuItem(menu, index, check));
    return IntResult(1);
}

PyObject* PY_XPLMCheckMenuItemState(PyObject* self, PyObject* args) {
    PyObject* idObject = nullptr;
    int index = 0;
    void* menu = nullptr;
    if (!PyArg_ParseTuple(args, "Oi", &idObject, &index) || !CV_PointerWord(idObject, &menu)) return nullptr;
    XPLMMenuCheck check = xplm_Menu_NoCheck;
    CV_SDK_GUARD(kModule, "XPLMCheckMenuItemState", IntResult(0), XPLMCheckMenuItemState(menu, index, &check));
    return IntResult(check);
}

PyObject* PY_XPLMEnableMenuItem(PyObject* self, PyObject* args) {
    PyObject* idObject = nullptr;
    int index = 0, enabled = 0;
    void* menu = nullptr;
    if (!PyArg_ParseTuple(args, "Oii", &idObject, &index, &enabled) || !CV_PointerWord(idObject, &menu))
        return nullptr;
    CV_SDK_GUARD(kModule, "XPLMEnableMenuItem", IntResult(0), XPLMEnableMenuItem(menu, index, enabled));
    return IntResult(1);
}

PyMethodDef XPLMMenusMethods[] = {
    {"XPLMFindPluginsMenu", PY_XPLMFindPluginsMenu, METH_VARARGS, "Find Plugins Menu."},
    {"XPLMCreateMenu", PY_XPLMCreateMenu, METH_VARARGS, "Create Menu."},
    {"XPLMDestroyMenu", PY_XPLMDestroyMenu, METH_VARARGS, "Destroy Menu."},
    {"XPLMRemoveMenuItem", PY_XPLMRemoveMenuItem, METH_VARARGS, "Remove Menu Item."},
    {"XPLMClearAllMenuItems", PY_XPLMClearAllMenuItems, METH_VARARGS, "Clear All Menu Items."},
    {"XPLMAppendMenuItem", PY_XPLMAppendMenuItem, METH_VARARGS, "Append Menu Item."},
    {"XPLMAppendMenuSeparator", PY_XPLMAppendMenuSeparator, METH_VARARGS, "Append Menu Separator."},
    {"XPLMSetMenuItemName", PY_XPLMSetMenuItemName, METH_VARARGS, "Set Menu Item Name."},
    {"XPLMCheckMenuItem", PY_XPLMCheckMenuItem, METH_VARARGS, "Check Menu Item."},
    {"XPLMCheckMenuItemState", PY_XPLMCheckMenuItemState, METH_VARARGS, "Check Menu Item State."},
    {"XPLMEnableMenuItem", PY_XPLMEnableMenuItem, METH_VARARGS, "Enable Menu Item."},
    {nullptr, nullptr, 0, nullptr},
};

PyModuleDef XPLMMenusModule = {PyModuleDef_HEAD_INIT, "XPLMMenus", nullptr, -1, XPLMMenusMethods};

}  // namespace

PyObject* initXPLMMenus() {
    return CV_CreateModule(&XPLMMenusModule, XPLMMenusConstants, std::size(XPLMMenusConstants));
}
