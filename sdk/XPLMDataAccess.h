#ifndef _XPLMDataAccess_h_
#define _XPLMDataAccess_h_

/*
 * XPLMDataAccess.h - reading and writing simulator and plugin data through
 * named data references ("datarefs"), publishing a plugin's own datarefs,
 * and data shared between plugins.
 */

#include "XPLMDefs.h"

#ifdef __cplusplus
extern "C" {
#endif

/***************************************************************************
 * READING AND WRITING DATA
 ***************************************************************************/

/*
 * XPLMDataRef
 * Opaque handle to a dataref; look it up once by name and keep it.
 */
typedef void * XPLMDataRef;

/*
 * XPLMDataTypeID
 * Bit flags naming the type(s) a dataref can be accessed as. A dataref
 * may support several (the values are OR-ed together).
 */
enum {
     /* Type not known. */
     xplmType_Unknown                         = 0,
     /* A single 32-bit int. */
     xplmType_Int                             = 1,
     /* A single float. */
     xplmType_Float                           = 2,
     /* A single double. */
     xplmType_Double                          = 4,
     /* An array of floats. */
     xplmType_FloatArray                      = 8,
     /* An array of ints. */
     xplmType_IntArray                        = 16,
     /* A block of untyped bytes. */
     xplmType_Data                            = 32
};
typedef int XPLMDataTypeID;

/*
 * XPLMFindDataRef
 * Looks a dataref up by its path name; NULL if it does not exist.
 */
XPLM_API XPLMDataRef          XPLMFindDataRef(
                                   const char *         inDataRefName);

/*
 * XPLMCanWriteDataRef
 * Returns 1 if the dataref may be written.
 */
XPLM_API int                  XPLMCanWriteDataRef(
                                   XPLMDataRef          inDataRef);

/*
 * XPLMIsDataRefGood
 * Returns 1 if the handle still refers to live data (e.g. its owning
 * plugin has not gone away).
 */
XPLM_API int                  XPLMIsDataRefGood(
                                   XPLMDataRef          inDataRef);

/*
 * XPLMGetDataRefTypes
 * Returns the XPLMDataTypeID bits supported by the dataref.
 */
XPLM_API XPLMDataTypeID       XPLMGetDataRefTypes(
                                   XPLMDataRef          inDataRef);

/*
 * XPLMGetDatai / XPLMSetDatai
 * Read / write an int dataref (0 on read of a bad ref).
 */
XPLM_API int                  XPLMGetDatai(
                                   XPLMDataRef          inDataRef);
XPLM_API void                 XPLMSetDatai(
                                   XPLMDataRef          inDataRef,
                                   int                  inValue);

/*
 * XPLMGetDataf / XPLMSetDataf
 * Read / write a float dataref.
 */
XPLM_API float                XPLMGetDataf(
                                   XPLMDataRef          inDataRef);
XPLM_API void                 XPLMSetDataf(
                                   XPLMDataRef          inDataRef,
                                   float                inValue);

/*
 * XPLMGetDatad / XPLMSetDatad
 * Read / write a double dataref.
 */
XPLM_API double               XPLMGetDatad(
                                   XPLMDataRef          inDataRef);
XPLM_API void                 XPLMSetDatad(
                                   XPLMDataRef          inDataRef,
                                   double               inValue);

/*
 * XPLMGetDatavi
 * Copies up to inMax ints starting at element inOffset into outValues and
 * returns how many were copied. With outValues NULL, returns the array
 * length instead.
 */
XPLM_API int                  XPLMGetDatavi(
                                   XPLMDataRef          inDataRef,
                                   int *                outValues,    /* Can be NULL */
                                   int                  inOffset,
                                   int                  inMax);

/*
 * XPLMSetDatavi
 * Writes inCount ints from inValues starting at element inOffset.
 */
XPLM_API void                 XPLMSetDatavi(
                                   XPLMDataRef          inDataRef,
                                   int *                inValues,
                                   int                  inoffset,
                                   int                  inCount);

/*
 * XPLMGetDatavf
 * Float-array counterpart of XPLMGetDatavi.
 */
XPLM_API int                  XPLMGetDatavf(
                                   XPLMDataRef          inDataRef,
                                   float *              outValues,    /* Can be NULL */
                                   int                  inOffset,
                                   int                  inMax);

/*
 * XPLMSetDatavf
 * Float-array counterpart of XPLMSetDatavi.
 */
XPLM_API void                 XPLMSetDatavf(
                                   XPLMDataRef          inDataRef,
                                   float *              inValues,
                                   int                  inoffset,
                                   int                  inCount);

/*
 * XPLMGetDatab
 * Copies up to inMaxBytes bytes starting at byte inOffset into outValue
 * and returns the count copied; with outValue NULL, returns the total
 * size in bytes.
 */
XPLM_API int                  XPLMGetDatab(
                                   XPLMDataRef          inDataRef,
                                   void *               outValue,    /* Can be NULL */
                                   int                  inOffset,
                                   int                  inMaxBytes);

/*
 * XPLMSetDatab
 * Writes inLength bytes from inValue starting at byte inOffset.
 */
XPLM_API void                 XPLMSetDatab(
                                   XPLMDataRef          inDataRef,
                                   void *               inValue,
                                   int                  inOffset,
                                   int                  inLength);

/***************************************************************************
 * PUBLISHING YOUR PLUGIN'S DATA
 ***************************************************************************/

/*
 * Accessor callbacks a plugin supplies when it publishes a dataref. The
 * refcon is the read or write refcon given at registration. Array and
 * byte getters follow the same rules as XPLMGetDatavi / XPLMGetDatab
 * (NULL output buffer = return the size).
 */
typedef int (* XPLMGetDatai_f)(
                                   void *               inRefcon);
typedef void (* XPLMSetDatai_f)(
                                   void *               inRefcon,
                                   int                  inValue);
typedef float (* XPLMGetDataf_f)(
                                   void *               inRefcon);
typedef void (* XPLMSetDataf_f)(
                                   void *               inRefcon,
                                   float                inValue);
typedef double (* XPLMGetDatad_f)(
                                   void *               inRefcon);
typedef void (* XPLMSetDatad_f)(
                                   void *               inRefcon,
                                   double               inValue);
typedef int (* XPLMGetDatavi_f)(
                                   void *               inRefcon,
                                   int *                outValues,    /* Can be NULL */
                                   int                  inOffset,
                                   int                  inMax);
typedef void (* XPLMSetDatavi_f)(
                                   void *               inRefcon,
                                   int *                inValues,
                                   int                  inOffset,
                                   int                  inCount);
typedef int (* XPLMGetDatavf_f)(
                                   void *               inRefcon,
                                   float *              outValues,    /* Can be NULL */
                                   int                  inOffset,
                                   int                  inMax);
typedef void (* XPLMSetDatavf_f)(
                                   void *               inRefcon,
                                   float *              inValues,
                                   int                  inOffset,
                                   int                  inCount);
typedef int (* XPLMGetDatab_f)(
                                   void *               inRefcon,
                                   void *               outValue,    /* Can be NULL */
                                   int                  inOffset,
                                   int                  inMaxLength);
typedef void (* XPLMSetDatab_f)(
                                   void *               inRefcon,
                                   void *               inValue,
                                   int                  inOffset,
                                   int                  inLength);

/*
 * XPLMRegisterDataAccessor
 * Publishes a dataref backed by the given callbacks (pass NULL for the
 * types not supported). Returns the new dataref.
 */
XPLM_API XPLMDataRef          XPLMRegisterDataAccessor(
                                   const char *         inDataName,
                                   XPLMDataTypeID       inDataType,
                                   int                  inIsWritable,
                                   XPLMGetDatai_f       inReadInt,
                                   XPLMSetDatai_f       inWriteInt,
                                   XPLMGetDataf_f       inReadFloat,
                                   XPLMSetDataf_f       inWriteFloat,
                                   XPLMGetDatad_f       inReadDouble,
                                   XPLMSetDatad_f       inWriteDouble,
                                   XPLMGetDatavi_f      inReadIntArray,
                                   XPLMSetDatavi_f      inWriteIntArray,
                                   XPLMGetDatavf_f      inReadFloatArray,
                                   XPLMSetDatavf_f      inWriteFloatArray,
                                   XPLMGetDatab_f       inReadData,
                                   XPLMSetDatab_f       inWriteData,
                                   void *               inReadRefcon,
                                   void *               inWriteRefcon);

/*
 * XPLMUnregisterDataAccessor
 * Withdraws a dataref published with XPLMRegisterDataAccessor.
 */
XPLM_API void                 XPLMUnregisterDataAccessor(
                                   XPLMDataRef          inDataRef);

/***************************************************************************
 * SHARING DATA BETWEEN MULTIPLE PLUGINS
 ***************************************************************************/

/*
 * XPLMDataChanged_f
 * Called when another plugin changes a shared dataref.
 */
typedef void (* XPLMDataChanged_f)(
                                   void *               inRefcon);

/*
 * XPLMShareData
 * Joins (creating if needed) a shared dataref owned by the XPLM. Returns
 * 1 on success, 0 if it already exists with a different type.
 */
XPLM_API int                  XPLMShareData(
                                   const char *         inDataName,
                                   XPLMDataTypeID       inDataType,
                                   XPLMDataChanged_f    inNotificationFunc,
                                   void *               inNotificationRefcon);

/*
 * XPLMUnshareData
 * Leaves shared data; arguments must match the XPLMShareData call.
 * Returns 1 if a matching share was found.
 */
XPLM_API int                  XPLMUnshareData(
                                   const char *         inDataName,
                                   XPLMDataTypeID       inDataType,
                                   XPLMDataChanged_f    inNotificationFunc,
                                   void *               inNotificationRefcon);

#ifdef __cplusplus
}
#endif

#endif /* _XPLMDataAccess_h_ */
