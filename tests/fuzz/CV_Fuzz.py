# The project's fuzz test, as a Corvelle script.
#
# From a fixed seed it calls every callable of every module the plugin creates with hostile
# argument tuples (wrong types and counts, huge and negative numbers, NaN and infinities, bools,
# None, nested and lying sequences, long and non-UTF-8 texts, stale and forged handles), and
# registers every callback kind with hostile callables: they raise, return the wrong type, call
# sys.exit, unregister themselves while they run, and enter the SDK again (more calls, more
# registrations). The events file that tests/fuzz/run_fuzz.py writes clicks, drags, types, presses
# keys, picks this script's menus, runs its commands, writes its datarefs and sends messages, so
# that the callbacks really run.
#
# The driver passes the settings in the environment:
#   CORVELLE_FUZZ_SEED       the seed (default 1)
#   CORVELLE_FUZZ_CALLS      how many calls to make in all (default 3000)
#   CORVELLE_FUZZ_ONLY       make only this call, after the setup (replay); "K+" is call K as a
#                            callback made it to register more ("call K+" in the trace)
#   CORVELLE_FUZZ_PER_FRAME  calls the flight loop makes per frame (default 200)
#   CORVELLE_FUZZ_TRACE      the trace: before each call, "seed S call K: module.function(args)"
#   CORVELLE_FUZZ_STATE      what a restarted interpreter carries on with (a plugin reload, the
#                            control panel's Reload Scripts): the next call, failures, outcomes
#
# Call K's function and arguments come from a generator seeded with the seed and K alone; handle
# arguments are taken from pools that the setup fills (live, destroyed and forged handles) and that
# earlier calls add to. A replay of call K alone (CORVELLE_FUZZ_ONLY) runs the setup and then call K
# with the same choices, against the setup's pools; the whole sequence up to K is replayed by
# running K + 1 calls with the same seed.
#
# What the script finds itself is written as a "FUZZ-FAIL" line to standard error (the plugin's
# log) and to the trace: a binding that raises SystemError (it returned a value with an error set,
# or failed without one), an exception type no binding should raise, a call that changed the
# reference count of one of its arguments (a leaked or an over-released reference), and memory that
# keeps growing when one call is repeated (a leak probe: every LEAK_EVERY-th call repeats a call of
# a function that registers and creates nothing, with its callbacks quiet, and measures what Python
# holds after it).
#
# It starts no threads and never calls os._exit or os.abort.

import gc
import json
import os
import random
import reprlib
import sys
import time

# The modules whose constants the setup uses; every module the plugin creates is found in
# sys.modules and fuzzed (plugin_modules below).
import PythonScriptMessaging
import XPLMCamera
import XPLMDefs
import XPLMDisplay
import XPLMNavigation
import XPLMPlugin
import XPLMProcessing
import XPStandardWidgets

# ---------------------------------------------------------------------------------------- settings

SEED = int(os.environ.get("CORVELLE_FUZZ_SEED", "1"))
CALLS = int(os.environ.get("CORVELLE_FUZZ_CALLS", "3000"))
_only = os.environ.get("CORVELLE_FUZZ_ONLY", "")
ONLY = int(_only.rstrip("+")) if _only else None
ONLY_REGISTERING = _only.endswith("+")
PER_FRAME = int(os.environ.get("CORVELLE_FUZZ_PER_FRAME", "200"))
TRACE = os.environ.get("CORVELLE_FUZZ_TRACE", "")
STATE = os.environ.get("CORVELLE_FUZZ_STATE", "")

# The trace is started afresh after this many lines, so that it stays small; the last call before
# a crash is always in it.
TRACE_ROTATE = 20000
# Callbacks enter the SDK again only this deep.
MAX_DEPTH = 3
# Every so many frames the script makes its menus, a window and a custom widget again, since the
# calls destroy them soon: the events keep picking, clicking and typing into something.
REPLENISH_EVERY = 20
# Call K is a leak probe when K % LEAK_EVERY == LEAK_EVERY - 1: the same call repeated, after a
# warm-up, in LEAK_WINDOWS windows of LEAK_WINDOW calls; memory that Python holds and that grew by
# LEAK_BYTES or more in every window, as much in the last as in the first, fails (the interpreter's
# free lists and caches fill up, ever more slowly, and then stay; a leak grows by as much with every
# call).
LEAK_EVERY = 2003
LEAK_WARMUP, LEAK_WINDOW, LEAK_WINDOWS, LEAK_BYTES = 250, 100, 3, 1000


class FuzzBoom(Exception):
    """What the hostile callables and objects raise on purpose."""


# Exceptions a binding may raise for hostile arguments. Anything else, SystemError above all, is a
# failure.
EXPECTED = (TypeError, ValueError, OverflowError, IndexError, KeyError, MemoryError, FuzzBoom, SystemExit)

# ---------------------------------------------------------------------------------------- the trace

_trace_fd = -1
_trace_lines = 0


def open_trace():
    global _trace_fd
    if TRACE and _trace_fd < 0:
        _trace_fd = os.open(TRACE, os.O_WRONLY | os.O_CREAT | os.O_APPEND, 0o644)


def trace(line):
    """Writes one line with a single write, so that a crash right after it leaves it readable."""
    global _trace_lines
    if _trace_fd < 0:
        return
    _trace_lines += 1
    if _trace_lines % TRACE_ROTATE == 0:
        os.ftruncate(_trace_fd, 0)
    os.write(_trace_fd, (line + "\n").encode("utf-8", "backslashreplace"))


def fail(text):
    line = "FUZZ-FAIL seed %d %s" % (SEED, text)
    trace(line)
    sys.stderr.write(line + "\n")


_repr = reprlib.Repr()
_repr.maxlevel = 3
_repr.maxstring = 60
_repr.maxother = 60
_repr.maxlist = 8
_repr.maxtuple = 12


def show(value):
    """A short, safe text for an argument."""
    if isinstance(value, str) and len(value) > 60:
        return "%r...<str of %d>" % (value[:20], len(value))
    if isinstance(value, (bytes, bytearray)) and len(value) > 60:
        return "%r...<%s of %d>" % (value[:20], type(value).__name__, len(value))
    try:
        return _repr.repr(value)
    except BaseException as error:  # a hostile object's repr
        return "<%s: repr raised %s>" % (type(value).__name__, type(error).__name__)


# ---------------------------------------------------------------------------------------- the callables

def plugin_modules():
    """Every module the plugin created (built in, with no file behind it), in name order."""
    found = []
    for name, module in list(sys.modules.items()):
        if name == "__main__" or name in sys.builtin_module_names or module is None:
            continue
        if getattr(module, "__spec__", None) is None and getattr(module, "__file__", None) is None:
            found.append(name)
    return sorted(found)


MODULES = plugin_modules()
FUNCTIONS = []  # (module name, function name, function)
CONSTANTS = set()
for _module_name in MODULES:
    _module = sys.modules[_module_name]
    for _name in sorted(dir(_module)):
        if _name.startswith("_"):
            continue
        _value = getattr(_module, _name)
        if callable(_value):
            FUNCTIONS.append((_module_name, _name, _value))
        elif isinstance(_value, int):
            CONSTANTS.add(_value)
CONSTANTS = sorted(CONSTANTS)
# Widget messages, the standard widgets' own among them.
MESSAGES = sorted({getattr(sys.modules[m], n) for m in MODULES for n in dir(sys.modules[m])
                   if n.startswith(("xpMsg_", "xpMessage_")) and isinstance(getattr(sys.modules[m], n), int)})

# The arguments each function expects, one letter per argument:
#   S script id   C callable   R refcon     i int      l long        f float     s text
#   O output list N None or list            A anything X pointer-sized word   m widget message
#   W window      G widget     M menu       D dataref  K command     H hot key   F flight loop
#   P probe       J object     V nav ref    B window key record (from XPLMGetWindowRefCon)
#   E XPLMCreateWindowEx parameters         L XPLMCreateFlightLoop parameters
#   q int values  r float values            b byte values           c colour (r, g, b)
#   Y object locations         Z aircraft draw state                T widget table
#   a aircraft paths           n None or text                       o None or number
# A function missing here is still called, with arguments of any kind and count.
SIGNATURES = {
    "BrindleDisplay": "s", "BrindleClearDisplay": "", "BrindlePrint": "s", "BrindleClearPrint": "",
    "CV_CountScripts": "", "CV_GetNthScript": "i", "CV_FindScriptBySignature": "s", "CV_GetScriptInfo": "S",
    "CV_IsScriptEnabled": "S", "CV_EnableScript": "S", "CV_DisableScript": "S", "CV_SendMessageToScript": "SSlA",
    "XPLMControlCamera": "SiCR", "XPLMDontControlCamera": "S", "XPLMIsCameraBeingControlled": "",
    "XPLMReadCameraPosition": "O",
    "XPLMFindDataRef": "s", "XPLMCanWriteDataRef": "D", "XPLMGetDataRefTypes": "D", "XPLMGetDatai": "D",
    "XPLMSetDatai": "Di", "XPLMGetDataf": "D", "XPLMSetDataf": "Df", "XPLMGetDatad": "D", "XPLMSetDatad": "Df",
    "XPLMGetDatavi": "DNii", "XPLMSetDatavi": "Dqii", "XPLMGetDatavf": "DNii", "XPLMSetDatavf": "Drii",
    "XPLMGetDatab": "DNii", "XPLMSetDatab": "Dbii", "XPLMRegisterDataAccessor": "Ssii" + "C" * 12 + "RR",
    "XPLMUnregisterDataAccessor": "SD", "XPLMShareData": "SsiCR", "XPLMUnshareData": "SsiCR",
    "XPLMRegisterDrawCallback": "SCiiR", "XPLMUnregisterDrawCallback": "SCiiR", "XPLMRegisterKeySniffer": "SCiR",
    "XPLMUnregisterKeySniffer": "SCiR", "XPLMGetScreenSize": "OO", "XPLMGetMouseLocation": "OO",
    "XPLMRegisterHotKey": "SiisCR", "XPLMUnregisterHotKey": "SH", "XPLMCountHotKeys": "", "XPLMGetNthHotKey": "i",
    "XPLMGetHotKeyInfo": "HOOOO", "XPLMSetHotKeyCombination": "Hii", "XPLMCreateWindow": "SiiiiiCCCR",
    "XPLMCreateWindowEx": "SE", "XPLMDestroyWindow": "SW", "XPLMGetWindowGeometry": "WOOOO",
    "XPLMSetWindowGeometry": "Wiiii", "XPLMGetWindowIsVisible": "W", "XPLMSetWindowIsVisible": "Wi",
    "XPLMGetWindowRefCon": "W", "XPLMSetWindowRefCon": "WB", "XPLMTakeKeyboardFocus": "W",
    "XPLMBringWindowToFront": "W", "XPLMIsWindowInFront": "W",
    "XPLMSetGraphicsState": "iiiiiii", "XPLMBindTexture2d": "ii", "XPLMGenerateTextureNumbers": "Oi",
    "XPLMGetTexture": "i", "XPLMWorldToLocal": "fff", "XPLMLocalToWorld": "fff", "XPLMDrawTranslucentDarkBox": "iiii",
    "XPLMDrawString": "ciisii", "XPLMDrawNumber": "ciifiiii", "XPLMGetFontDimensions": "iOOO",
    "XPLMMeasureString": "isi",
    "XPLMFindPluginsMenu": "", "XPLMCreateMenu": "SsMiCR", "XPLMDestroyMenu": "SM", "XPLMRemoveMenuItem": "Mi",
    "XPLMClearAllMenuItems": "M", "XPLMAppendMenuItem": "MsRi", "XPLMAppendMenuSeparator": "M",
    "XPLMSetMenuItemName": "Misi", "XPLMCheckMenuItem": "Mii", "XPLMCheckMenuItemState": "Mi",
    "XPLMEnableMenuItem": "Mii",
    "XPLMGetFirstNavAid": "", "XPLMGetNextNavAid": "V", "XPLMFindFirstNavAidOfType": "i",
    "XPLMFindLastNavAidOfType": "i", "XPLMFindNavAid": "nnoooi", "XPLMGetNavAidInfo": "VOOOOOOOOO",
    "XPLMCountFMSEntries": "", "XPLMGetDisplayedFMSEntry": "", "XPLMGetDestinationFMSEntry": "",
    "XPLMSetDisplayedFMSEntry": "i", "XPLMSetDestinationFMSEntry": "i", "XPLMGetFMSEntryInfo": "iOOOOOO",
    "XPLMSetFMSEntryInfo": "iVi", "XPLMSetFMSEntryLatLon": "iffi", "XPLMClearFMSEntry": "i",
    "XPLMGetGPSDestinationType": "", "XPLMGetGPSDestination": "",
    "XPLMSetUsersAircraft": "s", "XPLMPlaceUserAtAirport": "s", "XPLMCountAircraft": "", "XPLMGetNthAircraftModel": "i",
    "XPLMGetNthAircraftModel_NP": "Si", "XPLMAcquirePlanes": "SaCR", "XPLMReleasePlanes": "S",
    "XPLMSetActiveAircraftCount": "i", "XPLMSetAircraftModel": "is", "XPLMDisableAIForPlane": "i",
    "XPLMDrawAircraft": "iffffffiZ", "XPLMReinitUsersPlane": "",
    "XPLMGetMyID": "", "XPLMCountPlugins": "", "XPLMGetNthPlugin": "i", "XPLMFindPluginByPath": "s",
    "XPLMFindPluginByPath_NP": "Ss", "XPLMFindPluginBySignature": "s", "XPLMGetPluginInfo": "iOOOO",
    "XPLMGetPluginInfo_NP": "SiOOOO", "XPLMIsPluginEnabled": "i", "XPLMEnablePlugin": "i", "XPLMDisablePlugin": "i",
    "XPLMReloadPlugins": "", "XPLMSendMessageToPlugin": "iiA", "XPLMHasFeature": "s", "XPLMIsFeatureEnabled": "s",
    "XPLMEnableFeature": "Ssi", "XPLMEnumerateFeatures": "SCR", "CV_RemoveEnumerateFeatures": "SCR",
    "XPLMGetElapsedTime": "", "XPLMGetCycleNumber": "", "XPLMRegisterFlightLoopCallback": "SCfR",
    "XPLMUnregisterFlightLoopCallback": "SCR", "XPLMSetFlightLoopCallbackInterval": "SCfiR",
    "XPLMCreateFlightLoop": "SL", "XPLMDestroyFlightLoop": "SF", "XPLMScheduleFlightLoop": "SFfi",
    "XPLMCreateProbe": "i", "XPLMDestroyProbe": "P", "XPLMProbeTerrainXYZ": "PfffO", "XPLMLoadObject": "s",
    "XPLMDrawObjects": "JiYii", "XPLMUnloadObject": "J", "XPLMLookupObjects": "SsffCR",
    "CV_RemoveLookupObjects": "SCR", "XPLMLoadObjectAsync": "SsCR", "CV_RemoveObjectLoadedCallback": "SC",
    "XPLMSpeakString": "s", "XPLMCommandKeyStroke": "i", "XPLMCommandButtonPress": "i",
    "XPLMCommandButtonRelease": "i", "XPLMGetVirtualKeyDescription": "i", "XPLMReloadScenery": "",
    "XPLMGetSystemPath": "", "XPLMGetPrefsPath": "", "XPLMGetDirectorySeparator": "", "XPLMExtractFileAndPath": "s",
    "XPLMGetDirectoryContents": "siNiNiNN", "XPLMGetSystemPath_NP": "S", "XPLMGetPrefsPath_NP": "S",
    "XPLMGetDirectorySeparator_NP": "S", "XPLMExtractFileAndPath_NP": "Ss", "XPLMGetDirectoryContents_NP": "SsiNiNiNN",
    "XPLMInitialized": "", "XPLMGetVersions": "", "XPLMGetLanguage": "", "XPLMDebugString": "s",
    "XPLMSetErrorCallback": "SC", "CV_RemoveErrorCallback": "SC", "XPLMFindSymbol": "s", "XPLMLoadDataFile": "is",
    "XPLMSaveDataFile": "is", "XPLMFindCommand": "s", "XPLMCommandBegin": "K", "XPLMCommandEnd": "K",
    "XPLMCommandOnce": "K", "XPLMCreateCommand": "ss", "XPLMRegisterCommandHandler": "SKCiR",
    "XPLMUnregisterCommandHandler": "SKCiR",
    "XPCreateWidget": "iiiiisiGi", "XPCreateCustomWidget": "SiiiiisiGC", "XPDestroyWidget": "SGi",
    "XPSendMessageToWidget": "GmiXX", "XPPlaceWidgetWithin": "GG", "XPCountChildWidgets": "G",
    "XPGetNthChildWidget": "Gl", "XPGetParentWidget": "G", "XPShowWidget": "G", "XPHideWidget": "G",
    "XPIsWidgetVisible": "G", "XPFindRootWidget": "G", "XPBringRootWidgetToFront": "G", "XPIsWidgetInFront": "G",
    "XPGetWidgetGeometry": "GOOOO", "XPSetWidgetGeometry": "Giiii", "XPGetWidgetForLocation": "Giill",
    "XPGetWidgetExposedGeometry": "GOOOO", "XPSetWidgetDescriptor": "Gs", "XPGetWidgetDescriptor": "GNi",
    "XPSetWidgetProperty": "GiX", "XPGetWidgetProperty": "GiN", "XPSetKeyboardFocus": "G",
    "XPLoseKeyboardFocus": "G", "XPGetWidgetWithFocus": "", "XPAddWidgetCallback": "SGC", "XPGetWidgetClassFunc": "i",
    "XPDrawWindow": "iiiii", "XPGetWindowDefaultDimensions": "iOO", "XPDrawElement": "iiiiii",
    "XPGetElementDefaultDimensions": "iOOO", "XPDrawTrack": "iiiiiiiii", "XPGetTrackDefaultDimensions": "i",
    "XPGetTrackMetrics": "iiiiiiii",
    "CV_GetMouseState": "X", "CV_GetKeyState": "X", "CV_GetWidgetGeometryChange": "X",
    "XPUCreateWidgets": "TlGN", "XPUMoveWidgetBy": "Gii", "XPUFixedLayout": "mGXX", "XPUSelectIfNeeded": "mGXXi",
    "XPUDefocusKeyboard": "mGXXi", "XPUDragWidget": "mGXXi",
    "VC_CameraPluginReady": "", "VC_AcquireCamera": "", "VC_ReleaseCamera": "", "VC_SetCamera": "",
    "VC_GetCameraIndex": "", "VC_GetCameraTypeIndex": "", "VC_GetXOffset": "", "VC_GetYOffset": "",
    "VC_GetZOffset": "", "VC_GetHeadingOffset": "", "VC_GetPitchOffset": "", "VC_GetRollOffset": "",
    "VC_GetZoomRatio": "", "VC_GetLookAtAircraft": "", "PrintStdout": "s", "PrintStderr": "s",
    "VC_SetCameraIndex": "i", "VC_SetCameraTypeIndex": "i", "VC_SetLookAtAircraft": "i", "VC_SetXOffset": "f",
    "VC_SetYOffset": "f", "VC_SetZOffset": "f", "VC_SetHeadingOffset": "f", "VC_SetPitchOffset": "f",
    "VC_SetRollOffset": "f", "VC_SetZoomRatio": "f",
}

# Functions that change the whole run are called rarely: a plugin reload restarts the interpreter
# and this script (which carries on from the next call), disabling a plugin is undone at once. The
# array functions are called more often: with this script's own datarefs they run its accessors.
WEIGHTS = {
    "XPLMGetDatavi": 4, "XPLMGetDatavf": 4, "XPLMGetDatab": 4, "XPLMSetDatavi": 4, "XPLMSetDatavf": 4,
    "XPLMSetDatab": 4,
    "XPLMReloadPlugins": 0.001, "XPLMDisablePlugin": 0.05, "XPLMEnablePlugin": 0.2, "XPLMReloadScenery": 0.1,
    "XPLMSetUsersAircraft": 0.1, "XPLMReinitUsersPlane": 0.1, "XPLMPlaceUserAtAirport": 0.2,
    "XPLMSetAircraftModel": 0.3, "XPLMLoadDataFile": 0.2, "XPLMSaveDataFile": 0.2, "CV_SendMessageToScript": 0.5,
    "XPLMSendMessageToPlugin": 0.5, "XPLMDebugString": 0.3, "XPLMSpeakString": 0.3,
}
_cumulative = []
_total = 0.0
for _module_name, _name, _function in FUNCTIONS:
    _total += WEIGHTS.get(_name, 1.0)
    _cumulative.append(_total)

# ---------------------------------------------------------------------------------------- values

NAN = float("nan")
INF = float("inf")
BIG_TEXT = "x" * 102400
SURROGATES = "a\udcff\ud800z"

INTS = [0, 1, -1, 2, 3, 7, 10, 100, 255, 256, 1024, 65535, 65536, 2**31 - 1, -2**31, 2**31, -2**31 - 1, 2**32,
        2**63 - 1, -2**63, 2**63, 2**64, -2**64, 10**30, True, False]
FLOATS = [0.0, -0.0, 1.0, -1.0, 0.5, 1e-45, 1e-320, 3.4028235e38, 3.5e38, 1e308, -1e308, NAN, INF, -INF, 1e10,
          123.456, 2.0**31, 2.0**63, -2.0**63, 47.46, -122.31]
TEXTS = ["", "a", " ", "sim/time/total_running_time_sec", "sim/flightmodel/position/local_x",
         "sim/aircraft/view/acf_tailnum", "sim/cockpit/radios/com1_freq_hz", "sim/flightmodel/position/q",
         "sim/time/paused", "fuzz/data/int", "fuzz/data/all", "fuzz/command/0", "sim/operation/pause_toggle",
         "sim/none/none", "sim/view/chase", "brindle.projects.corvelle", "corvelle.fuzz",
         "XPLM_USE_NATIVE_PATHS", "XPLM_WANTS_REFLECTIONS", "Output/situations/fuzz.sit",
         "Output/replays/fuzz.rep", "Resources/plugins", "Resources/plugins/PythonScripts",
         "xpsim/demo/marker.obj", "xpsim/demo/beacon.obj", "lib/none.obj",
         "Custom Scenery/xpsim Demo Objects/objects/marker.obj",
         "Aircraft/Laminar Research/Baron B58/Baron_58.acf", "KSEA", "SEA", "KBOS", "%s%s%s%n%n%x",
         "%999999999d", "\u00e9\u6f22\u5b57", "a\x00b", "\n" * 300, "\t", "..", "/", ":", "C:\\x\\y",
         "a" * 300, "b" * 5000, BIG_TEXT, SURROGATES, "\udcff"]
FORGED = [0, 1, 2, 3, 4, 16, 4096, 12345, -1, 2**63 - 1, 2**64 - 1, 2**64, -2**63 - 1, 2**47]
REFCONS = [0, 1, 7, -1, 2**31 - 1, 2**63 - 1, 2**64 - 1, 2**64, "refcon", None, 1.5]

# Lists that arguments were built from; hostile objects and callbacks change them while bindings
# read them.
VICTIMS = []


def remember_victim(sequence):
    if FUZZ.quiet:  # a leak probe keeps nothing
        return
    VICTIMS.append(sequence)
    if len(VICTIMS) > 64:
        del VICTIMS[0]


class Hostile:
    """An object whose conversions (to an int, an index, a float, a length, an item) misbehave: they
    raise, call sys.exit, answer nonsense, change a list that is being read, or enter the SDK again."""

    def __init__(self, rng, victim=None):
        self.action = rng.randrange(7)
        self.value = rng.choice(INTS + FLOATS)
        self.victim = victim
        self.size = rng.choice([0, 3, 2**20, 2**62, -1])  # a lie, a length too big to use, a negative one

    def _act(self):
        FUZZ.invocations += 1
        if FUZZ.quiet:
            return
        action = self.action
        if action == 0:
            raise FuzzBoom("conversion")
        if action == 1:
            sys.exit(5)
        if action == 2 and self.victim is not None:
            self.victim.clear()
        elif action == 3 and self.victim is not None:
            self.victim.extend([self] * 1000)
        elif action == 4:
            FUZZ.nested_calls(1)
        elif action == 5 and VICTIMS and isinstance(VICTIMS[-1], list):
            VICTIMS[-1].clear()

    def __index__(self):
        self._act()
        return self.value if isinstance(self.value, int) else 3

    def __int__(self):
        return self.__index__()

    def __float__(self):
        self._act()
        return float(self.value) if not isinstance(self.value, int) or abs(self.value) < 2**1000 else 0.0

    def __len__(self):
        self._act()
        return self.size

    def __getitem__(self, index):
        self._act()
        if not isinstance(index, int) or index > 12:
            raise IndexError(index)
        return self.value

    def __bool__(self):
        self._act()
        return True


class IntSub(int):
    pass


class FloatSub(float):
    pass


class StrSub(str):
    pass


# ---------------------------------------------------------------------------------------- hooks

class Hook:
    """A hostile callable. Its method `fire` is what gets registered; each call picks what to do:
    raise, sys.exit, answer the wrong type, unregister itself, change its list arguments, or enter
    the SDK again (more calls, more registrations)."""

    count = 0

    def __init__(self, cooperative):
        Hook.count += 1
        self.number = Hook.count
        self.method = self.fire  # one bound method object, kept: registrations match by identity
        self.unregister = []  # (function, args) pairs that take this hook's registrations back
        # Most of the time a cooperative hook answers as a well-behaved callback would, so that
        # what depends on a sensible answer (filled getter lists, keys passed on) runs too.
        self.cooperative = cooperative

    def __repr__(self):
        return "<hook %d>" % self.number

    def fire(self, *args):
        return FUZZ.hook_fired(self, args)


class CallableObject:
    def __call__(self, *args):
        return FUZZ.hook_fired(None, args)


def plain_function(*args):
    return FUZZ.hook_fired(None, args)


# What a registration's unregistration is, from its arguments and result: the function and its
# arguments, or None.
UNREGISTER = {
    "XPLMRegisterFlightLoopCallback": lambda a, r: ("XPLMUnregisterFlightLoopCallback", (a[0], a[1], a[3])),
    "XPLMCreateFlightLoop": lambda a, r: ("XPLMDestroyFlightLoop", (a[0], r)),
    "XPLMRegisterDrawCallback": lambda a, r: ("XPLMUnregisterDrawCallback", a),
    "XPLMRegisterKeySniffer": lambda a, r: ("XPLMUnregisterKeySniffer", a),
    "XPLMRegisterHotKey": lambda a, r: ("XPLMUnregisterHotKey", (a[0], r)),
    "XPLMCreateWindow": lambda a, r: ("XPLMDestroyWindow", (a[0], r)),
    "XPLMCreateWindowEx": lambda a, r: ("XPLMDestroyWindow", (a[0], r)),
    "XPLMRegisterDataAccessor": lambda a, r: ("XPLMUnregisterDataAccessor", (a[0], r)),
    "XPLMShareData": lambda a, r: ("XPLMUnshareData", a),
    "XPLMControlCamera": lambda a, r: ("XPLMDontControlCamera", (a[0],)),
    "XPLMCreateMenu": lambda a, r: ("XPLMDestroyMenu", (a[0], r)),
    "XPLMRegisterCommandHandler": lambda a, r: ("XPLMUnregisterCommandHandler", a),
    "XPLMSetErrorCallback": lambda a, r: ("CV_RemoveErrorCallback", a),
    "XPLMEnumerateFeatures": lambda a, r: ("CV_RemoveEnumerateFeatures", a),
    "XPLMLookupObjects": lambda a, r: ("CV_RemoveLookupObjects", (a[0], a[4], a[5])),
    "XPLMLoadObjectAsync": lambda a, r: ("CV_RemoveObjectLoadedCallback", (a[0], a[2])),
    "XPLMAcquirePlanes": lambda a, r: ("XPLMReleasePlanes", (a[0],)),
    "XPCreateCustomWidget": lambda a, r: ("XPDestroyWidget", (a[0], r, 1)),
    "XPAddWidgetCallback": lambda a, r: ("XPDestroyWidget", (a[0], a[1], 0)),
}
REGISTERING = sorted(UNREGISTER)
# What leak probes leave out: what registers, creates or destroys, and what changes the whole run.
NOT_PROBED = set(UNREGISTER) | {
    "XPLMCreateCommand", "XPLMCreateProbe", "XPLMLoadObject", "XPCreateWidget", "XPUCreateWidgets",
    "XPLMDestroyWindow", "XPDestroyWidget", "XPLMDestroyMenu", "XPLMUnregisterDataAccessor", "XPLMUnregisterHotKey",
    "XPLMDestroyFlightLoop", "XPLMDestroyProbe", "XPLMUnloadObject", "XPLMReloadPlugins", "XPLMDisablePlugin",
    "XPLMEnablePlugin", "CV_DisableScript", "CV_EnableScript", "XPLMSetUsersAircraft", "XPLMReinitUsersPlane",
    "XPLMPlaceUserAtAirport", "XPLMSetAircraftModel", "XPLMLoadDataFile", "XPLMSaveDataFile", "XPLMReloadScenery",
    "XPLMAppendMenuItem", "XPLMAppendMenuSeparator", "XPLMCommandBegin", "XPLMGenerateTextureNumbers",
}
# The unregistrations that need no result are known before the call: a callback called during its
# own registration (an enumerator, a widget's create message, an error) can already take it back.
UNREGISTER_EARLY = {"XPLMRegisterFlightLoopCallback", "XPLMRegisterDrawCallback", "XPLMRegisterKeySniffer",
                    "XPLMShareData", "XPLMControlCamera", "XPLMRegisterCommandHandler", "XPLMSetErrorCallback",
                    "XPLMEnumerateFeatures", "XPLMLookupObjects", "XPLMLoadObjectAsync", "XPLMAcquirePlanes",
                    "XPAddWidgetCallback"}
# Functions that pass a widget message on: the positions of the widget and of the first parameter.
WIDGET_MESSAGE_FUNCTIONS = {"XPSendMessageToWidget": (0, 3), "XPUFixedLayout": (1, 2), "XPUSelectIfNeeded": (1, 2),
                            "XPUDefocusKeyboard": (1, 2), "XPUDragWidget": (1, 2)}

# Pools of handles by kind: what the setup and the calls made ("live"), and what was destroyed.
POOL_KINDS = "WGMDKHFPJVB"
# Which kind a function's result is, for the functions that make something.
RESULT_KIND = {
    "XPLMCreateWindow": "W", "XPLMCreateWindowEx": "W", "XPCreateWidget": "G", "XPCreateCustomWidget": "G",
    "XPLMCreateMenu": "M", "XPLMFindPluginsMenu": "M", "XPLMFindDataRef": "D", "XPLMRegisterDataAccessor": "D",
    "XPLMFindCommand": "K", "XPLMCreateCommand": "K", "XPLMRegisterHotKey": "H", "XPLMGetNthHotKey": "H",
    "XPLMCreateFlightLoop": "F", "XPLMCreateProbe": "P", "XPLMLoadObject": "J", "XPLMGetFirstNavAid": "V",
    "XPLMGetNextNavAid": "V", "XPLMFindNavAid": "V", "XPLMGetWindowRefCon": "B", "XPGetNthChildWidget": "G",
    "XPGetParentWidget": "G", "XPFindRootWidget": "G", "XPGetWidgetForLocation": "G", "XPGetWidgetWithFocus": "G",
}
DESTROYING = {
    "XPLMDestroyWindow": ("W", 1), "XPDestroyWidget": ("G", 1), "XPLMDestroyMenu": ("M", 1),
    "XPLMUnregisterDataAccessor": ("D", 1), "XPLMUnregisterHotKey": ("H", 1), "XPLMDestroyFlightLoop": ("F", 1),
    "XPLMDestroyProbe": ("P", 0), "XPLMUnloadObject": ("J", 0),
}


class Fuzz:
    def __init__(self, script):
        self.script = script
        self.call_number = 0  # the next call's number
        self.depth = 0
        self.invocations = 0
        self.frames = 0
        self.made_plugins_menu = False
        self.quiet = False  # during a leak probe: callbacks and hostile conversions do nothing
        self.outcomes = {}  # how the calls ended: "returned" or the exception's type, and how often
        self.live = {kind: [] for kind in POOL_KINDS}
        self.dead = {kind: [] for kind in POOL_KINDS}
        self.hooks = []  # recent hooks, whose methods are passed again (to unregister, to register twice)
        self.callback_rng = random.Random("%d:callbacks" % SEED)
        self.stopped = False  # no more calls: the budget is spent, or a plugin reload is pending
        self.failures = 0
        self.other_script = Corvelle.__new__(Corvelle)  # an instance the plugin never loaded

    # ------------------------------------------------------------------------------ pools

    def add(self, kind, handle):
        if not isinstance(handle, int) or handle == 0:
            return
        pool = self.live[kind]
        if handle in pool:
            return
        pool.append(handle)
        if len(pool) > 40:
            del pool[0]

    def kill(self, kind, handle):
        if handle in self.live[kind]:
            self.live[kind].remove(handle)
        if isinstance(handle, int) and handle not in self.dead[kind]:
            self.dead[kind].append(handle)
            if len(self.dead[kind]) > 40:
                del self.dead[kind][0]

    def handle(self, rng, kind):
        r = rng.random()
        if r < 0.6 and self.live[kind]:
            return rng.choice(self.live[kind])
        if r < 0.8 and self.dead[kind]:
            return rng.choice(self.dead[kind])
        if r < 0.85:
            any_kind = rng.choice(POOL_KINDS)
            if self.live[any_kind]:
                return rng.choice(self.live[any_kind])
        return rng.choice(FORGED)

    def new_hook(self):
        hook = Hook(self.callback_rng.random() < 0.4)
        self.hooks.append(hook)
        if len(self.hooks) > 60:
            del self.hooks[0]
        return hook

    # ------------------------------------------------------------------------------ arguments

    def anything(self, rng):
        r = rng.randrange(22)
        if r == 0:
            return rng.choice(INTS)
        if r == 1:
            return rng.choice(FLOATS)
        if r == 2:
            return rng.choice(TEXTS)
        if r == 3:
            return rng.choice([None, True, False, Ellipsis, complex(1, 2), object(), {}, {1: 2}, set(), ()])
        if r == 4:
            return rng.choice([b"\xff\xfe\x00", bytearray(b"\x00\xff"), b"", b"x" * 5000])
        if r == 5:
            return []
        if r == 6:
            nested = []
            inner = nested
            for _ in range(rng.choice([2, 50, 2000])):
                inner.append([])
                inner = inner[0]
            return nested
        if r == 7:
            recursive = [1]
            recursive.append(recursive)
            return recursive
        if r == 8:
            return self.script
        if r == 9:
            return self.other_script
        if r == 10:
            return self.callable(rng)
        if r == 11:
            return Hostile(rng)
        if r == 12:
            return IntSub(rng.choice(INTS))
        if r == 13:
            return FloatSub(rng.choice(FLOATS))
        if r == 14:
            return StrSub(rng.choice(TEXTS[:20]))
        if r == 15:
            return self.handle(rng, rng.choice(POOL_KINDS))
        if r == 16:
            return rng.randint(-100, 100)
        if r == 17:
            return (rng.choice(INTS), rng.choice(FLOATS))
        if r == 18:
            return [rng.choice(INTS) for _ in range(rng.choice([1, 3, 11]))]
        if r == 19:
            return type
        if r == 20:
            return len
        return rng.choice(REFCONS)

    def integer(self, rng):
        r = rng.random()
        if r < 0.3 and CONSTANTS:
            return rng.choice(CONSTANTS)
        if r < 0.75:
            return rng.choice(INTS)
        if r < 0.95:
            return rng.randint(-3000, 3000)
        return IntSub(rng.choice(INTS)) if r < 0.98 else Hostile(rng)

    def number(self, rng):
        r = rng.random()
        if r < 0.6:
            return rng.choice(FLOATS)
        if r < 0.8:
            return rng.uniform(-2000.0, 2000.0)
        if r < 0.95:
            return rng.choice(INTS)
        return Hostile(rng)

    def text(self, rng):
        r = rng.random()
        if r < 0.9:
            return rng.choice(TEXTS)
        if r < 0.95:
            return StrSub(rng.choice(TEXTS))
        return rng.choice([b"bytes", bytearray(b"\xff"), None, 7])

    def callable(self, rng):
        r = rng.random()
        if self.quiet:  # a leak probe makes no hooks
            return rng.choice([None, plain_function, len])
        if r < 0.45 and self.hooks:
            return rng.choice(self.hooks).method
        if r < 0.85:
            return self.new_hook().method
        return rng.choice([plain_function, CallableObject(), lambda *a: None, None, 0, "callable", len,
                           self.script.XPluginReceiveMessage, Hostile(rng)])

    def script_id(self, rng):
        r = rng.random()
        if r < 0.85:
            return self.script
        return rng.choice([None, 0, self.other_script, "script", 12345, PythonScriptMessaging.CV_GetNthScript(0)])

    def output(self, rng, none_allowed):
        r = rng.random()
        if r < 0.65:
            return []
        if r < 0.8:
            return None if none_allowed else [None]
        return rng.choice([[1, 2, 3], (), {}, "out", 0, [[]], None])

    def sequence_of(self, rng, item, usual=None):
        shape = rng.random()
        if shape < 0.05:
            return Hostile(rng)
        if shape < 0.1:
            return rng.choice(["text", 7, None, {1: 2}, b"\x01\x02"])
        if usual is not None and rng.random() < 0.7:
            length = usual
        else:
            length = rng.choice([0, 1, 2, 3, 6, 7, 11, 12, 40, 1000])
        values = [item() for _ in range(length)]
        if values and rng.random() < 0.3:
            victim = values
            values[rng.randrange(len(values))] = Hostile(rng, victim)
        remember_victim(values)
        return tuple(values) if rng.random() < 0.15 else values

    def window_parameters(self, rng):
        values = [rng.choice([0, 100, 400, 700]), rng.choice([700, 500, 300]), rng.choice([300, 600, 900]),
                  rng.choice([50, 100, 200]), rng.choice([0, 1, 1, 1])]
        values += [self.callable(rng) for _ in range(5)]
        values.append(rng.choice(REFCONS))
        for _ in range(rng.choice([0, 0, 0, 1, 2])):
            values[rng.randrange(len(values))] = self.anything(rng)
        if rng.random() < 0.1:
            values = values[: rng.randrange(len(values))]
        if values and rng.random() < 0.1:
            values[rng.randrange(len(values))] = Hostile(rng, values)
        remember_victim(values)
        return tuple(values) if rng.random() < 0.2 else values

    def flight_loop_parameters(self, rng):
        values = [rng.choice([0, 1, -1, 2, 2**31, "x"]), self.callable(rng), rng.choice(REFCONS)]
        if rng.random() < 0.15:
            values = values[: rng.randrange(3)]
        if values and rng.random() < 0.1:
            values[0] = Hostile(rng, values)
        remember_victim(values)
        return values

    def widget_table(self, rng):
        rows = []
        for _ in range(rng.choice([0, 1, 3, 5])):
            row = [rng.choice([0, 100, -2**31]), rng.choice([300, 2**31 - 1]), rng.choice([200, 400]),
                   rng.choice([100, 0]), rng.choice([0, 1]), rng.choice(TEXTS[:30]), rng.choice([0, 1]),
                   rng.choice([-1, -2, 0, 1, 2, 7, 2**40]), rng.choice([0, 1, 3, 4, 5, 6, 9, 99, -1])]
            if rng.random() < 0.15:
                row[rng.randrange(9)] = self.anything(rng)
            if rng.random() < 0.05:
                row = row[:5]
            rows.append(row)
        if rng.random() < 0.1:
            rows.append(self.anything(rng))
        remember_victim(rows)
        return rows

    def argument(self, rng, kind):
        if rng.random() < 0.07:
            return self.anything(rng)
        if kind == "S":
            return self.script_id(rng)
        if kind == "C":
            return self.callable(rng)
        if kind == "R":
            return rng.choice(REFCONS)
        if kind in "il":
            return self.integer(rng)
        if kind == "m":
            return rng.choice(MESSAGES) if MESSAGES and rng.random() < 0.8 else self.integer(rng)
        if kind == "f":
            return self.number(rng)
        if kind == "s":
            return self.text(rng)
        if kind == "O":
            return self.output(rng, False)
        if kind == "N":
            return self.output(rng, True)
        if kind in POOL_KINDS:
            return self.handle(rng, kind)
        if kind == "X":
            return self.handle(rng, rng.choice(POOL_KINDS)) if rng.random() < 0.4 else rng.choice(FORGED + INTS)
        if kind == "E":
            return self.window_parameters(rng)
        if kind == "L":
            return self.flight_loop_parameters(rng)
        if kind == "q":
            return self.sequence_of(rng, lambda: self.integer(rng) if rng.random() < 0.2 else rng.randint(-9, 9))
        if kind == "r":
            return self.sequence_of(rng, lambda: self.number(rng) if rng.random() < 0.2 else rng.random())
        if kind == "b":
            r = rng.random()
            if r < 0.4:
                return [self.text(rng)]
            if r < 0.5:
                return [rng.choice([b"bytes\xff", bytearray(b"\x00\x01"), BIG_TEXT.encode()])]
            return self.sequence_of(rng, lambda: rng.choice([0, 65, 255, 256, -1, 2**70, "x", 1.5]))
        if kind == "c":
            if rng.random() < 0.7:
                return (self.number(rng), self.number(rng), self.number(rng))
            return rng.choice([(1.0, 1.0), [1.0, 1.0, 1.0], (1.0, 1.0, 1.0, 1.0), "rgb", None])
        if kind == "Y":
            return self.sequence_of(rng, lambda: self.sequence_of(rng, lambda: self.number(rng), 6),
                                    rng.choice([1, 2, 3]))
        if kind == "Z":
            return self.sequence_of(rng, lambda: self.number(rng) if rng.random() < 0.5 else self.integer(rng), 11)
        if kind == "T":
            return self.widget_table(rng)
        if kind == "a":
            return self.sequence_of(rng, lambda: self.text(rng))
        if kind == "n":
            return None if rng.random() < 0.4 else self.text(rng)
        if kind == "o":
            return None if rng.random() < 0.4 else self.number(rng)
        return self.anything(rng)

    def arguments(self, rng, name):
        kinds = SIGNATURES.get(name)
        if kinds is None:
            return [self.anything(rng) for _ in range(rng.randrange(8))]
        args = [self.argument(rng, kind) for kind in kinds]
        if name in WIDGET_MESSAGE_FUNCTIONS and rng.random() < 0.3:
            # Messages about the widget itself carry it as their first parameter.
            widget, param1 = WIDGET_MESSAGE_FUNCTIONS[name]
            args[param1] = args[widget]
        r = rng.random()
        if r < 0.04:
            args = args[:-1] if args else [self.anything(rng)]
        elif r < 0.07:
            args.append(self.anything(rng))
        elif r < 0.08:
            args = [self.anything(rng) for _ in range(rng.randrange(20))]
        return args

    # ------------------------------------------------------------------------------ calls

    def invoke(self, label, module_name, name, function, args):
        """Makes one call: traced first, then checked for SystemError, unexpected exceptions and
        changed reference counts of its arguments. Returns its result (None when it raised)."""
        trace("seed %d %s: %s.%s(%s)" % (SEED, label, module_name, name, ", ".join(show(a) for a in args)))
        # Registrations hold what they are given as the callable, whatever it is; the other
        # arguments must come back with the reference counts they had. Shared constants (one-letter
        # texts) are left out.
        kinds = SIGNATURES.get(name, "")
        callables = {id(a) for position, a in enumerate(args) if position < len(kinds) and kinds[position] == "C"}
        tracked = [a for a in args if isinstance(a, (list, tuple, dict, bytearray, float, str, bytes, Hostile))
                   and id(a) not in callables and sys.getrefcount(a) < 10**8]
        before = [sys.getrefcount(a) for a in tracked]
        self.invocations += 1
        invocations = self.invocations
        outcome = None
        result = None
        self.depth += 1
        started = time.monotonic()
        try:
            result = function(*args)
        except BaseException as error:  # everything a hostile call may raise is judged below
            outcome = error
        finally:
            self.depth -= 1
        took = time.monotonic() - started
        if took > 1.0:
            trace("SLOW seed %d %s: %s.%s took %.1f s" % (SEED, label, module_name, name, took))
        kind = type(outcome).__name__ if outcome is not None else "returned"
        self.outcomes[kind] = self.outcomes.get(kind, 0) + 1
        if isinstance(outcome, MemoryError):  # allowed, but worth a look: which sizes did that
            print("fuzz: seed %d %s: %s.%s raised MemoryError" % (SEED, label, module_name, name))
        if outcome is not None:
            if isinstance(outcome, SystemError) or not isinstance(outcome, EXPECTED):
                self.failures += 1
                fail("%s: %s.%s raised %s: %s" % (label, module_name, name, type(outcome).__name__,
                                                   show(str(outcome))))
            outcome = None
        # What the result holds of the arguments is not a change (a text given back, a list returned).
        held = list(result) if isinstance(result, (tuple, list)) else [result]
        after = [sys.getrefcount(a) - sum(1 for item in held if item is a) for a in tracked]
        del held
        # Script code that ran meanwhile (callbacks, conversions, the calls they made) may keep or drop
        # objects that are arguments here too; the counts are compared only when none ran.
        if before != after and invocations == self.invocations:
            changed = [(show(a), b, c) for a, b, c in zip(tracked, before, after) if b != c]
            self.failures += 1
            fail("%s: %s.%s changed argument reference counts %s" % (label, module_name, name, changed))
        return result

    def call(self, number, registering=False):
        """Call number `number`, with the function and arguments its own generator picks: any
        function by its weight, or for a callback that registers more ("call K+") a registration."""
        rng = random.Random("%d:%d" % (SEED, number))
        if registering:
            name = rng.choice(REGISTERING)
            module_name, function = FUNCTION_BY_NAME[name]
            self.make_call(rng, "call %d+" % number, module_name, name, function)
            return
        target = rng.random() * _total
        lo, hi = 0, len(_cumulative) - 1
        while lo < hi:
            mid = (lo + hi) // 2
            if _cumulative[mid] < target:
                lo = mid + 1
            else:
                hi = mid
        module_name, name, function = FUNCTIONS[lo]
        if number % LEAK_EVERY == LEAK_EVERY - 1:
            self.leak_probe(number)
            return
        self.make_call(rng, "call %d" % number, module_name, name, function)

    def leak_probe(self, number):
        """Repeats one call of a function that registers, creates and destroys nothing, with new
        argument objects each round and every callback quiet, and fails when what Python holds
        keeps growing."""
        rng = random.Random("%d:%d:leak" % (SEED, number))
        candidates = [f for f in FUNCTIONS if f[1] not in NOT_PROBED]
        module_name, name, function = candidates[rng.randrange(len(candidates))]
        seed = rng.random()
        self.quiet = True
        args = self.arguments(random.Random(seed), name)
        trace("seed %d call %d: leak probe of %s.%s(%s)" % (SEED, number, module_name, name,
                                                           ", ".join(show(a) for a in args)))
        del args
        try:
            import tracemalloc
            tracemalloc.start()
        except (ImportError, RuntimeError):  # after a plugin reload the interpreter offers no tracing
            self.quiet = False
            return
        try:
            held = []
            for round_number in range(LEAK_WARMUP + LEAK_WINDOWS * LEAK_WINDOW + 1):
                if round_number >= LEAK_WARMUP and (round_number - LEAK_WARMUP) % LEAK_WINDOW == 0:
                    gc.collect()  # hostile arguments are often cycles: what they leave is garbage
                    held.append(tracemalloc.get_traced_memory()[0])
                args = self.arguments(random.Random(seed), name)
                try:
                    function(*args)
                except BaseException:  # its errors are the other calls' concern
                    pass
                del args
        finally:
            tracemalloc.stop()
            self.quiet = False
        grown = [later - earlier for earlier, later in zip(held, held[1:])]
        if min(grown) >= LEAK_BYTES and grown[-1] >= 0.75 * grown[0]:
            self.failures += 1
            fail("call %d: %s.%s leaks: %s bytes more in each run of %d calls" %
                 (number, module_name, name, ", ".join(str(g) for g in grown), LEAK_WINDOW))

    def make_call(self, rng, label, module_name, name, function):
        args = self.arguments(rng, name)
        if name == "XPLMReloadPlugins":
            # The reload happens at the end of this frame; the next interpreter carries on here.
            self.save_state(self.call_number)
            self.stopped = True
        if name in UNREGISTER_EARLY:
            self.attach_unregistration(name, args, None)
        result = self.invoke(label, module_name, name, function, args)
        self.after_call(name, args, result)

    def attach_unregistration(self, name, args, result):
        """Gives every hook among the arguments (and in sequence arguments) the unregistration of
        this registration."""
        if len(args) < len(SIGNATURES.get(name, "")):
            return
        hooks = [a.__self__ for a in args if getattr(a, "__func__", None) is Hook.fire]
        for item in args:
            if isinstance(item, (list, tuple)):
                hooks += [a.__self__ for a in item if getattr(a, "__func__", None) is Hook.fire]
        try:
            unregistration = UNREGISTER[name](tuple(args), result)
        except Exception:  # a short sequence: nothing to unregister with
            return
        for hook in hooks:
            hook.unregister.append(unregistration)
            del hook.unregister[:-4]

    def after_call(self, name, args, result):
        kind = RESULT_KIND.get(name)
        # The plugins menu holds the control panel's menu, which the run needs (Reload Scripts): it
        # is never offered as a handle to clear or take items from.
        if kind is not None and isinstance(result, int) and name != "XPLMFindPluginsMenu":
            self.add(kind, result)
        destroyed = DESTROYING.get(name)
        if destroyed is not None and len(args) > destroyed[1]:
            self.kill(destroyed[0], args[destroyed[1]])
        if name in UNREGISTER and name not in UNREGISTER_EARLY:
            self.attach_unregistration(name, args, result)
        # Undo what would end the run: this script disabled, or the plugin itself.
        if name == "CV_DisableScript":
            PythonScriptMessaging.CV_EnableScript(self.script)
        if name == "XPLMDisablePlugin":
            XPLMPlugin.XPLMEnablePlugin(XPLMPlugin.XPLMGetMyID())

    def nested_calls(self, count, registering=False):
        """Calls made from inside a callback or a conversion: numbered like the others."""
        if self.stopped or self.quiet or self.depth >= MAX_DEPTH:
            return
        for _ in range(count):
            if self.call_number >= CALLS or ONLY is not None:
                return
            number = self.call_number
            self.call_number += 1
            self.call(number, registering)

    # ------------------------------------------------------------------------------ callbacks

    def hook_fired(self, hook, args):
        self.invocations += 1
        if self.quiet:
            return None
        rng = self.callback_rng
        r = rng.random()
        if hook is not None and hook.cooperative and rng.random() < 0.9:
            r = 0.5 + 0.3 * rng.random()  # the well-behaved answer below
        if r < 0.10:
            raise FuzzBoom("hook %r" % (hook,))
        if r < 0.13:
            sys.exit(3)
        if r < 0.23 and hook is not None and hook.unregister and self.depth < MAX_DEPTH:
            name, unargs = hook.unregister.pop(rng.randrange(len(hook.unregister)))
            module_name, function = FUNCTION_BY_NAME[name]
            self.invoke("hook %d unregisters" % hook.number, module_name, name, function, list(unargs))
        elif r < 0.33:
            self.nested_calls(rng.choice([1, 2, 3]))
        elif r < 0.38:
            self.nested_calls(1, registering=True)
        elif r < 0.46:
            for item in args:
                if isinstance(item, list):
                    choice = rng.randrange(4)
                    if choice == 0:
                        item.clear()
                    elif choice == 1:
                        item.extend([Hostile(rng, item)] * 20)
                    elif choice == 2:
                        item[:] = ["not a number"] * len(item)
                    else:
                        item.extend(range(100000))
        elif r < 0.50 and VICTIMS:
            victim = rng.choice(VICTIMS)
            if isinstance(victim, list):
                victim.clear()
        elif r < 0.80:
            # An answer a well-behaved callback would give: lists filled with values, a count of
            # them, 1 (go on, take the click, call again in a second), so that what comes after a
            # callback (the simulator's own handling, the next callbacks) runs too.
            count = rng.choice([1, 3, 8])
            for item in args:
                if isinstance(item, list):
                    item.extend(rng.choice([[0.5] * count, list(range(count)), ["text"]]))
            return rng.choice([1, count, 1.0])
        return rng.choice([None, "text", 2**64, NAN, INF, -INF, -1, 0, 1, 1.5, [], True, 2**31, -2**31 - 1,
                           Hostile(rng), 1, 0, 1.0, -1.0])

    # ------------------------------------------------------------------------------ the run

    def save_state(self, next_call):
        """What the next interpreter carries on with: the next call, the failures and the outcomes."""
        if STATE:
            with open(STATE, "w") as state:
                json.dump({"next": next_call, "failures": self.failures, "outcomes": self.outcomes}, state)

    def load_state(self):
        if STATE and ONLY is None:
            try:
                with open(STATE) as state:
                    saved = json.load(state)
                self.call_number, self.failures, self.outcomes = saved["next"], saved["failures"], saved["outcomes"]
            except (OSError, ValueError, KeyError, TypeError):
                self.call_number = 0

    def frame(self):
        if self.stopped:
            return
        if ONLY is not None:
            self.stopped = True
            self.call_number = ONLY
            self.call(ONLY, ONLY_REGISTERING)
            trace("FUZZ DONE seed %d only %d failures %d" % (SEED, ONLY, self.failures))
            return
        self.frames += 1
        if self.frames % REPLENISH_EVERY == 0:
            self.replenish()
        for _ in range(PER_FRAME):
            if self.call_number >= CALLS:
                self.stopped = True
                ended = ", ".join("%s %d" % item for item in sorted(self.outcomes.items(), key=lambda i: -i[1]))
                trace("FUZZ DONE seed %d calls %d failures %d (%s)" % (SEED, self.call_number, self.failures, ended))
                print("fuzz: done, seed %d, %d calls, %d failures (%s)" % (SEED, self.call_number, self.failures, ended))
                return
            number = self.call_number
            self.call_number += 1
            self.call(number)
            if self.stopped:
                return

    # ------------------------------------------------------------------------------ the setup

    def setup_call(self, name, *args, pooled=True):
        """A call of the setup: traced, not numbered; its result goes into the pools unless told."""
        module_name, function = FUNCTION_BY_NAME[name]
        if name in UNREGISTER_EARLY:
            self.attach_unregistration(name, list(args), None)
        result = self.invoke("setup", module_name, name, function, list(args))
        if pooled:
            self.after_call(name, list(args), result)
        return result

    def menus(self):
        """This script's menus, whose paths the events pick: Plugins/Fuzz/One, Two and Three, made
        once and kept out of the pools so that its handler is picked all through the run, and the
        menu bar's FuzzTop/A and B, made again whenever the calls destroyed it."""
        s, hook = self.script, self.new_hook
        if not self.made_plugins_menu:
            self.made_plugins_menu = True
            plugins = self.setup_call("XPLMFindPluginsMenu")
            item = self.setup_call("XPLMAppendMenuItem", plugins, "Fuzz", 0, 1)
            menu = self.setup_call("XPLMCreateMenu", s, "Fuzz", plugins, item, hook().method, 11, pooled=False)
            for index, item_name in enumerate(["One", "Two", "Three"]):
                self.setup_call("XPLMAppendMenuItem", menu, item_name, index, 0)
        top = self.setup_call("XPLMCreateMenu", s, "FuzzTop", 0, 0, hook().method, 12)
        self.setup_call("XPLMAppendMenuItem", top, "A", 1, 0)
        self.setup_call("XPLMAppendMenuItem", top, "B", 2, 0)
        return top

    def accessors(self):
        """This script's datarefs, one of each type and one of all types, whose accessors are hooks."""
        s, hook = self.script, self.new_hook
        for name, data_type in [("fuzz/data/int", 1), ("fuzz/data/float", 2), ("fuzz/data/double", 4),
                                ("fuzz/data/floats", 8), ("fuzz/data/ints", 16), ("fuzz/data/bytes", 32),
                                ("fuzz/data/all", 63)]:
            self.setup_call("XPLMRegisterDataAccessor", s, name, data_type, 1, *[hook().method for _ in range(12)],
                            data_type, -data_type)

    def replenish(self):
        s, hook = self.script, self.new_hook
        self.menus()
        self.accessors()
        self.setup_call("XPLMCreateWindowEx", s, [200, 600, 600, 200, 1] + [hook().method for _ in range(5)] + [8])
        main = self.setup_call("XPCreateCustomWidget", s, 100, 700, 500, 300, 1, "again", 1, 0, hook().method)
        self.setup_call("XPCreateWidget", 120, 650, 300, 630, 1, "field", 0, main,
                        XPStandardWidgets.xpWidgetClass_TextField)

    def setup(self):
        s = self.script
        hook = self.new_hook
        # Windows: three modern ones, one legacy one, one destroyed.
        for left, top, right, bottom in [(50, 700, 350, 450), (300, 600, 700, 250), (600, 400, 1000, 50)]:
            self.setup_call("XPLMCreateWindowEx", s, [left, top, right, bottom, 1] +
                            [hook().method for _ in range(5)] + [len(self.hooks)])
        self.setup_call("XPLMCreateWindow", s, 100, 300, 500, 100, 1, hook().method, hook().method, hook().method, 3)
        gone = self.setup_call("XPLMCreateWindowEx", s, [0, 100, 100, 0, 1] + [hook().method for _ in range(5)] + [9])
        self.setup_call("XPLMGetWindowRefCon", gone)
        self.setup_call("XPLMDestroyWindow", s, gone)
        # Widgets: a main window with buttons, a text field, a scroll bar and a custom widget.
        main = self.setup_call("XPCreateWidget", 150, 650, 650, 150, 1, "Fuzz", 1, 0,
                               XPStandardWidgets.xpWidgetClass_MainWindow)
        self.setup_call("XPSetWidgetProperty", main, XPStandardWidgets.xpProperty_MainWindowHasCloseBoxes, 1)
        self.setup_call("XPAddWidgetCallback", s, main, hook().method)
        classes = [XPStandardWidgets.xpWidgetClass_Button, XPStandardWidgets.xpWidgetClass_TextField,
                   XPStandardWidgets.xpWidgetClass_ScrollBar, XPStandardWidgets.xpWidgetClass_Caption,
                   XPStandardWidgets.xpWidgetClass_Progress, XPStandardWidgets.xpWidgetClass_SubWindow]
        for row, widget_class in enumerate(classes):
            child = self.setup_call("XPCreateWidget", 170, 610 - 60 * row, 450, 570 - 60 * row, 1, "w%d" % row, 0,
                                    main, widget_class)
            self.setup_call("XPAddWidgetCallback", s, child, hook().method)
        check = self.setup_call("XPCreateWidget", 470, 610, 490, 590, 1, "", 0, main,
                                XPStandardWidgets.xpWidgetClass_Button)
        self.setup_call("XPSetWidgetProperty", check, XPStandardWidgets.xpProperty_ButtonType,
                        XPStandardWidgets.xpRadioButton)
        self.setup_call("XPSetWidgetProperty", check, XPStandardWidgets.xpProperty_ButtonBehavior,
                        XPStandardWidgets.xpButtonBehaviorCheckBox)
        self.setup_call("XPCreateCustomWidget", s, 470, 560, 640, 200, 1, "custom", 0, main, hook().method)
        doomed = self.setup_call("XPCreateCustomWidget", s, 0, 100, 100, 0, 1, "doomed", 1, 0, hook().method)
        self.setup_call("XPDestroyWidget", s, doomed, 1)
        # Menus: one below the plugins menu, one of its own, one destroyed.
        top = self.menus()
        extra = self.setup_call("XPLMCreateMenu", s, "Gone", top, 1, hook().method, 13)
        self.setup_call("XPLMDestroyMenu", s, extra)
        # Datarefs: the sim's, and this script's own accessors of every type.
        for name in ["sim/time/total_running_time_sec", "sim/time/paused", "sim/aircraft/view/acf_tailnum",
                     "sim/flightmodel/position/q", "sim/flightmodel/position/local_x",
                     "sim/cockpit/radios/com1_freq_hz"]:
            self.setup_call("XPLMFindDataRef", name)
        self.accessors()
        gone = self.setup_call("XPLMRegisterDataAccessor", s, "fuzz/data/gone", 1, 1,
                               *[hook().method for _ in range(12)], 0, 0)
        self.setup_call("XPLMUnregisterDataAccessor", s, gone)
        self.setup_call("XPLMShareData", s, "fuzz/shared/int", 1, hook().method, 5)
        self.setup_call("XPLMShareData", s, "fuzz/shared/floats", 8, hook().method, 6)
        # Commands and their handlers, before and after the sim.
        for index in range(3):
            command = self.setup_call("XPLMCreateCommand", "fuzz/command/%d" % index, "Fuzz command %d" % index)
            self.setup_call("XPLMRegisterCommandHandler", s, command, hook().method, 1, index)
            self.setup_call("XPLMRegisterCommandHandler", s, command, hook().method, 0, index)
        pause = self.setup_call("XPLMFindCommand", "sim/operation/pause_toggle")
        self.setup_call("XPLMRegisterCommandHandler", s, pause, hook().method, 1, 0)
        # Keys, drawing, flight loops, camera, errors and the one-time callbacks.
        self.setup_call("XPLMRegisterKeySniffer", s, hook().method, 1, 1)
        self.setup_call("XPLMRegisterKeySniffer", s, hook().method, 0, 2)
        for key in [XPLMDefs.XPLM_VK_F1, XPLMDefs.XPLM_VK_A, XPLMDefs.XPLM_VK_RETURN]:
            self.setup_call("XPLMRegisterHotKey", s, key, XPLMDefs.xplm_DownFlag, "fuzz key", hook().method, key)
        gone = self.setup_call("XPLMRegisterHotKey", s, XPLMDefs.XPLM_VK_B, 0, "gone", hook().method, 0)
        self.setup_call("XPLMUnregisterHotKey", s, gone)
        for phase in [XPLMDisplay.xplm_Phase_Objects, XPLMDisplay.xplm_Phase_Window,
                      XPLMDisplay.xplm_Phase_LastCockpit]:
            self.setup_call("XPLMRegisterDrawCallback", s, hook().method, phase, 1, phase)
            self.setup_call("XPLMRegisterDrawCallback", s, hook().method, phase, 0, phase)
        self.setup_call("XPLMRegisterFlightLoopCallback", s, hook().method, -1.0, 1)
        self.setup_call("XPLMRegisterFlightLoopCallback", s, hook().method, 0.05, 2)
        self.setup_call("XPLMCreateFlightLoop", s, [0, hook().method, 3])
        loop = self.setup_call("XPLMCreateFlightLoop", s, [1, hook().method, 4])
        self.setup_call("XPLMScheduleFlightLoop", s, loop, -1.0, 1)
        gone = self.setup_call("XPLMCreateFlightLoop", s, [1, hook().method, 5])
        self.setup_call("XPLMDestroyFlightLoop", s, gone)
        self.setup_call("XPLMControlCamera", s, XPLMCamera.xplm_ControlCameraUntilViewChanges, hook().method, 1)
        self.setup_call("XPLMSetErrorCallback", s, hook().method)
        self.setup_call("XPLMEnumerateFeatures", s, hook().method, 1)
        self.setup_call("XPLMLookupObjects", s, "xpsim/demo/beacon.obj", 47.4, -122.3, hook().method, 1)
        self.setup_call("XPLMLoadObjectAsync", s, "xpsim/demo/marker.obj", hook().method, 1)
        self.setup_call("XPLMLoadObject", "Custom Scenery/xpsim Demo Objects/objects/marker.obj")
        gone = self.setup_call("XPLMLoadObject", "Custom Scenery/xpsim Demo Objects/objects/beacon.obj")
        self.setup_call("XPLMUnloadObject", gone)
        self.setup_call("XPLMCreateProbe", 0)
        gone = self.setup_call("XPLMCreateProbe", 0)
        self.setup_call("XPLMDestroyProbe", gone)
        self.setup_call("XPLMAcquirePlanes", s, ["Aircraft/Laminar Research/Baron B58/Baron_58.acf"],
                        hook().method, 1)
        self.setup_call("XPLMGetFirstNavAid")
        self.setup_call("XPLMFindNavAid", None, "SEA", None, None, None, XPLMNavigation.xplm_Nav_VOR)
        for index in range(3):
            self.setup_call("XPLMGetNthHotKey", index)


FUNCTION_BY_NAME = {name: (module_name, function) for module_name, name, function in FUNCTIONS}
FUZZ = None


class Corvelle:
    def XPluginStart(self):
        global FUZZ
        open_trace()
        FUZZ = Fuzz(self)
        FUZZ.load_state()
        trace("seed %d start: %d modules, %d functions, from call %d" % (SEED, len(MODULES), len(FUNCTIONS),
                                                                      FUZZ.call_number))
        missing = sorted(name for _, name, _ in FUNCTIONS if name not in SIGNATURES)
        if missing:
            print("fuzz: called with arguments of any kind (no signature): %s" % ", ".join(missing))
        return "Fuzz", "corvelle.fuzz", "Calls every binding with hostile arguments."

    def XPluginEnable(self):
        # Enabled again after a hostile XPLMDisablePlugin: everything is in place already.
        if hasattr(self, "loop"):
            return 1
        FUZZ.setup()
        # The fuzz itself runs in a flight loop of its own, every frame; nothing hostile gets hold
        # of this method.
        self.loop = self.Frame
        XPLMProcessing.XPLMRegisterFlightLoopCallback(self, self.loop, -1.0, 0)
        return 1

    def Frame(self, since_last_call, since_last_loop, counter, refcon):
        FUZZ.frame()
        return -1.0

    def XPluginReceiveMessage(self, from_who, message, param):
        if FUZZ is not None and not FUZZ.stopped:
            return FUZZ.hook_fired(None, (from_who, message, param))
        return None

    def XPluginDisable(self):
        pass

    def XPluginStop(self):
        # A reload of the scripts starts this script again: it carries on from the next call.
        if FUZZ is not None and ONLY is None:
            FUZZ.save_state(FUZZ.call_number)
        trace("seed %d stop after call %d" % (SEED, FUZZ.call_number if FUZZ else -1))
