// A plugin for the tests of the aircraft: built twice, as planes-a (PLANES_NAME "a") and planes-b
// ("b"), so that two plugins compete for the other aircraft in one xpsim run. Each logs what it sees
// with XPLMDebugString, one "planes-<name>: ..." line per observation.
//
// On enable it asks for the other aircraft with XPLMAcquirePlanes; planes-a asks for the Baron 58
// of the simulator folder (Aircraft/Laminar Research/Baron B58/Baron_58.acf) in aircraft 2. Its
// callback, when the aircraft become free, logs the plugin it runs in and asks again. Messages:
//   kRelease    XPLMReleasePlanes
//   kPlace      XPLMPlaceUserAtAirport("KBFI")
// and every message (those above too) is logged with its sender and parameter.
#include <cstdint>
#include <cstring>
#include <string>

#include "XPLMDataAccess.h"
#include "XPLMPlanes.h"
#include "XPLMPlugin.h"
#include "XPLMUtilities.h"

#ifndef PLANES_NAME
#define PLANES_NAME "a"
#endif

namespace {

const int kRelease = 0x7E570101;
const int kPlace = 0x7E570102;
const std::string kName = PLANES_NAME;

void Say(const std::string& text) { XPLMDebugString(("planes-" + kName + ": " + text + "\n").c_str()); }

std::string Controller() {
    int total = 0, active = 0;
    XPLMPluginID controller = 0;
    XPLMCountAircraft(&total, &active, &controller);
    return std::to_string(controller) + " of " + std::to_string(total) + " (" + std::to_string(active) + " active)";
}

int Acquire();

void Available(void* refcon) {
    Say("aircraft available, told in plugin " + std::to_string(XPLMGetMyID()) + " with refcon " +
        static_cast<const char*>(refcon));
    Acquire();
}

int Acquire() {
    static char refcon[] = "planes-refcon";
    std::string baron;
    char system[512];
    XPLMGetSystemPath(system);
    baron = std::string(system) + "Aircraft/Laminar Research/Baron B58/Baron_58.acf";
    char empty[] = "";
    char* list[] = {empty, &baron[0], nullptr};
    const int result = XPLMAcquirePlanes(kName == "a" ? list : nullptr, Available, refcon);
    Say("acquire answers " + std::to_string(result) + "; controller " + Controller());
    return result;
}

}  // namespace

PLUGIN_API int XPluginStart(char* outName, char* outSignature, char* outDescription) {
    std::strcpy(outName, ("Planes " + kName).c_str());
    std::strcpy(outSignature, ("xpsim.tests.planes." + kName).c_str());
    std::strcpy(outDescription, "Competes for the other aircraft.");
    Say("start as plugin " + std::to_string(XPLMGetMyID()));
    return 1;
}

PLUGIN_API void XPluginStop(void) { Say("stop"); }

PLUGIN_API int XPluginEnable(void) {
    Say("enable");
    Acquire();
    return 1;
}

PLUGIN_API void XPluginDisable(void) { Say("disable; controller " + Controller()); }

PLUGIN_API void XPluginReceiveMessage(XPLMPluginID inFrom, int inMessage, void* inParam) {
    Say("message " + std::to_string(inMessage) + " from " + std::to_string(inFrom) + " param " +
        std::to_string(reinterpret_cast<intptr_t>(inParam)));
    if (inMessage == kRelease) {
        XPLMReleasePlanes();
        Say("released; controller " + Controller());
    } else if (inMessage == kPlace) {
        XPLMPlaceUserAtAirport("KBFI");
    } else if (inMessage == XPLM_MSG_PLANE_LOADED) {
        char file[256], path[512];
        XPLMGetNthAircraftModel(static_cast<int>(reinterpret_cast<intptr_t>(inParam)), file, path);
        Say(std::string("aircraft ") + std::to_string(reinterpret_cast<intptr_t>(inParam)) + " is " + file);
    } else if (inMessage == XPLM_MSG_AIRPORT_LOADED) {
        XPLMDataRef latitude = XPLMFindDataRef("sim/flightmodel/position/latitude");
        XPLMDataRef reference = XPLMFindDataRef("sim/flightmodel/position/lat_ref");
        Say("at latitude " + std::to_string(XPLMGetDatad(latitude)) + ", reference " +
            std::to_string(XPLMGetDataf(reference)));
    }
}
