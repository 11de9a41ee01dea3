// Datarefs: registry, DataRefs.txt loading, typed access, accessors and shared data.
#include "world/DataRefs.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <sstream>
#include <unordered_map>
#include <unordered_set>

#include "world/Aircraft.h"
#include "world/Plugins.h"
#include "world/World.h"

namespace xpsim {
namespace {

// Upper bound for one dataref's element count, from DataRefs.txt or grown by writes to shared data.
constexpr int64_t kMaxElements = 1 << 24;

const char* const kRunningTime = "sim/time/total_running_time_sec";
const char* const kFlightTime = "sim/time/total_flight_time_sec";
const char* const kFrameratePeriod = "sim/time/framerate_period";
const char* const kFrameRatePeriodMisc = "sim/operation/misc/frame_rate_period";
const char* const kPaused = "sim/time/paused";

struct Registry {
    std::vector<std::unique_ptr<DataRefRecord>> records;
    std::unordered_map<std::string, DataRefRecord*> byName;
    std::unordered_set<const void*> handles;
    uint64_t nextSharerId = 1;
    // The datarefs the sim drives every frame (null when absent).
    DataRefRecord* runningTime = nullptr;
    DataRefRecord* flightTime = nullptr;
    DataRefRecord* frameratePeriod = nullptr;
    DataRefRecord* frameRatePeriodMisc = nullptr;
    DataRefRecord* paused = nullptr;
};

Registry& registry() {
    static Registry r;
    return r;
}

DataRefRecord* AddRecord(std::unique_ptr<DataRefRecord> record) {
    Registry& r = registry();
    DataRefRecord* raw = record.get();
    r.records.push_back(std::move(record));
    r.byName[raw->name] = raw;
    r.handles.insert(raw);
    return raw;
}

std::string TypeNames(XPLMDataTypeID types) {
    static const std::pair<int, const char*> kNames[] = {
        {xplmType_Int, "int"},           {xplmType_Float, "float"},
        {xplmType_Double, "double"},     {xplmType_FloatArray, "float array"},
        {xplmType_IntArray, "int array"}, {xplmType_Data, "data"}};
    std::string text;
    for (const auto& entry : kNames) {
        if (types & entry.first) text += (text.empty() ? "" : "|") + std::string(entry.second);
    }
    return text.empty() ? "unknown" : text;
}

// True when the dataref offers `type`; otherwise reports the wrong-typed access.
bool HasType(const DataRefRecord& ref, XPLMDataTypeID type, const char* function) {
    if (ref.types & type) return true;
    ReportMisuse(function, ref.name + " is " + TypeNames(ref.types) + ", not " + TypeNames(type));
    return false;
}

bool ArrayArgumentsOk(const void* buffer, int offset, int count, const char* function,
                      const DataRefRecord& ref) {
    if (buffer == nullptr) return true;
    if (offset < 0 || count < 0) {
        ReportMisuse(function, "negative offset or count (" + std::to_string(offset) + ", " +
                                   std::to_string(count) + ") for " + ref.name);
        return false;
    }
    return true;
}

// May `ref` be written by the caller? The sim writes its own read-only datarefs.
bool WriteAllowed(const DataRefRecord& ref, const char* function, bool asSim) {
    if (!ref.good) return false;
    if (ref.writable) return true;
    if (asSim && ref.kind != DataRefRecord::Accessor) return true;
    ReportMisuse(function, ref.name + " is read-only; the write is ignored");
    return false;
}

// Tells every sharer except the writing plugin that shared data changed, each in its own context.
void NotifySharers(DataRefRecord& ref) {
    if (ref.kind != DataRefRecord::Shared) return;
    const int writer = CurrentPlugin();
    const std::vector<DataRefRecord::Sharer> snapshot = ref.sharers;
    for (const auto& sharer : snapshot) {
        if (sharer.plugin == writer || sharer.callback == nullptr) continue;
        // A notification may unshare other registrations; only live ones are called.
        bool live = std::any_of(ref.sharers.begin(), ref.sharers.end(),
                                [&](const DataRefRecord::Sharer& s) { return s.id == sharer.id; });
        if (!live || !PluginMayBeCalled(sharer.plugin)) continue;
        PluginContext context(sharer.plugin);
        sharer.callback(sharer.refcon);
    }
}

template <class T>
int ReadValues(const std::vector<T>& values, int size, T* out, int offset, int max) {
    if (out == nullptr) return size;
    if (offset >= size || max <= 0) return 0;
    const int count = std::min(max, size - offset);
    if (values.empty()) {
        std::fill(out, out + count, T());
    } else {
        std::copy(values.begin() + offset, values.begin() + offset + count, out);
    }
    return count;
}

// Copies up to `count` values into a builtin (fixed size) or shared (growing) array. Returns the
// number of values written.
template <class T>
int WriteValues(DataRefRecord& ref, std::vector<T>& values, const T* in, int offset, int count,
                const char* function) {
    if (in == nullptr) {
        if (count > 0) ReportMisuse(function, "null buffer for " + ref.name);
        return 0;
    }
    if (offset < 0 || count < 0) {
        ReportMisuse(function, "negative offset or count (" + std::to_string(offset) + ", " +
                                   std::to_string(count) + ") for " + ref.name);
        return 0;
    }
    if (count == 0) return 0;
    if (ref.kind == DataRefRecord::Shared) {
        const int64_t end = int64_t(offset) + count;
        if (end > kMaxElements) {
            ReportMisuse(function, "writing up to element " + std::to_string(end) + " of " +
                                       ref.name + " is beyond xpsim's limit");
            return 0;
        }
        if (end > ref.arraySize) {
            values.resize(size_t(end));
            ref.arraySize = int(end);
        }
    } else {
        if (offset >= ref.arraySize) return 0;
        if (values.empty()) values.assign(size_t(ref.arraySize), T());
    }
    const int written = std::min(count, ref.arraySize - offset);
    std::copy(in, in + written, values.begin() + offset);
    return written;
}

// Parses "int", "float", "double", "int[8]", "float[2][3]", "byte[40]".
bool ParseType(const std::string& text, XPLMDataTypeID& type, int& size) {
    const size_t bracket = text.find('[');
    const std::string base = text.substr(0, bracket);
    size = 1;
    if (bracket == std::string::npos) {
        if (base == "int") type = xplmType_Int;
        else if (base == "float") type = xplmType_Float;
        else if (base == "double") type = xplmType_Double;
        else return false;
        return true;
    }
    if (base == "int") type = xplmType_IntArray;
    else if (base == "float") type = xplmType_FloatArray;
    else if (base == "byte") type = xplmType_Data;
    else return false;
    int64_t product = 1;
    size_t pos = bracket;
    while (pos < text.size()) {
        if (text[pos] != '[') return false;
        const size_t close = text.find(']', pos);
        if (close == std::string::npos || close == pos + 1) return false;
        const std::string digits = text.substr(pos + 1, close - pos - 1);
        if (digits.find_first_not_of("0123456789") != std::string::npos || digits.size() > 9)
            return false;
        product *= std::stoll(digits);
        if (product > kMaxElements) return false;
        pos = close + 1;
    }
    size = int(product);
    return true;
}

std::string Trim(const std::string& text) {
    const size_t first = text.find_first_not_of(" \t\r\n");
    if (first == std::string::npos) return "";
    const size_t last = text.find_last_not_of(" \t\r\n");
    return text.substr(first, last - first + 1);
}

std::vector<std::string> SplitTabs(const std::string& line) {
    std::vector<std::string> fields;
    std::string field;
    std::istringstream stream(line);
    while (std::getline(stream, field, '\t')) fields.push_back(field);
    return fields;
}

DataRefRecord* AddBuiltin(const std::string& name, XPLMDataTypeID type, int size, bool writable) {
    auto record = std::make_unique<DataRefRecord>();
    record->name = name;
    record->kind = DataRefRecord::Builtin;
    record->types = type;
    record->writable = writable;
    record->owner = kSimId;
    record->arraySize = (type & (xplmType_IntArray | xplmType_FloatArray | xplmType_Data)) ? size : 0;
    return AddRecord(std::move(record));
}

bool ParseLong(const std::string& text, long long& value) {
    const std::string t = Trim(text);
    if (t.empty()) return false;
    char* end = nullptr;
    errno = 0;
    value = std::strtoll(t.c_str(), &end, 10);
    return errno == 0 && end != nullptr && *end == '\0';
}

bool ParseDouble(const std::string& text, double& value) {
    const std::string t = Trim(text);
    if (t.empty()) return false;
    char* end = nullptr;
    value = std::strtod(t.c_str(), &end);
    return end != nullptr && *end == '\0';
}

bool LooksFractional(const std::string& text) {
    return text.find_first_of(".eEnN") != std::string::npos;  // decimals, exponents, nan, inf
}

}  // namespace

// ------------------------------------------------------------------ control interface

int LoadDataRefsFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) return -1;
    std::string line;
    int lineNumber = 0;
    int added = 0;
    const std::string fileName = path.substr(path.find_last_of('/') + 1);
    while (std::getline(in, line)) {
        ++lineNumber;
        if (!line.empty() && line.back() == '\r') line.pop_back();
        // The first line is the file's version header ("2 1041 <date>").
        if (lineNumber == 1 && line.find('\t') == std::string::npos) continue;
        if (Trim(line).empty()) continue;
        const std::vector<std::string> fields = SplitTabs(line);
        const std::string where = fileName + " line " + std::to_string(lineNumber) + ": ";
        if (fields.size() < 2) {
            Note(where + "expected name, type and writability separated by tabs");
            continue;
        }
        const std::string name = Trim(fields[0]);
        const std::string typeText = Trim(fields[1]);
        const std::string writable = fields.size() > 2 ? Trim(fields[2]) : "n";
        XPLMDataTypeID type;
        int size;
        if (name.empty() || !ParseType(typeText, type, size)) {
            Note(where + "unknown type '" + typeText + "'");
            continue;
        }
        if (writable != "y" && writable != "n") {
            Note(where + "writability must be y or n, not '" + writable + "'");
            continue;
        }
        if (FindDataRefRecord(name) != nullptr) {
            Note(where + name + " is listed twice; the first entry is kept");
            continue;
        }
        AddBuiltin(name, type, size, writable == "y");
        ++added;
    }
    return added;
}

int LoadStandardDataRefs() {
    const std::string path = PluginsFolder() + "DataRefs.txt";
    const int loaded = LoadDataRefsFile(path);
    if (loaded < 0)
        Note("no " + path + "; only the datarefs xpsim drives itself exist");
    else
        Note("loaded " + std::to_string(loaded) + " datarefs from " + path);
    // The sim's clock exists whatever the file lists.
    Registry& r = registry();
    auto ensure = [](const char* name, XPLMDataTypeID type, bool writable) {
        DataRefRecord* found = FindDataRefRecord(name);
        return found ? found : AddBuiltin(name, type, 1, writable);
    };
    r.runningTime = ensure(kRunningTime, xplmType_Float, true);
    r.flightTime = ensure(kFlightTime, xplmType_Float, true);
    r.frameratePeriod = ensure(kFrameratePeriod, xplmType_Float, false);
    r.paused = ensure(kPaused, xplmType_Int, false);
    r.frameRatePeriodMisc = FindDataRefRecord(kFrameRatePeriodMisc);
    UpdateTimeDataRefs();
    // So does the user's position, coupled to the local frame.
    int count = 0;
    const AircraftDataRefSpec* specs = AircraftDataRefSpecs(count);
    for (int i = 0; i < count; ++i) ensure(specs[i].name, specs[i].type, specs[i].writable);
    AttachAircraftDataRefs();
    return DataRefCount();
}

bool SetDataRefFromText(const std::string& name, const std::string& value, std::string& error) {
    DataRefRecord* ref = FindDataRefRecord(name);
    if (ref == nullptr) {
        error = "no dataref named " + name;
        return false;
    }
    if (!ref->good) {
        error = name + " is no longer registered by its plugin";
        return false;
    }
    if (ref->kind == DataRefRecord::Accessor && !ref->writable) {
        error = name + " is not writable";
        return false;
    }
    const char* const function = "set event";
    const XPLMDataTypeID types = ref->types;
    if (types & xplmType_Data) {
        // Text, with its terminating zero when there is room.
        WriteBytes(*ref, value.c_str(), 0, int(value.size()) + 1, function, true);
        return true;
    }
    const bool isList = value.find(',') != std::string::npos;
    const bool fractional = LooksFractional(value);
    const XPLMDataTypeID scalars = types & (xplmType_Int | xplmType_Float | xplmType_Double);
    const XPLMDataTypeID arrays = types & (xplmType_IntArray | xplmType_FloatArray);
    if (scalars && !isList) {
        XPLMDataTypeID order[3] = {xplmType_Int, xplmType_Float, xplmType_Double};
        if (fractional) std::swap(order[0], order[2]);
        for (XPLMDataTypeID type : order) {
            if (!(scalars & type)) continue;
            if (type == xplmType_Int) {
                long long v;
                if (!ParseLong(value, v) || v < INT32_MIN || v > INT32_MAX) {
                    error = "'" + value + "' is not an integer for " + name;
                    return false;
                }
                WriteInt(*ref, int(v), function, true);
            } else {
                double v;
                if (!ParseDouble(value, v)) {
                    error = "'" + value + "' is not a number for " + name;
                    return false;
                }
                if (type == xplmType_Float) WriteFloat(*ref, float(v), function, true);
                else WriteDouble(*ref, v, function, true);
            }
            return true;
        }
    }
    if (!arrays) {
        error = name + " (" + TypeNames(types) + ") cannot take the value '" + value + "'";
        return false;
    }
    std::vector<std::string> items;
    std::string item;
    std::istringstream stream(value);
    while (std::getline(stream, item, ',')) items.push_back(item);
    if (!value.empty() && value.back() == ',') items.push_back("");
    const bool asFloats = (arrays & xplmType_FloatArray) && (fractional || !(arrays & xplmType_IntArray));
    if (asFloats) {
        std::vector<float> values;
        for (const auto& text : items) {
            double v;
            if (!ParseDouble(text, v)) {
                error = "'" + Trim(text) + "' is not a number for " + name;
                return false;
            }
            values.push_back(float(v));
        }
        WriteFloatArray(*ref, values.data(), 0, int(values.size()), function, true);
    } else {
        std::vector<int> values;
        for (const auto& text : items) {
            long long v;
            if (!ParseLong(text, v) || v < INT32_MIN || v > INT32_MAX) {
                error = "'" + Trim(text) + "' is not an integer for " + name;
                return false;
            }
            values.push_back(int(v));
        }
        WriteIntArray(*ref, values.data(), 0, int(values.size()), function, true);
    }
    return true;
}

int DataRefCount() { return int(registry().records.size()); }

std::vector<DataRefRecord*> AllDataRefRecords() {
    std::vector<DataRefRecord*> all;
    for (const auto& record : registry().records) all.push_back(record.get());
    return all;
}

// ------------------------------------------------------------------ lookup

DataRefRecord* FindDataRefRecord(const std::string& name) {
    auto found = registry().byName.find(name);
    return found == registry().byName.end() ? nullptr : found->second;
}

DataRefRecord* DataRefFromHandle(const void* handle) {
    if (handle == nullptr || registry().handles.count(handle) == 0) return nullptr;
    return static_cast<DataRefRecord*>(const_cast<void*>(handle));
}

// ------------------------------------------------------------------ typed reads

int ReadInt(DataRefRecord& ref, const char* function) {
    if (!ref.good || !HasType(ref, xplmType_Int, function)) return 0;
    if (ref.kind != DataRefRecord::Accessor) return ref.intValue;
    if (ref.readInt == nullptr) return 0;
    PluginContext context(ref.owner);
    return ref.readInt(ref.readRefcon);
}

float ReadFloat(DataRefRecord& ref, const char* function) {
    if (!ref.good || !HasType(ref, xplmType_Float, function)) return 0.0f;
    if (ref.kind != DataRefRecord::Accessor) return ref.floatValue;
    if (ref.readFloat == nullptr) return 0.0f;
    PluginContext context(ref.owner);
    return ref.readFloat(ref.readRefcon);
}

double ReadDouble(DataRefRecord& ref, const char* function) {
    if (!ref.good || !HasType(ref, xplmType_Double, function)) return 0.0;
    if (ref.kind != DataRefRecord::Accessor) return ref.doubleValue;
    if (ref.readDouble == nullptr) return 0.0;
    PluginContext context(ref.owner);
    return ref.readDouble(ref.readRefcon);
}

int ReadIntArray(DataRefRecord& ref, int* out, int offset, int max, const char* function) {
    if (!ref.good || !HasType(ref, xplmType_IntArray, function)) return 0;
    if (!ArrayArgumentsOk(out, offset, max, function, ref)) return 0;
    if (ref.kind != DataRefRecord::Accessor) return ReadValues(ref.ints, ref.arraySize, out, offset, max);
    if (ref.readIntArray == nullptr) return 0;
    PluginContext context(ref.owner);
    return ref.readIntArray(ref.readRefcon, out, offset, max);
}

int ReadFloatArray(DataRefRecord& ref, float* out, int offset, int max, const char* function) {
    if (!ref.good || !HasType(ref, xplmType_FloatArray, function)) return 0;
    if (!ArrayArgumentsOk(out, offset, max, function, ref)) return 0;
    if (ref.kind != DataRefRecord::Accessor)
        return ReadValues(ref.floats, ref.arraySize, out, offset, max);
    if (ref.readFloatArray == nullptr) return 0;
    PluginContext context(ref.owner);
    return ref.readFloatArray(ref.readRefcon, out, offset, max);
}

int ReadBytes(DataRefRecord& ref, void* out, int offset, int max, const char* function) {
    if (!ref.good || !HasType(ref, xplmType_Data, function)) return 0;
    if (!ArrayArgumentsOk(out, offset, max, function, ref)) return 0;
    if (ref.kind != DataRefRecord::Accessor)
        return ReadValues(ref.bytes, ref.arraySize, static_cast<uint8_t*>(out), offset, max);
    if (ref.readData == nullptr) return 0;
    PluginContext context(ref.owner);
    return ref.readData(ref.readRefcon, out, offset, max);
}

// ------------------------------------------------------------------ typed writes

void WriteInt(DataRefRecord& ref, int value, const char* function, bool asSim) {
    if (!ref.good || !HasType(ref, xplmType_Int, function) || !WriteAllowed(ref, function, asSim)) return;
    if (ref.kind == DataRefRecord::Accessor) {
        if (ref.writeInt == nullptr) return;
        PluginContext context(ref.owner);
        ref.writeInt(ref.writeRefcon, value);
        return;
    }
    ref.intValue = value;
    NotifySharers(ref);
}

void WriteFloat(DataRefRecord& ref, float value, const char* function, bool asSim) {
    if (!ref.good || !HasType(ref, xplmType_Float, function) || !WriteAllowed(ref, function, asSim))
        return;
    if (ref.kind == DataRefRecord::Accessor) {
        if (ref.writeFloat == nullptr) return;
        PluginContext context(ref.owner);
        ref.writeFloat(ref.writeRefcon, value);
        return;
    }
    ref.floatValue = value;
    AircraftDataRefWritten(ref, value);
    NotifySharers(ref);
}

void WriteDouble(DataRefRecord& ref, double value, const char* function, bool asSim) {
    if (!ref.good || !HasType(ref, xplmType_Double, function) || !WriteAllowed(ref, function, asSim))
        return;
    if (ref.kind == DataRefRecord::Accessor) {
        if (ref.writeDouble == nullptr) return;
        PluginContext context(ref.owner);
        ref.writeDouble(ref.writeRefcon, value);
        return;
    }
    ref.doubleValue = value;
    AircraftDataRefWritten(ref, value);
    NotifySharers(ref);
}

void WriteIntArray(DataRefRecord& ref, const int* in, int offset, int count, const char* function,
                   bool asSim) {
    if (!ref.good || !HasType(ref, xplmType_IntArray, function) || !WriteAllowed(ref, function, asSim))
        return;
    if (ref.kind == DataRefRecord::Accessor) {
        if (!ArrayArgumentsOk(in, offset, count, function, ref) || ref.writeIntArray == nullptr) return;
        PluginContext context(ref.owner);
        ref.writeIntArray(ref.writeRefcon, const_cast<int*>(in), offset, count);
        return;
    }
    if (WriteValues(ref, ref.ints, in, offset, count, function) > 0) NotifySharers(ref);
}

void WriteFloatArray(DataRefRecord& ref, const float* in, int offset, int count, const char* function,
                     bool asSim) {
    if (!ref.good || !HasType(ref, xplmType_FloatArray, function) ||
        !WriteAllowed(ref, function, asSim))
        return;
    if (ref.kind == DataRefRecord::Accessor) {
        if (!ArrayArgumentsOk(in, offset, count, function, ref) || ref.writeFloatArray == nullptr)
            return;
        PluginContext context(ref.owner);
        ref.writeFloatArray(ref.writeRefcon, const_cast<float*>(in), offset, count);
        return;
    }
    if (WriteValues(ref, ref.floats, in, offset, count, function) > 0) NotifySharers(ref);
}

void WriteBytes(DataRefRecord& ref, const void* in, int offset, int count, const char* function,
                bool asSim) {
    if (!ref.good || !HasType(ref, xplmType_Data, function) || !WriteAllowed(ref, function, asSim))
        return;
    if (ref.kind == DataRefRecord::Accessor) {
        if (!ArrayArgumentsOk(in, offset, count, function, ref) || ref.writeData == nullptr) return;
        PluginContext context(ref.owner);
        ref.writeData(ref.writeRefcon, const_cast<void*>(in), offset, count);
        return;
    }
    if (WriteValues(ref, ref.bytes, static_cast<const uint8_t*>(in), offset, count, function) > 0)
        NotifySharers(ref);
}

// ------------------------------------------------------------------ accessors

DataRefRecord* RegisterAccessor(const DataRefRecord& accessor) {
    const char* const function = "XPLMRegisterDataAccessor";
    DataRefRecord* existing = FindDataRefRecord(accessor.name);
    if (existing != nullptr && !(existing->kind == DataRefRecord::Accessor && !existing->good)) {
        ReportMisuse(function, accessor.name + " is already registered");
        return nullptr;
    }
    DataRefRecord* ref = existing;
    if (ref == nullptr) {
        auto record = std::make_unique<DataRefRecord>();
        record->name = accessor.name;
        ref = AddRecord(std::move(record));
    }
    // A name registered again (for example after a plugin reload) keeps its old handle.
    const std::string name = ref->name;
    *ref = accessor;
    ref->name = name;
    ref->kind = DataRefRecord::Accessor;
    ref->good = true;
    return ref;
}

void UnregisterAccessor(DataRefRecord& ref) {
    const char* const function = "XPLMUnregisterDataAccessor";
    if (ref.kind != DataRefRecord::Accessor) {
        ReportMisuse(function, ref.name + " was not registered by a plugin");
        return;
    }
    if (!ref.good) {
        ReportMisuse(function, ref.name + " is already unregistered");
        return;
    }
    if (ref.owner != CurrentPlugin()) {
        ReportMisuse(function, ref.name + " belongs to plugin " + std::to_string(ref.owner));
        return;
    }
    const std::string name = ref.name;
    ref = DataRefRecord();
    ref.name = name;
    ref.kind = DataRefRecord::Accessor;
    ref.good = false;
}

int ForgetAccessorsOf(int plugin) {
    int count = 0;
    for (auto& record : registry().records) {
        if (record->kind != DataRefRecord::Accessor || !record->good || record->owner != plugin) continue;
        const std::string name = record->name;
        *record = DataRefRecord();
        record->name = name;
        record->kind = DataRefRecord::Accessor;
        record->good = false;
        ++count;
    }
    return count;
}

// ------------------------------------------------------------------ shared data

int ShareData(const char* name, XPLMDataTypeID type, XPLMDataChanged_f callback, void* refcon) {
    const char* const function = "XPLMShareData";
    if (name == nullptr || *name == '\0') {
        ReportMisuse(function, "no data name");
        return 0;
    }
    static const XPLMDataTypeID kSingleTypes[] = {xplmType_Int,        xplmType_Float,
                                                  xplmType_Double,     xplmType_FloatArray,
                                                  xplmType_IntArray,   xplmType_Data};
    if (std::find(std::begin(kSingleTypes), std::end(kSingleTypes), type) == std::end(kSingleTypes)) {
        ReportMisuse(function, std::string(name) + ": shared data needs exactly one type, not " +
                                   std::to_string(type));
        return 0;
    }
    DataRefRecord* ref = FindDataRefRecord(name);
    if (ref == nullptr) {
        auto record = std::make_unique<DataRefRecord>();
        record->name = name;
        record->kind = DataRefRecord::Shared;
        record->types = type;
        record->writable = true;
        record->owner = kSimId;
        ref = AddRecord(std::move(record));
    } else if (ref->kind != DataRefRecord::Shared) {
        ReportMisuse(function, std::string(name) + " is an existing dataref, not shared data");
        return 0;
    } else if (ref->types != type) {
        ReportMisuse(function, std::string(name) + " is shared as " + TypeNames(ref->types) +
                                   ", not " + TypeNames(type));
        return 0;
    }
    ref->sharers.push_back({registry().nextSharerId++, CurrentPlugin(), callback, refcon});
    return 1;
}

int UnshareData(const char* name, XPLMDataTypeID type, XPLMDataChanged_f callback, void* refcon) {
    const char* const function = "XPLMUnshareData";
    if (name == nullptr) {
        ReportMisuse(function, "no data name");
        return 0;
    }
    DataRefRecord* ref = FindDataRefRecord(name);
    if (ref != nullptr && ref->kind == DataRefRecord::Shared && ref->types == type) {
        const int plugin = CurrentPlugin();
        auto found = std::find_if(ref->sharers.begin(), ref->sharers.end(),
                                  [&](const DataRefRecord::Sharer& s) {
                                      return s.plugin == plugin && s.callback == callback &&
                                             s.refcon == refcon;
                                  });
        if (found != ref->sharers.end()) {
            ref->sharers.erase(found);
            return 1;
        }
    }
    ReportMisuse(function, std::string(name) + ": no such registration (name, type, callback and refcon must match)");
    return 0;
}

int ForgetSharedDataOf(int plugin) {
    int count = 0;
    for (auto& record : registry().records) {
        auto& sharers = record->sharers;
        const size_t before = sharers.size();
        sharers.erase(std::remove_if(sharers.begin(), sharers.end(),
                                     [plugin](const DataRefRecord::Sharer& s) { return s.plugin == plugin; }),
                      sharers.end());
        count += int(before - sharers.size());
    }
    return count;
}

// ------------------------------------------------------------------ time

void UpdateTimeDataRefs() {
    Registry& r = registry();
    const float period = float(1.0 / FrameRate());
    auto set = [](DataRefRecord* ref, float value) {
        if (ref != nullptr && ref->kind == DataRefRecord::Builtin && (ref->types & xplmType_Float))
            ref->floatValue = value;
    };
    set(r.runningTime, float(SimTime()));
    set(r.flightTime, float(FlightTime()));
    set(r.frameratePeriod, period);
    set(r.frameRatePeriodMisc, period);
}

bool SimPaused() {
    DataRefRecord* paused = registry().paused;
    return paused != nullptr && paused->intValue != 0;
}

void SetSimPaused(bool paused) {
    Registry& r = registry();
    if (r.paused == nullptr) {
        DataRefRecord* found = FindDataRefRecord(kPaused);
        r.paused = found ? found : AddBuiltin(kPaused, xplmType_Int, 1, false);
    }
    WriteInt(*r.paused, paused ? 1 : 0, "sim/time/paused", true);
}

std::vector<DataRefRecord*> SimWritableDataRefs() {
    Registry& r = registry();
    std::vector<DataRefRecord*> found;
    for (auto& record : r.records) {
        DataRefRecord* ref = record.get();
        if (ref->kind != DataRefRecord::Builtin || !ref->writable) continue;
        if (ref == r.runningTime || ref == r.flightTime || ref == r.frameratePeriod ||
            ref == r.frameRatePeriodMisc || ref == r.paused)
            continue;
        found.push_back(ref);
    }
    return found;
}

void ResetDataRefs() { registry() = Registry(); }

}  // namespace xpsim
