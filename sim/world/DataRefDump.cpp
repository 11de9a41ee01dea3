// The dataref dump: every dataref's value written as one text line.
#include "world/DataRefDump.h"

#include <cerrno>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <type_traits>
#include <vector>

#include "world/DataRefs.h"

namespace xpsim {
namespace {

// The shortest %g form that reads back to exactly `value`.
template <typename T>
std::string Shortest(T value) {
    if (std::isnan(value)) return "nan";
    if (std::isinf(value)) return value > 0 ? "inf" : "-inf";
    const int most = std::is_same_v<T, float> ? 9 : 17;
    char text[64];
    for (int precision = 1; precision <= most; ++precision) {
        std::snprintf(text, sizeof text, "%.*g", precision, static_cast<double>(value));
        const T back = std::is_same_v<T, float> ? static_cast<T>(std::strtof(text, nullptr))
                                                : static_cast<T>(std::strtod(text, nullptr));
        if (back == value) break;
    }
    return text;
}

std::string Number(int value) { return std::to_string(value); }
std::string Number(float value) { return Shortest(value); }
std::string Number(uint8_t value) { return std::to_string(unsigned(value)); }

// An array dataref: its size (asked with no buffer), cut to kMaxDumpElements, then its elements.
// Whatever count a plugin's accessor answers is kept inside the buffer.
template <typename T, typename Reader>
std::string ArrayLine(const std::string& base, Reader read) {
    // Without a buffer the SDK ignores the maximum; a generous one serves accessors that cap by it.
    int size = read(static_cast<T*>(nullptr), kMaxDumpElements);
    size = size < 0 ? 0 : (size > kMaxDumpElements ? kMaxDumpElements : size);
    std::vector<T> values(static_cast<size_t>(size) + 1, T());
    int count = size > 0 ? read(values.data(), size) : 0;
    count = count < 0 ? 0 : (count > size ? size : count);
    std::string text = base + "[" + std::to_string(size) + "]\t";
    for (int i = 0; i < count; ++i) text += (i > 0 ? "," : "") + Number(values[static_cast<size_t>(i)]);
    return text;
}

std::string Line(DataRefRecord& ref) {
    const XPLMDataTypeID types = ref.types;
    if (types & xplmType_Double) return "double\t" + Shortest(ReadDouble(ref, "XPLMGetDatad"));
    if (types & xplmType_Float) return "float\t" + Shortest(ReadFloat(ref, "XPLMGetDataf"));
    if (types & xplmType_Int) return "int\t" + std::to_string(ReadInt(ref, "XPLMGetDatai"));
    if (types & xplmType_FloatArray)
        return ArrayLine<float>("float",
                                [&](float* out, int max) { return ReadFloatArray(ref, out, 0, max, "XPLMGetDatavf"); });
    if (types & xplmType_IntArray)
        return ArrayLine<int>("int",
                              [&](int* out, int max) { return ReadIntArray(ref, out, 0, max, "XPLMGetDatavi"); });
    return ArrayLine<uint8_t>("byte",
                              [&](uint8_t* out, int max) { return ReadBytes(ref, out, 0, max, "XPLMGetDatab"); });
}

}  // namespace

std::string DataRefDumpText() {
    const XPLMDataTypeID known =
        xplmType_Int | xplmType_Float | xplmType_Double | xplmType_FloatArray | xplmType_IntArray | xplmType_Data;
    std::string text;
    // A plugin's accessor may register further datarefs while it is read; the list is taken first.
    for (DataRefRecord* ref : AllDataRefRecords()) {
        if (!ref->good || (ref->types & known) == 0) continue;
        text += ref->name + "\t" + Line(*ref) + "\n";
    }
    return text;
}

bool WriteDataRefDump(const std::string& path, std::string& error) {
    const std::string text = DataRefDumpText();
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    if (file) file << text;
    if (!file) {
        error = "cannot write the dataref dump to " + path + ": " + std::strerror(errno);
        return false;
    }
    return true;
}

}  // namespace xpsim
