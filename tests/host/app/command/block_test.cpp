#include "tests/host/app/command/command_test.h"

namespace {

class Block : public WithCommands {
 protected:
  void given_well() {
    eval(R"((command "CIRCLE" "10,10" 1) (setq c (entlast)))");
    eval(R"((command "ATTDEF" "" "NUMBER" "Well number" "W0" "10,12" 2 0) (setq a (entlast)))");
    eval(R"((command "BLOCK" "WELL" "10,10" c a ""))");
  }
};

TEST_F(Block, ObjectsBecomeABlock) {
  given_well();
  EXPECT_EQ(entities(), "nil");
  EXPECT_NE(eval("(tblsearch \"BLOCK\" \"WELL\")"), "nil");
  eval(R"((command "OOPS"))");
  EXPECT_EQ(entities(), "(\"CIRCLE\" \"ATTDEF\")");
}

TEST_F(Block, AnInsertTakesItsValues) {
  given_well();
  eval(R"((command "-INSERT" "WELL" "100,50" 2 "" 90 "W7"))");
  EXPECT_EQ(eval("(getvar \"CMDACTIVE\")"), "0");
  EXPECT_EQ(entities(), "(\"INSERT\" \"ATTRIB\" \"SEQEND\")");
  EXPECT_EQ(last("(2 10 41 42 50)"), "(\"WELL\" (100.0 50.0 0.0) 2.0 2.0 1.5708)");
  EXPECT_EQ(eval("(mapcar '(lambda (c) (cdr (assoc c (entget (entnext (entlast))))))"
                 " '(1 2 10 40 50))"),
            "(\"W7\" \"NUMBER\" (96.0 50.0 0.0) 4.0 1.5708)");
  reopened();
  EXPECT_EQ(entities(), "(\"INSERT\" \"ATTRIB\" \"SEQEND\")");
}

TEST_F(Block, WithoutAttreqTheDefaultsAreTaken) {
  given_well();
  eval(R"((setvar "ATTREQ" 0) (command "INSERT" "WELL" "0,0" 1 1 0))");
  EXPECT_EQ(eval("(getvar \"CMDACTIVE\")"), "0");
  EXPECT_EQ(eval("(cdr (assoc 1 (entget (entnext (entlast)))))"), "\"W0\"");
}

TEST_F(Block, PresetScaleAndRotationAreNotAskedAgain) {
  eval(R"((command "CIRCLE" "0,0" 1) (command "BLOCK" "DOT" "0,0" "L" ""))");
  eval(R"((command "INSERT" "DOT" "S" 3 "R" 45 "5,5"))");
  EXPECT_EQ(last("(10 41 42 43 50)"), "((5.0 5.0 0.0) 3.0 3.0 3.0 0.785398)");
}

TEST_F(Block, AStarInsertsThePieces) {
  eval(R"((command "CIRCLE" "0,0" 1) (command "BLOCK" "DOT" "0,0" "L" ""))");
  eval(R"((command "INSERT" "*DOT" "5,5" 2 0))");
  EXPECT_EQ(entities(), "(\"CIRCLE\")");
  EXPECT_EQ(last("(10 40)"), "((5.0 5.0 0.0) 2.0)");
}

TEST_F(Block, AnUnknownBlockIsRefused) {
  eval(R"((command "INSERT" "NONE" "0,0" 1 1 0))");
  EXPECT_TRUE(told("the drawing has no block \"NONE\""));
  EXPECT_EQ(eval("(getvar \"CMDACTIVE\")"), "0");
  EXPECT_EQ(entities(), "nil");
}

TEST_F(Block, ABlockMayNotShowItself) {
  eval(R"((command "CIRCLE" "0,0" 1) (command "BLOCK" "A" "0,0" "L" ""))");
  eval(R"((command "INSERT" "A" "0,0" 1 1 0) (command "BLOCK" "B" "0,0" "L" ""))");
  eval(R"((command "INSERT" "B" "0,0" 1 1 0) (command "BLOCK" "A" "Y" "0,0" "L" ""))");
  EXPECT_TRUE(told("Block references itself"));
}

TEST_F(Block, AnArrayOfABlock) {
  eval(R"((command "CIRCLE" "0,0" 1) (command "BLOCK" "DOT" "0,0" "L" ""))");
  eval(R"((command "MINSERT" "DOT" "0,0" 1 1 0 2 3 10 20))");
  EXPECT_EQ(last("(70 71 44 45)"), "(3 2 20.0 10.0)");
}

}  // namespace
