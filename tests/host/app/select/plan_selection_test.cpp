#include "host/app/select/plan_selection.h"

#include <string>

#include "host/app/aced.h"
#include "host/app/prompt/user_input.h"
#include "host/app/select/selection_dialog.h"
#include "host/db/line.h"
#include "host/db/open.h"
#include "host/db/resbuf_owner.h"
#include "tests/host/app/host_test.h"
#include "tests/host/app/select/plan_drawing.h"
#include "tests/host/geometry/near.h"

namespace {

class PlanSelection : public WithHost {
 protected:
  ~PlanSelection() override { cad::user_input() = {}; }

  void given(const std::string& entities, const std::string& blocks = {}) {
    drawing = given_drawing(plan_drawing(entities, blocks));
    eval(
        "(defun handles (s / i l) (setq i 0) (if s (while (< i (sslength s))"
        " (setq l (cons (cdr (assoc 5 (entget (ssname s i)))) l) i (1+ i)))) (reverse l))"
        "(setvar \"PICKBOX\" 3)");
  }
  std::string handles(const std::string& arguments) {
    return eval("(handles (ssget " + arguments + "))");
  }
  void given_answers(const std::string& lines) {
    cad::user_input() = cad::scripted_input(lines, "answers.txt");
  }
  AcApDocument* drawing = nullptr;
};

const char* const kArc = "10 5\n20 0\n30 0\n40 5\n50 0\n51 180\n";

TEST_F(PlanSelection, AWindowHoldsWhatIsAllInsideIt) {
  given(line("A1", 1, 1, 9, 9) + line("A2", 5, 5, 15, 5) + circle("A3", 5, 5, 5) +
        circle("A4", 5, 5, 5.01));
  EXPECT_EQ(handles("\"_W\" '(0 0) '(10 10)"), "(\"A3\" \"A1\")");
  EXPECT_EQ(handles("\"W\" '(10.0 10.0 0.0) '(0 0 0)"), "(\"A3\" \"A1\")");
  EXPECT_EQ(handles("\"W\" '(0 0) '(10 10) '((0 . \"LINE\"))"), "(\"A1\")");
  EXPECT_EQ(handles("\"W\" '(20 20) '(30 30)"), "nil");
}

TEST_F(PlanSelection, ACrossingWindowTakesWhatTrulyTouchesIt) {
  given(line("A1", -5, 5, 15, 5) + line("A2", 12, -5, 12, 30) + circle("A3", 5, 5, 50) +
        circle("A4", 15, 5, 5) + planned("ARC", "A5", "AcDbCircle", kArc));
  EXPECT_EQ(handles("\"_C\" '(0 0) '(10 10)"), "(\"A5\" \"A4\" \"A1\")");
  // Beneath the arc: within its box and over its chord, but off the arc.
  EXPECT_EQ(handles("\"C\" '(4 1) '(6 2)"), "nil");
}

TEST_F(PlanSelection, ABoxIsAWindowToTheRightAndCrossingToTheLeft) {
  given(line("A1", 1, 1, 9, 9) + line("A2", 5, 5, 15, 5));
  EXPECT_EQ(handles("\"_B\" '(0 0) '(10 10)"), "(\"A1\")");
  EXPECT_EQ(handles("\"BOX\" '(10 10) '(0 0)"), "(\"A2\" \"A1\")");
}

TEST_F(PlanSelection, PolygonsHoldAndCross) {
  given(line("A1", 1, 1, 9, 1) + line("A2", 1, 5, 9, 5) + circle("A3", 5, 6, 0.5) +
        line("A4", 5, 5, 5, 1));
  const std::string u = "'((0 0) (10 0) (10 10) (6 10) (6 2) (4 2) (4 10) (0 10))";
  EXPECT_EQ(handles("\"_WP\" " + u), "(\"A1\")");
  EXPECT_EQ(handles("\"_CP\" " + u + " '((0 . \"*\"))"), "(\"A4\" \"A2\" \"A1\")");
}

TEST_F(PlanSelection, AFenceTakesInItsOwnOrder) {
  given(line("A1", 8, -1, 8, 1) + line("A2", 2, -1, 2, 1) + circle("A3", 5, 0, 1) +
        line("A4", 9, 5, 11, 5) + line("A5", 0, 3, 9, 3));
  EXPECT_EQ(handles("\"_F\" '((0 0) (10 0) (10 10))"), "(\"A2\" \"A3\" \"A1\" \"A4\")");
  EXPECT_EQ(eval("(equal (cdddr (car (ssnamex (ssget \"F\" '((0 0) (10 0))) 1)))"
                 " '((0 (4.0 0.0 0.0)) (0 (6.0 0.0 0.0))) 1e-12)"),
            "T");
}

TEST_F(PlanSelection, APointPicksTheNearestWithinThePickBox) {
  given("");
  const double reach = cad::pick_aperture(drawing->session());
  const double gap = reach / 2;
  given(line("A1", 0, 0, 100, 0) + line("A2", 0, gap, 100, gap) + line("A3", 0, gap, 100, gap));
  ASSERT_EQ(cad::pick_aperture(drawing->session()), reach);
  const auto at = [&](double y) { return "'(50 " + std::to_string(y) + ")"; };
  EXPECT_EQ(handles(at(gap * 0.2)), "(\"A1\")");
  EXPECT_EQ(handles(at(gap * 0.9)), "(\"A3\")");  // of two in one place the newest
  EXPECT_EQ(handles(at(gap + reach * 1.1)), "nil");
  EXPECT_EQ(handles("\"_:E\" " + at(gap * 0.2)), "(\"A1\" \"A3\" \"A2\")");
  EXPECT_EQ(handles("\"_:S\" " + at(gap * 0.2) + " '((0 . \"CIRCLE\"))"), "nil");
}

TEST_F(PlanSelection, WhatIsNotDrawnIsNotSelected) {
  given(line("A1", 1, 1, 2, 2) + line("A2", 1, 1, 2, 2, "OFF") + line("A3", 1, 1, 2, 2, "FROZEN") +
        line("A4", 1, 1, 2, 2, "LOCKED") +
        planned("LINE", "A5", "AcDbLine", "60 1\n10 1\n20 1\n30 0\n11 2\n21 2\n31 0\n") +
        "0 LINE\n5 A6\n330 1B\n100 AcDbEntity\n67 1\n8 0\n100 AcDbLine\n10 1\n20 1\n30 0\n11 2\n"
        "21 2\n31 0\n");
  EXPECT_EQ(handles("\"C\" '(0 0) '(10 10)"), "(\"A4\" \"A1\")");
  EXPECT_EQ(handles("\"_C:L\" '(0 0) '(10 10)"), "(\"A1\")");
}

TEST_F(PlanSelection, TextsAreTheirBoxesAndSolidsTheirAreas) {
  given(planned("TEXT", "A1", "AcDbText", "10 0\n20 0\n30 0\n40 2.1\n1 0000\n50 90\n") +
        planned("SOLID", "A2", "AcDbTrace",
                "10 20\n20 0\n30 0\n11 30\n21 0\n31 0\n12 20\n22 10\n32 0\n13 30\n23 10\n33 0\n") +
        planned("POINT", "A3", "AcDbPoint", "10 50\n20 50\n30 7\n"));
  EXPECT_EQ(handles("\"C\" '(-1 7) '(-0.5 7.5)"), "(\"A1\")");  // the text stands upright
  EXPECT_EQ(handles("\"W\" '(-3 -1) '(1 9)"), "(\"A1\")");
  EXPECT_EQ(handles("\"C\" '(1 1) '(5 2)"), "nil");
  EXPECT_EQ(handles("\"C\" '(24 4) '(26 6)"), "(\"A2\")");  // inside the area
  EXPECT_EQ(handles("'(25 5)"), "(\"A2\")");
  EXPECT_EQ(handles("\"W\" '(49 49) '(50 50)"), "(\"A3\")");
}

TEST_F(PlanSelection, BlockReferencesCountAsTheirContents) {
  given(planned("INSERT", "A1", "AcDbBlockReference", "2 WELL\n10 100\n20 0\n30 0\n41 2\n42 2\n"),
        planned_block("WELL", circle("B1", 0, 0, 5) + line("B2", 0, 0, 40, 0, "OFF")));
  EXPECT_EQ(handles("\"C\" '(89 -1) '(91 1)"), "(\"A1\")");  // on the circle
  EXPECT_EQ(handles("\"C\" '(99 -1) '(101 1)"), "nil");      // within it: only the hidden line
  EXPECT_EQ(handles("\"W\" '(80 -20) '(200 20)"), "(\"A1\")");
}

TEST_F(PlanSelection, RaysAndXlinesAreCrossedButNeverHeld) {
  given(planned("XLINE", "A1", "AcDbXline", "10 1000\n20 1000\n30 0\n11 1\n21 1\n31 0\n"));
  EXPECT_EQ(handles("\"C\" '(0 0) '(10 10)"), "(\"A1\")");
  EXPECT_EQ(handles("\"C\" '(0 1) '(10 0.5)"), "(\"A1\")");
  EXPECT_EQ(handles("\"C\" '(0 11) '(10 20)"), "nil");
  EXPECT_EQ(handles("\"W\" '(-5000 -5000) '(5000 5000)"), "nil");
}

TEST_F(PlanSelection, PointsAreOfTheUsersCoordinates) {
  given(line("A1", 100, 100, 101, 101));
  eval("(setq u (getvar \"UCSORG\"))");
  const std::string moved = eval(
      "(vl-catch-all-error-p (vl-catch-all-apply 'command "
      "'(\"_.UCS\" \"_O\" (100.0 100.0 0.0))))");
  if (moved != "nil" || eval("(getvar \"UCSORG\")") != "(100.0 100.0 0.0)")
    GTEST_SKIP() << "the host has no coordinate systems of the user yet";
  EXPECT_EQ(handles("\"W\" '(0 0) '(2 2)"), "(\"A1\")");
}

TEST_F(PlanSelection, ChangesAreSeenAtOnce) {
  given(line("A1", 1, 1, 2, 2) + line("A2", 50, 50, 60, 60) +
            planned("INSERT", "A3", "AcDbBlockReference", "2 B\n10 0\n20 0\n30 0\n"),
        planned_block("B", circle("B1", 500, 500, 1)));
  const std::string window = "\"C\" '(0 0) '(10 10)";
  EXPECT_EQ(handles(window), "(\"A1\")");
  // Moved in, made, erased, brought back.
  eval(
      "(entmod (subst '(10 3.0 3.0 0.0) (assoc 10 (entget (handent \"A2\")))"
      " (entget (handent \"A2\"))))");
  EXPECT_EQ(handles(window), "(\"A2\" \"A1\")");
  eval("(entdel (handent \"A1\"))");
  EXPECT_EQ(handles(window), "(\"A2\")");
  eval("(entdel (handent \"A1\")) (entmake '((0 . \"CIRCLE\") (10 5.0 5.0 0.0) (40 . 1.0)))");
  EXPECT_EQ(eval("(sslength (ssget " + window + "))"), "3");
  EXPECT_EQ(eval("(equal (entlast) (ssname (ssget " + window + ") 0))"), "T");
  // A layer is turned off, a block changes.
  eval("(setq l (tblobjname \"LAYER\" \"0\")) (entmod (subst '(62 . -7) '(62 . 7) (entget l)))");
  EXPECT_EQ(handles(window), "nil");
  eval("(entmod (subst '(62 . 7) '(62 . -7) (entget l)))");
  EXPECT_EQ(eval("(sslength (ssget " + window + "))"), "3");
  eval("(entmod (subst '(10 5.0 5.0 0.0) '(10 500.0 500.0 0.0) (entget (handent \"B1\"))))");
  EXPECT_EQ(eval("(sslength (ssget " + window + "))"), "4");
}

TEST_F(PlanSelection, TheIndexAgreesWithAFreshOneWhateverIsDone) {
  std::string entities;
  for (int i = 0; i < 60; ++i) entities += line("A" + std::to_string(100 + i), i, 0, i + 1, 1);
  given(entities);
  handles("\"C\" '(0 0) '(10 1)");
  eval(
      "(setq i 100) (repeat 60 (setq e (handent (strcat \"A\" (itoa i))))"
      " (cond ((= 0 (rem i 3)) (entdel e))"
      "  ((= 1 (rem i 3)) (entmod (subst '(11 5.0 5.0 0.0) (assoc 11 (entget e)) (entget e)))))"
      " (setq i (1+ i)))");
  const std::string kept = handles("\"C\" '(0 0) '(30 6)");
  const std::string bytes = drawing->database()->save_bytes();
  host.close(drawing);
  drawing = given_drawing(bytes);
  eval(
      "(defun handles (s / i l) (setq i 0) (if s (while (< i (sslength s))"
      " (setq l (cons (cdr (assoc 5 (entget (ssname s i)))) l) i (1+ i)))) (reverse l))");
  EXPECT_EQ(handles("\"C\" '(0 0) '(30 6)"), kept);
}

TEST_F(PlanSelection, HowEachWasSelectedIsRemembered) {
  given(line("A1", 0, 0, 100, 0));
  eval("(setq a (handent \"A1\"))");
  EXPECT_EQ(eval("(equal (ssnamex (ssget \"X\")) (list (list 0 a 0)))"), "T");
  EXPECT_EQ(eval("(equal (ssnamex (ssget '(50 0)) 0) (list (list 1 a 0 '(0 (50.0 0.0 0.0)))))"),
            "T");
  EXPECT_EQ(eval("(equal (ssnamex (ssget \"C\" '(0 0) '(10 20))) (list (list 3 a 0 -1)"
                 " '(-1 (0 (0.0 0.0 0.0)) (0 (10.0 0.0 0.0)) (0 (10.0 20.0 0.0))"
                 " (0 (0.0 20.0 0.0)))))"),
            "T");
  EXPECT_EQ(eval("(ssnamex (ssget \"X\") 1)"), "nil");
  EXPECT_EQ(eval("(caar (ssnamex (ssadd a (ssadd))))"), "0");
}

TEST_F(PlanSelection, SelectedBeforehandIsSelectedWithoutAsking) {
  given(line("A1", 0, 0, 100, 0) + line("A2", 0, 5, 100, 5));
  eval("(sssetfirst nil (ssadd (handent \"A2\")))");
  EXPECT_EQ(eval("(handles (cadr (ssgetfirst)))"), "(\"A2\")");
  EXPECT_EQ(handles("\"_I\""), "(\"A2\")");
  EXPECT_EQ(handles(""), "(\"A2\")");
  EXPECT_EQ(handles("\"_I\""), "nil");  // used
  eval("(sssetfirst nil)");
  EXPECT_EQ(eval("(ssgetfirst)"), "(nil nil)");
}

TEST_F(PlanSelection, ArgumentsThatMakeNoSenseAreErrors) {
  given(line("A1", 0, 0, 100, 0));
  EXPECT_EQ(eval("(ssget \"W\" '(0 0))"),
            "error: bad ssget point list: 2 points are needed by mode \"W\"");
  EXPECT_EQ(eval("(ssget \"ZZ\")"), "error: bad ssget mode string: ZZ");
  EXPECT_EQ(eval("(ssget 5)"), "error: bad argument type: listp: 5");
  EXPECT_EQ(eval("(ssget \"X\" nil)").substr(0, 15), "<Selection set:");
}

TEST_F(PlanSelection, TheUserSelectsByEveryMeans) {
  given(line("A1", 0, 0, 100, 0) + line("A2", 0, 50, 100, 50) + circle("A3", 200, 200, 10));
  given_answers("50,0\n\n");
  EXPECT_EQ(handles(""), "(\"A1\")");
  EXPECT_NE(printed.find("Select objects: 50,0\n1 found"), std::string::npos) << printed;
  given_answers("w\n-1,-1\n101,51\nr\n50,50\na\nhandle:A3\n50,0\n\n");
  EXPECT_EQ(handles(""), "(\"A1\" \"A3\")");
  EXPECT_NE(printed.find("1 found, 1 removed, 1 total"), std::string::npos) << printed;
  EXPECT_NE(printed.find("1 found (1 duplicate), 2 total"), std::string::npos) << printed;
  given_answers("F\n10,-5\n10,60\n\n\n");
  EXPECT_EQ(handles(""), "(\"A1\" \"A2\")");
  given_answers("(handent \"A3\")\nall\nu\n\n");
  EXPECT_EQ(handles(""), "(\"A3\")");
  given_answers("p\n\n");
  EXPECT_EQ(handles("'((0 . \"CIRCLE\"))"), "(\"A3\")");
  given_answers("300,300\n-10,-10\n\n");  // beside everything, then to the left: crossing
  EXPECT_EQ(handles("\"_:S\""), "(\"A3\" \"A2\" \"A1\")");
  given_answers("nonsense\n50,0\n\n");
  EXPECT_EQ(handles(""), "(\"A1\")");
  EXPECT_NE(printed.find("*Invalid selection*"), std::string::npos);
}

TEST_F(PlanSelection, AFilterAndLockedLayersHoldInTheDialogueToo) {
  given(line("A1", 0, 0, 100, 0) + line("A2", 0, 5, 100, 5, "LOCKED") + circle("A3", 50, 2, 1));
  given_answers("c\n-1,-1\n200,10\n\n");
  EXPECT_EQ(handles("\"_:L\" '((0 . \"LINE\"))"), "(\"A1\")");
  EXPECT_NE(printed.find("1 was filtered out."), std::string::npos) << printed;
  EXPECT_NE(printed.find("1 was on a locked layer."), std::string::npos) << printed;
}

TEST_F(PlanSelection, AModeWithoutItsPointsAsksForThem) {
  given(line("A1", 0, 0, 100, 0) + line("A2", 50, -50, 50, 50));
  given_answers("-1,-1\n101,1\n");
  EXPECT_EQ(handles("\"W\""), "(\"A1\")");
  given_answers("-1,-1\n101,-1\n101,1\n\n");
  EXPECT_EQ(handles("\"CP\""), "(\"A2\" \"A1\")");
}

TEST_F(PlanSelection, DialoguesTakeValuesOfLisp) {
  given(line("A1", 0, 0, 100, 0) + line("A2", 0, 50, 100, 50));
  cad::DocumentSession& session = drawing->session();
  cad::lisp::Interpreter& interp = session.interpreter();
  cad::SelectionDialog dialog(session);
  using State = cad::SelectionDialog::State;
  const auto value = [&](const std::string& text) { return *host.eval_string(drawing, text); };
  EXPECT_EQ(dialog.read(value("(list (handent \"A1\") '(5.0 0.0))")), State::kMore);
  EXPECT_EQ(dialog.message(), L"1 found");
  EXPECT_EQ(dialog.read(value("(ssget \"X\")")), State::kMore);
  EXPECT_EQ(dialog.message(), L"2 found (1 duplicate), 2 total");
  EXPECT_EQ(dialog.read(value("'(50.0 50.0)")), State::kMore);
  EXPECT_EQ(dialog.read(value("nil")), State::kRefused);
  EXPECT_EQ(dialog.read(interp.string(L"")), State::kDone);
  const cad::Selection selection = dialog.take();
  EXPECT_EQ(selection.size(), 2U);
  EXPECT_EQ(selection.how(selection.ids()[0]).method, cad::SelectedBy::kPick);
  EXPECT_EQ(session.previous_selection.size(), 2U);
}

TEST_F(PlanSelection, ANestedPickTellsTheWayIn) {
  given(planned("INSERT", "A1", "AcDbBlockReference", "2 OUT\n10 100\n20 0\n30 0\n66 1\n") +
            planned("ATTRIB", "A2", "AcDbText", "10 100\n20 50\n30 0\n40 10\n1 W1\n70 0\n") +
            "0 SEQEND\n5 A3\n330 A1\n100 AcDbEntity\n8 0\n" +
            planned("POLYLINE", "A5", "AcDb2dPolyline", "66 1\n10 0\n20 0\n30 0\n70 0\n") +
            planned("VERTEX", "A6", "AcDb2dVertex", "10 0\n20 500\n30 0\n70 0\n") +
            planned("VERTEX", "A7", "AcDb2dVertex", "10 10\n20 500\n30 0\n70 0\n") +
            planned("VERTEX", "A8", "AcDb2dVertex", "10 10\n20 600\n30 0\n70 0\n") +
            "0 SEQEND\n5 A9\n330 A5\n100 AcDbEntity\n8 0\n",
        planned_block("IN", circle("B1", 0, 0, 5)) +
            planned_block("OUT", planned("INSERT", "B2", "AcDbBlockReference",
                                         "2 IN\n10 10\n20 0\n30 0\n41 2\n42 2\n43 2\n")));
  const cad::NestedPick pick = cad::nested_pick_at(drawing->session(), {120, 0, 0});
  EXPECT_EQ(pick.picked.handle(), 0xA1U);
  EXPECT_EQ(pick.entity.handle(), 0xB1U);
  ASSERT_EQ(pick.references.size(), 2U);
  EXPECT_EQ(pick.references[0].handle(), 0xB2U);
  EXPECT_EQ(pick.references[1].handle(), 0xA1U);
  EXPECT_THAT(pick.map * AcGePoint3d(5, 0, 0), Is(120, 0, 0));

  const cad::NestedPick attribute = cad::nested_pick_at(drawing->session(), {105, 55, 0});
  EXPECT_EQ(attribute.entity.handle(), 0xA2U);
  EXPECT_TRUE(attribute.references.empty());
  const cad::NestedPick vertex = cad::nested_pick_at(drawing->session(), {10, 550, 0});
  EXPECT_EQ(vertex.picked.handle(), 0xA5U);
  EXPECT_EQ(vertex.entity.handle(), 0xA7U);
  EXPECT_TRUE(cad::nested_pick_at(drawing->session(), {900, 900, 0}).entity.isNull());
}

TEST_F(PlanSelection, ModulesSelectByPointsToo) {
  given(line("A1", 1, 1, 9, 9) + line("A2", 5, 5, 15, 5));
  ads_name set;
  std::int32_t length = 0;
  const ads_point a = {0, 0, 0}, b = {10, 10, 0};
  ASSERT_EQ(acedSSGet(L"C", a, b, nullptr, set), RTNORM);
  EXPECT_EQ(acedSSLength(set, &length), RTNORM);
  EXPECT_EQ(length, 2);
  EXPECT_EQ(acedSSFree(set), RTNORM);
  const ads_point c = {10, 0, 0};
  const cad::ResbufChain points(acutBuildList(RTPOINT, a, RTPOINT, c, RTPOINT, b, 0));
  ASSERT_EQ(acedSSGet(L"_WP", points.get(), nullptr, nullptr, set), RTNORM);
  EXPECT_EQ(acedSSLength(set, &length), RTNORM);
  EXPECT_EQ(length, 1);
  EXPECT_EQ(acedSSFree(set), RTNORM);
  EXPECT_EQ(acedSSGet(L"W", a, nullptr, nullptr, set), RTREJ);
}

}  // namespace
