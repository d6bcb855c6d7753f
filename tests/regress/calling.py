"""The program under test, called as its users call it: from a shell or at a terminal."""

import os
import pathlib
import pty
import subprocess
import sys
import tempfile
import unittest

SOURCE = pathlib.Path(__file__).resolve().parents[2]
FIXTURES = SOURCE / "tests" / "fixtures"
DRAWINGS = FIXTURES / "dxf"
NETWORKS = FIXTURES / "networks"
SAMPLE_NETWORKS = ("Net1.inp", "Net3.inp", "ky4.inp", "sewer_state_plane.inp", "sewer_user2.inp")

# What the program answers to the shell.
SUCCESS, PROGRAM_FAILED, WRONG_USAGE, NOT_READ, NOT_WRITTEN = range(5)

TIMEOUT = 300  # seconds, of a call


class ProgramTest(unittest.TestCase):
    """Each test has a folder of its own, in which nothing of it outlives it."""

    program = ""  # its path; main() takes it from the command line
    terminal = "xterm"  # what start_at_terminal() says it is

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.environment = dict(os.environ)

    def call(self, *arguments, status=SUCCESS, stdin="", **options):
        """What a call prints; all about it stays in self.result. A status of None is any."""
        self.result = subprocess.run([self.program, *map(os.fspath, map(as_argument, arguments))],
                                     input=stdin, capture_output=True, text=True, check=False,
                                     env=self.environment, timeout=TIMEOUT, **options)
        if status is not None:
            self.assertEqual(self.result.returncode, status,
                             self.result.stdout + self.result.stderr)
        return self.result.stdout

    def assert_one_line(self, *parts):
        """The last call had one thing to tell, and it names these."""
        told = self.result.stderr
        self.assertEqual(told.count("\n"), 1, told)
        self.assertTrue(told.startswith("pipenote: "), told)
        for part in parts:
            self.assertIn(part, told)

    def at_terminal(self, *arguments, status=SUCCESS):
        """What a call shows at a terminal."""
        return self.shown_until_end(*self.start_at_terminal(*arguments), status)

    def start_at_terminal(self, *arguments):
        """The process and the terminal's other end, to type on and to read."""
        child, terminal = pty.fork()
        if child == 0:
            os.chdir(self.folder)
            environment = {**self.environment, "TERM": self.terminal}
            os.execve(self.program, [self.program, *map(str, arguments)], environment)
        return child, terminal

    def shown_until_end(self, child, terminal, status=SUCCESS):
        shown = b""
        while True:
            try:
                piece = os.read(terminal, 4096)
            except OSError:
                piece = b""
            if not piece:
                break
            shown += piece
        os.close(terminal)
        _, ended = os.waitpid(child, 0)
        self.assertEqual(os.waitstatus_to_exitcode(ended), status, shown)
        return shown.decode(errors="replace")


def as_argument(argument):
    """Numbers as texts; paths, texts and bytes as they are."""
    return argument if isinstance(argument, (str, bytes, os.PathLike)) else str(argument)


def main(**options):
    """Runs the tests of the calling file; the program is the first argument."""
    ProgramTest.program = os.path.abspath(sys.argv.pop(1))
    unittest.main(**options)
