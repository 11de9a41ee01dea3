// XPLMScenery: terrain probes, objects and the scenery library.
#include "XPLMScenery.h"

#include "world/Objects.h"
#include "world/SceneryLibrary.h"
#include "world/Terrain.h"

XPLMProbeRef XPLMCreateProbe(XPLMProbeType inProbeType) { return xpsim::CreateProbe(inProbeType); }

void XPLMDestroyProbe(XPLMProbeRef inProbe) { xpsim::DestroyProbe(inProbe); }

XPLMProbeResult XPLMProbeTerrainXYZ(XPLMProbeRef inProbe, float inX, float inY, float inZ, XPLMProbeInfo_t* outInfo) {
    return xpsim::ProbeTerrain(inProbe, inX, inY, inZ, outInfo);
}

XPLMObjectRef XPLMLoadObject(const char* inPath) { return xpsim::LoadObject(inPath); }

void XPLMLoadObjectAsync(const char* inPath, XPLMObjectLoaded_f inCallback, void* inRefcon) {
    xpsim::LoadObjectAsync(inPath, inCallback, inRefcon);
}

void XPLMDrawObjects(XPLMObjectRef inObject, int inCount, XPLMDrawInfo_t* inLocations, int lighting,
                     int earth_relative) {
    xpsim::DrawObjects(inObject, inCount, inLocations, lighting, earth_relative);
}

void XPLMUnloadObject(XPLMObjectRef inObject) { xpsim::UnloadObject(inObject); }

int XPLMLookupObjects(const char* inPath, float inLatitude, float inLongitude, XPLMLibraryEnumerator_f enumerator,
                      void* ref) {
    return xpsim::LookupObjects(inPath, inLatitude, inLongitude, enumerator, ref);
}
