// XPLMNavigation: the navaid database, the FMS and the GPS.
#include "XPLMNavigation.h"

#include "world/World.h"

// ------------------------------------------------------------------ not yet simulated

XPLMNavRef XPLMGetFirstNavAid(void) {
    xpsim::NotYetSimulated("XPLMGetFirstNavAid");
    return XPLM_NAV_NOT_FOUND;
}

XPLMNavRef XPLMGetNextNavAid(XPLMNavRef inNavAidRef) {
    xpsim::NotYetSimulated("XPLMGetNextNavAid");
    return XPLM_NAV_NOT_FOUND;
}

XPLMNavRef XPLMFindFirstNavAidOfType(XPLMNavType inType) {
    xpsim::NotYetSimulated("XPLMFindFirstNavAidOfType");
    return XPLM_NAV_NOT_FOUND;
}

XPLMNavRef XPLMFindLastNavAidOfType(XPLMNavType inType) {
    xpsim::NotYetSimulated("XPLMFindLastNavAidOfType");
    return XPLM_NAV_NOT_FOUND;
}

XPLMNavRef XPLMFindNavAid(const char * inNameFragment, const char * inIDFragment, float * inLat, float * inLon, int * inFrequency, XPLMNavType inType) {
    xpsim::NotYetSimulated("XPLMFindNavAid");
    return XPLM_NAV_NOT_FOUND;
}

void XPLMGetNavAidInfo(XPLMNavRef inRef, XPLMNavType * outType, float * outLatitude, float * outLongitude, float * outHeight, int * outFrequency, float * outHeading, char * outID, char * outName, char * outReg) {
    xpsim::NotYetSimulated("XPLMGetNavAidInfo");
    if (outType) *outType = 0;
    if (outLatitude) *outLatitude = 0;
    if (outLongitude) *outLongitude = 0;
    if (outHeight) *outHeight = 0;
    if (outFrequency) *outFrequency = 0;
    if (outHeading) *outHeading = 0;
    if (outID) outID[0] = '\0';
    if (outName) outName[0] = '\0';
    if (outReg) outReg[0] = '\0';
}

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
