#ifndef _XPLMDefs_h_
#define _XPLMDefs_h_

/*
 * XPLMDefs.h - basic definitions shared by every other XPLM header:
 * export/import macros, the plugin ID type, key flags and key codes.
 * Declarations follow the X-Plane plugin SDK at the 2.10 level.
 */

#ifdef __cplusplus
extern "C" {
#endif

#if IBM
#include <windows.h>
#else
#include <stdint.h>
#endif

/***************************************************************************
 * DLL DEFINITIONS
 ***************************************************************************/

/*
 * PLUGIN_API marks the entry points a plugin exports to the simulator
 * (XPluginStart, XPluginStop, XPluginEnable, XPluginDisable,
 * XPluginReceiveMessage).
 */
#ifdef __cplusplus
  #if APL
    #define PLUGIN_API extern "C" __attribute__((visibility("default")))
  #elif IBM
    #define PLUGIN_API extern "C" __declspec(dllexport)
  #elif LIN
    #define PLUGIN_API extern "C" __attribute__((visibility("default")))
  #else
    #error "Platform not defined!"
  #endif
#else
  #if APL
    #define PLUGIN_API __attribute__((visibility("default")))
  #elif IBM
    #define PLUGIN_API __declspec(dllexport)
  #elif LIN
    #define PLUGIN_API __attribute__((visibility("default")))
  #else
    #error "Platform not defined!"
  #endif
#endif

/*
 * XPLM_API marks functions implemented by the XPLM library. They always
 * have C linkage. When XPLM is defined the library itself is being built
 * and the symbols are exported; otherwise they are imported.
 */
#if IBM
  #if XPLM
    #define XPLM_API_DECL __declspec(dllexport)
  #else
    #define XPLM_API_DECL __declspec(dllimport)
  #endif
#elif APL || LIN
  #define XPLM_API_DECL __attribute__((visibility("default")))
#else
  #error "Platform not defined!"
#endif

#ifdef __cplusplus
  #define XPLM_API extern "C" XPLM_API_DECL
#else
  #define XPLM_API XPLM_API_DECL
#endif

/***************************************************************************
 * GLOBAL DEFINITIONS
 ***************************************************************************/

/* Identifies a loaded plugin. */
typedef int XPLMPluginID;

/* Returned when no plugin matches a query. */
#define XPLM_NO_PLUGIN_ID    (-1)

/* The ID used for X-Plane itself. */
#define XPLM_PLUGIN_XPLANE   (0)

/* Revision of the XPLM these headers describe (2.10). */
#define kXPLM_Version        (210)

/*
 * XPLMKeyFlags
 * Modifier and up/down bits that accompany a keystroke.
 */
enum {
     /* Shift key is held. */
     xplm_ShiftFlag                           = 1,
     /* Option (Mac) or Alt (PC) key is held. */
     xplm_OptionAltFlag                       = 2,
     /* Control key is held. */
     xplm_ControlFlag                         = 4,
     /* The key is being pressed. */
     xplm_DownFlag                            = 8,
     /* The key is being released. */
     xplm_UpFlag                              = 16
};
typedef int XPLMKeyFlags;

/***************************************************************************
 * ASCII CONTROL KEY CODES
 ***************************************************************************/

/* Character codes delivered for common non-printing keys and digits. */
#define XPLM_KEY_RETURN      13
#define XPLM_KEY_ESCAPE      27
#define XPLM_KEY_TAB         9
#define XPLM_KEY_DELETE      8
#define XPLM_KEY_LEFT        28
#define XPLM_KEY_RIGHT       29
#define XPLM_KEY_UP          30
#define XPLM_KEY_DOWN        31
#define XPLM_KEY_0           48
#define XPLM_KEY_1           49
#define XPLM_KEY_2           50
#define XPLM_KEY_3           51
#define XPLM_KEY_4           52
#define XPLM_KEY_5           53
#define XPLM_KEY_6           54
#define XPLM_KEY_7           55
#define XPLM_KEY_8           56
#define XPLM_KEY_9           57
#define XPLM_KEY_DECIMAL     46

/***************************************************************************
 * VIRTUAL KEY CODES
 ***************************************************************************/

/*
 * Platform-independent codes for physical keys; they identify a key
 * regardless of modifiers or keyboard layout. Values that are unused
 * (gaps) are reserved.
 */
#define XPLM_VK_BACK         0x08
#define XPLM_VK_TAB          0x09
#define XPLM_VK_CLEAR        0x0C
#define XPLM_VK_RETURN       0x0D
#define XPLM_VK_ESCAPE       0x1B
#define XPLM_VK_SPACE        0x20
#define XPLM_VK_PRIOR        0x21
#define XPLM_VK_NEXT         0x22
#define XPLM_VK_END          0x23
#define XPLM_VK_HOME         0x24
#define XPLM_VK_LEFT         0x25
#define XPLM_VK_UP           0x26
#define XPLM_VK_RIGHT        0x27
#define XPLM_VK_DOWN         0x28
#define XPLM_VK_SELECT       0x29
#define XPLM_VK_PRINT        0x2A
#define XPLM_VK_EXECUTE      0x2B
#define XPLM_VK_SNAPSHOT     0x2C
#define XPLM_VK_INSERT       0x2D
#define XPLM_VK_DELETE       0x2E
#define XPLM_VK_HELP         0x2F

/* Top-row digits: same values as ASCII '0'..'9'. */
#define XPLM_VK_0            0x30
#define XPLM_VK_1            0x31
#define XPLM_VK_2            0x32
#define XPLM_VK_3            0x33
#define XPLM_VK_4            0x34
#define XPLM_VK_5            0x35
#define XPLM_VK_6            0x36
#define XPLM_VK_7            0x37
#define XPLM_VK_8            0x38
#define XPLM_VK_9            0x39

/* Letters: same values as ASCII 'A'..'Z'. */
#define XPLM_VK_A            0x41
#define XPLM_VK_B            0x42
#define XPLM_VK_C            0x43
#define XPLM_VK_D            0x44
#define XPLM_VK_E            0x45
#define XPLM_VK_F            0x46
#define XPLM_VK_G            0x47
#define XPLM_VK_H            0x48
#define XPLM_VK_I            0x49
#define XPLM_VK_J            0x4A
#define XPLM_VK_K            0x4B
#define XPLM_VK_L            0x4C
#define XPLM_VK_M            0x4D
#define XPLM_VK_N            0x4E
#define XPLM_VK_O            0x4F
#define XPLM_VK_P            0x50
#define XPLM_VK_Q            0x51
#define XPLM_VK_R            0x52
#define XPLM_VK_S            0x53
#define XPLM_VK_T            0x54
#define XPLM_VK_U            0x55
#define XPLM_VK_V            0x56
#define XPLM_VK_W            0x57
#define XPLM_VK_X            0x58
#define XPLM_VK_Y            0x59
#define XPLM_VK_Z            0x5A

/* Numeric keypad. */
#define XPLM_VK_NUMPAD0      0x60
#define XPLM_VK_NUMPAD1      0x61
#define XPLM_VK_NUMPAD2      0x62
#define XPLM_VK_NUMPAD3      0x63
#define XPLM_VK_NUMPAD4      0x64
#define XPLM_VK_NUMPAD5      0x65
#define XPLM_VK_NUMPAD6      0x66
#define XPLM_VK_NUMPAD7      0x67
#define XPLM_VK_NUMPAD8      0x68
#define XPLM_VK_NUMPAD9      0x69
#define XPLM_VK_MULTIPLY     0x6A
#define XPLM_VK_ADD          0x6B
#define XPLM_VK_SEPARATOR    0x6C
#define XPLM_VK_SUBTRACT     0x6D
#define XPLM_VK_DECIMAL      0x6E
#define XPLM_VK_DIVIDE       0x6F

/* Function keys. */
#define XPLM_VK_F1           0x70
#define XPLM_VK_F2           0x71
#define XPLM_VK_F3           0x72
#define XPLM_VK_F4           0x73
#define XPLM_VK_F5           0x74
#define XPLM_VK_F6           0x75
#define XPLM_VK_F7           0x76
#define XPLM_VK_F8           0x77
#define XPLM_VK_F9           0x78
#define XPLM_VK_F10          0x79
#define XPLM_VK_F11          0x7A
#define XPLM_VK_F12          0x7B
#define XPLM_VK_F13          0x7C
#define XPLM_VK_F14          0x7D
#define XPLM_VK_F15          0x7E
#define XPLM_VK_F16          0x7F
#define XPLM_VK_F17          0x80
#define XPLM_VK_F18          0x81
#define XPLM_VK_F19          0x82
#define XPLM_VK_F20          0x83
#define XPLM_VK_F21          0x84
#define XPLM_VK_F22          0x85
#define XPLM_VK_F23          0x86
#define XPLM_VK_F24          0x87

/* Punctuation and extra keys (values chosen by X-Plane). */
#define XPLM_VK_EQUAL        0xB0
#define XPLM_VK_MINUS        0xB1
#define XPLM_VK_RBRACE       0xB2
#define XPLM_VK_LBRACE       0xB3
#define XPLM_VK_QUOTE        0xB4
#define XPLM_VK_SEMICOLON    0xB5
#define XPLM_VK_BACKSLASH    0xB6
#define XPLM_VK_COMMA        0xB7
#define XPLM_VK_SLASH        0xB8
#define XPLM_VK_PERIOD       0xB9
#define XPLM_VK_BACKQUOTE    0xBA
#define XPLM_VK_ENTER        0xBB
#define XPLM_VK_NUMPAD_ENT   0xBC
#define XPLM_VK_NUMPAD_EQ    0xBD

#if defined(XPLM200)
/*
 * XPLMFixedString150_t
 * A fixed-size 150 character string buffer, passed by value.
 */
typedef struct {
     /* The characters of the string, NUL-terminated. */
     char                      buffer[150];
} XPLMFixedString150_t;
#endif /* XPLM200 */

#if defined(XPLM200)
/*
 * XPLMCursorStatus
 * What a window's cursor callback asks X-Plane to do with the mouse
 * cursor. (Used by XPLMHandleCursor_f in XPLMDisplay.h.)
 */
enum {
     /* Let X-Plane manage the cursor as usual. */
     xplm_CursorDefault                       = 0,
     /* Hide the cursor. */
     xplm_CursorHidden                        = 1,
     /* Show the standard arrow cursor. */
     xplm_CursorArrow                         = 2,
     /* Show the cursor; the plugin sets its shape through the OS. */
     xplm_CursorCustom                        = 3
};
typedef int XPLMCursorStatus;
#endif /* XPLM200 */

/***************************************************************************
 * PLUGIN MESSAGES
 ***************************************************************************/

/*
 * Message numbers X-Plane sends to every plugin's XPluginReceiveMessage
 * (sender XPLM_PLUGIN_XPLANE). Plugins may use their own numbers
 * (e.g. above 0x00FFFFFF) between themselves.
 */

/* The user's plane crashed. Parameter unused. */
#define XPLM_MSG_PLANE_CRASHED 101

/* A plane was loaded. Parameter: plane index (0 = user), as an int. */
#define XPLM_MSG_PLANE_LOADED 102

/* The user's plane was placed at a new airport. Parameter unused. */
#define XPLM_MSG_AIRPORT_LOADED 103

/* New scenery was loaded. Parameter unused. */
#define XPLM_MSG_SCENERY_LOADED 104

/* The user changed the number of aircraft. Parameter unused. */
#define XPLM_MSG_AIRPLANE_COUNT_CHANGED 105

#if defined(XPLM200)
/* A plane was unloaded. Parameter: plane index (0 = user), as an int. */
#define XPLM_MSG_PLANE_UNLOADED 106
#endif /* XPLM200 */

#if defined(XPLM210)
/* X-Plane is about to write its preferences file. Parameter unused. */
#define XPLM_MSG_WILL_WRITE_PREFS 107
#endif /* XPLM210 */

#if defined(XPLM210)
/* A livery was loaded. Parameter: plane index, as an int. */
#define XPLM_MSG_LIVERY_LOADED 108
#endif /* XPLM210 */

#ifdef __cplusplus
}
#endif

#endif /* _XPLMDefs_h_ */
