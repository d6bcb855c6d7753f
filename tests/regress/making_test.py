"""What LISP programs make and change, read by an independent reader: one entity of each kind that
entmake knows, table records, blocks, dictionaries and header variables, in drawings of every release."""

import math

import calling
import independent_reader
from calling import DRAWINGS


# Kinds that every release has, and those that came with R13 and R14.
OLD_KINDS = """
(defun make (groups) (if (not (entmake groups)) (princ (strcat "refused " (cdr (assoc 0 groups)) "\\n"))))
(make '((0 . "LAYER") (2 . "MADE") (70 . 0) (62 . 5)))
(make '((0 . "STYLE") (2 . "MADESTYLE") (70 . 0) (3 . "txt") (4 . "")))
(make '((0 . "LTYPE") (2 . "MADELINE") (70 . 0) (3 . "__ __") (72 . 65) (40 . 3.0)
        (49 . 2.0) (74 . 0) (49 . -1.0) (74 . 0)))
(make '((0 . "BLOCK") (2 . "MADEBLOCK") (70 . 2) (10 1.0 2.0 0.0)))
(make '((0 . "CIRCLE") (8 . "MADE") (10 0 0) (40 . 1.0)))
(make '((0 . "ATTDEF") (8 . "MADE") (10 0 0) (40 . 2.5) (1 . "?") (2 . "NO") (3 . "Number") (70 . 0)))
(make '((0 . "ENDBLK")))
(setvar "CLAYER" "MADE")
(make '((0 . "LINE") (10 1 2 3) (11 4 5 6) (6 . "MADELINE")))
(make '((0 . "POINT") (10 1 2 3)))
(make '((0 . "CIRCLE") (10 1 2) (40 . 3.5) (62 . 1)))
(make (list '(0 . "ARC") '(10 1 2) '(40 . 3.5) '(50 . 0.0) (cons 51 (/ pi 2))))
(make (list '(0 . "TEXT") '(10 1 2) '(40 . 2.5) '(1 . "管径 DN300") '(7 . "MADESTYLE") (cons 50 (/ pi 6))))
(make '((0 . "SOLID") (10 0 0) (11 1 0) (12 0 1)))
(make '((0 . "TRACE") (10 0 0) (11 1 0) (12 0 1) (13 1 1)))
(make '((0 . "3DFACE") (10 0 0 0) (11 1 0 0) (12 0 1 1)))
(make '((0 . "POLYLINE") (70 . 1)))
(make '((0 . "VERTEX") (10 0 0) (42 . 0.5)))
(make '((0 . "VERTEX") (10 5 0)))
(make '((0 . "SEQEND")))
(make '((0 . "POLYLINE") (70 . 8)))
(make '((0 . "VERTEX") (10 0 0 1)))
(make '((0 . "VERTEX") (10 5 0 2)))
(make '((0 . "SEQEND")))
(make '((0 . "INSERT") (2 . "MADEBLOCK") (10 7 8) (66 . 1)))
(make '((0 . "ATTRIB") (10 7 8) (40 . 2.5) (1 . "W1") (2 . "NO") (70 . 0)))
(make '((0 . "SEQEND")))
(regapp "MADEAPP")
(make '((0 . "POINT") (10 9 9 9) (-3 ("MADEAPP" (1000 . "标注") (1010 1.0 2.0 3.0) (1070 . 7)))))
(setvar "LTSCALE" 12.5)
(setvar "USERI2" 77)
"""

NEW_KINDS = """
(make '((0 . "LWPOLYLINE") (100 . "AcDbEntity") (100 . "AcDbPolyline") (90 . 3) (70 . 1)
        (10 0 0) (42 . 0.5) (10 5 0) (40 . 0.1) (41 . 0.2) (10 5 5)))
(make '((0 . "MTEXT") (100 . "AcDbEntity") (100 . "AcDbMText") (10 1 2) (40 . 3.5) (1 . "one\\\\Ptwo")))
(make (list '(0 . "ELLIPSE") '(10 0 0) '(11 5 0) '(40 . 0.5)))
(make '((0 . "RAY") (10 0 0) (11 1 0 0)))
(make '((0 . "XLINE") (10 0 0) (11 0 1 0)))
(make '((0 . "SPLINE") (70 . 8) (71 . 3) (40 . 0.0) (40 . 0.0) (40 . 0.0) (40 . 0.0) (40 . 1.0)
        (40 . 1.0) (40 . 1.0) (40 . 1.0) (10 0 0 0) (10 1 1 0) (10 2 1 0) (10 3 0 0)))
(make '((0 . "HATCH") (10 0.0 0.0 0.0) (210 0.0 0.0 1.0) (2 . "SOLID") (70 . 1) (71 . 0) (91 . 1)
        (92 . 2) (72 . 0) (73 . 1) (93 . 3) (10 0.0 0.0) (10 4.0 0.0) (10 0.0 4.0) (97 . 0)
        (75 . 0) (76 . 1) (98 . 1) (10 1.0 1.0)))
(make '((0 . "LEADER") (10 0 0) (10 5 5) (10 8 5)))
(make '((0 . "BLOCK") (2 . "*D") (70 . 1) (10 0.0 0.0 0.0)))
(make '((0 . "LINE") (10 0 3) (11 5 3)))
(setq picture (entmake '((0 . "ENDBLK"))))
(make (list '(0 . "DIMENSION") (cons 2 picture) '(70 . 0) '(10 0 3) '(13 0 0) '(14 5 0) '(1 . "<>")))
(setq root (namedobjdict) d (entmakex '((0 . "DICTIONARY") (100 . "AcDbDictionary"))))
(dictadd root "MADEDICT" d)
(dictadd d "ONE" (entmakex '((0 . "XRECORD") (100 . "AcDbXrecord") (1 . "文本") (40 . 1.5) (90 . 70000))))
(vlax-ldata-put "MADEDATA" "list" '(1 2.5 "three" (4 . 5)))
"""


class Making(calling.ProgramTest):

    def run_program(self, drawing, program):
        script = self.folder / "make.lsp"
        script.write_text(program, encoding="utf-8")
        out = self.folder / ("made-" + drawing.name)
        self.assertNotIn("refused", self.call("run", drawing, script, "-o", out))
        return out

    def made(self, drawing):
        is_old = drawing.name.startswith("r12")
        out = self.run_program(drawing, OLD_KINDS + ("" if is_old else NEW_KINDS))
        before, document = independent_reader.read(drawing), independent_reader.read(out)
        self.assertEqual(len(independent_reader.complaints(document)),
                         len(independent_reader.complaints(before)))
        known = {entity.dxf.handle for entity in before.modelspace()}
        new = [entity for entity in document.modelspace() if entity.dxf.handle not in known]
        return document, new, is_old

    def test_each_kind_reads_back(self):
        for drawing in sorted(DRAWINGS.glob("*.dxf")):
            with self.subTest(drawing=drawing.name):
                document, new, is_old = self.made(drawing)
                kinds = ["LINE", "POINT", "CIRCLE", "ARC", "TEXT", "SOLID", "TRACE", "3DFACE",
                         "POLYLINE", "POLYLINE", "INSERT", "POINT"]
                if not is_old:
                    kinds += ["LWPOLYLINE", "MTEXT", "ELLIPSE", "RAY", "XLINE", "SPLINE", "HATCH",
                              "LEADER", "DIMENSION"]
                self.assertEqual([entity.dxftype() for entity in new], kinds)
                self.assertTrue(all(entity.dxf.layer == "MADE" for entity in new))
                line, _, circle, arc, text = new[:5]
                self.assertEqual((line.dxf.start, line.dxf.end, line.dxf.linetype),
                                 ((1, 2, 3), (4, 5, 6), "MADELINE"))
                self.assertEqual((circle.dxf.radius, circle.dxf.color), (3.5, 1))
                self.assertAlmostEqual(arc.dxf.end_angle, 90)
                self.assertEqual((independent_reader.plain_text(text.dxf.text), text.dxf.style),
                                 ("管径 DN300", "MADESTYLE"))
                self.assertAlmostEqual(text.dxf.rotation, 30)
                self.assertEqual(new[5].dxf.vtx3, new[5].dxf.vtx2)

    def test_parts_stand_with_their_entity(self):
        for drawing in sorted(DRAWINGS.glob("*.dxf")):
            with self.subTest(drawing=drawing.name):
                document, new, _ = self.made(drawing)
                flat, spatial, insert, marked = new[8:12]
                self.assertTrue(flat.is_closed and flat.is_2d_polyline)
                self.assertEqual([vertex.dxf.bulge for vertex in flat.vertices], [0.5, 0])
                self.assertTrue(spatial.is_3d_polyline)
                self.assertEqual([tuple(point) for point in spatial.points()], [(0, 0, 1), (5, 0, 2)])
                self.assertEqual([(attrib.dxf.tag, attrib.dxf.text) for attrib in insert.attribs],
                                 [("NO", "W1")])
                block = document.blocks.get("MADEBLOCK")
                self.assertEqual(tuple(block.block.dxf.base_point), (1, 2, 0))
                self.assertEqual([entity.dxftype() for entity in block], ["CIRCLE", "ATTDEF"])
                text, point, number = marked.get_xdata("MADEAPP")[-3:]
                self.assertEqual(independent_reader.plain_text(text.value), "标注")
                self.assertEqual((tuple(point.value), number.value), ((1, 2, 3), 7))

    def test_tables_and_header_read_back(self):
        for drawing in sorted(DRAWINGS.glob("*.dxf")):
            with self.subTest(drawing=drawing.name):
                document, _, _ = self.made(drawing)
                self.assertEqual(document.layers.get("MADE").dxf.color, 5)
                self.assertEqual(document.styles.get("MADESTYLE").dxf.font, "txt")
                self.assertIn("MADELINE", document.linetypes)
                self.assertIn("MADEAPP", document.appids)
                self.assertEqual(document.header["$LTSCALE"], 12.5)
                self.assertEqual(document.header["$USERI2"], 77)
                self.assertEqual(document.header["$CLAYER"], "MADE")

    def test_later_kinds_keep_their_shape(self):
        for drawing in sorted(DRAWINGS.glob("*.dxf")):
            if drawing.name.startswith("r12"):
                continue
            with self.subTest(drawing=drawing.name):
                document, new, _ = self.made(drawing)
                polyline, mtext, ellipse, ray, _, spline, hatch, leader, dimension = new[12:]
                self.assertTrue(polyline.closed)
                self.assertEqual([tuple(point) for point in polyline.get_points()],
                                 [(0, 0, 0, 0, 0.5), (5, 0, 0.1, 0.2, 0), (5, 5, 0, 0, 0)])
                self.assertEqual(mtext.text, "one\\Ptwo")
                self.assertAlmostEqual(ellipse.dxf.end_param, math.tau)
                self.assertEqual(ray.dxf.unit_vector, (1, 0, 0))
                self.assertEqual((len(spline.knots), len(spline.control_points)), (8, 4))
                self.assertEqual(len(hatch.paths), 1)
                self.assertEqual(len(leader.vertices), 3)
                self.assertEqual((dimension.dimtype, dimension.dxf.defpoint3), (0, (5, 0, 0)))
                entry = document.rootdict["MADEDICT"]["ONE"]
                self.assertEqual([tag.code for tag in entry.tags], [1, 40, 90])
                text, real, integer = (tag.value for tag in entry.tags)
                self.assertEqual((independent_reader.plain_text(text), real, integer),
                                 ("文本", 1.5, 70000))
                self.assertIn("list", document.rootdict["MADEDATA"])

    def test_a_changed_text_is_all_that_differs(self):
        program = """
(setq e (entnext) done nil)
(while (and e (not done))
  (setq d (entget e))
  (if (and (= (cdr (assoc 0 d)) "TEXT")  ; justified ones start elsewhere then
           (member (cdr (assoc 72 d)) '(nil 0)) (member (cdr (assoc 73 d)) '(nil 0)))
    (setq done (entmod (subst (cons 1 "changed") (assoc 1 d) d))))
  (setq e (entnext e)))
(princ (if done "one" "none"))
"""
        changed = 0
        for drawing in sorted(DRAWINGS.glob("*.dxf")):
            with self.subTest(drawing=drawing.name):
                before, after = drawing.read_bytes(), self.run_program(drawing, program).read_bytes()
                if before == after:
                    continue  # a drawing without texts
                changed += 1
                at = after.find(b"changed")
                self.assertEqual(after[:at], before[:at])
                self.assertTrue(before.endswith(after[at + len(b"changed"):]))
        self.assertGreater(changed, 3)


if __name__ == "__main__":
    calling.main()
