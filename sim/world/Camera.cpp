// The camera: the sim's views and a plugin's control of the camera.
#include "world/Camera.h"

#include <cstdint>

#include "world/Plugins.h"
#include "world/World.h"

namespace xpsim {
namespace {

const char* const kDefaultView = "sim/view/default_view";
// Plugins that take the camera back from each other inside their losing-control callbacks would
// otherwise recurse until the stack runs out.
constexpr int kMaxNesting = 16;

// The sim's own views: the pilot's eye for the forward views, behind and above the aircraft for the
// chase view. Local OpenGL metres and degrees; zoom 1 is no magnification.
struct View {
    const char* command;
    XPLMCameraPosition_t position;
};
const View kViews[] = {
    {"sim/view/default_view", {0.0f, 1.2f, -0.5f, 0.0f, 0.0f, 0.0f, 1.0f}},
    {"sim/view/forward_with_panel", {0.0f, 1.2f, -0.5f, -5.0f, 0.0f, 0.0f, 1.0f}},
    {"sim/view/chase", {0.0f, 8.0f, 30.0f, -10.0f, 0.0f, 0.0f, 1.0f}},
};

struct Controller {
    int plugin = kSimId;
    XPLMCameraControl_f callback = nullptr;
    void* refcon = nullptr;
    XPLMCameraControlDuration howLong = 0;
    uint64_t token = 0;  // tells one taking of control from the next
};

struct CameraState {
    bool controlled = false;
    Controller controller;
    std::string view = kDefaultView;
    XPLMCameraPosition_t position = kViews[0].position;
    uint64_t nextToken = 1;
    int nesting = 0;  // losing-control callbacks on the stack
};

CameraState& cam() {
    static CameraState s;
    return s;
}

std::string PluginText(int plugin) { return "plugin " + std::to_string(plugin); }

const char* DurationText(XPLMCameraControlDuration howLong) {
    return howLong == xplm_ControlCameraForever ? "forever" : "until the view changes";
}

XPLMCameraPosition_t CurrentViewPosition() {
    XPLMCameraPosition_t position = kViews[0].position;
    ViewPosition(cam().view, position);
    return position;
}

// Calls a former controller once with a null position and is-losing-control 1, in its context.
void TellLosing(const Controller& old) {
    if (old.callback == nullptr || !PluginMayBeCalled(old.plugin)) return;
    CameraState& s = cam();
    s.nesting++;
    {
        PluginContext context(old.plugin);
        old.callback(nullptr, 1, old.refcon);
    }
    s.nesting--;
}

// Control ends; the sim shows the current view again.
void Release(const std::string& why, bool tell) {
    CameraState& s = cam();
    const Controller old = s.controller;
    s.controlled = false;
    s.controller = Controller();
    s.position = CurrentViewPosition();
    Note(PluginText(old.plugin) + " " + why + "; the sim shows " + s.view + " again");
    if (tell) TellLosing(old);
}

}  // namespace

// ------------------------------------------------------------------ control interface

XPLMCameraPosition_t CameraPosition() { return cam().position; }

int CameraController() { return cam().controlled ? cam().controller.plugin : kSimId; }

int CameraControlDuration() { return cam().controlled ? cam().controller.howLong : 0; }

std::string CameraView() { return cam().view; }

bool ViewPosition(const std::string& view, XPLMCameraPosition_t& position) {
    for (const View& v : kViews) {
        if (view == v.command) {
            position = v.position;
            return true;
        }
    }
    return false;
}

// ------------------------------------------------------------------ inside the library

void ControlCamera(XPLMCameraControlDuration howLong, XPLMCameraControl_f callback, void* refcon) {
    const char* const function = "XPLMControlCamera";
    CameraState& s = cam();
    if (callback == nullptr) {
        ReportMisuse(function, "no camera control callback");
        return;
    }
    if (howLong != xplm_ControlCameraUntilViewChanges && howLong != xplm_ControlCameraForever) {
        ReportMisuse(function, "unknown duration " + std::to_string(howLong));
        return;
    }
    if (s.nesting >= kMaxNesting) {
        ReportMisuse(function, "plugins take the camera from each other " + std::to_string(kMaxNesting) +
                                   " deep in their losing-control callbacks; refused");
        return;
    }
    const int plugin = CurrentPlugin();
    Controller& current = s.controller;
    if (s.controlled && current.plugin == plugin && current.callback == callback && current.refcon == refcon) {
        // The same registration again: it only changes how long the control lasts.
        if (current.howLong != howLong) {
            current.howLong = howLong;
            Note(PluginText(plugin) + " keeps control of the camera, now " + DurationText(howLong));
        }
        return;
    }
    const bool hadController = s.controlled;
    const Controller old = current;
    current.plugin = plugin;
    current.callback = callback;
    current.refcon = refcon;
    current.howLong = howLong;
    current.token = s.nextToken++;
    s.controlled = true;
    Note(PluginText(plugin) + " takes control of the camera " + DurationText(howLong) +
         (hadController ? " from " + PluginText(old.plugin) : std::string()));
    if (hadController) TellLosing(old);
}

void DontControlCamera() {
    CameraState& s = cam();
    if (!s.controlled) return;  // nothing to give up
    const int plugin = CurrentPlugin();
    if (s.controller.plugin != plugin) {
        ReportMisuse("XPLMDontControlCamera", PluginText(s.controller.plugin) + " controls the camera, not " +
                                                  PluginText(plugin) + "; left as it is");
        return;
    }
    Release("gives up the camera (XPLMDontControlCamera)", false);
}

int IsCameraBeingControlled(XPLMCameraControlDuration* duration) {
    const CameraState& s = cam();
    if (duration != nullptr) *duration = s.controlled ? s.controller.howLong : 0;
    return s.controlled ? 1 : 0;
}

void ReadCameraPosition(XPLMCameraPosition_t* position) {
    if (position == nullptr) {
        ReportMisuse("XPLMReadCameraPosition", "no camera position record");
        return;
    }
    *position = cam().position;
}

void RunCameraPhase() {
    CameraState& s = cam();
    if (!s.controlled) return;
    const Controller controller = s.controller;
    if (!PluginMayBeCalled(controller.plugin)) {
        Release("is disabled and loses the camera", false);
        return;
    }
    XPLMCameraPosition_t position = s.position;
    int keep;
    {
        PluginContext context(controller.plugin);
        keep = controller.callback(&position, 0, controller.refcon);
    }
    // The callback may have given up or passed on the camera itself; then its answer is void.
    if (!s.controlled || s.controller.token != controller.token) return;
    if (keep != 0)
        s.position = position;
    else
        Release("gives up the camera (its callback returned 0)", false);
}

void ChangeView(const std::string& view) {
    CameraState& s = cam();
    s.view = view;
    if (!s.controlled)
        s.position = CurrentViewPosition();
    else if (s.controller.howLong == xplm_ControlCameraUntilViewChanges)
        Release("loses the camera: the view changed to " + view, true);
}

int ForgetCameraOf(int plugin) {
    CameraState& s = cam();
    if (!s.controlled || s.controller.plugin != plugin) return 0;
    Release("is unloaded and loses the camera", false);
    return 1;
}

void ResetCamera() { cam() = CameraState(); }

}  // namespace xpsim
