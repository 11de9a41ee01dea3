// OBJ8 objects: reading, reference counting, asynchronous loads and drawing.
#include "world/Objects.h"

#include <limits.h>
#include <stdlib.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <map>
#include <memory>
#include <unordered_set>
#include <vector>

#include "world/Drawing.h"
#include "world/Plugins.h"
#include "world/DataText.h"
#include "world/World.h"

namespace xpsim {
namespace {

using namespace data_text;

struct ObjectRecord {
    int number = 0;
    std::string key;  // the file's real path
    ObjectInfo info;
    std::map<int, int> holders;  // plugin -> references it holds
    bool dead = false;
};

struct PendingLoad {
    int plugin = 0;
    std::string path;
    bool badPath = false;  // reported when asked for; answers null
    XPLMObjectLoaded_f callback = nullptr;
    void* refcon = nullptr;
    int askedInFrame = 0;
    bool read = false;
    XPLMObjectRef result = nullptr;
    bool gone = false;  // delivered or dropped
};

struct ObjectState {
    std::vector<std::unique_ptr<ObjectRecord>> records;  // live and freed, so that no handle is reused
    std::unordered_set<const void*> handles;
    std::map<std::string, ObjectRecord*> live;  // by real path
    std::vector<std::unique_ptr<PendingLoad>> pending;  // in the order asked
    int nextNumber = 1;
    int delivering = 0;
};

ObjectState& objects() {
    static ObjectState s;
    return s;
}

std::string Address(const void* handle) {
    if (handle == nullptr) return "0";
    char text[64];
    std::snprintf(text, sizeof text, "%p", handle);
    return text;
}

std::string Describe(const ObjectRecord& object) {
    return "object " + std::to_string(object.number) + " (" + object.info.path + ")";
}

ObjectRecord* ObjectFromHandle(const char* function, XPLMObjectRef handle) {
    ObjectState& s = objects();
    if (handle == nullptr || s.handles.count(handle) == 0) {
        ReportMisuse(function, Address(handle) + " is not an object");
        return nullptr;
    }
    auto* object = static_cast<ObjectRecord*>(handle);
    if (object->dead) {
        ReportMisuse(function, Describe(*object) + " was unloaded");
        return nullptr;
    }
    return object;
}

// A plugin's path: null, empty and absolute paths are misuse.
bool CheckPath(const char* function, const char* path) {
    if (path == nullptr || *path == '\0') {
        ReportMisuse(function, "no file path");
        return false;
    }
    if (path[0] == '/') {
        ReportMisuse(function, std::string("'") + path +
                                   "' is an absolute path; object paths are relative to the X-System folder");
        return false;
    }
    return true;
}

// ------------------------------------------------------------------ reading OBJ8

// A TRIS, LINES or LIGHTS command, checked against the tables once the whole file is read.
struct DrawCommand {
    int line;
    std::string name;
    int offset, count;
};

class Obj8Reader {
public:
    explicit Obj8Reader(ObjectInfo& info) : info_(info) {}

    // Reads one line; false (with why) when the file is malformed there.
    bool Line(const std::string& line, const Words& w, int number) {
        lastLine_ = number;
        if (number <= 3) return Header(w, number);
        if (w.empty()) return true;
        const std::string& c = w[0];
        if (c == "TEXTURE") {
            info_.texture = RestOfLine(line, 1);
            return true;
        }
        if (c == "POINT_COUNTS") return PointCounts(w, number);
        if (c == "VT") return Vertex(w, 0, 8);
        if (c == "VLINE") return Vertex(w, 1, 6);
        if (c == "VLIGHT") return Vertex(w, 2, 6);
        if (c == "IDX") return Indices(w, 1);
        if (c == "IDX10") return Indices(w, 10);
        if (c == "TRIS" || c == "LINES" || c == "LIGHTS") return Draw(w, number);
        if (c == "ATTR_LOD") {
            double near, far;
            if (!Numbers(w, 2) || !Real(w[1], near) || !Real(w[2], far)) return false;
            if (near < 0.0 || far <= near) return Fail("ATTR_LOD needs 0 <= near < far");
            return true;
        }
        if (c == "ANIM_begin") {
            info_.animations++;
            animLines_.push_back(number);
            return true;
        }
        if (c == "ANIM_end") {
            if (animLines_.empty()) return Fail("ANIM_end without ANIM_begin");
            if (!keys_.empty())
                return Fail("ANIM_end inside the " + keys_ + " block of line " + std::to_string(keysLine_));
            animLines_.pop_back();
            return true;
        }
        if (c.compare(0, 5, "ANIM_") == 0) return Animation(w, number);
        if (c.compare(0, 5, "ATTR_") == 0 || c.compare(0, 7, "TEXTURE") == 0 || c.compare(0, 6, "LIGHT_") == 0 ||
            c.compare(0, 7, "GLOBAL_") == 0 || c == "smoke_black" || c == "smoke_white" || c == "MAGNET" ||
            c == "EMITTER" || c == "PARTICLE_SYSTEM" || c == "SLOPE_LIMIT" || c == "TILTED" || c == "REQUIRE_WET" ||
            c == "REQUIRE_DRY" || c == "BLEND_GLASS" || c == "NORMAL_METALNESS" || c == "DEBUG")
            return true;
        unknown.push_back({number, c});
        return true;
    }

    // Checks what only the whole file tells; false (with why and line) when it does not hold.
    bool Finish() {
        if (lastLine_ < 3) return FailAt(lastLine_, "the file ends before its header (I or A, 800, OBJ)");
        if (countsLine_ == 0) return FailAt(lastLine_, "no POINT_COUNTS");
        static const char* const kRows[] = {"VT", "VLINE", "VLIGHT"};
        const int seen[] = {info_.vertices, info_.lineVertices, info_.lightVertices, int(indices_.size())};
        for (int i = 0; i < 4; ++i) {
            if (seen[i] != declared_[i])
                return FailAt(countsLine_, "POINT_COUNTS declares " + std::to_string(declared_[i]) + " " +
                                               (i < 3 ? std::string(kRows[i]) + " rows" : std::string("indices")) +
                                               ", the file has " + std::to_string(seen[i]));
        }
        if (!keys_.empty()) return FailAt(keysLine_, keys_ + " is never closed");
        if (!animLines_.empty()) return FailAt(animLines_.back(), "ANIM_begin is never closed by ANIM_end");
        for (const DrawCommand& d : draws_) {
            const std::string command = d.name + " " + std::to_string(d.offset) + " " + std::to_string(d.count);
            const bool lights = d.name == "LIGHTS";
            const int64_t size = lights ? info_.lightVertices : int64_t(indices_.size());
            if (int64_t(d.offset) + d.count > size)
                return FailAt(d.line, command + " runs past the " + std::to_string(size) +
                                          (lights ? " VLIGHT rows" : " indices"));
            if (lights) continue;
            const bool tris = d.name == "TRIS";
            const int vertices = tris ? info_.vertices : info_.lineVertices;
            for (int i = d.offset; i < d.offset + d.count; ++i) {
                if (indices_[size_t(i)] >= vertices)
                    return FailAt(d.line, command + ": index " + std::to_string(indices_[size_t(i)]) +
                                              " names no vertex of the " + std::to_string(vertices) +
                                              (tris ? " VT rows" : " VLINE rows"));
            }
        }
        return true;
    }

    std::string why;
    int failedLine = 0;
    std::vector<std::pair<int, std::string>> unknown;  // commands xpsim does not know, by line

private:
    bool Fail(const std::string& text) { return FailAt(lastLine_, text); }
    bool FailAt(int line, const std::string& text) {
        failedLine = line;
        why = text;
        return false;
    }

    bool Header(const Words& w, int number) {
        const std::string word = w.empty() ? "" : w[0];
        switch (number) {
            case 1:
                return word == "I" || word == "A" ? true : Fail("the first line must be I or A, not '" + word + "'");
            case 2:
                return word == "800" ? true : Fail("version '" + word + "' is not 800 (OBJ8)");
            default:
                return word == "OBJ" ? true : Fail("the third line must be OBJ, not '" + word + "'");
        }
    }

    // Checks that a row has at least `needed` values after its command.
    bool Numbers(const Words& w, size_t needed) {
        if (w.size() > needed) return true;
        return Fail(w[0] + " needs " + std::to_string(needed) + " values, the row has " + std::to_string(w.size() - 1));
    }

    bool AllReal(const Words& w, size_t from, size_t to) {
        double value;
        for (size_t i = from; i <= to; ++i) {
            if (!Real(w[i], value)) return Fail(w[0] + ": '" + w[i] + "' is not a number");
        }
        return true;
    }

    bool Count(const std::string& text, const std::string& what, int& out) {
        if (Whole(text, out) && out >= 0) return true;
        return Fail(what + " '" + text + "' is not a count");
    }

    bool PointCounts(const Words& w, int number) {
        if (countsLine_ != 0)
            return Fail("POINT_COUNTS given again (first on line " + std::to_string(countsLine_) + ")");
        if (!Numbers(w, 4)) return false;
        for (int i = 0; i < 4; ++i) {
            if (!Count(w[size_t(i) + 1], "POINT_COUNTS", declared_[i])) return false;
        }
        countsLine_ = number;
        return true;
    }

    bool Vertex(const Words& w, int table, size_t values) {
        if (countsLine_ == 0) return Fail(w[0] + " before POINT_COUNTS");
        if (!Numbers(w, values) || !AllReal(w, 1, values)) return false;
        int& seen = table == 0 ? info_.vertices : table == 1 ? info_.lineVertices : info_.lightVertices;
        if (seen >= declared_[table])
            return Fail("more " + w[0] + " rows than the " + std::to_string(declared_[table]) +
                        " POINT_COUNTS declares");
        seen++;
        return true;
    }

    bool Indices(const Words& w, size_t count) {
        if (countsLine_ == 0) return Fail(w[0] + " before POINT_COUNTS");
        if (!Numbers(w, count)) return false;
        if (indices_.size() + count > size_t(declared_[3]))
            return Fail("more indices than the " + std::to_string(declared_[3]) + " POINT_COUNTS declares");
        for (size_t i = 1; i <= count; ++i) {
            int index;
            if (!Count(w[i], w[0] + " index", index)) return false;
            indices_.push_back(index);
        }
        info_.indices = int(indices_.size());
        return true;
    }

    bool Draw(const Words& w, int number) {
        DrawCommand d{number, w[0], 0, 0};
        if (!Numbers(w, 2) || !Count(w[1], w[0] + " offset", d.offset) || !Count(w[2], w[0] + " count", d.count))
            return false;
        if (d.name == "TRIS") {
            if (d.count % 3 != 0) return Fail("TRIS count " + std::to_string(d.count) + " is not a multiple of 3");
            info_.triangles += d.count / 3;
        } else if (d.name == "LINES") {
            if (d.count % 2 != 0) return Fail("LINES count " + std::to_string(d.count) + " is not a multiple of 2");
            info_.lineSegments += d.count / 2;
        } else {
            info_.lights += d.count;
        }
        draws_.push_back(d);
        return true;
    }

    // ANIM_* rows other than ANIM_begin and ANIM_end; they belong inside an ANIM_begin block.
    bool Animation(const Words& w, int number) {
        const std::string& c = w[0];
        if (animLines_.empty()) return Fail(c + " outside ANIM_begin/ANIM_end");
        auto inKeys = [&](const char* block) {
            return keys_ == block ? true : Fail(c + " outside an " + block + " block");
        };
        auto startKeys = [&](const char* block) {
            if (!keys_.empty()) return Fail(c + " inside the " + keys_ + " block of line " + std::to_string(keysLine_));
            keys_ = block;
            keysLine_ = number;
            return true;
        };
        if (c == "ANIM_trans") return Numbers(w, 8) && AllReal(w, 1, 8);
        if (c == "ANIM_rotate") return Numbers(w, 7) && AllReal(w, 1, 7);
        if (c == "ANIM_hide" || c == "ANIM_show") return Numbers(w, 3) && AllReal(w, 1, 2);
        if (c == "ANIM_keyframe_loop") return Numbers(w, 1) && AllReal(w, 1, 1);
        if (c == "ANIM_trans_begin") return Numbers(w, 1) && startKeys("ANIM_trans_begin");
        if (c == "ANIM_trans_key") return inKeys("ANIM_trans_begin") && Numbers(w, 4) && AllReal(w, 1, 4);
        if (c == "ANIM_rotate_begin") return Numbers(w, 4) && AllReal(w, 1, 3) && startKeys("ANIM_rotate_begin");
        if (c == "ANIM_rotate_key") return inKeys("ANIM_rotate_begin") && Numbers(w, 2) && AllReal(w, 1, 2);
        if (c == "ANIM_trans_end" || c == "ANIM_rotate_end") {
            const std::string block = c == "ANIM_trans_end" ? "ANIM_trans_begin" : "ANIM_rotate_begin";
            if (!inKeys(block.c_str())) return false;
            keys_.clear();
            return true;
        }
        unknown.push_back({number, c});
        return true;
    }

    ObjectInfo& info_;
    int lastLine_ = 0;
    int countsLine_ = 0;
    int declared_[4] = {0, 0, 0, 0};  // VT, VLINE, VLIGHT, indices
    std::vector<int> indices_;
    std::vector<DrawCommand> draws_;
    std::vector<int> animLines_;  // the lines of the open ANIM_begin rows
    std::string keys_;            // the open keyframe block, if any
    int keysLine_ = 0;
};

bool IsRegularFile(const std::string& path) {
    struct stat st;
    return stat(path.c_str(), &st) == 0 && S_ISREG(st.st_mode);
}

// Loads (or finds) the object at a path whose form was checked, for `plugin`; null when the file
// cannot be read, noted in Log.txt under `function`.
ObjectRecord* Load(const char* function, const std::string& path, int plugin) {
    ObjectState& s = objects();
    const std::string full = SystemPath() + path;
    char resolved[PATH_MAX];
    if (!IsRegularFile(full) || realpath(full.c_str(), resolved) == nullptr) {
        Note(std::string(function) + ": cannot open " + path);
        return nullptr;
    }
    auto found = s.live.find(resolved);
    if (found != s.live.end()) {
        found->second->holders[plugin]++;
        return found->second;
    }
    auto object = std::make_unique<ObjectRecord>();
    object->info.path = path;
    Obj8Reader reader(object->info);
    bool ok = true;
    if (!ForEachLine(full, [&](const std::string& line, const Words& words, int number) {
            ok = reader.Line(line, words, number);
            return ok;
        })) {
        Note(std::string(function) + ": cannot open " + path);
        return nullptr;
    }
    if (ok) ok = reader.Finish();
    for (const auto& [line, command] : reader.unknown) {
        if (ok || line < reader.failedLine)
            Note(std::string(function) + ": " + path + " line " + std::to_string(line) + ": unknown command '" +
                 command + "'; ignored");
    }
    if (!ok) {
        Note(std::string(function) + ": " + path + " line " + std::to_string(reader.failedLine) + ": " + reader.why +
             "; not loaded");
        return nullptr;
    }
    object->number = s.nextNumber++;
    object->key = resolved;
    object->holders[plugin] = 1;
    ObjectRecord* raw = object.get();
    s.records.push_back(std::move(object));
    s.handles.insert(raw);
    s.live[raw->key] = raw;
    return raw;
}

int References(const ObjectRecord& object) {
    int total = 0;
    for (const auto& holder : object.holders) total += holder.second;
    return total;
}

// Gives back `count` of a plugin's references; frees the object when none is left.
void Release(ObjectRecord& object, int plugin, int count) {
    auto holder = object.holders.find(plugin);
    if (holder == object.holders.end()) return;
    holder->second -= count;
    if (holder->second <= 0) object.holders.erase(holder);
    if (!object.holders.empty()) return;
    object.dead = true;
    objects().live.erase(object.key);
}

void Sweep() {
    ObjectState& s = objects();
    if (s.delivering > 0) return;
    s.pending.erase(std::remove_if(s.pending.begin(), s.pending.end(),
                                   [](const std::unique_ptr<PendingLoad>& p) { return p->gone; }),
                    s.pending.end());
}

std::string Number(float value) {
    char text[32];
    std::snprintf(text, sizeof text, "%g", double(value));
    return text;
}

}  // namespace

// ------------------------------------------------------------------ control interface

bool DescribeObject(XPLMObjectRef handle, ObjectInfo& info) {
    ObjectState& s = objects();
    if (handle == nullptr || s.handles.count(handle) == 0) return false;
    const auto* object = static_cast<const ObjectRecord*>(handle);
    if (object->dead) return false;
    info = object->info;
    info.references = References(*object);
    return true;
}

int LoadedObjectCount() { return int(objects().live.size()); }

int PendingObjectLoads() {
    int count = 0;
    for (const auto& load : objects().pending) count += load->gone ? 0 : 1;
    return count;
}

// ------------------------------------------------------------------ the SDK's functions

XPLMObjectRef LoadObject(const char* path) {
    const char* const function = "XPLMLoadObject";
    if (!CheckPath(function, path)) return nullptr;
    return Load(function, path, CurrentPlugin());
}

void LoadObjectAsync(const char* path, XPLMObjectLoaded_f callback, void* refcon) {
    const char* const function = "XPLMLoadObjectAsync";
    if (callback == nullptr) {
        ReportMisuse(function, "no callback");
        return;
    }
    auto load = std::make_unique<PendingLoad>();
    load->plugin = CurrentPlugin();
    load->badPath = !CheckPath(function, path);
    load->path = load->badPath ? "" : path;
    load->callback = callback;
    load->refcon = refcon;
    load->askedInFrame = FrameNumber();
    objects().pending.push_back(std::move(load));
}

void DrawObjects(XPLMObjectRef handle, int count, const XPLMDrawInfo_t* locations, int lighting, int earthRelative) {
    const char* const function = "XPLMDrawObjects";
    ObjectRecord* object = ObjectFromHandle(function, handle);
    if (object == nullptr) return;
    if (count <= 0 || count > kMaxDrawnInstances) {
        ReportMisuse(function, "count " + std::to_string(count) + " is not between 1 and " +
                                   std::to_string(kMaxDrawnInstances));
        return;
    }
    if (locations == nullptr) {
        ReportMisuse(function, "no locations");
        return;
    }
    std::string at;
    for (int i = 0; i < count; ++i) {
        const XPLMDrawInfo_t& l = locations[i];
        if (l.structSize != int(sizeof(XPLMDrawInfo_t))) {
            ReportMisuse(function, "location " + std::to_string(i) + " has structSize " + std::to_string(l.structSize) +
                                       ", not " + std::to_string(sizeof(XPLMDrawInfo_t)));
            return;
        }
        at += (i ? ";(" : "(") + Number(l.x) + "," + Number(l.y) + "," + Number(l.z) + "," + Number(l.pitch) + "," +
              Number(l.heading) + "," + Number(l.roll) + ")";
    }
    RecordDrawing("objects file=" + object->info.path + " count=" + std::to_string(count) + " lighting=" +
                  (lighting ? "1" : "0") + " earth_relative=" + (earthRelative ? "1" : "0") + " at=" + at);
}

void UnloadObject(XPLMObjectRef handle) {
    const char* const function = "XPLMUnloadObject";
    ObjectRecord* object = ObjectFromHandle(function, handle);
    if (object == nullptr) return;
    const int plugin = CurrentPlugin();
    if (object->holders.count(plugin) == 0) {
        ReportMisuse(function, "plugin " + std::to_string(plugin) + " holds no reference to " + Describe(*object));
        return;
    }
    Release(*object, plugin, 1);
}

void RunObjectLoads() {
    ObjectState& s = objects();
    std::vector<PendingLoad*> order;
    for (auto& load : s.pending) order.push_back(load.get());
    s.delivering++;
    for (PendingLoad* load : order) {
        if (load->gone) continue;  // dropped by a callback earlier in this frame
        if (!load->read) {
            if (load->askedInFrame >= FrameNumber()) continue;
            load->read = true;
            if (!load->badPath) load->result = Load("XPLMLoadObjectAsync", load->path, load->plugin);
        }
        if (!PluginMayBeCalled(load->plugin)) continue;
        load->gone = true;
        PluginContext context(load->plugin);
        load->callback(load->result, load->refcon);
    }
    s.delivering--;
    Sweep();
}

int ForgetObjectsOf(int plugin) {
    ObjectState& s = objects();
    for (auto& load : s.pending) {
        if (load->plugin == plugin) load->gone = true;
    }
    Sweep();
    int count = 0;
    for (auto& object : s.records) {
        if (object->dead) continue;
        auto holder = object->holders.find(plugin);
        if (holder == object->holders.end()) continue;
        Release(*object, plugin, holder->second);
        ++count;
    }
    return count;
}

void ResetObjects() { objects() = ObjectState(); }

}  // namespace xpsim
