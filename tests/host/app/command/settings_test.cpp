#include "tests/host/app/command/command_test.h"

namespace {

class Settings : public WithCommands {
 protected:
  std::string layer(const std::string& name, const std::string& codes) {
    return eval("(apply 'append (mapcar '(lambda (g) (if (member (car g) '" + codes +
                ") (list (cdr g)))) (entget (tblobjname \"LAYER\" \"" + name + "\"))))");
  }
};

TEST_F(Settings, SeveralLayerOptionsStandInOneCall) {
  eval(R"((command "-LAYER" "M" "ZY-标注" "C" "3" "" "N" "A1,A2,B1" "OFF" "A*" "LO" "B1" ""))");
  EXPECT_EQ(eval("(getvar \"CLAYER\")"), "\"ZY-标注\"");
  EXPECT_EQ(layer("ZY-标注", "(62)"), "(3)");
  EXPECT_EQ(layer("A1", "(62)"), "(-7)");
  EXPECT_EQ(layer("A2", "(62)"), "(-7)");
  EXPECT_EQ(layer("B1", "(62 70)"), "(4 7)");
  reopened();
  EXPECT_EQ(eval("(getvar \"CLAYER\")"), "\"ZY-标注\"");
  EXPECT_EQ(layer("A1", "(62)"), "(-7)");
  EXPECT_EQ(layer("B1", "(70)"), "(4)");
}

TEST_F(Settings, TheCurrentLayerIsNotFrozen) {
  eval(R"((command "LAYER" "F" "0" ""))");
  EXPECT_TRUE(told("Cannot freeze layer \"0\".  It is the CURRENT layer."));
  EXPECT_EQ(layer("0", "(70)"), "(0)");
}

TEST_F(Settings, TurningTheCurrentLayerOffAsks) {
  eval(R"((command "LAYER" "OFF" "*" "N" ""))");
  EXPECT_EQ(layer("0", "(62)"), "(7)");
  eval(R"((command "LAYER" "OFF" "*" "Y" ""))");
  EXPECT_EQ(layer("0", "(62)"), "(-7)");
  EXPECT_EQ(eval("(getvar \"CMDACTIVE\")"), "0");
}

TEST_F(Settings, ExpertsAreNotWarned) {
  eval(R"((setvar "EXPERT" 3) (command "LAYER" "OFF" "*" ""))");
  EXPECT_EQ(layer("0", "(62)"), "(-7)");
  eval(
      R"((command "LAYER" "ON" "*" "") (command "LINETYPE" "L" "DOT" "acad.lin" "L" "DOT" "acad.lin" ""))");
  eval(R"((command "CIRCLE" "0,0" 1) (command "BLOCK" "B" "0,0" "L" ""))");
  eval(R"((command "CIRCLE" "0,0" 2) (command "BLOCK" "B" "0,0" "L" ""))");
  EXPECT_EQ(eval("(cdr (assoc 40 (entget (cdr (assoc -2 (tblsearch \"BLOCK\" \"B\"))))))"), "2.0");
  EXPECT_EQ(eval("(getvar \"CMDACTIVE\")"), "0");
}

TEST_F(Settings, ALayerThatIsNotThereIsTold) {
  eval(R"((command "LAYER" "S" "NONE" "S" "0" ""))");
  EXPECT_TRUE(told("Cannot find layer \"NONE\"."));
  EXPECT_EQ(eval("(getvar \"CMDACTIVE\")"), "0");
}

TEST_F(Settings, AnOptionThatIsNotOfferedEndsTheCommand) {
  eval(R"((command "LAYER" "R" "0" "NEW" ""))");
  EXPECT_TRUE(told("LAYER: Rename is not offered"));
  EXPECT_EQ(eval("(getvar \"CMDACTIVE\")"), "0");
}

TEST_F(Settings, LinetypesAreLoadedAndUsed) {
  eval(R"((command "LINETYPE" "L" "DASHED,CENTER" "acad.lin" ""))");
  EXPECT_EQ(eval("(cdr (assoc 40 (entget (tblobjname \"LTYPE\" \"DASHED\"))))"), "0.75");
  eval(R"((command "LAYER" "LT" "CENTER" "0" ""))");
  EXPECT_EQ(layer("0", "(6)"), "(\"CENTER\")");
  eval(R"((command "LINETYPE" "S" "DASHED" ""))");
  eval(R"((command "LINE" "0,0" "1,0" ""))");
  EXPECT_EQ(last("(6)"), "(\"DASHED\")");
  reopened();
  EXPECT_EQ(last("(6)"), "(\"DASHED\")");
}

TEST_F(Settings, AStyleIsMadeAndCurrent) {
  eval(R"((command "STYLE" "HZ" "txt,hztxt" 0 0.8 0 "N" "N" "N"))");
  EXPECT_EQ(eval("(getvar \"TEXTSTYLE\")"), "\"HZ\"");
  EXPECT_EQ(eval("(mapcar '(lambda (c) (cdr (assoc c (entget (tblobjname \"STYLE\" \"HZ\")))))"
                 " '(3 4 41))"),
            "(\"txt\" \"hztxt\" 0.8)");
  eval(R"((command "STYLE" "SONG" "simsun.ttf" 3 1 0 "N" "N"))");
  EXPECT_EQ(eval("(getvar \"CMDACTIVE\")"), "0");
  eval(R"((command "TEXT" "0,0" 0 "fixed height"))");
  EXPECT_EQ(last("(40 7)"), "(3.0 \"SONG\")");
}

TEST_F(Settings, AVariableIsSetByItsNameAndBySetvar) {
  eval(R"((command "OSMODE" 35))");
  EXPECT_EQ(eval("(getvar \"OSMODE\")"), "35");
  eval(R"((command "SETVAR" "OSMODE" 0))");
  EXPECT_EQ(eval("(getvar \"OSMODE\")"), "0");
  eval(R"((command "_.LTSCALE" "2.5"))");
  EXPECT_EQ(eval("(getvar \"LTSCALE\")"), "2.5");
  eval(R"((command "SETVAR" "NONSENSE" 1))");
  EXPECT_EQ(alerts.size(), 1u);
}

TEST_F(Settings, ColorsByNameAndNumber) {
  eval(R"((command "COLOR" "RED"))");
  EXPECT_EQ(eval("(getvar \"CECOLOR\")"), "\"1\"");
  eval(R"((command "-COLOR" "BYLAYER"))");
  EXPECT_EQ(eval("(getvar \"CECOLOR\")"), "\"BYLAYER\"");
}

TEST_F(Settings, PropertiesOfObjectsChange) {
  eval(R"((command "LAYER" "N" "PIPES" "") (command "LINE" "0,0" "1,0" ""))");
  eval(R"((command "CHPROP" (entlast) "" "LA" "PIPES" "C" "BLUE" "S" 2 ""))");
  EXPECT_EQ(last("(8 62 48)"), "(\"PIPES\" 5 2.0)");
  reopened();
  EXPECT_EQ(last("(8 62)"), "(\"PIPES\" 5)");
}

TEST_F(Settings, StepsAreTakenBackAndDoneAgain) {
  eval(R"((command "LINE" "0,0" "1,0" "") (command "CIRCLE" "0,0" 1))");
  eval(R"((command "U"))");
  EXPECT_EQ(entities(), "(\"LINE\")");
  eval(R"((command "REDO"))");
  EXPECT_EQ(entities(), "(\"LINE\" \"CIRCLE\")");
  eval(R"((command "UNDO" 2))");
  EXPECT_EQ(entities(), "nil");
}

TEST_F(Settings, AGroupOfStepsIsTakenBackAtOnce) {
  eval(R"((command "POINT" "0,0"))");
  eval(R"((command "_.UNDO" "_BE") (command "LINE" "0,0" "1,0" "") (command "CIRCLE" "0,0" 1)
          (command "_.UNDO" "_E"))");
  eval(R"((command "U"))");
  EXPECT_EQ(entities(), "(\"POINT\")");
}

TEST_F(Settings, EverythingBackToTheMarkIsTakenBack) {
  eval(R"((command "POINT" "0,0") (command "UNDO" "M"))");
  eval(R"((command "LINE" "0,0" "1,0" "") (command "CIRCLE" "0,0" 1) (command "UNDO" "B"))");
  EXPECT_EQ(entities(), "(\"POINT\")");
}

TEST_F(Settings, PointsAreGivenInTheUsersCoordinates) {
  eval(R"((command "UCS" "O" "100,50") (command "UCS" "Z" 90))");
  EXPECT_EQ(eval("(getvar \"WORLDUCS\")"), "0");
  eval(R"((command "LINE" "0,0" "10,0" ""))");
  EXPECT_EQ(last("(10 11)"), "((100.0 50.0 0.0) (100.0 60.0 0.0))");
  eval(R"((command "LINE" "*0,0" "*10,0" ""))");
  EXPECT_EQ(last("(10 11)"), "((0.0 0.0 0.0) (10.0 0.0 0.0))");
  eval(R"((command "UCS" "P"))");
  EXPECT_EQ(eval("(getvar \"UCSXDIR\")"), "(1.0 0.0 0.0)");
  eval(R"((command "UCS" "S" "HERE") (command "UCS" "W"))");
  EXPECT_EQ(eval("(getvar \"WORLDUCS\")"), "1");
  eval(R"((command "UCS" "R" "HERE"))");
  EXPECT_EQ(eval("(getvar \"UCSORG\")"), "(100.0 50.0 0.0)");
}

TEST_F(Settings, UnusedRecordsArePurged) {
  eval(R"((command "LAYER" "N" "UNUSED,USED" "S" "USED" "") (command "POINT" "0,0")
          (command "LAYER" "S" "0" ""))");
  eval(R"((command "-PURGE" "LA" "*" "N"))");
  EXPECT_EQ(eval("(tblsearch \"LAYER\" \"UNUSED\")"), "nil");
  EXPECT_NE(eval("(tblsearch \"LAYER\" \"USED\")"), "nil");
}

TEST_F(Settings, MeasuresAreKeptInVariables) {
  eval(R"((command "AREA" "0,0" "10,0" "10,5" "0,5" ""))");
  EXPECT_EQ(eval("(list (getvar \"AREA\") (getvar \"PERIMETER\"))"), "(50.0 30.0)");
  eval(R"((command "CIRCLE" "0,0" 10) (command "AREA" "O" (entlast)))");
  EXPECT_EQ(eval("(getvar \"AREA\")"), "314.159");
  eval(R"((command "DIST" "0,0" "3,4"))");
  EXPECT_EQ(eval("(getvar \"DISTANCE\")"), "5.0");
  eval(R"((command "ID" "7,8"))");
  EXPECT_EQ(eval("(getvar \"LASTPOINT\")"), "(7.0 8.0 0.0)");
}

TEST_F(Settings, ScreenCommandsTakeTheirAnswers) {
  eval(R"((command "ZOOM" "W" "0,0" "100,50") (command "REGEN") (command "ZOOM" "0.5X")
          (command "ZOOM" "E") (command "PAN" "0,0" "1,1") (command "REDRAW")
          (command "-OSNAP" "END,MID") (command "ORTHO" "ON") (command "ZOOM" "C" "5,5" 20))");
  EXPECT_EQ(eval("(getvar \"CMDACTIVE\")"), "0");
  EXPECT_TRUE(alerts.empty());
  EXPECT_EQ(eval("(list (getvar \"OSMODE\") (getvar \"ORTHOMODE\") (getvar \"VIEWSIZE\"))"),
            "(3 1 20.0)");
}

TEST_F(Settings, ATransparentCommandRunsInsideOfAnother) {
  eval(R"((command "LINE" "0,0" "'ZOOM" "E" "5,5" ""))");
  EXPECT_EQ(last("(10 11)"), "((0.0 0.0 0.0) (5.0 5.0 0.0))");
}

TEST_F(Settings, WhatIsNotOfferedSaysSo) {
  eval(R"((command "DIMLINEAR" "0,0" "1,0" "0,5"))");
  EXPECT_TRUE(told("dimensions are not drawn here"));
  EXPECT_EQ(alerts.size(), 1u);
  EXPECT_EQ(eval("(getvar \"CMDACTIVE\")"), "0");
}

}  // namespace
