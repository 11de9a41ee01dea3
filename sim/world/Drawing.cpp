// The drawing record of the current frame.
#include "world/Drawing.h"

namespace xpsim {
namespace {

std::vector<std::string>& record() {
    static std::vector<std::string> lines;
    return lines;
}

}  // namespace

void RecordDrawing(const std::string& line) { record().push_back(line); }

const std::vector<std::string>& DrawingThisFrame() { return record(); }

void ClearDrawing() { record().clear(); }

}  // namespace xpsim
