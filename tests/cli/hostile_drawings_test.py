"""Drawings that others have damaged: labelled, updated and checked without a crash, the rest is done, and
what is written can be read."""

import pathlib
import random
import re
import subprocess
import sys
import tempfile
import unittest

import independent_reader

PROGRAM = ""
NETWORK = pathlib.Path(__file__).resolve().parents[1] / "fixtures" / "networks" / "Net1.inp"
SUCCESS, PROGRAM_FAILED, WRONG_USAGE, NOT_READ, NOT_WRITTEN = range(5)
READING = ("check", "network", "records", "info")


def records_of(path):
    """The file as lists of tags [code, value], a record each."""
    lines = path.read_text(encoding="utf-8").split("\n")
    records = []
    for code, value in zip(lines[::2], lines[1::2]):
        if code.strip() == "0":
            records.append([])
        records[-1].append([code.strip(), value])
    return records


def kind(record):
    return record[0][1]


def value(record, code):
    return next((tag[1] for tag in record if tag[0] == code), None)


def holds_data(record):
    return ["1001", "PIPENOTE"] in record


def is_pipe(record):
    return holds_data(record) and kind(record) in ("LINE", "LWPOLYLINE")


def with_diameter(records, diameter="456.0"):
    for record in filter(is_pipe, records):
        place = record.index(["1000", "diameter"])
        record[place + 1][1] = diameter
    return records


class HostileDrawings(unittest.TestCase):

    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.folder = pathlib.Path(folder.name)
        cls.plain, cls.labelled = cls.folder / "plain.dxf", cls.folder / "labelled.dxf"
        for command in (("import", NETWORK, "-o", cls.plain), ("label", cls.plain, "-o", cls.labelled)):
            subprocess.run([PROGRAM, *map(str, command)], check=True, capture_output=True)

    def setUp(self):
        self.drawing, self.output = self.folder / "drawing.dxf", self.folder / "out.dxf"
        self.output.unlink(missing_ok=True)

    def given(self, records):
        self.drawing.write_text("".join(f"{code}\n{text}\n" for record in records
                                        for code, text in record), encoding="utf-8")

    def run_program(self, command, *options):
        """A run that must end by itself; what it writes must be readable."""
        writes = command not in READING
        self.output.unlink(missing_ok=True)
        arguments = [PROGRAM, command, str(self.drawing), *options]
        result = subprocess.run(arguments + (["-o", str(self.output)] if writes else []),
                                capture_output=True, text=True, errors="replace", timeout=60)
        self.assertIn(result.returncode, (SUCCESS, PROGRAM_FAILED, NOT_READ), result.stderr)
        for line in result.stderr.splitlines():
            self.assertLess(len(line), 500)
        if result.returncode == NOT_READ:
            self.assertIn("drawing.dxf", result.stderr)
            self.assertFalse(self.output.exists())
        if self.output.exists():
            again = subprocess.run([PROGRAM, "info", str(self.output)], capture_output=True, timeout=60)
            self.assertEqual(again.returncode, SUCCESS, again.stderr)
        return result

    def run_everything(self):
        for command in ("label", "update", *READING):
            self.run_program(command)
        self.run_program("update", "--overwrite-edited")
        self.run_program("label", "--types", "bzjg,pcgb,pcjdb,xdgj")

    def test_a_drawing_cut_off_anywhere_is_refused_or_done_as_far_as_it_goes(self):
        whole = self.labelled.read_bytes()
        for end in range(0, len(whole), 1501):
            with self.subTest(end):
                self.drawing.write_bytes(whole[:end])
                for command in ("label", "update", "check"):
                    self.run_program(command)

    def test_damaged_values_are_no_crash(self):
        chance = random.Random(7)
        whole = records_of(self.labelled)
        handles = [value(record, "5") for record in whole if value(record, "5")]
        wrong = ["nan", "inf", "1e308", "-1e308", "", "0", "-1", "99999999999999999999", "x" * 300,
                 "FFFFFFFFFFFFFFFF", "{", "}", "非"]
        for seed in range(15):
            with self.subTest(seed):
                records = [[list(tag) for tag in record] for record in whole]
                for _ in range(chance.choice((1, 3, 10, 40))):
                    tag = chance.choice(chance.choice(records))
                    if tag[0] != "0":
                        tag[1] = chance.choice(chance.choice((wrong, handles)))
                self.given(records)
                self.run_everything()

    def test_records_that_lead_elsewhere_harm_nothing(self):
        records = with_diameter(records_of(self.labelled))
        texts = [value(record, "5") for record in records if kind(record) == "TEXT"]
        others = [value(record, "5") for record in records if holds_data(record)]
        for named in (others[0], others[-1], texts[0], "1", "0", "zz", "", "FFFFFFFFFFFFFFFFF"):
            with self.subTest(named):
                damaged = with_diameter(records_of(self.labelled))
                for record in damaged:
                    for tag in record if kind(record) == "XRECORD" else ():
                        if tag == ["1", texts[-1]]:
                            tag[1] = named
                self.given(damaged)
                self.run_program("update", "--overwrite-edited")
                left = {value(record, "5") for record in records_of(self.output)}
                self.assertLessEqual(set(others) | set(texts[:-1]), left)

    def test_items_that_are_none_are_told_by_check(self):
        def cut(record):
            record.pop()

        def numbers(record):
            for tag in record[5:]:
                if tag[0] == "1":
                    tag[:] = ["40", "1.0"]

        for damage, told in ((cut, "no multiple of 8"), (numbers, "which holds no text")):
            with self.subTest(told):
                records = with_diameter(records_of(self.labelled))
                for record in records:
                    if kind(record) == "XRECORD":
                        damage(record)
                self.given(records)
                result = self.run_program("check")
                self.assertEqual(result.returncode, PROGRAM_FAILED)
                self.assertIn(told, result.stdout)
                self.run_everything()

    def test_missing_layers_and_styles_do_not_keep_labels_from_being_updated(self):
        for missing in ("LAYER", "STYLE", "APPID"):
            with self.subTest(missing):
                records = with_diameter(records_of(self.labelled))
                self.given([record for record in records if kind(record) != missing])
                result = self.run_program("update")
                self.assertEqual(result.returncode, SUCCESS, result.stderr)
                self.assertIn('-> "DN456": updated', result.stdout)

    def test_an_owner_that_is_gone_is_told_by_the_handle_of_its_label(self):
        records = with_diameter(records_of(self.labelled))
        owner = [value(record, "5") for record in records if is_pipe(record)][0]
        self.given([record for record in records if value(record, "5") != owner])
        result = self.run_program("update")
        self.assertRegex(result.stdout, rf"drawing.dxf: [0-9A-F]+: owner gone \(its owner {owner} is gone\): kept")

    def test_malformed_data_are_told_with_their_handle_and_the_rest_is_labelled(self):
        damages = {
            "no data": lambda data: [],
            "only a kind": lambda data: data[:2],
            "a key without value": lambda data: data[:-1],
            "texts for everything": lambda data: [["1000", text] for _, text in data],
            "no numbers": lambda data: [[c, "wide" if c == "1040" else v] for c, v in data],
            "too large": lambda data: data + [["1000", "x" * 250]] * 70,
            "a long text": lambda data: [["1000", "x" * 20000]] + data,
            "an open brace": lambda data: [["1002", "{"]] + data,
            "no nodes": lambda data: [[c, "FFFFFF" if c == "1005" else v] for c, v in data],
        }
        for name, damage in damages.items():
            with self.subTest(name):
                records = records_of(self.plain)
                pipe = next(filter(is_pipe, records))
                begin = pipe.index(["1001", "PIPENOTE"]) + 1
                pipe[begin:] = damage(pipe[begin:])
                self.given(records)
                result = self.run_program("label")
                self.assertEqual(result.returncode, SUCCESS)
                drawn = int(re.search(r"labels drawn +(\d+)", result.stdout)[1])
                self.assertGreaterEqual(drawn, 22, result.stdout)
                if name != "no numbers":  # the other reader refuses such drawings
                    independent_reader.read(self.output)
                result = self.run_program("network")
                self.assertEqual(result.returncode, PROGRAM_FAILED)
                if name != "too large":
                    self.assertIn(f"\n{value(pipe, '5')} ", result.stdout)


if __name__ == "__main__":
    PROGRAM = sys.argv.pop(1)
    unittest.main(verbosity=2)
