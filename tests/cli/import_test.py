"""`pipenote import` on real networks: what it draws, what it tells, and what it does with bad files."""

import json

import calling
import independent_reader
from calling import NETWORKS, NOT_READ, NOT_WRITTEN, PROGRAM_FAILED, SUCCESS, WRONG_USAGE

APPLICATION = "PIPENOTE"

# Pipes, nodes, and links that are no pipes, counted by hand-written rules in model_rows().
SUPPLY = ("Net1.inp", "Net3.inp", "ky4.inp")
SEWERS = ("sewer_state_plane.inp", "sewer_user2.inp")
NODE_SECTIONS = ("JUNCTIONS", "RESERVOIRS", "TANKS", "OUTFALLS", "STORAGE", "DIVIDERS")
OTHER_LINKS = ("PUMPS", "VALVES", "ORIFICES", "WEIRS", "OUTLETS")


def model_rows(path):
    """Section -> rows of fields, by a reader of its own."""
    rows, section = {}, None
    for line in path.read_text(encoding="utf-8").splitlines():
        line = line.split(";")[0].strip()
        if line.startswith("["):
            section = line.strip("[]").upper()
            rows.setdefault(section, [])
        elif line and section:
            rows[section].append(line.split())
    return rows


def pairs(entity):
    """The extended data as a dictionary; empty when there is none."""
    if not entity.has_xdata(APPLICATION):
        return {}
    values = [tag.value for tag in entity.get_xdata(APPLICATION) if tag.code != 1001]
    return dict(zip(values[::2], values[1::2]))


class Import(calling.ProgramTest):

    def setUp(self):
        super().setUp()
        self.output = self.folder / "out.dxf"

    def imported(self, model, *options, status=None):
        """The report. Lines of a model that cannot be used make it fail."""
        report = self.call("import", model, "-o", self.output, *options, status=status)
        self.assertIn(self.result.returncode, (SUCCESS, PROGRAM_FAILED) if status is None else (status,))
        return report

    def given(self, text, name="model.inp"):
        path = self.folder / name
        path.write_bytes(text if isinstance(text, bytes) else text.encode())
        return path

    def drawing(self):
        document = independent_reader.read(self.output)
        self.assertEqual(independent_reader.complaints(document), [])
        return document

    def elements(self, document):
        """Extended data of all pipes and nodes by their entity."""
        return [(entity, pairs(entity)) for entity in document.modelspace() if pairs(entity)]

    def test_every_pipe_and_node_of_the_sample_networks_is_drawn(self):
        for name in SUPPLY + SEWERS:
            with self.subTest(name):
                rows = model_rows(NETWORKS / name)
                report = json.loads(self.imported(NETWORKS / name, "--json"))
                elements = self.elements(self.drawing())
                codes = sorted(data["code"] for _, data in elements if "code" in data)
                numbers = sorted(data["number"] for _, data in elements if "number" in data)
                pipes = rows.get("PIPES", []) + rows.get("CONDUITS", [])
                nodes = sum((rows.get(section, []) for section in NODE_SECTIONS), [])
                self.assertEqual(codes, sorted(row[0] for row in pipes))
                self.assertEqual(numbers, sorted(row[0] for row in nodes))
                others = sum(len(rows.get(section, [])) for section in OTHER_LINKS)
                made = report["made"]
                self.assertEqual(sum(made.get(kind.lower(), 0) for kind in OTHER_LINKS), others)

    def test_pipes_run_from_node_to_node_through_their_bends(self):
        for name in SUPPLY + SEWERS:
            with self.subTest(name):
                rows = model_rows(NETWORKS / name)
                unit = json.loads(self.imported(NETWORKS / name, "--json"))["map_unit"]["metres"]
                places = {row[0]: [float(row[1]) * unit, float(row[2]) * unit]
                          for row in rows["COORDINATES"]}
                bends = {}
                for row in rows.get("VERTICES", []):
                    bends.setdefault(row[0], []).append([float(row[1]) * unit, float(row[2]) * unit])
                ends = {row[0]: row[1:3] for row in rows.get("PIPES", []) + rows.get("CONDUITS", [])}
                document = self.drawing()
                drawn = 0
                for entity, data in self.elements(document):
                    if "code" not in data:
                        continue
                    drawn += 1
                    start, end = ends[data["code"]]
                    wanted = [places[start], *bends.get(data["code"], []), places[end]]
                    if entity.dxftype() == "LINE":
                        points = [entity.dxf.start, entity.dxf.end]
                    else:
                        points = entity.get_points("xy")
                    self.assertEqual(len(points), len(wanted))
                    for point, place in zip(points, wanted):
                        self.assertAlmostEqual(point[0], place[0], places=6)
                        self.assertAlmostEqual(point[1], place[1], places=6)
                    for key, node in (("start_node", start), ("end_node", end)):
                        well = document.entitydb[data[key]]
                        self.assertEqual(pairs(well)["number"], node)
                self.assertEqual(drawn, len(ends))

    def test_values_of_supply_pipes_are_metres_and_millimetres(self):
        rows = model_rows(NETWORKS / "Net3.inp")
        self.imported(NETWORKS / "Net3.inp")
        sizes = {row[0]: (float(row[3]) * 0.3048, float(row[4]) * 25.4) for row in rows["PIPES"]}
        elevations = {row[0]: float(row[1]) * 0.3048 for row in rows["JUNCTIONS"]}
        for _, data in self.elements(self.drawing()):
            if data["kind"] == "water-pipe":
                self.assertAlmostEqual(data["length"], sizes[data["code"]][0])
                self.assertAlmostEqual(data["diameter"], sizes[data["code"]][1])
            elif data["number"] in elevations:
                self.assertAlmostEqual(data["ground"], elevations[data["number"]])

    def test_values_of_conduits_are_metres_and_millimetres(self):
        rows = model_rows(NETWORKS / "sewer_state_plane.inp")
        self.imported(NETWORKS / "sewer_state_plane.inp", "--system", "drainage", status=SUCCESS)
        bottoms = {row[0]: float(row[1]) for section in NODE_SECTIONS for row in rows.get(section, [])}
        conduits = {row[0]: row for row in rows["CONDUITS"]}
        sections = {row[0]: float(row[2]) * 304.8 for row in rows["XSECTIONS"]}
        for _, data in self.elements(self.drawing()):
            if data["kind"] != "drainage-pipe":
                self.assertEqual(data["kind"], "drainage-well")
                continue
            row = conduits[data["code"]]
            self.assertAlmostEqual(data["diameter"], sections[data["code"]])
            self.assertAlmostEqual(data["start_invert"], (bottoms[row[1]] + float(row[5])) * 0.3048)
            self.assertAlmostEqual(data["end_invert"], (bottoms[row[2]] + float(row[6])) * 0.3048)

    def test_every_section_that_is_not_used_is_named(self):
        for name in SUPPLY + SEWERS:
            with self.subTest(name):
                unused = json.loads(self.imported(NETWORKS / name, "--json"))["unused"]
                rows = model_rows(NETWORKS / name)
                for entry in unused:
                    self.assertEqual(entry["rows"], len(rows.pop(entry["section"].upper())))
                used = {"TITLE", "END", "OPTIONS", "PIPES", "CONDUITS", "XSECTIONS", "COORDINATES",
                        "VERTICES", "LABELS", "BACKDROP", "MAP", "SUBCATCHMENTS", "DEMANDS",
                        *NODE_SECTIONS, *OTHER_LINKS}
                self.assertLessEqual(set(rows), used)

    def test_lines_that_cannot_be_used_are_told_with_their_numbers(self):
        model = self.given("[JUNCTIONS]\nA 1\nB 2\n[PIPES]\nP A X 1 2\nQ A B 10 -5\n"
                           "[COORDINATES]\nA 0 0\nB 9 0\n[OPTIONS]\nUNITS LPS\n")
        self.imported(model, status=PROGRAM_FAILED)
        lines = self.result.stderr.splitlines()
        self.assertEqual(len(lines), 2, lines)
        self.assertTrue(lines[0].startswith(f'pipenote: {model}:5: "P" ends at the node "X"'), lines)
        self.assertTrue(lines[1].startswith(f'pipenote: {model}:6: the diameter of "Q" is -5'), lines)
        self.assertEqual(len(self.elements(self.drawing())), 3)

    def test_a_file_that_is_no_model_leaves_no_drawing(self):
        for text in ("", "[PIPES]\n", "[JUNCTIONS]\nA 1\n[PIPES]\n", b"\0\1\2" * 100, "0\nEOF\n"):
            with self.subTest(text):
                self.imported(self.given(text), status=NOT_READ)
                self.assert_one_line("model.inp: ")
                self.assertFalse(self.output.exists())

    def test_a_model_cut_off_anywhere_is_drawn_as_far_as_it_goes_or_refused(self):
        whole = (NETWORKS / "Net1.inp").read_bytes()
        headings = [at for at in range(len(whole)) if whole[at:at + 1] == b"["]
        for end in sorted({*headings, *(at + 3 for at in headings), *range(0, len(whole), 997)}):
            with self.subTest(end):
                self.output.unlink(missing_ok=True)
                self.call("import", self.given(whole[:end]), "-o", self.output, status=None)
                self.assertIn(self.result.returncode, (SUCCESS, PROGRAM_FAILED, NOT_READ))
                self.assertEqual(self.output.exists(), self.result.returncode != 3)
                if self.output.exists():
                    self.drawing()
                for line in self.result.stderr.splitlines():
                    self.assertIn("model.inp:", line)

    def test_values_that_make_no_sense_are_told_and_the_rest_is_drawn(self):
        good = ("[JUNCTIONS]\nA 1\nB 2\nC 3\n[PIPES]\nP A B 10 200\nQ B C 10 200\n[COORDINATES]\n"
                "A 0 0\nB 10 0\nC 20 0\n[OPTIONS]\nUNITS LPS\n")
        for old, new, line, drawn in (
                ("C 20", "C nan", 11, 3), ("C 20", "C inf", 11, 3), ("C 20", "C 1e308", 11, 3),
                ("C 20", "C x", 11, 3), ("P A B", "P A A", 6, 5), ("P A B", "P A Z", 6, 4),
                ("B 10", "B 0", 6, 5), ("P A B 10 200", "P A B 10 -200", 6, 5),
                ("P A B 10", "P A B -10", 6, 5), ("Q B C", "P B C", 7, 4), ("C 3", "A 3", 4, 3),
                ("P A B", "P" + "x" * 300 + " A B", 6, 4)):
            with self.subTest(new):
                self.output.unlink(missing_ok=True)
                model = self.given(good.replace(old, new))
                self.imported(model, status=PROGRAM_FAILED)
                self.assertTrue(self.result.stderr.startswith("pipenote: "), self.result.stderr)
                self.assertIn(f"pipenote: {model}:{line}: ", self.result.stderr)
                self.assertEqual(len(self.elements(self.drawing())), drawn)

    def test_a_long_line_is_read_and_shown_by_its_beginning(self):
        model = self.given("[JUNCTIONS]\nA 1\nB 2\n[PIPES]\nP A B 10 " + "9" * 10_000_000 +
                           "\n[COORDINATES]\nA 0 0\nB 10 0\n")
        self.imported(model, status=PROGRAM_FAILED)
        self.assertEqual(self.result.stderr.count("\n"), 1)
        self.assertLess(len(self.result.stderr), 300)

    def test_a_drawing_that_cannot_be_written_is_named(self):
        self.output = self.folder / "no" / "out.dxf"
        self.imported(NETWORKS / "Net1.inp", status=NOT_WRITTEN)
        self.assertIn("out.dxf", self.result.stderr)

    def test_wrong_options_are_refused(self):
        for options in (("--system", "gas"), ("--map-unit", "0"), ("--scale", "-1")):
            with self.subTest(options):
                self.imported(NETWORKS / "Net1.inp", *options, status=WRONG_USAGE)
                self.assertFalse(self.output.exists())

    def test_the_report_reads_well(self):
        text = self.imported(NETWORKS / "Net1.inp", status=SUCCESS)
        for part in ("a water supply network of EPANET", "GPM: feet and inches, converted",
                     "pipes                    12", "[PATTERNS], line 56: 2 lines",
                     "without lines: [TAGS], [STATUS]"):
            self.assertIn(part, text)


if __name__ == "__main__":
    calling.main(verbosity=2)
