#ifndef _XPLMProcessing_h_
#define _XPLMProcessing_h_

/*
 * XPLMProcessing.h - periodic "flight loop" callbacks run by the
 * simulator once per frame (or at a chosen interval), and timing queries.
 * Never draw from a flight loop callback.
 */

#include "XPLMDefs.h"

#ifdef __cplusplus
extern "C" {
#endif

/***************************************************************************
 * FLIGHT LOOP CALLBACKS
 ***************************************************************************/

#if defined(XPLM210)
/*
 * XPLMFlightLoopPhaseType
 * Whether a flight loop created with XPLMCreateFlightLoop runs before or
 * after the flight model is integrated.
 */
enum {
     /* Called before the flight model runs. */
     xplm_FlightLoop_Phase_BeforeFlightModel  = 0,
     /* Called after the flight model runs. */
     xplm_FlightLoop_Phase_AfterFlightModel   = 1
};
typedef int XPLMFlightLoopPhaseType;
#endif /* XPLM210 */

#if defined(XPLM210)
/*
 * XPLMFlightLoopID
 * Opaque handle to a flight loop created with XPLMCreateFlightLoop.
 */
typedef void * XPLMFlightLoopID;
#endif /* XPLM210 */

/*
 * XPLMFlightLoop_f
 * A flight loop callback. Receives the time since this callback last ran,
 * the time since the last flight loop of any kind, a per-loop counter and
 * the refcon. The return value schedules the next call: 0 stops it,
 * a positive value means that many seconds from now, a negative value
 * means that many flight loops from now (-1 = next loop).
 */
typedef float (* XPLMFlightLoop_f)(
                                   float                inElapsedSinceLastCall,
                                   float                inElapsedTimeSinceLastFlightLoop,
                                   int                  inCounter,
                                   void *               inRefcon);

#if defined(XPLM210)
/*
 * XPLMCreateFlightLoop_t
 * Parameters for XPLMCreateFlightLoop. Set structSize to
 * sizeof(XPLMCreateFlightLoop_t).
 */
typedef struct {
     /* Size of this structure in bytes. */
     int                       structSize;
     /* When in the frame the callback runs. */
     XPLMFlightLoopPhaseType   phase;
     /* The callback itself. */
     XPLMFlightLoop_f          callbackFunc;
     /* Passed back to the callback. */
     void *                    refcon;
} XPLMCreateFlightLoop_t;
#endif /* XPLM210 */

/*
 * XPLMGetElapsedTime
 * Seconds of simulator time since X-Plane started (wall clock while not
 * paused).
 */
XPLM_API float                XPLMGetElapsedTime(void);

/*
 * XPLMGetCycleNumber
 * Returns a counter that increases by one every sim cycle.
 */
XPLM_API int                  XPLMGetCycleNumber(void);

/*
 * XPLMRegisterFlightLoopCallback
 * Registers a (pre-flight-model) flight loop callback. inInterval follows
 * the same convention as the callback's return value; 0 registers it
 * inactive.
 */
XPLM_API void                 XPLMRegisterFlightLoopCallback(
                                   XPLMFlightLoop_f     inFlightLoop,
                                   float                inInterval,
                                   void *               inRefcon);

/*
 * XPLMUnregisterFlightLoopCallback
 * Removes a callback registered with XPLMRegisterFlightLoopCallback.
 * Do not call from inside that callback.
 */
XPLM_API void                 XPLMUnregisterFlightLoopCallback(
                                   XPLMFlightLoop_f     inFlightLoop,
                                   void *               inRefcon);

/*
 * XPLMSetFlightLoopCallbackInterval
 * Reschedules a registered callback. With inRelativeToNow = 1 the
 * interval counts from now, otherwise from the callback's last run.
 */
XPLM_API void                 XPLMSetFlightLoopCallbackInterval(
                                   XPLMFlightLoop_f     inFlightLoop,
                                   float                inInterval,
                                   int                  inRelativeToNow,
                                   void *               inRefcon);

#if defined(XPLM210)
/*
 * XPLMCreateFlightLoop
 * Creates an (initially unscheduled) flight loop and returns its ID.
 */
XPLM_API XPLMFlightLoopID     XPLMCreateFlightLoop(
                                   XPLMCreateFlightLoop_t * inParams);
#endif /* XPLM210 */

#if defined(XPLM210)
/*
 * XPLMDestroyFlightLoop
 * Destroys a flight loop created with XPLMCreateFlightLoop.
 */
XPLM_API void                 XPLMDestroyFlightLoop(
                                   XPLMFlightLoopID     inFlightLoopID);
#endif /* XPLM210 */

#if defined(XPLM210)
/*
 * XPLMScheduleFlightLoop
 * Schedules a created flight loop; inInterval uses the callback return
 * convention, inRelativeToNow as in XPLMSetFlightLoopCallbackInterval.
 */
XPLM_API void                 XPLMScheduleFlightLoop(
                                   XPLMFlightLoopID     inFlightLoopID,
                                   float                inInterval,
                                   int                  inRelativeToNow);
#endif /* XPLM210 */

#ifdef __cplusplus
}
#endif

#endif /* _XPLMProcessing_h_ */
