"""Complete utility programs on real drawings and networks. What each must print and draw is worked
out here a second time, from the network's own file or from what an independent reader finds."""

import math
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

import ezdxf.path
import independent_reader

PROGRAM = ""
HERE = pathlib.Path(__file__).resolve().parent
FIXTURES = HERE.parent / "fixtures"


class Network:
    """The sections of a model file."""

    def __init__(self, path):
        self.sections = {}
        section = None
        for line in path.read_text(encoding="latin-1").splitlines():
            words = line.split(";")[0].split()
            if words and words[0].startswith("["):
                section = self.sections.setdefault(words[0].strip("[]").upper(), [])
            elif words:
                section.append(words)
        self.places = {row[0]: (float(row[1]), float(row[2])) for row in self["COORDINATES"]}

    def __getitem__(self, name):
        return self.sections.get(name, [])

    def points(self, pipe):
        bends = [(float(row[1]), float(row[2])) for row in self["VERTICES"] if row[0] == pipe[0]]
        return [self.places[pipe[1]], *bends, self.places[pipe[2]]]

    def straight_length(self, pipe):
        return math.dist(self.places[pipe[1]], self.places[pipe[2]])


def fixed(value, digits):
    """A number as rtos writes it in decimal units with all its zeros: exact ties go up."""
    scaled = math.floor(abs(value) * 10**digits + 0.5)
    text = f"{scaled / 10**digits:.{digits}f}"
    return "-" + text if value < 0 and scaled else text


def trimmed(value, digits):
    text = fixed(value, digits)
    return text.rstrip("0").rstrip(".") if "." in text else text


def lwpolyline_length(entity):
    points = list(entity.get_points("xyb"))
    if entity.closed:
        points.append(points[0])
    total = 0.0
    for (x1, y1, bulge), (x2, y2, _) in zip(points, points[1:]):
        chord = math.dist((x1, y1), (x2, y2))
        if bulge:
            angle = 4 * math.atan(abs(bulge))
            chord = chord / (2 * math.sin(angle / 2)) * angle
        total += chord
    return total


def lwpolyline_area(entity):
    points = list(entity.get_points("xyb"))
    total = 0.0
    for (x1, y1, bulge), (x2, y2, _) in zip(points, points[1:] + points[:1]):
        total += (x1 * y2 - x2 * y1) / 2
        if bulge:
            angle = 4 * math.atan(bulge)
            radius = math.dist((x1, y1), (x2, y2)) / (2 * math.sin(angle / 2))
            total += radius * radius * (angle - math.sin(angle)) / 2
    return abs(total)


class Programs(unittest.TestCase):

    @classmethod
    def setUpClass(cls):
        cls.folder_owner = tempfile.TemporaryDirectory()
        cls.folder = pathlib.Path(cls.folder_owner.name)
        for path in (FIXTURES / "networks").glob("*.inp"):
            shutil.copy(path, cls.folder)
        for name in ("net3", "ky4"):
            printed = cls.run_program(FIXTURES / "dxf" / "r2007_empty_acad2013.dxf",
                                      "import_network.lsp", "(c:importnet)",
                                      [{"net3": "Net3.inp", "ky4": "ky4.inp"}[name]],
                                      output=cls.folder / f"{name}.dxf")
            setattr(cls, name + "_printed", printed)

    @classmethod
    def tearDownClass(cls):
        cls.folder_owner.cleanup()

    @classmethod
    def run_program(cls, drawing, program, call, answers=(), output=None, status=0):
        """What the program printed; its answers are not repeated by it."""
        answer_file = cls.folder / "answers.txt"
        answer_file.write_text("".join(line + "\n" for line in answers), encoding="utf-8")
        done = subprocess.run(
            [PROGRAM, "run", drawing, HERE / program, "-e", call, "--answers", answer_file,
             *(["-o", output] if output else [])],
            cwd=cls.folder, capture_output=True, encoding="utf-8", timeout=120)
        if done.returncode != status:
            raise AssertionError(f"{program}: status {done.returncode}\n{done.stdout}{done.stderr}")
        return done.stdout

    def draw(self, drawing, program, call, answers=()):
        """What the program printed, and the drawing it made, which must be sound."""
        output = self.folder / "out.dxf"
        printed = self.run_program(drawing, program, call, answers, output)
        document = independent_reader.read(output)
        before = independent_reader.complaints(independent_reader.read(drawing))
        complaints = [c for c in independent_reader.complaints(document) if c not in before]
        # The reader does not know the escapes of names that the drawing's code page lacks.
        self.assertEqual([c for c in complaints if "layer name \"\\U+" not in c], [])
        return printed, document

    def new_entities(self, drawing, document):
        known = {entity.dxf.handle for entity in independent_reader.read(drawing).modelspace()}
        return [e for e in document.modelspace() if e.dxf.handle not in known]

    def assert_last_line(self, printed, expected):
        self.assertEqual(printed.strip().splitlines()[-1].strip(), expected)

    def assert_near(self, found, expected, places=6):
        for a, b in zip(tuple(found)[:2], expected):
            self.assertAlmostEqual(a, b, places)

    def sample(self, name):
        return FIXTURES / "dxf" / f"{name}.dxf"

    # --- Drawing a network

    def check_network(self, name, model):
        network = Network(FIXTURES / "networks" / model)
        total = sum(float(pipe[3]) for pipe in network["PIPES"])
        self.assert_last_line(
            getattr(self, name + "_printed"),
            f"{len(network['PIPES'])} pipes, {trimmed(total, 1)} ft, {len(network.places)} nodes.")
        document = independent_reader.read(self.folder / f"{name}.dxf")
        self.assertEqual(independent_reader.complaints(document), [])
        pipes = document.modelspace().query('LWPOLYLINE[layer=="W-PIPE"]')
        self.assertEqual(len(pipes), len(network["PIPES"]))
        for drawn, pipe in zip(pipes, network["PIPES"]):
            self.assertEqual(list(drawn.get_points("xy")), network.points(pipe))
            data = [tag.value for tag in drawn.get_xdata("NETIMPORT")]
            self.assertEqual(data[-3:], [pipe[0], float(pipe[3]), float(pipe[4])])
        nodes = document.modelspace().query('INSERT[name=="W-NODE"]')
        self.assertEqual({node.get_attrib_text("NO"): tuple(node.dxf.insert)[:2] for node in nodes},
                         network.places)
        self.assertEqual(document.layers.get("W-PIPE").color, 5)

    def test_a_network_is_drawn_from_its_model(self):
        self.check_network("net3", "Net3.inp")

    def test_a_network_with_bends_is_drawn_from_its_model(self):
        self.check_network("ky4", "ky4.inp")

    # --- Reports

    def test_pipe_lengths_are_added_up_by_layer(self):
        drawing = self.sample("r2000_sample_xrecords")
        lengths, counts = {}, {}
        for entity in independent_reader.read(drawing).modelspace():
            kind = entity.dxftype()
            if kind == "POLYLINE" and (entity.is_polygon_mesh or entity.is_poly_face_mesh):
                continue  # a surface has no length
            if kind == "LINE":
                length = entity.dxf.start.distance(entity.dxf.end)
            elif kind == "LWPOLYLINE":
                length = lwpolyline_length(entity)
            elif kind == "CIRCLE":
                length = 2 * math.pi * entity.dxf.radius
            elif kind == "ARC":
                sweep = (entity.dxf.end_angle - entity.dxf.start_angle) % 360
                length = math.radians(sweep) * entity.dxf.radius
            elif kind in ("ELLIPSE", "SPLINE", "POLYLINE"):
                points = (list(entity.flattening(1e-5)) if kind != "POLYLINE" else
                          list(ezdxf.path.make_path(entity).flattening(1e-5)))
                length = sum(a.distance(b) for a, b in zip(points, points[1:]))
            else:
                continue
            lengths[entity.dxf.layer] = lengths.get(entity.dxf.layer, 0.0) + length
            counts[entity.dxf.layer] = counts.get(entity.dxf.layer, 0) + 1
        printed = self.run_program(drawing, "pipe_lengths.lsp", "(c:pl)")
        rows = [re.fullmatch(r"(\S+) +(\d+) +([0-9.]+)", line) for line in
                printed.strip().splitlines()[:-1]]
        self.assertEqual([row[1] for row in rows], sorted(lengths, key=str.upper))
        for row in rows:
            self.assertEqual(int(row[2]), counts[row[1]])
            self.assertAlmostEqual(float(row[3]), lengths[row[1]], delta=0.002)

    def test_layers_are_reported_with_their_entities(self):
        drawing = self.sample("r2013_ansi936_utf8")
        document = independent_reader.read(drawing)
        tally = {}
        for layout in document.layouts:
            for entity in layout:
                kinds = tally.setdefault(entity.dxf.layer.upper(), {})
                kinds[entity.dxftype()] = kinds.get(entity.dxftype(), 0) + 1
        expected = []
        in_file = drawing.read_text(encoding="utf-8")
        layers = [layer for layer in document.layers if layer.dxf.name in in_file]  # not the reader's
        for layer in sorted(layers, key=lambda layer: layer.dxf.name):
            flags = (("F" if layer.is_frozen() else "-") + ("L" if layer.is_locked() else "-") +
                     ("O" if layer.is_off() else "-"))
            kinds = sorted(tally.get(layer.dxf.name.upper(), {}).items())
            expected.append(f'"{layer.dxf.name} [{flags}] colour {abs(layer.dxf.color)}, '
                            f'{layer.dxf.linetype}:' +
                            "".join(f" {count} {kind}" for kind, count in kinds) + '"')
        printed = self.run_program(drawing, "layer_report.lsp", "(c:layrep)")
        self.assertEqual([line.strip() for line in printed.strip().splitlines()], expected)

    def test_nodes_are_written_to_a_table(self):
        network = Network(FIXTURES / "networks" / "Net3.inp")
        printed = self.run_program(self.folder / "net3.dxf", "export_csv.lsp", "(c:csvout)",
                                   ["W-NODE", "nodes.csv"])
        self.assert_last_line(printed, f"{len(network.places)} rows written to nodes.csv")
        rows = [line.split(",") for line in (self.folder / "nodes.csv").read_text().splitlines()]
        self.assertEqual(rows[0], ["handle", "block", "number", "x", "y"])
        nearest_first = sorted(network.places.items(), key=lambda item: math.hypot(*item[1]))
        self.assertEqual([row[1:] for row in rows[1:]],
                         [["W-NODE", name, fixed(x, 2), fixed(y, 2)]
                          for name, (x, y) in nearest_first])

    # --- Changing what is there

    def test_wells_are_numbered_again(self):
        network = Network(FIXTURES / "networks" / "Net3.inp")
        printed, document = self.draw(self.folder / "net3.dxf", "renumber_wells.lsp", "(c:renum)",
                                      ["W-NODE", "", "J ", "100", "r"])
        self.assert_last_line(printed, f"{len(network.places)} numbered.")
        rows = sorted(network.places.values(), key=lambda place: (-place[1], place[0]))
        found = {node.get_attrib_text("NO"): tuple(node.dxf.insert)[:2]
                 for node in document.modelspace().query("INSERT")}
        self.assertEqual(found, {f"J {100 + i}": place for i, place in enumerate(rows)})

    def test_texts_are_replaced_wherever_they_stand(self):
        drawing = self.sample("r2000_sample_xrecords")
        document = independent_reader.read(drawing)
        locked = {layer.dxf.name for layer in document.layers if layer.is_locked()}
        texts = [text for layout in document.layouts for text in layout.query("TEXT MTEXT")]
        for block in document.blocks:
            if not block.name.startswith("*"):
                texts += block.query("TEXT MTEXT")
        for layout in document.layouts:
            texts += [attrib for insert in layout.query("INSERT") for attrib in insert.attribs]
        def content(entity):
            return entity.text if entity.dxftype() == "MTEXT" else entity.dxf.text
        hits = [entity for entity in texts if "sample" in content(entity)]
        kept = [entity for entity in hits if entity.dxf.layer in locked]
        self.assertGreater(len(hits), 0)
        printed, changed = self.draw(drawing, "replace_text.lsp", "(c:tr)",
                                     ["sample", "specimen"])
        expected = f"{len(hits) - len(kept)} texts changed"
        if kept:
            expected += f", {len(kept)} on locked layers"
        self.assert_last_line(printed, expected)
        for entity in hits:
            found = content(changed.entitydb[entity.dxf.handle])
            if entity in kept:
                self.assertEqual(found, content(entity))
            else:
                self.assertEqual(found, content(entity).replace("sample", "specimen"))

    # --- Drawing

    def test_coordinates_are_labelled(self):
        drawing = self.folder / "net3.dxf"
        printed, document = self.draw(
            drawing, "label_coordinates.lsp", "(c:zb)",
            ["0.5", "10.25,20.125", "@3,4", "30,5", "@2<180", ""])
        made = self.new_entities(drawing, document)
        self.assertEqual([e.dxftype() for e in made], ["LWPOLYLINE", "TEXT", "TEXT"] * 2)
        self.assertEqual({e.dxf.layer for e in made}, {"coord"})
        self.assertEqual([e.dxf.text for e in made if e.dxftype() == "TEXT"],
                         ["X=20.125", "Y=10.25", "X=5", "Y=30"])
        right = 0.8 * 0.5 * len("X=20.125")
        self.assertEqual([tuple(round(c, 9) for c in p) for p in made[0].get_points("xy")],
                         [(10.25, 20.125), (13.25, 24.125), (round(13.25 + right, 9), 24.125)])
        left = 0.8 * 0.5 * len("Y=30")
        self.assert_near(made[3].get_points("xy")[2], (28 - left, 5))
        self.assert_near(made[4].dxf.insert, (28 - left, 5.15))

    def test_stations_are_marked_along_a_pipe_with_bends(self):
        drawing = self.folder / "ky4.dxf"
        network = Network(FIXTURES / "networks" / "ky4.inp")
        pipe = max(network["PIPES"], key=lambda p: len(network.points(p)))
        points = network.points(pipe)
        printed, document = self.draw(
            drawing, "chainage.lsp", "(c:chain)",
            ["%.12f,%.12f" % points[0] if len(points) == 2 else
             "%.9f,%.9f" % tuple((a + b) / 2 for a, b in zip(points[1], points[2])), "", "10"])
        length = sum(math.dist(a, b) for a, b in zip(points, points[1:]))
        stations = [100.0 * i for i in range(math.ceil((length - 1e-6) / 100))] + [length]
        self.assert_last_line(printed, f"{len(stations)} stations, length {trimmed(length, 3)}.")
        made = self.new_entities(drawing, document)
        self.assertEqual([e.dxftype() for e in made], ["LINE", "TEXT"] * len(stations))
        for tick, text, station in zip(made[::2], made[1::2], stations):
            place = along(points, station)
            self.assert_near((tick.dxf.start + tick.dxf.end) / 2, place, 5)
            self.assertAlmostEqual(tick.dxf.start.distance(tick.dxf.end), 20, 5)
            thousands, rest = divmod(station, 1000)
            digits = 0 if abs(station - round(station)) < 1e-4 else 2
            number = trimmed(rest, digits)
            zeros = "0" * (3 - len(str(int(rest + 1e-6))))
            self.assertEqual(text.dxf.text, f"K{int(thousands)}+{zeros}{number}")
            self.assertEqual(text.dxf.layer, "STATION")
        self.assertEqual(document.header["$CLAYER"], "0")

    def test_a_program_that_is_broken_off_is_cancelled_and_nothing_is_written(self):
        drawing = self.sample("r2007_empty_acad2013")
        output = self.folder / "broken.dxf"
        output.unlink(missing_ok=True)
        printed = self.run_program(drawing, "sheet_frame.lsp", "(c:frame)", ["A4", "2"], output,
                                   status=1)
        self.assertRegex(printed, 'no answer left for "Lower left corner: " '
                                  r'\(line 2 of .*answers\.txt was the last\)')
        self.assertNotIn("Error:", printed)  # the program's own handler took it for a cancellation
        self.assertFalse(output.exists())

    def test_flow_arrows_point_from_start_to_end(self):
        drawing = self.folder / "net3.dxf"
        network = Network(FIXTURES / "networks" / "Net3.inp")
        links = network["PIPES"] + network["PUMPS"] + network["VALVES"]
        base = independent_reader.read(self.sample("r2007_empty_acad2013")).modelspace()
        chords = [math.dist(p[0], p[-1]) for p in
                  (e.get_points("xy") for e in base.query("LWPOLYLINE"))]
        chords += [network.straight_length(link) for link in links]
        printed, document = self.draw(drawing, "flow_arrows.lsp", "(c:farrow)", ["all", "", "0.4"])
        arrows = sum(chord >= 0.8 for chord in chords)
        self.assert_last_line(printed, f"{arrows} arrows, {len(chords) - arrows} pipes too short")
        solids = document.modelspace().query('SOLID[layer=="FLOW"]')
        self.assertEqual(len(solids), arrows)
        centers = {}
        for pipe in network["PIPES"]:
            a, b = network.places[pipe[1]], network.places[pipe[2]]
            if math.dist(a, b) >= 0.8:
                angle = math.atan2(b[1] - a[1], b[0] - a[0])
                tip = ((a[0] + b[0]) / 2 + 0.2 * math.cos(angle),
                       (a[1] + b[1]) / 2 + 0.2 * math.sin(angle))
                centers[tuple(round(c, 6) for c in tip)] = pipe[0]
        tips = {tuple(round(c, 6) for c in tuple(solid.dxf.vtx2)[:2]) for solid in solids}
        self.assertEqual(set(centers) - tips, set())

    def test_areas_are_numbered_and_listed(self):
        drawing = self.sample("r2000_sample_xrecords")
        space = independent_reader.read(drawing).modelspace()
        closed = [e for e in space.query("LWPOLYLINE") if e.closed]
        printed, document = self.draw(drawing, "area_table.lsp", "(c:areatab)",
                                      ["all", "", "1.5", "500,500"])
        total = sum(lwpolyline_area(e) for e in closed)
        found = re.search(r"Total area ([0-9.]+)", printed)
        self.assertAlmostEqual(float(found[1]), total, delta=0.001)
        made = self.new_entities(drawing, document)
        self.assertEqual(len(made), 2 * len(closed) + 2)
        rows = [e.dxf.text.split() for e in made[len(closed):2 * len(closed)]]
        self.assertEqual(sorted(float(row[1]) for row in rows),
                         sorted(float(trimmed(lwpolyline_area(e), 2)) for e in closed))
        self.assertEqual(sorted(float(row[2]) for row in rows),
                         sorted(float(trimmed(lwpolyline_length(e), 2)) for e in closed))

    def test_a_sheet_gets_its_frame(self):
        drawing = self.folder / "net3.dxf"
        printed, document = self.draw(drawing, "sheet_frame.lsp", "(c:frame)", ["", "0.5", "-10,-10"])
        self.assert_last_line(printed, "A3 frame with 4 rows.")
        made = self.new_entities(drawing, document)
        self.assertEqual({e.dxf.layer for e in made}, {"FRAME"})
        outer, inner = [e for e in made if e.dxftype() == "LWPOLYLINE"]
        self.assertEqual([p[:2] for p in outer.get_points("xy")],
                         [(-10, -10), (200, -10), (200, 138.5), (-10, 138.5)])
        self.assertTrue(outer.closed and inner.closed)
        self.assertEqual({(s, e) for s, e in inner.get_points("se")}, {(0.35, 0.35)})
        texts = [e for e in made if e.dxftype() == "TEXT"]
        self.assertEqual([e.dxf.text for e in texts],
                         ["Project", "Net 3", "Sheet", "W-01", "Scale", "1:1", "Date", "2026-03"])
        self.assertEqual({(e.dxf.style, e.dxf.width, e.dxf.height) for e in texts},
                         {("FRAME", 0.8, 1.75)})
        self.assertEqual(document.styles.get("FRAME").dxf.width, 0.8)
        self.assertEqual(document.layers.get("FRAME").dxf.lineweight, 50)
        self.assertEqual(document.header["$CLAYER"], "0")

    def test_a_second_pipe_is_laid_beside_the_first(self):
        drawing = self.folder / "ky4.dxf"
        network = Network(FIXTURES / "networks" / "ky4.inp")
        pipe = max((p for p in network["PIPES"] if len(network.points(p)) == 2),
                   key=network.straight_length)
        (x1, y1), (x2, y2) = network.points(pipe)
        length = math.dist((x1, y1), (x2, y2))
        left = (-(y2 - y1) / length, (x2 - x1) / length)
        middle = ((x1 + x2) / 2, (y1 + y2) / 2)
        side = (middle[0] + 50 * left[0], middle[1] + 50 * left[1])
        printed, document = self.draw(drawing, "parallel_pipe.lsp", "(c:ppipe)",
                                      ["%.9f,%.9f" % middle, "25", "%.9f,%.9f" % side])
        self.assert_last_line(printed, "Chambers touch: yes")
        second, chamber, copy = self.new_entities(drawing, document)
        expected = [(x + 25 * left[0], y + 25 * left[1]) for x, y in ((x1, y1), (x2, y2))]
        for found, place in zip(second.get_points("xy"), expected):
            self.assert_near(found, place, 5)
        self.assertEqual(second.dxf.layer, "PIPE-2")
        cx, cy = second.get_points("xy")[0]
        reach = 2 * math.sqrt(2)
        corners = [(cx, cy - reach), (cx + reach, cy), (cx, cy + reach), (cx - reach, cy)]
        for found, place in zip(chamber.get_points("xy"), corners):
            self.assert_near(found, place, 5)
        for found, place in zip(copy.get_points("xy"), corners):
            self.assert_near(found, (place[0] + 10, place[1] + 5), 5)

    def test_an_old_program_in_a_chinese_code_page_labels_pipes(self):
        drawing = self.sample("r2000_sample_xrecords")
        document = independent_reader.read(drawing)
        hidden = {layer.dxf.name for layer in document.layers if layer.is_frozen() or layer.is_off()}
        lines = [e for e in document.modelspace().query("LINE") if e.dxf.layer not in hidden]
        long_ones = [e for e in lines if e.dxf.start.distance(e.dxf.end) > 1]
        printed, changed = self.draw(drawing, "chinese_labels.lsp", "(c:gxbz)", ["all", "", ""])
        self.assert_last_line(printed, f"共标注{len(long_ones)}条管线\\n个数={len(long_ones)}")
        labels = self.new_entities(drawing, changed)
        self.assertEqual({independent_reader.plain_text(e.dxf.layer) for e in labels}, {"管线标注"})
        self.assertEqual(
            sorted(independent_reader.plain_text(e.dxf.text) for e in labels),
            sorted(f"DN300，长{fixed(e.dxf.start.distance(e.dxf.end), 2)}米" for e in long_ones))


def along(points, distance):
    for a, b in zip(points, points[1:]):
        step = math.dist(a, b)
        if distance <= step + 1e-9:
            return tuple(p + (q - p) * distance / step for p, q in zip(a, b))
        distance -= step
    return points[-1]


if __name__ == "__main__":
    PROGRAM = sys.argv.pop(1)
    unittest.main()
