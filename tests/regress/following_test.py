"""Labels follow their pipes, end to end: LISP programs record, update and delete labels on real
drawings, the drawing is saved, and an independent reader finds the texts and arrows as they must be."""

import json
import math
import pathlib
import subprocess
import sys
import tempfile
import unittest

import independent_reader

PROGRAM = ""
SOURCE = pathlib.Path(__file__).resolve().parents[2]
FIXTURES = SOURCE / "tests" / "fixtures" / "dxf"
EXAMPLES = SOURCE / "examples"

# Texts whose layer is not locked are labels of the line or polyline that comes before them.
LABELLING = """
(defun writable (name)
  (zerop (logand 4 (cdr (assoc 70 (tblsearch "LAYER" (cdr (assoc 8 (entget name)))))))))
(defun handle (name) (cdr (assoc 5 (entget name))))
(setq labels (ssget "X" '((0 . "TEXT,MTEXT")))
      owners (ssget "X" '((0 . "LINE,LWPOLYLINE,CIRCLE,ARC,INSERT")))
      n 0 made 0)
(defun next-owner (/ found)
  (while (and (not found) owners (< n (sslength owners)))
    (if (writable (ssname owners n)) (setq found (ssname owners n)))
    (setq n (1+ n)))
  found)
(setq i 0)
(while (and labels (< made 6) (< i (sslength labels)))
  (setq label (ssname labels i) i (1+ i))
  (if (and (writable label) (setq owner (next-owner)))
    (progn
      (dimRec (list owner "pcgb") label "pipe_dia" "300" "DN" "" "，")
      (dimRec (list owner "pcgb") label "pipe_len" "36.5" "长" "m" "")
      (setq made (1+ made))
      %s
      (princ (strcat (handle owner) " " (handle label) "\\n")))))
"""
UPDATING = """
(dimupdate owner "pipe_len" "41.25")
(dimupdate owner "pipe_dia" "400" T "管径 DN" "" " - ")
"""
# An arrow on the first piece of every pipe of an imported network.
ARROWS = """
(entmake '((0 . "BLOCK") (2 . "FLOW") (70 . 0) (10 0.0 0.0 0.0)))
(entmake '((0 . "LINE") (10 -1.0 0.0 0.0) (11 1.0 0.0 0.0)))
(entmake '((0 . "ENDBLK")))
(defun ends (entity / groups points)
  (foreach group (entget entity)
    (if (member (car group) '(10 11)) (setq points (cons (cdr group) points))))
  (reverse points))
(setq pipes (ssget "X" '((0 . "LINE,LWPOLYLINE") (-3 ("PIPENOTE")))) n 0)
(repeat (sslength pipes)
  (setq pipe (ssname pipes n) n (1+ n) points (ends pipe)
        arrow (entmakex (list '(0 . "INSERT") '(2 . "FLOW") '(50 . 0.25)
                              (list 10 (/ (+ (caar points) (caadr points)) 2)
                                       (/ (+ (cadar points) (cadadr points)) 2) 0.0))))
  (dimRec (list pipe "xzgj") arrow "jt" "->" nil nil nil)
  (updateJtDirection pipe))
(princ (sslength pipes))
"""
# A well's number, an attribute of the block that stands for the well.
NUMBERED_WELL = """
(entmake '((0 . "BLOCK") (2 . "NUMBERED") (70 . 2) (10 0.0 0.0 0.0)))
(entmake '((0 . "ENDBLK")))
(entmake '((0 . "INSERT") (66 . 1) (2 . "NUMBERED") (10 1.0 2.0 0.0)))
(entmake '((0 . "ATTRIB") (2 . "NO") (1 . "?") (70 . 0) (10 1.0 2.0 0.0) (40 . 2.5)))
(entmake '((0 . "SEQEND")))
(setq well (entlast))
(dimRec (list well "bjbh") (entnext well) "well_bh" "7" "W" "" "")
(dimupdate well "well_bh" "8")
(princ (strcat (cdr (assoc 5 (entget well))) " " (cdr (assoc 5 (entget (entnext well))))))
"""
UPDATED = "管径 DN400 - 长41.3m"  # ties are rounded up


class Labelled:
    """A drawing in which labels were recorded."""

    def __init__(self, drawing, path, pairs):
        self.drawing = drawing
        self.path = path
        self.pairs = pairs  # handles of owner and label
        self.entities = {e.dxf.handle for e in independent_reader.read(path).modelspace()}


class Following(unittest.TestCase):

    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.shared = pathlib.Path(folder.name)
        cls.labelled = []
        for drawing in sorted(FIXTURES.glob("*.dxf")):
            if drawing.name.startswith("r12"):
                continue
            path, pairs = cls.run_program(drawing, LABELLING % "", cls.shared)
            if pairs:
                cls.labelled.append(Labelled(drawing, path, pairs))

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.assertGreater(len(self.labelled), 3, "drawings with texts to label")

    @staticmethod
    def call(*arguments):
        done = subprocess.run([PROGRAM, *map(str, arguments)], capture_output=True, text=True,
                              timeout=120, check=False)
        if done.returncode != 0:
            raise AssertionError(done.stdout + done.stderr)
        return done.stdout

    @classmethod
    def run_program(cls, drawing, program, folder):
        """The drawing that the program makes of it, and the (owner, label) handles it printed."""
        script = folder / "labels.lsp"
        script.write_text(program, encoding="utf-8")
        out = folder / drawing.name
        pairs = [tuple(line.split()) for line in
                 cls.call("run", drawing, script, "-o", out).splitlines() if line]
        return out, pairs

    def run_on_owners(self, labelled, call):
        """The labelled drawing after a call for each owner, which it finds as `owner`."""
        program = "".join(f'(setq owner (handent "{owner}")) {call}' for owner, _ in labelled.pairs)
        out = self.folder / labelled.drawing.name
        self.call("run", labelled.path, "-e", f"(progn {program} (princ))", "-o", out)
        return out

    @staticmethod
    def text_of(document, handle):
        entity = document.entitydb[handle]
        text = entity.text if entity.dxftype() == "MTEXT" else entity.dxf.text
        return independent_reader.plain_text(text)

    def complaints(self, path):
        return len(independent_reader.complaints(independent_reader.read(path)))

    def test_texts_follow_their_values(self):
        for labelled in self.labelled:
            with self.subTest(drawing=labelled.drawing.name):
                out, pairs = self.run_program(labelled.drawing, LABELLING % UPDATING, self.folder)
                self.assertEqual(pairs, labelled.pairs)
                document = independent_reader.read(out)
                for owner, label in pairs:
                    self.assertEqual(self.text_of(document, label), UPDATED)
                    items = independent_reader.record_items(document.entitydb[owner], "pcgb")
                    self.assertEqual(
                        [tuple(map(independent_reader.plain_text, item)) for item in items],
                        [("pipe_dia", label, "管径 DN", "400", "", " - ", "", ""),
                         ("pipe_len", label, "长", "41.3", "m", "", "", "")])
                self.assertEqual(self.complaints(out), self.complaints(labelled.drawing))
                self.call("check", out)

    def test_an_attribute_follows_like_a_text(self):
        for labelled in self.labelled:
            with self.subTest(drawing=labelled.drawing.name):
                out, [(well, number)] = self.run_program(labelled.drawing, NUMBERED_WELL,
                                                         self.folder)
                [attribute] = independent_reader.read(out).entitydb[well].attribs
                self.assertEqual(attribute.dxf.handle, number)
                self.assertEqual(attribute.dxf.text, "W8")
                self.assertEqual(self.complaints(out), self.complaints(labelled.drawing))
                self.call("check", out)

    def test_texts_follow_after_the_drawing_was_saved(self):
        for labelled in self.labelled:
            with self.subTest(drawing=labelled.drawing.name):
                document = independent_reader.read(self.run_on_owners(labelled, UPDATING))
                for _, label in labelled.pairs:
                    self.assertEqual(self.text_of(document, label), UPDATED)

    def test_deleted_labels_are_gone_and_nothing_else(self):
        for labelled in self.labelled:
            with self.subTest(drawing=labelled.drawing.name):
                out = self.run_on_owners(labelled, "(dimDelAll owner)")
                document = independent_reader.read(out)
                self.assertEqual({e.dxf.handle for e in document.modelspace()},
                                 labelled.entities - {label for _, label in labelled.pairs})
                for owner, _ in labelled.pairs:
                    self.assertIsNone(independent_reader.record_items(document.entitydb[owner],
                                                                      "pcgb"))
                self.assertEqual(json.loads(self.call("records", out, "--json")), [])

    def test_forgotten_labels_stay_drawn(self):
        for labelled in self.labelled:
            with self.subTest(drawing=labelled.drawing.name):
                out = self.run_on_owners(labelled, "(dimDelAllInfo owner)")
                document = independent_reader.read(out)
                self.assertEqual({e.dxf.handle for e in document.modelspace()}, labelled.entities)
                self.assertEqual(json.loads(self.call("records", out, "--json")), [])

    def base_drawing(self):
        return FIXTURES / "r2007_empty_acad2013.dxf"

    def test_the_example_with_all_functions(self):
        out = self.folder / "out.dxf"
        printed = self.call("run", self.base_drawing(), EXAMPLES / "labels-follow.lsp",
                            "--answers", EXAMPLES / "labels-follow.txt", "-o", out)
        self.assertEqual(printed.splitlines(), [
            "length and slope: DN300 L=41.5m i=6.2‰",
            "in mm: 41520.0mm",
            "diameter: De400, L=41.5m i=6.2‰",
            "arrow: 0.00",
            'placed: (("zh_mc" "K0+020") ("ang_yx" 0.7854) ("dist_jgbz" 12.5) ("ang_wz" 0.0) '
            '("czfx_jgbz" nil) ("xfdh" "1"))',
            "standard: GB",
            "",
            "请选择一个实体:last",
            "1 found",
            "",
            "请选择一个实体:",
            "left of the labels: (1 0 0 1)",
        ])
        before = {e.dxf.handle for e in independent_reader.read(self.base_drawing()).modelspace()}
        made = [e for e in independent_reader.read(out).modelspace() if e.dxf.handle not in before]
        self.assertEqual([e.dxftype() for e in made], ["POINT", "POINT", "LINE", "TEXT", "INSERT"])
        self.assertEqual(independent_reader.plain_text(made[3].dxf.text), "De400, L=41.5m i=6.2‰")
        arrow = made[4]
        self.assertAlmostEqual(arrow.dxf.rotation, 0.0)
        self.assertEqual(independent_reader.record_items(arrow, "pcgb"),
                         [("pipe_flow", "", "", "12345678.00", "", "", "", "")])
        records = json.loads(self.call("records", out, "--json"))
        self.assertEqual([(r["owner"], r["type"]) for r in records], [(arrow.dxf.handle, "pcgb")])
        self.assertEqual(self.complaints(out), self.complaints(self.base_drawing()))

    def test_an_arrow_turns_with_the_flow(self):
        first, turned = self.folder / "first.dxf", self.folder / "turned.dxf"
        self.call("run", self.base_drawing(), EXAMPLES / "labels-follow.lsp", "--answers",
                  EXAMPLES / "labels-follow.txt", "-o", first)
        swap = """(progn
            (setq pipe (ssname (ssget "X" '((0 . "LINE") (-3 ("PIPENOTE")))) 0)
                  arrow (ssname (ssget "X" '((0 . "INSERT"))) 0)
                  data (entget pipe '("PIPENOTE")))
            (dimRec (list pipe "xzgj") arrow "jt" "->" nil nil nil)
            (entmod (subst '(1040 . 2.5) '(1040 . 3.2) data))
            (setq xdata (cdr (cadr (assoc -3 data))))
            (entmod (list (cons -1 pipe)
                          (list -3 (cons "PIPENOTE" (subst '(1040 . 2.5) '(1040 . 3.2) xdata)))))
            (updateJtDirection pipe) (princ))"""
        self.call("run", first, "-e", swap, "-o", turned)
        arrow, = independent_reader.read(turned).modelspace().query("INSERT")
        self.assertAlmostEqual(math.remainder(arrow.dxf.rotation - 180, 360), 0.0)

    def test_arrows_point_downhill_in_real_sewers(self):
        script = self.folder / "arrows.lsp"
        script.write_text(ARROWS, encoding="utf-8")
        uphill = 0
        for model in ["sewer_state_plane", "sewer_user2"]:
            drawing, out = self.folder / (model + ".dxf"), self.folder / "arrows.dxf"
            subprocess.run([PROGRAM, "import", SOURCE / "tests/fixtures/networks" / (model + ".inp"),
                            "-o", drawing], capture_output=True, timeout=120, check=False)
            count = int(self.call("run", drawing, script, "-o", out))
            self.assertGreater(count, 40)
            document = independent_reader.read(out)
            found = 0
            for pipe in document.modelspace().query("LINE LWPOLYLINE"):
                items = independent_reader.record_items(pipe, "xzgj")
                if not items:
                    continue
                found += 1
                data = [tag.value for tag in pipe.get_xdata("PIPENOTE")]
                values = dict(zip(data[::2], data[1::2]))
                start, end = ((pipe.dxf.start, pipe.dxf.end) if pipe.dxftype() == "LINE"
                              else pipe.get_points("xy")[:2])
                expected = math.degrees(math.atan2(end[1] - start[1], end[0] - start[0]))
                if values["start_invert"] <= values["end_invert"]:
                    expected += 180
                    uphill += 1
                arrow = document.entitydb[items[0][1]]
                self.assertAlmostEqual(math.remainder(arrow.dxf.rotation - expected, 360), 0.0,
                                       places=7)
            self.assertEqual(found, count)
        self.assertGreater(uphill, 0, "pipes drawn against their flow")

    def test_a_selection_from_the_command_line_answers_the_trial(self):
        drawing = next(path for path in sorted(FIXTURES.glob("*.dxf"))
                       if not path.name.startswith("r12")
                       and len(independent_reader.read(path).modelspace().query("LINE")) > 1)
        chosen = [e.dxf.handle for e in independent_reader.read(drawing).modelspace().query("LINE")
                  if not independent_reader.read(drawing).layers.get(e.dxf.layer).is_locked()][:2]
        out = self.folder / "out.dxf"
        self.call("run", drawing, "--select", ",".join(chosen), "-e", "(t1)", "-o", out)
        document = independent_reader.read(out)
        for handle in chosen:
            self.assertEqual(
                independent_reader.record_items(document.entitydb[handle], "pcgb"),
                [("pipe_flow", "", "", "12345678.00", "", "", "", "")])


if __name__ == "__main__":
    PROGRAM = sys.argv.pop(1)
    unittest.main()
