// XPLMProcessing: simulated time and flight loops.
#include "XPLMProcessing.h"

#include "world/Scheduler.h"
#include "world/World.h"

float XPLMGetElapsedTime(void) { return float(xpsim::SimTime()); }

int XPLMGetCycleNumber(void) { return xpsim::FrameNumber(); }

void XPLMRegisterFlightLoopCallback(XPLMFlightLoop_f inFlightLoop, float inInterval, void* inRefcon) {
    xpsim::RegisterFlightLoop(inFlightLoop, inInterval, inRefcon);
}

void XPLMUnregisterFlightLoopCallback(XPLMFlightLoop_f inFlightLoop, void* inRefcon) {
    xpsim::UnregisterFlightLoop(inFlightLoop, inRefcon);
}

void XPLMSetFlightLoopCallbackInterval(XPLMFlightLoop_f inFlightLoop, float inInterval, int inRelativeToNow,
                                       void* inRefcon) {
    xpsim::SetFlightLoopInterval(inFlightLoop, inInterval, inRelativeToNow, inRefcon);
}

XPLMFlightLoopID XPLMCreateFlightLoop(XPLMCreateFlightLoop_t* inParams) { return xpsim::CreateFlightLoop(inParams); }

void XPLMDestroyFlightLoop(XPLMFlightLoopID inFlightLoopID) { xpsim::DestroyFlightLoop(inFlightLoopID); }

void XPLMScheduleFlightLoop(XPLMFlightLoopID inFlightLoopID, float inInterval, int inRelativeToNow) {
    xpsim::ScheduleFlightLoop(inFlightLoopID, inInterval, inRelativeToNow);
}
