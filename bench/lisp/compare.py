#!/usr/bin/env python3
"""Times LISP algorithms beside TinyScheme and the byte-code compiler of ECL, where installed.

Each algorithm is written the same way in three dialects: NAME.lsp (ours), NAME.scm, NAME.lisp. What
is measured is the processor time of a whole process less that of nothing.*; every program prints a
result, and all must print the same. The ratios say how many times our time the peer takes: above 1
ours is faster.

usage: bench/lisp/compare.py [--runs N] [--program RUN_LISP] [NAME...]
"""

import argparse
import pathlib
import resource
import shutil
import statistics
import subprocess
import sys
import tempfile

HERE = pathlib.Path(__file__).resolve().parent
ROOT = HERE.parent.parent
# Beside TinyScheme the lists are short, for it keeps no more than some 50,000 cells; it cannot read
# single characters of a string either. What it cannot do stands beside ECL alone.
NAMES = ["fib", "lists", "strings", "entities", "long_lists", "texts"]


def timed(command):
    """Processor seconds of one run, and what it printed last."""
    before = resource.getrusage(resource.RUSAGE_CHILDREN)
    done = subprocess.run(command, capture_output=True, text=True, stdin=subprocess.DEVNULL)
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    if done.returncode != 0:
        sys.exit(f"{' '.join(map(str, command))}: exit {done.returncode}: {done.stderr}")
    spent = after.ru_utime - before.ru_utime + after.ru_stime - before.ru_stime
    return spent, (done.stdout.split("\n") or [""])[-1].strip()


class Ours:
    title = "ours"

    def __init__(self, program):
        self.program = program

    def command(self, name):
        return [self.program, HERE / f"{name}.lsp"] if (HERE / f"{name}.lsp").exists() else None


class TinyScheme:
    title = "TinyScheme"

    def command(self, name):
        source = HERE / f"{name}.scm"
        return ["tinyscheme", source] if source.exists() else None


class EclByteCode:
    title = "ECL byte-code"

    def __init__(self, folder):
        self.folder = pathlib.Path(folder)

    def command(self, name):
        compiled = self.folder / f"{name}.fasc"
        if not compiled.exists():
            source = self.folder / f"{name}.lisp"
            shutil.copy(HERE / f"{name}.lisp", source)
            subprocess.run(
                ["ecl", "-norc", "--eval", "(ext:install-bytecodes-compiler)", "--eval",
                 f'(compile-file "{source}" :output-file "{compiled}")', "--eval", "(ext:quit)"],
                check=True, capture_output=True)
        return ["ecl", "-norc", "--eval", "(setq *load-verbose* nil)", "--eval",
                f'(load "{compiled}")', "--eval", "(main)", "--eval", "(ext:quit 0)"]


def seconds_of(peer, name, runs):
    """The median, and the result; None when the peer has no such program."""
    command = peer.command(name)
    if command is None:
        return None, None
    results = [timed(command) for _ in range(runs)]
    return statistics.median(spent for spent, _ in results), results[0][1]


def main():
    parser = argparse.ArgumentParser(usage=__doc__.split("usage: ", 1)[1])
    parser.add_argument("--runs", type=int, default=3)
    parser.add_argument("--program", default=ROOT / "build" / "release" / "bin" / "run_lisp_file")
    parser.add_argument("names", nargs="*", default=NAMES)
    options = parser.parse_args()

    with tempfile.TemporaryDirectory(prefix="lisp-bench-") as folder:
        peers = [Ours(options.program)]
        peers += [TinyScheme()] if shutil.which("tinyscheme") else []
        peers += [EclByteCode(folder)] if shutil.which("ecl") else []
        starts = [seconds_of(peer, "nothing", options.runs)[0] for peer in peers]
        print(f"{'':<12}" + "".join(f"{peer.title + ' s':>18}" for peer in peers)
              + "".join(f"{'x ' + peer.title:>18}" for peer in peers[1:]))
        disagree = False
        for name in options.names:
            measured = [seconds_of(peer, name, options.runs) for peer in peers]
            times = [None if spent is None else max(spent - start, 1e-4)
                     for (spent, _), start in zip(measured, starts)]
            print(f"{name:<12}" + "".join(f"{'-' if t is None else f'{t:.3f}':>18}" for t in times)
                  + "".join(f"{'-' if t is None else f'{t / times[0]:.2f}':>18}" for t in times[1:]),
                  flush=True)
            results = {result for _, result in measured if result is not None}
            if len(results) > 1:
                disagree = True
                print(f"  results differ: {sorted(results)}")
    return 1 if disagree else 0


if __name__ == "__main__":
    sys.exit(main())
