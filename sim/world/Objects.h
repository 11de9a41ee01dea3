// OBJ8 objects: loading (at once or on a later frame), drawing into the drawing record and
// reference-counted unloading (XPLMScenery's object functions).
//
// A path is relative to the simulator folder (the X-System folder), as the SDK asks; "./" in front
// is allowed, "../" may lead outside it, an absolute path is misuse. The file is read as an OBJ8
// text file: the header lines "I" or "A", "800", "OBJ"; then TEXTURE rows, POINT_COUNTS with the
// numbers of VT, VLINE and VLIGHT rows and of indices, the VT, VLINE, VLIGHT, IDX and IDX10 rows,
// and the commands: TRIS, LINES and LIGHTS (offset and count), ATTR_* rows (ATTR_LOD is checked),
// ANIM_begin/ANIM_end blocks with ANIM_trans, ANIM_rotate, ANIM_hide, ANIM_show and the keyframe
// rows, and the other OBJ8 commands (LIGHT_*, GLOBAL_*, smoke, ...), which are taken as they are.
// A word starting with '#' starts a comment. The file is refused (the load answers null, Log.txt
// names the file and the line) when the header is wrong, a row's numbers cannot be read, the rows
// do not match POINT_COUNTS, a TRIS, LINES or LIGHTS range leaves its table or names a vertex
// that does not exist, or the ANIM blocks do not pair up. A command xpsim does not know is noted
// and ignored.
//
// Loading a file that is loaded already answers the same handle and counts one more reference,
// held by the calling plugin; XPLMUnloadObject gives one of the caller's references back, and the
// object is freed when none is left. Handles are never reused: a freed object's handle is reported
// as unloaded. When a plugin is unloaded, the references it still holds are given back.
//
// XPLMLoadObjectAsync reads the file at the start of the next frame's callbacks and calls the
// callback then, in the calling plugin's context, with the handle or null. A disabled plugin's
// callback waits until the plugin is enabled again (the object is held for it meanwhile); an
// unloaded plugin's pending loads are dropped and their objects given back.
//
// XPLMDrawObjects adds one line to the drawing record:
//   objects file=PATH count=N lighting=0|1 earth_relative=0|1 at=(x,y,z,pitch,heading,roll);(...)
#pragma once

#include <string>

#include "XPLMScenery.h"
#include "world/Export.h"

namespace xpsim {

// The most instances one XPLMDrawObjects call may draw.
constexpr int kMaxDrawnInstances = 100000;

// What xpsim read from a loaded object.
struct ObjectInfo {
    std::string path;   // as first loaded, relative to the simulator folder
    int references = 0;
    int vertices = 0;       // VT rows
    int lineVertices = 0;   // VLINE rows
    int lightVertices = 0;  // VLIGHT rows
    int indices = 0;        // IDX and IDX10 entries
    int triangles = 0;      // drawn by TRIS
    int lineSegments = 0;   // drawn by LINES
    int lights = 0;         // drawn by LIGHTS
    int animations = 0;     // ANIM_begin blocks
    std::string texture;    // the TEXTURE row's file, empty without one
};

// ------------------------------------------------------------------ control interface

// True with the object's description when the handle is a loaded object.
XPSIM_API bool DescribeObject(XPLMObjectRef object, ObjectInfo& info);
// Objects loaded and not yet freed.
XPSIM_API int LoadedObjectCount();
// Asynchronous loads whose callback has not been called yet.
XPSIM_API int PendingObjectLoads();

// ------------------------------------------------------------------ inside the library

XPLMObjectRef LoadObject(const char* path);
void LoadObjectAsync(const char* path, XPLMObjectLoaded_f callback, void* refcon);
void DrawObjects(XPLMObjectRef object, int count, const XPLMDrawInfo_t* locations, int lighting, int earthRelative);
void UnloadObject(XPLMObjectRef object);

// Finishes the asynchronous loads asked for before this frame and delivers their results; run by
// the frame before its held commands and flight loops.
void RunObjectLoads();
// Gives back a plugin's references and drops its pending loads; returns how many objects it held.
int ForgetObjectsOf(int plugin);
void ResetObjects();

}  // namespace xpsim
