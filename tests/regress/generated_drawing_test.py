"""The drawings that benchmarks run on are drawings to an independent reader too."""

import pathlib
import subprocess
import sys
import tempfile
import unittest

import independent_reader

GENERATOR = ""
PIPES = 200


def pipe_data(entity):
    """The PIPENOTE pairs of an entity: group and value by key."""
    tags = list(entity.get_xdata("PIPENOTE"))
    return {key.value: (value.code, value.value) for key, value in zip(tags[::2], tags[1::2])}


class GeneratedDrawing(unittest.TestCase):

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.path = pathlib.Path(folder.name) / "pipes.dxf"

    def generate(self, *options):
        subprocess.run([GENERATOR, "--pipes", str(PIPES), *options, self.path], check=True)
        return independent_reader.read(self.path)

    def assert_holds_every_pipe(self, drawing):
        self.assertEqual(independent_reader.complaints(drawing), [])
        pipes = drawing.modelspace().query("LINE")
        self.assertEqual(len(pipes), PIPES)
        for pipe in pipes:
            diameter, length = independent_reader.record_items(pipe, "pcgb")
            self.assertEqual((diameter[0], length[0]), ("pipe_dia", "pipe_len"))
            for item in (diameter, length):
                text = drawing.entitydb[item[1]]
                self.assertEqual(text.dxf.layer, "ZY-标注")
                self.assertEqual(text.dxf.text, item[2] + item[3] + item[4])
            drawn = (pipe.dxf.end - pipe.dxf.start).magnitude
            self.assertAlmostEqual(drawn, float(length[3]), places=4)

    def test_a_utf8_drawing_with_windows_line_ends_is_the_default(self):
        drawing = self.generate()
        self.assertEqual(drawing.dxfversion, "AC1027")
        content = self.path.read_bytes()
        self.assertEqual(content.count(b"\n"), content.count(b"\r\n"))
        self.assertIn("ZY-标注".encode("utf-8"), content)
        self.assert_holds_every_pipe(drawing)

    def test_an_old_drawing_is_in_its_code_page(self):
        drawing = self.generate("--version", "R2000", "--code-page", "ANSI_936", "--lf")
        self.assertEqual(drawing.dxfversion, "AC1015")
        content = self.path.read_bytes()
        self.assertNotIn(b"\r", content)
        self.assertIn("ZY-标注".encode("gbk"), content)
        self.assert_holds_every_pipe(drawing)

    def test_the_newest_version_loads(self):
        self.assert_holds_every_pipe(self.generate("--version", "R2018"))

    def test_what_the_code_page_lacks_is_escaped(self):
        self.generate("--version", "R2000", "--code-page", "ANSI_1252")
        self.assertIn(rb"ZY-\U+6807\U+6CE8", self.path.read_bytes())

    def test_the_handle_seed_is_above_every_handle(self):
        drawing = self.generate()
        seed = int(drawing.header["$HANDSEED"], 16)
        lines = self.path.read_bytes().split(b"\r\n")
        pairs = list(zip(lines[::2], lines[1::2]))
        stored = int(pairs[pairs.index((b"  9", b"$HANDSEED")) + 1][1], 16)
        handles = [int(value, 16) for code, value in pairs if code in (b"  5", b"105")][1:]
        self.assertEqual(len(handles), len(set(handles)))
        self.assertGreater(stored, max(handles))
        self.assertGreaterEqual(seed, stored)

    def test_a_network_joins_its_pipes_by_wells(self):
        drawing = self.generate("--network")
        self.assertEqual(independent_reader.complaints(drawing), [])
        pipes = drawing.modelspace().query("LINE")
        wells = drawing.modelspace().query("CIRCLE")
        self.assertEqual((len(pipes), len(wells)), (PIPES, PIPES + 1))
        self.assertGreater(int(drawing.header["$HANDSEED"], 16),
                           max(int(well.dxf.handle, 16) for well in wells))
        for number, pipe in enumerate(pipes):
            data = pipe_data(pipe)
            self.assertEqual(data["kind"], (1000, "drainage-pipe"))
            self.assertGreater(data["start_invert"][1], data["end_invert"][1])
            for key, point in (("start_node", pipe.dxf.start), ("end_node", pipe.dxf.end)):
                self.assertEqual(key in data, number % 4 != 3)
                if key not in data:
                    continue
                self.assertEqual(data[key][0], 1005)
                well = drawing.entitydb[data[key][1]]
                self.assertTrue(well.dxf.center.isclose(point))
                self.assertEqual(pipe_data(well)["kind"], (1000, "drainage-well"))

    def test_a_version_that_does_not_exist_is_wrong_usage(self):
        done = subprocess.run([GENERATOR, "--version", "R13", self.path], capture_output=True)
        self.assertEqual(done.returncode, 2)
        self.assertFalse(self.path.exists())

    def test_a_file_that_cannot_be_written_says_so(self):
        missing = self.path.parent / "missing" / "pipes.dxf"
        done = subprocess.run([GENERATOR, missing], capture_output=True, text=True)
        self.assertEqual(done.returncode, 1)
        self.assertIn(f"{missing}: cannot write: No such file or directory", done.stderr)


if __name__ == "__main__":
    GENERATOR = sys.argv.pop(1)
    unittest.main()
