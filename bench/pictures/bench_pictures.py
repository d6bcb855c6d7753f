#!/usr/bin/env python3
"""Measures how long pictures take, beside the exports of LibreCAD that the installed one has.

usage: bench_pictures.py [--runs N] [--entities N] [DRAWING.dxf ...]
  --runs N       runs of each measurement; the fastest counts (default 3)
  --entities N   of the generated drawing (default 100000)
  DRAWING        further drawings

Seconds are those of the processor, user and system together, of the whole program: on a busy
machine they stay what they are. The floor is reading the file's bytes; goals are those of a drawing
of 100,000 entities on one core: 3 s for SVG, 5 s for PNG.
"""

import argparse
import os
import pathlib
import resource
import shutil
import subprocess
import sys
import tempfile
import time

ROOT = pathlib.Path(__file__).resolve().parents[2]
BIN = ROOT / "build" / "release" / "bin"
ENTITIES_PER_PIPE = 3
GOALS = {"svg": 3.0, "png": 5.0}
PEER_ENVIRONMENT = dict(os.environ, QT_QPA_PLATFORM="offscreen")


def peer_kinds():
    """The formats that the installed LibreCAD exports without a window: it names its tools."""
    if not shutil.which("librecad"):
        return []
    done = subprocess.run(["librecad", "--help"], env=PEER_ENVIRONMENT, capture_output=True,
                          text=True, timeout=60)
    return [kind for kind in ("svg", "png", "pdf") if f"dxf2{kind}" in done.stdout + done.stderr]


def peer_seconds(kind, drawing, folder):
    """Of its export, which it writes beside the drawing; None when it makes none."""
    copy = folder / "peer.dxf"
    shutil.copyfile(drawing, copy)
    made = copy.with_suffix(f".{kind}")
    made.unlink(missing_ok=True)
    taken = seconds(["librecad", f"dxf2{kind}", copy], PEER_ENVIRONMENT)
    return taken if made.exists() and made.stat().st_size > 0 else None


def seconds(command, environment=None):
    """Of the processor; None when the program fails."""
    before = resource.getrusage(resource.RUSAGE_CHILDREN)
    try:
        done = subprocess.run([str(word) for word in command], capture_output=True, timeout=600,
                              env=environment)
    except subprocess.TimeoutExpired:
        return None
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    if done.returncode != 0:
        return None
    return after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime


def best(runs, command, environment=None):
    results = [seconds(command, environment) for _ in range(runs)]
    return None if None in results else min(results)


def floor(drawing):
    start = time.process_time()
    drawing.read_bytes().count(b"\n")
    return time.process_time() - start


def measure(drawing, folder, runs, goals, peers):
    print(f"{drawing.name}: {drawing.stat().st_size / 1e6:.1f} MB, floor {floor(drawing):.3f} s")
    missed = []
    for kind in ("svg", "png", "pdf"):
        out = folder / f"out.{kind}"
        own = best(runs, [BIN / "pipenote", "render", drawing, "-o", out])
        if own is None:
            sys.exit(f"bench_pictures: {drawing}: no {kind.upper()} was made")
        line = f"  {kind}  {own:7.3f} s  {out.stat().st_size / 1e6:7.2f} MB"
        if kind in peers:
            taken = peer_seconds(kind, drawing, folder)
            line += (f"   LibreCAD {taken:7.3f} s, ratio {taken / own:.1f}" if taken
                     else "   LibreCAD makes no picture")
        print(line)
        if goals and own > GOALS.get(kind, own):
            missed.append(f"{kind.upper()} took {own:.1f} s, not {GOALS[kind]:.0f} s")
    return missed


def main():
    arguments = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    arguments.add_argument("--runs", type=int, default=3)
    arguments.add_argument("--entities", type=int, default=100_000)
    arguments.add_argument("drawings", nargs="*", type=pathlib.Path)
    options = arguments.parse_args()
    peers = peer_kinds()
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        generated = folder / f"{options.entities}_entities.dxf"
        subprocess.run([BIN / "generate_drawing", "--pipes",
                        str(max(1, options.entities // ENTITIES_PER_PIPE)), generated],
                       check=True, capture_output=True)
        missed = measure(generated, folder, options.runs, options.entities == 100_000, peers)
        for drawing in options.drawings:
            measure(drawing, folder, options.runs, False, peers)
    if missed:
        sys.exit("bench_pictures: " + "; ".join(missed))


if __name__ == "__main__":
    main()
