"""The script API's generated files: the stubs agree with the live modules (checked inside xpsim), the
examples type-check against them with mypy, and the committed reference is the generated one."""

import os
import re
import shutil
import subprocess
import sys
from pathlib import Path

HERE = Path(__file__).resolve().parent
REPOSITORY = HERE.parent.parent
sys.path.insert(0, str(REPOSITORY / "testing"))
from corvelle_xpsim import xpsim  # noqa: E402,F401  (the fixture)

BUILD = Path(os.environ.get("CORVELLE_BUILD_DIR", REPOSITORY / "build")).resolve()
STUBS = BUILD / "api" / "stubs"
DOCS = BUILD / "api" / "docs"


def table_counts():
    lines = [line for line in (REPOSITORY / "tools" / "api" / "signatures.txt").read_text().splitlines()
             if line and not line.startswith("#")]
    return sum(line.startswith("[") for line in lines), sum(not line.startswith("[") for line in lines)


def stub_check(xpsim, monkeypatch, stubs):
    monkeypatch.setenv("CORVELLE_STUBS", str(stubs))
    xpsim.add_script(HERE / "CV_StubCheck.py")
    return xpsim.run(frames=1).output_lines


def test_the_stubs_name_the_functions_and_constants_of_the_live_modules(xpsim, monkeypatch):
    modules, functions = table_counts()
    lines = stub_check(xpsim, monkeypatch, STUBS)
    assert len(lines) == 1, "\n".join(lines)
    found = re.fullmatch(r"stubs: (\d+) modules, (\d+) functions and (\d+) constants agree with the live modules",
                         lines[0])
    assert found, lines[0]
    assert (int(found.group(1)), int(found.group(2))) == (modules, functions)
    assert int(found.group(3)) == sum(path.read_text().count(": Final[") for path in STUBS.glob("*.pyi"))


def test_the_check_finds_stubs_that_drifted(xpsim, monkeypatch, tmp_path):
    stubs = tmp_path / "stubs"
    shutil.copytree(STUBS, stubs)
    (stubs / "XPLMDefs.pyi").unlink()
    camera = stubs / "XPLMCamera.pyi"
    text = camera.read_text()
    text = re.sub(r"\n\ndef XPLMDontControlCamera\(.*\n.*\n", "\n", text)
    text = text.replace("xplm_ControlCameraForever: Final[int] = 2", "xplm_ControlCameraForever: Final[int] = 3")
    text = text.replace('"""Read Camera Position."""', '"""Reads the camera."""')
    text = text.replace("def XPLMIsCameraBeingControlled() ->", "def XPLMIsCameraBeingControlled(x: int, /) ->")
    text += "\n\ndef XPLMNoSuchFunction() -> int: ...\n"
    camera.write_text(text)

    assert stub_check(xpsim, monkeypatch, stubs) == [
        "stubs: no stub for module XPLMDefs",
        "stubs: XPLMCamera.XPLMDontControlCamera is missing",
        "stubs: XPLMCamera.XPLMIsCameraBeingControlled has 1 parameters, the binding takes 0",
        "stubs: XPLMCamera.XPLMReadCameraPosition has the doc string 'Reads the camera.', "
        "the module 'Read Camera Position.'",
        "stubs: XPLMCamera.xplm_ControlCameraForever is 3, the module's 2",
        "stubs: XPLMCamera.XPLMNoSuchFunction is not in the module",
        "stubs: 6 disagreements",
    ]


def mypy(*arguments, cwd):
    environment = dict(os.environ, MYPYPATH=str(STUBS))
    done = subprocess.run([sys.executable, "-m", "mypy", "--check-untyped-defs", "--no-error-summary",
                           "--cache-dir", str(cwd / "mypy-cache"), *arguments],
                          capture_output=True, text=True, env=environment, cwd=cwd)
    return done.returncode, done.stdout + done.stderr


def test_the_examples_type_check_against_the_stubs(tmp_path):
    examples = sorted((REPOSITORY / "examples" / "PythonScripts").glob("*.py"))
    assert len(examples) >= 4
    status, report = mypy(*map(str, examples), cwd=tmp_path)
    assert (status, report) == (0, "")


def test_mypy_finds_a_script_that_misuses_the_api(tmp_path):
    (tmp_path / "CV_Wrong.py").write_text(
        "from XPLMDataAccess import *\n"
        "from XPLMGraphics import *\n"
        "class Corvelle:\n"
        "    def XPluginStart(self):\n"
        "        ref = XPLMFindDataRef('sim/time/paused')\n"
        "        XPLMGetDatai(ref)\n"
        "        XPLMDrawString((1.0, 1.0, 1.0), 10, 10, 'text', xplmFont_Basic)\n"
        "        name: str = XPLMGetDataf(1)\n"
        "        return 'Wrong', 'wrong', 'wrong'\n")
    status, report = mypy("CV_Wrong.py", cwd=tmp_path)
    assert status == 1
    assert report.splitlines() == [
        'CV_Wrong.py:6: error: Argument 1 to "XPLMGetDatai" has incompatible type "Optional[int]"; '
        'expected "int"  [arg-type]',
        'CV_Wrong.py:7: error: Too few arguments for "XPLMDrawString"  [call-arg]',
        'CV_Wrong.py:8: error: Incompatible types in assignment (expression has type "float", variable has type '
        '"str")  [assignment]',
    ]


def test_the_committed_api_reference_is_the_generated_one():
    generated = {path.name: path.read_text() for path in DOCS.glob("*.md")}
    committed = {path.name: path.read_text() for path in (REPOSITORY / "docs" / "api").glob("*.md")}
    assert len(generated) == table_counts()[0] + 1
    stale = sorted(name for name in generated.keys() | committed.keys() if generated.get(name) != committed.get(name))
    assert stale == [], "docs/api differs from the generated reference; run `make api-docs`"


def test_the_generation_fails_naming_what_disagrees_and_writes_nothing(tmp_path):
    from corvelle_xpsim import find_plugin, find_xpsim

    table = (REPOSITORY / "tools" / "api" / "signatures.txt").read_text()
    table = table.replace("XPLMGetDatai(inDataRef: int) -> int", "XPLMGetDatai(inDataRef: int, inExtra: int) -> int")
    table = table.replace("XPLMSetDatai(inDataRef: int, inValue: int) -> int\n", "")
    table += "\n[NoSuchModule]\nNoSuchFunction() -> int\n"
    (tmp_path / "table.txt").write_text(table)
    line = table.splitlines().index("XPLMGetDatai(inDataRef: int, inExtra: int) -> int") + 1
    done = subprocess.run([sys.executable, str(REPOSITORY / "tools" / "api" / "generate_api.py"), "--xpsim",
                           str(find_xpsim()), "--plugin", str(find_plugin()), "--table", str(tmp_path / "table.txt"),
                           "--out", str(tmp_path / "out")], capture_output=True, text=True)
    assert done.returncode == 1
    assert done.stderr.splitlines() == [
        "API generation failed:",
        "  cannot import module NoSuchModule: ModuleNotFoundError: No module named 'NoSuchModule'",
        "  XPLMDataAccess.XPLMSetDatai has no line in the table",
        "  table.txt line %d: XPLMDataAccess.XPLMGetDatai takes 1 argument, the table gives 2 arguments" % line,
    ]
    assert not (tmp_path / "out" / "stamp").exists() and not (tmp_path / "out" / "stubs").exists()
