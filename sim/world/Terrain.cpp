// The terrain model and the terrain probes.
#include "world/Terrain.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <memory>
#include <unordered_set>
#include <vector>

#include "world/DataText.h"
#include "world/Position.h"
#include "world/World.h"

namespace xpsim {
namespace {

using namespace data_text;

const char* const kTerrainFile = "xpsim/terrain.txt";
constexpr double kRadians = M_PI / 180.0;
constexpr double kMaxHillRadius = 150000.0;

struct WaterBox {
    double south, west, north, east;
};

struct Hill {
    double latitude, longitude, radius, height;
};

struct Probe {
    int number = 0;
    int owner = 0;
    bool dead = false;
};

struct TerrainState {
    bool loaded = false;
    std::string root;  // the system path the terrain was read from
    double elevation = 0.0;
    std::vector<WaterBox> water;
    std::vector<Hill> hills;
    std::vector<std::unique_ptr<Probe>> probes;  // live and destroyed, so that no handle is reused
    std::unordered_set<const void*> handles;
    int nextNumber = 1;
};

TerrainState& terrain() {
    static TerrainState s;
    return s;
}

TerrainState& Current() {
    TerrainState& s = terrain();
    if (!s.loaded || s.root != SystemPath()) LoadTerrain();
    return s;
}

bool Latitude(const std::string& text, double& out) { return Real(text, out) && out >= -90.0 && out <= 90.0; }
bool Longitude(const std::string& text, double& out) { return Real(text, out) && out >= -180.0 && out <= 180.0; }

// Reads one line of the terrain file into the state; false with the reason when it cannot.
bool ReadTerrainLine(const Words& w, TerrainState& s, std::string& why) {
    auto count = [&](size_t needed) {
        if (w.size() == needed) return true;
        why = w[0] + " takes " + std::to_string(needed - 1) + (needed == 2 ? " value" : " values") + ", the line has " +
              std::to_string(w.size() - 1);
        return false;
    };
    auto bad = [&](size_t i, const char* what) {
        why = std::string("bad ") + what + " '" + w[i] + "'";
        return false;
    };
    if (w[0] == "elevation") {
        double value;
        if (!count(2)) return false;
        if (!Real(w[1], value) || std::fabs(value) > 10000.0) return bad(1, "elevation");
        s.elevation = value;
        return true;
    }
    if (w[0] == "water") {
        double lat1, lon1, lat2, lon2;
        if (!count(5)) return false;
        if (!Latitude(w[1], lat1)) return bad(1, "latitude");
        if (!Longitude(w[2], lon1)) return bad(2, "longitude");
        if (!Latitude(w[3], lat2)) return bad(3, "latitude");
        if (!Longitude(w[4], lon2)) return bad(4, "longitude");
        s.water.push_back({std::min(lat1, lat2), std::min(lon1, lon2), std::max(lat1, lat2), std::max(lon1, lon2)});
        return true;
    }
    if (w[0] == "hill") {
        Hill hill;
        if (!count(5)) return false;
        if (!Latitude(w[1], hill.latitude)) return bad(1, "latitude");
        if (!Longitude(w[2], hill.longitude)) return bad(2, "longitude");
        if (!Real(w[3], hill.radius) || hill.radius < 1.0 || hill.radius > kMaxHillRadius) return bad(3, "radius");
        if (!Real(w[4], hill.height)) return bad(4, "height");
        if (std::fabs(hill.height) > hill.radius) {
            why = "a hill's height may not exceed its radius";
            return false;
        }
        s.hills.push_back(hill);
        return true;
    }
    why = "unknown item '" + w[0] + "'";
    return false;
}

double Surface(const TerrainState& s, double latitude, double longitude, bool& wet) {
    for (const WaterBox& box : s.water) {
        if (latitude >= box.south && latitude <= box.north && longitude >= box.west && longitude <= box.east) {
            wet = true;
            return s.elevation;
        }
    }
    wet = false;
    double height = s.elevation;
    for (const Hill& hill : s.hills) {
        const double d = GreatCircleAngle(latitude, longitude, hill.latitude, hill.longitude) * kEarthRadius;
        if (d < hill.radius) height += hill.height * (1.0 + std::cos(M_PI * d / hill.radius)) / 2.0;
    }
    return height;
}

struct Vector {
    double x, y, z;
};

Vector SurfacePoint(const TerrainState& s, double latitude, double longitude) {
    bool wet;
    Vector v;
    WorldToLocal(latitude, longitude, Surface(s, latitude, longitude, wet), v.x, v.y, v.z);
    return v;
}

Vector Normalized(Vector v) {
    const double length = std::sqrt(v.x * v.x + v.y * v.y + v.z * v.z);
    if (!(length > 0.0)) return {0.0, 1.0, 0.0};
    return {v.x / length, v.y / length, v.z / length};
}

// The surface's normal at a point of the earth, in local coordinates: the cross product of the
// surface's eastward and northward tangents, each taken over a metre around the point.
Vector SurfaceNormal(const TerrainState& s, double latitude, double longitude) {
    const double dLat = 0.5 / kEarthRadius / kRadians;
    const double dLon = dLat / std::max(std::cos(latitude * kRadians), 1e-9);
    const Vector e1 = SurfacePoint(s, latitude, longitude + dLon), e0 = SurfacePoint(s, latitude, longitude - dLon);
    const Vector n1 = SurfacePoint(s, latitude + dLat, longitude), n0 = SurfacePoint(s, latitude - dLat, longitude);
    const Vector east = {e1.x - e0.x, e1.y - e0.y, e1.z - e0.z};
    const Vector north = {n1.x - n0.x, n1.y - n0.y, n1.z - n0.z};
    return Normalized({east.y * north.z - east.z * north.y, east.z * north.x - east.x * north.z,
                       east.x * north.y - east.y * north.x});
}

// The y of the point on the vertical line through (x, z) at `altitude` above the sea-level sphere,
// written so that no precision is lost near the reference point.
double HeightOnVertical(double x, double z, double altitude) {
    const double r = kEarthRadius + altitude, d2 = x * x + z * z;
    return altitude - d2 / (std::sqrt(r * r - d2) + r);
}

std::string Address(const void* handle) {
    if (handle == nullptr) return "0";
    char text[64];
    std::snprintf(text, sizeof text, "%p", handle);
    return text;
}

Probe* ProbeFromHandle(const char* function, XPLMProbeRef handle) {
    TerrainState& s = terrain();
    if (handle == nullptr || s.handles.count(handle) == 0) {
        ReportMisuse(function, Address(handle) + " is not a terrain probe");
        return nullptr;
    }
    auto* probe = static_cast<Probe*>(handle);
    if (probe->dead) {
        ReportMisuse(function, "terrain probe " + std::to_string(probe->number) + " was destroyed");
        return nullptr;
    }
    return probe;
}

}  // namespace

// ------------------------------------------------------------------ the terrain

int LoadTerrain() {
    TerrainState& s = terrain();
    s.loaded = true;
    s.root = SystemPath();
    s.elevation = 0.0;
    s.water.clear();
    s.hills.clear();
    const std::string path = s.root + kTerrainFile;
    const bool found = ForEachLine(path, [&](const std::string&, const Words& words, int number) {
        std::string why;
        if (!words.empty() && !ReadTerrainLine(words, s, why))
            Note(path + " line " + std::to_string(number) + ": " + why + "; line skipped");
        return true;
    });
    if (found) {
        char elevation[32];
        std::snprintf(elevation, sizeof elevation, "%g", s.elevation);
        auto count = [](size_t n, const char* one, const char* many) {
            return std::to_string(n) + " " + (n == 1 ? one : many);
        };
        Note("terrain: " + path + ": ground at " + elevation + " m, " +
             count(s.water.size(), "water box", "water boxes") + ", " + count(s.hills.size(), "hill", "hills"));
    }
    return int(s.water.size() + s.hills.size());
}

double TerrainElevation(double latitude, double longitude, bool* wet) {
    bool isWet = false;
    const double elevation = Surface(Current(), latitude, longitude, isWet);
    if (wet != nullptr) *wet = isWet;
    return elevation;
}

// ------------------------------------------------------------------ probes

int ProbeCount() {
    int count = 0;
    for (const auto& probe : terrain().probes) count += probe->dead ? 0 : 1;
    return count;
}

XPLMProbeRef CreateProbe(XPLMProbeType type) {
    if (type != xplm_ProbeY) {
        ReportMisuse("XPLMCreateProbe", "unknown probe type " + std::to_string(type));
        return nullptr;
    }
    TerrainState& s = terrain();
    auto probe = std::make_unique<Probe>();
    probe->number = s.nextNumber++;
    probe->owner = CurrentPlugin();
    Probe* raw = probe.get();
    s.probes.push_back(std::move(probe));
    s.handles.insert(raw);
    return raw;
}

void DestroyProbe(XPLMProbeRef handle) {
    Probe* probe = ProbeFromHandle("XPLMDestroyProbe", handle);
    if (probe != nullptr) probe->dead = true;
}

XPLMProbeResult ProbeTerrain(XPLMProbeRef handle, float x, float, float z, XPLMProbeInfo_t* info) {
    const char* const function = "XPLMProbeTerrainXYZ";
    if (ProbeFromHandle(function, handle) == nullptr) return xplm_ProbeError;
    if (info == nullptr) {
        ReportMisuse(function, "no XPLMProbeInfo_t");
        return xplm_ProbeError;
    }
    if (info->structSize != int(sizeof(XPLMProbeInfo_t))) {
        ReportMisuse(function, "structSize " + std::to_string(info->structSize) + " is not " +
                                   std::to_string(sizeof(XPLMProbeInfo_t)));
        return xplm_ProbeError;
    }
    if (!std::isfinite(x) || !std::isfinite(z)) {
        ReportMisuse(function, "x and z must be finite numbers");
        return xplm_ProbeError;
    }
    const TerrainState& s = Current();
    const double px = x, pz = z;
    Vector normal;
    double py;
    bool wet = false;
    if (std::fabs(px) <= kLoadedSceneryHalfSize && std::fabs(pz) <= kLoadedSceneryHalfSize) {
        // The surface point is where the vertical's altitude meets the terrain below it. Moving along
        // the vertical shifts the point under it by at most a few hundredths of the height change,
        // and hills are no steeper than 90 degrees, so the search closes in quickly.
        double latitude, longitude, altitude, height = s.elevation;
        for (int i = 0; i < 60; ++i) {
            LocalToWorld(px, HeightOnVertical(px, pz, height), pz, latitude, longitude, altitude);
            const double next = Surface(s, latitude, longitude, wet);
            const bool settled = std::fabs(next - height) < 1e-6;
            height = next;
            if (settled) break;
        }
        py = HeightOnVertical(px, pz, height);
        LocalToWorld(px, py, pz, latitude, longitude, altitude);
        Surface(s, latitude, longitude, wet);
        normal = SurfaceNormal(s, latitude, longitude);
    } else {
        if (px * px + pz * pz > kEarthRadius * kEarthRadius) return xplm_ProbeMissed;
        py = HeightOnVertical(px, pz, 0.0);
        normal = Normalized({px, py + kEarthRadius, pz});
    }
    info->locationX = x;
    info->locationY = float(py);
    info->locationZ = z;
    info->normalX = float(normal.x);
    info->normalY = float(normal.y);
    info->normalZ = float(normal.z);
    info->velocityX = info->velocityY = info->velocityZ = 0.0f;
    info->is_wet = wet ? 1 : 0;
    return xplm_ProbeHitTerrain;
}

int ForgetProbesOf(int plugin) {
    int count = 0;
    for (auto& probe : terrain().probes) {
        if (!probe->dead && probe->owner == plugin) {
            probe->dead = true;
            ++count;
        }
    }
    return count;
}

void ResetTerrain() { terrain() = TerrainState(); }

}  // namespace xpsim
