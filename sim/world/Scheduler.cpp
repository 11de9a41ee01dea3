// Flight loops and drawing phases.
#include "world/Scheduler.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <map>
#include <memory>
#include <unordered_set>
#include <vector>

#include "world/Camera.h"
#include "world/Commands.h"
#include "world/Drawing.h"
#include "world/Objects.h"
#include "world/Plugins.h"
#include "world/Screen.h"
#include "world/Windows.h"
#include "world/World.h"

namespace xpsim {
namespace {

struct FlightLoop {
    enum Mode { Off, Seconds, Frames };

    int plugin = 0;
    XPLMFlightLoop_f callback = nullptr;
    void* refcon = nullptr;
    XPLMFlightLoopPhaseType phase = xplm_FlightLoop_Phase_AfterFlightModel;
    bool legacy = false;  // registered with XPLMRegisterFlightLoopCallback
    bool dead = false;
    Mode mode = Off;
    double dueTime = 0.0;
    int dueFrame = 0;
    // The last call, or the registration when it was never called.
    double lastTime = 0.0;
    int lastFrame = 0;
};

struct DrawCallback {
    int plugin = 0;
    XPLMDrawCallback_f callback = nullptr;
    XPLMDrawingPhase phase = 0;
    bool before = false;
    void* refcon = nullptr;
    bool dead = false;
};

struct PhaseRecord {
    int drawn = 0;
    int suppressed = 0;
    bool lastSuppressed = false;
};

struct SchedulerState {
    std::vector<std::unique_ptr<FlightLoop>> loops;  // registration order
    std::unordered_set<const void*> loopHandles;
    std::vector<std::unique_ptr<DrawCallback>> draws;  // registration order
    int dispatching = 0;  // nesting of frame dispatch; removals are swept when it is 0
    double lastDispatchTime = 0.0;
    std::map<int, PhaseRecord> phases;
};

SchedulerState& sched() {
    static SchedulerState s;
    return s;
}

// The phases X-Plane draws every frame, in order. The local map phases exist (registration succeeds)
// but are drawn only while the map is open, which it never is here.
const XPLMDrawingPhase kFramePhases[] = {
    xplm_Phase_FirstScene, xplm_Phase_Terrain,     xplm_Phase_Airports, xplm_Phase_Vectors,
    xplm_Phase_Objects,    xplm_Phase_Airplanes,   xplm_Phase_LastScene, xplm_Phase_FirstCockpit,
    xplm_Phase_Panel,      xplm_Phase_Gauges,      xplm_Phase_Window,   xplm_Phase_LastCockpit};

const char* PhaseName(XPLMDrawingPhase phase) {
    switch (phase) {
        case xplm_Phase_FirstScene: return "xplm_Phase_FirstScene";
        case xplm_Phase_Terrain: return "xplm_Phase_Terrain";
        case xplm_Phase_Airports: return "xplm_Phase_Airports";
        case xplm_Phase_Vectors: return "xplm_Phase_Vectors";
        case xplm_Phase_Objects: return "xplm_Phase_Objects";
        case xplm_Phase_Airplanes: return "xplm_Phase_Airplanes";
        case xplm_Phase_LastScene: return "xplm_Phase_LastScene";
        case xplm_Phase_FirstCockpit: return "xplm_Phase_FirstCockpit";
        case xplm_Phase_Panel: return "xplm_Phase_Panel";
        case xplm_Phase_Gauges: return "xplm_Phase_Gauges";
        case xplm_Phase_Window: return "xplm_Phase_Window";
        case xplm_Phase_LastCockpit: return "xplm_Phase_LastCockpit";
        case xplm_Phase_LocalMap3D: return "xplm_Phase_LocalMap3D";
        case xplm_Phase_LocalMap2D: return "xplm_Phase_LocalMap2D";
        case xplm_Phase_LocalMapProfile: return "xplm_Phase_LocalMapProfile";
        default: return nullptr;
    }
}

// Applies an interval in the SDK's convention: seconds when positive, frames when negative, off
// when 0. The reference point is now or the loop's last call (its registration if never called).
void Schedule(FlightLoop& loop, float interval, bool relativeToNow, const char* function) {
    if (std::isnan(interval)) {
        ReportMisuse(function, "the interval is not a number; the flight loop is stopped");
        loop.mode = FlightLoop::Off;
        return;
    }
    const double baseTime = relativeToNow ? SimTime() : loop.lastTime;
    const int baseFrame = relativeToNow ? FrameNumber() : loop.lastFrame;
    if (interval > 0.0f) {
        loop.mode = FlightLoop::Seconds;
        loop.dueTime = baseTime + double(interval);
    } else if (interval < 0.0f) {
        loop.mode = FlightLoop::Frames;
        // At most a billion frames ahead (an infinite count included), and never past the last frame
        // number an int holds.
        const double frames = std::min(std::round(-double(interval)), 1e9);
        loop.dueFrame = int(std::min<long long>((long long)baseFrame + std::max(1, int(frames)), INT_MAX));
    } else {
        loop.mode = FlightLoop::Off;
    }
}

bool IsDue(const FlightLoop& loop, double now, int frame) {
    switch (loop.mode) {
        case FlightLoop::Seconds:
            // A float interval is rarely exact; a due time within a microsecond-scale tolerance of
            // the frame's time counts as reached. An infinite interval never comes due.
            return std::isfinite(loop.dueTime) && loop.dueTime <= now + 1e-6 * (1.0 + std::fabs(loop.dueTime));
        case FlightLoop::Frames:
            return loop.dueFrame <= frame;
        default:
            return false;
    }
}

FlightLoop* NewLoop(int plugin, XPLMFlightLoop_f callback, void* refcon, XPLMFlightLoopPhaseType phase,
                    bool legacy) {
    auto loop = std::make_unique<FlightLoop>();
    loop->plugin = plugin;
    loop->callback = callback;
    loop->refcon = refcon;
    loop->phase = phase;
    loop->legacy = legacy;
    loop->lastTime = SimTime();
    loop->lastFrame = FrameNumber();
    FlightLoop* raw = loop.get();
    sched().loops.push_back(std::move(loop));
    sched().loopHandles.insert(raw);
    return raw;
}

void Kill(FlightLoop& loop) {
    loop.dead = true;
    loop.mode = FlightLoop::Off;
    sched().loopHandles.erase(&loop);
}

FlightLoop* FindLegacy(XPLMFlightLoop_f callback, void* refcon) {
    for (auto& loop : sched().loops) {
        if (!loop->dead && loop->legacy && loop->callback == callback && loop->refcon == refcon)
            return loop.get();
    }
    return nullptr;
}

FlightLoop* LoopFromHandle(XPLMFlightLoopID id) {
    if (id == nullptr || sched().loopHandles.count(id) == 0) return nullptr;
    return static_cast<FlightLoop*>(id);
}

void Sweep() {
    SchedulerState& s = sched();
    if (s.dispatching > 0) return;
    s.loops.erase(std::remove_if(s.loops.begin(), s.loops.end(),
                                 [](const std::unique_ptr<FlightLoop>& l) { return l->dead; }),
                  s.loops.end());
    s.draws.erase(std::remove_if(s.draws.begin(), s.draws.end(),
                                 [](const std::unique_ptr<DrawCallback>& d) { return d->dead; }),
                  s.draws.end());
}

void RunFlightLoops(XPLMFlightLoopPhaseType phase, double sinceLastDispatch) {
    SchedulerState& s = sched();
    const double now = SimTime();
    const int frame = FrameNumber();
    std::vector<FlightLoop*> order;
    for (auto& loop : s.loops) {
        if (loop->phase == phase) order.push_back(loop.get());
    }
    for (FlightLoop* loop : order) {
        if (loop->dead || !IsDue(*loop, now, frame) || !PluginMayBeCalled(loop->plugin)) continue;
        const float sinceLastCall = float(now - loop->lastTime);
        float next;
        {
            PluginContext context(loop->plugin);
            next = loop->callback(sinceLastCall, float(sinceLastDispatch), frame, loop->refcon);
        }
        if (loop->dead) continue;  // unregistered or destroyed by its own callback
        loop->lastTime = now;
        loop->lastFrame = frame;
        Schedule(*loop, next, true, "flight loop callback result");
    }
}

// Calls the callbacks of one side of a phase; false when a before-callback returned 0.
bool RunDrawSide(XPLMDrawingPhase phase, bool before) {
    SchedulerState& s = sched();
    std::vector<DrawCallback*> order;
    for (auto& draw : s.draws) {
        if (draw->phase == phase && draw->before == before) order.push_back(draw.get());
    }
    bool drawSim = true;
    for (DrawCallback* draw : order) {
        if (draw->dead || !PluginMayBeCalled(draw->plugin)) continue;
        int result;
        {
            PluginContext context(draw->plugin);
            result = draw->callback(phase, before ? 1 : 0, draw->refcon);
        }
        if (before && result == 0) drawSim = false;
    }
    return drawSim;
}

void RunDrawing() {
    SchedulerState& s = sched();
    const DrawingScope drawing;  // the drawing functions draw only in here
    for (XPLMDrawingPhase phase : kFramePhases) {
        BeginDrawingPhase(phase);  // the 2-d phases paint the screen
        const bool drawSim = RunDrawSide(phase, true);
        PhaseRecord& record = s.phases[phase];
        if (drawSim) {
            record.drawn++;
            // Plugin windows are part of the sim's drawing of the window phase.
            if (phase == xplm_Phase_Window) DrawWindows();
        } else {
            record.suppressed++;
        }
        if (drawSim == record.lastSuppressed) {
            record.lastSuppressed = !drawSim;
            Note(std::string("the sim's own drawing of ") + PhaseName(phase) +
                 (drawSim ? " resumes" : " is suppressed by a before-callback") + " from frame " +
                 std::to_string(FrameNumber()));
        }
        RunDrawSide(phase, false);
    }
    BeginDrawingPhase(-1);
}

}  // namespace

// ------------------------------------------------------------------ frame

void RunFrameCallbacks() {
    SchedulerState& s = sched();
    const double sinceLastDispatch = SimTime() - s.lastDispatchTime;
    s.dispatching++;
    RunObjectLoads();
    RunHeldCommands();
    RunFlightLoops(xplm_FlightLoop_Phase_BeforeFlightModel, sinceLastDispatch);
    RunFlightLoops(xplm_FlightLoop_Phase_AfterFlightModel, sinceLastDispatch);
    s.lastDispatchTime = SimTime();
    RunCameraPhase();
    RunDrawing();
    UpdateCursor();
    s.dispatching--;
    Sweep();
}

int SimDrawnFrames(XPLMDrawingPhase phase) {
    auto found = sched().phases.find(phase);
    return found == sched().phases.end() ? 0 : found->second.drawn;
}

int SimSuppressedFrames(XPLMDrawingPhase phase) {
    auto found = sched().phases.find(phase);
    return found == sched().phases.end() ? 0 : found->second.suppressed;
}

int FlightLoopCount() {
    int count = 0;
    for (auto& loop : sched().loops) count += loop->dead ? 0 : 1;
    return count;
}

// ------------------------------------------------------------------ flight loops

void RegisterFlightLoop(XPLMFlightLoop_f callback, float interval, void* refcon) {
    const char* const function = "XPLMRegisterFlightLoopCallback";
    if (callback == nullptr) {
        ReportMisuse(function, "no callback");
        return;
    }
    FlightLoop* loop =
        NewLoop(CurrentPlugin(), callback, refcon, xplm_FlightLoop_Phase_AfterFlightModel, true);
    Schedule(*loop, interval, true, function);
}

void UnregisterFlightLoop(XPLMFlightLoop_f callback, void* refcon) {
    FlightLoop* loop = FindLegacy(callback, refcon);
    if (loop == nullptr) {
        ReportMisuse("XPLMUnregisterFlightLoopCallback", "no flight loop with this callback and refcon");
        return;
    }
    Kill(*loop);
    Sweep();
}

void SetFlightLoopInterval(XPLMFlightLoop_f callback, float interval, int relativeToNow, void* refcon) {
    const char* const function = "XPLMSetFlightLoopCallbackInterval";
    FlightLoop* loop = FindLegacy(callback, refcon);
    if (loop == nullptr) {
        ReportMisuse(function, "no flight loop with this callback and refcon");
        return;
    }
    Schedule(*loop, interval, relativeToNow != 0, function);
}

XPLMFlightLoopID CreateFlightLoop(const XPLMCreateFlightLoop_t* params) {
    const char* const function = "XPLMCreateFlightLoop";
    if (params == nullptr) {
        ReportMisuse(function, "no parameters");
        return nullptr;
    }
    if (params->structSize < int(sizeof(XPLMCreateFlightLoop_t))) {
        ReportMisuse(function, "structSize " + std::to_string(params->structSize) + " is smaller than " +
                                   std::to_string(sizeof(XPLMCreateFlightLoop_t)));
        return nullptr;
    }
    if (params->phase != xplm_FlightLoop_Phase_BeforeFlightModel &&
        params->phase != xplm_FlightLoop_Phase_AfterFlightModel) {
        ReportMisuse(function, "unknown phase " + std::to_string(params->phase));
        return nullptr;
    }
    if (params->callbackFunc == nullptr) {
        ReportMisuse(function, "no callback");
        return nullptr;
    }
    // Created unscheduled: it runs once XPLMScheduleFlightLoop gives it an interval.
    return NewLoop(CurrentPlugin(), params->callbackFunc, params->refcon, params->phase, false);
}

void DestroyFlightLoop(XPLMFlightLoopID id) {
    FlightLoop* loop = LoopFromHandle(id);
    if (loop == nullptr || loop->legacy) {
        ReportMisuse("XPLMDestroyFlightLoop", "not a flight loop id");
        return;
    }
    Kill(*loop);
    Sweep();
}

void ScheduleFlightLoop(XPLMFlightLoopID id, float interval, int relativeToNow) {
    const char* const function = "XPLMScheduleFlightLoop";
    FlightLoop* loop = LoopFromHandle(id);
    if (loop == nullptr || loop->legacy) {
        ReportMisuse(function, "not a flight loop id");
        return;
    }
    Schedule(*loop, interval, relativeToNow != 0, function);
}

int ForgetFlightLoopsOf(int plugin) {
    int count = 0;
    for (auto& loop : sched().loops) {
        if (!loop->dead && loop->plugin == plugin) {
            Kill(*loop);
            ++count;
        }
    }
    Sweep();
    return count;
}

// ------------------------------------------------------------------ drawing

int RegisterDrawCallback(XPLMDrawCallback_f callback, XPLMDrawingPhase phase, int wantsBefore, void* refcon) {
    const char* const function = "XPLMRegisterDrawCallback";
    if (callback == nullptr) {
        ReportMisuse(function, "no callback");
        return 0;
    }
    if (PhaseName(phase) == nullptr) {
        ReportMisuse(function, "no drawing phase " + std::to_string(phase));
        return 0;
    }
    auto draw = std::make_unique<DrawCallback>();
    draw->plugin = CurrentPlugin();
    draw->callback = callback;
    draw->phase = phase;
    draw->before = wantsBefore != 0;
    draw->refcon = refcon;
    sched().draws.push_back(std::move(draw));
    return 1;
}

int UnregisterDrawCallback(XPLMDrawCallback_f callback, XPLMDrawingPhase phase, int wantsBefore,
                           void* refcon) {
    for (auto& draw : sched().draws) {
        if (!draw->dead && draw->callback == callback && draw->phase == phase &&
            draw->before == (wantsBefore != 0) && draw->refcon == refcon) {
            draw->dead = true;
            Sweep();
            return 1;
        }
    }
    ReportMisuse("XPLMUnregisterDrawCallback", "no draw callback with this callback, phase, side and refcon");
    return 0;
}

int ForgetDrawCallbacksOf(int plugin) {
    int count = 0;
    for (auto& draw : sched().draws) {
        if (!draw->dead && draw->plugin == plugin) {
            draw->dead = true;
            ++count;
        }
    }
    Sweep();
    return count;
}

void ResetScheduler() { sched() = SchedulerState(); }

}  // namespace xpsim
