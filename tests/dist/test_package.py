"""The release package: packed from the build (the test build's plugin, so that CI builds once),
unpacked into a fresh simulator folder as a user unpacks it into X-Plane/Resources/plugins, and run with
the example scripts it brings."""

import os
import re
import shutil
import subprocess
import sys
import tarfile
from pathlib import Path

import pytest

REPOSITORY = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(REPOSITORY / "testing"))
sys.path.insert(0, str(REPOSITORY / "tools"))
import package  # noqa: E402  (tools/package.py)
from corvelle_xpsim import Simulator  # noqa: E402

BUILD = Path(os.environ.get("CORVELLE_BUILD_DIR", REPOSITORY / "build")).resolve()


@pytest.fixture(scope="module")
def release(tmp_path_factory):
    return package.pack(BUILD, tmp_path_factory.mktemp("dist"))


def test_the_package_is_named_after_the_version_and_laid_out_for_the_plugins_folder(release):
    cmake_version = (BUILD / "corvelle-version.txt").read_text().strip()
    major, minor, patch = cmake_version.split(".")
    version = "%s.%02d.%02d" % (major, int(minor), int(patch))
    dirty = "-dirty" if package.local_changes() else ""
    assert release.name == "Corvelle-%s%s-lin_x64.tar.gz" % (version, dirty)

    with tarfile.open(release) as archive:
        files = {member.name for member in archive.getmembers() if member.isfile()}
        modes = {member.name: member.mode for member in archive.getmembers()}
    stubs = {"Corvelle/stubs/%s" % path.name for path in (BUILD / "api" / "stubs").glob("*.pyi")}
    examples = {"PythonScripts/%s" % path.name for path in (REPOSITORY / "examples" / "PythonScripts").glob("*.py")}
    assert len(stubs) == 20 and len(examples) >= 4
    assert {"Corvelle/lin_x64/Corvelle.xpl", "Corvelle/Corvelle.ini", "Corvelle/README.md", "Corvelle/LICENSE",
            "Corvelle/docs/api/README.md", "Corvelle/docs/api/XPLMDataAccess.md"} | stubs | examples <= files
    assert all(name.startswith(("Corvelle/", "PythonScripts/")) for name in files)
    assert modes["Corvelle/lin_x64/Corvelle.xpl"] == 0o755 and modes["Corvelle/README.md"] == 0o644


def test_the_unpacked_package_runs_its_examples_in_a_fresh_simulator(release, tmp_path):
    plugins = tmp_path / "X-Plane" / "Resources" / "plugins"
    plugins.mkdir(parents=True)
    with tarfile.open(release) as archive:
        archive.extractall(plugins)
    simulator = Simulator(tmp_path / "X-Plane", plugin=False)
    simulator.add_tree(REPOSITORY / "tests" / "data" / "xpsim-root")  # the flight plan's navigation data
    run = simulator.run(seconds=5, events=REPOSITORY / "examples" / "demo-events.txt")

    assert "Loaded: %s (brindle.projects.corvelle)." % (plugins / "Corvelle" / "lin_x64" / "Corvelle.xpl") \
        in run.sim_log
    # The plugin reports the version the package is named after.
    version = re.search(r"Corvelle-(\d+\.\d\d\.\d\d)", release.name).group(1)
    assert "CorvelleVersionNumber = %s\n" % version in run.sim_log
    assert "Corvelle.ini file found" in run.log
    for script in ("CV_CommandDemo.py", "CV_FlightPlan.py", "CV_Hello.py", "CV_WindowDemo.py"):
        assert "Script '%s' successfully loaded." % script in run.log
    assert run.errors == []
    for line in ("Hello: stopped", "CommandDemo: the pause command ran; the simulator is now running",
                 "WindowDemo: 80 frames drawn, keys typed: 'hi'",
                 "FlightPlan: FMS: 5 entries, to a lat/lon point at 4000 ft"):
        assert line in run.output_lines


def test_the_python_library_the_plugin_needs_is_the_one_the_readme_names(release, tmp_path):
    with tarfile.open(release) as archive:
        archive.extract("Corvelle/lin_x64/Corvelle.xpl", tmp_path)
    linked = subprocess.run(["ldd", str(tmp_path / "Corvelle" / "lin_x64" / "Corvelle.xpl")], capture_output=True,
                            text=True, check=True).stdout
    library = re.search(r"^\s*(libpython3\.\d+\.so\.[\d.]+) => /", linked, re.MULTILINE)
    assert library, linked
    assert "`%s`" % library.group(1) in (REPOSITORY / "README.md").read_text()


@pytest.mark.skipif(shutil.which("git") is None, reason="git is not installed")
def test_local_changes_mark_the_package(tmp_path, monkeypatch):
    def git(*arguments):
        subprocess.run(["git", "-C", str(tmp_path), *arguments], check=True, capture_output=True)

    monkeypatch.setattr(package, "SOURCE", tmp_path)
    # The test folder may lie inside a checkout (the build folder); git must not look above it.
    monkeypatch.setenv("GIT_CEILING_DIRECTORIES", str(tmp_path.parent))
    assert package.local_changes() is None  # not a checkout
    git("init", "-q")
    (tmp_path / "a.txt").write_text("a")
    (tmp_path / ".gitignore").write_text("/build/\n")
    git("add", ".")
    git("-c", "user.name=t", "-c", "user.email=t@t", "commit", "-q", "-m", "a")
    (tmp_path / "build").mkdir()
    (tmp_path / "build" / "x").write_text("ignored")
    assert package.local_changes() is False
    (tmp_path / "b.txt").write_text("untracked")
    assert package.local_changes() is True
    (tmp_path / "b.txt").unlink()
    (tmp_path / "a.txt").write_text("changed")
    assert package.local_changes() is True
