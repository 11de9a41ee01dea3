#!/usr/bin/env python3
"""Reloads the soak script many times in xpsim and reports the process's resident memory.

    soak.py --xpsim XPSIM --plugin Corvelle.xpl --datarefs DataRefs.txt [--reloads 100]
            [--scripts 3] [--max-growth-mb MB]

Each reload is the control panel's Reload Scripts button, with that many copies of the script.
Each copy prints the resident memory at
each of its starts; the run prints it at reloads 1, 10, 50 and the last. With --max-growth-mb it
fails when memory at the last reload exceeds memory at reload 10 by more than that.
"""
import argparse
import os
import shutil
import subprocess
import sys
import tempfile

HERE = os.path.dirname(os.path.abspath(__file__))
OPEN_PANEL = 'menu Plugins/Corvelle/Control Panel'
RELOAD_SCRIPTS = 'click 615 164'  # the panel's Reload Scripts button
FPS = 20


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument('--xpsim', required=True)
    parser.add_argument('--plugin', required=True)
    parser.add_argument('--datarefs', required=True)
    parser.add_argument('--reloads', type=int, default=100)
    parser.add_argument('--scripts', type=int, default=3)
    parser.add_argument('--max-growth-mb', type=float)
    args = parser.parse_args()
    if args.reloads < 10:
        parser.error('--reloads must be at least 10')

    root = tempfile.mkdtemp(prefix='corvelle-soak-')
    try:
        scripts = os.path.join(root, 'Resources', 'plugins', 'PythonScripts')
        os.makedirs(scripts)
        shutil.copy(args.datarefs, os.path.join(root, 'Resources', 'plugins', 'DataRefs.txt'))
        for n in range(args.scripts):
            shutil.copy(os.path.join(HERE, 'CV_Soak.py'), os.path.join(scripts, f'CV_Soak{n + 1}.py'))
        # One reload every second frame, after the panel is open.
        events = [f'0.1 {OPEN_PANEL}'] + [f'{0.2 + i * 2 / FPS:.2f} {RELOAD_SCRIPTS}' for i in range(args.reloads)]
        with open(os.path.join(root, 'events.txt'), 'w') as f:
            f.write('\n'.join(events) + '\n')
        frames = int((0.2 + args.reloads * 2 / FPS) * FPS) + 4
        command = [args.xpsim, 'run', '--root', root, '--plugin', args.plugin, '--fps', str(FPS),
                   '--frames', str(frames), '--events', os.path.join(root, 'events.txt')]
        run = subprocess.run(command, capture_output=True, text=True)
        if run.returncode != 0:
            print(f'soak: xpsim ended with {run.returncode}: {" ".join(command)}\n{run.stdout}{run.stderr}')
            return 1
        with open(os.path.join(scripts, 'CorvelleOutput.txt'), errors='replace') as f:
            rss = [int(line.split()[2]) for line in f if line.startswith('soak rss ')]
        # Every script prints at every start; the last of a start is the one that counts.
        rss = rss[args.scripts - 1::args.scripts]
        # The first start is the plugin's own; reload n is start n.
        if len(rss) != args.reloads + 1:
            print(f'soak: {len(rss) - 1} reloads seen instead of {args.reloads}')
            return 1
        for n in sorted({1, 10, 50, args.reloads}):
            if n <= args.reloads:
                print(f'reload {n:3d}: resident {rss[n] / 1024:8.1f} MB')
        growth = (rss[args.reloads] - rss[10]) / 1024
        print(f'growth from reload 10 to {args.reloads}: {growth:.1f} MB')
        if args.max_growth_mb is not None and growth > args.max_growth_mb:
            print(f'soak: memory grew by more than {args.max_growth_mb} MB')
            return 1
        return 0
    finally:
        shutil.rmtree(root, ignore_errors=True)


if __name__ == '__main__':
    sys.exit(main())
