#ifndef _XPLMGraphics_h_
#define _XPLMGraphics_h_

/*
 * XPLMGraphics.h - helpers for drawing with OpenGL inside the simulator:
 * managing shared OpenGL state and textures, converting between world and
 * local coordinates, and drawing text in the simulator's fonts.
 */

#include "XPLMDefs.h"

#ifdef __cplusplus
extern "C" {
#endif

/***************************************************************************
 * X-PLANE GRAPHICS
 ***************************************************************************/

/*
 * XPLMTextureID
 * Textures owned by X-Plane that plugins may bind.
 */
enum {
     /* The texture holding the user-interface bitmaps. */
     xplm_Tex_GeneralInterface                = 0,
     /* The user aircraft's paint (livery). */
     xplm_Tex_AircraftPaint                   = 1,
     /* The user aircraft's lit (night) texture. */
     xplm_Tex_AircraftLiteMap                 = 2
};
typedef int XPLMTextureID;

/*
 * XPLMSetGraphicsState
 * Sets the OpenGL state X-Plane tracks (fog, number of texture units,
 * lighting, alpha test, alpha blend, depth test, depth write). Use this
 * instead of changing those states directly.
 */
XPLM_API void                 XPLMSetGraphicsState(
                                   int                  inEnableFog,
                                   int                  inNumberTexUnits,
                                   int                  inEnableLighting,
                                   int                  inEnableAlphaTesting,
                                   int                  inEnableAlphaBlending,
                                   int                  inEnableDepthTesting,
                                   int                  inEnableDepthWriting);

/*
 * XPLMBindTexture2d
 * Binds a 2-d texture to a texture unit, keeping X-Plane's cache of the
 * binding in sync.
 */
XPLM_API void                 XPLMBindTexture2d(
                                   int                  inTextureNum,
                                   int                  inTextureUnit);

/*
 * XPLMGenerateTextureNumbers
 * Allocates inCount OpenGL texture names that will not clash with
 * X-Plane's own.
 */
XPLM_API void                 XPLMGenerateTextureNumbers(
                                   int *                outTextureIDs,
                                   int                  inCount);

/*
 * XPLMGetTexture
 * Returns the OpenGL texture name of one of X-Plane's textures.
 */
XPLM_API int                  XPLMGetTexture(
                                   XPLMTextureID        inTexture);

/*
 * XPLMWorldToLocal
 * Converts latitude/longitude (degrees) and elevation (metres MSL) to
 * local OpenGL coordinates (metres).
 */
XPLM_API void                 XPLMWorldToLocal(
                                   double               inLatitude,
                                   double               inLongitude,
                                   double               inAltitude,
                                   double *             outX,
                                   double *             outY,
                                   double *             outZ);

/*
 * XPLMLocalToWorld
 * Converts local OpenGL coordinates back to latitude, longitude and
 * elevation.
 */
XPLM_API void                 XPLMLocalToWorld(
                                   double               inX,
                                   double               inY,
                                   double               inZ,
                                   double *             outLatitude,
                                   double *             outLongitude,
                                   double *             outAltitude);

/*
 * XPLMDrawTranslucentDarkBox
 * Draws the dark translucent rectangle X-Plane uses behind text.
 */
XPLM_API void                 XPLMDrawTranslucentDarkBox(
                                   int                  inLeft,
                                   int                  inTop,
                                   int                  inRight,
                                   int                  inBottom);

/***************************************************************************
 * X-PLANE TEXT
 ***************************************************************************/

/*
 * XPLMFontID
 * Fonts available for XPLMDrawString / XPLMDrawNumber. Only
 * xplmFont_Basic (and, from 2.00, xplmFont_Proportional) are reliable.
 */
enum {
     /* Monospaced user-interface font. */
     xplmFont_Basic                           = 0,
     /* The remaining fonts are legacy panel/radio fonts. */
     xplmFont_Menus                           = 1,
     xplmFont_Metal                           = 2,
     xplmFont_Led                             = 3,
     xplmFont_LedWide                         = 4,
     xplmFont_PanelHUD                        = 5,
     xplmFont_PanelEFIS                       = 6,
     xplmFont_PanelGPS                        = 7,
     xplmFont_RadiosGA                        = 8,
     xplmFont_RadiosBC                        = 9,
     xplmFont_RadiosHM                        = 10,
     xplmFont_RadiosGANarrow                  = 11,
     xplmFont_RadiosBCNarrow                  = 12,
     xplmFont_RadiosHMNarrow                  = 13,
     xplmFont_Timer                           = 14,
     xplmFont_FullRound                       = 15,
     xplmFont_SmallRound                      = 16,
     xplmFont_Menus_Localized                 = 17
#if defined(XPLM200)
     /* Proportional user-interface font. */
    ,xplmFont_Proportional                    = 18
#endif /* XPLM200 */
};
typedef int XPLMFontID;

/*
 * XPLMDrawString
 * Draws a NUL-terminated string with its lower-left corner at the given
 * pixel. inColorRGB points at three floats (0..1). If inWordWrapWidth is
 * not NULL the text wraps at that many pixels.
 */
XPLM_API void                 XPLMDrawString(
                                   float *              inColorRGB,
                                   int                  inXOffset,
                                   int                  inYOffset,
                                   char *               inChar,
                                   int *                inWordWrapWidth,    /* Can be NULL */
                                   XPLMFontID           inFontID);

/*
 * XPLMDrawNumber
 * Draws a number with the given count of digits and decimals, optionally
 * with a sign.
 */
XPLM_API void                 XPLMDrawNumber(
                                   float *              inColorRGB,
                                   int                  inXOffset,
                                   int                  inYOffset,
                                   double               inValue,
                                   int                  inDigits,
                                   int                  inDecimals,
                                   int                  inShowSign,
                                   XPLMFontID           inFontID);

#if defined(XPLM200)
/*
 * XPLMGetFontDimensions
 * Reports a font's character width and height and whether it only has
 * digits (any pointer may be NULL).
 */
XPLM_API void                 XPLMGetFontDimensions(
                                   XPLMFontID           inFontID,
                                   int *                outCharWidth,    /* Can be NULL */
                                   int *                outCharHeight,    /* Can be NULL */
                                   int *                outDigitsOnly);    /* Can be NULL */
#endif /* XPLM200 */

#if defined(XPLM200)
/*
 * XPLMMeasureString
 * Returns the width in pixels of the first inNumChars characters of a
 * string drawn in the given font.
 */
XPLM_API float                XPLMMeasureString(
                                   XPLMFontID           inFontID,
                                   const char *         inChar,
                                   int                  inNumChars);
#endif /* XPLM200 */

#ifdef __cplusplus
}
#endif

#endif /* _XPLMGraphics_h_ */
