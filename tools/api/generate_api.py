#!/usr/bin/env python3
"""Generates the type stubs and the API reference of the script modules: runs CV_ApiGenerator.py as a
Corvelle script in xpsim, where the modules exist, and fails (exit status 1, naming what is wrong)
when it reports a problem or does not run at all.

    generate_api.py --xpsim XPSIM --plugin Corvelle.xpl --table signatures.txt --out DIR

Writes DIR/stubs/<Module>.pyi, DIR/docs/<Module>.md, DIR/docs/README.md and, last, DIR/stamp.
"""

import argparse
import os
import shutil
import sys
from pathlib import Path

HERE = Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parent.parent / "testing"))
from corvelle_xpsim import Simulator, XPsimError  # noqa: E402


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--xpsim", required=True)
    parser.add_argument("--plugin", required=True)
    parser.add_argument("--table", required=True)
    parser.add_argument("--out", required=True)
    args = parser.parse_args()

    out = Path(args.out).resolve()
    shutil.rmtree(out, ignore_errors=True)
    out.mkdir(parents=True)
    os.environ["CORVELLE_API_TABLE"] = str(Path(args.table).resolve())
    os.environ["CORVELLE_API_OUT"] = str(out)
    simulator = Simulator(out / "sim", xpsim=args.xpsim, plugin=args.plugin, datarefs=False)
    simulator.add_script(HERE / "CV_ApiGenerator.py")
    try:
        run = simulator.run(frames=1)
    except XPsimError as error:
        sys.exit("API generation: %s" % error)
    status = out / "status.txt"
    if not status.is_file():
        sys.exit("API generation: the generator did not run\ncommand: %s\n--- CorvelleLog.txt ---\n%s"
                 % (run.command, run.log))
    lines = status.read_text(encoding="utf-8").splitlines()
    if lines[:1] != ["ok"]:
        sys.exit("API generation failed:\n  " + "\n  ".join(lines[1:]))
    shutil.rmtree(out / "sim")
    (out / "stamp").write_text("ok\n")


if __name__ == "__main__":
    main()
