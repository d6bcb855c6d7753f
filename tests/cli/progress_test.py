"""What a terminal shows of work that takes longer than a second, and what a pipe does not."""

import os
import pathlib
import re
import signal
import time

import calling
from calling import PROGRAM_FAILED, WRONG_USAGE
from labelled import LabellingTest


def seconds_worked_by(process):
    fields = pathlib.Path(f"/proc/{process}/stat").read_text().rpartition(")")[2].split()
    return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


class Progress(LabellingTest):
    """A converter of our own stands in for a slow one."""

    def setUp(self):
        super().setUp()
        self.labelled("Net1.inp")
        self.drawing = self.folder / "plan.dwg"
        self.drawing.write_bytes(b"AC1027 not really")
        programs = self.folder / "bin"
        programs.mkdir()
        self.environment["PATH"] = str(programs)
        self.converter = programs / "dwg2dxf"
        self.slow_reading_of(self.folder / "plan.dxf")

    def slow_reading_of(self, drawing):
        self.converter.write_text(f'#!/bin/sh\n/bin/sleep 1.2\n/bin/cp "{drawing}" "$3"\n')
        self.converter.chmod(0o755)

    def grid(self, side):
        """A model of so many streets each way, with a pipe between each two crossings."""
        nodes = range(side * side)
        pipes = [(at, at + 1) for at in nodes if (at + 1) % side] + \
                [(at, at + side) for at in nodes[:-side]]
        model = self.folder / "grid.inp"
        model.write_text("\n".join([
            "[OPTIONS]", "UNITS LPS", "[JUNCTIONS]", *(f"J{at} 10" for at in nodes), "[PIPES]",
            *(f"P{at} J{a} J{b} 60 300 100" for at, (a, b) in enumerate(pipes)), "[COORDINATES]",
            *(f"J{at} {at % side * 60} {at // side * 60}" for at in nodes)]))
        return model

    def test_a_terminal_shows_what_takes_longer_than_a_second(self):
        output = self.at_terminal("label", self.drawing, "-o", self.folder / "out.dxf")
        erase = "\r\x1b[K"
        self.assertIn(erase + "plan.dwg: reading, 1 s", output)
        self.assertNotIn("reading, 0 s", output)
        self.assertRegex(output.split(erase)[-1], r"^labels drawn")

    def test_the_bar_is_that_of_the_labels_of_one_drawing(self):
        self.slow_reading_of(self.imported(self.grid(70)))
        output = self.at_terminal("label", self.drawing, "-o", self.folder / "out.dxf")
        self.assertRegex(output, r"\[#*-*\] plan\.dwg: drawing labels, \d+%, \d+ s")
        shares = [int(share) for share in re.findall(r"drawing labels, (\d+)%", output)]
        self.assertEqual(shares, sorted(shares))
        self.slow_reading_of(self.folder / "out.dxf")
        output = self.at_terminal("update", self.drawing, "--dry-run")
        self.assertRegex(output, r"\[#*-*\] plan\.dwg: comparing labels, \d+%, \d+ s")

    def test_import_shows_how_far_it_has_come(self):
        child, terminal = self.start_at_terminal("import", self.grid(110), "-o", "out.dxf")
        while seconds_worked_by(child) < 0.1:
            time.sleep(0.01)
        os.kill(child, signal.SIGSTOP)
        time.sleep(1.0)
        os.kill(child, signal.SIGCONT)
        self.assertRegex(self.shown_until_end(child, terminal),
                         r"\[#*-*\] grid\.inp: drawing, \d+%, [1-9]\d* s")

    def test_render_shows_how_far_it_has_come(self):
        self.slow_reading_of(self.imported(self.grid(200)))
        output = self.at_terminal("render", self.drawing, "-o", self.folder / "out.svg")
        self.assertRegex(output, r"\[#*-*\] plan\.dwg: (drawing|painting), \d+%, \d+ s")

    def test_a_batch_shows_which_drawing_it_waits_for(self):
        output = self.at_terminal("batch", "info", self.drawing, self.drawing, "--jobs", 1)
        self.assertIn("[----------] 1/2 plan.dwg: running info, 1 s", output)
        self.assertIn("[#####-----] 2/2 plan.dwg: running info, ", output)
        self.assertRegex(output, "2 of 2 done")

    def test_ctrl_c_ends_labelling_and_nothing_is_written(self):
        self.slow_reading_of(self.imported(self.grid(150)))
        child, terminal = self.start_at_terminal("label", self.drawing, "-o", "out.dxf")
        shown = b""
        while b"drawing labels" not in shown:
            shown += os.read(terminal, 4096)
        os.write(terminal, b"\x03")
        self.assertIn("interrupted; nothing was written",
                      self.shown_until_end(child, terminal, PROGRAM_FAILED))
        self.assertFalse((self.folder / "out.dxf").exists())

    def test_the_bar_is_that_of_the_drawings(self):
        output = self.at_terminal("update", self.drawing, self.drawing, "--dry-run")
        self.assertIn("[----------] 1/2 plan.dwg: reading, 1 s", output)
        self.assertIn("[#####-----] 2/2 plan.dwg: reading, ", output)

    def test_what_is_quick_shows_nothing(self):
        for _ in range(5):  # a busy machine is slow now and then
            start = time.monotonic()
            output = self.at_terminal("update", self.folder / "plan.dxf", "--dry-run")
            if time.monotonic() - start < 1.0:
                return self.assertNotIn("\r\x1b", output)
        self.skipTest("nothing is quick on this machine")

    def test_a_terminal_that_cannot_erase_lines_is_shown_nothing(self):
        self.terminal = "dumb"
        output = self.at_terminal("label", self.drawing, "-o", self.folder / "out.dxf")
        self.assertTrue(output.startswith("labels drawn"), output)

    def test_a_pipe_is_shown_nothing(self):
        self.call("label", self.drawing, "-o", self.folder / "out.dxf")
        self.assertEqual(self.result.stderr, "")

    def test_no_dwg_file_is_written(self):
        before = self.drawing.read_bytes()
        for command in ("label", "update"):
            self.call(command, self.drawing, "--in-place", status=WRONG_USAGE)
            self.assert_one_line("plan.dwg")
        self.assertEqual(self.drawing.read_bytes(), before)


if __name__ == "__main__":
    calling.main()
