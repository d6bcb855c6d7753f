#include "tests/host/app/command/edit/edit_test.h"

namespace {

using testing::HasSubstr;

class MoveCommands : public WithEdits {
 protected:
  void given_lock() {
    eval("(command \"_.-LAYER\" \"_Make\" \"LOCKED\" \"_Set\" \"0\" \"_Lock\" \"LOCKED\" \"\")");
  }
};

TEST_F(MoveCommands, MoveGoesFromPointToPoint) {
  draw_line("1 2 0", "3 4 0");
  draw("(0 . \"CIRCLE\") (10 5 5 0) (40 . 2)");
  run("\"_.MOVE\" (en 1) (en 2) \"\" \"1,2\" \"11,22\"");
  expect_shapes("0 10 11",
                "((\"LINE\" (11.0 22.0 0.0) (13.0 24.0 0.0)) (\"CIRCLE\" (15.0 25.0 0.0)))");
}

TEST_F(MoveCommands, MoveTakesADisplacement) {
  draw_line("1 2 0", "3 4 0");
  run("\"_.MOVE\" (en 1) \"\" \"10,0\" \"\"");
  expect_shapes("10 11", "(((11.0 2.0 0.0) (13.0 4.0 0.0)))");
  run("\"_.MOVE\" (en 1) \"\" \"_D\" '(0 5 1)");
  expect_shapes("10 11", "(((11.0 7.0 1.0) (13.0 9.0 1.0)))");
}

TEST_F(MoveCommands, WhatIsOnALockedLayerStays) {
  given_lock();
  draw_line("1 2 0", "3 4 0", "(8 . \"LOCKED\")");
  draw_line("1 2 0", "3 4 0");
  const std::string said = run("\"_.MOVE\" (en 1) (en 2) \"\" \"0,0\" \"10,0\"");
  EXPECT_THAT(said, HasSubstr("1 was on a locked layer."));
  expect_shapes("10", "(((1.0 2.0 0.0)) ((11.0 2.0 0.0)))");
}

TEST_F(MoveCommands, CopyEndsWithTheNextCommand) {
  draw_line("1 2 0", "3 4 0");
  eval("(command \"_.COPY\" (en 1) \"\" \"0,0\" \"10,0\")");
  EXPECT_EQ(eval("(cdr (assoc 10 (entget (entlast))))"), "(11.0 2.0 0.0)");
  eval("(command \"_.LINE\" \"7,7\" \"8,8\" \"\")");
  EXPECT_EQ(eval("(getvar \"CMDACTIVE\")"), "0");
  expect_shapes("10", "(((1.0 2.0 0.0)) ((11.0 2.0 0.0)) ((7.0 7.0 0.0)))");
}

TEST_F(MoveCommands, CopyRepeatsUntilEnter) {
  draw_line("1 2 0", "3 4 0");
  run("\"_.COPY\" (en 1) \"\" \"_M\" \"0,0\" \"10,0\" \"20,0\" \"_U\" \"30,0\" \"\"");
  expect_shapes("10", "(((1.0 2.0 0.0)) ((11.0 2.0 0.0)) ((31.0 2.0 0.0)))");
}

TEST_F(MoveCommands, CopiesInARow) {
  draw_line("0 0 0", "1 0 0");
  run("\"_.COPY\" (en 1) \"\" \"0,0\" \"_A\" 3 \"5,0\" \"\"");
  expect_shapes("10", "(((0.0 0.0 0.0)) ((5.0 0.0 0.0)) ((10.0 0.0 0.0)))");
}

TEST_F(MoveCommands, CopiesOfLockedObjectsGoElsewhere) {
  given_lock();
  draw_line("1 2 0", "3 4 0", "(8 . \"LOCKED\")");
  run("\"_.COPY\" (en 1) \"\" \"0,0\" \"10,0\" \"\"");
  expect_shapes("8 10", "((\"LOCKED\" (1.0 2.0 0.0)) (\"LOCKED\" (11.0 2.0 0.0)))");
}

TEST_F(MoveCommands, CopiesHaveTheirOwnRecords) {
  draw_line("1 2 0", "3 4 0");
  eval("(regapp \"PN\") (entmod (append (entget (en 1)) '((-3 (\"PN\" (1000 . \"DN300\"))))))");
  run("\"_.COPY\" (en 1) \"\" \"0,0\" \"10,0\" \"\"");
  EXPECT_EQ(eval("(cdr (assoc -3 (entget (entlast) '(\"PN\"))))"), "((\"PN\" (1000 . \"DN300\")))");
  EXPECT_EQ(eval("(equal (cdr (assoc 5 (entget (en 1)))) (cdr (assoc 5 (entget (en 2)))))"), "nil");
}

TEST_F(MoveCommands, Rotate) {
  draw_line("1 0 0", "3 0 0");
  draw("(0 . \"TEXT\") (10 1 0 0) (40 . 2.5) (1 . \"A\")");
  run("\"_.ROTATE\" \"_ALL\" \"\" \"0,0\" 90");
  expect_shapes("10 11 50", "(((0.0 1.0 0.0) (0.0 3.0 0.0)) ((0.0 1.0 0.0) 1.5708))");
  run("\"_.ROTATE\" (en 1) \"\" \"0,0\" \"_R\" 90 0");
  EXPECT_EQ(eval("(cdr (assoc 11 (entget (en 1))))"), "(3.0 0.0 0.0)");
  run("\"_.ROTATE\" (en 1) \"\" \"0,0\" \"_C\" 180");
  EXPECT_EQ(eval("(cdr (assoc 11 (entget (entlast))))"), "(-3.0 0.0 0.0)");
}

TEST_F(MoveCommands, Scale) {
  draw_line("1 0 0", "3 0 0");
  draw("(0 . \"CIRCLE\") (10 5 5 0) (40 . 2)");
  run("\"_.SCALE\" \"_ALL\" \"\" \"1,0\" 2");
  expect_shapes("10 11 40", "(((1.0 0.0 0.0) (5.0 0.0 0.0)) ((9.0 10.0 0.0) 4.0))");
  run("\"_.SCALE\" (en 1) \"\" \"1,0\" \"_R\" 4 1");
  run("\"_.SCALE\" (en 1) \"\" \"0,0\" \"_C\" 10");
  expect_shapes("10 11 40",
                "(((1.0 0.0 0.0) (2.0 0.0 0.0)) ((9.0 10.0 0.0) 4.0)"
                " ((10.0 0.0 0.0) (20.0 0.0 0.0)))");
}

TEST_F(MoveCommands, MirrorKeepsTextsReadable) {
  draw("(0 . \"TEXT\") (10 1 2 0) (40 . 2.5) (1 . \"A\") (72 . 1) (11 3 2 0)");
  draw_polyline("(10 0 0) (42 . 0.5) (10 4 0)");
  run("\"_.MIRROR\" \"_ALL\" \"\" \"10,0\" \"10,5\" \"_N\"");
  expect_shapes("0 50 71 72 42",
                "((\"TEXT\" 1) (\"LWPOLYLINE\" 0.5) (\"LWPOLYLINE\" -0.5) (\"TEXT\" 1))");
  EXPECT_EQ(eval("(cdr (assoc 11 (entget (en 4))))"), "(17.0 2.0 0.0)");
  EXPECT_EQ(eval("(cdr (assoc 10 (entget (en 3))))"), "(20.0 0.0)");
}

TEST_F(MoveCommands, MirrorMayEraseTheSource) {
  draw_arc("0 0 0", 5, "0.0", "(/ pi 2)");
  run("\"_.MIRROR\" (en 1) \"\" \"0,0\" \"0,5\" \"_Y\"");
  expect_shapes("0 50 51", "((\"ARC\" 1.5708 3.14159))");
  eval("(setvar \"MIRRTEXT\" 1)");
  draw("(0 . \"TEXT\") (10 1 2 0) (40 . 2.5) (1 . \"A\")");
  run("\"_.MIRROR\" (en 2) \"\" \"0,0\" \"0,5\" \"_Y\"");
  expect_shapes("0 10 71", "((\"ARC\" (0.0 0.0 0.0)) (\"TEXT\" (-1.0 2.0 0.0) 2))");
}

TEST_F(MoveCommands, AlignTurnsFromTwoPointsToTwo) {
  draw_line("0 0 0", "4 0 0");
  run("\"_.ALIGN\" (en 1) \"\" \"0,0\" \"10,10\" \"4,0\" \"10,18\" \"\" \"_Y\"");
  expect_shapes("10 11", "(((10.0 10.0 0.0) (10.0 18.0 0.0)))");
}

TEST_F(MoveCommands, ObjectsWithANormalOfTheirOwn) {
  draw("(0 . \"ARC\") (10 -5 2 0) (40 . 1) (50 . 0.0) (51 . 1.5) (210 0 0 -1)");
  run("\"_.MOVE\" (en 1) \"\" \"0,0\" \"10,0\"");
  expect_shapes("10 50 51 210", "(((-15.0 2.0 0.0) (0.0 0.0 -1.0) 0.0 1.5))");
}

TEST_F(MoveCommands, AttributesGoWithTheirBlock) {
  eval(
      "(entmake '((0 . \"BLOCK\") (2 . \"WELL\") (70 . 2) (10 0 0 0)))"
      "(entmake '((0 . \"CIRCLE\") (10 0 0 0) (40 . 1)))"
      "(entmake '((0 . \"ATTDEF\") (10 0 0 0) (40 . 1) (1 . \"W0\") (3 . \"?\") (2 . \"NR\") (70 . "
      "0)))"
      "(entmake '((0 . \"ENDBLK\")))");
  eval(
      "(entmake '((0 . \"INSERT\") (66 . 1) (2 . \"WELL\") (10 5 5 0)))"
      "(entmake '((0 . \"ATTRIB\") (10 6 5 0) (40 . 1) (1 . \"W7\") (2 . \"NR\") (70 . 0)))"
      "(entmake '((0 . \"SEQEND\")))");
  run("\"_.COPY\" (en 1) \"\" \"0,0\" \"10,0\" \"\"");
  run("\"_.ROTATE\" (en 1) \"\" \"5,5\" 90");
  expect_shapes("0 1 10 50",
                "((\"INSERT\" (5.0 5.0 0.0) 1.5708) (\"ATTRIB\" (5.0 6.0 0.0) \"W7\" 1.5708)"
                " (\"SEQEND\") (\"INSERT\" (15.0 5.0 0.0))"
                " (\"ATTRIB\" (16.0 5.0 0.0) \"W7\") (\"SEQEND\"))");
}

}  // namespace
