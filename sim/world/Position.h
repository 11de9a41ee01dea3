// The local frame: the SDK's OpenGL coordinates around a reference point on the earth.
//
// +x points east, +y up and +z south, in metres, from the reference point at sea level (the
// sim/flightmodel/position/lat_ref and lon_ref datarefs). The frame is a true cartesian frame, so the
// earth's surface curves away from it: far from the reference point a point at sea level has a
// negative y. The earth is a sphere of kEarthRadius metres; the conversion is exact both ways, so
// positions round-trip to far better than a centimetre anywhere near the reference point.
#pragma once

#include "world/Export.h"

namespace xpsim {

// The sphere's radius in metres (the WGS 84 equatorial radius).
constexpr double kEarthRadius = 6378137.0;

// The reference point (degrees). Until it is set: latitude 0, longitude 0.
XPSIM_API void SetReferencePoint(double latitude, double longitude);
XPSIM_API double ReferenceLatitude();
XPSIM_API double ReferenceLongitude();

// Latitude and longitude in degrees, altitude in metres above sea level.
XPSIM_API void WorldToLocal(double latitude, double longitude, double altitude, double& x, double& y, double& z);
XPSIM_API void LocalToWorld(double x, double y, double z, double& latitude, double& longitude, double& altitude);

// The angle between two points on the sphere, in radians (times kEarthRadius: the distance along
// the ground).
XPSIM_API double GreatCircleAngle(double latitude1, double longitude1, double latitude2, double longitude2);

// Forgets the reference point; used by ResetWorld.
void ResetPosition();

}  // namespace xpsim
