// Commands: the simulator's own, those plugins create, their handlers and the commands being held;
// also the legacy key strokes and joystick buttons that stand for commands.
//
// A command runs in phases: xplm_CommandBegin when it starts, xplm_CommandContinue at the start of
// every later frame while it is held, xplm_CommandEnd when it stops (XPLMCommandOnce is a begin
// directly followed by an end). In each phase the handlers registered before the simulator run
// first, in registration order; then the simulator acts (built-in commands act on their begin);
// then the handlers registered after it. A handler answering 0 stops that phase there: no later
// handler runs and, from a before-handler, the simulator does not act.
//
// A command handle (XPLMCommandRef) is the address of its record; commands live until ResetWorld,
// whoever created them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "XPLMUtilities.h"
#include "world/Export.h"

namespace xpsim {

struct CommandRecord {
    struct Handler {
        uint64_t id = 0;
        int plugin = 0;
        XPLMCommandCallback_f callback = nullptr;
        bool before = false;
        void* refcon = nullptr;
        bool dead = false;
    };

    std::string name;
    std::string description;
    int builtin = -1;     // the simulator's own command (an index into its table), or -1
    std::vector<Handler> handlers;  // registration order
    bool held = false;
    int holder = 0;       // the plugin that began it
    int heldSince = 0;    // the frame it began in
};

enum class CommandRun { Once, Begin, End };

// ------------------------------------------------------------------ control interface

// Runs, begins or ends the command named `name` on behalf of the user; false with a message for an
// unknown name, a begin of a held command or an end of one that is not held.
XPSIM_API bool RunCommandByName(const std::string& name, CommandRun run, std::string& error);
// The names of the commands being held, in creation order.
XPSIM_API std::vector<std::string> HeldCommands();

// ------------------------------------------------------------------ inside the library

CommandRecord* FindCommand(const std::string& name);
// The existing command of that name, or a new one.
CommandRecord* CreateCommand(const std::string& name, const std::string& description);
// The record of a handle, or null for anything that is not a command.
CommandRecord* CommandFromHandle(const void* handle);
// `function` names the SDK function in reports.
void BeginCommand(CommandRecord& command, const char* function);
void EndCommand(CommandRecord& command, const char* function);
void RunCommandOnce(CommandRecord& command);
void RegisterCommandHandler(CommandRecord& command, XPLMCommandCallback_f handler, int before, void* refcon);
void UnregisterCommandHandler(CommandRecord& command, XPLMCommandCallback_f handler, int before, void* refcon);

// The xplm_CommandContinue phase of every command held since an earlier frame; at the start of the
// frame's callbacks.
void RunHeldCommands();

// XPLMCommandKeyStroke, XPLMCommandButtonPress and XPLMCommandButtonRelease: noted in Log.txt;
// xplm_key_pause and xplm_joy_pause work sim/operation/pause_toggle.
void CommandKeyStroke(int key);
void CommandButton(int button, bool press);

// Removes a plugin's handlers and ends the commands it was holding.
int ForgetCommandHandlersOf(int plugin);
void ResetCommands();

}  // namespace xpsim
