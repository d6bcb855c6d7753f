#include <string>

#include "host/db/undo.h"
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

TEST_F(SystemVariables, OfTheHeaderAreSaved) {
  eval(
      "(setvar \"LTSCALE\" 7.5) (setvar \"LUPREC\" 5) (setvar \"USERI3\" -7) (setvar \"ANGBASE\" "
      "pi)"
      "(setvar \"INSBASE\" '(1 2 3)) (setvar \"LIMMAX\" '(420 297)) (setvar \"DIMSCALE\" 100)"
      "(setvar \"CECOLOR\" \"red\") (setvar \"TEXTSIZE\" 3.5) (setvar \"PDMODE\" 34)");
  const std::string saved = acDocManager->curDocument()->database()->save_bytes();
  given_drawing(saved, "again.dxf");
  EXPECT_EQ(eval("(mapcar 'getvar '(\"LTSCALE\" \"LUPREC\" \"USERI3\" \"INSBASE\" \"LIMMAX\""
                 " \"DIMSCALE\" \"CECOLOR\" \"TEXTSIZE\" \"PDMODE\"))"),
            "(7.5 5 -7 (1.0 2.0 3.0) (420.0 297.0) 100.0 \"1\" 3.5 34)");
  EXPECT_EQ(eval("(equal (getvar \"ANGBASE\") pi 1e-12)"), "T");
  // What the file lacked stands where the section has it.
  const auto place = [&](const std::string& name) { return saved.find(name); };
  EXPECT_LT(place("$DWGCODEPAGE"), place("$INSBASE"));
  EXPECT_LT(place("$INSBASE"), place("$LIMMAX"));
  EXPECT_LT(place("$LTSCALE"), place("$TEXTSIZE"));
  EXPECT_LT(place("$CECOLOR"), place("$DIMSCALE"));
}

TEST_F(SystemVariables, SettingTheValueBackLeavesTheFile) {
  const std::string before = acDocManager->curDocument()->database()->save_bytes();
  eval("(setvar \"LTSCALE\" 7.5) (setvar \"CLAYER\" \"zy-标注\")");
  EXPECT_EQ(eval("(list (getvar \"CLAYER\") (getvar \"DBMOD\"))"), "(\"ZY-标注\" 1)");
  eval("(setvar \"LTSCALE\" 2.5) (setvar \"CLAYER\" \"0\")");
  EXPECT_EQ(eval("(getvar \"DBMOD\")"), "0");
  EXPECT_EQ(acDocManager->curDocument()->database()->save_bytes(), before);
}

TEST_F(SystemVariables, FollowWhatIsUndone) {
  eval("(setvar \"LTSCALE\" 7.5)");
  EXPECT_EQ(eval("(getvar \"LTSCALE\")"), "7.5");
  EXPECT_EQ(cad::undo_log(*acDocManager->curDocument()->database()).undo(1), 1u);
  EXPECT_EQ(eval("(getvar \"LTSCALE\")"), "2.5");
}

TEST_F(SystemVariables, HaveTheirBounds) {
  struct Row {
    const char *name, *value;
  };
  for (const Row& row :
       {Row{"LUNITS", "0"}, Row{"LUNITS", "6"}, Row{"LUPREC", "9"}, Row{"LTSCALE", "0"},
        Row{"TEXTSIZE", "-1"}, Row{"TILEMODE", "2"}, Row{"OSMODE", "-1"}, Row{"CECOLOR", "\"257\""},
        Row{"CECOLOR", "\"pink\""}, Row{"CECOLOR", "1"}, Row{"CECOLOR", "\"RGB:1,2\""},
        Row{"CECOLOR", "\"RGB:1,2,256\""}, Row{"CELTYPE", "\"NONE\""}, Row{"CTAB", "\"NONE\""},
        Row{"LIMMIN", "'(1)"}, Row{"VIEWSIZE", "5.0"}, Row{"CDATE", "1.0"},
        Row{"UCSORG", "'(0 0 0)"}}) {
    const std::string name = row.name;
    EXPECT_EQ(
        eval("(setq was (getvar \"" + name + "\")) (setvar \"" + name + "\" " + row.value + ")")
            .substr(0, 40),
        "error: AutoCAD variable setting rejected")
        << name;
    if (name == "CDATE") continue;
    EXPECT_EQ(eval("(equal was (getvar \"" + name + "\"))"), "T") << name;
  }
}

TEST_F(SystemVariables, AFrozenLayerCannotBeCurrent) {
  eval("(entmake '((0 . \"LAYER\") (2 . \"COLD\") (70 . 1)))");
  EXPECT_EQ(eval("(setvar \"CLAYER\" \"COLD\")"),
            "error: AutoCAD variable setting rejected: \"CLAYER\" \"COLD\"");
}

TEST_F(SystemVariables, RuleWhatNewEntitiesLookLike) {
  eval(
      "(setvar \"CLAYER\" \"ZY-标注\") (setvar \"CECOLOR\" \"5\")"
      "(setq e (entmakex '((0 . \"POINT\") (10 0 0))))");
  EXPECT_EQ(eval("(list (assoc 8 (entget e)) (assoc 62 (entget e)))"),
            "((8 . \"ZY-标注\") (62 . 5))");
  eval("(setvar \"CECOLOR\" \"RGB:1,2,3\") (setq e (entmakex '((0 . \"POINT\") (10 0 0))))");
  EXPECT_EQ(eval("(list (getvar \"CECOLOR\") (assoc 62 (entget e)) (assoc 420 (entget e)))"),
            "(\"RGB:1,2,3\" nil (420 . 66051))");
  eval("(setvar \"CECOLOR\" \"BYLAYER\")");
  EXPECT_EQ(eval("(getvar \"CECOLOR\")"), "\"BYLAYER\"");
}

TEST_F(SystemVariables, TheCurrentTabIsASpace) {
  EXPECT_EQ(eval("(list (getvar \"CTAB\") (getvar \"TILEMODE\") (getvar \"CVPORT\"))"),
            "(\"Model\" 1 2)");
  eval("(setvar \"TILEMODE\" 0)");
  EXPECT_EQ(eval("(list (getvar \"TILEMODE\") (getvar \"CVPORT\")"
                 " (cdr (assoc 67 (entget (entmakex '((0 . \"POINT\") (10 0 0)))))))"),
            "(0 1 1)");
  eval("(setvar \"CTAB\" \"model\")");
  EXPECT_EQ(eval("(list (getvar \"CTAB\") (getvar \"TILEMODE\"))"), "(\"Model\" 1)");
}

TEST_F(SystemVariables, TellHowFarTheDrawingGoes) {
  host.new_drawing();
  EXPECT_EQ(eval("(getvar \"EXTMIN\")"), "(1.0e+020 1.0e+020 1.0e+020)");
  eval("(entmake '((0 . \"LINE\") (10 1 2 3) (11 -4 5 6)))");
  EXPECT_EQ(eval("(list (getvar \"EXTMIN\") (getvar \"EXTMAX\"))"),
            "((-4.0 2.0 3.0) (1.0 5.0 6.0))");
  eval("(entdel (entlast))");
  EXPECT_EQ(eval("(getvar \"EXTMAX\")"), "(-1.0e+020 -1.0e+020 -1.0e+020)");
}

TEST_F(SystemVariables, ThatProgramsReadAreThere) {
  for (const char* name :
       {"CLAYER",    "CMDECHO",   "OSMODE",     "VIEWSIZE",   "DWGPREFIX", "BLIPMODE",  "DWGNAME",
        "ACADVER",   "CTAB",      "VIEWCTR",    "DIMSCALE",   "TEXTSTYLE", "EXTMAX",    "LUPREC",
        "TEXTSIZE",  "EXTMIN",    "CDATE",      "CVPORT",     "CMDACTIVE", "DIMTXT",    "TILEMODE",
        "UNDOCTL",   "LASTPOINT", "SCREENSIZE", "CECOLOR",    "ERRNO",     "DIMZIN",    "AREA",
        "HIGHLIGHT", "ORTHOMODE", "CPROFILE",   "MILLISECS",  "LOGINNAME", "PERIMETER", "DATE",
        "UCSXDIR",   "FILEDIA",   "CELTYPE",    "WORLDUCS",   "FILLETRAD", "CTAB",      "ATTREQ",
        "ATTDIA",    "NOMUTT",    "PICKBOX",    "UCSFOLLOW",  "EXPERT",    "PLINEWID",  "LTSCALE",
        "REGENMODE", "AUNITS",    "QAFLAGS",    "SECURELOAD", "SNAPMODE",  "VSMIN",     "VSMAX",
        "TARGET",    "LASTANGLE", "DONUTID",    "OFFSETDIST", "DELOBJ",    "HPNAME",    "XLOADCTL",
        "LOCALE",    "PRODUCT",   "_VERNUM"}) {
    EXPECT_NE(eval("(getvar \"" + std::string(name) + "\")"), "nil") << name;
  }
}

}  // namespace
