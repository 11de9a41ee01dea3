# The headless helper lives in the repository's testing/ folder; importing its fixture here gives
# every test in this folder `xpsim`, a fresh simulator folder with Corvelle.
import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "testing"))

from corvelle_xpsim import xpsim  # noqa: E402,F401
