#include <string>

#include "tests/host/app/host_test.h"
#include "tests/host/app/small_drawing.h"

namespace {

class TableFunctions : public WithHost {
 protected:
  void SetUp() override { given_drawing(small_drawing()); }
};

TEST_F(TableFunctions, ARecordIsFoundInAnyLetterCase) {
  EXPECT_EQ(eval("(tblsearch \"layer\" \"zy-标注\")"), eval("(tblsearch \"LAYER\" \"ZY-标注\")"));
  EXPECT_EQ(eval("(tblsearch \"LAYER\" \"0\")"),
            "((0 . \"LAYER\") (2 . \"0\") (70 . 0) (62 . 7) (6 . \"Continuous\"))");
  EXPECT_EQ(eval("(list (tblsearch \"LAYER\" \"none\") (tblsearch \"NOTABLE\" \"0\"))"),
            "(nil nil)");
}

TEST_F(TableFunctions, ABlockTellsItsFirstEntity) {
  EXPECT_EQ(eval("(vl-remove-if '(lambda (p) (= (car p) -2)) (tblsearch \"BLOCK\" \"well\"))"),
            "((0 . \"BLOCK\") (2 . \"WELL\") (70 . 2) (10 1.0 2.0 0.0) (1 . \"\"))");
  EXPECT_EQ(eval("(cdr (assoc 0 (entget (cdr (assoc -2 (tblsearch \"BLOCK\" \"WELL\"))))))"),
            "\"CIRCLE\"");
}

TEST_F(TableFunctions, RecordsAreWalked) {
  EXPECT_EQ(eval("(setq l nil) (while (setq r (tblnext \"LAYER\" (null l))) (setq l (cons r l)))"
                 "(length l)"),
            "2");
  EXPECT_EQ(eval("(tblnext \"LAYER\")"), "nil");
  EXPECT_EQ(eval("(cdr (assoc 2 (tblnext \"LAYER\" T)))"), "\"0\"");
  EXPECT_EQ(eval("(cdr (assoc 2 (tblnext \"BLOCK\" T)))"), "\"WELL\"");
  EXPECT_EQ(eval("(tblnext \"BLOCK\")"), "nil");
}

TEST_F(TableFunctions, SearchingMaySetTheWalk) {
  EXPECT_EQ(eval("(progn (tblsearch \"LAYER\" \"0\" T) (cdr (assoc 70 (tblnext \"LAYER\"))))"),
            "4");
}

TEST_F(TableFunctions, RecordsHaveNames) {
  EXPECT_EQ(eval("(cdr (assoc 5 (entget (tblobjname \"LAYER\" \"0\"))))"), "\"10\"");
  EXPECT_EQ(eval("(cdr (assoc 0 (entget (tblobjname \"BLOCK\" \"WELL\"))))"), "\"BLOCK\"");
  EXPECT_EQ(eval("(tblobjname \"LAYER\" \"none\")"), "nil");
}

TEST_F(TableFunctions, DictionariesAreSearched) {
  EXPECT_EQ(eval("(cdr (assoc 1 (dictsearch (namedobjdict) \"A_FIRST\")))"), "\"one\"");
  EXPECT_EQ(eval("(dictsearch (namedobjdict) \"none\")"), "nil");
  EXPECT_EQ(eval("(dictsearch (handent \"2A\") \"none\")"), "nil");
  EXPECT_EQ(
      eval("(cdr (assoc 1 (dictsearch (cdr (assoc 360 (entget (handent \"2A\")))) \"PCGB\")))"),
      "\"three\"");
}

TEST_F(TableFunctions, DictionariesAreWalkedByKey) {
  eval("(setq d (namedobjdict))");
  EXPECT_EQ(eval("(list (cdr (assoc 1 (dictnext d T))) (cdr (assoc 1 (dictnext d))) (dictnext d))"),
            "(\"one\" \"two\" nil)");
  EXPECT_EQ(eval("(dictsearch d \"a_first\" T) (cdr (assoc 1 (dictnext d)))"), "\"two\"");
}

TEST_F(TableFunctions, RemovingTheEntryDeliveredLastSkipsNone) {
  EXPECT_EQ(eval("(setq d (namedobjdict)) (dictnext d T)"
                 "(cdr (assoc 5 (entget (dictremove d \"a_first\"))))"),
            "\"51\"");
  EXPECT_EQ(eval("(list (cdr (assoc 1 (dictnext d))) (dictremove d \"a_first\"))"),
            "(\"two\" nil)");
}

}  // namespace
