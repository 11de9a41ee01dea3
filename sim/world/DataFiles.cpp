// Situations and replay movies.
#include "world/DataFiles.h"

#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sstream>
#include <string>
#include <vector>

#include "world/DataRefs.h"
#include "world/World.h"

namespace xpsim {
namespace {

const char* KindName(XPLMDataFileType type) {
    return type == xplm_DataFile_Situation ? "situation" : "replay";
}

std::string Header(XPLMDataFileType type) { return std::string("xpsim ") + KindName(type) + " 1"; }

std::string TypeText(const DataRefRecord& ref) {
    const std::string size = "[" + std::to_string(ref.arraySize) + "]";
    switch (ref.types) {
        case xplmType_Int: return "int";
        case xplmType_Float: return "float";
        case xplmType_Double: return "double";
        case xplmType_IntArray: return "int" + size;
        case xplmType_FloatArray: return "float" + size;
        case xplmType_Data: return "byte" + size;
        default: return "?";
    }
}

std::string Number(double value, int digits) {
    char text[64];
    std::snprintf(text, sizeof text, "%.*g", digits, value);
    return text;
}

// The value of one of the simulator's datarefs as the file writes it; empty when it is all zeros.
std::string ValueText(const DataRefRecord& ref) {
    std::string text;
    bool nonZero = false;
    auto list = [&](auto count, auto item) {
        for (int i = 0; i < count; ++i) text += (i ? "," : "") + item(i);
    };
    switch (ref.types) {
        case xplmType_Int:
            return ref.intValue ? std::to_string(ref.intValue) : "";
        case xplmType_Float:
            return ref.floatValue != 0.0f ? Number(ref.floatValue, 9) : "";
        case xplmType_Double:
            return ref.doubleValue != 0.0 ? Number(ref.doubleValue, 17) : "";
        case xplmType_IntArray:
            for (int v : ref.ints) nonZero |= v != 0;
            if (nonZero) list(ref.arraySize, [&](int i) { return std::to_string(ref.ints[size_t(i)]); });
            return text;
        case xplmType_FloatArray:
            for (float v : ref.floats) nonZero |= v != 0.0f;
            if (nonZero) list(ref.arraySize, [&](int i) { return Number(ref.floats[size_t(i)], 9); });
            return text;
        case xplmType_Data:
            for (uint8_t v : ref.bytes) nonZero |= v != 0;
            if (!nonZero) return "";
            for (uint8_t v : ref.bytes) {
                char hex[3];
                std::snprintf(hex, sizeof hex, "%02x", v);
                text += hex;
            }
            return text;
        default:
            return "";
    }
}

void Clear(DataRefRecord& ref) {
    ref.intValue = 0;
    ref.floatValue = 0.0f;
    ref.doubleValue = 0.0;
    ref.ints.clear();
    ref.floats.clear();
    ref.bytes.clear();
}

std::vector<std::string> SplitCommas(const std::string& text) {
    std::vector<std::string> items;
    std::string item;
    std::istringstream stream(text);
    while (std::getline(stream, item, ',')) items.push_back(item);
    if (!text.empty() && text.back() == ',') items.push_back("");
    return items;
}

bool ParseWhole(const std::string& text, long long& value) {
    if (text.empty()) return false;
    char* end = nullptr;
    errno = 0;
    value = std::strtoll(text.c_str(), &end, 10);
    return errno == 0 && *end == '\0' && value >= INT32_MIN && value <= INT32_MAX;
}

bool ParseReal(const std::string& text, double& value) {
    if (text.empty()) return false;
    char* end = nullptr;
    value = std::strtod(text.c_str(), &end);
    return *end == '\0' && std::isfinite(value);
}

// Reads a value of `ref`'s type into `into` (a scratch record); false when it is not one.
bool ParseValue(const DataRefRecord& ref, const std::string& text, DataRefRecord& into) {
    into = DataRefRecord();
    into.types = ref.types;
    into.arraySize = ref.arraySize;
    long long whole;
    double real;
    switch (ref.types) {
        case xplmType_Int:
            if (!ParseWhole(text, whole)) return false;
            into.intValue = int(whole);
            return true;
        case xplmType_Float:
            if (!ParseReal(text, real)) return false;
            into.floatValue = float(real);
            return true;
        case xplmType_Double:
            if (!ParseReal(text, real)) return false;
            into.doubleValue = real;
            return true;
        case xplmType_IntArray:
        case xplmType_FloatArray: {
            const std::vector<std::string> items = SplitCommas(text);
            if (int(items.size()) != ref.arraySize) return false;
            for (const std::string& item : items) {
                if (ref.types == xplmType_IntArray) {
                    if (!ParseWhole(item, whole)) return false;
                    into.ints.push_back(int(whole));
                } else {
                    if (!ParseReal(item, real)) return false;
                    into.floats.push_back(float(real));
                }
            }
            return true;
        }
        case xplmType_Data:
            if (text.size() != size_t(ref.arraySize) * 2 ||
                text.find_first_not_of("0123456789abcdefABCDEF") != std::string::npos)
                return false;
            for (size_t i = 0; i < text.size(); i += 2)
                into.bytes.push_back(uint8_t(std::strtoul(text.substr(i, 2).c_str(), nullptr, 16)));
            return true;
        default:
            return false;
    }
}

// The full path of a path relative to the simulator folder; false (reported) for a bad one.
bool Resolve(const char* function, XPLMDataFileType type, const char* path, std::string& full) {
    if (type != xplm_DataFile_Situation && type != xplm_DataFile_ReplayMovie) {
        ReportMisuse(function, "unknown data file type " + std::to_string(type));
        return false;
    }
    if (path == nullptr || *path == '\0') {
        ReportMisuse(function, "no file path");
        return false;
    }
    if (path[0] == '/') {
        ReportMisuse(function, std::string("'") + path +
                                   "' is an absolute path; data file paths are relative to the X-System folder");
        return false;
    }
    full = SystemPath() + path;
    return true;
}

}  // namespace

int SaveDataFile(XPLMDataFileType type, const char* path) {
    const char* const function = "XPLMSaveDataFile";
    std::string full;
    if (!Resolve(function, type, path, full)) return 0;
    std::ostringstream out;
    out << Header(type) << "\n";
    out << "flight-time " << Number(FlightTime(), 17) << "\n";
    out << "paused " << (SimPaused() ? 1 : 0) << "\n";
    int count = 0;
    for (DataRefRecord* ref : SimWritableDataRefs()) {
        const std::string value = ValueText(*ref);
        if (value.empty()) continue;
        out << ref->name << "\t" << TypeText(*ref) << "\t" << value << "\n";
        ++count;
    }
    const std::string text = out.str();
    FILE* file = std::fopen(full.c_str(), "wb");
    if (file == nullptr) {
        ReportMisuse(function, "cannot write " + full + ": " + std::strerror(errno));
        return 0;
    }
    const bool written = std::fwrite(text.data(), 1, text.size(), file) == text.size();
    if (std::fclose(file) != 0 || !written) {
        ReportMisuse(function, "cannot write " + full);
        return 0;
    }
    Note(std::string(KindName(type)) + " saved to " + full + " (" + std::to_string(count) + " datarefs)");
    return 1;
}

int LoadDataFile(XPLMDataFileType type, const char* path) {
    const char* const function = "XPLMLoadDataFile";
    if (type == xplm_DataFile_ReplayMovie && path == nullptr) {
        Note("the replay is cleared");
        return 1;
    }
    std::string full;
    if (!Resolve(function, type, path, full)) return 0;
    FILE* file = std::fopen(full.c_str(), "rb");
    if (file == nullptr) {
        ReportMisuse(function, "cannot read " + full + ": " + std::strerror(errno));
        return 0;
    }
    std::string content;
    char buffer[4096];
    for (size_t n; (n = std::fread(buffer, 1, sizeof buffer, file)) > 0;) content.append(buffer, n);
    std::fclose(file);
    std::istringstream in(content);
    const std::string where = full + " ";
    std::string line;
    if (!std::getline(in, line) || line != Header(type)) {
        ReportMisuse(function, where + "is not an xpsim " + KindName(type) + " file");
        return 0;
    }
    // Everything is read and checked before anything changes.
    struct Restore {
        DataRefRecord* ref;
        DataRefRecord value;
    };
    std::vector<Restore> restores;
    std::vector<std::string> skipped;
    double flightTime = -1.0;
    int paused = -1;
    int lineNumber = 1;
    while (std::getline(in, line)) {
        ++lineNumber;
        const std::string at = where + "line " + std::to_string(lineNumber) + ": ";
        if (line.empty()) continue;
        long long whole;
        if (line.compare(0, 12, "flight-time ") == 0) {
            if (!ParseReal(line.substr(12), flightTime) || flightTime < 0.0) {
                ReportMisuse(function, at + "'" + line.substr(12) + "' is not a flight time");
                return 0;
            }
            continue;
        }
        if (line.compare(0, 7, "paused ") == 0) {
            if (!ParseWhole(line.substr(7), whole) || (whole != 0 && whole != 1)) {
                ReportMisuse(function, at + "paused must be 0 or 1, not '" + line.substr(7) + "'");
                return 0;
            }
            paused = int(whole);
            continue;
        }
        const size_t tab1 = line.find('\t');
        const size_t tab2 = tab1 == std::string::npos ? tab1 : line.find('\t', tab1 + 1);
        if (tab2 == std::string::npos) {
            ReportMisuse(function, at + "expected a dataref name, type and value separated by tabs");
            return 0;
        }
        const std::string name = line.substr(0, tab1);
        const std::string typeText = line.substr(tab1 + 1, tab2 - tab1 - 1);
        const std::string valueText = line.substr(tab2 + 1);
        DataRefRecord* ref = FindDataRefRecord(name);
        bool known = false;
        for (DataRefRecord* writable : SimWritableDataRefs()) known |= writable == ref;
        if (!known || TypeText(*ref) != typeText) {
            skipped.push_back(name);
            continue;
        }
        Restore restore{ref, DataRefRecord()};
        if (!ParseValue(*ref, valueText, restore.value)) {
            ReportMisuse(function, at + "'" + valueText + "' is not a value of type " + typeText + " for " + name);
            return 0;
        }
        restores.push_back(restore);
    }
    if (flightTime < 0.0 || paused < 0) {
        ReportMisuse(function, where + "lacks its flight-time or paused line");
        return 0;
    }
    for (DataRefRecord* ref : SimWritableDataRefs()) Clear(*ref);
    for (Restore& restore : restores) {
        DataRefRecord& ref = *restore.ref;
        ref.intValue = restore.value.intValue;
        ref.floatValue = restore.value.floatValue;
        ref.doubleValue = restore.value.doubleValue;
        ref.ints = restore.value.ints;
        ref.floats = restore.value.floats;
        ref.bytes = restore.value.bytes;
    }
    SetFlightTime(flightTime);
    SetSimPaused(paused != 0);
    for (const std::string& name : skipped)
        Note(std::string(function) + ": " + name + " is not a writable dataref of this type here; left out");
    Note(std::string(KindName(type)) + " loaded from " + full + " (" + std::to_string(restores.size()) +
         " datarefs)");
    return 1;
}

}  // namespace xpsim
