#include <string>

#include "tests/host/app/host_test.h"
#include "tests/host/app/small_drawing.h"

namespace {

class EntityFunctions : public WithHost {
 protected:
  void SetUp() override {
    given_drawing(small_drawing());
    // (e "2A"), and the list without names of objects, which differ from run to run.
    eval(
        "(defun e (h) (handent h))"
        "(defun plain (l) (mapcar '(lambda (p) (if (= (type (cdr p)) 'ENAME)"
        " (cons (car p) (strcat \"@\" (cdr (assoc 5 (entget (cdr p)))))) p))"
        " (vl-remove-if '(lambda (p) (= (car p) -1)) l)))");
  }
};

TEST_F(EntityFunctions, HandlesFindObjectsOfAnyKind) {
  EXPECT_EQ(eval("(cdr (assoc 0 (entget (e \"2a\"))))"), "\"LINE\"");
  EXPECT_EQ(eval("(cdr (assoc 0 (entget (e \"C\"))))"), "\"DICTIONARY\"");
  EXPECT_EQ(eval("(list (e \"FFFF\") (e \"\") (e \"xyz\") (e \"0\"))"), "(nil nil nil nil)");
  EXPECT_EQ(eval("(e 1)"), "error: bad argument type: stringp: 1");
}

TEST_F(EntityFunctions, GroupsComeInTheOrderOfTheHost) {
  EXPECT_EQ(eval("(plain (entget (e \"2A\")))"),
            "((0 . \"LINE\") (102 . \"{ACAD_XDICTIONARY\") (360 . \"@50\") (102 . \"}\") "
            "(330 . \"@1F\") (5 . \"2A\") (100 . \"AcDbEntity\") (67 . 0) (410 . \"Model\") "
            "(8 . \"0\") (62 . 1) (100 . \"AcDbLine\") (10 0.0 0.0 0.0) (11 30.0 40.0 0.0))");
  EXPECT_EQ(eval("(equal (car (entget (e \"2A\"))) (cons -1 (e \"2A\")))"), "T");
}

TEST_F(EntityFunctions, AnglesAreRadians) {
  EXPECT_EQ(eval("(equal (cdr (assoc 50 (entget (e \"2B\")))) (/ pi 2) 1e-12)"), "T");
  EXPECT_EQ(eval("(cdr (assoc 50 (entget (e \"52\"))))"), "90.0");  // data of an xrecord
}

TEST_F(EntityFunctions, FlatPointsHaveTwoCoordinates) {
  EXPECT_EQ(eval("(member '(38 . 5.0) (entget (e \"2C\")))"),
            "((38 . 5.0) (10 1.0 2.0) (42 . 0.5) (10 3.0 4.0))");
}

TEST_F(EntityFunctions, ExtendedDataComesOnlyWhenAskedFor) {
  EXPECT_EQ(eval("(assoc -3 (entget (e \"2B\")))"), "nil");
  EXPECT_EQ(eval("(assoc 1000 (entget (e \"2B\")))"), "nil");
  EXPECT_EQ(eval("(assoc -3 (entget (e \"2B\") '(\"pipenote\")))"),
            "(-3 (\"PIPENOTE\" (1000 . \"label\") (1005 . \"2A\") (1010 1.0 2.0 3.0) (1070 . 7)))");
  EXPECT_EQ(eval("(assoc -3 (entget (e \"2B\") '(\"*\")))"),
            "(-3 (\"PIPENOTE\" (1000 . \"label\") (1005 . \"2A\") (1010 1.0 2.0 3.0) (1070 . 7)) "
            "(\"OTHER\" (1040 . 1.5)))");
  EXPECT_EQ(eval("(assoc -3 (entget (e \"2B\") '(\"NONE\")))"), "nil");
}

TEST_F(EntityFunctions, ThePaperSpaceLayoutIsNamed) {
  EXPECT_EQ(eval("(progn (princ (cdr (assoc 410 (entget (e \"30\"))))) (princ))"), "");
  EXPECT_EQ(printed, "A3 横向");
}

TEST_F(EntityFunctions, EntitiesAreWalkedInDrawingOrderWithTheirParts) {
  EXPECT_EQ(eval("(setq l nil n (entnext)) (while n (setq l (cons (cdr (assoc 5 (entget n))) l)"
                 " n (entnext n))) (reverse l)"),
            "(\"2A\" \"2B\" \"2C\" \"2D\" \"2E\" \"2F\" \"30\")");
  EXPECT_EQ(eval("(cdr (assoc 5 (entget (entlast))))"), "\"30\"");
}

TEST_F(EntityFunctions, TheLastEntityIsNoPartOfAnother) {
  EXPECT_EQ(eval("(entdel (e \"30\")) (cdr (assoc 5 (entget (entlast))))"), "\"2D\"");
}

TEST_F(EntityFunctions, DeletingTwiceBringsBack) {
  EXPECT_EQ(eval("(equal (entdel (e \"2A\")) (e \"2A\"))"), "T");
  EXPECT_EQ(eval("(entget (e \"2A\"))"), "nil");
  EXPECT_EQ(eval("(cdr (assoc 5 (entget (entnext))))"), "\"2B\"");
  EXPECT_EQ(eval("(progn (entdel (e \"2A\")) (cdr (assoc 5 (entget (entnext)))))"), "\"2A\"");
}

TEST_F(EntityFunctions, OnlyWholeEntitiesOnUnlockedLayersAreDeleted) {
  EXPECT_EQ(eval("(list (entdel (e \"2E\")) (entdel (e \"C\")) (entdel (e \"2B\")))"),
            "(nil nil nil)");
}

TEST_F(EntityFunctions, ANameToNothingIsAnsweredWithNil) {
  EXPECT_EQ(eval("(setq root (cdr (assoc 330 (entget (namedobjdict))))) (entget root)"), "nil");
  EXPECT_EQ(eval("(list (entnext root) (entdel root))"), "(nil nil)");
}

}  // namespace
