#include <string>

#include "tests/host/app/host_test.h"
#include "tests/host/app/small_drawing.h"

namespace {

class SystemVariables : public WithHost {
 protected:
  void SetUp() override { given_drawing(small_drawing()); }
};

TEST_F(SystemVariables, ComeFromTheDrawingsHeader) {
  EXPECT_EQ(eval("(list (getvar \"LUPREC\") (getvar \"ltscale\") (getvar \"CLAYER\"))"),
            "(3 2.5 \"0\")");
  EXPECT_EQ(eval("(equal (getvar \"ANGBASE\") (/ pi 2) 1e-12)"), "T");
  EXPECT_EQ(eval("(getvar \"CECOLOR\")"), "\"BYLAYER\"");
}

TEST_F(SystemVariables, HaveTheirUsualValueWhereTheHeaderIsSilent) {
  EXPECT_EQ(eval("(list (getvar \"LUNITS\") (getvar \"USERI1\") (getvar \"TEXTSIZE\"))"),
            "(2 0 0.2)");
}

TEST_F(SystemVariables, RuleHowNumbersBecomeText) {
  EXPECT_EQ(eval("(rtos 1.5)"), "\"1.5\"");  // three decimals, trailing zeros dropped
  EXPECT_EQ(eval("(progn (setvar \"DIMZIN\" 0) (rtos 1.5))"), "\"1.500\"");
}

TEST_F(SystemVariables, OfTheSessionAreSet) {
  EXPECT_EQ(eval("(list (setvar \"cmdecho\" 0) (getvar \"CMDECHO\"))"), "(0 0)");
  EXPECT_EQ(eval("(setvar \"USERS1\" \"abc\") (getvar \"USERS1\")"), "\"abc\"");
  EXPECT_EQ(eval("(setvar \"LASTPOINT\" '(1 2)) (getvar \"LASTPOINT\")"), "(1.0 2.0 0.0)");
  EXPECT_EQ(eval("(setvar \"LTSCALE\" 3) (getvar \"LTSCALE\")"), "3.0");
}

TEST_F(SystemVariables, SettingWhatCannotBeIsAnError) {
  EXPECT_EQ(eval("(setvar \"CLAYER\" \"X\")"),
            "error: AutoCAD variable setting rejected: \"CLAYER\" \"X\"");
  EXPECT_EQ(eval("(setvar \"LUPREC\" 1.5)"),
            "error: AutoCAD variable setting rejected: \"LUPREC\" 1.5");
  EXPECT_EQ(eval("(setvar \"LUPREC\" 70000)"),
            "error: AutoCAD variable setting rejected: \"LUPREC\" 70000");
  EXPECT_EQ(eval("(setvar \"NOSUCH\" 1)"),
            "error: AutoCAD variable setting rejected: \"NOSUCH\" 1");
  EXPECT_EQ(eval("(getvar \"NOSUCH\")"), "nil");
}

TEST_F(SystemVariables, TellWhatTheDrawingIs) {
  EXPECT_EQ(eval("(list (getvar \"DWGNAME\") (getvar \"DWGTITLED\") (getvar \"DWGCODEPAGE\")"
                 " (getvar \"DBMOD\"))"),
            "(\"plan.dxf\" 0 \"ANSI_936\" 0)");
  EXPECT_EQ(eval("(entdel (entnext)) (getvar \"DBMOD\")"), "1");
}

TEST_F(SystemVariables, TellTheTime) {
  EXPECT_EQ(eval("(< 20200101.0 (getvar \"CDATE\") 22000101.0)"), "T");
  EXPECT_EQ(eval("(< 2458849.0 (getvar \"DATE\") 2524594.0)"), "T");
}

TEST_F(SystemVariables, BelongToOneDrawing) {
  AcApDocument* first = acDocManager->curDocument();
  AcApDocument* second = host.new_drawing();
  eval(first, "(setvar \"USERI1\" 5)");
  EXPECT_EQ(eval(second, "(getvar \"USERI1\")"), "0");
  EXPECT_EQ(eval(first, "(getvar \"USERI1\")"), "5");
}

}  // namespace
