// Commands and their handlers.
#include "world/Commands.h"

#include <algorithm>
#include <memory>
#include <set>
#include <unordered_map>
#include <unordered_set>

#include "world/Camera.h"
#include "world/DataRefs.h"
#include "world/Plugins.h"
#include "world/World.h"

namespace xpsim {
namespace {

const char* const kPauseToggle = "sim/operation/pause_toggle";
// A handler that runs the command it handles would otherwise recurse until the stack runs out.
constexpr int kMaxNesting = 32;

// The simulator's own commands. The pause toggle works on sim/time/paused; the others only say in
// Log.txt what the simulator would do.
struct BuiltinCommand {
    const char* name;
    const char* description;
    const char* note;  // null for the pause toggle
};
const BuiltinCommand kBuiltins[] = {
    {kPauseToggle, "Pause the simulation.", nullptr},
    {"sim/none/none", "Do nothing.", "nothing happens"},
    {"sim/view/default_view", "Default view.", "the view goes back to the default view"},
    {"sim/view/forward_with_panel", "Forward with panel.", "the view looks forward with the panel"},
    {"sim/view/chase", "Chase view.", "the view follows the aircraft from behind"},
    {"sim/operation/screenshot", "Take a screenshot.", "a screenshot would be saved"},
};

// XPLMCommandKeyID and XPLMCommandButtonID by number.
const char* const kKeyNames[] = {
    "xplm_key_pause", "xplm_key_revthrust", "xplm_key_jettison", "xplm_key_brakesreg",
    "xplm_key_brakesmax", "xplm_key_gear", "xplm_key_timedn", "xplm_key_timeup", "xplm_key_fadec",
    "xplm_key_otto_dis", "xplm_key_otto_atr", "xplm_key_otto_asi", "xplm_key_otto_hdg",
    "xplm_key_otto_gps", "xplm_key_otto_lev", "xplm_key_otto_hnav", "xplm_key_otto_alt",
    "xplm_key_otto_vvi", "xplm_key_otto_vnav", "xplm_key_otto_nav1", "xplm_key_otto_nav2",
    "xplm_key_targ_dn", "xplm_key_targ_up", "xplm_key_hdgdn", "xplm_key_hdgup", "xplm_key_barodn",
    "xplm_key_baroup", "xplm_key_obs1dn", "xplm_key_obs1up", "xplm_key_obs2dn", "xplm_key_obs2up",
    "xplm_key_com1_1", "xplm_key_com1_2", "xplm_key_com1_3", "xplm_key_com1_4", "xplm_key_nav1_1",
    "xplm_key_nav1_2", "xplm_key_nav1_3", "xplm_key_nav1_4", "xplm_key_com2_1", "xplm_key_com2_2",
    "xplm_key_com2_3", "xplm_key_com2_4", "xplm_key_nav2_1", "xplm_key_nav2_2", "xplm_key_nav2_3",
    "xplm_key_nav2_4", "xplm_key_adf_1", "xplm_key_adf_2", "xplm_key_adf_3", "xplm_key_adf_4",
    "xplm_key_adf_5", "xplm_key_adf_6", "xplm_key_transpon_1", "xplm_key_transpon_2",
    "xplm_key_transpon_3", "xplm_key_transpon_4", "xplm_key_transpon_5", "xplm_key_transpon_6",
    "xplm_key_transpon_7", "xplm_key_transpon_8", "xplm_key_flapsup", "xplm_key_flapsdn",
    "xplm_key_cheatoff", "xplm_key_cheaton", "xplm_key_sbrkoff", "xplm_key_sbrkon",
    "xplm_key_ailtrimL", "xplm_key_ailtrimR", "xplm_key_rudtrimL", "xplm_key_rudtrimR",
    "xplm_key_elvtrimD", "xplm_key_elvtrimU", "xplm_key_forward", "xplm_key_down", "xplm_key_left",
    "xplm_key_right", "xplm_key_back", "xplm_key_tower", "xplm_key_runway", "xplm_key_chase",
    "xplm_key_free1", "xplm_key_free2", "xplm_key_spot", "xplm_key_fullscrn1", "xplm_key_fullscrn2",
    "xplm_key_tanspan", "xplm_key_smoke", "xplm_key_map", "xplm_key_zoomin", "xplm_key_zoomout",
    "xplm_key_cycledump", "xplm_key_replay", "xplm_key_tranID"};
static_assert(sizeof kKeyNames / sizeof kKeyNames[0] == xplm_key_max, "one name per XPLMCommandKeyID");

const char* const kButtonNames[] = {
    "xplm_joy_nothing", "xplm_joy_start_all", "xplm_joy_start_0", "xplm_joy_start_1",
    "xplm_joy_start_2", "xplm_joy_start_3", "xplm_joy_start_4", "xplm_joy_start_5", "xplm_joy_start_6",
    "xplm_joy_start_7", "xplm_joy_throt_up", "xplm_joy_throt_dn", "xplm_joy_prop_up",
    "xplm_joy_prop_dn", "xplm_joy_mixt_up", "xplm_joy_mixt_dn", "xplm_joy_carb_tog",
    "xplm_joy_carb_on", "xplm_joy_carb_off", "xplm_joy_trev", "xplm_joy_trm_up", "xplm_joy_trm_dn",
    "xplm_joy_rot_trm_up", "xplm_joy_rot_trm_dn", "xplm_joy_rud_lft", "xplm_joy_rud_cntr",
    "xplm_joy_rud_rgt", "xplm_joy_ail_lft", "xplm_joy_ail_cntr", "xplm_joy_ail_rgt",
    "xplm_joy_B_rud_lft", "xplm_joy_B_rud_rgt", "xplm_joy_look_up", "xplm_joy_look_dn",
    "xplm_joy_look_lft", "xplm_joy_look_rgt", "xplm_joy_glance_l", "xplm_joy_glance_r",
    "xplm_joy_v_fnh", "xplm_joy_v_fwh", "xplm_joy_v_tra", "xplm_joy_v_twr", "xplm_joy_v_run",
    "xplm_joy_v_cha", "xplm_joy_v_fr1", "xplm_joy_v_fr2", "xplm_joy_v_spo", "xplm_joy_flapsup",
    "xplm_joy_flapsdn", "xplm_joy_vctswpfwd", "xplm_joy_vctswpaft", "xplm_joy_gear_tog",
    "xplm_joy_gear_up", "xplm_joy_gear_down", "xplm_joy_lft_brake", "xplm_joy_rgt_brake",
    "xplm_joy_brakesREG", "xplm_joy_brakesMAX", "xplm_joy_speedbrake", "xplm_joy_ott_dis",
    "xplm_joy_ott_atr", "xplm_joy_ott_asi", "xplm_joy_ott_hdg", "xplm_joy_ott_alt", "xplm_joy_ott_vvi",
    "xplm_joy_tim_start", "xplm_joy_tim_reset", "xplm_joy_ecam_up", "xplm_joy_ecam_dn",
    "xplm_joy_fadec", "xplm_joy_yaw_damp", "xplm_joy_art_stab", "xplm_joy_chute", "xplm_joy_JATO",
    "xplm_joy_arrest", "xplm_joy_jettison", "xplm_joy_fuel_dump", "xplm_joy_puffsmoke",
    "xplm_joy_prerotate", "xplm_joy_UL_prerot", "xplm_joy_UL_collec", "xplm_joy_TOGA",
    "xplm_joy_shutdown", "xplm_joy_con_atc", "xplm_joy_fail_now", "xplm_joy_pause", "xplm_joy_rock_up",
    "xplm_joy_rock_dn", "xplm_joy_rock_lft", "xplm_joy_rock_rgt", "xplm_joy_rock_for",
    "xplm_joy_rock_aft", "xplm_joy_idle_hilo", "xplm_joy_lanlights"};
static_assert(sizeof kButtonNames / sizeof kButtonNames[0] == xplm_joy_max, "one name per XPLMCommandButtonID");

struct CommandTable {
    bool builtinsMade = false;
    std::vector<std::unique_ptr<CommandRecord>> commands;  // creation order
    std::unordered_map<std::string, CommandRecord*> byName;
    std::unordered_set<const void*> handles;
    uint64_t nextHandlerId = 1;
    int dispatching = 0;  // nesting of command phases; removed handlers are swept when it is 0
    bool tooDeep = false;  // the nesting limit was reached in the current outermost run
    std::set<int> pressedButtons;
};

CommandRecord* AddCommand(CommandTable& t, const std::string& name, const std::string& description,
                          int builtin) {
    auto command = std::make_unique<CommandRecord>();
    command->name = name;
    command->description = description;
    command->builtin = builtin;
    CommandRecord* raw = command.get();
    t.commands.push_back(std::move(command));
    t.byName[name] = raw;
    t.handles.insert(raw);
    return raw;
}

CommandTable& table() {
    static CommandTable t;
    if (!t.builtinsMade) {
        t.builtinsMade = true;
        for (size_t i = 0; i < sizeof kBuiltins / sizeof kBuiltins[0]; ++i)
            AddCommand(t, kBuiltins[i].name, kBuiltins[i].description, int(i));
    }
    return t;
}

void SweepHandlers() {
    CommandTable& t = table();
    if (t.dispatching > 0) return;
    for (auto& command : t.commands) {
        auto& handlers = command->handlers;
        handlers.erase(std::remove_if(handlers.begin(), handlers.end(),
                                      [](const CommandRecord::Handler& h) { return h.dead; }),
                       handlers.end());
    }
}

bool Live(const CommandRecord& command, uint64_t id) {
    return std::any_of(command.handlers.begin(), command.handlers.end(),
                       [id](const CommandRecord::Handler& h) { return h.id == id && !h.dead; });
}

// Calls one side's handlers from a snapshot; false when one of them stopped the command.
bool RunHandlers(CommandRecord& command, const std::vector<CommandRecord::Handler>& snapshot, bool before,
                 XPLMCommandPhase phase) {
    for (const auto& handler : snapshot) {
        if (handler.before != before || !Live(command, handler.id) || !PluginMayBeCalled(handler.plugin))
            continue;
        int carryOn;
        {
            PluginContext context(handler.plugin);
            carryOn = handler.callback(&command, phase, handler.refcon);
        }
        if (carryOn == 0) return false;
    }
    return true;
}

void SimActs(const CommandRecord& command, XPLMCommandPhase phase) {
    if (command.builtin < 0 || phase != xplm_CommandBegin) return;
    const BuiltinCommand& builtin = kBuiltins[command.builtin];
    if (builtin.note != nullptr) {
        Note(command.name + ": " + builtin.note);
        if (command.name.compare(0, 9, "sim/view/") == 0) ChangeView(command.name);
        return;
    }
    const bool pause = !SimPaused();
    SetSimPaused(pause);
    Note(command.name + (pause ? ": the sim is paused at frame " : ": the sim runs again from frame ") +
         std::to_string(FrameNumber()));
}

void RunPhase(CommandRecord& command, XPLMCommandPhase phase) {
    CommandTable& t = table();
    // Once too deep, every nested run is refused until the outermost one returns, so that handlers
    // that run commands on every phase unwind in a straight line.
    if (t.dispatching >= kMaxNesting || (t.tooDeep && t.dispatching > 0)) {
        if (!t.tooDeep)
            ReportMisuse(command.name.c_str(), "commands run from command handlers nest " +
                                                   std::to_string(kMaxNesting) + " deep; nested runs are refused");
        t.tooDeep = true;
        return;
    }
    // Handlers registered during the phase take part from the next phase on.
    const std::vector<CommandRecord::Handler> snapshot = command.handlers;
    t.dispatching++;
    if (RunHandlers(command, snapshot, true, phase)) {
        SimActs(command, phase);
        RunHandlers(command, snapshot, false, phase);
    }
    t.dispatching--;
    if (t.dispatching == 0) t.tooDeep = false;
    SweepHandlers();
}

}  // namespace

// ------------------------------------------------------------------ control interface

bool RunCommandByName(const std::string& name, CommandRun run, std::string& error) {
    CommandRecord* command = FindCommand(name);
    if (command == nullptr) {
        error = "no command named " + name;
        return false;
    }
    switch (run) {
        case CommandRun::Once:
            RunCommandOnce(*command);
            return true;
        case CommandRun::Begin:
            if (command->held) {
                error = name + " is held already";
                return false;
            }
            BeginCommand(*command, "command-begin");
            return true;
        case CommandRun::End:
            if (!command->held) {
                error = name + " is not held";
                return false;
            }
            EndCommand(*command, "command-end");
            return true;
    }
    return false;
}

std::vector<std::string> HeldCommands() {
    std::vector<std::string> names;
    for (auto& command : table().commands) {
        if (command->held) names.push_back(command->name);
    }
    return names;
}

// ------------------------------------------------------------------ commands

CommandRecord* FindCommand(const std::string& name) {
    auto& byName = table().byName;
    auto found = byName.find(name);
    return found == byName.end() ? nullptr : found->second;
}

CommandRecord* CreateCommand(const std::string& name, const std::string& description) {
    if (CommandRecord* existing = FindCommand(name)) return existing;
    return AddCommand(table(), name, description, -1);
}

CommandRecord* CommandFromHandle(const void* handle) {
    if (handle == nullptr || table().handles.count(handle) == 0) return nullptr;
    return static_cast<CommandRecord*>(const_cast<void*>(handle));
}

void BeginCommand(CommandRecord& command, const char* function) {
    if (command.held) {
        ReportMisuse(function, command.name + " is held already; end it first");
        return;
    }
    command.held = true;
    command.holder = CurrentPlugin();
    command.heldSince = FrameNumber();
    RunPhase(command, xplm_CommandBegin);
}

void EndCommand(CommandRecord& command, const char* function) {
    if (!command.held) {
        ReportMisuse(function, command.name + " is not held");
        return;
    }
    command.held = false;
    RunPhase(command, xplm_CommandEnd);
}

void RunCommandOnce(CommandRecord& command) {
    RunPhase(command, xplm_CommandBegin);
    RunPhase(command, xplm_CommandEnd);
}

void RegisterCommandHandler(CommandRecord& command, XPLMCommandCallback_f handler, int before, void* refcon) {
    if (handler == nullptr) {
        ReportMisuse("XPLMRegisterCommandHandler", "no handler for " + command.name);
        return;
    }
    CommandRecord::Handler entry;
    entry.id = table().nextHandlerId++;
    entry.plugin = CurrentPlugin();
    entry.callback = handler;
    entry.before = before != 0;
    entry.refcon = refcon;
    command.handlers.push_back(entry);
}

void UnregisterCommandHandler(CommandRecord& command, XPLMCommandCallback_f handler, int before, void* refcon) {
    for (auto& entry : command.handlers) {
        if (!entry.dead && entry.callback == handler && entry.before == (before != 0) && entry.refcon == refcon) {
            entry.dead = true;
            SweepHandlers();
            return;
        }
    }
    ReportMisuse("XPLMUnregisterCommandHandler",
                 "no handler of " + command.name + " with this callback, side and refcon");
}

void RunHeldCommands() {
    const int frame = FrameNumber();
    std::vector<CommandRecord*> held;
    for (auto& command : table().commands) {
        if (command->held && command->heldSince < frame) held.push_back(command.get());
    }
    for (CommandRecord* command : held) {
        if (command->held) RunPhase(*command, xplm_CommandContinue);  // an earlier handler may end it
    }
}

// ------------------------------------------------------------------ legacy keys and buttons

void CommandKeyStroke(int key) {
    if (key < 0 || key >= xplm_key_max) {
        ReportMisuse("XPLMCommandKeyStroke", "no XPLMCommandKeyID " + std::to_string(key));
        return;
    }
    Note("key stroke " + std::string(kKeyNames[key]) + " (" + std::to_string(key) + ")");
    if (key == xplm_key_pause) RunCommandOnce(*FindCommand(kPauseToggle));
}

void CommandButton(int button, bool press) {
    const char* const function = press ? "XPLMCommandButtonPress" : "XPLMCommandButtonRelease";
    if (button < 0 || button >= xplm_joy_max) {
        ReportMisuse(function, "no XPLMCommandButtonID " + std::to_string(button));
        return;
    }
    const std::string name = std::string(kButtonNames[button]) + " (" + std::to_string(button) + ")";
    auto& pressed = table().pressedButtons;
    if (press && pressed.count(button)) {
        ReportMisuse(function, name + " is pressed already");
        return;
    }
    if (!press && !pressed.count(button)) {
        ReportMisuse(function, name + " is not pressed");
        return;
    }
    if (press)
        pressed.insert(button);
    else
        pressed.erase(button);
    Note(std::string(press ? "button press " : "button release ") + name);
    if (button != xplm_joy_pause) return;
    // The pause button holds the pause toggle while it is down.
    CommandRecord& pause = *FindCommand(kPauseToggle);
    if (press)
        BeginCommand(pause, function);
    else
        EndCommand(pause, function);
}

// ------------------------------------------------------------------ whole world

int ForgetCommandHandlersOf(int plugin) {
    int count = 0;
    std::vector<CommandRecord*> held;
    for (auto& command : table().commands) {
        for (auto& entry : command->handlers) {
            if (!entry.dead && entry.plugin == plugin) {
                entry.dead = true;
                ++count;
            }
        }
        if (command->held && command->holder == plugin) held.push_back(command.get());
    }
    SweepHandlers();
    // A command a plugin was holding ends with it, so that the other handlers see the end.
    for (CommandRecord* command : held) {
        if (!command->held) continue;
        Note(command->name + " ends: plugin " + std::to_string(plugin) + " was holding it");
        command->held = false;
        RunPhase(*command, xplm_CommandEnd);
    }
    return count;
}

void ResetCommands() { table() = CommandTable(); }

}  // namespace xpsim
