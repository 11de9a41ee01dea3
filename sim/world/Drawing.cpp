// The drawing record of the current frame.
#include "world/Drawing.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "world/Screen.h"
#include "world/World.h"

namespace xpsim {
namespace {

std::vector<std::string>& record() {
    static std::vector<std::string> lines;
    return lines;
}

int& drawingDepth() {
    static int depth = 0;
    return depth;
}

}  // namespace

void RecordDrawing(const std::string& line) { record().push_back(line); }

const std::vector<std::string>& DrawingThisFrame() { return record(); }

void ClearDrawing() {
    record().clear();
    ClearScreen();
}

std::string QuoteForRecord(const char* text, size_t size) {
    static const char kHex[] = "0123456789abcdef";
    std::string quoted = "\"";
    for (size_t i = 0; text != nullptr && i < size; ++i) {
        const unsigned char c = static_cast<unsigned char>(text[i]);
        if (c == '"' || c == '\\') {
            quoted += '\\';
            quoted += static_cast<char>(c);
        } else if (c < 0x20 || c > 0x7e) {
            quoted += "\\x";
            quoted += kHex[c >> 4];
            quoted += kHex[c & 0xf];
        } else {
            quoted += static_cast<char>(c);
        }
    }
    return quoted + "\"";
}

bool InDrawing() { return drawingDepth() > 0; }

DrawingScope::DrawingScope() { drawingDepth()++; }

DrawingScope::~DrawingScope() {
    if (drawingDepth() > 0) drawingDepth()--;
}

bool WriteDrawingRecord(const std::string& path, bool fresh, std::string& error) {
    FILE* file = std::fopen(path.c_str(), fresh ? "wb" : "ab");
    if (file == nullptr) {
        error = "cannot write " + path + ": " + std::strerror(errno);
        return false;
    }
    std::string text = "frame " + std::to_string(FrameNumber()) + "\n";
    for (const auto& line : record()) text += line + "\n";
    const bool written = std::fwrite(text.data(), 1, text.size(), file) == text.size();
    const bool closed = std::fclose(file) == 0;
    if (!written || !closed) {
        error = "cannot write " + path + ": " + std::strerror(errno);
        return false;
    }
    return true;
}

}  // namespace xpsim
