// XPLMPlanes: the user's aircraft and other aircraft.
#include "XPLMPlanes.h"

#include "world/Aircraft.h"

void XPLMSetUsersAircraft(const char* inAircraftPath) { xpsim::SetUsersAircraft(inAircraftPath); }

void XPLMPlaceUserAtAirport(const char* inAirportCode) { xpsim::PlaceUserAtAirport(inAirportCode); }

void XPLMCountAircraft(int* outTotalAircraft, int* outActiveAircraft, XPLMPluginID* outController) {
    if (outTotalAircraft) *outTotalAircraft = xpsim::kAircraftSlots;
    if (outActiveAircraft) *outActiveAircraft = xpsim::ActiveAircraftCount();
    if (outController) *outController = xpsim::AircraftController();
}

void XPLMGetNthAircraftModel(int inIndex, char* outFileName, char* outPath) {
    xpsim::GetNthAircraftModel(inIndex, outFileName, outPath);
}

int XPLMAcquirePlanes(char** inAircraft, XPLMPlanesAvailable_f inCallback, void* inRefcon) {
    return xpsim::AcquirePlanes(inAircraft, inCallback, inRefcon);
}

void XPLMReleasePlanes(void) { xpsim::ReleasePlanes(); }

void XPLMSetActiveAircraftCount(int inCount) { xpsim::SetActiveAircraftCount(inCount); }

void XPLMSetAircraftModel(int inIndex, const char* inAircraftPath) {
    xpsim::SetAircraftModel(inIndex, inAircraftPath);
}

void XPLMDisableAIForPlane(int inPlaneIndex) { xpsim::DisableAIForPlane(inPlaneIndex); }

void XPLMDrawAircraft(int inPlaneIndex, float inX, float inY, float inZ, float inPitch, float inRoll, float inYaw,
                      int inFullDraw, XPLMPlaneDrawState_t* inDrawStateInfo) {
    xpsim::DrawAircraft(inPlaneIndex, inX, inY, inZ, inPitch, inRoll, inYaw, inFullDraw, inDrawStateInfo);
}

void XPLMReinitUsersPlane(void) { xpsim::ReinitUsersPlane(); }
