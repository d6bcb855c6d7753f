#include "host/app/command/command_table.h"
#include "host/base/codepage.h"
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

TEST_F(CommandLine, NamesHaveMarksAndAliasesInAnyOrder) {
  for (const char* name : {"_.LINE", "._LINE", "line", "L", "_l", "-LINE"}) {
    eval("(command \"" + std::string(name) + "\" \"0,0\" \"1,0\" \"\")");
    EXPECT_EQ(eval("(getvar \"CMDACTIVE\")"), "0") << name;
  }
  EXPECT_EQ(entities(), "(\"LINE\" \"LINE\" \"LINE\" \"LINE\" \"LINE\" \"LINE\")");
  EXPECT_TRUE(alerts.empty());
}

TEST_F(CommandLine, InputsOfAllKinds) {
  eval("(command \"LINE\" (list 1 2) (list 3.0 4.0 5.0) \"\")");
  EXPECT_EQ(last("(10 11)"), "((1.0 2.0 0.0) (3.0 4.0 5.0))");
  eval("(setq e (entlast) s (ssadd e)) (command \"LINE\" \"0,0\" \"9,9\" \"\")");
  eval("(command \"ERASE\" s (list (entlast) '(9 9)) \"\")");
  EXPECT_EQ(entities(), "nil");
  EXPECT_EQ(eval("(command \"LINE\" 'a)"), "error: bad argument type: stringp: A");
}

TEST_F(CommandLine, TypedLispStandsForItsValue) {
  eval("(setq p '(3 4)) (command \"LINE\" \"!p\" \"(list 5 6)\" \"\")");
  EXPECT_EQ(last("(10 11)"), "((3.0 4.0 0.0) (5.0 6.0 0.0))");
}

TEST_F(CommandLine, AWrongInputIsToldAndAskedAgain) {
  eval("(setvar \"CMDECHO\" 0) (command \"LINE\" \"0,0\" \"CIRCLE\" \"5,5\" \"\")");
  EXPECT_TRUE(told("LINE: Point or option keyword required.  (CIRCLE, for: Specify next point"));
  EXPECT_EQ(last("(10 11)"), "((0.0 0.0 0.0) (5.0 5.0 0.0))");
}

TEST_F(CommandLine, NilIsEsc) {
  eval("(command \"LINE\" \"0,0\" \"1,0\" nil)");
  EXPECT_EQ(eval("(getvar \"CMDACTIVE\")"), "0");
}

TEST_F(CommandLine, EnterBetweenCommandsIsPassedOver) {
  eval("(command \"LINE\" \"0,0\" \"1,0\" \"\" \"\") (command \"POINT\" \"5,5\")");
  EXPECT_EQ(entities(), "(\"LINE\" \"POINT\")");
}

TEST_F(CommandLine, FunctionsOfLispAreNoCommands) {
  eval("(defun c:hello () (setq called T)) (command \"HELLO\")");
  EXPECT_EQ(eval("called"), "nil");
  EXPECT_TRUE(told("Unknown command \"HELLO\"."));
}

TEST_F(CommandLine, VlCmdfTellsWhetherAllWasTaken) {
  EXPECT_EQ(eval("(vl-cmdf \"LINE\" \"0,0\" \"1,0\" \"\")"), "T");
  EXPECT_EQ(eval("(vl-cmdf \"LINE\" \"0,0\" \"nonsense\" \"9,9\" \"\")"), "nil");
  EXPECT_EQ(eval("(getvar \"CMDACTIVE\")"), "0");
  EXPECT_EQ(entities(), "(\"LINE\")");
}

TEST_F(CommandLine, CommandSWantsAllAtOnce) {
  EXPECT_EQ(eval("(command-s \"LINE\" \"0,0\" \"1,0\" \"\")"), "nil");
  EXPECT_EQ(eval("(command-s \"LINE\" \"0,0\" \"1,0\")"),
            "error: command-s: LINE is not complete, it waits for \"Specify next point or [Undo]: "
            "\"");
  EXPECT_EQ(eval("(command-s \"LINE\" pause)").substr(0, 5), "error");
  EXPECT_EQ(eval("(getvar \"CMDACTIVE\")"), "0");
}

TEST_F(CommandLine, TransparentCommandsTellSo) {
  eval("(command \"LINE\" \"0,0\" \"'SETVAR\")");
  EXPECT_EQ(eval("(list (getvar \"CMDACTIVE\") (getvar \"CMDNAMES\"))"), "(3 \"LINE'SETVAR\")");
  eval("(command \"OSMODE\" 1 \"5,5\" \"'CIRCLE\" \"\")");
  EXPECT_TRUE(told("** That command may not be invoked transparently **"));
  EXPECT_EQ(eval("(getvar \"CMDACTIVE\")"), "0");
  EXPECT_EQ(last("(11)"), "((5.0 5.0 0.0))");
}

TEST_F(CommandLine, ObjectsSelectedBeforehandAreTaken) {
  eval("(command \"LINE\" \"0,0\" \"1,0\" \"\") (sssetfirst nil (ssadd (entlast)))");
  eval("(command \"ERASE\")");
  EXPECT_EQ(eval("(getvar \"CMDACTIVE\")"), "0");
  EXPECT_EQ(entities(), "nil");
}

TEST_F(CommandLine, PauseTakesAllPartsOfAWindow) {
  eval("(command \"LINE\" \"1,1\" \"2,2\" \"\")");
  given_answers("W\n0,0\n5,5\n");
  eval("(command \"ERASE\" pause \"\")");
  EXPECT_EQ(entities(), "nil");
}

TEST_F(CommandLine, AnUnansweredPauseCancelsTheCommand) {
  given_answers("");
  EXPECT_EQ(eval("(command \"LINE\" \"0,0\" pause)"), "error: Function cancelled");
  EXPECT_EQ(eval("(getvar \"CMDACTIVE\")"), "0");
}

TEST_F(CommandLine, ACommandLeftWaitingIsFinishedByTheUserOrCancelled) {
  eval("(command \"LINE\" \"0,0\")");
  given_answers("3,3\n\n");
  host.finish_command(drawing);
  EXPECT_EQ(last("(11)"), "((3.0 3.0 0.0))");
  eval("(command \"CIRCLE\" \"0,0\")");
  given_answers("");
  host.finish_command(drawing);
  EXPECT_EQ(eval("(getvar \"CMDACTIVE\")"), "0");
  ASSERT_EQ(alerts.size(), 1u);
  EXPECT_NE(alerts[0].find("CIRCLE waited for \"Specify radius of circle"), std::string::npos);
}

TEST_F(CommandLine, ACommandThatRefusesEndsWhateverItWouldAskNext) {
  given_drawing(dxf("0 SECTION\n2 HEADER\n9 $ACADVER\n1 AC1009\n0 ENDSEC\n0 EOF\n"), "r12.dxf");
  eval("(command \"RAY\" \"0,0\" \"1,1\" \"2,2\")");
  EXPECT_TRUE(told("RAY: needs a drawing of release R13 or newer"));
  EXPECT_EQ(eval("(getvar \"CMDACTIVE\")"), "0");
}

TEST_F(CommandLine, EachCommandIsAStep) {
  eval("(command \"LINE\" \"0,0\" \"1,0\" \"2,0\" \"\") (command \"POINT\" \"0,0\")");
  eval("(command \"U\") (command \"U\")");
  EXPECT_EQ(entities(), "nil");
}

TEST_F(CommandLine, TheLastPointIsKeptUp) {
  eval("(command \"LINE\" \"1,2\" \"@3,4\" \"\")");
  EXPECT_EQ(eval("(getvar \"LASTPOINT\")"), "(4.0 6.0 0.0)");
}

TEST_F(CommandLine, EveryCommandOfTheTableSaysWhatItDoes) {
  for (const cad::CommandRow* row : cad::all_commands()) {
    EXPECT_EQ(cad::find_command(cad::from_utf8(row->name)), row);
    EXPECT_STRNE(row->help, "") << row->name;
  }
}

TEST_F(CommandLine, ADrawingMayBeClosedWhileACommandWaits) {
  eval("(command \"LINE\" \"0,0\")");
  host.close(drawing);
}

}  // namespace
