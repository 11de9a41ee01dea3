// XPLMNavigation: the navaid database, the FMS and the GPS.
#include "XPLMNavigation.h"

#include "world/Navigation.h"

XPLMNavRef XPLMGetFirstNavAid(void) { return xpsim::FirstNavAid(); }

XPLMNavRef XPLMGetNextNavAid(XPLMNavRef inNavAidRef) { return xpsim::NextNavAid(inNavAidRef); }

XPLMNavRef XPLMFindFirstNavAidOfType(XPLMNavType inType) { return xpsim::FirstNavAidOfType(inType); }

XPLMNavRef XPLMFindLastNavAidOfType(XPLMNavType inType) { return xpsim::LastNavAidOfType(inType); }

XPLMNavRef XPLMFindNavAid(const char* inNameFragment, const char* inIDFragment, float* inLat, float* inLon,
                          int* inFrequency, XPLMNavType inType) {
    return xpsim::FindNavAid(inNameFragment, inIDFragment, inLat, inLon, inFrequency, inType);
}

void XPLMGetNavAidInfo(XPLMNavRef inRef, XPLMNavType* outType, float* outLatitude, float* outLongitude,
                       float* outHeight, int* outFrequency, float* outHeading, char* outID, char* outName,
                       char* outReg) {
    xpsim::GetNavAidInfo(inRef, outType, outLatitude, outLongitude, outHeight, outFrequency, outHeading, outID,
                         outName, outReg);
}

int XPLMCountFMSEntries(void) { return xpsim::CountFmsEntries(); }

int XPLMGetDisplayedFMSEntry(void) { return xpsim::DisplayedFmsEntry(); }

int XPLMGetDestinationFMSEntry(void) { return xpsim::DestinationFmsEntry(); }

void XPLMSetDisplayedFMSEntry(int inIndex) { xpsim::SetDisplayedFmsEntry(inIndex); }

void XPLMSetDestinationFMSEntry(int inIndex) { xpsim::SetDestinationFmsEntry(inIndex); }

void XPLMGetFMSEntryInfo(int inIndex, XPLMNavType* outType, char* outID, XPLMNavRef* outRef, int* outAltitude,
                         float* outLat, float* outLon) {
    xpsim::GetFmsEntryInfo(inIndex, outType, outID, outRef, outAltitude, outLat, outLon);
}

void XPLMSetFMSEntryInfo(int inIndex, XPLMNavRef inRef, int inAltitude) {
    xpsim::SetFmsEntryInfo(inIndex, inRef, inAltitude);
}

void XPLMSetFMSEntryLatLon(int inIndex, float inLat, float inLon, int inAltitude) {
    xpsim::SetFmsEntryLatLon(inIndex, inLat, inLon, inAltitude);
}

void XPLMClearFMSEntry(int inIndex) { xpsim::ClearFmsEntry(inIndex); }

XPLMNavType XPLMGetGPSDestinationType(void) { return xpsim::GpsDestinationType(); }

XPLMNavRef XPLMGetGPSDestination(void) { return xpsim::GpsDestination(); }
