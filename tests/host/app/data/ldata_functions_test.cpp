#include "tests/host/app/host_test.h"
#include "tests/host/app/small_drawing.h"

namespace {

class LdataFunctions : public WithHost {
 protected:
  LdataFunctions() { given_drawing(small_drawing()); }
  std::string saved() { return acDocManager->curDocument()->database()->save_bytes(); }
};

TEST_F(LdataFunctions, KeepEveryKindOfValue) {
  eval(
      "(setq data (list 1 2.5 \"管 径\" nil t 'symbol '(1 . 2) '((\"a\" . 1) (\"b\" 2 (3 4)))"
      "  (handent \"2A\") \"\" '(1 2 . 3)))");
  EXPECT_EQ(eval("(equal (vlax-ldata-put \"MINE\" \"key\" data) data)"), "T");
  EXPECT_EQ(eval("(equal (vlax-ldata-get \"mine\" \"KEY\") data)"), "T");
  given_drawing(saved(), "again.dxf");
  EXPECT_EQ(
      eval("(setq got (vlax-ldata-get \"MINE\" \"key\")) (list (car got) (cadr got) (caddr got)"
           " (cdddr (reverse (cdddr got))))"),
      "(1 2.5 \"管 径\" (((\"a\" . 1) (\"b\" 2 (3 4))) (1 . 2) SYMBOL T nil))");
  EXPECT_EQ(eval("(list (equal (nth 8 got) (handent \"2A\")) (nth 9 got) (nth 10 got))"),
            "(T \"\" (1 2 . 3))");
}

TEST_F(LdataFunctions, BelongToAnObjectToo) {
  EXPECT_EQ(eval("(vlax-ldata-put (handent \"2C\") \"a\" '(1 2))"), "(1 2)");
  EXPECT_EQ(eval("(vlax-ldata-put (handent \"2C\") \"a\" \"other\")"), "\"other\"");
  EXPECT_EQ(eval("(vlax-ldata-put (handent \"2A\") \"b\" 7)"), "7")
      << "with an extension dictionary";
  EXPECT_EQ(eval("(vlax-ldata-get (handent \"2C\") \"a\")"), "\"other\"");
  EXPECT_EQ(eval("(vlax-ldata-get (handent \"2A\") \"b\")"), "7");
  EXPECT_EQ(eval("(vlax-ldata-put (handent \"2B\") \"b\" 7)"), "nil") << "on a locked layer";
}

TEST_F(LdataFunctions, AreListedAndForgotten) {
  eval("(vlax-ldata-put \"D\" \"b\" 2) (vlax-ldata-put \"D\" \"a\" '(1))");
  EXPECT_EQ(eval("(vlax-ldata-list \"D\")"), "((\"a\" 1) (\"b\" . 2))");
  EXPECT_EQ(eval("(vlax-ldata-delete \"D\" \"b\")"), "T");
  EXPECT_EQ(eval("(vlax-ldata-delete \"D\" \"b\")"), "nil");
  EXPECT_EQ(eval("(vlax-ldata-get \"D\" \"b\")"), "nil");
  EXPECT_EQ(eval("(vlax-ldata-get \"D\" \"b\" 'none)"), "NONE");
  EXPECT_EQ(eval("(vlax-ldata-list \"NONE\")"), "nil");
  EXPECT_EQ(eval("(vlax-ldata-list \"A_first\")"), "nil") << "an entry that is no dictionary";
}

TEST_F(LdataFunctions, RefuseWhatCannotBeKept) {
  const std::string before = saved();
  EXPECT_EQ(eval("(vlax-ldata-put \"D\" \"a\" car)").substr(0, 24), "error: bad argument type");
  EXPECT_EQ(eval("(setq l nil) (repeat 2000 (setq l (list l))) (vlax-ldata-put \"D\" \"a\" l)"),
            "error: bad argument value: the list is nested too deep");
  EXPECT_EQ(saved(), before);
}

class Properties : public LdataFunctions {};

TEST_F(Properties, AreReadFromGroups) {
  EXPECT_EQ(eval("(mapcar '(lambda (p) (getpropertyvalue (handent \"2A\") p))"
                 " '(\"Layer\" \"color\" \"StartPoint\" \"EndPoint/Y\" \"Linetype\" \"LineWeight\" "
                 "\"Normal\"))"),
            "(\"0\" \"1\" (0.0 0.0 0.0) 40.0 \"ByLayer\" -1 (0.0 0.0 1.0))");
  EXPECT_EQ(eval("(mapcar '(lambda (p) (getpropertyvalue (handent \"2B\") p))"
                 " '(\"TextString\" \"Height\" \"Position\" \"Position/X\" \"Color\" \"Handle\"))"),
            "(\"DN300 管\" 2.5 (15.0 20.0 0.0) 15.0 \"BYLAYER\" \"2B\")");
  EXPECT_EQ(eval("(getpropertyvalue (tblobjname \"LAYER\" \"ZY-标注\") \"IsLocked\")"), "1");
  EXPECT_EQ(eval("(getpropertyvalue (handent \"2C\") \"Closed\")"), "1");
}

TEST_F(Properties, AreSet) {
  eval(
      "(setpropertyvalue (handent \"2A\") \"Color\" \"ByLayer\")"
      "(setpropertyvalue (handent \"2A\") \"EndPoint/X\" 5)"
      "(setpropertyvalue (handent \"2A\") \"Layer\" \"PIPES\")"
      "(setpropertyvalue (handent \"2C\") \"Closed\" 0)"
      "(setpropertyvalue (tblobjname \"LAYER\" \"ZY-标注\") \"IsLocked\" 0)"
      "(setpropertyvalue (handent \"2B\") \"TextString\" \"DN400\")"
      "(setpropertyvalue (handent \"2B\") \"Position\" '(1 2 3))");
  EXPECT_EQ(eval("(mapcar '(lambda (c) (cdr (assoc c (entget (handent \"2A\"))))) '(62 11 8))"),
            "(256 (5.0 40.0 0.0) \"PIPES\")");
  EXPECT_EQ(eval("(mapcar '(lambda (c) (cdr (assoc c (entget (handent \"2B\"))))) '(1 10))"),
            "(\"DN400\" (1.0 2.0 3.0))");
  EXPECT_EQ(eval("(cdr (assoc 70 (entget (handent \"2C\"))))"), "0");
}

TEST_F(Properties, ThatDoNotExistOrCannotBeSetAreErrors) {
  EXPECT_EQ(eval("(getpropertyvalue (handent \"2A\") \"Radius\")"),
            "error: no such property: Radius");
  EXPECT_EQ(eval("(getpropertyvalue (handent \"2A\") \"Layer/X\")"),
            "error: no such property: Layer/X");
  EXPECT_EQ(eval("(setpropertyvalue (handent \"2A\") \"Handle\" \"99\")"),
            "error: property Handle cannot be set: it can only be read");
  EXPECT_EQ(eval("(setpropertyvalue (handent \"2B\") \"Height\" 3.0)"),
            "error: property Height cannot be set: TEXT: is on a locked layer");
  EXPECT_EQ(eval("(setpropertyvalue (handent \"2A\") \"StartPoint\" \"x\")"),
            "error: bad DXF group: (10 . \"x\")");
}

class Cvunit : public WithHost {
 protected:
  Cvunit() { host.new_drawing(); }
};

TEST_F(Cvunit, ConvertsByDefinition) {
  struct Row {
    const char *text, *value;
  };
  for (const Row& row :
       {Row{"(cvunit 1 \"inch\" \"cm\")", "2.54"}, Row{"(cvunit 1 \"feet\" \"m\")", "0.3048"},
        Row{"(cvunit 1.0 \"mile\" \"km\")", "1.60934"},
        Row{"(cvunit 2 \"hours\" \"minutes\")", "120.0"},
        Row{"(cvunit 1 \"acre\" \"sq yard\")", "4840.0"},
        Row{"(cvunit 1 \"hectare\" \"m^2\")", "10000.0"},
        Row{"(cvunit 1 \"gallon\" \"cubic inch\")", "231.0"},
        Row{"(cvunit 1000 \"mm2\" \"cm2\")", "10.0"},
        Row{"(cvunit 36 \"km/hour\" \"m/s\")", "10.0"}, Row{"(cvunit 1 \"lb\" \"g\")", "453.592"},
        Row{"(cvunit 212 \"fahrenheit\" \"celsius\")", "100.0"},
        Row{"(cvunit 180 \"degrees\" \"radian\")", "3.14159"},
        Row{"(cvunit 1 \"liter\" \"ml\")", "1000.0"},
        Row{"(cvunit '(1 2.5) \"ft\" \"in\")", "(12.0 30.0)"},
        Row{"(cvunit 1 \"meter\" \"second\")", "nil"}, Row{"(cvunit 1 \"nothing\" \"m\")", "nil"},
        Row{"(cvunit 1 \"m^\" \"m\")", "nil"}, Row{"(cvunit 1 \"\" \"m\")", "nil"}}) {
    EXPECT_EQ(eval(row.text), row.value) << row.text;
  }
  EXPECT_EQ(eval("(cvunit \"1\" \"m\" \"cm\")"), "error: bad argument type: numberp: \"1\"");
}

class Names : public WithHost {
 protected:
  Names() { given_drawing(small_drawing()); }
};

TEST_F(Names, AreValidBySymbolRules) {
  EXPECT_EQ(eval("(mapcar 'snvalid '(\"管线 1\" \"\" \"a<b\" \"a|b\" \"a*\"))"),
            "(T nil nil nil nil)");
  EXPECT_EQ(eval("(mapcar '(lambda (n) (snvalid n 1)) '(\"a|b\" \"|b\" \"a|\" \"a|b|c\"))"),
            "(T nil nil nil)");
}

TEST_F(Names, OfLayoutsLeaveOutTheModel) { EXPECT_EQ(eval("(layoutlist)"), "(\"A3 横向\")"); }

}  // namespace
