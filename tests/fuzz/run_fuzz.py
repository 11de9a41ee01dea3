#!/usr/bin/env python3
"""Runs the fuzz script CV_Fuzz.py in xpsim with the sanitizer build of Corvelle.xpl and judges the run.

    run_fuzz.py --xpsim build/sim/xpsim --plugin build/plugins/Corvelle/lin_x64/Corvelle.xpl \
                [--seed N] [--calls N] [--only K] [--per-frame N] [--sdk LEVEL] [--timeout S] [--root DIR]

It makes a simulator folder with the fuzz script and the test data, writes an events file from the
seed (clicks, drags, wheel turns, keys, typing, menu picks, commands, dataref writes, messages), and
runs xpsim with PYTHONMALLOC=malloc_debug. The run fails when xpsim exits non-zero or dies, when a
sanitizer or the interpreter's debug allocator reports, when it runs past the timeout, when the
plugin's log holds a Python error that the fuzz does not raise on purpose or a FUZZ-FAIL line of the
script's own checks, or when the script did not make all its calls. A failure prints the seed, the
last call from the trace and the commands that replay it.
"""

import argparse
import math
import os
import random
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time

HERE = os.path.dirname(os.path.abspath(__file__))
SOURCE = os.path.dirname(os.path.dirname(HERE))
FPS = 20

# What the fuzz raises on purpose, in its callbacks and hostile objects, and what calling the
# non-callables and wrong callables it registers raises; any other Python error in the plugin's log
# is a failure.
ALLOWED_ERRORS = {"FuzzBoom", "SystemExit"}
ALLOWED_TYPE_ERRORS = re.compile(r"object is not callable|XPluginReceiveMessage\(\) (missing|takes)|"
                                 r"len\(\) takes exactly one argument|type\(\) takes 1 or 3 arguments|"
                                 r"type\.__new__\(\) argument")
SANITIZER_MARKS = ["ERROR: AddressSanitizer", "ERROR: LeakSanitizer", "runtime error:", "Fatal Python error",
                   "Debug memory block at address", "SUMMARY: UndefinedBehaviorSanitizer", "AddressSanitizer:DEADLYSIGNAL"]


def events_file(seed, frames):
    """Timed input for every frame after the setup's, from the seed alone."""
    rng = random.Random("%d:events" % seed)
    keys = ["a", "A", "z", "shift+3", "ctrl+XPLM_VK_RETURN", "XPLM_VK_F1", "alt+x", "XPLM_VK_BACK",
            "XPLM_VK_DELETE", "XPLM_VK_LEFT", "XPLM_VK_RIGHT", "XPLM_VK_HOME", "XPLM_VK_END", "XPLM_VK_ESCAPE",
            "XPLM_VK_TAB", "XPLM_VK_NUMPAD7", "XPLM_VK_RETURN", "p", "shift+ctrl+alt+XPLM_VK_F12", "1", "shift+3",
            "XPLM_VK_SPACE"]
    menus = ["Plugins/Fuzz/One", "Plugins/Fuzz/Two", "Plugins/Fuzz/Three", "FuzzTop/A", "FuzzTop/B",
             "Plugins/Fuzz/Nowhere", "FuzzTop/Gone"]
    commands = ["fuzz/command/0", "fuzz/command/1", "fuzz/command/2", "sim/operation/pause_toggle", "sim/view/chase",
                "sim/view/default_view", "sim/none/none", "fuzz/command/none"]
    writes = ["fuzz/data/int 5", "fuzz/data/int -2147483648", "fuzz/data/float 1.5", "fuzz/data/double 2.5e300",
              "fuzz/data/ints 1,2,3", "fuzz/data/floats 1.5,2,3", "fuzz/data/bytes hello", "fuzz/data/all 7",
              "fuzz/data/all 1,2,3,4", "fuzz/data/all text", "sim/time/paused 0", "fuzz/shared/int 3",
              "fuzz/shared/floats 1,2,3", "fuzz/data/gone 1"]
    messages = ["8000 7", "101 0", "102 0", "103 1", "0x7E570001 12345", "2147483647 4294967295", "0 0"]

    def point():
        if rng.random() < 0.6:  # over the script's windows and widgets
            return rng.randint(40, 700), rng.randint(40, 720)
        return rng.randint(0, 1023), rng.randint(0, 767)

    lines = []
    held = set()
    # Late in the run: after a restart of the interpreter the script can no longer trace memory for
    # its leak probes.
    reloads = {(3 * frames) // 4, (7 * frames) // 8} if frames > 40 else set()
    for frame in range(3, frames):
        at = "%.2f" % (frame / FPS)
        for _ in range(rng.choice([0, 0, 1, 1, 2])):
            r = rng.random()
            if r < 0.22:
                lines.append("%s click %d %d" % ((at,) + point()))
            elif r < 0.32:
                lines.append("%s drag %d %d %d %d" % ((at,) + point() + point()))
            elif r < 0.37:
                lines.append("%s move %d %d" % ((at,) + point()))
            elif r < 0.42:
                lines.append("%s wheel %d %d %d %d" % ((at,) + point() + (rng.choice([-3, -1, 1, 5]), rng.choice([0, 1]))))
            elif r < 0.55:
                lines.append("%s key %s" % (at, rng.choice(keys)))
            elif r < 0.58:
                lines.append("%s type Fuzz %d!" % (at, rng.randint(0, 999)))
            elif r < 0.68:
                lines.append("%s menu %s" % (at, rng.choice(menus)))
            elif r < 0.78:
                command = rng.choice(commands)
                if command in held and rng.random() < 0.7:
                    held.discard(command)
                    lines.append("%s command-end %s" % (at, command))
                elif rng.random() < 0.3:
                    held.add(command)
                    lines.append("%s command-begin %s" % (at, command))
                else:
                    lines.append("%s command %s" % (at, command))
            elif r < 0.9:
                lines.append("%s set %s" % (at, rng.choice(writes)))
            else:
                lines.append("%s message brindle.projects.corvelle %s" % (at, rng.choice(messages)))
        if frame == frames // 2:
            lines.append("%s draw-log fuzz-draw.txt" % at)
            lines.append("%s screenshot fuzz-screen.png" % at)
        if frame in reloads:
            # The control panel's Reload Scripts, within one frame: the script is stopped with its
            # registrations left behind and started again, and carries on from its next call.
            lines.append("%s menu Plugins/Corvelle/Control Panel" % at)
            lines.append("%s click 615 164" % at)
            lines.append("%s click 510 640" % at)
    return "\n".join(lines) + "\n"


def make_root(root, script):
    if os.path.exists(root):
        shutil.rmtree(root)
    scripts = os.path.join(root, "Resources", "plugins", "PythonScripts")
    os.makedirs(scripts)
    shutil.copytree(os.path.join(SOURCE, "tests", "data", "xpsim-root"), root, dirs_exist_ok=True)
    shutil.copy(os.path.join(SOURCE, "tests", "data", "DataRefs.txt"), os.path.join(root, "Resources", "plugins"))
    shutil.copy(script, scripts)
    os.makedirs(os.path.join(root, "Output", "situations"), exist_ok=True)
    # The registrations' traces and the check of what the scripts left behind at their stop run too.
    os.makedirs(os.path.join(root, "Resources", "plugins", "Corvelle"))
    with open(os.path.join(root, "Resources", "plugins", "Corvelle", "Corvelle.ini"), "w") as ini:
        ini.write("[DEBUG]\nDebugCallbacks = 1\nCheckCallbacks = 1\n")
    os.makedirs(os.path.join(root, "Output", "replays"), exist_ok=True)


def read(path):
    try:
        with open(path, "rb") as f:
            return f.read().decode("utf-8", "replace")
    except OSError:
        return ""


def python_errors(log):
    """The exception type of every Python error the plugin printed: 'Type: message' lines that
    close a traceback, and bare ones (a script's unfinished line may stand before them)."""
    found = []
    pattern = re.compile(r"([A-Za-z]+(?:Error|Exception|Exit|Boom|Interrupt|Warning))(?::|$)")
    known = sorted(ALLOWED_ERRORS | {"TypeError"}, key=len, reverse=True)
    for line in log.splitlines():
        match = pattern.search(line)
        if match:
            name = match.group(1)
            # A script's unfinished line may run into the name ("SEATypeError"): the known name it
            # ends with is the one meant.
            name = next((k for k in known if name.endswith(k)), name)
            found.append((name, line))
    return found


def last_call(trace_text):
    lines = [line for line in trace_text.splitlines() if line.startswith("seed ")]
    calls = [line for line in lines if re.match(r"seed -?\d+ call \d+\+?:", line)]
    return (lines[-1] if lines else None), (calls[-1] if calls else None)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--xpsim", required=True)
    parser.add_argument("--plugin", required=True)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--calls", type=int, default=3000)
    parser.add_argument("--only", default=None,
                        help="replay this call alone, after the setup (K, or K+ for a callback's registration)")
    parser.add_argument("--per-frame", type=int, default=200)
    parser.add_argument("--sdk", default="2.10", help="the SDK level xpsim offers (2.10, 2.00 or 1.02)")
    parser.add_argument("--timeout", type=float, default=None, help="seconds (default: from the call count)")
    parser.add_argument("--root", default=None, help="the simulator folder (default: a new one in /tmp)")
    args = parser.parse_args()

    root = args.root or tempfile.mkdtemp(prefix="corvelle-fuzz-")
    root = os.path.abspath(root)
    make_root(root, os.path.join(HERE, "CV_Fuzz.py"))
    if args.only is not None:
        frames = 10
    else:
        frames = math.ceil(args.calls / args.per_frame) + 40
    timeout = args.timeout or max(120.0, args.calls / 100.0)
    events = os.path.join(root, "fuzz-events.txt")
    with open(events, "w") as f:
        f.write(events_file(args.seed, frames))
    trace = os.path.join(root, "fuzz-trace.txt")
    state = os.path.join(root, "fuzz-state.txt")

    env = dict(os.environ)
    env.update({
        "CORVELLE_FUZZ_SEED": str(args.seed),
        "CORVELLE_FUZZ_CALLS": str(args.calls),
        "CORVELLE_FUZZ_PER_FRAME": str(args.per_frame),
        "CORVELLE_FUZZ_TRACE": trace,
        "CORVELLE_FUZZ_STATE": state,
        "PYTHONMALLOC": "malloc_debug",
        "PYTHONHASHSEED": "0",
        # Allocations a script asks for that cannot be had fail as they do outside the sanitizer
        # (MemoryError), instead of ending the run.
        "ASAN_OPTIONS": "detect_leaks=0:halt_on_error=1:abort_on_error=0:allocator_may_return_null=1",
        "UBSAN_OPTIONS": "print_stacktrace=1:halt_on_error=1",
    })
    env.pop("CORVELLE_FUZZ_ONLY", None)
    if args.only is not None:
        if not re.fullmatch(r"\d+\+?", args.only):
            parser.error("--only takes a call number, K or K+")
        env["CORVELLE_FUZZ_ONLY"] = args.only

    command = [args.xpsim, "run", "--root", root, "--plugin", args.plugin, "--frames", str(frames), "--fps",
               str(FPS), "--events", events, "--sdk", args.sdk]
    what = "seed %d, %s, SDK %s" % (args.seed, "call %s alone" % args.only if args.only is not None else
                                    "%d calls" % args.calls, args.sdk)
    print("fuzz: %s, %d frames, in %s" % (what, frames, root), flush=True)
    started = time.time()
    problems = []
    with open(os.path.join(root, "xpsim-stdout.txt"), "wb") as out, open(os.path.join(root, "xpsim-stderr.txt"),
                                                                         "wb") as err:
        process = subprocess.Popen(command, stdout=out, stderr=err, env=env, start_new_session=True)
        try:
            code = process.wait(timeout=timeout)
        except subprocess.TimeoutExpired:
            os.killpg(process.pid, signal.SIGKILL)
            process.wait()
            code = None
            problems.append("xpsim still ran after %.0f s (a hang)" % timeout)
    seconds = time.time() - started

    stderr = read(os.path.join(root, "xpsim-stderr.txt"))
    log = read(os.path.join(root, "Resources", "plugins", "PythonScripts", "CorvelleLog.txt"))
    trace_text = read(trace)
    if code is not None and code != 0:
        problems.append("xpsim exited with %s" % ("signal %d" % -code if code < 0 else "status %d" % code))
    for mark in SANITIZER_MARKS:
        if mark in stderr:
            at = stderr.index(mark)
            problems.append("standard error reports %r:\n%s" % (mark, stderr[max(0, at - 200): at + 3000]))
            break
    fails = [line for line in log.splitlines() if line.startswith("FUZZ-FAIL")]
    if fails:
        problems.append("the script's own checks failed %d times, first:\n  %s" % (len(fails), "\n  ".join(fails[:5])))
    unexpected = [line for name, line in python_errors(log)
                  if name not in ALLOWED_ERRORS and not (name == "TypeError" and ALLOWED_TYPE_ERRORS.search(line))]
    if unexpected:
        problems.append("Python errors in CorvelleLog.txt that the fuzz does not raise (%d), first:\n  %s" %
                        (len(unexpected), "\n  ".join(unexpected[:5])))
    if "FUZZ DONE" not in trace_text and code is not None:
        problems.append("the script did not finish its calls")

    last, last_numbered = last_call(trace_text)
    if not problems:
        done = [line for line in trace_text.splitlines() if line.startswith("FUZZ DONE")]
        print("fuzz: passed (%s) in %.0f s: %s" % (what, seconds, done[-1] if done else ""))
        if args.root is None:
            shutil.rmtree(root, ignore_errors=True)
        return 0

    print("fuzz: FAILED, seed %d, after %.0f s; the simulator folder is kept: %s" % (args.seed, seconds, root))
    for problem in problems:
        print("- " + problem)
    print("last traced: %s" % (last or "(nothing)"))
    events_applied = [line for line in read(os.path.join(root, "Log.txt")).splitlines()
                      if re.match(r"xpsim: [\d.]+ s \(frame \d+\): ", line)]
    if events_applied:
        print("last event:  %s" % events_applied[-1])
    if last_numbered:
        number = re.match(r"seed -?\d+ call (\d+\+?):", last_numbered).group(1)
        print("last call:   %s" % last_numbered)
        print("replay that call alone (after the setup): make fuzz SEED=%d ONLY=%s" % (args.seed, number))
        print("replay the whole sequence up to it:       make fuzz SEED=%d CALLS=%d" %
              (args.seed, int(number.rstrip("+")) + 1))
    return 1


if __name__ == "__main__":
    sys.exit(main())
