"""The headless helper itself: what it gives a test (datarefs through the plugin's accessors, errors of
scripts) and how it reports an xpsim or a plugin that cannot start."""

import os
from pathlib import Path

import pytest

from corvelle_xpsim import Simulator, XPsimError, parse_datarefs, xpsim  # noqa: F401  (xpsim: the fixture)

ACCESSOR_SCRIPT = """\
from XPLMDataAccess import *

class Corvelle:
    def XPluginStart(self):
        self.Count = 0
        self.Values = [1.5, -2.0]
        self.ReadCountCB, self.ReadValuesCB = self.ReadCount, self.ReadValues
        self.CountRef = XPLMRegisterDataAccessor(self, "test/script/count", xplmType_Int, 0, self.ReadCountCB,
                                                 None, None, None, None, None, None, None, None, None, None,
                                                 None, 0, 0)
        self.ValuesRef = XPLMRegisterDataAccessor(self, "test/script/values", xplmType_FloatArray, 0, None, None,
                                                  None, None, None, None, None, None, self.ReadValuesCB, None,
                                                  None, None, 0, 0)
        self.Com1 = XPLMFindDataRef("sim/cockpit/radios/com1_freq_hz")
        XPLMSetDatai(self.Com1, 12345)
        XPLMFindDataRef("no/such/dataref")
        return "Accessor", "test.accessor", "Publishes two datarefs."

    def XPluginEnable(self):
        self.Count = 7
        return 1

    def XPluginDisable(self):
        pass

    def XPluginStop(self):
        XPLMUnregisterDataAccessor(self, self.CountRef)
        XPLMUnregisterDataAccessor(self, self.ValuesRef)

    def XPluginReceiveMessage(self, inFromWho, inMessage, inParam):
        {}["no such key"]

    def ReadCount(self, inRefcon):
        return self.Count

    def ReadValues(self, inRefcon, outValues, inOffset, inMax):
        if outValues is None:
            return len(self.Values)
        outValues.extend(self.Values[inOffset:inOffset + inMax])
        return min(inMax, len(self.Values) - inOffset)
"""


def test_a_run_gives_the_datarefs_at_the_end_and_the_scripts_errors(xpsim):
    xpsim.write_script("CV_Accessor.py", ACCESSOR_SCRIPT)
    run = xpsim.run(frames=2)
    datarefs = run.datarefs
    # Read through the script's accessors after the last frame, before the plugin stopped.
    assert datarefs["test/script/count"] == 7
    assert datarefs["test/script/values"] == [1.5, -2.0]
    assert datarefs["sim/cockpit/radios/com1_freq_hz"] == 12345
    assert datarefs["sim/time/total_running_time_sec"] == 0.1
    assert run.errors[0] == ("Module - XPLMDataAccess, Function - XPLMFindDataRef, Error = DataRef [no/such/dataref] "
                             "not found, check that DataRef string is correct")
    # One traceback for each of the three start-up messages the simulator sends, in the log's order.
    assert len(run.tracebacks) == 3 and run.errors[1:] == run.tracebacks
    assert run.tracebacks[0].startswith("Traceback (most recent call last):\n")
    assert run.tracebacks[0].endswith("\nKeyError: 'no such key'")


def test_the_dump_reads_back_every_type():
    text = ("a\tint\t-3\nb\tfloat\t0.1\nc\tdouble\t47.449889123\nd\tint[3]\t1,-2,3\ne\tfloat[2]\tnan,-inf\n"
            "f\tbyte[4]\t65,66,0,255\ng\tfloat[0]\t\n")
    values = parse_datarefs(text)
    assert {key: value for key, value in values.items() if key != "e"} == {
        "a": -3, "b": 0.1, "c": 47.449889123, "d": [1, -2, 3], "f": b"AB\x00\xff", "g": []}
    assert str(values["e"]) == "[nan, -inf]"


def test_an_xpsim_that_cannot_start_is_reported_with_the_command(tmp_path):
    simulator = Simulator(tmp_path / "sim", xpsim=tmp_path / "no-xpsim")
    with pytest.raises(XPsimError) as error:
        simulator.run(frames=1)
    message = str(error.value)
    assert message.startswith("cannot start xpsim: [Errno 2] No such file or directory")
    assert "\ncommand: %s run --root %s --plugin " % (tmp_path / "no-xpsim", tmp_path / "sim") in message


def test_xpsim_ending_with_an_error_is_reported_with_its_output(xpsim):
    with pytest.raises(XPsimError) as error:
        xpsim.run(events="1.0 fly away")
    message = str(error.value)
    assert message.startswith("xpsim failed (exit status 1)\ncommand: ")
    assert "--events %s" % (xpsim.root / "xpsim-events.txt") in message
    assert "--- standard error ---\nxpsim: events file %s, line 1: unknown verb 'fly' (key, type" % (
        xpsim.root / "xpsim-events.txt") in message


@pytest.mark.parametrize("plugin, why", [
    ("missing.xpl", "xpsim: cannot load {path}: no such file"),
    ("not-a-plugin.xpl", "xpsim: cannot load {path}: "),
])
def test_a_plugin_that_cannot_start_is_reported_with_the_simulators_log(tmp_path, plugin, why):
    path = tmp_path / plugin
    if plugin == "not-a-plugin.xpl":
        path.write_text("not a shared object")
    simulator = Simulator(tmp_path / "sim", plugin=path)
    with pytest.raises(XPsimError) as error:
        simulator.run(frames=1)
    message = str(error.value)
    assert message.startswith("the plugin did not start: %s\ncommand: " % path)
    assert "\n--- Log.txt ---\nxpsim: headless X-Plane" in message
    assert why.format(path=path) in message


def test_a_release_installed_in_the_folder_runs_without_a_plugin_option(tmp_path):
    plugin = Simulator(tmp_path / "probe").plugin
    simulator = Simulator(tmp_path / "sim", plugin=False)
    installed = simulator.add_file("Resources/plugins/Corvelle/lin_x64/Corvelle.xpl", source=plugin)
    os.chmod(installed, 0o755)
    simulator.write_script("CV_Hi.py", "print('hi')\nclass Corvelle:\n    def XPluginStart(self):\n"
                                       "        return 'Hi', 'hi', 'hi'\n")
    run = simulator.run(frames=1)
    assert "--plugin" not in run.command
    assert "Loaded: %s (brindle.projects.corvelle)." % Path(installed) in run.sim_log
    assert run.output_lines == ["hi"]
