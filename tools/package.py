#!/usr/bin/env python3
"""Packs a build of Corvelle as the release a user installs: Corvelle-<version>-lin_x64.tar.gz, laid
out to unpack into X-Plane/Resources/plugins/:

    Corvelle/lin_x64/Corvelle.xpl     the plugin
    Corvelle/Corvelle.ini             a commented sample configuration (every switch off)
    Corvelle/README.md, LICENSE       the README and the licence
    Corvelle/docs/                    the README's pictures and the API reference (docs/api)
    Corvelle/stubs/<Module>.pyi       the script modules' type stubs
    PythonScripts/CV_*.py             the example scripts

    package.py --build BUILD_DIR [--out DIR]

The version is the CMake project's (BUILD_DIR/corvelle-version.txt), written as the plugin writes its
own (2.67.07). A source tree with changes that are not committed gets "-dirty" after the version.
Prints the package's path.
"""

import argparse
import io
import subprocess
import sys
import tarfile
import time
from pathlib import Path

SOURCE = Path(__file__).resolve().parent.parent


def version_of(build):
    text = (build / "corvelle-version.txt").read_text().strip()
    major, minor, patch = (int(part) for part in text.split("."))
    return "%d.%02d.%02d" % (major, minor, patch)


def local_changes():
    """True when the source tree differs from its last commit (untracked files included; ignored files,
    such as the build folders, are not); None outside a git checkout."""
    try:
        done = subprocess.run(["git", "-C", str(SOURCE), "status", "--porcelain"], capture_output=True, text=True)
    except OSError:
        return None
    if done.returncode != 0:
        return None
    return done.stdout.strip() != ""


def contents(build):
    """(path in the package, file) for everything packed, in order."""
    plugin = build / "plugins" / "Corvelle" / "lin_x64" / "Corvelle.xpl"
    stubs = sorted((build / "api" / "stubs").glob("*.pyi"))
    if not plugin.is_file():
        sys.exit("package: no plugin at %s (build the Corvelle target)" % plugin)
    if not stubs:
        sys.exit("package: no type stubs in %s (build the script_api target)" % (build / "api" / "stubs"))
    files = [("Corvelle/lin_x64/Corvelle.xpl", plugin),
             ("Corvelle/Corvelle.ini", SOURCE / "examples" / "Corvelle.ini"),
             ("Corvelle/README.md", SOURCE / "README.md"),
             ("Corvelle/LICENSE", SOURCE / "LICENSE")]
    files += [("Corvelle/docs/" + path.relative_to(SOURCE / "docs").as_posix(), path)
              for path in sorted((SOURCE / "docs").rglob("*")) if path.is_file()]
    files += [("Corvelle/stubs/" + path.name, path) for path in stubs]
    files += [("PythonScripts/" + path.name, path) for path in sorted((SOURCE / "examples" / "PythonScripts").glob("*.py"))]
    return files


def pack(build, out):
    version = version_of(build)
    changed = local_changes()
    if changed:
        version += "-dirty"
        print("package: the source tree has changes that are not committed; the package is marked -dirty",
              file=sys.stderr)
    elif changed is None:
        print("package: not a git checkout; local changes cannot be seen", file=sys.stderr)
    out.mkdir(parents=True, exist_ok=True)
    package = out / ("Corvelle-%s-lin_x64.tar.gz" % version)
    now = int(time.time())
    with tarfile.open(package, "w:gz") as archive:
        folders = set()
        for name, path in contents(build):
            for depth in range(1, name.count("/") + 1):
                folder = "/".join(name.split("/")[:depth])
                if folder not in folders:
                    folders.add(folder)
                    info = tarfile.TarInfo(folder)
                    info.type, info.mode, info.mtime = tarfile.DIRTYPE, 0o755, now
                    archive.addfile(info)
            data = path.read_bytes()
            info = tarfile.TarInfo(name)
            info.size, info.mtime = len(data), now
            info.mode = 0o755 if name.endswith(".xpl") else 0o644
            archive.addfile(info, io.BytesIO(data))
    return package


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--build", required=True, help="the build folder (build-release for `make dist`)")
    parser.add_argument("--out", default="dist", help="where the package goes (default: dist)")
    args = parser.parse_args()
    print(pack(Path(args.build).resolve(), Path(args.out).resolve()))


if __name__ == "__main__":
    main()
