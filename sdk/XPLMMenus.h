#ifndef _XPLMMenus_h_
#define _XPLMMenus_h_

/*
 * XPLMMenus.h - adding menus and menu items to the simulator's menu bar,
 * normally under the Plugins menu.
 */

#include "XPLMDefs.h"

#ifdef __cplusplus
extern "C" {
#endif

/***************************************************************************
 * XPLM MENUS
 ***************************************************************************/

/*
 * XPLMMenuCheck
 * Check-mark state of a menu item.
 */
enum {
     /* No check box shown. */
     xplm_Menu_NoCheck                        = 0,
     /* Check box shown, unchecked. */
     xplm_Menu_Unchecked                      = 1,
     /* Check box shown, checked. */
     xplm_Menu_Checked                        = 2
};
typedef int XPLMMenuCheck;

/*
 * XPLMMenuID
 * Opaque handle to a menu.
 */
typedef void * XPLMMenuID;

/*
 * XPLMMenuHandler_f
 * Called when the user picks an item: receives the menu's refcon and the
 * picked item's refcon.
 */
typedef void (* XPLMMenuHandler_f)(
                                   void *               inMenuRef,
                                   void *               inItemRef);

/*
 * XPLMFindPluginsMenu
 * Returns the simulator's Plugins menu.
 */
XPLM_API XPLMMenuID           XPLMFindPluginsMenu(void);

/*
 * XPLMCreateMenu
 * Creates a menu attached as a submenu to item inParentItem of
 * inParentMenu (pass NULL to put it in the menu bar). Returns the menu or
 * NULL.
 */
XPLM_API XPLMMenuID           XPLMCreateMenu(
                                   const char *         inName,
                                   XPLMMenuID           inParentMenu,
                                   int                  inParentItem,
                                   XPLMMenuHandler_f    inHandler,
                                   void *               inMenuRef);

/*
 * XPLMDestroyMenu
 * Destroys a menu this plugin created, along with its submenus.
 */
XPLM_API void                 XPLMDestroyMenu(
                                   XPLMMenuID           inMenuID);

/*
 * XPLMClearAllMenuItems
 * Removes every item from a menu.
 */
XPLM_API void                 XPLMClearAllMenuItems(
                                   XPLMMenuID           inMenuID);

/*
 * XPLMAppendMenuItem
 * Adds an item at the end of a menu and returns its index (negative on
 * failure). inForceEnglish is ignored by most versions.
 */
XPLM_API int                  XPLMAppendMenuItem(
                                   XPLMMenuID           inMenu,
                                   const char *         inItemName,
                                   void *               inItemRef,
                                   int                  inForceEnglish);

/*
 * XPLMAppendMenuSeparator
 * Adds a separator line at the end of a menu.
 */
XPLM_API void                 XPLMAppendMenuSeparator(
                                   XPLMMenuID           inMenu);

/*
 * XPLMSetMenuItemName
 * Renames the item at inIndex.
 */
XPLM_API void                 XPLMSetMenuItemName(
                                   XPLMMenuID           inMenu,
                                   int                  inIndex,
                                   const char *         inItemName,
                                   int                  inForceEnglish);

/*
 * XPLMCheckMenuItem
 * Sets the check-mark state of an item.
 */
XPLM_API void                 XPLMCheckMenuItem(
                                   XPLMMenuID           inMenu,
                                   int                  index,
                                   XPLMMenuCheck        inCheck);

/*
 * XPLMCheckMenuItemState
 * Reads the check-mark state of an item.
 */
XPLM_API void                 XPLMCheckMenuItemState(
                                   XPLMMenuID           inMenu,
                                   int                  index,
                                   XPLMMenuCheck *      outCheck);

/*
 * XPLMEnableMenuItem
 * Enables (1) or greys out (0) an item.
 */
XPLM_API void                 XPLMEnableMenuItem(
                                   XPLMMenuID           inMenu,
                                   int                  index,
                                   int                  enabled);

#if defined(XPLM210)
/*
 * XPLMRemoveMenuItem
 * Removes one item; later items move up by one index.
 */
XPLM_API void                 XPLMRemoveMenuItem(
                                   XPLMMenuID           inMenu,
                                   int                  inIndex);
#endif /* XPLM210 */

#ifdef __cplusplus
}
#endif

#endif /* _XPLMMenus_h_ */
