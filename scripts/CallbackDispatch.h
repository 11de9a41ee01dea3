// The relay from the simulator's callbacks to the scripts' Python callables.
//
// For every callback kind there is a trampoline (CV_...), which the binding modules hand to the
// simulator and which only forwards its arguments, and a dispatcher (CallUser...), which reaches
// the registration's record through the refcon, builds the script's argument tuple, calls the
// script and converts its result. No script failure ever reaches the simulator: a Python error is
// printed and the kind's default result is returned.
//
// Dispatchers of kinds whose SDK callback returns nothing return an int: 0 when the script was
// not called (missing or disabled), 1 otherwise.
#pragma once

#include <cstdint>

#include "XPLMCamera.h"
#include "XPLMDataAccess.h"
#include "XPLMDisplay.h"
#include "XPLMMenus.h"
#include "XPLMPlanes.h"
#include "XPLMPlugin.h"
#include "XPLMProcessing.h"
#include "XPLMScenery.h"
#include "XPLMUtilities.h"
#include "XPWidgetDefs.h"

// ---------------------------------------------------------------- trampolines

float CV_FlightLoopCallback(float inElapsedSinceLastCall, float inElapsedTimeSinceLastFlightLoop, int inCounter,
                            void* inRefcon);
int CV_DrawCallback(XPLMDrawingPhase inPhase, int inIsBefore, void* inRefcon);
int CV_KeySnifferCallback(char inChar, XPLMKeyFlags inFlags, char inVirtualKey, void* inRefcon);
void CV_HotKeyCallback(void* inRefcon);
void CV_DrawWindowCallback(XPLMWindowID inWindowID, void* inRefcon);
void CV_KeyCallback(XPLMWindowID inWindowID, char inKey, XPLMKeyFlags inFlags, char inVirtualKey, void* inRefcon,
                    int losingFocus);
int CV_MouseClickCallback(XPLMWindowID inWindowID, int x, int y, XPLMMouseStatus inMouse, void* inRefcon);
XPLMCursorStatus CV_CursorStatusCallback(XPLMWindowID inWindowID, int x, int y, void* inRefcon);
int CV_MouseWheelCallback(XPLMWindowID inWindowID, int x, int y, int wheel, int clicks, void* inRefcon);
void CV_MenuCallback(void* inMenuRef, void* inItemRef);
int CV_CommandCallback(XPLMCommandRef inCommand, XPLMCommandPhase inPhase, void* inRefcon);
// The error callback's trampoline, CV_ErrorCallback, is the plugin's own (PluginEntry.h): it
// calls CV_DispatchErrorCallbacks.
void CV_PlanesAvailableCallback(void* inRefcon);
void CV_SharedDataCallback(void* inRefcon);
void CV_FeatureEnumeratorCallback(const char* inFeature, void* inRef);
void CV_LibraryEnumeratorCallback(const char* inFilePath, void* inRef);
void CV_ObjectLoadedCallback(XPLMObjectRef inObject, void* inRefcon);
int CV_CameraControlCallback(XPLMCameraPosition_t* outCameraPosition, int inIsLosingControl, void* inRefcon);
int CV_WidgetCallback(XPWidgetMessage inMessage, XPWidgetID inWidget, intptr_t inParam1, intptr_t inParam2);

// Data accessors: the refcon is the registration's read block (getters) or write block (setters).
int CV_GetDatai_Callback(void* inRefcon);
void CV_SetDatai_Callback(void* inRefcon, int inValue);
float CV_GetDataf_Callback(void* inRefcon);
void CV_SetDataf_Callback(void* inRefcon, float inValue);
double CV_GetDatad_Callback(void* inRefcon);
void CV_SetDatad_Callback(void* inRefcon, double inValue);
int CV_GetDatavi_Callback(void* inRefcon, int* outValues, int inOffset, int inMax);
void CV_SetDatavi_Callback(void* inRefcon, int* inValues, int inOffset, int inCount);
int CV_GetDatavf_Callback(void* inRefcon, float* outValues, int inOffset, int inMax);
void CV_SetDatavf_Callback(void* inRefcon, float* inValues, int inOffset, int inCount);
int CV_GetDatab_Callback(void* inRefcon, void* outValue, int inOffset, int inMaxLength);
void CV_SetDatab_Callback(void* inRefcon, void* inValue, int inOffset, int inLength);

// ---------------------------------------------------------------- dispatchers

float CallUserFlightLoopCallback(float inElapsedSinceLastCall, float inElapsedTimeSinceLastFlightLoop,
                                 int inCounter, void* inRefcon);
int CallUserDrawCallback(XPLMDrawingPhase inPhase, int inIsBefore, void* inRefcon);
int CallUserKeySnifferCallback(char inChar, XPLMKeyFlags inFlags, char inVirtualKey, void* inRefcon);
int CallUserHotKeyCallback(void* inRefcon);
int CallUserDrawWindowCallback(XPLMWindowID inWindowID, void* inRefcon);
int CallUserKeyCallback(XPLMWindowID inWindowID, char inKey, XPLMKeyFlags inFlags, char inVirtualKey,
                        void* inRefcon, int losingFocus);
int CallUserMouseClickCallback(XPLMWindowID inWindowID, int x, int y, XPLMMouseStatus inMouse, void* inRefcon);
XPLMCursorStatus CallUserCursorStatusCallback(XPLMWindowID inWindowID, int x, int y, void* inRefcon);
int CallUserMouseWheelCallback(XPLMWindowID inWindowID, int x, int y, int wheel, int clicks, void* inRefcon);
int CallUserMenuCallback(void* inMenuRef, void* inItemRef);
int CallUserCommandCallback(XPLMCommandRef inCommand, XPLMCommandPhase inPhase, void* inRefcon);
// One error callback registration (an element of ErrorCallbackList) with one message.
int CallUserErrorCallback(const char* inMessage, void* inRefcon);
int CallUserPlanesAvailableCallback(void* inRefcon);
int CallUserSharedDataCallback(void* inRefcon);
int CallUserFeatureEnumeratorCallback(const char* inFeature, void* inRef);
int CallUserLibraryEnumeratorCallback(const char* inFilePath, void* inRef);
int CallUserObjectLoadedCallback(XPLMObjectRef inObject, void* inRefcon);
int CallUserCameraControlCallback(XPLMCameraPosition_t* outCameraPosition, int inIsLosingControl, void* inRefcon);
int CallUserWidgetCallback(XPWidgetMessage inMessage, XPWidgetID inWidget, intptr_t inParam1, intptr_t inParam2);

int CallUserGetDatai_Callback(void* inRefcon);
int CallUserSetDatai_Callback(void* inRefcon, int inValue);
float CallUserGetDataf_Callback(void* inRefcon);
int CallUserSetDataf_Callback(void* inRefcon, float inValue);
double CallUserGetDatad_Callback(void* inRefcon);
int CallUserSetDatad_Callback(void* inRefcon, double inValue);
int CallUserGetDatavi_Callback(void* inRefcon, int* outValues, int inOffset, int inMax);
int CallUserSetDatavi_Callback(void* inRefcon, int* inValues, int inOffset, int inCount);
int CallUserGetDatavf_Callback(void* inRefcon, float* outValues, int inOffset, int inMax);
int CallUserSetDatavf_Callback(void* inRefcon, float* inValues, int inOffset, int inCount);
int CallUserGetDatab_Callback(void* inRefcon, void* outValue, int inOffset, int inMaxLength);
int CallUserSetDatab_Callback(void* inRefcon, void* inValue, int inOffset, int inLength);

// Passes one SDK error message to every error callback that scripts registered, in order.
void CV_DispatchErrorCallbacks(const char* message);

// Lets go of the Python objects dispatch keeps for reuse (shared ints, the ints of handles, spare
// floats). Call when the scripts have stopped, before the interpreter is finalised.
void CV_ReleaseDispatchObjects();
