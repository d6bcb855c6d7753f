#include "tests/host/app/command/command_test.h"

namespace {

class Text : public WithCommands {};

TEST_F(Text, AskingForHeightAndRotation) {
  eval(R"((command "TEXT" "10,20" 2.5 90 "DN300 管"))");
  EXPECT_EQ(last("(0 1 10 40 50)"), "(\"TEXT\" (10.0 20.0 0.0) 2.5 \"DN300 管\" 1.5708)");
  EXPECT_EQ(eval("(getvar \"TEXTSIZE\")"), "2.5");
  EXPECT_EQ(eval("(getvar \"CMDACTIVE\")"), "0");
  reopened();
  EXPECT_EQ(last("(1)"), "(\"DN300 管\")");
}

TEST_F(Text, EnterKeepsHeightAndRotation) {
  eval(R"((setvar "TEXTSIZE" 3.5) (command "TEXT" "0,0" "" "" "x"))");
  EXPECT_EQ(last("(40 50)"), "(3.5 0.0)");
}

struct Justified {
  const char* option;
  int horizontal;
  int vertical;
};
void PrintTo(const Justified& row, std::ostream* out) { *out << row.option; }

class TextJustified : public Text, public testing::WithParamInterface<Justified> {};

TEST_P(TextJustified, StandsWhereItIsAligned) {
  const auto& [option, horizontal, vertical] = GetParam();
  eval("(command \"TEXT\" \"J\" \"" + std::string(option) + "\" \"5,5\" 2 0 \"abc\")");
  EXPECT_EQ(eval("(list (cdr (assoc 72 (entget (entlast)))) (cdr (assoc 73 (entget (entlast)))) "
                 "(cdr (assoc 11 (entget (entlast)))))"),
            "(" + std::to_string(horizontal) + " " + std::to_string(vertical) + " (5.0 5.0 0.0))");
}

constexpr Justified kJustified[] = {{"C", 1, 0},  {"M", 4, 0},  {"R", 2, 0},  {"TL", 0, 3},
                                    {"TC", 1, 3}, {"TR", 2, 3}, {"ML", 0, 2}, {"MC", 1, 2},
                                    {"MR", 2, 2}, {"BL", 0, 1}, {"BC", 1, 1}, {"BR", 2, 1}};
INSTANTIATE_TEST_SUITE_P(Options, TextJustified, testing::ValuesIn(kJustified));

TEST_F(Text, JustificationMayStandWithoutItsWord) {
  eval(R"((command "TEXT" "MC" "5,5" 2 0 "abc"))");
  EXPECT_EQ(last("(72)"), "(1)");
}

TEST_F(Text, AlignedTextFindsItsHeight) {
  eval(R"((command "TEXT" "A" "0,0" "10,0" "abc") (setq h (cdr (assoc 40 (entget (entlast))))))");
  eval(R"((command "TEXT" "A" "0,0" "20,0" "abc"))");
  EXPECT_EQ(eval("(equal (* 2 h) (cdr (assoc 40 (entget (entlast)))) 1e-9)"), "T");
}

TEST_F(Text, FittedTextKeepsItsHeight) {
  eval(R"((command "TEXT" "J" "F" "0,0" "10,0" 2 "abc"))");
  EXPECT_EQ(last("(72 11 40)"), "(2.0 5 (10.0 0.0 0.0))");
}

TEST_F(Text, LinesBelowEachOther) {
  eval(R"((command "DTEXT" "0,10" 3 0 "one" "two" ""))");
  EXPECT_EQ(entities(), "(\"TEXT\" \"TEXT\")");
  EXPECT_EQ(last("(1 10)"), "((0.0 5.0 0.0) \"two\")");
}

TEST_F(Text, WhatLooksLikeLispIsText) {
  eval(R"((command "TEXT" "0,0" 2 0 "(1) !x"))");
  EXPECT_EQ(last("(1)"), "(\"(1) !x\")");
  eval(R"((setq x 7) (setvar "TEXTEVAL" 1) (command "TEXT" "0,0" 2 0 "!x"))");
  EXPECT_EQ(last("(1)"), "(\"7\")");
}

TEST_F(Text, AParagraphOfLines) {
  eval(R"((command "-MTEXT" "0,10" "J" "MC" "H" 2.5 "R" 90 "20,0" "one" "two" ""))");
  EXPECT_EQ(last("(0 10 40 41 71 1)"), "(\"MTEXT\" (10.0 5.0 0.0) 2.5 20.0 5 \"one\\\\Ptwo\")");
  reopened();
  EXPECT_EQ(last("(1 71)"), "(5 \"one\\\\Ptwo\")");
}

}  // namespace
