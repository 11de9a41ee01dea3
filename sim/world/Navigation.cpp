// The navigation database, the FMS and the GPS.
#include "world/Navigation.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <limits>
#include <vector>

#include "world/DataText.h"
#include "world/Position.h"
#include "world/World.h"

namespace xpsim {
namespace {

// Paths relative to the system folder.
const char* const kNavFile = "Resources/default data/earth_nav.dat";
const char* const kFixFile = "Resources/default data/earth_fix.dat";
const char* const kAirportFile = "Resources/default scenery/default apt dat/Earth nav data/apt.dat";

constexpr float kMetresPerFoot = 0.3048f;
// The buffer sizes the SDK asks plugins to pass for IDs and names.
constexpr size_t kIdBytes = 32;
constexpr size_t kNameBytes = 256;
// The kinds of navaid the FMS takes.
constexpr XPLMNavType kFmsTypes = xplm_Nav_Airport | xplm_Nav_NDB | xplm_Nav_VOR | xplm_Nav_Fix;

struct FmsEntry {
    XPLMNavType type = xplm_Nav_Unknown;
    XPLMNavRef ref = XPLM_NAV_NOT_FOUND;
    std::string id;
    int altitude = 0;  // feet
    float latitude = 0.0f;
    float longitude = 0.0f;
};

struct NavigationState {
    bool loaded = false;
    std::string root;  // the system path the database was read from
    std::vector<Navaid> navaids;
    std::array<FmsEntry, kFmsEntries> fms;
    int displayed = 0;
    int destination = 0;
};

NavigationState& nav() {
    static NavigationState s;
    return s;
}

// The state with the database of the current system path.
NavigationState& Current() {
    NavigationState& s = nav();
    if (!s.loaded || s.root != SystemPath()) LoadNavigationData();
    return s;
}

const char* TypeName(XPLMNavType type) {
    switch (type) {
        case xplm_Nav_Airport: return "airport";
        case xplm_Nav_NDB: return "NDB";
        case xplm_Nav_VOR: return "VOR";
        case xplm_Nav_ILS: return "ILS localizer";
        case xplm_Nav_Localizer: return "localizer";
        case xplm_Nav_GlideSlope: return "glideslope";
        case xplm_Nav_OuterMarker: return "outer marker";
        case xplm_Nav_MiddleMarker: return "middle marker";
        case xplm_Nav_InnerMarker: return "inner marker";
        case xplm_Nav_Fix: return "fix";
        case xplm_Nav_DME: return "DME";
        case xplm_Nav_LatLon: return "latitude/longitude point";
        default: return "navaid";
    }
}

// ------------------------------------------------------------------ reading the files

using Fields = std::vector<std::string>;

Fields Split(const std::string& line) {
    Fields fields;
    size_t pos = 0;
    while (true) {
        pos = line.find_first_not_of(" \t", pos);
        if (pos == std::string::npos) break;
        const size_t end = std::min(line.find_first_of(" \t", pos), line.size());
        fields.push_back(line.substr(pos, end - pos));
        pos = end;
    }
    return fields;
}

// The fields from `from` on, joined by single spaces.
std::string Join(const Fields& fields, size_t from) {
    std::string text;
    for (size_t i = from; i < fields.size(); ++i) text += (i > from ? " " : "") + fields[i];
    return text;
}

using data_text::Real;
using data_text::Whole;

// Reads the fields of one row; the first one that is not what the row needs says why in `why`.
class RowReader {
public:
    explicit RowReader(const Fields& fields) : fields_(fields) {}

    bool Count(size_t needed, const char* kind) {
        if (fields_.size() >= needed) return true;
        why = std::string(kind) + " row has " + std::to_string(fields_.size()) + " fields, needs " +
              std::to_string(needed);
        return false;
    }
    bool Latitude(size_t i, double& out) { return Range(i, "latitude", -90.0, 90.0, out); }
    bool Longitude(size_t i, double& out) { return Range(i, "longitude", -180.0, 180.0, out); }
    bool Number(size_t i, const char* what, double& out) {
        if (Real(fields_[i], out)) return true;
        return Bad(i, what);
    }
    bool Frequency(size_t i, int& out) {
        if (Whole(fields_[i], out) && out >= 0) return true;
        return Bad(i, "frequency");
    }

    std::string why;

private:
    bool Range(size_t i, const char* what, double low, double high, double& out) {
        if (Real(fields_[i], out) && out >= low && out <= high) return true;
        return Bad(i, what);
    }
    bool Bad(size_t i, const char* what) {
        why = std::string("bad ") + what + " '" + fields_[i] + "'";
        return false;
    }

    const Fields& fields_;
};

void SkipRow(const std::string& path, int line, const std::string& why) {
    Note(path + " line " + std::to_string(line) + ": " + why + "; row skipped");
}

// Reads a data file line by line: line 1 says where it was made ("I" or "A"), line 2 starts with
// the version ("1100 Version - ..."), then come the rows up to the closing "99". Hands each row
// that is not blank to `row` with its version, fields and line number. Notes a missing file, a
// version `accepts` refuses (the file is not read then) and a missing "99".
template <typename Row>
void ForEachRow(const std::string& path, bool (*accepts)(int version), Row row) {
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        Note("navigation data: no " + path);
        return;
    }
    std::string line;
    int number = 0;
    int version = 0;
    bool closed = false;
    while (std::getline(in, line)) {
        ++number;
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (number == 1) continue;
        const Fields fields = Split(line);
        if (number == 2) {
            if (fields.size() < 2 || !Whole(fields[0], version) || fields[1] != "Version") {
                Note(path + " line 2: no '<number> Version' header; file not read");
                return;
            }
            if (!accepts(version)) {
                Note(path + ": version " + std::to_string(version) + " is not one xpsim reads; file not read");
                return;
            }
            continue;
        }
        if (fields.empty()) continue;
        if (fields[0] == "99") {
            closed = true;
            break;
        }
        row(version, fields, number);
    }
    if (number < 2)
        Note(path + ": no version line; file not read");
    else if (!closed)
        Note(path + ": ends without its closing 99 row");
}

// earth_nav.dat, 810 or 1100 layout (1150 and 1200 share the 1100 columns):
//   2/3    NDB/VOR   lat lon elevation frequency range variation ID [terminal region] name...
//   4/5/6  ILS localizer/localizer/glideslope
//                    lat lon elevation frequency range course ID airport [region] runway name...
//   7/8/9  markers   lat lon elevation 0 0 course ---- airport [region] runway name...
//   12/13  DMEs      lat lon elevation frequency range bias ID [terminal region] name...
// ([...] only in the 1100 layout.) Rows 14 to 16 (GPS approach points) have no SDK type and are
// passed over.
bool ReadNavRow(const Fields& f, bool layout1100, Navaid& out, std::string& why) {
    int code = 0;
    if (!Whole(f[0], code)) {
        why = "row code '" + f[0] + "' is not a number";
        return false;
    }
    enum Kind { Beacon, IlsPart, Marker, Dme } kind;
    switch (code) {
        case 2: out.type = xplm_Nav_NDB; kind = Beacon; break;
        case 3: out.type = xplm_Nav_VOR; kind = Beacon; break;
        case 4: out.type = xplm_Nav_ILS; kind = IlsPart; break;
        case 5: out.type = xplm_Nav_Localizer; kind = IlsPart; break;
        case 6: out.type = xplm_Nav_GlideSlope; kind = IlsPart; break;
        case 7: out.type = xplm_Nav_OuterMarker; kind = Marker; break;
        case 8: out.type = xplm_Nav_MiddleMarker; kind = Marker; break;
        case 9: out.type = xplm_Nav_InnerMarker; kind = Marker; break;
        case 12:
        case 13: out.type = xplm_Nav_DME; kind = Dme; break;
        case 14:
        case 15:
        case 16:
            if (layout1100) return true;
            [[fallthrough]];
        default:
            why = "unknown row code " + f[0];
            return false;
    }
    const bool airportPart = kind == IlsPart || kind == Marker;
    const size_t nameAt = (airportPart ? 10 : 8) + (layout1100 ? (airportPart ? 1 : 2) : 0);
    RowReader r(f);
    double latitude, longitude, elevation, value = 0.0;
    const char* valueName = code == 3 ? "slaved variation" : kind == Dme ? "bias" : "course";
    if (!r.Count(nameAt + 1, TypeName(out.type)) || !r.Latitude(1, latitude) || !r.Longitude(2, longitude) ||
        !r.Number(3, "elevation", elevation) || (kind != Marker && !r.Frequency(4, out.frequency)) ||
        (code != 2 && !r.Number(6, valueName, value))) {
        why = r.why;
        return false;
    }
    out.latitude = latitude;
    out.longitude = longitude;
    out.height = float(elevation) * kMetresPerFoot;
    out.id = f[7] == "----" ? "" : f[7];
    switch (kind) {
        case Beacon:
            out.heading = code == 3 ? float(value) : 0.0f;
            out.name = Join(f, nameAt);
            break;
        case IlsPart:
        case Marker:
            if (code == 6)
                out.heading = float(std::fmod(value, 1000.0));  // the glideslope angle x 100000 in front
            else if (kind == IlsPart)
                out.heading = float(std::fmod(value, 360.0));  // the magnetic course x 360 in front (1150)
            else
                out.heading = float(value);
            out.name = f[8] + " " + f[layout1100 ? 10 : 9] + " " + Join(f, nameAt);
            break;
        case Dme:
            out.name = (layout1100 && f[8] != "ENRT" ? f[8] + " " : "") + Join(f, nameAt);
            break;
    }
    return true;
}

// earth_fix.dat: "lat lon ID" (600 layout) or "lat lon ID terminal region type [name...]" (1100 and
// later; the name only from 1200). A fix's name is its ID unless the file names it.
bool ReadFixRow(const Fields& f, int version, Navaid& out, std::string& why) {
    RowReader r(f);
    if (!r.Count(version >= 1100 ? 5 : 3, "fix") || !r.Latitude(0, out.latitude) || !r.Longitude(1, out.longitude)) {
        why = r.why;
        return false;
    }
    out.type = xplm_Nav_Fix;
    out.id = f[2];
    out.name = version >= 1200 && f.size() > 6 ? Join(f, 6) : f[2];
    return true;
}

// An airport of apt.dat while its rows are read. Its position is the datum its 1302 rows give, or
// else the middle of the box around its runway ends and helipads.
struct AirportInProgress {
    bool open = false;
    int line = 0;
    Navaid airport;
    bool hasDatumLatitude = false;
    bool hasDatumLongitude = false;
    double datumLatitude = 0.0;
    double datumLongitude = 0.0;
    bool placed = false;
    double south = 0.0, north = 0.0, west = 0.0, east = 0.0;

    void Add(double latitude, double longitude) {
        if (!placed) {
            south = north = latitude;
            west = east = longitude;
            placed = true;
        }
        south = std::min(south, latitude);
        north = std::max(north, latitude);
        west = std::min(west, longitude);
        east = std::max(east, longitude);
    }

    void Finish(const std::string& path, std::vector<Navaid>& out) {
        if (!open) return;
        open = false;
        if (hasDatumLatitude && hasDatumLongitude) {
            airport.latitude = datumLatitude;
            airport.longitude = datumLongitude;
        } else if (placed) {
            airport.latitude = (south + north) / 2.0;
            airport.longitude = (west + east) / 2.0;
        } else {
            Note(path + " line " + std::to_string(line) + ": airport " + airport.id +
                 " has no runway, helipad or datum to place it; left out");
            return;
        }
        out.push_back(airport);
    }
};

// apt.dat rows that matter here:
//   1/16/17  land airport/seaplane base/heliport   elevation tower 0 ID name...
//   100      land runway   ... end 1 at fields 9 and 10, end 2 at fields 18 and 19
//   101      water runway  ... ends at fields 4, 5 and 7, 8
//   102      helipad       designator lat lon ...
//   1302     datum_lat/datum_lon value
// Every other row is passed over, as are the rows of an airport whose header could not be read.
void ReadAirportRow(const std::string& path, const Fields& f, int line, AirportInProgress& current,
                    std::vector<Navaid>& out) {
    int code = 0;
    if (!Whole(f[0], code)) {
        SkipRow(path, line, "row code '" + f[0] + "' is not a number");
        return;
    }
    RowReader r(f);
    double elevation, a, b, c, d;
    switch (code) {
        case 1:
        case 16:
        case 17:
            current.Finish(path, out);
            current = AirportInProgress();
            if (!r.Count(6, "airport") || !r.Number(1, "elevation", elevation)) break;
            current.open = true;
            current.line = line;
            current.airport.type = xplm_Nav_Airport;
            current.airport.height = float(elevation) * kMetresPerFoot;
            current.airport.id = f[4];
            current.airport.name = Join(f, 5);
            return;
        case 100:
            if (!current.open) return;
            if (!r.Count(20, "runway") || !r.Latitude(9, a) || !r.Longitude(10, b) || !r.Latitude(18, c) ||
                !r.Longitude(19, d))
                break;
            current.Add(a, b);
            current.Add(c, d);
            return;
        case 101:
            if (!current.open) return;
            if (!r.Count(9, "water runway") || !r.Latitude(4, a) || !r.Longitude(5, b) || !r.Latitude(7, c) ||
                !r.Longitude(8, d))
                break;
            current.Add(a, b);
            current.Add(c, d);
            return;
        case 102:
            if (!current.open) return;
            if (!r.Count(4, "helipad") || !r.Latitude(2, a) || !r.Longitude(3, b)) break;
            current.Add(a, b);
            return;
        case 1302:
            if (!current.open || f.size() < 3) return;
            if (f[1] == "datum_lat") {
                if (!r.Latitude(2, current.datumLatitude)) break;
                current.hasDatumLatitude = true;
            } else if (f[1] == "datum_lon") {
                if (!r.Longitude(2, current.datumLongitude)) break;
                current.hasDatumLongitude = true;
            }
            return;
        default:
            return;
    }
    SkipRow(path, line, r.why);
}

void ReadNavaids(const std::string& path, std::vector<Navaid>& out) {
    const size_t before = out.size();
    ForEachRow(path, [](int version) { return version == 810 || version >= 1100; },
               [&](int version, const Fields& fields, int line) {
                   Navaid navaid;
                   std::string why;
                   if (!ReadNavRow(fields, version >= 1100, navaid, why))
                       SkipRow(path, line, why);
                   else if (navaid.type != xplm_Nav_Unknown)
                       out.push_back(navaid);
               });
    Note("navigation data: " + std::to_string(out.size() - before) + " navaids from " + path);
}

void ReadFixes(const std::string& path, std::vector<Navaid>& out) {
    const size_t before = out.size();
    ForEachRow(path, [](int version) { return version == 600 || version >= 1100; },
               [&](int version, const Fields& fields, int line) {
                   Navaid fix;
                   std::string why;
                   if (ReadFixRow(fields, version, fix, why))
                       out.push_back(fix);
                   else
                       SkipRow(path, line, why);
               });
    Note("navigation data: " + std::to_string(out.size() - before) + " fixes from " + path);
}

void ReadAirports(const std::string& path, std::vector<Navaid>& out) {
    const size_t before = out.size();
    AirportInProgress current;
    ForEachRow(path, [](int version) { return version >= 850; },
               [&](int, const Fields& fields, int line) { ReadAirportRow(path, fields, line, current, out); });
    current.Finish(path, out);
    Note("navigation data: " + std::to_string(out.size() - before) + " airports from " + path);
}

// ------------------------------------------------------------------ searching

std::string Lower(std::string text) {
    for (char& c : text) c = char(std::tolower(static_cast<unsigned char>(c)));
    return text;
}

// Whether `text` contains `fragment`, ignoring case.
bool Contains(const std::string& text, const char* fragment) {
    return Lower(text).find(Lower(fragment)) != std::string::npos;
}

bool OneType(const char* function, XPLMNavType type) {
    if (type > 0 && (type & (type - 1)) == 0) return true;
    ReportMisuse(function, "type " + std::to_string(type) + " is not exactly one navaid type");
    return false;
}

// ------------------------------------------------------------------ the FMS

bool FmsIndex(const char* function, int index) {
    if (index >= 0 && index < kFmsEntries) return true;
    ReportMisuse(function, "entry " + std::to_string(index) + " is not one of the FMS's entries 0 to " +
                               std::to_string(kFmsEntries - 1));
    return false;
}

}  // namespace

// ------------------------------------------------------------------ control interface

int LoadNavigationData() {
    NavigationState& s = nav();
    s = NavigationState();
    s.loaded = true;
    s.root = SystemPath();
    ReadAirports(s.root + kAirportFile, s.navaids);
    ReadNavaids(s.root + kNavFile, s.navaids);
    ReadFixes(s.root + kFixFile, s.navaids);
    std::stable_sort(s.navaids.begin(), s.navaids.end(),
                     [](const Navaid& a, const Navaid& b) { return a.type < b.type; });
    return int(s.navaids.size());
}

int NavaidCount() { return int(Current().navaids.size()); }

// ------------------------------------------------------------------ the database

const Navaid* NavaidOf(XPLMNavRef ref) {
    const std::vector<Navaid>& navaids = Current().navaids;
    if (ref < 0 || size_t(ref) >= navaids.size()) return nullptr;
    return &navaids[size_t(ref)];
}

XPLMNavRef FirstNavAid() { return Current().navaids.empty() ? XPLM_NAV_NOT_FOUND : 0; }

XPLMNavRef NextNavAid(XPLMNavRef ref) {
    if (NavaidOf(ref) == nullptr || NavaidOf(ref + 1) == nullptr) return XPLM_NAV_NOT_FOUND;
    return ref + 1;
}

XPLMNavRef FirstNavAidOfType(XPLMNavType type) {
    if (!OneType("XPLMFindFirstNavAidOfType", type)) return XPLM_NAV_NOT_FOUND;
    const std::vector<Navaid>& navaids = Current().navaids;
    for (size_t i = 0; i < navaids.size(); ++i)
        if (navaids[i].type == type) return XPLMNavRef(i);
    return XPLM_NAV_NOT_FOUND;
}

XPLMNavRef LastNavAidOfType(XPLMNavType type) {
    if (!OneType("XPLMFindLastNavAidOfType", type)) return XPLM_NAV_NOT_FOUND;
    const std::vector<Navaid>& navaids = Current().navaids;
    for (size_t i = navaids.size(); i-- > 0;)
        if (navaids[i].type == type) return XPLMNavRef(i);
    return XPLM_NAV_NOT_FOUND;
}

XPLMNavRef FindAirportById(const std::string& code) {
    const std::string wanted = Lower(code);
    const std::vector<Navaid>& navaids = Current().navaids;
    for (size_t i = 0; i < navaids.size() && navaids[i].type == xplm_Nav_Airport; ++i)
        if (Lower(navaids[i].id) == wanted) return XPLMNavRef(i);
    return XPLM_NAV_NOT_FOUND;
}

XPLMNavRef FindNavAid(const char* nameFragment, const char* idFragment, const float* latitude,
                      const float* longitude, const int* frequency, XPLMNavType types) {
    const std::vector<Navaid>& navaids = Current().navaids;
    const bool nearest = latitude != nullptr && longitude != nullptr;
    XPLMNavRef found = XPLM_NAV_NOT_FOUND;
    double best = std::numeric_limits<double>::infinity();
    for (size_t i = 0; i < navaids.size(); ++i) {
        const Navaid& n = navaids[i];
        if ((n.type & types) == 0) continue;
        // A frequency screens out the radio navaids on other frequencies and those without one
        // (markers), but never airports and fixes.
        if (frequency != nullptr && n.type != xplm_Nav_Airport && n.type != xplm_Nav_Fix &&
            (n.frequency == 0 || n.frequency != *frequency))
            continue;
        if (nameFragment != nullptr && !Contains(n.name, nameFragment)) continue;
        if (idFragment != nullptr && !Contains(n.id, idFragment)) continue;
        if (!nearest) {
            found = XPLMNavRef(i);
            continue;
        }
        const double separation = GreatCircleAngle(*latitude, *longitude, n.latitude, n.longitude);
        if (separation < best) {
            best = separation;
            found = XPLMNavRef(i);
        }
    }
    return found;
}

void GetNavAidInfo(XPLMNavRef ref, XPLMNavType* type, float* latitude, float* longitude, float* height,
                   int* frequency, float* heading, char* id, char* name, char* reg) {
    static const Navaid kNone;
    const Navaid* n = NavaidOf(ref);
    if (n == nullptr) {
        ReportMisuse("XPLMGetNavAidInfo", "no navaid " + std::to_string(ref));
        n = &kNone;
    }
    if (type) *type = n->type;
    if (latitude) *latitude = float(n->latitude);
    if (longitude) *longitude = float(n->longitude);
    if (height) *height = n->height;
    if (frequency) *frequency = n->frequency;
    if (heading) *heading = n->heading;
    if (id) CopyOut(id, kIdBytes, n->id);
    if (name) CopyOut(name, kNameBytes, n->name);
    // xpsim loads no scenery, so no navaid lies inside the loaded region. One byte, not a string.
    if (reg) *reg = 0;
}

// ------------------------------------------------------------------ the FMS and the GPS

int CountFmsEntries() {
    const NavigationState& s = Current();
    for (int i = kFmsEntries; i-- > 0;)
        if (s.fms[size_t(i)].type != xplm_Nav_Unknown) return i + 1;
    return 0;
}

int DisplayedFmsEntry() { return Current().displayed; }

int DestinationFmsEntry() { return Current().destination; }

void SetDisplayedFmsEntry(int index) {
    NavigationState& s = Current();
    if (FmsIndex("XPLMSetDisplayedFMSEntry", index)) s.displayed = index;
}

void SetDestinationFmsEntry(int index) {
    NavigationState& s = Current();
    if (FmsIndex("XPLMSetDestinationFMSEntry", index)) s.destination = index;
}

void GetFmsEntryInfo(int index, XPLMNavType* type, char* id, XPLMNavRef* ref, int* altitude, float* latitude,
                     float* longitude) {
    static const FmsEntry kEmpty;
    const NavigationState& s = Current();
    const FmsEntry& entry = FmsIndex("XPLMGetFMSEntryInfo", index) ? s.fms[size_t(index)] : kEmpty;
    if (type) *type = entry.type;
    if (id) CopyOut(id, kIdBytes, entry.id);
    if (ref) *ref = entry.ref;
    if (altitude) *altitude = entry.altitude;
    if (latitude) *latitude = entry.latitude;
    if (longitude) *longitude = entry.longitude;
}

void SetFmsEntryInfo(int index, XPLMNavRef ref, int altitude) {
    const char* const function = "XPLMSetFMSEntryInfo";
    NavigationState& s = Current();
    if (!FmsIndex(function, index)) return;
    const Navaid* n = NavaidOf(ref);
    if (n == nullptr) {
        ReportMisuse(function, "no navaid " + std::to_string(ref));
        return;
    }
    if ((n->type & kFmsTypes) == 0) {
        ReportMisuse(function, "navaid " + std::to_string(ref) + " (" + TypeName(n->type) +
                                   ") is not an airport, fix, VOR or NDB");
        return;
    }
    FmsEntry& entry = s.fms[size_t(index)];
    entry.type = n->type;
    entry.ref = ref;
    entry.id = n->id;
    entry.altitude = altitude;
    entry.latitude = float(n->latitude);
    entry.longitude = float(n->longitude);
}

void SetFmsEntryLatLon(int index, float latitude, float longitude, int altitude) {
    const char* const function = "XPLMSetFMSEntryLatLon";
    NavigationState& s = Current();
    if (!FmsIndex(function, index)) return;
    if (!(latitude >= -90.0f && latitude <= 90.0f && longitude >= -180.0f && longitude <= 180.0f)) {
        char text[96];
        std::snprintf(text, sizeof text, "latitude %g, longitude %g is not a point on the earth", latitude,
                      longitude);
        ReportMisuse(function, text);
        return;
    }
    FmsEntry& entry = s.fms[size_t(index)];
    entry = FmsEntry();
    entry.type = xplm_Nav_LatLon;
    entry.altitude = altitude;
    entry.latitude = latitude;
    entry.longitude = longitude;
}

void ClearFmsEntry(int index) {
    NavigationState& s = Current();
    if (!FmsIndex("XPLMClearFMSEntry", index)) return;
    std::move(s.fms.begin() + index + 1, s.fms.end(), s.fms.begin() + index);
    s.fms.back() = FmsEntry();
    // The displayed and destination entries stay on the same waypoints.
    if (s.displayed > index) s.displayed--;
    if (s.destination > index) s.destination--;
}

XPLMNavType GpsDestinationType() {
    const NavigationState& s = Current();
    return s.fms[size_t(s.destination)].type;
}

XPLMNavRef GpsDestination() {
    const NavigationState& s = Current();
    return s.fms[size_t(s.destination)].ref;
}

void ResetNavigation() { nav() = NavigationState(); }

}  // namespace xpsim
