#ifndef _XPLMPlugin_h_
#define _XPLMPlugin_h_

/*
 * XPLMPlugin.h - finding, examining, enabling and messaging plugins, and
 * opting in to optional plugin-system features.
 *
 * The XPLM_MSG_* message numbers X-Plane sends to plugins are defined in
 * XPLMDefs.h, which this header includes.
 */

#include "XPLMDefs.h"

#ifdef __cplusplus
extern "C" {
#endif

/***************************************************************************
 * FINDING PLUGINS
 ***************************************************************************/

/*
 * XPLMGetMyID
 * Returns the ID of the calling plugin.
 */
XPLM_API XPLMPluginID         XPLMGetMyID(void);

/*
 * XPLMCountPlugins
 * Returns how many plugins are loaded, enabled or not.
 */
XPLM_API int                  XPLMCountPlugins(void);

/*
 * XPLMGetNthPlugin
 * Returns the ID of the plugin at a 0-based index (in no particular order).
 */
XPLM_API XPLMPluginID         XPLMGetNthPlugin(
                                   int                  inIndex);

/*
 * XPLMFindPluginByPath
 * Returns the plugin loaded from the given absolute file path, or
 * XPLM_NO_PLUGIN_ID.
 */
XPLM_API XPLMPluginID         XPLMFindPluginByPath(
                                   const char *         inPath);

/*
 * XPLMFindPluginBySignature
 * Returns the plugin with the given signature, or XPLM_NO_PLUGIN_ID.
 */
XPLM_API XPLMPluginID         XPLMFindPluginBySignature(
                                   const char *         inSignature);

/*
 * XPLMGetPluginInfo
 * Copies a plugin's name, file path, signature and description into the
 * given buffers (each at least 256 bytes; any may be NULL).
 */
XPLM_API void                 XPLMGetPluginInfo(
                                   XPLMPluginID         inPlugin,
                                   char *               outName,    /* Can be NULL */
                                   char *               outFilePath,    /* Can be NULL */
                                   char *               outSignature,    /* Can be NULL */
                                   char *               outDescription);    /* Can be NULL */

/***************************************************************************
 * ENABLING/DISABLING PLUG-INS
 ***************************************************************************/

/*
 * XPLMIsPluginEnabled
 * Returns 1 if the plugin is enabled.
 */
XPLM_API int                  XPLMIsPluginEnabled(
                                   XPLMPluginID         inPluginID);

/*
 * XPLMEnablePlugin
 * Enables a plugin; returns 1 if it accepted being enabled.
 */
XPLM_API int                  XPLMEnablePlugin(
                                   XPLMPluginID         inPluginID);

/*
 * XPLMDisablePlugin
 * Disables a plugin.
 */
XPLM_API void                 XPLMDisablePlugin(
                                   XPLMPluginID         inPluginID);

/*
 * XPLMReloadPlugins
 * Unloads and reloads every plugin, after the current callback returns.
 */
XPLM_API void                 XPLMReloadPlugins(void);

/***************************************************************************
 * INTERPLUGIN MESSAGING
 ***************************************************************************/

/*
 * XPLMSendMessageToPlugin
 * Delivers a message to one plugin's XPluginReceiveMessage, or to every
 * plugin when inPlugin is XPLM_NO_PLUGIN_ID.
 */
XPLM_API void                 XPLMSendMessageToPlugin(
                                   XPLMPluginID         inPlugin,
                                   int                  inMessage,
                                   void *               inParam);

/***************************************************************************
 * Plugin Features API
 ***************************************************************************/

/*
 * XPLMFeatureEnumerator_f
 * Called once per feature name by XPLMEnumerateFeatures.
 */
typedef void (* XPLMFeatureEnumerator_f)(
                                   const char *         inFeature,
                                   void *               inRef);

/*
 * XPLMHasFeature
 * Returns 1 if the running XPLM knows the named feature.
 */
XPLM_API int                  XPLMHasFeature(
                                   const char *         inFeature);

/*
 * XPLMIsFeatureEnabled
 * Returns 1 if the named feature is enabled for the calling plugin.
 */
XPLM_API int                  XPLMIsFeatureEnabled(
                                   const char *         inFeature);

/*
 * XPLMEnableFeature
 * Turns a named feature on (1) or off (0) for the calling plugin.
 */
XPLM_API void                 XPLMEnableFeature(
                                   const char *         inFeature,
                                   int                  inEnable);

/*
 * XPLMEnumerateFeatures
 * Calls inEnumerator with the name of every feature the XPLM supports.
 */
XPLM_API void                 XPLMEnumerateFeatures(
                                   XPLMFeatureEnumerator_f inEnumerator,
                                   void *               inRef);

#ifdef __cplusplus
}
#endif

#endif /* _XPLMPlugin_h_ */
