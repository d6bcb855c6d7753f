#include <cmath>

#include "tests/host/app/command/command_test.h"

namespace {

class Draw : public WithCommands {
 protected:
  /// The groups of the last entity after the command, and after saving and reopening.
  std::string drawn(const std::string& command, const std::string& codes) {
    eval("(command " + command + ")");
    EXPECT_EQ(eval("(getvar \"CMDACTIVE\")"), "0") << command;
    const std::string before = last(codes);
    reopened();
    EXPECT_EQ(last(codes), before) << command;
    return before;
  }
  double number(const std::string& expression) { return std::stod(eval(expression)); }
};

TEST_F(Draw, LinesCloseAndTakeBack) {
  eval("(command \"LINE\" \"0,0\" \"10,0\" \"99,99\" \"U\" \"10,10\" \"C\")");
  EXPECT_EQ(entities(), "(\"LINE\" \"LINE\" \"LINE\")");
  EXPECT_EQ(last("(10 11)"), "((10.0 10.0 0.0) (0.0 0.0 0.0))");
}

TEST_F(Draw, LinesGoOnFromTheLastPoint) {
  eval("(command \"LINE\" \"1,2\" \"3,4\" \"\") (command \"LINE\" \"\" \"5,6\" \"\")");
  EXPECT_EQ(last("(10 11)"), "((3.0 4.0 0.0) (5.0 6.0 0.0))");
}

struct Case {
  const char* command;
  const char* codes;
  const char* groups;
};

class DrawCase : public Draw, public testing::WithParamInterface<Case> {};

TEST_P(DrawCase, GivesTheEntity) {
  EXPECT_EQ(drawn(GetParam().command, GetParam().codes), GetParam().groups);
}

constexpr Case kPoints[] = {
    {R"("POINT" "1,2,3")", "(0 10)", R"(("POINT" (1.0 2.0 3.0)))"},
    {R"("_.RAY" "1,1" "4,5" "")", "(0 10 11)", R"(("RAY" (1.0 1.0 0.0) (0.6 0.8 0.0)))"},
    {R"("XLINE" "1,1" "4,5" "")", "(0 10 11)", R"(("XLINE" (1.0 1.0 0.0) (0.6 0.8 0.0)))"},
    {R"("XLINE" "H" "1,1" "")", "(0 10 11)", R"(("XLINE" (1.0 1.0 0.0) (1.0 0.0 0.0)))"},
    {R"("3DPOLY" "0,0,1" "1,0,2" "1,1,3" "C")", "(0)", R"(("POLYLINE"))"},
    {R"("SOLID" "0,0" "1,0" "0,1" "1,1" "")", "(0 10 11 12 13)",
     R"(("SOLID" (0.0 0.0 0.0) (1.0 0.0 0.0) (0.0 1.0 0.0) (1.0 1.0 0.0)))"},
    {R"("SOLID" "0,0" "1,0" "0,1" "" )", "(12 13)", R"(((0.0 1.0 0.0) (0.0 1.0 0.0)))"},
    {R"("3DFACE" "0,0" "1,0" "1,1,5" "0,1,5" "")", "(0 10 11 12 13)",
     R"(("3DFACE" (0.0 0.0 0.0) (1.0 0.0 0.0) (1.0 1.0 5.0) (0.0 1.0 5.0)))"},
    {R"("TRACE" 2 "0,0" "10,0" "")", "(0 10 11 12 13)",
     R"(("TRACE" (0.0 1.0 0.0) (0.0 -1.0 0.0) (10.0 1.0 0.0) (10.0 -1.0 0.0)))"},
};
INSTANTIATE_TEST_SUITE_P(Points, DrawCase, testing::ValuesIn(kPoints));

constexpr Case kCircles[] = {
    {R"("CIRCLE" "5,5" 2.5)", "(0 10 40)", R"(("CIRCLE" (5.0 5.0 0.0) 2.5))"},
    {R"("CIRCLE" '(5 5) '(5 8))", "(10 40)", "((5.0 5.0 0.0) 3.0)"},
    {R"("C" "5,5" "D" 5)", "(10 40)", "((5.0 5.0 0.0) 2.5)"},
    {R"("CIRCLE" "2P" "0,0" "10,0")", "(10 40)", "((5.0 0.0 0.0) 5.0)"},
    {R"("CIRCLE" "3P" "10,0" "0,10" "-10,0")", "(10 40)", "((0.0 0.0 0.0) 10.0)"},
    {R"("ARC" "10,0" "0,10" "-10,0")", "(0 10 40 50 51)",
     R"(("ARC" (0.0 0.0 0.0) 10.0 0.0 3.14159))"},
    {R"("ARC" "10,0" "C" "0,0" "0,5")", "(10 40 50 51)", "((0.0 0.0 0.0) 10.0 0.0 1.5708)"},
    {R"("ARC" "10,0" "C" "0,0" "A" 90)", "(40 50 51)", "(10.0 0.0 1.5708)"},
    {R"("ARC" "10,0" "C" "0,0" "L" 10)", "(40 50 51)", "(10.0 0.0 1.0472)"},
    {R"("ARC" "C" "0,0" "10,0" "A" -90)", "(40 50 51)", "(10.0 4.71239 0.0)"},
    {R"("ARC" "10,0" "E" "0,10" "0,0")", "(40 50 51)", "(10.0 0.0 1.5708)"},
    {R"("ARC" "10,0" "E" "-10,0" "A" 180)", "(40 50 51)", "(10.0 0.0 3.14159)"},
    {R"("ARC" "10,0" "E" "-10,0" "D" 90)", "(40 50 51)", "(10.0 0.0 3.14159)"},
    {R"("ARC" "10,0" "E" "0,10" "R" 10)", "(40 50 51)", "(10.0 0.0 1.5708)"},
    {R"("ELLIPSE" "-10,0" "10,0" 5)", "(0 10 11 40)",
     R"(("ELLIPSE" (0.0 0.0 0.0) (10.0 0.0 0.0) 0.5))"},
    {R"("ELLIPSE" "C" "0,0" "5,0" 10)", "(11 40)", "((0.0 10.0 0.0) 0.5)"},
    {R"("ELLIPSE" "A" "-10,0" "10,0" 5 0 90)", "(41 42)", "(0.0 1.5708)"},
    {R"("DONUT" 2 4 "5,5" "")", "(0 70 40 41 42)", R"(("LWPOLYLINE" 1 1.0 1.0 1.0 1.0 1.0 1.0))"},
};
INSTANTIATE_TEST_SUITE_P(Circles, DrawCase, testing::ValuesIn(kCircles));

constexpr Case kPolylines[] = {
    {R"("PLINE" "0,0" "10,0" "10,5" "C")", "(0 90 70 10)",
     R"(("LWPOLYLINE" 3 1 (0.0 0.0) (10.0 0.0) (10.0 5.0)))"},
    {R"("PLINE" "0,0" "W" 1 2 "10,0" "20,0" "")", "(40 41)", "(1.0 2.0 2.0 2.0 0.0 0.0)"},
    {R"("PLINE" "0,0" "H" 1 1 "10,0" "")", "(40 41)", "(2.0 2.0 0.0 0.0)"},
    {R"("PLINE" "0,0" "10,0" "A" "10,10" "")", "(10 42)",
     "((0.0 0.0) 0.0 (10.0 0.0) 1.0 (10.0 10.0) 0.0)"},
    {R"("PLINE" "0,0" "A" "A" 180 "10,0" "")", "(42)", "(1.0 0.0)"},
    {R"("PLINE" "0,0" "A" "CE" "5,0" "10,0" "")", "(10 42)", "((0.0 0.0) 1.0 (10.0 0.0) 0.0)"},
    {R"("PLINE" "0,0" "A" "S" "5,5" "10,0" "")", "(42)", "(-1.0 0.0)"},
    {R"("PLINE" "0,0" "A" "D" 90 "10,0" "")", "(42)", "(-1.0 0.0)"},
    {R"("PLINE" "0,0" "A" "R" 5 "10,0" "")", "(42)", "(1.0 0.0)"},
    {R"("PLINE" "0,0" "10,0" "L" 5 "")", "(10)", "((0.0 0.0) (10.0 0.0) (15.0 0.0))"},
    {R"("PLINE" "0,0" "10,0" "99,0" "U" "")", "(10)", "((0.0 0.0) (10.0 0.0))"},
    {R"("RECTANG" "1,1" "4,3")", "(70 10)", "(1 (1.0 1.0) (4.0 1.0) (4.0 3.0) (1.0 3.0))"},
    {R"("RECTANG" "F" 1 "0,0" "10,10")", "(90 42)",
     "(8 0.414214 0.0 0.414214 0.0 0.414214 0.0 0.414214 0.0)"},
    {R"("RECTANG" "C" 1 2 "0,0" "10,10")", "(10)",
     "((0.0 1.0) (2.0 0.0) (9.0 0.0) (10.0 2.0) (10.0 9.0) (8.0 10.0) (1.0 10.0) (0.0 8.0))"},
    {R"("RECTANG" "0,0" "D" 4 3 "9,9")", "(10)", "((0.0 0.0) (4.0 0.0) (4.0 3.0) (0.0 3.0))"},
    {R"("POLYGON" 4 "0,0" "I" "0,10")", "(90 70)", "(4 1)"},
    {R"("POLYGON" 4 "E" "0,0" "10,0")", "(70)", "(1)"},
};
INSTANTIATE_TEST_SUITE_P(Polylines, DrawCase, testing::ValuesIn(kPolylines));

TEST_F(Draw, ASplineGoesThroughItsPoints) {
  eval(R"((command "SPLINE" "0,0" "10,5" "20,0" "30,5" "" "" ""))");
  EXPECT_EQ(last("(0 71 72 73 74)"), "(\"SPLINE\" 3 10 6 4)");
  for (const char* point : {"10 5", "20 0"})
    EXPECT_LT(number("(distance '(" + std::string(point) +
                     " 0) (vlax-curve-getclosestpointto (entlast) '(" + point + " 0)))"),
              1e-9);
}

TEST_F(Draw, ACircleTouchesTwoLines) {
  eval(R"((command "LINE" "0,0" "100,0" "") (setq a (entlast)))");
  eval(R"((command "LINE" "0,0" "0,100" "") (setq b (entlast)))");
  eval(R"((command "CIRCLE" "T" (list a '(50 0)) (list b '(0 50)) 10))");
  EXPECT_EQ(last("(10 40)"), "((10.0 10.0 0.0) 10.0)");
}

TEST_F(Draw, APolylineIsKeptByEsc) {
  eval(R"((command "PLINE" "0,0" "10,0" "10,10") (command))");
  EXPECT_EQ(last("(0 90)"), "(\"LWPOLYLINE\" 3)");
}

TEST_F(Draw, ImpossibleShapesAreRefused) {
  eval("(setvar \"CMDECHO\" 0)");
  for (const char* command : {R"("CIRCLE" "3P" "0,0" "1,0" "2,0")", R"("ARC" "0,0" "1,0" "2,0")",
                              R"("ARC" "0,0" "E" "10,0" "R" 1)", R"("RECTANG" "0,0" "0,5")",
                              R"("POLYGON" 2 "0,0" "I" 5)", R"("ELLIPSE" "0,0" "0,0" 5)"}) {
    printed.clear();
    eval("(command " + std::string(command) + ")");
    EXPECT_FALSE(printed.empty()) << command;
    EXPECT_EQ(eval("(getvar \"CMDACTIVE\")"), "0") << command;
    eval("(command)");
  }
  EXPECT_EQ(entities(), "nil");
}

TEST_F(Draw, WhatIsDrawnHasTheCurrentProperties) {
  eval(R"((command "LAYER" "M" "PIPES" "") (setvar "CECOLOR" "3"))");
  eval(R"((command "LINE" "0,0" "1,1" ""))");
  EXPECT_EQ(last("(8 62)"), "(\"PIPES\" 3)");
}

TEST_F(Draw, FlatObjectsLieInTheUsersPlane) {
  eval(R"((command "UCS" "3" "0,0,5" "0,1,5" "-1,0,5"))");
  eval(R"((command "CIRCLE" "10,0" 2))");
  EXPECT_EQ(last("(10 40)"), "((0.0 10.0 5.0) 2.0)");
  eval(R"((command "UCS" "W"))");
}

}  // namespace
