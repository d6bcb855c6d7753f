#include "tests/host/app/command/edit/edit_test.h"

namespace {

using testing::HasSubstr;

class CutCommands : public WithEdits {};

TEST_F(CutCommands, TrimCutsThePickedPart) {
  draw_line("0 0 0", "10 0 0");
  draw_line("4 -5 0", "4 5 0");
  draw_line("7 -5 0", "7 5 0");
  run("\"_.TRIM\" (en 2) (en 3) \"\" (pick 1 '(1 0)) \"\"");
  expect_shapes("10 11",
                "(((4.0 0.0 0.0) (10.0 0.0 0.0)) ((4.0 -5.0 0.0) (4.0 5.0 0.0))"
                " ((7.0 -5.0 0.0) (7.0 5.0 0.0)))");
  run("\"_.TRIM\" (en 2) (en 3) \"\" (pick 1 '(5 0)) \"\"");
  EXPECT_EQ(eval("(cdr (assoc 10 (entget (en 1))))"), "(7.0 0.0 0.0)");
}

TEST_F(CutCommands, TrimInTheMiddleLeavesTwo) {
  draw_line("0 0 0", "10 0 0");
  draw_line("4 -5 0", "4 5 0");
  draw_line("7 -5 0", "7 5 0");
  run("\"_.TRIM\" \"\" (pick 1 '(5 0)) \"\"");
  expect_shapes("10 11",
                "(((0.0 0.0 0.0) (4.0 0.0 0.0)) ((4.0 -5.0 0.0) (4.0 5.0 0.0))"
                " ((7.0 -5.0 0.0) (7.0 5.0 0.0)) ((7.0 0.0 0.0) (10.0 0.0 0.0)))");
}

TEST_F(CutCommands, TrimKnowsUndoFenceAndEdge) {
  draw_line("0 0 0", "10 0 0");
  draw_line("0 1 0", "10 1 0");
  draw_line("4 -5 0", "4 5 0");
  run("\"_.TRIM\" (en 3) \"\" (pick 1 '(1 0)) \"_U\" \"_F\" \"8,-1\" \"8,2\" \"\" \"\"");
  expect_shapes("10 11",
                "(((0.0 0.0 0.0) (4.0 0.0 0.0)) ((0.0 1.0 0.0) (4.0 1.0 0.0))"
                " ((4.0 -5.0 0.0) (4.0 5.0 0.0)))");
  draw_line("2 3 0", "2 4 0");
  EXPECT_THAT(run("\"_.TRIM\" (en 4) \"\" (pick 1 '(1 0)) \"\""),
              HasSubstr("Object does not intersect an edge."));
  run("\"_.TRIM\" (en 4) \"\" \"_E\" \"_E\" (pick 1 '(1 0)) \"\"");
  EXPECT_EQ(eval("(cdr (assoc 10 (entget (en 1))))"), "(2.0 0.0 0.0)");
}

TEST_F(CutCommands, TrimmedCirclesBecomeArcs) {
  draw("(0 . \"CIRCLE\") (8 . \"0\") (62 . 1) (10 0 0 0) (40 . 5)");
  draw_line("-9 3 0", "9 3 0");
  run("\"_.TRIM\" (en 2) \"\" (pick 1 '(0 5)) \"\"");
  expect_shapes("0 10 40 50 51 62",
                "((\"LINE\" (-9.0 3.0 0.0)) (\"ARC\" 1 (0.0 0.0 0.0) 5.0 2.49809 0.643501))");
}

TEST_F(CutCommands, TrimmedPolylinesKeepTheirBulges) {
  draw_polyline("(10 0 0) (42 . 0.0) (10 4 0) (42 . 1.0) (10 4 4) (42 . 0.0) (10 0 4)", false,
                "(43 . 0.5)");
  draw_line("0 2 0", "9 2 0");
  run("\"_.TRIM\" (en 2) \"\" (pick 1 '(1 4)) \"\"");
  // A quarter of the circle is left: its bulge is tan(90/4).
  expect_shapes("0 10 43 42",
                "((\"LWPOLYLINE\" 0.5 (0.0 0.0) 0.0 (4.0 0.0) 0.414214 (6.0 2.0) 0.0)"
                " (\"LINE\" (0.0 2.0 0.0)))");
}

TEST_F(CutCommands, TrimmedClosedPolylinesAreOpen) {
  draw_polyline("(10 0 0) (10 10 0) (10 10 10) (10 0 10)", true);
  draw_line("-5 5 0", "15 5 0");
  run("\"_.TRIM\" (en 2) \"\" (pick 1 '(5 10)) \"\"");
  expect_shapes("70 10", "((0 (0.0 5.0) (0.0 0.0) (10.0 0.0) (10.0 5.0)) ((-5.0 5.0 0.0)))");
}

TEST_F(CutCommands, ExtendReachesTheNextEdge) {
  draw_line("0 0 0", "4 0 0");
  draw_line("6 -5 0", "6 5 0");
  draw_line("9 -5 0", "9 5 0");
  draw_line("-2 -5 0", "-2 5 0");
  run("\"_.EXTEND\" \"\" (pick 1 '(3 0)) (pick 1 '(1 0)) (pick 1 '(5 0)) \"\"");
  EXPECT_EQ(eval("(list (cdr (assoc 10 (entget (en 1)))) (cdr (assoc 11 (entget (en 1)))))"),
            "((-2.0 0.0 0.0) (9.0 0.0 0.0))");
}

TEST_F(CutCommands, ExtendArcsAndPolylines) {
  draw_arc("0 0 0", 5, "0.0", "(/ pi 4)");
  draw_line("0 0 0", "0 9 0");
  run("\"_.EXTEND\" (en 2) \"\" (pick 1 '(3.6 3.5)) \"\"");
  expect_shapes("50 51", "((0.0 1.5708) nil)");
  draw_polyline("(10 20 0) (10 24 0) (10 24 4)");
  draw_line("20 9 0", "30 9 0");
  run("\"_.EXTEND\" (en 4) \"\" (pick 3 '(24 3)) \"\"");
  EXPECT_EQ(eval("(cdr (last (shapes '(10))))"), "nil");
  EXPECT_EQ(eval("(nth 2 (shapes '(10)))"), "((20.0 0.0) (24.0 0.0) (24.0 9.0))");
}

TEST_F(CutCommands, BreakTakesAPartOut) {
  draw_line("0 0 0", "10 0 0");
  run("\"_.BREAK\" (pick 1 '(2 0)) '(5 1)");
  expect_shapes("10 11", "(((0.0 0.0 0.0) (2.0 0.0 0.0)) ((5.0 0.0 0.0) (10.0 0.0 0.0)))");
}

TEST_F(CutCommands, BreakAtAPointLeavesTwo) {
  draw_line("0 0 0", "10 0 0");
  run("\"_.BREAK\" (en 1) \"_F\" \"4,0\" \"@\"");
  expect_shapes("10 11", "(((0.0 0.0 0.0) (4.0 0.0 0.0)) ((4.0 0.0 0.0) (10.0 0.0 0.0)))");
}

TEST_F(CutCommands, BreakACircleCounterClockwise) {
  draw("(0 . \"CIRCLE\") (10 0 0 0) (40 . 5)");
  run("\"_.BREAK\" (pick 1 '(5 0)) \"0,5\"");
  expect_shapes("0 50 51", "((\"ARC\" 1.5708 0.0))");
}

TEST_F(CutCommands, LengthenByTotalAndPercent) {
  draw_line("0 0 0", "10 0 0");
  run("\"_.LENGTHEN\" \"_DE\" 5 (pick 1 '(9 0)) \"\"");
  run("\"_.LENGTHEN\" \"_T\" 20 (pick 1 '(1 0)) \"\"");
  run("\"_.LENGTHEN\" \"_P\" 50 (pick 1 '(14 0)) \"\"");
  expect_shapes("10 11", "(((-5.0 0.0 0.0) (5.0 0.0 0.0)))");
  draw_arc("0 0 0", 2, "0.0", "1.0");
  run("\"_.LENGTHEN\" \"_DE\" \"_A\" 90 (pick 2 '(1.1 1.7)) \"\"");
  EXPECT_EQ(eval("(cdr (assoc 51 (entget (en 2))))"), "2.5708");
}

TEST_F(CutCommands, OffsetOnASide) {
  draw_line("0 0 0", "10 0 0", "(62 . 3)");
  run("\"_.OFFSET\" 2 (pick 1 '(5 0)) \"5,9\" \"\"");
  expect_shapes("10 11 62", "((3 (0.0 0.0 0.0) (10.0 0.0 0.0)) (3 (0.0 2.0 0.0) (10.0 2.0 0.0)))");
  EXPECT_EQ(eval("(getvar \"OFFSETDIST\")"), "2.0");
  run("\"_.OFFSET\" \"_T\" (pick 1 '(5 0)) \"5,-3\" \"\"");
  EXPECT_EQ(eval("(cdr (assoc 10 (entget (entlast))))"), "(0.0 -3.0 0.0)");
}

TEST_F(CutCommands, OffsetOfPolylinesAndCircles) {
  draw_polyline("(10 0 0) (10 10 0) (10 10 10)", false, "(43 . 0.25)");
  draw("(0 . \"CIRCLE\") (10 0 0 0) (40 . 5)");
  run("\"_.OFFSET\" 1 (pick 1 '(5 0)) \"5,5\" (pick 2 '(0 5)) \"0,0\" \"\"");
  expect_shapes("0 10 43 40",
                "((\"LWPOLYLINE\" 0.25 (0.0 0.0) (10.0 0.0) (10.0 10.0))"
                " (\"CIRCLE\" (0.0 0.0 0.0) 5.0)"
                " (\"LWPOLYLINE\" 0.25 (0.0 1.0) (9.0 1.0) (9.0 10.0))"
                " (\"CIRCLE\" (0.0 0.0 0.0) 4.0))");
}

TEST_F(CutCommands, OffsetMayErase) {
  draw_line("0 0 0", "10 0 0");
  run("\"_.OFFSET\" \"_E\" \"_Y\" 2 (pick 1 '(5 0)) \"5,9\" \"\"");
  expect_shapes("10", "(((0.0 2.0 0.0)))");
}

}  // namespace
