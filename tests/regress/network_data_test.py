"""Data of pipes and nodes that were changed read back as meant; all other groups are as they were."""

import pathlib
import subprocess
import sys
import tempfile
import unittest

import independent_reader

GENERATOR = ""
CHANGER = ""
SAMPLE = pathlib.Path(__file__).resolve().parents[1] / "fixtures" / "dxf" / "network_sample.dxf"

PIPES = ("water-pipe", "drainage-pipe", "storm-pipe")
NODES = ("water-node", "hydrant", "drainage-well", "storm-well")


def data_of(entity):
    """Group and value of each tag, texts without escapes; none for an entity without data."""
    if not entity.has_xdata("PIPENOTE"):
        return []
    return [(tag.code, independent_reader.plain_text(tag.value) if tag.code == 1000 else tag.value)
            for tag in entity.get_xdata("PIPENOTE")]


def with_value(data, key, value):
    """The data with the value in the place of the one that is there, else at the end."""
    if (1000, key) not in data:
        return data + [(1000, key), value]
    at = data.index((1000, key)) + 1
    # A key without a value is followed by another key, or by nothing.
    missing = at == len(data) or (value[0] != 1000 and data[at][0] == 1000)
    return data[:at] + [value] + data[at + (0 if missing else 1):]


def without(data, key):
    at = data.index((1000, key)) if (1000, key) in data else len(data)
    return data[:at] + data[at + 2:]


class NetworkData(unittest.TestCase):

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def changed(self, path):
        out = self.folder / "out.dxf"
        subprocess.run([CHANGER, path, out], check=True)
        before, after = independent_reader.read(path), independent_reader.read(out)
        self.assertEqual(independent_reader.complaints(after),
                         independent_reader.complaints(before))
        return before, after

    def wanted(self, entity):
        data = data_of(entity)
        kind = data[data.index((1000, "kind")) + 1][1] if (1000, "kind") in data else None
        if kind in PIPES:
            for key, value in (("diameter", (1040, 456.5)), ("material", (1070, 7)),
                               ("code", (1000, "新^管\\1")),
                               ("end_node", (1005, entity.dxf.handle))):
                data = with_value(data, key, value)
            data = without(data, "start_invert")
        elif kind in NODES:
            data = with_value(data, "ground", (1040, 12.25))
            data = with_value(data, "number", (1000, "井 9"))
        return data

    def assert_changed_as_meant(self, path):
        before, after = self.changed(path)
        count = 0
        for old, new in zip(before.modelspace(), after.modelspace(), strict=True):
            self.assertEqual(old.dxf.handle, new.dxf.handle)
            with self.subTest(entity=str(old)):
                self.assertEqual(data_of(new), self.wanted(old))
                if old.has_xdata("OTHER"):
                    self.assertEqual(old.get_xdata("OTHER"), new.get_xdata("OTHER"))
            count += data_of(new) != data_of(old)
        return count

    def test_in_a_drawing_with_data_in_every_form(self):
        self.assertEqual(self.assert_changed_as_meant(SAMPLE), 12 + 15)

    def test_in_drawings_of_each_release(self):
        for version in ("R2000", "R2004", "R2007", "R2010", "R2013", "R2018"):
            with self.subTest(version=version):
                path = self.folder / "network.dxf"
                subprocess.run([GENERATOR, "--network", "--pipes", "20", "--version", version, path],
                               check=True)
                self.assertEqual(self.assert_changed_as_meant(path), 20 + 21)


if __name__ == "__main__":
    GENERATOR, CHANGER = sys.argv.pop(1), sys.argv.pop(1)
    unittest.main()
