#include "tests/host/app/command/edit/edit_test.h"

namespace {

using testing::HasSubstr;

/// What is not drawn in the plan by today's kinds: old polylines, other normals, locked layers,
/// another user coordinate system.
class SpecialEdits : public WithEdits {
 protected:
  void given_lock() {
    eval("(command \"_.-LAYER\" \"_Make\" \"LOCKED\" \"_Set\" \"0\" \"_Lock\" \"LOCKED\" \"\")");
  }
  void draw_old_polyline() {
    eval(
        "(entmake '((0 . \"POLYLINE\") (66 . 1) (10 0 0 0) (70 . 0)))"
        "(entmake '((0 . \"VERTEX\") (10 0 0 0) (42 . 0.0)))"
        "(entmake '((0 . \"VERTEX\") (10 10 0 0) (42 . 1.0)))"
        "(entmake '((0 . \"VERTEX\") (10 10 4 0) (42 . 0.0)))"
        "(entmake '((0 . \"SEQEND\")))");
  }
};

TEST_F(SpecialEdits, OldPolylinesAreMovedMirroredAndCopied) {
  draw_old_polyline();
  run("\"_.MIRROR\" (en 1) \"\" \"0,0\" \"0,1\" \"_Y\"");
  run("\"_.COPY\" (en 1) \"\" \"0,0\" \"0,100\" \"\"");
  expect_shapes("0 42 10",
                "((\"POLYLINE\" (0.0 0.0 0.0)) (\"VERTEX\" (0.0 0.0 0.0) 0.0)"
                " (\"VERTEX\" (-10.0 0.0 0.0) -1.0) (\"VERTEX\" (-10.0 4.0 0.0) 0.0) (\"SEQEND\")"
                " (\"POLYLINE\" (0.0 0.0 0.0)) (\"VERTEX\" (0.0 100.0 0.0) 0.0)"
                " (\"VERTEX\" (-10.0 100.0 0.0) -1.0) (\"VERTEX\" (-10.0 104.0 0.0) 0.0)"
                " (\"SEQEND\"))");
}

TEST_F(SpecialEdits, OldPolylinesAreCutAndEdited) {
  draw_old_polyline();
  run("\"_.BREAK\" (en 1) \"_F\" \"2,0\" \"5,0\"");
  EXPECT_EQ(eval("(vl-remove '(\"SEQEND\") (shapes '(0 10)))"),
            "((\"POLYLINE\" (0.0 0.0 0.0)) (\"VERTEX\" (5.0 0.0 0.0)) (\"VERTEX\" (10.0 0.0 0.0))"
            " (\"VERTEX\" (10.0 4.0 0.0)) (\"POLYLINE\" (0.0 0.0 0.0))"
            " (\"VERTEX\" (0.0 0.0 0.0)) (\"VERTEX\" (2.0 0.0 0.0)))");
  run("\"_.PEDIT\" (en 1) \"_C\" \"_W\" 0.5 \"\"");
  EXPECT_EQ(eval("(length (vl-remove-if-not '(lambda (s) (member 0.5 s)) (shapes '(0 40))))"), "3");
}

TEST_F(SpecialEdits, OldPolylinesAreStretched) {
  draw_old_polyline();
  run("\"_.STRETCH\" \"_C\" \"9,3\" \"12,5\" \"\" \"0,0\" \"0,6\"");
  EXPECT_EQ(eval("(cdr (assoc 10 (entget (en 4))))"), "(10.0 10.0 0.0)");
  EXPECT_EQ(eval("(cdr (assoc 10 (entget (en 3))))"), "(10.0 0.0 0.0)");
}

TEST_F(SpecialEdits, PolylinesSeenFromBelow) {
  // Of a normal -Z the own X axis is the world's -X: this one runs from (0, 0) to (10, 0).
  draw_polyline("(10 0 0) (10 -10 0) (42 . 1.0) (10 -10 4)", false, "(210 0 0 -1)");
  EXPECT_EQ(eval("(vlax-curve-getendpoint (en 1))"), "(10.0 4.0 0.0)");
  run("\"_.BREAK\" (en 1) \"_F\" \"4,0\" \"@\"");
  EXPECT_EQ(eval("(shapes '(10 210))"),
            "(((0.0 0.0) (-4.0 0.0) (0.0 0.0 -1.0))"
            " ((-4.0 0.0) (-10.0 0.0) (-10.0 4.0) (0.0 0.0 -1.0)))");
}

TEST_F(SpecialEdits, ArcsSeenFromBelowAreTrimmed) {
  draw("(0 . \"ARC\") (10 0 0 0) (40 . 5) (50 . 0.0) (51 . 3.14159265358979) (210 0 0 -1)");
  draw_line("0 -9 0", "0 9 0");
  // The arc runs over the top from (-5, 0) to (5, 0); its left half goes.
  run("\"_.TRIM\" (en 2) \"\" (pick 1 '(-4 3)) \"\"");
  EXPECT_EQ(eval("(equal (vlax-curve-getstartpoint (en 1)) '(0 5 0) 1e-9)"), "T");
  EXPECT_EQ(eval("(equal (vlax-curve-getendpoint (en 1)) '(5 0 0) 1e-9)"), "T");
}

TEST_F(SpecialEdits, NothingOnALockedLayerIsCut) {
  given_lock();
  draw_line("0 0 0", "10 0 0", "(8 . \"LOCKED\")");
  draw_line("4 -5 0", "4 5 0");
  for (const char* const arguments :
       {"\"_.TRIM\" \"\" (pick 1 '(1 0)) \"\"", "\"_.EXTEND\" \"\" (pick 1 '(9 0)) \"\"",
        "\"_.BREAK\" (pick 1 '(1 0)) \"5,0\"", "\"_.ERASE\" (en 1) \"\"", "\"_.EXPLODE\" (en 1)",
        "\"_.PEDIT\" (en 1)", "\"_.REVERSE\" (en 1) \"\"",
        "\"_.STRETCH\" \"_C\" \"9,-1\" \"11,1\" \"\" \"0,0\" \"0,6\"",
        "\"_.LENGTHEN\" \"_DE\" 5 (pick 1 '(9 0)) \"\"", "\"_.SCALE\" (en 1) \"\" \"0,0\" 2",
        "\"_.CHANGE\" (en 1) \"\" \"_P\" \"_C\" 3 \"\""}) {
    SCOPED_TRACE(arguments);
    printed.clear();
    eval("(command " + std::string(arguments) + ")");
    eval("(command)");
    EXPECT_THAT(printed, HasSubstr("on a locked layer."));
  }
  expect_shapes("10 11", "(((0.0 0.0 0.0) (10.0 0.0 0.0)) ((4.0 -5.0 0.0) (4.0 5.0 0.0)))");
}

TEST_F(SpecialEdits, PointsAreThoseOfTheUser) {
  // The user's X axis is the world's Y axis.
  eval("(command \"_.UCS\" \"_Z\" 90)");
  draw_line("0 0 0", "1 0 0");
  run("\"_.MOVE\" (en 1) \"\" \"0,0\" \"10,0\"");
  EXPECT_EQ(eval("(equal (shapes '(10 11)) '(((0 10 0) (1 10 0))) 1e-9)"), "T");
}

TEST_F(SpecialEdits, ObjectsOfUnknownShapeStay) {
  draw(
      "(0 . \"REGION\") (100 . \"AcDbEntity\") (8 . \"0\") (100 . \"AcDbModelerGeometry\") (70 . "
      "1)");
  EXPECT_THAT(run("\"_.MOVE\" (entlast) \"\" \"0,0\" \"10,0\""),
              HasSubstr("1 object cannot be transformed so and was left as it is."));
}

TEST_F(SpecialEdits, ACircleHasNoOffsetPastItsCenter) {
  draw("(0 . \"CIRCLE\") (10 0 0 0) (40 . 5)");
  EXPECT_THAT(run("\"_.OFFSET\" 6 (pick 1 '(5 0)) \"0,0\" \"\""),
              HasSubstr("Cannot offset that object."));
  expect_shapes("40", "((5.0))");
}

TEST_F(SpecialEdits, ObjectsArePickedByPoints) {
  draw_line("0 0 0", "10 0 0");
  draw_line("4 -5 0", "4 5 0");
  eval("(setvar \"VIEWSIZE\" 20.0)");
  run("\"_.TRIM\" \"\" \"1,0\" \"\"");
  run("\"_.OFFSET\" 2 '(6 0) '(6 9) \"\"");
  expect_shapes("10 11",
                "(((4.0 0.0 0.0) (10.0 0.0 0.0)) ((4.0 -5.0 0.0) (4.0 5.0 0.0))"
                " ((4.0 2.0 0.0) (10.0 2.0 0.0)))");
}

TEST_F(SpecialEdits, ExplodeAsksOnWhenQaflagsSaysSo) {
  draw_polyline("(10 0 0) (10 10 0)");
  draw_polyline("(10 0 5) (10 10 5)");
  eval("(setvar \"QAFLAGS\" 1)");
  run("\"_.EXPLODE\" (en 1) (en 2) \"\"");
  expect_shapes("0 10", "((\"LINE\" (0.0 0.0 0.0)) (\"LINE\" (0.0 5.0 0.0)))");
}

TEST_F(SpecialEdits, OneSetIsExplodedAtOnce) {
  draw_polyline("(10 0 0) (10 10 0)");
  draw_polyline("(10 0 5) (10 10 5)");
  run("\"_.EXPLODE\" (ssget \"_X\")");
  EXPECT_EQ(eval("(shapes '(0))"), "((\"LINE\") (\"LINE\"))");
}

TEST_F(SpecialEdits, ASingleCopyEndsTheCommand) {
  draw_line("0 0 0", "1 0 0");
  eval("(setvar \"COPYMODE\" 1)");
  run("\"_.COPY\" (en 1) \"\" \"0,0\" \"5,0\"");
  expect_shapes("10", "(((0.0 0.0 0.0)) ((5.0 0.0 0.0)))");
}

TEST_F(SpecialEdits, CommandSTakesACopyForComplete) {
  draw_line("0 0 0", "1 0 0");
  EXPECT_EQ(eval("(command-s \"_.COPY\" (en 1) \"\" \"0,0\" \"5,0\")"), "nil");
  expect_shapes("10", "(((0.0 0.0 0.0)) ((5.0 0.0 0.0)))");
}

TEST_F(SpecialEdits, TrimLeavesTheRecordsOfAPipe) {
  eval("(regapp \"PN\")");
  draw_line("0 0 0", "10 0 0");
  eval("(entmod (append (entget (en 1)) '((-3 (\"PN\" (1000 . \"DN300\"))))))");
  draw_line("4 -5 0", "4 5 0");
  draw_line("7 -5 0", "7 5 0");
  run("\"_.TRIM\" \"\" (pick 1 '(5 0)) \"\"");
  EXPECT_EQ(eval("(cdr (assoc -3 (entget (en 1) '(\"PN\"))))"), "((\"PN\" (1000 . \"DN300\")))");
  EXPECT_EQ(eval("(cdr (assoc -3 (entget (entlast) '(\"PN\"))))"), "((\"PN\" (1000 . \"DN300\")))");
  run("\"_.OFFSET\" 2 (pick 1 '(1 0)) \"1,9\" \"\"");
  EXPECT_EQ(eval("(assoc -3 (entget (entlast) '(\"PN\")))"), "nil");
}

}  // namespace
