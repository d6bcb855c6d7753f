#include "tests/host/app/command/command_test.h"

namespace {

class CommandLine : public WithCommands {};

TEST_F(CommandLine, ACompleteCommandDrawsAndEnds) {
  eval("(command \"_.LINE\" '(0 0) \"10,0\" \"@0,5\" \"\")");
  EXPECT_EQ(entities(), "(\"LINE\" \"LINE\")");
  EXPECT_EQ(last("(10 11)"), "((10.0 0.0 0.0) (10.0 5.0 0.0))");
  EXPECT_EQ(eval("(getvar \"CMDACTIVE\")"), "0");
  reopened();
  EXPECT_EQ(entities(), "(\"LINE\" \"LINE\")");
}

TEST_F(CommandLine, ACommandGoesOnInTheNextCall) {
  eval("(command \"LINE\")");
  EXPECT_EQ(eval("(getvar \"CMDACTIVE\")"), "1");
  EXPECT_EQ(eval("(getvar \"CMDNAMES\")"), "\"LINE\"");
  eval("(command '(1 1))");
  eval("(command \"4,5\" \"\")");
  EXPECT_EQ(last("(10 11)"), "((1.0 1.0 0.0) (4.0 5.0 0.0))");
  EXPECT_EQ(eval("(getvar \"CMDNAMES\")"), "\"\"");
}

TEST_F(CommandLine, PauseTakesTheAnswerOfTheUser) {
  given_answers("nonsense\n3,4\n");
  eval("(command \"LINE\" \"0,0\" pause \"\")");
  EXPECT_EQ(last("(11)"), "((3.0 4.0 0.0))");
  EXPECT_TRUE(told("Point or option keyword required."));
}

TEST_F(CommandLine, EscEndsACommandAndKeepsWhatItHasDrawn) {
  eval("(command \"LINE\" \"0,0\" \"1,0\") (command)");
  EXPECT_EQ(eval("(getvar \"CMDACTIVE\")"), "0");
  EXPECT_EQ(entities(), "(\"LINE\")");
}

TEST_F(CommandLine, AnUnknownCommandIsToldAndTheRestOfTheCallPassedOver) {
  eval("(command \"FOO\" \"LINE\" \"0,0\" \"1,1\" \"\")");
  EXPECT_TRUE(told("Unknown command \"FOO\".  Press F1 for help."));
  EXPECT_EQ(alerts, std::vector<std::string>{"Unknown command \"FOO\".  Press F1 for help."});
  EXPECT_EQ(entities(), "nil");
}

TEST_F(CommandLine, ErasedObjectsComeBackWithOops) {
  eval("(command \"LINE\" \"0,0\" \"1,0\" \"2,0\" \"\")");
  eval("(command \"ERASE\" (entlast) \"\")");
  EXPECT_EQ(entities(), "(\"LINE\")");
  eval("(command \"OOPS\")");
  EXPECT_EQ(entities(), "(\"LINE\" \"LINE\")");
}

TEST_F(CommandLine, NothingIsPrintedWithoutEcho) {
  eval("(setvar \"CMDECHO\" 0)");
  printed.clear();
  eval("(command \"LINE\" \"0,0\" \"1,0\" \"\")");
  EXPECT_EQ(printed, "");
  eval("(setvar \"CMDECHO\" 1) (command \"LINE\" \"0,0\" \"1,0\" \"\")");
  EXPECT_EQ(printed,
            "\nCommand: LINE\nSpecify first point: 0,0\nSpecify next point or [Undo]: 1,0\n"
            "Specify next point or [Undo]: \n");
}

TEST_F(CommandLine, ADrawingMayBeClosedWhileACommandWaits) {
  eval("(command \"LINE\" \"0,0\")");
  host.close(drawing);
}

}  // namespace
