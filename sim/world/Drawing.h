// The drawing record: what plugins drew in the current frame, one text line per thing drawn (a
// string, a number, a box, an aircraft, objects), so tests and the draw log can read exactly what a
// person would see. The record starts empty at every frame.
#pragma once

#include <string>
#include <vector>

#include "world/Export.h"

namespace xpsim {

// Adds one line (without its line end) to the current frame's record.
XPSIM_API void RecordDrawing(const std::string& line);
// The current frame's record, in drawing order.
XPSIM_API const std::vector<std::string>& DrawingThisFrame();
// Empties the record; called as each frame begins and by ResetWorld.
void ClearDrawing();

}  // namespace xpsim
