"""The sample drawings are the ones their list describes, bytes untouched by git."""

import pathlib
import unittest

import independent_reader

SAMPLES = pathlib.Path(__file__).parent.parent / "fixtures" / "dxf"
BINARY = b"AutoCAD Binary DXF\r\n\x1a\x00"


def listed():
    """Rows of SOURCES.md: file, version (with "binary" behind it for a binary file), line end."""
    for line in (SAMPLES / "SOURCES.md").read_text(encoding="utf-8").splitlines():
        cells = [cell.strip() for cell in line.strip("|").split("|")]
        if cells[0].endswith(".dxf"):
            yield cells[0], cells[1], cells[4].rsplit(", ", 1)[1]


class SampleDrawings(unittest.TestCase):

    def test_every_sample_is_listed_once(self):
        self.assertEqual(sorted(name for name, _, _ in listed()),
                         sorted(path.name for path in SAMPLES.glob("*.dxf")))

    def test_line_ends_are_as_listed(self):
        for name, version, line_end in listed():
            content = (SAMPLES / name).read_bytes()
            with self.subTest(name):
                self.assertEqual(content.startswith(BINARY), version.endswith("binary"))
                if line_end == "CRLF":
                    self.assertEqual(content.count(b"\r\n"), content.count(b"\n"))
                elif line_end == "LF":
                    self.assertNotIn(b"\r\n", content)

    def test_versions_are_as_listed(self):
        for name, version, _ in listed():
            with self.subTest(name):
                drawing = independent_reader.read(SAMPLES / name)
                wanted = version.split()[0]
                # The reader takes R14 for the next version it models.
                loaded = {"AC1014": "AC1015"}.get(wanted, wanted)
                self.assertEqual(drawing.dxfversion, loaded)


if __name__ == "__main__":
    unittest.main()
