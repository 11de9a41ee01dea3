// XPLMNavigation: the navaid database, the FMS and the GPS.
#include "XPLMNavigation.h"

#include "world/Navigation.h"
#include "world/World.h"

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

// ------------------------------------------------------------------ not yet simulated

int XPLMCountFMSEntries(void) {
    xpsim::NotYetSimulated("XPLMCountFMSEntries");
    return 0;
}

int XPLMGetDisplayedFMSEntry(void) {
    xpsim::NotYetSimulated("XPLMGetDisplayedFMSEntry");
    return 0;
}

int XPLMGetDestinationFMSEntry(void) {
    xpsim::NotYetSimulated("XPLMGetDestinationFMSEntry");
    return 0;
}

void XPLMSetDisplayedFMSEntry(int inIndex) {
    xpsim::NotYetSimulated("XPLMSetDisplayedFMSEntry");
}

void XPLMSetDestinationFMSEntry(int inIndex) {
    xpsim::NotYetSimulated("XPLMSetDestinationFMSEntry");
}

void XPLMGetFMSEntryInfo(int inIndex, XPLMNavType * outType, char * outID, XPLMNavRef * outRef, int * outAltitude, float * outLat, float * outLon) {
    xpsim::NotYetSimulated("XPLMGetFMSEntryInfo");
    if (outType) *outType = 0;
    if (outID) outID[0] = '\0';
    if (outRef) *outRef = XPLM_NAV_NOT_FOUND;
    if (outAltitude) *outAltitude = 0;
    if (outLat) *outLat = 0;
    if (outLon) *outLon = 0;
}

void XPLMSetFMSEntryInfo(int inIndex, XPLMNavRef inRef, int inAltitude) {
    xpsim::NotYetSimulated("XPLMSetFMSEntryInfo");
}

void XPLMSetFMSEntryLatLon(int inIndex, float inLat, float inLon, int inAltitude) {
    xpsim::NotYetSimulated("XPLMSetFMSEntryLatLon");
}

void XPLMClearFMSEntry(int inIndex) {
    xpsim::NotYetSimulated("XPLMClearFMSEntry");
}

XPLMNavType XPLMGetGPSDestinationType(void) {
    xpsim::NotYetSimulated("XPLMGetGPSDestinationType");
    return xplm_Nav_Unknown;
}

XPLMNavRef XPLMGetGPSDestination(void) {
    xpsim::NotYetSimulated("XPLMGetGPSDestination");
    return XPLM_NAV_NOT_FOUND;
}
