#include "tests/host/app/command/edit/edit_test.h"

namespace {

using testing::HasSubstr;

class ShapeCommands : public WithEdits {};

TEST_F(ShapeCommands, FilletRoundsACorner) {
  draw_line("0 0 0", "10 0 0");
  draw_line("10 -5 0", "10 10 0");
  run("\"_.FILLET\" \"_R\" 2 (pick 1 '(5 0)) (pick 2 '(10 8))");
  expect_shapes("0 10 11 40 50 51",
                "((\"LINE\" (0.0 0.0 0.0) (8.0 0.0 0.0)) (\"LINE\" (10.0 2.0 0.0) (10.0 10.0 0.0))"
                " (\"ARC\" (8.0 2.0 0.0) 2.0 4.71239 0.0))");
  EXPECT_EQ(eval("(getvar \"FILLETRAD\")"), "2.0");
}

TEST_F(ShapeCommands, FilletOfNoRadiusMakesACorner) {
  draw_line("0 0 0", "4 0 0");
  draw_line("10 5 0", "10 9 0");
  eval("(command \"_.FILLET\" \"_R\" 0)");
  run("\"_.FILLET\" (pick 1 '(1 0)) (pick 2 '(10 6))");
  expect_shapes("0 10 11",
                "((\"LINE\" (0.0 0.0 0.0) (10.0 0.0 0.0))"
                " (\"LINE\" (10.0 0.0 0.0) (10.0 9.0 0.0)))");
}

TEST_F(ShapeCommands, FilletBetweenLineAndArc) {
  // An arc about (10, 0) of radius 5 above the line y = 0, and the line; radius 1 outside of both.
  draw_line("0 0 0", "10 0 0");
  draw_arc("10 0 0", 5, "0.0", "pi");
  run("\"_.FILLET\" \"_R\" 1 (pick 1 '(1 0)) (pick 2 '(7 4))");
  // The center is 6 from (10, 0) and 1 above the line: x = 10 - sqrt(35).
  EXPECT_EQ(eval("(cdr (assoc 10 (entget (entlast))))"), "(4.08392 1.0 0.0)");
  EXPECT_EQ(eval("(cdr (assoc 11 (entget (en 1))))"), "(4.08392 0.0 0.0)");
  EXPECT_EQ(eval("(cdr (assoc 51 (entget (en 2))))"), "2.97414");
}

TEST_F(ShapeCommands, FilletAllCornersOfAPolyline) {
  draw_polyline("(10 0 0) (10 10 0) (10 10 10)");
  run("\"_.FILLET\" \"_R\" 2 \"_P\" (en 1)");
  expect_shapes("10 42", "(((0.0 0.0) 0.0 (8.0 0.0) 0.414214 (10.0 2.0) 0.0 (10.0 10.0) 0.0))");
}

TEST_F(ShapeCommands, ChamferCutsACornerOff) {
  draw_line("0 0 0", "10 0 0");
  draw_line("10 0 0", "10 10 0");
  run("\"_.CHAMFER\" \"_D\" 2 3 (pick 1 '(5 0)) (pick 2 '(10 8))");
  expect_shapes("0 10 11",
                "((\"LINE\" (0.0 0.0 0.0) (8.0 0.0 0.0)) (\"LINE\" (10.0 3.0 0.0) (10.0 10.0 0.0))"
                " (\"LINE\" (8.0 0.0 0.0) (10.0 3.0 0.0)))");
}

TEST_F(ShapeCommands, ParallelLinesHaveNoChamfer) {
  draw_line("0 0 0", "10 0 0");
  draw_line("0 5 0", "10 5 0");
  EXPECT_THAT(run("\"_.CHAMFER\" \"_D\" 2 3 (pick 1 '(5 0)) (pick 2 '(5 5))"),
              HasSubstr("Lines are parallel."));
  run("\"_.FILLET\" (pick 1 '(9 0)) (pick 2 '(9 5))");
  EXPECT_EQ(eval("(mapcar 'cdr (list (assoc 0 (entget (entlast))) (assoc 10 (entget (entlast)))"
                 " (assoc 40 (entget (entlast)))))"),
            "(\"ARC\" (10.0 2.5 0.0) 2.5)");
}

TEST_F(ShapeCommands, PeditJoinsLinesIntoAPolyline) {
  draw_line("0 0 0", "10 0 0", "(62 . 5)");
  draw_line("10 10 0", "10 0 0");
  draw_arc("10 12 0", 2, "(* 1.5 pi)", "(* 0.5 pi)");
  run("\"_.PEDIT\" (en 1) \"_Y\" \"_J\" \"_ALL\" \"\" \"\"");
  expect_shapes(
      "0 62 70 10 42",
      "((\"LWPOLYLINE\" 5 0 (0.0 0.0) 0.0 (10.0 0.0) 0.0 (10.0 10.0) 1.0 (10.0 14.0) 0.0))");
}

TEST_F(ShapeCommands, PeditClosesAndWidens) {
  draw_polyline("(10 0 0) (10 10 0) (10 10 10)");
  run("\"_.PEDIT\" (en 1) \"_C\" \"_W\" 0.5 \"_L\" \"_ON\" \"\"");
  expect_shapes("70 43 10", "((129 0.5 (0.0 0.0) (10.0 0.0) (10.0 10.0)))");
  run("\"_.PEDIT\" (en 1) \"_O\" \"_X\"");
  expect_shapes("70", "((128))");
}

TEST_F(ShapeCommands, PeditJoinClosesARing) {
  draw_line("0 0 0", "10 0 0");
  draw_line("10 0 0", "5 8 0");
  draw_line("5 8 0", "0 0 0");
  eval("(setvar \"PEDITACCEPT\" 1)");
  run("\"_.PEDIT\" \"_M\" \"_ALL\" \"\" \"_J\" 0 \"\"");
  expect_shapes("0 70 10", "((\"LWPOLYLINE\" 1 (10.0 0.0) (5.0 8.0) (0.0 0.0)))");
}

TEST_F(ShapeCommands, PeditRefusesWhatItDoesNotDo) {
  draw_polyline("(10 0 0) (10 10 0) (10 10 10)");
  eval("(command \"_.PEDIT\" (en 1) \"_F\" \"\")");
  EXPECT_THAT(printed, HasSubstr("Fit is not offered."));
}

TEST_F(ShapeCommands, ExplodeTakesOneAnswer) {
  draw_polyline("(10 0 0) (42 . 0.0) (10 10 0) (42 . -1.0) (10 10 4)", false, "(62 . 2)");
  run("\"_.EXPLODE\" (en 1)");
  expect_shapes("0 62 10 11 40 50 51",
                "((\"LINE\" 2 (0.0 0.0 0.0) (10.0 0.0 0.0))"
                " (\"ARC\" 2 (10.0 2.0 0.0) 2.0 1.5708 4.71239))");
}

TEST_F(ShapeCommands, ExplodedBlocksLieWhereTheyWere) {
  eval(
      "(entmake '((0 . \"BLOCK\") (2 . \"BOX\") (70 . 0) (10 1 1 0)))"
      "(entmake '((0 . \"LINE\") (8 . \"0\") (10 1 1 0) (11 3 1 0)))"
      "(entmake '((0 . \"CIRCLE\") (8 . \"0\") (10 1 1 0) (40 . 1)))"
      "(entmake '((0 . \"ENDBLK\")))"
      "(entmake (list '(0 . \"INSERT\") '(2 . \"BOX\") '(10 10 10 0) '(41 . 2) '(42 . 2) '(43 . 2)"
      " (cons 50 (/ pi 2))))");
  run("\"_.EXPLODE\" (en 1) \"\"");
  EXPECT_EQ(eval("(shapes '(0 40))"), "((\"LINE\") (\"CIRCLE\" 2.0))");
  EXPECT_EQ(eval("(equal (car (shapes '(10 11))) '((10 10 0) (10 14 0)) 1e-9)"), "T");
  eval("(entmake '((0 . \"INSERT\") (2 . \"BOX\") (10 20 10 0) (41 . 3) (42 . 1) (43 . 1)))");
  run("\"_.EXPLODE\" (entlast)");
  EXPECT_EQ(eval("(cddr (shapes '(0 10 11 40)))"),
            "((\"LINE\" (20.0 10.0 0.0) (26.0 10.0 0.0))"
            " (\"ELLIPSE\" (20.0 10.0 0.0) (3.0 0.0 0.0) 0.333333))");
}

TEST_F(ShapeCommands, ExplodedTextsAreLines) {
  draw(
      "(0 . \"MTEXT\") (100 . \"AcDbEntity\") (100 . \"AcDbMText\") (10 5 20 0) (40 . 3) (41 . 0)"
      " (71 . 1) (1 . \"{\\\\fArial|b0;DN300}\\\\PL=5\\\\~m\")");
  run("\"_.EXPLODE\" (en 1)");
  expect_shapes(
      "0 1 10 40",
      "((\"TEXT\" (5.0 17.0 0.0) 3.0 \"DN300\") (\"TEXT\" (5.0 12.0 0.0) 3.0 \"L=5 m\"))");
}

TEST_F(ShapeCommands, WhatHasNoPiecesIsTold) {
  draw_line("0 0 0", "10 0 0");
  EXPECT_THAT(run("\"_.EXPLODE\" (en 1)"), HasSubstr("1 could not be exploded."));
  expect_shapes("0", "((\"LINE\"))");
}

TEST_F(ShapeCommands, RectangularArrays) {
  draw("(0 . \"POINT\") (10 1 1 0)");
  run("\"_.-ARRAY\" (en 1) \"\" \"_R\" 2 3 5 10");
  expect_shapes("10",
                "(((1.0 1.0 0.0)) ((11.0 1.0 0.0)) ((21.0 1.0 0.0)) ((1.0 6.0 0.0))"
                " ((11.0 6.0 0.0)) ((21.0 6.0 0.0)))");
}

TEST_F(ShapeCommands, PolarArrays) {
  draw("(0 . \"CIRCLE\") (10 10 0 0) (40 . 1)");
  run("\"_.ARRAY\" (en 1) \"\" \"_P\" \"0,0\" 4 360 \"_Y\"");
  EXPECT_EQ(eval("(equal (shapes '(10)) '(((10 0 0)) ((0 10 0)) ((-10 0 0)) ((0 -10 0))) 1e-9)"),
            "T");
  draw_line("20 0 0", "21 0 0");
  run("\"_.ARRAY\" (entlast) \"\" \"_P\" \"0,0\" 2 90 \"_N\"");
  EXPECT_EQ(eval("(equal (last (shapes '(10 11))) '((0 20 0) (1 20 0)) 1e-9)"), "T");
}

TEST_F(ShapeCommands, DivideAndMeasure) {
  draw_line("0 0 0", "12 0 0");
  run("\"_.DIVIDE\" (en 1) 3");
  expect_shapes("0 10",
                "((\"LINE\" (0.0 0.0 0.0)) (\"POINT\" (4.0 0.0 0.0)) (\"POINT\" (8.0 0.0 0.0)))");
  EXPECT_EQ(eval("(sslength (ssget \"_P\"))"), "2");
  run("\"_.MEASURE\" (pick 1 '(11 0)) 5");
  EXPECT_EQ(eval("(cdddr (shapes '(10)))"), "(((7.0 0.0 0.0)) ((2.0 0.0 0.0)))");
}

TEST_F(ShapeCommands, DivideByBlocks) {
  eval(
      "(entmake '((0 . \"BLOCK\") (2 . \"TICK\") (70 . 0) (10 0 0 0)))"
      "(entmake '((0 . \"LINE\") (10 0 -1 0) (11 0 1 0))) (entmake '((0 . \"ENDBLK\")))");
  draw("(0 . \"CIRCLE\") (10 0 0 0) (40 . 5)");
  run("\"_.DIVIDE\" (en 1) \"_B\" \"TICK\" \"_Y\" 2");
  EXPECT_EQ(eval("(equal (shapes '(2 10 50)) (list '((0 0 0)) (list \"TICK\" '(5 0 0) (/ pi 2))"
                 " (list \"TICK\" '(-5 0 0) (* 1.5 pi))) 1e-9)"),
            "T");
}

TEST_F(ShapeCommands, JoinLinesArcsAndPolylines) {
  draw_line("0 0 0", "4 0 0");
  draw_line("6 0 0", "9 0 0");
  run("\"_.JOIN\" (en 1) \"\" (en 2) \"\"");
  expect_shapes("10 11", "(((0.0 0.0 0.0) (9.0 0.0 0.0)))");
  draw_polyline("(10 9 0) (10 9 5)");
  run("\"_.JOIN\" (en 2) (en 1) \"\"");
  expect_shapes("0 10", "((\"LWPOLYLINE\" (0.0 0.0) (9.0 0.0) (9.0 5.0)))");
  draw_arc("0 0 0", 2, "0.0", "1.0");
  draw_arc("0 0 0", 2, "1.0", "2.0");
  run("\"_.JOIN\" (en 2) (en 3) \"\"");
  EXPECT_EQ(eval("(last (shapes '(50 51)))"), "(0.0 2.0)");
}

TEST_F(ShapeCommands, ReverseExchangesTheEnds) {
  draw_line("0 0 0", "4 0 0");
  draw_polyline("(10 0 0) (42 . 0.5) (10 9 0) (42 . 0.0) (10 9 5)");
  run("\"_.REVERSE\" \"_ALL\" \"\"");
  expect_shapes("10 11 42",
                "(((4.0 0.0 0.0) (0.0 0.0 0.0))"
                " ((9.0 5.0) 0.0 (9.0 0.0) -0.5 (0.0 0.0) 0.0))");
}

TEST_F(ShapeCommands, StretchMovesWhatTheWindowHolds) {
  draw_line("0 0 0", "10 0 0");
  draw_polyline("(10 0 2) (10 10 2) (10 10 8)");
  draw("(0 . \"CIRCLE\") (10 10 5 0) (40 . 1)");
  run("\"_.STRETCH\" \"_C\" \"8,-1\" \"12,6\" \"\" \"0,0\" \"5,0\"");
  expect_shapes("10 11",
                "(((0.0 0.0 0.0) (15.0 0.0 0.0)) ((0.0 2.0) (15.0 2.0) (10.0 8.0))"
                " ((15.0 5.0 0.0)))");
}

TEST_F(ShapeCommands, StretchTakesTheWindowOfASet) {
  draw_line("0 0 0", "10 0 0");
  eval("(setq ss (ssget \"_C\" '(8 -1) '(12 1)))");
  run("\"_.STRETCH\" ss \"\" \"0,0\" \"0,3\"");
  expect_shapes("10 11", "(((0.0 0.0 0.0) (10.0 3.0 0.0)))");
}

TEST_F(ShapeCommands, ChangeByPoint) {
  draw_line("0 0 0", "10 0 0");
  run("\"_.CHANGE\" (en 1) \"\" \"9,5\"");
  expect_shapes("10 11", "(((0.0 0.0 0.0) (9.0 5.0 0.0)))");
  draw("(0 . \"TEXT\") (10 1 2 0) (40 . 2.5) (1 . \"A\")");
  run("\"_.CHANGE\" (en 2) \"\" \"\" \"5,5\" \"\" 3 90 \"B C\"");
  EXPECT_EQ(eval("(last (shapes '(1 10 40 50)))"), "((5.0 5.0 0.0) 3.0 \"B C\" 1.5708)");
}

TEST_F(ShapeCommands, ChangeProperties) {
  draw_line("0 0 0", "10 0 0");
  run("\"_.CHANGE\" (en 1) \"\" \"_P\" \"_C\" 3 \"\"");
  expect_shapes("62", "((3))");
  draw_line("0 0 0", "5 0 0", "(62 . 1) (420 . 255)");
  run("\"_.CHANGE\" (en 2) \"\" \"_P\" \"_C\" 3 \"\"");
  EXPECT_EQ(eval("(last (shapes '(62 420)))"), "(3)");
  run("\"_.ERASE\" (en 2) \"\"");
  run("\"_.CHANGE\" (en 1) \"\" \"_P\" \"_E\" 7 \"\"");
  expect_shapes("10 11", "(((0.0 0.0 7.0) (10.0 0.0 7.0)))");
}

TEST_F(ShapeCommands, MatchpropGivesProperties) {
  eval("(command \"_.-LAYER\" \"_N\" \"PIPES\" \"\")");
  draw_line("0 0 0", "10 0 0", "(8 . \"PIPES\") (62 . 4) (48 . 2.0)");
  draw("(0 . \"CIRCLE\") (10 10 5 0) (40 . 1)");
  run("\"_.MATCHPROP\" (en 1) (en 2) \"\"");
  expect_shapes("0 8 62 48", "((\"LINE\" \"PIPES\" 4 2.0) (\"CIRCLE\" \"PIPES\" 4 2.0))");
  draw_line("0 0 0", "5 0 0", "(62 . 1) (420 . 255)");
  run("\"_.MATCHPROP\" (en 1) (en 3) \"\"");
  EXPECT_EQ(eval("(last (shapes '(62 420)))"), "(4)");
}

}  // namespace
