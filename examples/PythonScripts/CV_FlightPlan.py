# A flight plan: find navaids, fixes and airports in the simulator's navigation data, program the
# FMS with them, and draw a status line on the screen every frame.
#
# Navigation data is reached through nav refs: XPLMFindNavAid looks one up by (parts of) its name
# or identifier, its type, and optionally the position it should be nearest to. XPLMGetNavAidInfo
# reads a nav ref's details into lists (pass None for what you do not need). The FMS has 100
# entries, numbered 0 to 99; each holds a nav ref or a latitude/longitude point and an altitude in
# feet. The destination entry is the one the aircraft flies to.
#
# Drawing happens in a draw callback: XPLMDrawTranslucentDarkBox and XPLMDrawString take window
# coordinates (pixels from the bottom left). Draw only from such a callback: the simulator draws
# nothing useful anywhere else.
#
# Run it with `make demo`. It uses the small Seattle data set that xpsim reads from the demo's
# Resources/default data and default scenery folders.

from XPLMDisplay import *
from XPLMGraphics import *
from XPLMNavigation import *
from XPLMProcessing import *

# The route: identifiers and what they are, flown in this order.
ROUTE = [("KSEA", xplm_Nav_Airport), ("SEA", xplm_Nav_VOR), ("ALKIS", xplm_Nav_Fix), ("PAE", xplm_Nav_VOR)]
# A last point given by its position rather than a nav ref.
FINAL_POINT = (47.75, -122.35)
ALTITUDE_FEET = 3000


class Corvelle:
    def XPluginStart(self):
        self.Name = "FlightPlan"
        self.Sig = "corvelle.examples.flightplan"
        self.Desc = "Programs the FMS from the navigation data and shows where it goes."
        self.Status = "FMS not programmed"
        # Keep the bound methods: the same objects unregister them again.
        self.DrawStatusCB = self.DrawStatus
        XPLMRegisterDrawCallback(self, self.DrawStatusCB, xplm_Phase_Window, 0, 0)
        self.SequenceCB = self.Sequence
        XPLMRegisterFlightLoopCallback(self, self.SequenceCB, 1.5, 0)
        return self.Name, self.Sig, self.Desc

    def XPluginStop(self):
        XPLMUnregisterDrawCallback(self, self.DrawStatusCB, xplm_Phase_Window, 0, 0)
        XPLMUnregisterFlightLoopCallback(self, self.SequenceCB, 0)

    def XPluginEnable(self):
        self.ProgramFms()
        return 1

    def XPluginDisable(self):
        pass

    def XPluginReceiveMessage(self, inFromWho, inMessage, inParam):
        pass

    def ProgramFms(self):
        # Clear whatever the FMS held, from the last entry down.
        for index in reversed(range(XPLMCountFMSEntries())):
            XPLMClearFMSEntry(index)
        index = 0
        for ident, kind in ROUTE:
            ref = XPLMFindNavAid(None, ident, None, None, None, kind)
            if ref == XPLM_NAV_NOT_FOUND:
                print("FlightPlan: %s is not in the navigation data" % ident)
                continue
            # Output lists: each receives its value (the annotations tell a type checker what they hold).
            name: list[str] = []
            frequency: list[int] = []
            XPLMGetNavAidInfo(ref, None, None, None, None, frequency, None, None, name, None)
            # VOR frequencies come in units of 10 kHz, as the simulator's data files have them.
            tuned = ", %.2f MHz" % (frequency[0] / 100.0) if kind == xplm_Nav_VOR else ""
            print("FlightPlan: entry %d is %s (%s%s)" % (index, ident, name[0], tuned))
            XPLMSetFMSEntryInfo(index, ref, ALTITUDE_FEET)
            index += 1
        XPLMSetFMSEntryLatLon(index, FINAL_POINT[0], FINAL_POINT[1], ALTITUDE_FEET + 1000)
        print("FlightPlan: entry %d is the point %.2f, %.2f" % (index, FINAL_POINT[0], FINAL_POINT[1]))
        XPLMSetDestinationFMSEntry(1)
        self.UpdateStatus()

    def UpdateStatus(self):
        destination = XPLMGetDestinationFMSEntry()
        kind: list[int] = []
        ident: list[str] = []
        altitude: list[int] = []
        XPLMGetFMSEntryInfo(destination, kind, ident, None, altitude, None, None)
        where = ident[0] if kind[0] != xplm_Nav_LatLon else "a lat/lon point"
        self.Status = "FMS: %d entries, to %s at %d ft" % (XPLMCountFMSEntries(), where, altitude[0])
        print("FlightPlan: " + self.Status)

    # Every 1.5 simulated seconds the aircraft "reaches" its destination and flies to the next entry.
    def Sequence(self, elapsedSinceCall, elapsedSinceLoop, counter, refcon):
        following = XPLMGetDestinationFMSEntry() + 1
        if following >= XPLMCountFMSEntries():
            print("FlightPlan: the plan is flown")
            return 0
        XPLMSetDestinationFMSEntry(following)
        self.UpdateStatus()
        return 1.5

    def DrawStatus(self, inPhase, inIsBefore, inRefcon):
        width = XPLMMeasureString(xplmFont_Proportional, self.Status, len(self.Status))
        XPLMDrawTranslucentDarkBox(8, 760, 24 + width, 736)
        XPLMDrawString((0.9, 1.0, 0.6), 16, 744, self.Status, 0, xplmFont_Proportional)
        return 1
