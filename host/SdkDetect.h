// Finding which SDK level the running simulator offers. Functions added after SDK 1.02 are not
// linked directly but reached through these pointers, filled from the simulator's XPLM library;
// a null pointer means the simulator lacks the function.
#pragma once

#include "XPLMCamera.h"
#include "XPLMDataAccess.h"
#include "XPLMDisplay.h"
#include "XPLMGraphics.h"
#include "XPLMMenus.h"
#include "XPLMPlugin.h"
#include "XPLMProcessing.h"
#include "XPLMScenery.h"
#include "XPLMUtilities.h"

#define CV_SDK_POINTER(name) extern decltype(&name) name##_ptr;
#define CV_SDK_OPTIONAL_FUNCTIONS(X)                                                               \
    X(XPLMCreateWindowEx) X(XPLMMeasureString) X(XPLMCreateProbe) X(XPLMDestroyProbe)               \
    X(XPLMProbeTerrainXYZ) X(XPLMLoadObject) X(XPLMDrawObjects) X(XPLMUnloadObject)                 \
    X(XPLMLookupObjects) X(XPLMSetErrorCallback) X(XPLMLoadDataFile) X(XPLMSaveDataFile)            \
    X(XPLMFindCommand) X(XPLMCommandBegin) X(XPLMCommandEnd) X(XPLMCommandOnce)                     \
    X(XPLMCreateCommand) X(XPLMRegisterCommandHandler) X(XPLMUnregisterCommandHandler)              \
    X(XPLMHasFeature) X(XPLMIsFeatureEnabled) X(XPLMEnableFeature) X(XPLMEnumerateFeatures)         \
    X(XPLMRemoveMenuItem) X(XPLMCreateFlightLoop) X(XPLMDestroyFlightLoop)                          \
    X(XPLMScheduleFlightLoop) X(XPLMLoadObjectAsync)

CV_SDK_POINTER(XPLMFindSymbol)
CV_SDK_OPTIONAL_FUNCTIONS(CV_SDK_POINTER)
#undef CV_SDK_POINTER

// Opens a library with every symbol resolved at once and made global; prints "dlerror: ..." on failure.
void* XPLoadDLL(const char* path);
// Looks a symbol up in a library opened by XPLoadDLL; null for a null handle or a missing symbol.
void* XPFindSymbol(void* handle, const char* name);
// Closes a library opened by XPLoadDLL.
void XPUnloadDLL(void* handle);

// 1 when the library at xplmPath offers XPLMFindSymbol (SDK 2.00 or later); then every optional
// function pointer is looked up through the simulator. 0 otherwise, with every pointer null.
int FoundSDK200(const char* xplmPath);
