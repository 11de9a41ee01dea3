// XPLMScenery: terrain probes and objects.
#include "XPLMScenery.h"

#include "world/World.h"

// ------------------------------------------------------------------ not yet simulated

XPLMProbeRef XPLMCreateProbe(XPLMProbeType inProbeType) {
    xpsim::NotYetSimulated("XPLMCreateProbe");
    return nullptr;
}

void XPLMDestroyProbe(XPLMProbeRef inProbe) {
    xpsim::NotYetSimulated("XPLMDestroyProbe");
}

XPLMProbeResult XPLMProbeTerrainXYZ(XPLMProbeRef inProbe, float inX, float inY, float inZ, XPLMProbeInfo_t * outInfo) {
    xpsim::NotYetSimulated("XPLMProbeTerrainXYZ");
    return xplm_ProbeError;
}

XPLMObjectRef XPLMLoadObject(const char * inPath) {
    xpsim::NotYetSimulated("XPLMLoadObject");
    return nullptr;
}

void XPLMLoadObjectAsync(const char * inPath, XPLMObjectLoaded_f inCallback, void * inRefcon) {
    xpsim::NotYetSimulated("XPLMLoadObjectAsync");
}

void XPLMDrawObjects(XPLMObjectRef inObject, int inCount, XPLMDrawInfo_t * inLocations, int lighting, int earth_relative) {
    xpsim::NotYetSimulated("XPLMDrawObjects");
}

void XPLMUnloadObject(XPLMObjectRef inObject) {
    xpsim::NotYetSimulated("XPLMUnloadObject");
}

int XPLMLookupObjects(const char * inPath, float inLatitude, float inLongitude, XPLMLibraryEnumerator_f enumerator, void * ref) {
    xpsim::NotYetSimulated("XPLMLookupObjects");
    return 0;
}
