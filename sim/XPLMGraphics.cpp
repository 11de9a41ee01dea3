// XPLMGraphics: graphics state, textures, coordinates and text drawing.
#include "XPLMGraphics.h"

#include "world/Position.h"
#include "world/World.h"

void XPLMWorldToLocal(double inLatitude, double inLongitude, double inAltitude, double * outX, double * outY, double * outZ) {
    double x, y, z;
    xpsim::WorldToLocal(inLatitude, inLongitude, inAltitude, x, y, z);
    if (outX) *outX = x;
    if (outY) *outY = y;
    if (outZ) *outZ = z;
}

void XPLMLocalToWorld(double inX, double inY, double inZ, double * outLatitude, double * outLongitude, double * outAltitude) {
    double latitude, longitude, altitude;
    xpsim::LocalToWorld(inX, inY, inZ, latitude, longitude, altitude);
    if (outLatitude) *outLatitude = latitude;
    if (outLongitude) *outLongitude = longitude;
    if (outAltitude) *outAltitude = altitude;
}

// ------------------------------------------------------------------ not yet simulated

void XPLMSetGraphicsState(int inEnableFog, int inNumberTexUnits, int inEnableLighting, int inEnableAlphaTesting, int inEnableAlphaBlending, int inEnableDepthTesting, int inEnableDepthWriting) {
    xpsim::NotYetSimulated("XPLMSetGraphicsState");
}

void XPLMBindTexture2d(int inTextureNum, int inTextureUnit) {
    xpsim::NotYetSimulated("XPLMBindTexture2d");
}

void XPLMGenerateTextureNumbers(int * outTextureIDs, int inCount) {
    xpsim::NotYetSimulated("XPLMGenerateTextureNumbers");
    if (outTextureIDs) *outTextureIDs = 0;
}

int XPLMGetTexture(XPLMTextureID inTexture) {
    xpsim::NotYetSimulated("XPLMGetTexture");
    return 0;
}

void XPLMDrawTranslucentDarkBox(int inLeft, int inTop, int inRight, int inBottom) {
    xpsim::NotYetSimulated("XPLMDrawTranslucentDarkBox");
}

void XPLMDrawString(float * inColorRGB, int inXOffset, int inYOffset, char * inChar, int * inWordWrapWidth, XPLMFontID inFontID) {
    xpsim::NotYetSimulated("XPLMDrawString");
}

void XPLMDrawNumber(float * inColorRGB, int inXOffset, int inYOffset, double inValue, int inDigits, int inDecimals, int inShowSign, XPLMFontID inFontID) {
    xpsim::NotYetSimulated("XPLMDrawNumber");
}

void XPLMGetFontDimensions(XPLMFontID inFontID, int * outCharWidth, int * outCharHeight, int * outDigitsOnly) {
    xpsim::NotYetSimulated("XPLMGetFontDimensions");
    if (outCharWidth) *outCharWidth = 0;
    if (outCharHeight) *outCharHeight = 0;
    if (outDigitsOnly) *outDigitsOnly = 0;
}

float XPLMMeasureString(XPLMFontID inFontID, const char * inChar, int inNumChars) {
    xpsim::NotYetSimulated("XPLMMeasureString");
    return 0.0f;
}
