// The aircraft: the user's position coupled to the local frame, the aircraft slots, exclusive access
// to the other aircraft and the load messages.
#include "world/Aircraft.h"

#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cfloat>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <deque>

#include "XPLMDefs.h"
#include "XPLMPlugin.h"
#include "world/DataRefs.h"
#include "world/Drawing.h"
#include "world/Navigation.h"
#include "world/Plugins.h"
#include "world/Position.h"
#include "world/World.h"

namespace xpsim {
namespace {

// The SDK's buffer sizes for XPLMGetNthAircraftModel: 256 for the file name, 512 for the path. A
// path that would not fit is refused, so that what a plugin set is what it reads back.
constexpr size_t kFileNameBytes = 256;
constexpr size_t kPathBytes = 512;
// Airport codes are short; anything longer than this is no airport.
constexpr size_t kCodeBytes = 64;

const char* const kPrefix = "sim/flightmodel/position/";
const char* const kLatitude = "sim/flightmodel/position/latitude";
const char* const kLongitude = "sim/flightmodel/position/longitude";
const char* const kElevation = "sim/flightmodel/position/elevation";
const char* const kLocalX = "sim/flightmodel/position/local_x";
const char* const kLocalY = "sim/flightmodel/position/local_y";
const char* const kLocalZ = "sim/flightmodel/position/local_z";
const char* const kLatRef = "sim/flightmodel/position/lat_ref";
const char* const kLonRef = "sim/flightmodel/position/lon_ref";

// Types and writability as X-Plane 10's DataRefs.txt lists them.
const AircraftDataRefSpec kSpecs[] = {
    {kLatitude, xplmType_Double, false}, {kLongitude, xplmType_Double, false},
    {kElevation, xplmType_Double, false}, {kLocalX, xplmType_Double, true},
    {kLocalY, xplmType_Double, true},     {kLocalZ, xplmType_Double, true},
    {kLatRef, xplmType_Float, false},     {kLonRef, xplmType_Float, false}};

struct Waiter {
    int plugin;
    XPLMPlanesAvailable_f callback;
    void* refcon;
};

struct AircraftState {
    // The user's position, in the world and in the local frame.
    double latitude = 0.0;
    double longitude = 0.0;
    double elevation = 0.0;
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    std::string airport;
    // Full paths of the slots' models; "" is the default aircraft.
    std::array<std::string, kAircraftSlots> models;
    std::array<bool, kAircraftSlots> aiDisabled{};
    int active = 1;
    int controller = XPLM_NO_PLUGIN_ID;
    std::deque<Waiter> waiters;
    // How many load messages are being delivered now.
    int loading = 0;
};

AircraftState& state() {
    static AircraftState s;
    return s;
}

std::string DefaultModel() { return UserAircraftFolder() + UserAircraftFile(); }

std::string ModelOf(int slot) {
    const std::string& model = state().models[size_t(slot)];
    return model.empty() ? DefaultModel() : model;
}

std::string FileNameOf(const std::string& path) { return path.substr(path.find_last_of('/') + 1); }

std::string Number(double value, const char* format = "%.2f") {
    char text[64];
    std::snprintf(text, sizeof text, format, value);
    return text;
}

std::string Who(int plugin) { return plugin == kSimId ? "the sim" : "plugin " + std::to_string(plugin); }

// A double as a float without leaving the float's range (the conversion of a larger value is
// undefined).
float FloatOf(double value) {
    if (std::isnan(value)) return NAN;
    if (value > FLT_MAX) return INFINITY;
    if (value < -FLT_MAX) return -INFINITY;
    return float(value);
}

// Writes the position into its datarefs (those that exist), as both a double and a float.
void Publish() {
    const AircraftState& s = state();
    const std::pair<const char*, double> values[] = {
        {kLatitude, s.latitude}, {kLongitude, s.longitude}, {kElevation, s.elevation}, {kLocalX, s.x},
        {kLocalY, s.y},          {kLocalZ, s.z},            {kLatRef, ReferenceLatitude()},
        {kLonRef, ReferenceLongitude()}};
    for (const auto& value : values) {
        DataRefRecord* ref = FindDataRefRecord(value.first);
        if (ref == nullptr || ref->kind != DataRefRecord::Builtin) continue;
        ref->doubleValue = value.second;
        ref->floatValue = FloatOf(value.second);
    }
}

// Moves the reference point (to values a float holds exactly) and keeps the world position.
void MoveReference(double latitude, double longitude) {
    AircraftState& s = state();
    SetReferencePoint(double(FloatOf(latitude)), double(FloatOf(longitude)));
    WorldToLocal(s.latitude, s.longitude, s.elevation, s.x, s.y, s.z);
}

// Puts the user at a world position, with the reference point there.
void PlaceUser(double latitude, double longitude, double elevation, const std::string& airport) {
    AircraftState& s = state();
    s.latitude = latitude;
    s.longitude = longitude;
    s.elevation = elevation;
    s.airport = airport;
    MoveReference(latitude, longitude);
    Publish();
    Note("the user's aircraft is at " + (airport.empty() ? std::string("xpsim's default position") : airport) +
         ": " + Number(latitude, "%.6f") + ", " + Number(longitude, "%.6f") + ", elevation " +
         Number(elevation) + " m");
}

void PlaceUserAt(const Navaid& airport) { PlaceUser(airport.latitude, airport.longitude, airport.height, airport.id); }

// Counts the load messages being delivered, so that a load asked for from inside one is refused.
class LoadingScope {
public:
    LoadingScope() { ++state().loading; }
    ~LoadingScope() { --state().loading; }
    LoadingScope(const LoadingScope&) = delete;
    LoadingScope& operator=(const LoadingScope&) = delete;
};

bool RefusedWhileLoading(const char* function) {
    if (state().loading == 0) return false;
    ReportMisuse(function, "called while the plugins are being told of a load; ignored");
    return true;
}

// Sends a message from the sim to every enabled plugin, in load order.
void Broadcast(int message, const char* name, int param = 0, bool hasParam = false) {
    Note("the sim sends " + std::string(name) + (hasParam ? " " + std::to_string(param) : ""));
    LoadingScope loading;
    for (int id : PluginIds()) DeliverMessage(id, kSimId, message, reinterpret_cast<void*>(intptr_t(param)));
}

void SendPlaneUnloaded(int slot) {
    // The message arrived with SDK 2.00; an older sim does not send it.
    if (SdkLevel() >= 200) Broadcast(XPLM_MSG_PLANE_UNLOADED, "XPLM_MSG_PLANE_UNLOADED", slot, true);
}

void SendPlaneLoaded(int slot) { Broadcast(XPLM_MSG_PLANE_LOADED, "XPLM_MSG_PLANE_LOADED", slot, true); }

void SendPlacement() {
    Broadcast(XPLM_MSG_AIRPORT_LOADED, "XPLM_MSG_AIRPORT_LOADED");
    Broadcast(XPLM_MSG_SCENERY_LOADED, "XPLM_MSG_SCENERY_LOADED");
}

bool IsRegularFile(const std::string& path) {
    struct stat st;
    return stat(path.c_str(), &st) == 0 && S_ISREG(st.st_mode);
}

// Checks a plugin's aircraft path: a full path to an existing .acf file that fits the SDK's
// 512-byte path buffer. Reports what is wrong and answers false.
bool CheckModelPath(const char* function, const char* path, std::string& out) {
    if (path == nullptr) {
        ReportMisuse(function, "null aircraft path");
        return false;
    }
    const size_t length = strnlen(path, kPathBytes);
    if (length == kPathBytes) {
        ReportMisuse(function, "the aircraft path is longer than " + std::to_string(kPathBytes - 1) + " bytes");
        return false;
    }
    const std::string text(path, length);
    if (text.empty() || text[0] != '/') {
        ReportMisuse(function, "'" + text + "' is not a full path (aircraft paths are full file system paths: "
                                            "start from XPLMGetSystemPath)");
        return false;
    }
    if (text.size() < 4 || text.compare(text.size() - 4, 4, ".acf") != 0) {
        ReportMisuse(function, "'" + text + "' is not an .acf file");
        return false;
    }
    if (!IsRegularFile(text)) {
        ReportMisuse(function, "no aircraft file " + text);
        return false;
    }
    out = text;
    return true;
}

bool SlotInRange(const char* function, int index, int first) {
    if (index >= first && index < kAircraftSlots) return true;
    ReportMisuse(function, "aircraft index " + std::to_string(index) + " is not between " + std::to_string(first) +
                               " and " + std::to_string(kAircraftSlots - 1));
    return false;
}

// True when the calling plugin holds the other aircraft; otherwise reports it.
bool CallerHoldsAircraft(const char* function) {
    const int plugin = CurrentPlugin();
    const int controller = state().controller;
    if (controller == plugin) return true;
    ReportMisuse(function, Who(plugin) + " does not hold the aircraft (" +
                               (controller == XPLM_NO_PLUGIN_ID ? std::string("call XPLMAcquirePlanes first")
                                                                : Who(controller) + " holds them") +
                               ")");
    return false;
}

// Loads a model into one of the other aircraft's slots.
void LoadSlot(const char* function, int slot, const std::string& path) {
    if (RefusedWhileLoading(function)) return;
    SendPlaneUnloaded(slot);
    state().models[size_t(slot)] = path;
    Note("aircraft " + std::to_string(slot) + " is now " + path);
    SendPlaneLoaded(slot);
}

// Tells the waiting plugins, in the order they asked, that the aircraft are free, until one of them
// takes them. Each is told once; disabled plugins are passed over.
void TellWaiters() {
    AircraftState& s = state();
    while (s.controller == XPLM_NO_PLUGIN_ID && !s.waiters.empty()) {
        const Waiter waiter = s.waiters.front();
        s.waiters.pop_front();
        if (!PluginMayBeCalled(waiter.plugin)) continue;
        Note(Who(waiter.plugin) + " is told that the aircraft are available");
        PluginContext context(waiter.plugin);
        waiter.callback(waiter.refcon);
    }
}

void Release(const std::string& why) {
    AircraftState& s = state();
    Note(Who(s.controller) + why);
    s.controller = XPLM_NO_PLUGIN_ID;
    // The sim flies the other aircraft again.
    s.aiDisabled.fill(false);
    TellWaiters();
}

}  // namespace

// ------------------------------------------------------------------ control interface

void StartAircraft() {
    AircraftState& s = state();
    s.models.fill("");
    s.aiDisabled.fill(false);
    s.active = 1;
    const Navaid* first = NavaidOf(FirstNavAidOfType(xplm_Nav_Airport));
    if (first != nullptr)
        PlaceUserAt(*first);
    else
        PlaceUser(kDefaultStartLatitude, kDefaultStartLongitude, kDefaultStartElevation, "");
}

void SendStartMessages() {
    SendPlaneLoaded(0);
    SendPlacement();
}

bool UpdateReferencePoint() {
    AircraftState& s = state();
    // Loading a situation restores the local position's datarefs directly; the world position
    // follows them as it follows a write.
    double* const local[] = {&s.x, &s.y, &s.z};
    const char* const names[] = {kLocalX, kLocalY, kLocalZ};
    bool restored = false;
    for (int i = 0; i < 3; ++i) {
        const DataRefRecord* ref = FindDataRefRecord(names[i]);
        if (ref == nullptr || ref->kind != DataRefRecord::Builtin || !(ref->types & xplmType_Double) ||
            ref->doubleValue == *local[i] || !std::isfinite(ref->doubleValue))
            continue;
        *local[i] = ref->doubleValue;
        restored = true;
    }
    if (restored) {
        LocalToWorld(s.x, s.y, s.z, s.latitude, s.longitude, s.elevation);
        Publish();
    }
    const double distance =
        GreatCircleAngle(ReferenceLatitude(), ReferenceLongitude(), s.latitude, s.longitude) * kEarthRadius;
    if (!(distance > kReferenceShiftDistance)) return false;
    MoveReference(s.latitude, s.longitude);
    Publish();
    Note("the aircraft is " + Number(distance / 1000.0, "%.1f") + " km from the reference point, which moves to " +
         Number(ReferenceLatitude(), "%.6f") + ", " + Number(ReferenceLongitude(), "%.6f"));
    Broadcast(XPLM_MSG_SCENERY_LOADED, "XPLM_MSG_SCENERY_LOADED");
    return true;
}

void UserWorldPosition(double& latitude, double& longitude, double& elevation) {
    const AircraftState& s = state();
    latitude = s.latitude;
    longitude = s.longitude;
    elevation = s.elevation;
}

void UserLocalPosition(double& x, double& y, double& z) {
    const AircraftState& s = state();
    x = s.x;
    y = s.y;
    z = s.z;
}

std::string UserAirport() { return state().airport; }

std::string AircraftModelPath(int slot) { return slot >= 0 && slot < kAircraftSlots ? ModelOf(slot) : ""; }

int AircraftController() { return state().controller; }

int ActiveAircraftCount() { return state().active; }

bool AircraftAIDisabled(int slot) { return slot >= 0 && slot < kAircraftSlots && state().aiDisabled[size_t(slot)]; }

// ------------------------------------------------------------------ position datarefs

const AircraftDataRefSpec* AircraftDataRefSpecs(int& count) {
    count = int(sizeof kSpecs / sizeof kSpecs[0]);
    return kSpecs;
}

void AttachAircraftDataRefs() { Publish(); }

void AircraftDataRefWritten(DataRefRecord& ref, double value) {
    if (ref.kind != DataRefRecord::Builtin || ref.name.compare(0, std::strlen(kPrefix), kPrefix) != 0) return;
    const std::string& name = ref.name;
    AircraftState& s = state();
    const bool local = name == kLocalX || name == kLocalY || name == kLocalZ;
    const bool world = name == kLatitude || name == kLongitude || name == kElevation;
    const bool reference = name == kLatRef || name == kLonRef;
    if (!local && !world && !reference) return;
    if (!std::isfinite(value)) {
        ReportMisuse(name.c_str(), Number(value, "%g") + " is not a position; the aircraft stays where it is");
    } else if (local) {
        (name == kLocalX ? s.x : name == kLocalY ? s.y : s.z) = value;
        LocalToWorld(s.x, s.y, s.z, s.latitude, s.longitude, s.elevation);
    } else if (world) {
        (name == kLatitude ? s.latitude : name == kLongitude ? s.longitude : s.elevation) = value;
        WorldToLocal(s.latitude, s.longitude, s.elevation, s.x, s.y, s.z);
    } else {
        MoveReference(name == kLatRef ? value : ReferenceLatitude(), name == kLonRef ? value : ReferenceLongitude());
    }
    Publish();
}

// ------------------------------------------------------------------ the user's aircraft

void SetUsersAircraft(const char* path) {
    const char* const function = "XPLMSetUsersAircraft";
    std::string model;
    if (RefusedWhileLoading(function) || !CheckModelPath(function, path, model)) return;
    AircraftState& s = state();
    SendPlaneUnloaded(0);
    s.models[0] = model;
    Note("the user's aircraft is now " + model);
    // The new aircraft starts on the nearest airport.
    const float latitude = FloatOf(s.latitude), longitude = FloatOf(s.longitude);
    const Navaid* airport = NavaidOf(FindNavAid(nullptr, nullptr, &latitude, &longitude, nullptr, xplm_Nav_Airport));
    if (airport != nullptr) PlaceUserAt(*airport);
    SendPlaneLoaded(0);
    if (airport != nullptr) SendPlacement();
}

void PlaceUserAtAirport(const char* code) {
    const char* const function = "XPLMPlaceUserAtAirport";
    if (code == nullptr) {
        ReportMisuse(function, "null airport code");
        return;
    }
    if (RefusedWhileLoading(function)) return;
    const std::string text(code, strnlen(code, kCodeBytes));
    const Navaid* airport = text.size() < kCodeBytes ? NavaidOf(FindAirportById(text)) : nullptr;
    if (airport == nullptr) {
        ReportMisuse(function, "no airport '" + text + "' in the navigation data; the aircraft stays where it is");
        return;
    }
    PlaceUserAt(*airport);
    SendPlacement();
}

void ReinitUsersPlane() {
    const char* const function = "XPLMReinitUsersPlane";
    if (RefusedWhileLoading(function)) return;
    const std::string model = ModelOf(0);
    if (!IsRegularFile(model)) {
        ReportMisuse(function, "the user's aircraft file " + model + " is gone; nothing is reloaded");
        return;
    }
    Note("the user's aircraft " + model + " is reloaded");
    SendPlaneUnloaded(0);
    SendPlaneLoaded(0);
}

void GetNthAircraftModel(int index, char* fileName, char* path) {
    if (fileName) fileName[0] = '\0';
    if (path) path[0] = '\0';
    if (!SlotInRange("XPLMGetNthAircraftModel", index, 0)) return;
    const std::string model = ModelOf(index);
    if (fileName) CopyOut(fileName, kFileNameBytes, FileNameOf(model));
    if (path) CopyOut(path, kPathBytes, model);
}

// ------------------------------------------------------------------ the other aircraft

int AcquirePlanes(char** aircraft, XPLMPlanesAvailable_f callback, void* refcon) {
    const char* const function = "XPLMAcquirePlanes";
    AircraftState& s = state();
    const int plugin = CurrentPlugin();
    // A plugin waits at most once: asking again only changes its callback.
    auto waiting =
        std::find_if(s.waiters.begin(), s.waiters.end(), [&](const Waiter& w) { return w.plugin == plugin; });
    if (s.controller != XPLM_NO_PLUGIN_ID && s.controller != plugin) {
        if (callback == nullptr) {
            if (waiting != s.waiters.end()) s.waiters.erase(waiting);
        } else if (waiting != s.waiters.end()) {
            *waiting = {plugin, callback, refcon};
        } else {
            s.waiters.push_back({plugin, callback, refcon});
        }
        Note(Who(plugin) + " cannot have the aircraft: " + Who(s.controller) + " holds them" +
             (callback ? "; it waits" : ""));
        return 0;
    }
    if (waiting != s.waiters.end()) s.waiters.erase(waiting);
    if (s.controller != plugin) Note(Who(plugin) + " takes the aircraft");
    s.controller = plugin;
    if (aircraft == nullptr) return 1;
    // Entries set the models of aircraft 1, 2, ...; an empty entry leaves its aircraft as it is, a
    // null entry ends the list.
    int slot = 1;
    for (; slot < kAircraftSlots && aircraft[slot - 1] != nullptr; ++slot) {
        const char* entry = aircraft[slot - 1];
        if (entry[0] == '\0') continue;
        std::string model;
        if (CheckModelPath(function, entry, model)) LoadSlot(function, slot, model);
        if (s.controller != plugin) return 1;  // a message handler let them go again
    }
    // Past a full list lies its terminator, or more entries than there are aircraft.
    if (slot == kAircraftSlots && aircraft[kAircraftSlots - 1] != nullptr)
        ReportMisuse(function, "the list names more than " + std::to_string(kAircraftSlots - 1) +
                                   " aircraft; the rest are left out");
    return 1;
}

void ReleasePlanes() {
    const int plugin = CurrentPlugin();
    const int controller = state().controller;
    if (controller != plugin) {
        ReportMisuse("XPLMReleasePlanes", Who(plugin) + " does not hold the aircraft (" +
                                              (controller == XPLM_NO_PLUGIN_ID ? std::string("nobody does")
                                                                               : Who(controller) + " does") +
                                              ")");
        return;
    }
    Release(" releases the aircraft");
}

void SetActiveAircraftCount(int count) {
    const char* const function = "XPLMSetActiveAircraftCount";
    if (!CallerHoldsAircraft(function)) return;
    if (count < 1) {
        ReportMisuse(function, "count " + std::to_string(count) + ": the user's aircraft is always active");
        return;
    }
    state().active = std::min(count, kAircraftSlots);
}

void SetAircraftModel(int index, const char* path) {
    const char* const function = "XPLMSetAircraftModel";
    if (index == 0) {
        ReportMisuse(function, "aircraft 0 is the user's: use XPLMSetUsersAircraft");
        return;
    }
    std::string model;
    if (!SlotInRange(function, index, 1) || !CallerHoldsAircraft(function) || !CheckModelPath(function, path, model))
        return;
    LoadSlot(function, index, model);
}

void DisableAIForPlane(int index) {
    if (!SlotInRange("XPLMDisableAIForPlane", index, 0)) return;
    state().aiDisabled[size_t(index)] = true;
}

void DrawAircraft(int index, float x, float y, float z, float pitch, float roll, float yaw, int fullDraw,
                  const XPLMPlaneDrawState_t* drawState) {
    if (!SlotInRange("XPLMDrawAircraft", index, 0)) return;
    // Without a draw state (or for the fields an older, shorter one lacks) the aircraft is drawn
    // with its gear down and everything else at rest.
    XPLMPlaneDrawState_t shown{};
    shown.gearPosition = 1.0f;
    if (drawState != nullptr) {
        const int size = drawState->structSize;
        auto copy = [&](float XPLMPlaneDrawState_t::*field, size_t offset) {
            if (size >= 0 && size_t(size) >= offset + sizeof(float)) shown.*field = drawState->*field;
        };
#define XPSIM_DRAW_FIELD(name) copy(&XPLMPlaneDrawState_t::name, offsetof(XPLMPlaneDrawState_t, name))
        XPSIM_DRAW_FIELD(gearPosition);
        XPSIM_DRAW_FIELD(flapRatio);
        XPSIM_DRAW_FIELD(spoilerRatio);
        XPSIM_DRAW_FIELD(speedBrakeRatio);
        XPSIM_DRAW_FIELD(slatRatio);
        XPSIM_DRAW_FIELD(wingSweep);
        XPSIM_DRAW_FIELD(thrust);
        XPSIM_DRAW_FIELD(yokePitch);
        XPSIM_DRAW_FIELD(yokeHeading);
        XPSIM_DRAW_FIELD(yokeRoll);
#undef XPSIM_DRAW_FIELD
    }
    RecordDrawing("aircraft index=" + std::to_string(index) + " model=" + FileNameOf(ModelOf(index)) +
                  " x=" + Number(x) + " y=" + Number(y) + " z=" + Number(z) + " pitch=" + Number(pitch) +
                  " roll=" + Number(roll) + " yaw=" + Number(yaw) + " full=" + (fullDraw ? "1" : "0") +
                  " gear=" + Number(shown.gearPosition) + " flaps=" + Number(shown.flapRatio) +
                  " spoilers=" + Number(shown.spoilerRatio) + " speedbrake=" + Number(shown.speedBrakeRatio) +
                  " slats=" + Number(shown.slatRatio) + " sweep=" + Number(shown.wingSweep) +
                  " thrust=" + Number(shown.thrust) + " yoke=" + Number(shown.yokePitch) + "," +
                  Number(shown.yokeHeading) + "," + Number(shown.yokeRoll));
}

// ------------------------------------------------------------------ lifecycle

void ForgetPlanesOf(int plugin) {
    AircraftState& s = state();
    s.waiters.erase(std::remove_if(s.waiters.begin(), s.waiters.end(),
                                   [plugin](const Waiter& w) { return w.plugin == plugin; }),
                    s.waiters.end());
    if (s.controller == plugin) Release(" loses the aircraft (disabled or unloaded)");
}

void ResetAircraft() { state() = AircraftState(); }

}  // namespace xpsim
