"""Labels as an independent reader finds them in a saved drawing."""

import math
import pathlib
import subprocess
import sys
import tempfile
import unittest

from ezdxf.enums import TextEntityAlignment

import independent_reader

PROGRAM, INSTALL = sys.argv[1], pathlib.Path(sys.argv[2])
ALIGNMENTS = {
    (0, 0): TextEntityAlignment.LEFT, (1, 0): TextEntityAlignment.CENTER,
    (2, 0): TextEntityAlignment.RIGHT,
    (0, 1): TextEntityAlignment.BOTTOM_LEFT, (1, 1): TextEntityAlignment.BOTTOM_CENTER,
    (2, 1): TextEntityAlignment.BOTTOM_RIGHT,
    (0, 2): TextEntityAlignment.MIDDLE_LEFT, (1, 2): TextEntityAlignment.MIDDLE_CENTER,
    (2, 2): TextEntityAlignment.MIDDLE_RIGHT,
    (0, 3): TextEntityAlignment.TOP_LEFT, (1, 3): TextEntityAlignment.TOP_CENTER,
    (2, 3): TextEntityAlignment.TOP_RIGHT,
}


class DrawnLabels(unittest.TestCase):

    @classmethod
    def setUpClass(cls):
        with tempfile.TemporaryDirectory() as folder:
            out = pathlib.Path(folder) / "labels.dxf"
            subprocess.run([PROGRAM, INSTALL, out], check=True, capture_output=True)
            cls.document = independent_reader.read(out)
        cls.space = cls.document.modelspace()

    def test_the_drawing_has_nothing_wrong(self):
        self.assertEqual(independent_reader.complaints(self.document), [])

    def test_texts_are_aligned_where_they_were_put(self):
        for text in self.space.query('TEXT[text ? "DN300.*"]'):
            across, up = (int(digit) for digit in text.dxf.text[-2:])
            alignment, first, _ = text.get_placement()
            self.assertEqual(alignment, ALIGNMENTS[across, up])
            self.assertTrue(first.isclose((100 * across, 100 * up, 0)), text.dxf.text)
            self.assertAlmostEqual(text.dxf.rotation, math.degrees(0.5))
            self.assertAlmostEqual(text.dxf.height, 1.75)
            self.assertAlmostEqual(text.dxf.width, 0.7)
            self.assertEqual(text.dxf.layer, "ZY-标注")
            self.assertEqual(text.dxf.color, 256)
        self.assertEqual(len(self.space.query("TEXT")), 13)

    def test_texts_begin_where_a_reader_that_trusts_the_first_point_draws_them(self):
        """Back from the alignment point by half the width or all of it, up or down by the height."""
        starts = {}
        for text in self.space.query('TEXT[text ? "DN300.*"]'):
            turned = (text.dxf.insert - text.dxf.get("align_point", text.dxf.insert)).rotate_deg(
                -text.dxf.rotation)
            starts[text.dxf.text[-2:]] = turned
        width = -starts["20"].x
        self.assertGreater(width, 5 * 1.75 * 0.7)
        for key, start in starts.items():
            across, up = int(key[0]), int(key[1])
            self.assertAlmostEqual(start.x, -width * across / 2, delta=1e-6 + width * 0.1)
            if up != 1:
                self.assertAlmostEqual(start.y, {0: 0, 2: -1.75 / 2, 3: -1.75}[up])
            else:
                self.assertTrue(0 < start.y < 1.75)

    def test_a_flipped_text_is_upside_down_about_the_base(self):
        (text,) = self.space.query('TEXT[text == "flipped"]')
        self.assertAlmostEqual(text.dxf.rotation % 360, 180)
        self.assertTrue(text.get_placement()[1].isclose((-10, -60, 0), abs_tol=1e-6))

    def test_lines_have_their_widths(self):
        (line,) = self.space.query("LINE")
        self.assertEqual((tuple(line.dxf.end), line.dxf.color), ((50, -10, 0), 1))
        wide, thin, arrow = self.space.query("LWPOLYLINE")
        self.assertEqual(wide.dxf.const_width, 0.5)
        self.assertEqual(len(thin), 3)
        self.assertFalse(thin.has_width)
        (x0, y0, s0, e0, _), (_, _, s1, e1, _), (x2, y2, *_) = arrow.get_points()
        self.assertAlmostEqual(math.hypot(x2 - x0, y2 - y0), 5.25)
        self.assertEqual((s0, e0, e1), (0, 0, 0))
        self.assertAlmostEqual(s1, 0.35)

    def test_symbols_are_inserted_with_their_blocks(self):
        left, mid, on_line = self.space.query("INSERT")
        self.assertEqual([left.dxf.name, mid.dxf.name, on_line.dxf.name],
                         ["psjt", "psjt", "cd01015"])
        self.assertTrue(left.dxf.insert.isclose((6.25, 70, 0)))
        self.assertTrue(mid.dxf.insert.isclose((-10, -80, 0), abs_tol=1e-6))
        self.assertEqual((left.dxf.xscale, on_line.dxf.xscale), (0.5, 2))
        self.assertEqual((left.dxf.rotation, mid.dxf.rotation), (0, 270))
        self.assertEqual((left.dxf.layer, mid.dxf.layer), ("ZY-标注", "ZY-箭头"))
        for name in ("psjt", "cd01015"):
            self.assertEqual(len(self.document.blocks.get(name)), 1)

    def test_new_layers_have_the_colour_of_the_settings(self):
        self.assertEqual(self.document.layers.get("ZY-标注").color, 3)

    def test_the_symbol_drawings_installed_have_nothing_wrong(self):
        for path in ("szwdl/psjt.dwg", "Dwg/ktwdljtk/cd01015.dwg"):
            symbol = independent_reader.read(INSTALL / path)
            self.assertEqual(independent_reader.complaints(symbol), [])
            self.assertEqual({entity.dxf.layer for entity in symbol.modelspace()}, {"0"})
            self.assertEqual({entity.dxf.color for entity in symbol.modelspace()}, {0})


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
