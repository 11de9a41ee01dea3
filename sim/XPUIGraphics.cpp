// XPUIGraphics: drawing the simulator's user interface elements.
#include "XPUIGraphics.h"

#include "world/World.h"

// ------------------------------------------------------------------ not yet simulated

void XPDrawWindow(int inX1, int inY1, int inX2, int inY2, XPWindowStyle inStyle) {
    xpsim::NotYetSimulated("XPDrawWindow");
}

void XPGetWindowDefaultDimensions(XPWindowStyle inStyle, int * outWidth, int * outHeight) {
    xpsim::NotYetSimulated("XPGetWindowDefaultDimensions");
    if (outWidth) *outWidth = 0;
    if (outHeight) *outHeight = 0;
}

void XPDrawElement(int inX1, int inY1, int inX2, int inY2, XPElementStyle inStyle, int inLit) {
    xpsim::NotYetSimulated("XPDrawElement");
}

void XPGetElementDefaultDimensions(XPElementStyle inStyle, int * outWidth, int * outHeight, int * outCanBeLit) {
    xpsim::NotYetSimulated("XPGetElementDefaultDimensions");
    if (outWidth) *outWidth = 0;
    if (outHeight) *outHeight = 0;
    if (outCanBeLit) *outCanBeLit = 0;
}

void XPDrawTrack(int inX1, int inY1, int inX2, int inY2, int inMin, int inMax, int inValue, XPTrackStyle inTrackStyle, int inLit) {
    xpsim::NotYetSimulated("XPDrawTrack");
}

void XPGetTrackDefaultDimensions(XPTrackStyle inStyle, int * outWidth, int * outCanBeLit) {
    xpsim::NotYetSimulated("XPGetTrackDefaultDimensions");
    if (outWidth) *outWidth = 0;
    if (outCanBeLit) *outCanBeLit = 0;
}

void XPGetTrackMetrics(int inX1, int inY1, int inX2, int inY2, int inMin, int inMax, int inValue, XPTrackStyle inTrackStyle, int * outIsVertical, int * outDownBtnSize, int * outDownPageSize, int * outThumbSize, int * outUpPageSize, int * outUpBtnSize) {
    xpsim::NotYetSimulated("XPGetTrackMetrics");
    if (outIsVertical) *outIsVertical = 0;
    if (outDownBtnSize) *outDownBtnSize = 0;
    if (outDownPageSize) *outDownPageSize = 0;
    if (outThumbSize) *outThumbSize = 0;
    if (outUpPageSize) *outUpPageSize = 0;
    if (outUpBtnSize) *outUpBtnSize = 0;
}
