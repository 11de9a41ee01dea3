// The scenery library: the packages' library.txt files and lookups of virtual paths.
#include "world/SceneryLibrary.h"

#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <cmath>
#include <set>

#include "world/DataText.h"
#include "world/World.h"

namespace xpsim {
namespace {

using namespace data_text;

const char* const kCustomScenery = "Custom Scenery/";
const char* const kDefaultScenery = "Resources/default scenery/";
const char* const kPacksFile = "Custom Scenery/scenery_packs.ini";

enum class ExportKind { Export, Extend, Exclude, Backup };

struct Rect {
    int west, south, east, north;
};

struct Region {
    std::string name;
    std::vector<Rect> rects;
};

struct LibraryExport {
    ExportKind kind = ExportKind::Export;
    std::string virtualPath;
    std::string realPath;  // relative to the simulator folder
    int region = -1;       // index into the package's regions; -1 everywhere
};

struct Package {
    std::string folder;  // relative to the simulator folder, with a trailing '/'
    std::vector<Region> regions;
    std::vector<LibraryExport> exports;
};

struct LibraryState {
    bool loaded = false;
    std::string root;
    std::vector<Package> packages;  // highest priority first
};

LibraryState& library() {
    static LibraryState s;
    return s;
}

LibraryState& Current() {
    LibraryState& s = library();
    if (!s.loaded || s.root != SystemPath()) LoadSceneryLibrary();
    return s;
}

bool IsDirectory(const std::string& path) {
    struct stat st;
    return stat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

bool IsRegularFile(const std::string& path) {
    struct stat st;
    return stat(path.c_str(), &st) == 0 && S_ISREG(st.st_mode);
}

// The names of the folders in a folder that hold a library.txt, in byte order.
std::vector<std::string> PackageNames(const std::string& folder) {
    std::vector<std::string> names;
    DIR* dir = opendir(folder.c_str());
    if (dir == nullptr) return names;
    while (dirent* entry = readdir(dir)) {
        const std::string name = entry->d_name;
        if (name == "." || name == "..") continue;
        if (IsDirectory(folder + name) && IsRegularFile(folder + name + "/library.txt")) names.push_back(name);
    }
    closedir(dir);
    std::sort(names.begin(), names.end());
    return names;
}

// The custom packages in priority order: scenery_packs.ini's order when it exists, packages it does
// not list first.
std::vector<std::string> CustomPackageOrder(const std::string& root) {
    const std::vector<std::string> present = PackageNames(root + kCustomScenery);
    std::vector<std::string> listed;
    std::set<std::string> mentioned;
    const std::string ini = root + kPacksFile;
    ForEachLine(ini, [&](const std::string& line, const Words& w, int) {
        if (w.empty() || (w[0] != "SCENERY_PACK" && w[0] != "SCENERY_PACK_DISABLED")) return true;
        std::string path = RestOfLine(line, 1);
        std::replace(path.begin(), path.end(), '\\', '/');
        if (path.compare(0, std::string(kCustomScenery).size(), kCustomScenery) != 0) return true;
        std::string name = path.substr(std::string(kCustomScenery).size());
        while (!name.empty() && name.back() == '/') name.pop_back();
        if (!mentioned.insert(name).second) return true;
        if (w[0] == "SCENERY_PACK" && std::binary_search(present.begin(), present.end(), name)) listed.push_back(name);
        return true;
    });
    std::vector<std::string> order;
    for (const std::string& name : present) {
        if (mentioned.count(name) == 0) order.push_back(name);
    }
    order.insert(order.end(), listed.begin(), listed.end());
    return order;
}

bool RegionHolds(const Package& package, int region, double latitude, double longitude) {
    if (region < 0) return true;
    const double lat = std::floor(latitude), lon = std::floor(longitude);
    for (const Rect& r : package.regions[size_t(region)].rects) {
        if (lon >= r.west && lon <= r.east && lat >= r.south && lat <= r.north) return true;
    }
    return false;
}

// Reads one package's library.txt into it.
class LibraryReader {
public:
    LibraryReader(const std::string& root, Package& package) : root_(root), package_(package) {}

    // One line; false with why when the row is to be skipped.
    bool Row(const std::string& line, const Words& w) {
        const std::string& c = w[0];
        if (c == "EXPORT" || c == "EXPORT_EXTEND" || c == "EXPORT_EXCLUDE" || c == "EXPORT_BACKUP") {
            const ExportKind kind = c == "EXPORT"          ? ExportKind::Export
                                    : c == "EXPORT_EXTEND" ? ExportKind::Extend
                                    : c == "EXPORT_EXCLUDE" ? ExportKind::Exclude
                                                            : ExportKind::Backup;
            return Export(kind, line, w, 1);
        }
        if (c == "EXPORT_RATIO") {
            double ratio;
            if (w.size() < 4) return Fail("EXPORT_RATIO needs a ratio, a virtual path and a file");
            if (!Real(w[1], ratio) || ratio <= 0.0) return Fail("bad ratio '" + w[1] + "'");
            return Export(ExportKind::Export, line, w, 2);
        }
        if (c == "REGION_DEFINE") {
            if (w.size() != 2) return Fail("REGION_DEFINE needs one name");
            if (FindRegion(w[1]) >= 0) return Fail("region '" + w[1] + "' is defined again");
            package_.regions.push_back({w[1], {}});
            defining_ = int(package_.regions.size()) - 1;
            return true;
        }
        if (c == "REGION_RECT") {
            if (defining_ < 0) return Fail("REGION_RECT before any REGION_DEFINE");
            Rect r;
            if (w.size() != 5 || !Whole(w[1], r.west) || !Whole(w[2], r.south) || !Whole(w[3], r.east) ||
                !Whole(w[4], r.north))
                return Fail("REGION_RECT needs four whole degrees: west south east north");
            if (r.west < -180 || r.east > 179 || r.west > r.east || r.south < -90 || r.north > 89 || r.south > r.north)
                return Fail("REGION_RECT " + w[1] + " " + w[2] + " " + w[3] + " " + w[4] + " is not a box of tiles");
            package_.regions[size_t(defining_)].rects.push_back(r);
            return true;
        }
        if (c == "REGION") {
            if (w.size() != 2) return Fail("REGION needs one name");
            const int region = FindRegion(w[1]);
            if (region < 0) return Fail("unknown region '" + w[1] + "'");
            region_ = region;
            return true;
        }
        if (c == "REGION_ALL") {
            region_ = -1;
            return true;
        }
        if (c == "REGION_BITMAP" || c == "REGION_DREF") return Fail(c + " is not read by xpsim");
        if (c == "PUBLIC" || c == "PRIVATE" || c == "DEPRECATED" || c == "SEMI_DEPRECATED") return true;
        return Fail("unknown command '" + c + "'");
    }

    std::string why;
    int exports = 0;

private:
    bool Fail(const std::string& text) {
        why = text;
        return false;
    }

    int FindRegion(const std::string& name) const {
        for (size_t i = 0; i < package_.regions.size(); ++i) {
            if (package_.regions[i].name == name) return int(i);
        }
        return -1;
    }

    // An export row whose virtual path is word `at`; the file is the rest of the line.
    bool Export(ExportKind kind, const std::string& line, const Words& w, size_t at) {
        if (w.size() < at + 2) return Fail(w[0] + " needs a virtual path and a file");
        std::string real = RestOfLine(line, at + 1);
        std::replace(real.begin(), real.end(), '\\', '/');
        if (real[0] == '/') return Fail("the file '" + real + "' is an absolute path");
        const std::string path = package_.folder + real;
        if (!IsRegularFile(root_ + path)) return Fail("no file '" + real + "' in the package");
        package_.exports.push_back({kind, w[at], path, region_});
        exports++;
        return true;
    }

    const std::string& root_;
    Package& package_;
    int defining_ = -1;
    int region_ = -1;
};

// Reads a package's library.txt; returns the number of exports.
int ReadPackage(const std::string& root, Package& package) {
    const std::string path = root + package.folder + "library.txt";
    LibraryReader reader(root, package);
    bool headerOk = true;
    int lines = 0;
    ForEachLine(path, [&](const std::string& line, const Words& w, int number) {
        lines = number;
        if (number <= 3) {
            static const char* const kExpected[] = {"I or A", "800", "LIBRARY"};
            const std::string word = w.empty() ? "" : w[0];
            const bool ok = number == 1 ? word == "I" || word == "A" : word == kExpected[number - 1];
            if (!ok) {
                Note(path + " line " + std::to_string(number) + ": the header needs " + kExpected[number - 1] +
                     " here, not '" + word + "'; file not read");
                headerOk = false;
            }
            return ok;
        }
        if (!w.empty() && !reader.Row(line, w))
            Note(path + " line " + std::to_string(number) + ": " + reader.why + "; row skipped");
        return true;
    });
    if (headerOk && lines < 3) {
        Note(path + ": the file ends before its header (I or A, 800, LIBRARY); file not read");
        headerOk = false;
    }
    if (!headerOk) {
        package.regions.clear();
        package.exports.clear();
        return 0;
    }
    Note("library: " + path + ": " + std::to_string(reader.exports) + (reader.exports == 1 ? " export" : " exports"));
    return reader.exports;
}

}  // namespace

int LoadSceneryLibrary() {
    LibraryState& s = library();
    s.loaded = true;
    s.root = SystemPath();
    s.packages.clear();
    int exports = 0;
    for (const std::string& name : CustomPackageOrder(s.root))
        s.packages.push_back({kCustomScenery + name + "/", {}, {}});
    for (const std::string& name : PackageNames(s.root + kDefaultScenery))
        s.packages.push_back({kDefaultScenery + name + "/", {}, {}});
    for (Package& package : s.packages) exports += ReadPackage(s.root, package);
    return exports;
}

std::vector<std::string> SceneryPackages() {
    std::vector<std::string> folders;
    for (const Package& package : Current().packages) folders.push_back(package.folder);
    return folders;
}

std::vector<std::string> LookupLibraryPath(const std::string& path, double latitude, double longitude) {
    const LibraryState& s = Current();
    std::vector<std::string> found;
    auto add = [&found](const std::string& real) {
        if (std::find(found.begin(), found.end(), real) == found.end()) found.push_back(real);
    };
    size_t reach = 0;  // the packages looked at
    for (const Package& package : s.packages) {
        ++reach;
        bool closes = false;
        for (const LibraryExport& e : package.exports) {
            if (e.virtualPath != path || e.kind == ExportKind::Backup) continue;
            if (e.kind == ExportKind::Exclude) closes = true;
            if (!RegionHolds(package, e.region, latitude, longitude)) continue;
            add(e.realPath);
            if (e.kind != ExportKind::Extend) closes = true;
        }
        if (closes) break;
    }
    if (!found.empty()) return found;
    for (size_t i = 0; i < reach && found.empty(); ++i) {
        const Package& package = s.packages[i];
        for (const LibraryExport& e : package.exports) {
            if (e.virtualPath == path && e.kind == ExportKind::Backup &&
                RegionHolds(package, e.region, latitude, longitude))
                add(e.realPath);
        }
    }
    return found;
}

int LookupObjects(const char* path, float latitude, float longitude, XPLMLibraryEnumerator_f enumerator, void* ref) {
    if (path == nullptr) {
        ReportMisuse("XPLMLookupObjects", "no path");
        return 0;
    }
    // The list is complete before the first call, so an enumerator may look up again.
    const std::vector<std::string> found = LookupLibraryPath(path, latitude, longitude);
    if (enumerator != nullptr) {
        for (const std::string& real : found) enumerator(real.c_str(), ref);
    }
    return int(found.size());
}

void ResetSceneryLibrary() { library() = LibraryState(); }

}  // namespace xpsim
