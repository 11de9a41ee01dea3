// The terrain and the terrain probes (XPLMScenery's Y-testing).
//
// The terrain is defined on the earth (latitude, longitude, elevation above sea level) by the text
// file xpsim/terrain.txt in the simulator folder; without it the ground is flat at sea level and
// dry. One item a line, '#' starts a comment:
//   elevation METRES                      the ground's elevation (default 0; a later line wins)
//   water LAT1 LON1 LAT2 LON2             a box between two corners is water, at the ground's elevation
//   hill LAT LON RADIUS_M HEIGHT_M        a smooth hill on the ground (a hollow when HEIGHT_M < 0):
//                                         HEIGHT_M * (1 + cos(pi * d / RADIUS_M)) / 2 at great-circle
//                                         distance d < RADIUS_M; hills add up; water covers them
// A hill's radius is 1 m to 150 km and its height at most its radius in size; boxes do not cross
// the 180th meridian. A line that cannot be read is noted in Log.txt with the file and line number
// and skipped. The file is read on the first probe and again whenever the system path changes.
//
// The scenery is loaded in a square of 300 x 300 km centred on the reference point (local x and z
// within 150 km), as in the simulator; beyond it a probe finds a sea-level sphere (dry), and where
// the vertical line through (x, z) misses the earth altogether (more than the earth's radius away)
// it finds nothing.
//
// A Y probe looks along the local vertical through (x, z), whatever the y it is given, and finds the
// surface there: the point of that line whose altitude is the terrain's elevation below it. The
// normal is the surface's, in local coordinates: (0, 1, 0) on flat ground at the reference point,
// tilted by the curve of the earth away from it and by the slope of the hills; the velocity is 0.
#pragma once

#include "XPLMScenery.h"
#include "world/Export.h"

namespace xpsim {

// Half the side of the loaded square, in metres.
constexpr double kLoadedSceneryHalfSize = 150000.0;

// ------------------------------------------------------------------ control interface

// Reads xpsim/terrain.txt under the current system path now (the flat default when it is missing).
// Returns the number of water boxes and hills it holds.
XPSIM_API int LoadTerrain();
// The terrain's elevation in metres at a point of the earth, and whether it is water there.
XPSIM_API double TerrainElevation(double latitude, double longitude, bool* wet);
// Terrain probes that were created and not destroyed.
XPSIM_API int ProbeCount();

// ------------------------------------------------------------------ inside the library

XPLMProbeRef CreateProbe(XPLMProbeType type);
void DestroyProbe(XPLMProbeRef probe);
XPLMProbeResult ProbeTerrain(XPLMProbeRef probe, float x, float y, float z, XPLMProbeInfo_t* info);

// Destroys a plugin's probes; returns how many there were.
int ForgetProbesOf(int plugin);
void ResetTerrain();

}  // namespace xpsim
