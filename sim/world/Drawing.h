// The drawing record: what plugins drew in the current frame, one text line per thing drawn (a
// string, a number, a box, an aircraft, objects), so tests and the draw log can read exactly what a
// person would see. The record starts empty at every frame.
//
// Each line names the kind of item first, then key=value fields, then (for items that show text)
// the text in quotes:
//
//   string x=10 y=700 rgb=1.000,1.000,1.000 font=xplmFont_Basic "Hello"
//   number x=12 y=20 rgb=0.000,1.000,0.000 font=xplmFont_Basic "+0003.25"
//   dark-box left=10 top=60 right=200 bottom=10
//
// so that new kinds and new fields can be added without breaking readers that look for the ones
// they know.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "world/Export.h"

namespace xpsim {

// Adds one line (without its line end) to the current frame's record.
XPSIM_API void RecordDrawing(const std::string& line);
// The current frame's record, in drawing order.
XPSIM_API const std::vector<std::string>& DrawingThisFrame();
// Empties the record and the screen; called as each frame begins and by ResetWorld.
void ClearDrawing();

// Text as the record shows it: in double quotes, every byte readable. `"` and `\` are written `\"`
// and `\\`, every byte outside printable ASCII (0x20 to 0x7E) as `\xHH` (two lower-case hex digits),
// so a recorded line is plain ASCII and never breaks.
XPSIM_API std::string QuoteForRecord(const char* text, size_t size);

// True while the sim draws: during the drawing phases of a frame (draw callbacks, the plugin windows
// and the widgets in them). Drawing functions called at any other time draw nothing.
XPSIM_API bool InDrawing();

// Marks the sim as drawing for the lifetime of the object; the frame's drawing phases run inside
// one, and tests open one to call the drawing functions directly.
class XPSIM_API DrawingScope {
public:
    DrawingScope();
    ~DrawingScope();
    DrawingScope(const DrawingScope&) = delete;
    DrawingScope& operator=(const DrawingScope&) = delete;
};

// Writes the current frame's record to `path`: a line `frame N`, then the record, one line each.
// `fresh` starts the file anew, otherwise the frame is added at its end. False with a message when
// the file cannot be written.
XPSIM_API bool WriteDrawingRecord(const std::string& path, bool fresh, std::string& error);

}  // namespace xpsim
