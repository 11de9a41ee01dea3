// A second plugin that the end-to-end tests load beside Corvelle, so that scripts have something
// that is not Corvelle to find, inspect, enable, disable, message and share commands with. It
// reports everything it sees with XPLMDebugString, one "peer: ..." line per observation, so tests
// can assert on the simulator's Log.txt.
//
// Messages it understands beyond logging them:
//   kTextMessage     the parameter is a zero-terminated text, logged as text
//   kRunCommand      the parameter is a command name; the peer runs that command once
//   kReplyMessage    the peer answers the sender with kReplyMessage + 1 and the same parameter
// Every other message is logged with its parameter as a number.
//
// It creates the command "corvelle/tests/peer/hello" and handles it after the simulator, logging
// every phase, where the simulator offers commands (SDK 2.00 and later).
#include <cstdint>
#include <cstring>
#include <string>

#include "XPLMDefs.h"
#include "XPLMPlugin.h"
#include "XPLMUtilities.h"

namespace {

const int kTextMessage = 0x7E570001;
const int kRunCommand = 0x7E570002;
const int kReplyMessage = 0x7E570003;

const char* const kCommandName = "corvelle/tests/peer/hello";

// Command functions, looked up like a plugin for several simulator versions does.
struct CommandFunctions {
    decltype(&XPLMFindCommand) find = nullptr;
    decltype(&XPLMCreateCommand) create = nullptr;
    decltype(&XPLMCommandOnce) once = nullptr;
    decltype(&XPLMRegisterCommandHandler) registerHandler = nullptr;
    decltype(&XPLMUnregisterCommandHandler) unregisterHandler = nullptr;
};
CommandFunctions gCommands;
XPLMCommandRef gHello = nullptr;
int gHelloCount = 0;

void Say(const std::string& text) { XPLMDebugString(("peer: " + text + "\n").c_str()); }

template <typename F>
void Find(F* function, const char* name) {
    *function = reinterpret_cast<F>(XPLMFindSymbol(name));
}

int HelloHandler(XPLMCommandRef command, XPLMCommandPhase phase, void* refcon) {
    if (phase == xplm_CommandBegin) ++gHelloCount;
    Say("command " + std::string(kCommandName) + " phase " + std::to_string(phase) + " count " +
        std::to_string(gHelloCount) + " in plugin " + std::to_string(XPLMGetMyID()));
    return 1;
}

}  // namespace

PLUGIN_API int XPluginStart(char* outName, char* outSignature, char* outDescription) {
    std::strcpy(outName, "Peer");
    std::strcpy(outSignature, "corvelle.tests.peer");
    std::strcpy(outDescription, "A plugin beside Corvelle for its tests.");
    Find(&gCommands.find, "XPLMFindCommand");
    Find(&gCommands.create, "XPLMCreateCommand");
    Find(&gCommands.once, "XPLMCommandOnce");
    Find(&gCommands.registerHandler, "XPLMRegisterCommandHandler");
    Find(&gCommands.unregisterHandler, "XPLMUnregisterCommandHandler");
    gHelloCount = 0;
    gHello = nullptr;
    if (gCommands.create && gCommands.registerHandler) {
        gHello = gCommands.create(kCommandName, "Says hello from the peer plugin");
        gCommands.registerHandler(gHello, HelloHandler, 0, nullptr);
    }
    Say("start as plugin " + std::to_string(XPLMGetMyID()) + (gHello ? " with" : " without") + " commands");
    return 1;
}

PLUGIN_API void XPluginStop(void) {
    if (gHello && gCommands.unregisterHandler) gCommands.unregisterHandler(gHello, HelloHandler, 0, nullptr);
    Say("stop");
}

PLUGIN_API int XPluginEnable(void) {
    Say("enable");
    return 1;
}

PLUGIN_API void XPluginDisable(void) { Say("disable"); }

PLUGIN_API void XPluginReceiveMessage(XPLMPluginID inFrom, int inMessage, void* inParam) {
    const std::string from = " from " + std::to_string(inFrom);
    if (inMessage == kTextMessage) {
        Say("message " + std::to_string(inMessage) + from + " text '" +
            (inParam ? static_cast<const char*>(inParam) : "(null)") + "'");
    } else if (inMessage == kRunCommand) {
        const char* name = static_cast<const char*>(inParam);
        Say("message " + std::to_string(inMessage) + from + " run '" + (name ? name : "(null)") + "'");
        XPLMCommandRef command = (name && gCommands.find) ? gCommands.find(name) : nullptr;
        if (command && gCommands.once) gCommands.once(command);
        else Say("no command " + std::string(name ? name : "(null)"));
    } else {
        Say("message " + std::to_string(inMessage) + from + " value " +
            std::to_string(reinterpret_cast<intptr_t>(inParam)));
        if (inMessage == kReplyMessage) XPLMSendMessageToPlugin(inFrom, kReplyMessage + 1, inParam);
    }
}
