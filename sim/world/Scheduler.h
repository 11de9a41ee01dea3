// The frame's callbacks: held commands, flight loops (before and after the flight model), the
// drawing phases and the cursor.
//
// Each frame runs, in this order: the asynchronous object loads asked for in earlier frames (their
// callbacks), the xplm_CommandContinue phase of the commands held since an earlier frame, the
// before-flight-model loops, the after-flight-model loops (XPLMRegisterFlightLoopCallback's loops
// among them), then every drawing phase from
// xplm_Phase_FirstScene to xplm_Phase_LastCockpit, each with its before-callbacks, the sim's own
// drawing of the phase (unless a before-callback returned 0; for xplm_Phase_Window that drawing
// includes the plugin windows) and its after-callbacks, and last the cursor callback of the window
// under the mouse. Within a group, callbacks run in registration order. A callback registered during a frame runs from a later frame
// on; one unregistered or destroyed during a frame is not called again, even later in that frame.
#pragma once

#include "XPLMDisplay.h"
#include "XPLMProcessing.h"
#include "world/Export.h"

namespace xpsim {

// Runs the current frame's flight loops and drawing phases.
XPSIM_API void RunFrameCallbacks();
// How many frames the sim drew a phase itself, and how many it left out because a before-callback
// returned 0.
XPSIM_API int SimDrawnFrames(XPLMDrawingPhase phase);
XPSIM_API int SimSuppressedFrames(XPLMDrawingPhase phase);
// Live flight loops of both kinds, scheduled or not.
XPSIM_API int FlightLoopCount();

// ------------------------------------------------------------------ inside the library

void RegisterFlightLoop(XPLMFlightLoop_f callback, float interval, void* refcon);
void UnregisterFlightLoop(XPLMFlightLoop_f callback, void* refcon);
void SetFlightLoopInterval(XPLMFlightLoop_f callback, float interval, int relativeToNow, void* refcon);
XPLMFlightLoopID CreateFlightLoop(const XPLMCreateFlightLoop_t* params);
void DestroyFlightLoop(XPLMFlightLoopID id);
void ScheduleFlightLoop(XPLMFlightLoopID id, float interval, int relativeToNow);

int RegisterDrawCallback(XPLMDrawCallback_f callback, XPLMDrawingPhase phase, int wantsBefore, void* refcon);
int UnregisterDrawCallback(XPLMDrawCallback_f callback, XPLMDrawingPhase phase, int wantsBefore,
                           void* refcon);

int ForgetFlightLoopsOf(int plugin);
int ForgetDrawCallbacksOf(int plugin);
void ResetScheduler();

}  // namespace xpsim
