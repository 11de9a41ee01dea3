#ifndef _XPLMScenery_h_
#define _XPLMScenery_h_

/*
 * XPLMScenery.h - terrain height probing, loading and drawing OBJ models,
 * and looking up objects in the scenery library. All of it arrived with
 * SDK 2.00; asynchronous loading with 2.10.
 */

#include "XPLMDefs.h"

#ifdef __cplusplus
extern "C" {
#endif

#if defined(XPLM200)
/***************************************************************************
 * Terrain Y-Testing
 ***************************************************************************/

/*
 * XPLMProbeType
 * Algorithm used by a terrain probe.
 */
enum {
     /* Finds the highest terrain along the vertical through a point. */
     xplm_ProbeY                              = 0
};
typedef int XPLMProbeType;

/*
 * XPLMProbeResult
 * Outcome of a terrain probe.
 */
enum {
     /* Terrain was hit; the info structure is filled in. */
     xplm_ProbeHitTerrain                     = 0,
     /* Bad call: wrong structSize, invalid probe or type mismatch. */
     xplm_ProbeError                          = 1,
     /* No terrain under the point. */
     xplm_ProbeMissed                         = 2
};
typedef int XPLMProbeResult;

/*
 * XPLMProbeRef
 * Opaque handle to a terrain probe.
 */
typedef void * XPLMProbeRef;

/*
 * XPLMProbeInfo_t
 * Result of a terrain probe, in local OpenGL coordinates. Set structSize
 * to sizeof(XPLMProbeInfo_t) before probing.
 */
typedef struct {
     /* Size of this structure in bytes. */
     int                       structSize;
     /* Point where the terrain was hit. */
     float                     locationX;
     float                     locationY;
     float                     locationZ;
     /* Terrain surface normal at that point. */
     float                     normalX;
     float                     normalY;
     float                     normalZ;
     /* Velocity of the surface there (m/s), e.g. a moving carrier deck. */
     float                     velocityX;
     float                     velocityY;
     float                     velocityZ;
     /* 1 if the surface is water. */
     int                       is_wet;
} XPLMProbeInfo_t;

/*
 * XPLMCreateProbe
 * Creates a terrain probe of the given type.
 */
XPLM_API XPLMProbeRef         XPLMCreateProbe(
                                   XPLMProbeType        inProbeType);

/*
 * XPLMDestroyProbe
 * Frees a terrain probe.
 */
XPLM_API void                 XPLMDestroyProbe(
                                   XPLMProbeRef         inProbe);

/*
 * XPLMProbeTerrainXYZ
 * Probes the terrain at a local-coordinate point and fills in outInfo.
 */
XPLM_API XPLMProbeResult      XPLMProbeTerrainXYZ(
                                   XPLMProbeRef         inProbe,
                                   float                inX,
                                   float                inY,
                                   float                inZ,
                                   XPLMProbeInfo_t *    outInfo);

#endif /* XPLM200 */

#if defined(XPLM200)
/***************************************************************************
 * Object Drawing
 ***************************************************************************/

/*
 * XPLMObjectRef
 * Opaque handle to a loaded OBJ model.
 */
typedef void * XPLMObjectRef;

/*
 * XPLMDrawInfo_t
 * Position and orientation of one object instance for XPLMDrawObjects.
 * Set structSize to sizeof(XPLMDrawInfo_t).
 */
typedef struct {
     /* Size of this structure in bytes. */
     int                       structSize;
     /* Location in local OpenGL coordinates. */
     float                     x;
     float                     y;
     float                     z;
     /* Rotation in degrees: pitch up, heading clockwise, roll. */
     float                     pitch;
     float                     heading;
     float                     roll;
} XPLMDrawInfo_t;

#if defined(XPLM210)
/*
 * XPLMObjectLoaded_f
 * Called when an asynchronous object load finishes; inObject is NULL if
 * the load failed.
 */
typedef void (* XPLMObjectLoaded_f)(
                                   XPLMObjectRef        inObject,
                                   void *               inRefcon);
#endif /* XPLM210 */

/*
 * XPLMLoadObject
 * Loads an OBJ file (path relative to the X-Plane folder) and returns a
 * handle, or NULL on failure. Blocks until loaded.
 */
XPLM_API XPLMObjectRef        XPLMLoadObject(
                                   const char *         inPath);

#if defined(XPLM210)
/*
 * XPLMLoadObjectAsync
 * Starts loading an OBJ file in the background; inCallback receives the
 * result later.
 */
XPLM_API void                 XPLMLoadObjectAsync(
                                   const char *         inPath,
                                   XPLMObjectLoaded_f   inCallback,
                                   void *               inRefcon);
#endif /* XPLM210 */

/*
 * XPLMDrawObjects
 * Draws inCount instances of an object (3-d draw callbacks only).
 * lighting selects night lighting; earth_relative = 1 keeps the objects
 * level with the curved earth.
 */
XPLM_API void                 XPLMDrawObjects(
                                   XPLMObjectRef        inObject,
                                   int                  inCount,
                                   XPLMDrawInfo_t *     inLocations,
                                   int                  lighting,
                                   int                  earth_relative);

/*
 * XPLMUnloadObject
 * Releases an object obtained from XPLMLoadObject(Async).
 */
XPLM_API void                 XPLMUnloadObject(
                                   XPLMObjectRef        inObject);

#endif /* XPLM200 */

#if defined(XPLM200)
/***************************************************************************
 * Library Access
 ***************************************************************************/

/*
 * XPLMLibraryEnumerator_f
 * Receives each real file path matched by XPLMLookupObjects.
 */
typedef void (* XPLMLibraryEnumerator_f)(
                                   const char *         inFilePath,
                                   void *               inRef);

/*
 * XPLMLookupObjects
 * Resolves a virtual library path at a location to the real object
 * files, calling the enumerator for each. Returns how many were found.
 */
XPLM_API int                  XPLMLookupObjects(
                                   const char *         inPath,
                                   float                inLatitude,
                                   float                inLongitude,
                                   XPLMLibraryEnumerator_f enumerator,
                                   void *               ref);

#endif /* XPLM200 */

#ifdef __cplusplus
}
#endif

#endif /* _XPLMScenery_h_ */
