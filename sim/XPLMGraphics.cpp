// XPLMGraphics: graphics state, textures, coordinates and text drawing. The coordinates are the local
// frame of world/Position.h; the rest acts on world/Graphics.h and draws into the frame's drawing
// record.
#include "XPLMGraphics.h"

#include "world/Graphics.h"
#include "world/Position.h"

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

void XPLMSetGraphicsState(int inEnableFog, int inNumberTexUnits, int inEnableLighting, int inEnableAlphaTesting,
                          int inEnableAlphaBlending, int inEnableDepthTesting, int inEnableDepthWriting) {
    xpsim::SetGraphicsState(inEnableFog, inNumberTexUnits, inEnableLighting, inEnableAlphaTesting, inEnableAlphaBlending,
                            inEnableDepthTesting, inEnableDepthWriting);
}

void XPLMBindTexture2d(int inTextureNum, int inTextureUnit) { xpsim::BindTexture2d(inTextureNum, inTextureUnit); }

void XPLMGenerateTextureNumbers(int * outTextureIDs, int inCount) {
    xpsim::GenerateTextureNumbers(outTextureIDs, inCount);
}

int XPLMGetTexture(XPLMTextureID inTexture) { return xpsim::GetTexture(inTexture); }

void XPLMDrawTranslucentDarkBox(int inLeft, int inTop, int inRight, int inBottom) {
    xpsim::DrawTranslucentDarkBox(inLeft, inTop, inRight, inBottom);
}

void XPLMDrawString(float * inColorRGB, int inXOffset, int inYOffset, char * inChar, int * inWordWrapWidth, XPLMFontID inFontID) {
    xpsim::DrawString(inColorRGB, inXOffset, inYOffset, inChar, inWordWrapWidth, inFontID);
}

void XPLMDrawNumber(float * inColorRGB, int inXOffset, int inYOffset, double inValue, int inDigits, int inDecimals, int inShowSign, XPLMFontID inFontID) {
    xpsim::DrawNumber(inColorRGB, inXOffset, inYOffset, inValue, inDigits, inDecimals, inShowSign, inFontID);
}

void XPLMGetFontDimensions(XPLMFontID inFontID, int * outCharWidth, int * outCharHeight, int * outDigitsOnly) {
    xpsim::GetFontDimensions(inFontID, outCharWidth, outCharHeight, outDigitsOnly);
}

float XPLMMeasureString(XPLMFontID inFontID, const char * inChar, int inNumChars) {
    return xpsim::MeasureString(inFontID, inChar, inNumChars);
}
