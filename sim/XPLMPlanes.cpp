// XPLMPlanes: the user's aircraft and other aircraft.
#include "XPLMPlanes.h"

#include <string>

#include "world/World.h"

namespace {

// The SDK's buffer sizes for XPLMGetNthAircraftModel: 256 for the file name, 512 for the path.
constexpr size_t kFileNameBufferSize = 256;
constexpr size_t kPathBufferSize = 512;

}  // namespace

void XPLMGetNthAircraftModel(int inIndex, char* outFileName, char* outPath) {
    if (outFileName) outFileName[0] = '\0';
    if (outPath) outPath[0] = '\0';
    if (inIndex < 0) {
        xpsim::ReportMisuse("XPLMGetNthAircraftModel", "negative aircraft index " + std::to_string(inIndex));
        return;
    }
    // Only the user's aircraft (index 0) is loaded; other slots are empty.
    if (inIndex != 0) return;
    if (outFileName) xpsim::CopyOut(outFileName, kFileNameBufferSize, xpsim::UserAircraftFile());
    if (outPath) xpsim::CopyOut(outPath, kPathBufferSize, xpsim::UserAircraftFolder() + xpsim::UserAircraftFile());
}

// ------------------------------------------------------------------ not yet simulated

void XPLMSetUsersAircraft(const char * inAircraftPath) {
    xpsim::NotYetSimulated("XPLMSetUsersAircraft");
}

void XPLMPlaceUserAtAirport(const char * inAirportCode) {
    xpsim::NotYetSimulated("XPLMPlaceUserAtAirport");
}

void XPLMCountAircraft(int * outTotalAircraft, int * outActiveAircraft, XPLMPluginID * outController) {
    xpsim::NotYetSimulated("XPLMCountAircraft");
    if (outTotalAircraft) *outTotalAircraft = 0;
    if (outActiveAircraft) *outActiveAircraft = 0;
    if (outController) *outController = 0;
}

int XPLMAcquirePlanes(char ** inAircraft, XPLMPlanesAvailable_f inCallback, void * inRefcon) {
    xpsim::NotYetSimulated("XPLMAcquirePlanes");
    return 0;
}

void XPLMReleasePlanes(void) {
    xpsim::NotYetSimulated("XPLMReleasePlanes");
}

void XPLMSetActiveAircraftCount(int inCount) {
    xpsim::NotYetSimulated("XPLMSetActiveAircraftCount");
}

void XPLMSetAircraftModel(int inIndex, const char * inAircraftPath) {
    xpsim::NotYetSimulated("XPLMSetAircraftModel");
}

void XPLMDisableAIForPlane(int inPlaneIndex) {
    xpsim::NotYetSimulated("XPLMDisableAIForPlane");
}

void XPLMDrawAircraft(int inPlaneIndex, float inX, float inY, float inZ, float inPitch, float inRoll, float inYaw, int inFullDraw, XPLMPlaneDrawState_t * inDrawStateInfo) {
    xpsim::NotYetSimulated("XPLMDrawAircraft");
}

void XPLMReinitUsersPlane(void) {
    xpsim::NotYetSimulated("XPLMReinitUsersPlane");
}
