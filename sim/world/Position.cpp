// The local frame: conversions between latitude/longitude/altitude and local x/y/z.
#include "world/Position.h"

#include <algorithm>
#include <cmath>

namespace xpsim {
namespace {

constexpr double kRadians = M_PI / 180.0;

struct Frame {
    double latitude = 0.0;
    double longitude = 0.0;
};

Frame& frame() {
    static Frame f;
    return f;
}

// Earth-centred cartesian coordinates of a point on or above the sphere.
void ToCentred(double latitude, double longitude, double altitude, double out[3]) {
    const double r = kEarthRadius + altitude;
    const double lat = latitude * kRadians, lon = longitude * kRadians;
    out[0] = r * std::cos(lat) * std::cos(lon);
    out[1] = r * std::cos(lat) * std::sin(lon);
    out[2] = r * std::sin(lat);
}

// The east, north and up unit vectors at the reference point, in earth-centred coordinates.
void Axes(double east[3], double north[3], double up[3]) {
    const double lat = frame().latitude * kRadians, lon = frame().longitude * kRadians;
    east[0] = -std::sin(lon);
    east[1] = std::cos(lon);
    east[2] = 0.0;
    north[0] = -std::sin(lat) * std::cos(lon);
    north[1] = -std::sin(lat) * std::sin(lon);
    north[2] = std::cos(lat);
    up[0] = std::cos(lat) * std::cos(lon);
    up[1] = std::cos(lat) * std::sin(lon);
    up[2] = std::sin(lat);
}

}  // namespace

void SetReferencePoint(double latitude, double longitude) {
    frame().latitude = latitude;
    frame().longitude = longitude;
}

double ReferenceLatitude() { return frame().latitude; }
double ReferenceLongitude() { return frame().longitude; }

void WorldToLocal(double latitude, double longitude, double altitude, double& x, double& y, double& z) {
    double point[3], origin[3], east[3], north[3], up[3];
    ToCentred(latitude, longitude, altitude, point);
    ToCentred(frame().latitude, frame().longitude, 0.0, origin);
    Axes(east, north, up);
    double d[3] = {point[0] - origin[0], point[1] - origin[1], point[2] - origin[2]};
    x = d[0] * east[0] + d[1] * east[1] + d[2] * east[2];
    y = d[0] * up[0] + d[1] * up[1] + d[2] * up[2];
    z = -(d[0] * north[0] + d[1] * north[1] + d[2] * north[2]);
}

void LocalToWorld(double x, double y, double z, double& latitude, double& longitude, double& altitude) {
    double origin[3], east[3], north[3], up[3];
    ToCentred(frame().latitude, frame().longitude, 0.0, origin);
    Axes(east, north, up);
    double p[3];
    for (int i = 0; i < 3; ++i) p[i] = origin[i] + x * east[i] + y * up[i] - z * north[i];
    const double r = std::sqrt(p[0] * p[0] + p[1] * p[1] + p[2] * p[2]);
    altitude = r - kEarthRadius;
    latitude = r > 0.0 ? std::asin(p[2] / r) / kRadians : 0.0;
    longitude = std::atan2(p[1], p[0]) / kRadians;
}

double GreatCircleAngle(double latitude1, double longitude1, double latitude2, double longitude2) {
    const double dLatitude = (latitude2 - latitude1) * kRadians, dLongitude = (longitude2 - longitude1) * kRadians;
    const double h = std::sin(dLatitude / 2) * std::sin(dLatitude / 2) + std::cos(latitude1 * kRadians) *
                                                                           std::cos(latitude2 * kRadians) *
                                                                           std::sin(dLongitude / 2) * std::sin(dLongitude / 2);
    return 2.0 * std::asin(std::min(1.0, std::sqrt(h)));
}

void ResetPosition() { frame() = Frame(); }

}  // namespace xpsim
