#ifndef _XPLMNavigation_h_
#define _XPLMNavigation_h_

/*
 * XPLMNavigation.h - searching the navigation database (airports, navaids,
 * fixes), and reading/programming the FMS flight plan and GPS destination.
 */

#include "XPLMDefs.h"

#ifdef __cplusplus
extern "C" {
#endif

/***************************************************************************
 * NAVIGATION DATABASE ACCESS
 ***************************************************************************/

/*
 * XPLMNavType
 * Kinds of navigation database entry. Bit flags, so several can be
 * combined in a search.
 */
enum {
     xplm_Nav_Unknown                         = 0,
     xplm_Nav_Airport                         = 1,
     xplm_Nav_NDB                             = 2,
     xplm_Nav_VOR                             = 4,
     xplm_Nav_ILS                             = 8,
     xplm_Nav_Localizer                       = 16,
     xplm_Nav_GlideSlope                      = 32,
     xplm_Nav_OuterMarker                     = 64,
     xplm_Nav_MiddleMarker                    = 128,
     xplm_Nav_InnerMarker                     = 256,
     xplm_Nav_Fix                             = 512,
     xplm_Nav_DME                             = 1024,
     /* A bare latitude/longitude point (FMS only). */
     xplm_Nav_LatLon                          = 2048
};
typedef int XPLMNavType;

/*
 * XPLMNavRef
 * Index of a navigation database entry; entries of one type are stored
 * contiguously.
 */
typedef int XPLMNavRef;

/* Returned when no entry matches. */
#define XPLM_NAV_NOT_FOUND   -1

/*
 * XPLMGetFirstNavAid
 * Returns the first entry in the database (for iteration).
 */
XPLM_API XPLMNavRef           XPLMGetFirstNavAid(void);

/*
 * XPLMGetNextNavAid
 * Returns the entry after inNavAidRef, or XPLM_NAV_NOT_FOUND at the end.
 */
XPLM_API XPLMNavRef           XPLMGetNextNavAid(
                                   XPLMNavRef           inNavAidRef);

/*
 * XPLMFindFirstNavAidOfType
 * Returns the first entry of a single type.
 */
XPLM_API XPLMNavRef           XPLMFindFirstNavAidOfType(
                                   XPLMNavType          inType);

/*
 * XPLMFindLastNavAidOfType
 * Returns the last entry of a single type.
 */
XPLM_API XPLMNavRef           XPLMFindLastNavAidOfType(
                                   XPLMNavType          inType);

/*
 * XPLMFindNavAid
 * Searches by name fragment, ID fragment, frequency (nav frequencies in
 * 10 kHz units, NDB in kHz) and/or position; NULL skips a criterion.
 * With a position the nearest match is returned, otherwise the last one.
 */
XPLM_API XPLMNavRef           XPLMFindNavAid(
                                   const char *         inNameFragment,    /* Can be NULL */
                                   const char *         inIDFragment,    /* Can be NULL */
                                   float *              inLat,    /* Can be NULL */
                                   float *              inLon,    /* Can be NULL */
                                   int *                inFrequency,    /* Can be NULL */
                                   XPLMNavType          inType);

/*
 * XPLMGetNavAidInfo
 * Reads an entry's type, position, elevation, frequency, heading, ID
 * (at least 6 bytes), name (at least 256 bytes) and whether it is inside
 * the loaded region (outReg, one byte). Any pointer may be NULL.
 */
XPLM_API void                 XPLMGetNavAidInfo(
                                   XPLMNavRef           inRef,
                                   XPLMNavType *        outType,    /* Can be NULL */
                                   float *              outLatitude,    /* Can be NULL */
                                   float *              outLongitude,    /* Can be NULL */
                                   float *              outHeight,    /* Can be NULL */
                                   int *                outFrequency,    /* Can be NULL */
                                   float *              outHeading,    /* Can be NULL */
                                   char *               outID,    /* Can be NULL */
                                   char *               outName,    /* Can be NULL */
                                   char *               outReg);    /* Can be NULL */

/***************************************************************************
 * FLIGHT MANAGEMENT COMPUTER
 ***************************************************************************/

/*
 * XPLMCountFMSEntries
 * Returns the number of entries in the FMS flight plan.
 */
XPLM_API int                  XPLMCountFMSEntries(void);

/*
 * XPLMGetDisplayedFMSEntry
 * Returns the index of the entry shown on the FMS page.
 */
XPLM_API int                  XPLMGetDisplayedFMSEntry(void);

/*
 * XPLMGetDestinationFMSEntry
 * Returns the index of the entry the aircraft is flying to.
 */
XPLM_API int                  XPLMGetDestinationFMSEntry(void);

/*
 * XPLMSetDisplayedFMSEntry
 * Selects which entry the FMS page shows.
 */
XPLM_API void                 XPLMSetDisplayedFMSEntry(
                                   int                  inIndex);

/*
 * XPLMSetDestinationFMSEntry
 * Selects which entry the aircraft flies to.
 */
XPLM_API void                 XPLMSetDestinationFMSEntry(
                                   int                  inIndex);

/*
 * XPLMGetFMSEntryInfo
 * Reads an FMS entry: type, ID, database reference, altitude (feet) and
 * position. Any pointer may be NULL.
 */
XPLM_API void                 XPLMGetFMSEntryInfo(
                                   int                  inIndex,
                                   XPLMNavType *        outType,    /* Can be NULL */
                                   char *               outID,    /* Can be NULL */
                                   XPLMNavRef *         outRef,    /* Can be NULL */
                                   int *                outAltitude,    /* Can be NULL */
                                   float *              outLat,    /* Can be NULL */
                                   float *              outLon);    /* Can be NULL */

/*
 * XPLMSetFMSEntryInfo
 * Sets an FMS entry to a database navaid at the given altitude (feet).
 */
XPLM_API void                 XPLMSetFMSEntryInfo(
                                   int                  inIndex,
                                   XPLMNavRef           inRef,
                                   int                  inAltitude);

/*
 * XPLMSetFMSEntryLatLon
 * Sets an FMS entry to a latitude/longitude point at the given altitude.
 */
XPLM_API void                 XPLMSetFMSEntryLatLon(
                                   int                  inIndex,
                                   float                inLat,
                                   float                inLon,
                                   int                  inAltitude);

/*
 * XPLMClearFMSEntry
 * Removes an FMS entry; later entries move up.
 */
XPLM_API void                 XPLMClearFMSEntry(
                                   int                  inIndex);

/***************************************************************************
 * GPS RECEIVER
 ***************************************************************************/

/*
 * XPLMGetGPSDestinationType
 * Returns the type of the GPS's current destination.
 */
XPLM_API XPLMNavType          XPLMGetGPSDestinationType(void);

/*
 * XPLMGetGPSDestination
 * Returns the database entry of the GPS's current destination.
 */
XPLM_API XPLMNavRef           XPLMGetGPSDestination(void);

#ifdef __cplusplus
}
#endif

#endif /* _XPLMNavigation_h_ */
