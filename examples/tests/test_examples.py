"""The example scripts, run headlessly in xpsim with pytest: what a script author's own tests look like.
Each test puts scripts into a fresh simulator folder (the fixture `xpsim`), runs simulated seconds with
timed input, and checks what the scripts printed, the datarefs at the end, screenshots and drawing."""

from pathlib import Path

EXAMPLES = Path(__file__).resolve().parent.parent
SCRIPTS = EXAMPLES / "PythonScripts"
# Navigation data and scenery for the flight plan example.
DATA = EXAMPLES.parent / "tests" / "data" / "xpsim-root"


def test_hello_is_called_at_every_step_of_its_life(xpsim):
    xpsim.add_script(SCRIPTS / "CV_Hello.py")
    run = xpsim.run(seconds=1)
    assert run.output_lines == [
        "Hello: started",
        "Hello: enabled",
        "Hello: message 102 from plugin 0, parameter 0",
        "Hello: message 103 from plugin 0, parameter 0",
        "Hello: message 104 from plugin 0, parameter 0",
        "Hello: disabled",
        "Hello: stopped",
    ]
    assert run.errors == []
    assert "Script 'CV_Hello.py' successfully loaded." in run.log


def test_the_command_demo_handles_its_command_and_watches_the_pause(xpsim):
    xpsim.add_script(SCRIPTS / "CV_CommandDemo.py")
    run = xpsim.run(seconds=3, events=["1.0 command corvelle/demo/say_hello",
                                       "1.5 command-begin corvelle/demo/say_hello",
                                       "2.0 command-end corvelle/demo/say_hello",
                                       "2.5 command sim/operation/pause_toggle"])
    assert run.output_lines == [
        "CommandDemo: corvelle/demo/say_hello begins: hello!",
        "CommandDemo: corvelle/demo/say_hello ends after 0 held frames",
        "CommandDemo: corvelle/demo/say_hello begins: hello!",
        "CommandDemo: corvelle/demo/say_hello ends after 9 held frames",
        "CommandDemo: the pause command ran; the simulator is now paused",
    ]
    assert run.errors == []
    # The simulator stays paused: the running time goes on, the flight time stopped at 2.5 s.
    assert run.datarefs["sim/time/paused"] == 1
    assert run.datarefs["sim/time/total_running_time_sec"] == 3.0
    assert run.datarefs["sim/time/total_flight_time_sec"] == 2.5


def test_the_window_demo_takes_clicks_keys_and_its_menu(xpsim):
    xpsim.add_script(SCRIPTS / "CV_WindowDemo.py")
    run = xpsim.run(seconds=3, screenshots={"shown.png": 1.0, "hidden.png": 2.5},
                    events=["0.5 click 200 300", "0.8 type hi", "1.2 wheel 250 250 3",
                            "1.0 draw-log shown.txt", "2.0 menu Plugins/Window Demo/Hide Window",
                            "2.5 draw-log hidden.txt"])
    assert run.output_lines == [
        "WindowDemo: mouse down at 200, 300",
        "WindowDemo: key 'h' (virtual key 72) pressed in the window",
        "WindowDemo: key 'i' (virtual key 73) pressed in the window",
        "WindowDemo: wheel turned by 3 at 250, 250",
        # The menu pick at 2.0 s comes before the drawing of that frame, the 40th.
        "WindowDemo: window hidden after 39 frames",
        "WindowDemo: 39 frames drawn, keys typed: 'hi'",
    ]
    assert run.errors == []
    # The window draws the keys typed while it is shown, and nothing once hidden; the screen shows it.
    assert '"Keys typed: hi"' in (run.root / "shown.txt").read_text()
    assert "Keys typed" not in (run.root / "hidden.txt").read_text()
    shown, hidden = run.screenshot("shown.png").read_bytes(), run.screenshot("hidden.png").read_bytes()
    assert shown[:8] == b"\x89PNG\r\n\x1a\n" and shown != hidden


def test_the_flight_plan_programs_the_fms_and_flies_it(xpsim):
    xpsim.add_tree(DATA)
    xpsim.add_script(SCRIPTS / "CV_FlightPlan.py")
    run = xpsim.run(seconds=6.5, events=["3.2 draw-log drawing.txt"])
    assert run.output_lines == [
        "FlightPlan: entry 0 is KSEA (Seattle-Tacoma Intl)",
        "FlightPlan: entry 1 is SEA (SEATTLE VORTAC, 116.80 MHz)",
        "FlightPlan: entry 2 is ALKIS (ALKIS)",
        "FlightPlan: entry 3 is PAE (PAINE VOR/DME, 110.60 MHz)",
        "FlightPlan: entry 4 is the point 47.75, -122.35",
        "FlightPlan: FMS: 5 entries, to SEA at 3000 ft",
        "FlightPlan: FMS: 5 entries, to ALKIS at 3000 ft",
        "FlightPlan: FMS: 5 entries, to PAE at 3000 ft",
        "FlightPlan: FMS: 5 entries, to a lat/lon point at 4000 ft",
        "FlightPlan: the plan is flown",
    ]
    assert run.errors == []
    # The status line the draw callback shows in the frame at 3.2 s.
    drawing = (run.root / "drawing.txt").read_text()
    status = 'string x=16 y=744 rgb=0.900,1.000,0.600 font=xplmFont_Proportional "FMS: 5 entries, to PAE at 3000 ft"'
    assert status in drawing.splitlines()


def test_all_examples_run_together_as_make_demo_runs_them(xpsim):
    xpsim.add_tree(DATA)
    for script in SCRIPTS.glob("*.py"):
        xpsim.add_script(script)
    run = xpsim.run(seconds=5, events=EXAMPLES / "demo-events.txt")
    assert run.errors == []
    for line in ["Hello: stopped", "CommandDemo: the pause command ran; the simulator is now running",
                 "WindowDemo: 80 frames drawn, keys typed: 'hi'",
                 "FlightPlan: FMS: 5 entries, to a lat/lon point at 4000 ft"]:
        assert line in run.output_lines
    assert run.datarefs["sim/time/paused"] == 0
    assert (run.root / "control-panel.png").is_file()
