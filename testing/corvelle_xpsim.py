"""Headless tests of Corvelle scripts: runs them with the real plugin in xpsim, the headless X-Plane.

With pytest, take the fixture `xpsim` (in conftest.py: `from corvelle_xpsim import xpsim`)::

    def test_my_script(xpsim):
        xpsim.add_script("PythonScripts/CV_MyScript.py")
        run = xpsim.run(events="1.0 command sim/operation/pause_toggle", seconds=2,
                        screenshots={"end.png": 2.0})
        assert "MyScript: paused" in run.output_lines
        assert run.datarefs["sim/time/paused"] == 1
        assert run.errors == []

Without pytest, `Simulator(folder)` does the same. The programs come from the environment:
CORVELLE_XPSIM (the xpsim program) and CORVELLE_XPL (Corvelle.xpl); without them, the first of this
repository's build-release/ and build/ folders that holds both. CORVELLE_DATAREFS names the
DataRefs.txt to install (default: the repository's tests/data/DataRefs.txt, when there is one).
"""

import os
import re
import shlex
import shutil
import subprocess
from pathlib import Path

try:
    import pytest
except ImportError:  # the helper works without pytest; only the fixture needs it
    pytest = None

SIGNATURE = "brindle.projects.corvelle"
REPOSITORY = Path(__file__).resolve().parent.parent
SCRIPTS = Path("Resources", "plugins", "PythonScripts")
DUMP = "xpsim-datarefs.txt"
TRACEBACK = r"^Traceback \(most recent call last\):\n(?:[ \t].*\n)*.*$"
PROBLEM = TRACEBACK + r"|^Module - .*, Error = .*$|^[A-Za-z_][\w.]*(?:Error|Exception|Exit)(?::.*)?$"


class XPsimError(Exception):
    """xpsim or the plugin could not start. The message holds the command and what it wrote."""


def _builds():
    for build in ("build-release", "build"):
        xpsim = REPOSITORY / build / "sim" / "xpsim"
        plugin = REPOSITORY / build / "plugins" / "Corvelle" / "lin_x64" / "Corvelle.xpl"
        if xpsim.is_file() and plugin.is_file():
            return xpsim, plugin
    return None, None


def find_xpsim():
    """The xpsim program: $CORVELLE_XPSIM, else a build of this repository, else `xpsim` on the PATH."""
    if os.environ.get("CORVELLE_XPSIM"):
        return Path(os.environ["CORVELLE_XPSIM"])
    built, _ = _builds()
    found = built or shutil.which("xpsim")
    return Path(found) if found else Path("xpsim")


def find_plugin():
    """Corvelle.xpl: $CORVELLE_XPL, else the plugin of the build xpsim is taken from."""
    if os.environ.get("CORVELLE_XPL"):
        return Path(os.environ["CORVELLE_XPL"])
    _, built = _builds()
    return built or Path("Corvelle.xpl")


def find_datarefs():
    """DataRefs.txt: $CORVELLE_DATAREFS, else this repository's copy, else None."""
    if os.environ.get("CORVELLE_DATAREFS"):
        return Path(os.environ["CORVELLE_DATAREFS"])
    copy = REPOSITORY / "tests" / "data" / "DataRefs.txt"
    return copy if copy.is_file() else None


def _read(path):
    try:
        return Path(path).read_text(encoding="utf-8", errors="replace")
    except FileNotFoundError:
        return ""


def _parse_value(kind, text):
    if kind == "int":
        return int(text)
    if kind in ("float", "double"):
        return float(text)
    items = [item for item in text.split(",") if item]
    if kind.startswith("byte["):
        return bytes(int(item) for item in items)
    if kind.startswith("int["):
        return [int(item) for item in items]
    return [float(item) for item in items]


def parse_datarefs(text):
    """xpsim's dataref dump as {name: value}: int, float, list of ints or floats, or bytes."""
    values = {}
    for line in text.splitlines():
        name, kind, value = line.split("\t", 2)
        values[name] = _parse_value(kind, value)
    return values


class Run:
    """What one xpsim run left: the plugin's log and output, the simulator's log, the datarefs' values
    at the end and the screenshots."""

    def __init__(self, root, command, returncode, stdout, stderr, screenshots):
        self.root = Path(root)
        self.command = command
        self.returncode = returncode
        self.stdout = stdout
        self.stderr = stderr
        self.screenshots = screenshots
        self._datarefs = None

    @property
    def log(self):
        """CorvelleLog.txt: the plugin's messages, what scripts write to stderr, tracebacks."""
        return _read(self.root / SCRIPTS / "CorvelleLog.txt")

    @property
    def output(self):
        """CorvelleOutput.txt: what scripts print."""
        return _read(self.root / SCRIPTS / "CorvelleOutput.txt")

    @property
    def output_lines(self):
        return self.output.splitlines()

    @property
    def sim_log(self):
        """The simulator's Log.txt (xpsim's own lines start with "xpsim: ")."""
        return _read(self.root / "Log.txt")

    @property
    def datarefs(self):
        """Every dataref's value after the last frame, by name."""
        if self._datarefs is None:
            dump = self.root / DUMP
            if not dump.is_file():
                raise XPsimError("xpsim wrote no dataref dump\ncommand: %s\n--- Log.txt ---\n%s"
                                 % (self.command, self.sim_log))
            self._datarefs = parse_datarefs(_read(dump))
        return self._datarefs

    @property
    def tracebacks(self):
        """The tracebacks in CorvelleLog.txt, each as one text."""
        return re.findall(TRACEBACK, self.log, re.MULTILINE)

    @property
    def errors(self):
        """Every problem CorvelleLog.txt reports, in its order: tracebacks (each as one text), error
        lines outside them and the bindings' reports ("Module - ..., Function - ..., Error = ...")."""
        return [found.group(0) for found in re.finditer(PROBLEM, self.log, re.MULTILINE)]

    def screenshot(self, name):
        """The path of a screenshot the run was asked to take; XPsimError when xpsim did not write it."""
        path = self.screenshots.get(name)
        if path is None or not path.is_file():
            raise XPsimError("no screenshot %s\ncommand: %s\n--- Log.txt ---\n%s" % (name, self.command, self.sim_log))
        return path


class Simulator:
    """A simulator folder with Corvelle and the scripts to test.

    `plugin` is the Corvelle.xpl to load (default: find_plugin()); False loads only what lies in the
    folder's Resources/plugins (an installed release). `datarefs` is the DataRefs.txt to install
    (default: find_datarefs(); False for none)."""

    def __init__(self, folder, xpsim=None, plugin=None, datarefs=None):
        self.root = Path(folder).resolve()
        self.xpsim = Path(xpsim) if xpsim else find_xpsim()
        self.plugin = None if plugin is False else Path(plugin) if plugin else find_plugin()
        (self.root / SCRIPTS).mkdir(parents=True, exist_ok=True)
        if datarefs is not False:
            source = Path(datarefs) if datarefs else find_datarefs()
            if source is not None:
                shutil.copyfile(source, self.root / "Resources" / "plugins" / "DataRefs.txt")

    @property
    def scripts_folder(self):
        return self.root / SCRIPTS

    def add_script(self, source, name=None):
        """Copies a script file into PythonScripts (under `name` if given); returns its new path."""
        source = Path(source)
        target = self.scripts_folder / (name or source.name)
        shutil.copyfile(source, target)
        return target

    def write_script(self, name, text):
        """Writes a script into PythonScripts; returns its path."""
        target = self.scripts_folder / name
        target.write_text(text, encoding="utf-8")
        return target

    def add_file(self, relative, source=None, text=None):
        """Puts a file into the simulator folder, from `source` or with `text`; returns its path."""
        target = self.root / relative
        target.parent.mkdir(parents=True, exist_ok=True)
        if source is not None:
            shutil.copyfile(source, target)
        else:
            target.write_text(text or "", encoding="utf-8")
        return target

    def add_tree(self, folder):
        """Copies a folder's contents into the simulator folder (navigation data, scenery ...)."""
        shutil.copytree(folder, self.root, dirs_exist_ok=True)

    def run(self, events=None, seconds=None, frames=None, fps=None, sdk=None, screen=None, screenshots=None,
            options=(), timeout=600):
        """Runs xpsim once and returns the Run.

        `events`: the events file's text (a str or a list of lines) or the path of one (a Path).
        `screenshots`: {file name: simulated seconds}; the files go to <folder>/screenshots.
        `options`: further xpsim options. Raises XPsimError, with the command and its output, when
        xpsim cannot run, ends with an error, or the plugin does not start."""
        command = [str(self.xpsim), "run", "--root", str(self.root)]
        if self.plugin is not None:
            command += ["--plugin", str(self.plugin)]
        if events is not None:
            if isinstance(events, os.PathLike):
                events_file = Path(events).resolve()
            else:
                lines = events if isinstance(events, (list, tuple)) else [events]
                events_file = self.root / "xpsim-events.txt"
                events_file.write_text("\n".join(lines) + "\n", encoding="utf-8")
            command += ["--events", str(events_file)]
        for option, value in (("--seconds", seconds), ("--frames", frames), ("--fps", fps), ("--sdk", sdk),
                              ("--screen", screen)):
            if value is not None:
                command += [option, str(value)]
        shots = {}
        if screenshots:
            (self.root / "screenshots").mkdir(exist_ok=True)
            for name, when in screenshots.items():
                shots[name] = self.root / "screenshots" / name
                command += ["--screenshot", "%s:screenshots/%s" % (when, name)]
        command += ["--dump-datarefs", DUMP] + [str(option) for option in options]
        (self.root / DUMP).unlink(missing_ok=True)

        environment = dict(os.environ)
        # A sanitizer build of xpsim and the plugin needs this; other builds ignore it.
        environment.setdefault("ASAN_OPTIONS", "detect_leaks=0")
        shown = " ".join(shlex.quote(part) for part in command)
        try:
            done = subprocess.run(command, capture_output=True, text=True, errors="replace", env=environment,
                                  timeout=timeout)
        except OSError as error:
            raise XPsimError("cannot start xpsim: %s\ncommand: %s\n(set CORVELLE_XPSIM to the xpsim program)"
                             % (error, shown)) from None
        except subprocess.TimeoutExpired as expired:
            raise XPsimError("xpsim did not finish within %s s\ncommand: %s\n--- standard output ---\n%s"
                             % (timeout, shown, expired.stdout or "")) from None
        run = Run(self.root, shown, done.returncode, done.stdout, done.stderr, shots)
        if done.returncode != 0:
            how = ("exit status %d" % done.returncode if done.returncode > 0
                   else "killed by signal %d" % -done.returncode)
            raise XPsimError("xpsim failed (%s)\ncommand: %s\n--- standard output ---\n%s--- standard error ---\n%s"
                             % (how, shown, done.stdout, done.stderr))
        if "(%s)." % SIGNATURE not in run.sim_log:
            raise XPsimError("the plugin did not start: %s\ncommand: %s\n--- Log.txt ---\n%s"
                             % (self.plugin or self.root / "Resources" / "plugins", shown, run.sim_log))
        return run


if pytest is not None:

    @pytest.fixture
    def xpsim(tmp_path):
        """A Simulator in a fresh folder of the test's temporary directory."""
        return Simulator(tmp_path / "X-Plane")
