#include <gmock/gmock.h>

#include "tests/host/app/host_test.h"
#include "tests/host/app/small_drawing.h"

namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

class MakeFunctions : public WithHost {
 protected:
  std::string saved() { return acDocManager->curDocument()->database()->save_bytes(); }
  /// Saves and opens again.
  void reopen() { given_drawing(saved(), "reopened.dxf"); }
  void given_functions() {
    eval(
        "(defun get (e code) (cdr (assoc code (entget e))))"
        "(defun change (e pair / d) (setq d (entget e))"
        "  (entmod (subst pair (assoc (car pair) d) d)))"
        "(defun kinds (e) (if e (cons (get e 0) (kinds (entnext e)))))");
  }
};

class Entmod : public MakeFunctions {
 protected:
  Entmod() {
    given_drawing(small_drawing());
    given_functions();
    before = saved();
  }
  std::string before;
};

TEST_F(Entmod, AChangedTextKeepsAllOtherTags) {
  eval("(setq la (tblobjname \"LAYER\" \"ZY-标注\")) (change la '(70 . 0))");
  before = saved();
  EXPECT_THAT(eval("(setq e (handent \"2B\")) (change e '(1 . \"DN400\"))"),
              HasSubstr("\"DN400\""));
  std::string expected = before;
  const std::string old_text = "DN300 管";
  expected.replace(expected.find(old_text), old_text.size(), "DN400");
  EXPECT_EQ(saved(), expected);
}

TEST_F(Entmod, TheListOfEntgetChangesNothing) {
  EXPECT_THAT(
      eval("(foreach h '(\"2A\" \"2C\" \"2D\" \"2E\" \"2F\" \"30\" \"50\" \"51\" \"41\" \"10\")"
           "  (if (not (entmod (entget (handent h) '(\"*\")))) (princ h)))"),
      HasSubstr("nil"));
  EXPECT_EQ(saved(), before);
  EXPECT_EQ(printed, "");
  EXPECT_EQ(eval("(getvar \"DBMOD\")"), "0");
}

TEST_F(Entmod, LockedLayersAreRefused) {
  EXPECT_EQ(eval("(change (handent \"2B\") '(1 . \"x\"))"), "nil");
  EXPECT_EQ(saved(), before);
}

TEST_F(Entmod, BadGroupsAreErrors) {
  EXPECT_EQ(eval("(entmod (list (cons -1 (handent \"2A\")) '(10 . \"x\")))"),
            "error: bad DXF group: (10 . \"x\")");
  EXPECT_EQ(eval("(entmod (list (cons -1 (handent \"2A\")) '(62 . 1.5)))"),
            "error: bad DXF group: (62 . 1.5)");
  EXPECT_EQ(eval("(entmod (list (cons -1 (handent \"2A\")) 7))"), "error: bad DXF group: 7");
  EXPECT_EQ(eval("(entmod (list (cons -1 (handent \"2A\")) '(10 1.0)))"),
            "error: bad DXF group: (10 1.0)");
  EXPECT_EQ(eval("(entmod 7)"), "error: bad argument type: listp: 7");
  EXPECT_EQ(eval("(entmod nil)"), "nil");
  EXPECT_EQ(eval("(entmod '((1 . \"x\")))"), "nil") << "without a name";
  EXPECT_EQ(saved(), before);
}

TEST_F(Entmod, KindAndHandleStay) {
  EXPECT_EQ(eval("(change (handent \"2A\") '(0 . \"CIRCLE\"))"), "nil");
  EXPECT_EQ(eval("(change (handent \"2A\") '(5 . \"99\"))"), "nil");
  EXPECT_EQ(saved(), before);
}

TEST_F(Entmod, ANewLayerIsMade) {
  EXPECT_THAT(eval("(change (handent \"2A\") '(8 . \"新图层\"))"), HasSubstr("新图层"));
  reopen();
  EXPECT_EQ(eval("(cdr (assoc 62 (tblsearch \"LAYER\" \"新图层\")))"), "7");
}

TEST_F(Entmod, WholeNumbersServeAsReals) {
  EXPECT_THAT(eval("(change (handent \"2A\") '(10 1 2))"), HasSubstr("(10 1 2)"));
  EXPECT_EQ(eval("(get (handent \"2A\") 10)"), "(1.0 2.0 0.0)");
}

TEST_F(Entmod, ExtendedDataNeedsARegisteredApplication) {
  host.new_drawing();
  eval("(setq e (entmakex '((0 . \"POINT\") (10 0 0))))");
  EXPECT_EQ(eval("(entmod (list (cons -1 e) '(-3 (\"PN\" (1000 . \"x\")))))"), "nil");
  EXPECT_EQ(eval("(regapp \"PN\")"), "\"PN\"");
  EXPECT_EQ(eval("(regapp \"pn\")"), "nil") << "it is registered already";
  EXPECT_THAT(eval("(entmod (list (cons -1 e) '(-3 (\"PN\" (1000 . \"x\") (1070 . 7)))))"),
              HasSubstr("PN"));
  EXPECT_EQ(eval("(cdr (assoc -3 (entget e '(\"*\"))))"), "((\"PN\" (1000 . \"x\") (1070 . 7)))");
  eval("(entmod (list (cons -1 e) '(-3 (\"PN\"))))");
  EXPECT_EQ(eval("(assoc -3 (entget e '(\"*\")))"), "nil");
}

TEST_F(Entmod, VerticesAndAttributesChange) {
  EXPECT_THAT(eval("(change (handent \"2E\") '(1 . \"W2\"))"), HasSubstr("W2"));
  EXPECT_EQ(eval("(get (handent \"2E\") 1)"), "\"W2\"");
}

TEST_F(Entmod, LightweightPolylinesGetMoreVertices) {
  eval(
      "(setq e (handent \"2C\") d (entget e))"
      "(entmod (append d '((10 5.0 6.0) (42 . 1.0))))");
  reopen();
  EXPECT_EQ(eval("(cdddr (cdr (member '(70 . 1) (entget (handent \"2C\")))))"),
            "((10 3.0 4.0) (10 5.0 6.0) (42 . 1.0))");
  EXPECT_EQ(eval("(cdr (assoc 90 (entget (handent \"2C\"))))"), "3");
}

TEST_F(Entmod, DataOfXrecordsChanges) {
  EXPECT_THAT(eval("(setq e (handent \"51\"))"
                   "(entmod (append (entget e) '((40 . 1.5) (1 . \"管\"))))"),
              HasSubstr("管"));
  reopen();
  EXPECT_EQ(eval("(member '(280 . 1) (entget (handent \"51\")))"),
            "((280 . 1) (1 . \"one\") (40 . 1.5) (1 . \"管\"))");
}

class Entmake : public MakeFunctions {
 protected:
  Entmake() {
    host.new_drawing();
    given_functions();
  }
};

TEST_F(Entmake, GivesTheListAndEntmakexTheName) {
  EXPECT_EQ(eval("(entmake '((0 . \"LINE\") (10 0.0 0.0 0.0) (11 1.0 0.0 0.0)))"),
            "((0 . \"LINE\") (10 0.0 0.0 0.0) (11 1.0 0.0 0.0))");
  EXPECT_EQ(eval("(equal (entmakex '((0 . \"LINE\") (10 0 0) (11 1 0))) (entlast))"), "T");
  EXPECT_EQ(eval("(get (entlast) 8)"), "\"0\"");
}

TEST_F(Entmake, WhatIsMissingMakesItNil) {
  const std::string before = saved();
  EXPECT_EQ(eval("(entmake '((0 . \"LINE\") (10 0.0 0.0 0.0)))"), "nil");
  EXPECT_EQ(eval("(entmake '((0 . \"INSERT\") (2 . \"NONE\") (10 0.0 0.0 0.0)))"), "nil");
  EXPECT_EQ(eval("(entmake '((0 . \"XRECORD\") (100 . \"AcDbXrecord\") (1 . \"x\")))"), "nil")
      << "entmakex makes those";
  EXPECT_EQ(eval("(entmake '((0 . \"LINE\") (10 . \"x\")))"), "error: bad DXF group: (10 . \"x\")");
  EXPECT_EQ(saved(), before);
}

TEST_F(Entmake, APolylineTakesShapeAtItsEnd) {
  const std::string before = saved();
  EXPECT_EQ(eval("(entmake '((0 . \"POLYLINE\") (70 . 1)))"), "((0 . \"POLYLINE\") (70 . 1))");
  eval("(entmake '((0 . \"VERTEX\") (10 0 0))) (entmake '((0 . \"VERTEX\") (10 1 0) (42 . 0.5)))");
  EXPECT_EQ(saved(), before) << "nothing before the end";
  EXPECT_EQ(eval("(entmake '((0 . \"SEQEND\")))"), "((0 . \"SEQEND\"))");
  EXPECT_EQ(eval("(kinds (entlast))"), "(\"POLYLINE\" \"VERTEX\" \"VERTEX\" \"SEQEND\")");
  reopen();
  given_functions();
  EXPECT_EQ(eval("(kinds (entnext))"), "(\"POLYLINE\" \"VERTEX\" \"VERTEX\" \"SEQEND\")");
  EXPECT_EQ(eval("(get (entnext (entnext (entnext))) 42)"), "0.5");
  EXPECT_EQ(eval("(equal (get (entnext (entnext)) 330) (entnext))"), "T");
}

TEST_F(Entmake, AnInterruptedSequenceLeavesNothing) {
  const std::string before = saved();
  eval("(entmake '((0 . \"POLYLINE\"))) (entmake '((0 . \"VERTEX\") (10 0 0)))");
  EXPECT_EQ(eval("(entmake)"), "nil");
  EXPECT_EQ(eval("(entmake '((0 . \"SEQEND\")))"), "nil");
  EXPECT_EQ(eval("(entmake '((0 . \"VERTEX\") (10 0 0)))"), "nil");
  EXPECT_EQ(saved(), before);
  eval(
      "(entmake '((0 . \"POLYLINE\"))) (entmake '((0 . \"VERTEX\") (10 0 0)))"
      "(entmake '((0 . \"POINT\") (10 0 0)))");
  EXPECT_EQ(eval("(kinds (entnext))"), "(\"POINT\")");
}

TEST_F(Entmake, ABlockIsMadeAndInsertedWithItsAttributes) {
  EXPECT_EQ(eval("(entmake '((0 . \"BLOCK\") (2 . \"WELL\") (70 . 2) (10 0.0 0.0 0.0)))"),
            "((0 . \"BLOCK\") (2 . \"WELL\") (70 . 2) (10 0.0 0.0 0.0))");
  eval(
      "(entmake '((0 . \"CIRCLE\") (8 . \"WELLS\") (10 0 0) (40 . 1.0)))"
      "(entmake '((0 . \"ATTDEF\") (10 0 0) (40 . 2.5) (1 . \"\") (2 . \"NO\") (3 . \"Number\") "
      "(70 . 0)))");
  EXPECT_EQ(eval("(entmake '((0 . \"ENDBLK\")))"), "\"WELL\"");
  EXPECT_THAT(eval("(tblsearch \"BLOCK\" \"well\")"),
              HasSubstr("(0 . \"BLOCK\") (2 . \"WELL\") (70 . 2) (10 0.0 0.0 0.0)"));
  EXPECT_EQ(eval("(kinds (cdr (assoc -2 (tblsearch \"BLOCK\" \"WELL\"))))"),
            "(\"CIRCLE\" \"ATTDEF\")");
  EXPECT_EQ(eval("(entnext)"), "nil") << "the block's entities are in no space";
  eval(
      "(entmake '((0 . \"INSERT\") (2 . \"WELL\") (10 5 5) (66 . 1)))"
      "(entmake '((0 . \"ATTRIB\") (10 5 5) (40 . 2.5) (1 . \"W1\") (2 . \"NO\") (70 . 0)))"
      "(entmake '((0 . \"SEQEND\")))");
  reopen();
  given_functions();
  EXPECT_EQ(eval("(kinds (entnext))"), "(\"INSERT\" \"ATTRIB\" \"SEQEND\")");
  EXPECT_EQ(eval("(get (entnext (entlast)) 1)"), "\"W1\"");
  EXPECT_EQ(eval("(kinds (tblobjname \"BLOCK\" \"WELL\"))"), "(\"BLOCK\" \"CIRCLE\" \"ATTDEF\")");
}

TEST_F(Entmake, AnonymousBlocksTellTheirName) {
  eval(
      "(entmake '((0 . \"BLOCK\") (2 . \"*U\") (70 . 1) (10 0 0 0)))"
      "(entmake '((0 . \"POINT\") (10 0 0)))");
  EXPECT_EQ(eval("(entmake '((0 . \"ENDBLK\")))"), "\"*U1\"");
  EXPECT_EQ(eval("(get (entmakex '((0 . \"INSERT\") (2 . \"*U1\") (10 0 0))) 2)"), "\"*U1\"");
}

TEST_F(Entmake, BlocksHoldPolylines) {
  eval(
      "(entmake '((0 . \"BLOCK\") (2 . \"A\") (70 . 0) (10 0 0 0)))"
      "(entmake '((0 . \"POLYLINE\"))) (entmake '((0 . \"VERTEX\") (10 0 0)))"
      "(entmake '((0 . \"VERTEX\") (10 1 1))) (entmake '((0 . \"SEQEND\")))"
      "(entmake '((0 . \"POINT\") (10 0 0)))");
  EXPECT_EQ(eval("(entmake '((0 . \"ENDBLK\")))"), "\"A\"");
  reopen();
  given_functions();
  EXPECT_EQ(eval("(kinds (cdr (assoc -2 (tblsearch \"BLOCK\" \"A\"))))"),
            "(\"POLYLINE\" \"VERTEX\" \"VERTEX\" \"SEQEND\" \"POINT\")");
}

TEST_F(Entmake, BlocksOfOldDrawingsHaveNoRecords) {
  given_drawing(
      dxf("0 SECTION\n2 HEADER\n9 $ACADVER\n1 AC1009\n0 ENDSEC\n"
          "0 SECTION\n2 ENTITIES\n0 ENDSEC\n0 EOF\n"));
  given_functions();
  eval(
      "(entmake '((0 . \"BLOCK\") (2 . \"A\") (70 . 0) (10 1 2 3)))"
      "(entmake '((0 . \"POINT\") (10 0 0)))");
  EXPECT_EQ(eval("(entmake '((0 . \"ENDBLK\")))"), "\"A\"");
  eval("(entmake '((0 . \"INSERT\") (2 . \"a\") (10 5 5)))");
  const std::string bytes = saved();
  EXPECT_LT(bytes.find("BLOCKS"), bytes.find("ENTITIES"));
  EXPECT_EQ(bytes.find("AcDb"), std::string::npos);
  reopen();
  given_functions();
  EXPECT_EQ(eval("(kinds (entnext))"), "(\"INSERT\")");
  EXPECT_EQ(eval("(cdr (assoc 10 (tblsearch \"BLOCK\" \"a\")))"), "(1.0 2.0 3.0)");
  EXPECT_EQ(eval("(kinds (cdr (assoc -2 (tblnext \"BLOCK\" t))))"), "(\"POINT\")");
  EXPECT_EQ(eval("(get (tblobjname \"BLOCK\" \"A\") 0)"), "\"BLOCK\"");
}

TEST_F(Entmake, RecordsOfTables) {
  EXPECT_THAT(eval("(entmake '((0 . \"LAYER\") (100 . \"AcDbSymbolTableRecord\")"
                   " (100 . \"AcDbLayerTableRecord\") (2 . \"PIPES\") (70 . 0) (62 . 5)))"),
              HasSubstr("PIPES"));
  EXPECT_EQ(eval("(entmake '((0 . \"LAYER\") (2 . \"pipes\") (70 . 0)))"), "nil") << "it is there";
  eval("(entmake '((0 . \"STYLE\") (2 . \"HZ\") (3 . \"txt.shx\") (4 . \"hztxt.shx\") (70 . 0)))");
  EXPECT_THAT(eval("(entmake '((0 . \"TEXT\") (10 0 0) (40 . 2.5) (1 . \"管\") (7 . \"HZ\") (8 . "
                   "\"PIPES\")))"),
              HasSubstr("HZ"));
  reopen();
  EXPECT_EQ(eval("(cdr (assoc 4 (tblsearch \"STYLE\" \"hz\")))"), "\"hztxt.shx\"");
  EXPECT_EQ(eval("(cdr (assoc 62 (tblsearch \"LAYER\" \"PIPES\")))"), "5");
}

TEST_F(Entmake, ObjectsForDictionaries) {
  eval(
      "(setq d (entmakex '((0 . \"DICTIONARY\") (100 . \"AcDbDictionary\")))"
      "      x (entmakex '((0 . \"XRECORD\") (100 . \"AcDbXrecord\") (1 . \"text\") (90 . "
      "70000))))");
  EXPECT_EQ(eval("(equal (dictadd (namedobjdict) \"MINE\" d) d)"), "T");
  EXPECT_EQ(eval("(dictadd (namedobjdict) \"mine\" x)"), "nil") << "the key is taken";
  EXPECT_EQ(eval("(equal (dictadd d \"X\" x) x)"), "T");
  EXPECT_EQ(eval("(dictrename d \"X\" \"Y\")"), "\"Y\"");
  EXPECT_EQ(eval("(dictrename d \"X\" \"Z\")"), "nil");
  reopen();
  EXPECT_EQ(eval("(setq d (cdr (assoc -1 (dictsearch (namedobjdict) \"MINE\"))))"
                 "(member '(280 . 1) (dictsearch d \"y\"))"),
            "((280 . 1) (1 . \"text\") (90 . 70000))");
  EXPECT_EQ(eval("(dictsearch d \"X\")"), "nil");
}

TEST_F(Entmake, TheListOfAnEntityMakesAnother) {
  given_drawing(small_drawing());
  given_functions();
  EXPECT_EQ(eval("(entmakex (entget (setq a (handent \"2C\"))))"), "nil")
      << "its linetype DASHED is in no table";
  EXPECT_EQ(eval("(setq d (vl-remove '(6 . \"DASHED\") (entget a)) b (entmakex d))"
                 "(equal (cdr (member '(100 . \"AcDbPolyline\") (entget a)))"
                 "       (cdr (member '(100 . \"AcDbPolyline\") (entget b))))"),
            "T");
  EXPECT_EQ(eval("(equal (get a 5) (get b 5))"), "nil");
}

TEST_F(Entmake, TheLayoutMayBeNamed) {
  given_drawing(small_drawing());
  given_functions();
  EXPECT_EQ(eval("(get (entmakex '((0 . \"POINT\") (10 0 0) (67 . 1))) 67)"), "1");
  EXPECT_EQ(eval("(get (entmakex '((0 . \"POINT\") (10 0 0))) 410)"), "\"Model\"");
}

}  // namespace
