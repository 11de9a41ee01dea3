// The script module XPLMMenus: menus in the simulator's menu bar whose handler is a script's
// method. XPLMCreateMenu records the handler in MenuCallbackList and gives the simulator the
// trampoline CV_MenuCallback with the record as the menu's refcon; item refcons go to the
// simulator as they are and come back to the handler through the trampoline.
#include <Python.h>

#include <iterator>

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

PyObject* PY_XPLMFindPluginsMenu(PyObject* self, PyObject* args) {
    if (!PyArg_ParseTuple(args, "")) return nullptr;
    XPLMMenuID menu = nullptr;
    CV_SDK_GUARD(kModule, "XPLMFindPluginsMenu", CV_IntResult(0), menu = XPLMFindPluginsMenu());
    return CV_HandleResult(menu);
}

// A menu is held under its id with the record its handler is called through. Two menus created
// with one handler leave the second menu's id in the first menu's record, so destroying the second
// removes the first one's record from the list; that record stays allocated while the first menu
// is still there and calls with it.
PyObject* PY_XPLMCreateMenu(PyObject* self, PyObject* args) {
    PyObject *scriptId = nullptr, *handler = nullptr;
    const char* name = nullptr;
    int parentItem = 0;
    void *parent = nullptr, *menuRef = nullptr;
    if (!PyArg_ParseTuple(args, "OsO&iOO&", &scriptId, &name, CV_PointerArg, &parent, &parentItem, &handler,
                          CV_PointerArg, &menuRef))
        return nullptr;

    _CallbackList* entry = CVTestTable->AddCallback(&MenuCallbackList, scriptId, nullptr, handler, menuRef);
    XPLMMenuID menu = nullptr;
    CV_SDK_GUARD(kModule, "XPLMCreateMenu", CV_IntResult(0),
                 menu = XPLMCreateMenu(name, parent, parentItem, CV_MenuCallback, entry));
    if (menu != nullptr) CV_Hold(&MenuCallbackList, menu, entry);
    CVTestTable->UpdateCallback(&MenuCallbackList, scriptId, handler, menu);

    if (gCV_DebugCallbacks)
        CV_DebugCallbackTrace("XPLMCreateMenu",
                              CV_FormatText("pScriptId = %lx, inName = %s, inParentMenu = %lx, inParentItem = %d, "
                                            "inMenuRef = %ld\n",
                                            CV_Hex(scriptId), name, CV_Hex(parent), parentItem, CV_Dec(menuRef)),
                              {MenuCallbackList});
    return CV_HandleResult(menu);
}

PyObject* PY_XPLMDestroyMenu(PyObject* self, PyObject* args) {
    const char* const function = "XPLMDestroyMenu";
    PyObject* scriptId = nullptr;
    XPLMMenuID menu = nullptr;
    if (!PyArg_ParseTuple(args, "OO&", &scriptId, CV_PointerArg, &menu)) return nullptr;

    char scriptName[256];
    CV_GetScriptNameForMessages(scriptId, scriptName);
    // Only the script that created a menu can destroy it; another script's call leaves it.
    int index = 0;
    _CallbackList* entry = CVTestTable->FindCallback(MenuCallbackList, scriptId, menu, nullptr, &index);
    if (!CV_Unregister(kModule, function, &MenuCallbackList, entry, index, scriptName, CV_MatchedBy::Handle, [&] {
            XPLMDestroyMenu(menu);
            CV_Release(&MenuCallbackList, menu);
        }))
        return CV_IntResult(0);

    if (gCV_DebugCallbacks)
        CV_DebugCallbackTrace(function,
                              CV_FormatText("pScriptId = %lx, Script Name = %s, inMenuID = %lx\n", CV_Hex(scriptId),
                                            scriptName, CV_Hex(menu)),
                              {MenuCallbackList});
    return CV_IntResult(1);
}

// SDK 2.10.
PyObject* PY_XPLMRemoveMenuItem(PyObject* self, PyObject* args) {
    CV_REQUIRE_SDK(kModule, Sdk210, XPLMRemoveMenuItem);
    int index = 0;
    XPLMMenuID menu = nullptr;
    if (!PyArg_ParseTuple(args, "O&i", CV_PointerArg, &menu, &index)) return nullptr;
    CV_SDK_GUARD(kModule, "XPLMRemoveMenuItem", CV_IntResult(0), XPLMRemoveMenuItem_ptr(menu, index));
    return CV_IntResult(1);
}

CV_PLAIN_BINDING(kModule, XPLMClearAllMenuItems)

PyObject* PY_XPLMAppendMenuItem(PyObject* self, PyObject* args) {
    const char* itemName = nullptr;
    int forceEnglish = 0;
    XPLMMenuID menu = nullptr;
    void* itemRef = nullptr;
    if (!PyArg_ParseTuple(args, "O&sO&i", CV_PointerArg, &menu, &itemName, CV_PointerArg, &itemRef, &forceEnglish))
        return nullptr;
    int index = 0;
    CV_SDK_GUARD(kModule, "XPLMAppendMenuItem", CV_IntResult(0),
                 index = XPLMAppendMenuItem(menu, itemName, itemRef, forceEnglish));
    return CV_IntResult(index);
}

CV_PLAIN_BINDING(kModule, XPLMAppendMenuSeparator)

PyObject* PY_XPLMSetMenuItemName(PyObject* self, PyObject* args) {
    int index = 0, forceEnglish = 0;
    const char* itemName = nullptr;
    XPLMMenuID menu = nullptr;
    if (!PyArg_ParseTuple(args, "O&isi", CV_PointerArg, &menu, &index, &itemName, &forceEnglish)) return nullptr;
    CV_SDK_GUARD(kModule, "XPLMSetMenuItemName", CV_IntResult(0),
                 XPLMSetMenuItemName(menu, index, itemName, forceEnglish));
    return CV_IntResult(1);
}

// XPLMCheckMenuItem and XPLMEnableMenuItem: a menu, an item and one int.
template <void (*Sdk)(XPLMMenuID, int, int)>
PyObject* SetItemState(PyObject* args, const char* function) {
    int index = 0, state = 0;
    XPLMMenuID menu = nullptr;
    if (!PyArg_ParseTuple(args, "O&ii", CV_PointerArg, &menu, &index, &state)) return nullptr;
    CV_SDK_GUARD(kModule, function, CV_IntResult(0), Sdk(menu, index, state));
    return CV_IntResult(1);
}

PyObject* PY_XPLMCheckMenuItem(PyObject* self, PyObject* args) {
    return SetItemState<XPLMCheckMenuItem>(args, "XPLMCheckMenuItem");
}

PyObject* PY_XPLMCheckMenuItemState(PyObject* self, PyObject* args) {
    int index = 0;
    XPLMMenuID menu = nullptr;
    if (!PyArg_ParseTuple(args, "O&i", CV_PointerArg, &menu, &index)) return nullptr;
    XPLMMenuCheck check = xplm_Menu_NoCheck;
    CV_SDK_GUARD(kModule, "XPLMCheckMenuItemState", CV_IntResult(0), XPLMCheckMenuItemState(menu, index, &check));
    return CV_IntResult(check);
}

PyObject* PY_XPLMEnableMenuItem(PyObject* self, PyObject* args) {
    return SetItemState<XPLMEnableMenuItem>(args, "XPLMEnableMenuItem");
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

}  // namespace

PyObject* initXPLMMenus() { return CV_CreateModule("XPLMMenus", XPLMMenusMethods, XPLMMenusConstants); }
