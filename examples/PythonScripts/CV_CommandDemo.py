# Commands: create one of your own, handle it, and watch one of the simulator's.
#
# A command is something the user (a key, a joystick button, a menu) or a plugin can run. It runs in
# phases: xplm_CommandBegin when it starts, xplm_CommandContinue in every frame while it is held
# down, and xplm_CommandEnd when it is let go. A command that is run "once" has a begin and an end.
#
# A handler is a method with the arguments (self, inCommand, inPhase, inRefcon). Handlers registered
# "before" (inBefore = 1) run before the simulator acts on the command, the others after it. A
# handler returns 1 to let the command go on, or 0 to stop it there: a before-handler that returns
# 0 keeps the simulator from acting at all. Return a value from every handler: one that returns
# nothing stops the command as well.
#
# Run it with `make demo`: the events file examples/demo-events.txt runs the demo command once,
# holds it down for a moment, and toggles the pause twice. The output goes to CorvelleOutput.txt.

from XPLMDataAccess import *
from XPLMUtilities import *


class Corvelle:
    def XPluginStart(self):
        self.Name = "CommandDemo"
        self.Sig = "corvelle.examples.commanddemo"
        self.Desc = "Creates a command, handles it, and watches the pause command."

        # Creating a command that exists already gives the existing one. The result is the
        # command's handle: keep it, you need it to register and unregister handlers.
        self.DemoCommand = XPLMCreateCommand("corvelle/demo/say_hello", "Say hello from the command demo")

        # Keep the bound methods on self and pass the same objects when unregistering: Corvelle
        # finds a registration by the script, the method and the refcon.
        self.DemoHandlerCB = self.DemoHandler
        XPLMRegisterCommandHandler(self, self.DemoCommand, self.DemoHandlerCB, 1, 0)

        # The simulator's own pause command, watched after the simulator has acted on it.
        self.PauseCommand = XPLMFindCommand("sim/operation/pause_toggle")
        # XPLMFindDataRef answers None for a name the simulator does not know.
        self.Paused = XPLMFindDataRef("sim/time/paused")
        self.PauseWatcherCB = self.PauseWatcher
        XPLMRegisterCommandHandler(self, self.PauseCommand, self.PauseWatcherCB, 0, 0)

        self.HeldFrames = 0
        return self.Name, self.Sig, self.Desc

    def XPluginStop(self):
        # Every registration is undone with the same command, method, side and refcon.
        XPLMUnregisterCommandHandler(self, self.DemoCommand, self.DemoHandlerCB, 1, 0)
        XPLMUnregisterCommandHandler(self, self.PauseCommand, self.PauseWatcherCB, 0, 0)

    def XPluginEnable(self):
        return 1

    def XPluginDisable(self):
        pass

    def XPluginReceiveMessage(self, inFromWho, inMessage, inParam):
        pass

    def DemoHandler(self, inCommand, inPhase, inRefcon):
        if inPhase == xplm_CommandBegin:
            self.HeldFrames = 0
            print("CommandDemo: corvelle/demo/say_hello begins: hello!")
        elif inPhase == xplm_CommandContinue:
            self.HeldFrames += 1
        elif inPhase == xplm_CommandEnd:
            print("CommandDemo: corvelle/demo/say_hello ends after %d held frames" % self.HeldFrames)
        # 1: nobody else wants this command, but letting it go on is the friendly default.
        return 1

    def PauseWatcher(self, inCommand, inPhase, inRefcon):
        # After-handlers see what the simulator did: it toggles the pause on the begin phase.
        if inPhase == xplm_CommandBegin:
            state = "paused" if self.Paused is not None and XPLMGetDatai(self.Paused) else "running"
            print("CommandDemo: the pause command ran; the simulator is now %s" % state)
        return 1
