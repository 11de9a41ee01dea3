// The aircraft (XPLMPlanes): the user's aircraft and its position, and the sim's other aircraft.
//
// Position. The user's aircraft has a world position (latitude, longitude in degrees, elevation in
// metres above sea level) and the same position in the local frame (world/Position.h). The
// datarefs sim/flightmodel/position/latitude, longitude, elevation, local_x, local_y, local_z,
// lat_ref and lon_ref show them and are coupled: a write to local_x/y/z (by a plugin or the sim)
// moves the world position, a write to latitude/longitude/elevation (by the sim; plugins may not)
// moves the local position, and lat_ref/lon_ref are always the reference point of the local frame.
//
// The reference point moves in two ways, and the world position stays where it is in both (so the
// local coordinates change):
//   - placing the aircraft (the start, XPLMPlaceUserAtAirport, XPLMSetUsersAircraft) puts the
//     reference point where the aircraft is placed;
//   - once a frame (UpdateReferencePoint), when the aircraft is more than kReferenceShiftDistance
//     metres from the reference point along the ground, the reference point moves under the
//     aircraft and the plugins get XPLM_MSG_SCENERY_LOADED, as after the real sim's scenery shift.
// The sim writing lat_ref/lon_ref moves the reference point to the value written.
// xpsim keeps the reference point at values a float holds exactly, so that lat_ref and lon_ref
// (floats) are exactly the point XPLMWorldToLocal uses.
//
// Aircraft. There are kAircraftSlots slots: 0 is the user's aircraft, 1 to 19 the others. Every
// slot starts with the default aircraft (UserAircraftFolder() + UserAircraftFile()); only the
// user's is active. Paths are full file system paths, as the SDK asks. One plugin at a time may
// hold the other aircraft (XPLMAcquirePlanes); plugins that asked while another held them wait in
// the order they asked, and when the holder lets go (XPLMReleasePlanes, or by being disabled or
// unloaded) they are told, each in its own context, until one of them takes the aircraft.
//
// Loading sends the plugins (from the sim, in load order) what the real sim sends:
//   start                   XPLM_MSG_PLANE_LOADED 0, XPLM_MSG_AIRPORT_LOADED, XPLM_MSG_SCENERY_LOADED
//   XPLMPlaceUserAtAirport  XPLM_MSG_AIRPORT_LOADED, XPLM_MSG_SCENERY_LOADED
//   XPLMSetUsersAircraft    XPLM_MSG_PLANE_UNLOADED 0, XPLM_MSG_PLANE_LOADED 0, then as a placement at
//                           the nearest airport (none when the data set has no airport)
//   XPLMReinitUsersPlane    XPLM_MSG_PLANE_UNLOADED 0, XPLM_MSG_PLANE_LOADED 0
//   XPLMSetAircraftModel    XPLM_MSG_PLANE_UNLOADED n, XPLM_MSG_PLANE_LOADED n (also for each model
//                           XPLMAcquirePlanes loads)
// A function that loads or places, called from inside one of these messages, is reported and does
// nothing (it would otherwise load for ever).
#pragma once

#include <string>

#include "XPLMDataAccess.h"
#include "XPLMPlanes.h"
#include "world/Export.h"

namespace xpsim {

struct DataRefRecord;

// The sim's aircraft slots: the user's and 19 others, as in X-Plane 10.
constexpr int kAircraftSlots = 20;
// How far (metres, along the ground) the aircraft may be from the reference point before it moves.
constexpr double kReferenceShiftDistance = 100000.0;
// Where the user starts when the data set has no airport: Seattle-Tacoma (KSEA), X-Plane 10's
// default airport, at its datum and elevation (433 ft).
constexpr double kDefaultStartLatitude = 47.449889;
constexpr double kDefaultStartLongitude = -122.311778;
constexpr double kDefaultStartElevation = 131.9784;

// ------------------------------------------------------------------ control interface

// Puts the default aircraft in every slot and places the user at the start position: the first
// airport of the navigation data (apt.dat's first airport), else the default position. Sends
// nothing; the host sends the start messages once the plugins are enabled.
XPSIM_API void StartAircraft();
// XPLM_MSG_PLANE_LOADED 0, XPLM_MSG_AIRPORT_LOADED, XPLM_MSG_SCENERY_LOADED to every enabled plugin.
XPSIM_API void SendStartMessages();
// Once a frame: moves the reference point under the aircraft when it is too far from it. True when
// it moved (the plugins were sent XPLM_MSG_SCENERY_LOADED).
XPSIM_API bool UpdateReferencePoint();

// The user's world and local position.
XPSIM_API void UserWorldPosition(double& latitude, double& longitude, double& elevation);
XPSIM_API void UserLocalPosition(double& x, double& y, double& z);
// The airport the user was last placed at ("" when none).
XPSIM_API std::string UserAirport();

// The full path of a slot's model ("" for a slot that does not exist).
XPSIM_API std::string AircraftModelPath(int slot);
// The plugin holding the other aircraft, or XPLM_NO_PLUGIN_ID.
XPSIM_API int AircraftController();
XPSIM_API int ActiveAircraftCount();
// XPLMDisableAIForPlane was called for the slot (since the aircraft were last released).
XPSIM_API bool AircraftAIDisabled(int slot);

// ------------------------------------------------------------------ inside the library

// The position datarefs, for LoadStandardDataRefs to create when DataRefs.txt lacks them.
struct AircraftDataRefSpec {
    const char* name;
    XPLMDataTypeID type;
    bool writable;
};
const AircraftDataRefSpec* AircraftDataRefSpecs(int& count);
// Writes the current position into the position datarefs (after they were created).
void AttachAircraftDataRefs();
// A builtin dataref was written (with `value`); couples the position datarefs.
void AircraftDataRefWritten(DataRefRecord& ref, double value);

void SetUsersAircraft(const char* path);
void PlaceUserAtAirport(const char* code);
void ReinitUsersPlane();
void GetNthAircraftModel(int index, char* fileName, char* path);
int AcquirePlanes(char** aircraft, XPLMPlanesAvailable_f callback, void* refcon);
void ReleasePlanes();
void SetActiveAircraftCount(int count);
void SetAircraftModel(int index, const char* path);
void DisableAIForPlane(int index);
void DrawAircraft(int index, float x, float y, float z, float pitch, float roll, float yaw, int fullDraw,
                  const XPLMPlaneDrawState_t* state);

// A plugin is disabled or unloaded: it loses the aircraft it held (the waiting plugins are told)
// and stops waiting for them.
void ForgetPlanesOf(int plugin);
void ResetAircraft();

}  // namespace xpsim
