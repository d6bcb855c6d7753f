#include <gtest/gtest.h>

#include <algorithm>
#include <numbers>
#include <string>

#include "module/app/updating.h"
#include "module/manager/dim_manager.h"
#include "module/manager/flow_arrows.h"
#include "tests/module/app/lisp_host.h"

namespace {

/// What a user writes to draw a small network: nodes, pipes between them, arrows on the pipes.
constexpr char kNetwork[] = R"lisp(
(regapp "PIPENOTE")
(entmake '((0 . "LAYER") (100 . "AcDbSymbolTableRecord") (100 . "AcDbLayerTableRecord")
           (2 . "LOCKED") (70 . 4)))
(entmake '((0 . "BLOCK") (2 . "ARROW") (70 . 0) (10 0.0 0.0 0.0)))
(entmake '((0 . "LINE") (10 -1.0 0.0 0.0) (11 1.0 0.0 0.0)))
(entmake '((0 . "ENDBLK")))
(defun thing (groups data)
  (entmakex (append groups (list (list -3 (cons "PIPENOTE" data))))))
(defun handle (entity) (cdr (assoc 5 (entget entity))))
(defun place (entity) (cdr (assoc 10 (entget entity))))
(defun node (kind x y)
  (thing (list '(0 . "POINT") (list 10 x y 0.0)) (list '(1000 . "kind") (cons 1000 kind))))
(defun data (kind from to more)
  (append (list '(1000 . "kind") (cons 1000 kind)
                '(1000 . "start_node") (cons 1005 (handle from))
                '(1000 . "end_node") (cons 1005 (handle to)))
          more))
(defun pipe (kind from to more)
  (thing (list '(0 . "LINE") (cons 10 (place from)) (cons 11 (place to)))
         (data kind from to more)))
(defun inverts (start end)
  (list '(1000 . "start_invert") (cons 1040 start) '(1000 . "end_invert") (cons 1040 end)))
(defun arrow-on (layer x y)
  (entmakex (list '(0 . "INSERT") (cons 8 layer) '(2 . "ARROW") (list 10 x y 0.0) '(50 . 0.25))))
(defun arrow (x y) (arrow-on "0" x y))
(defun note (owner type symbol) (dimRec (list owner type) symbol "jt" "->" nil nil nil))
(defun turn (symbol) (cdr (assoc 50 (entget symbol))))
(setq untouched 0.25
      a (node "drainage-well" 0.0 0.0)    b (node "drainage-well" 30.0 40.0)
      s1 (node "storm-well" 100.0 0.0)    s2 (node "storm-well" 100.0 50.0)
      w1 (node "water-node" 200.0 0.0)    w2 (node "hydrant" 150.0 0.0))
)lisp";

constexpr double kAlong = 0.92729521800161219;  // of the pipe from a to b: atan2(40, 30)
constexpr double kPi = std::numbers::pi;
constexpr double kUntouched = 0.25;

class FlowDirection : public LispHost {
 protected:
  void SetUp() override {
    LispHost::SetUp();
    given_empty_drawing();
    ASSERT_NE(eval(kNetwork), "error");
  }
  void given(const std::string& program) {
    ASSERT_NE(eval(program), "error") << program << printed.text();
  }
  /// In radians, as drawn.
  double turn(const std::string& arrow) {
    const auto value = host.eval_string(document, "(turn " + arrow + ")");
    return value && value->is_real() ? value->real() : -1.0;
  }
  AcDbObjectId entity(const std::string& name) {
    const std::string text = eval("(handle " + name + ")");
    const std::wstring digits(text.begin() + 1, text.end() - 1);
    return id(digits.c_str());
  }
  /// A pipe of that kind and data from a to b with one arrow in its middle.
  void given_pipe(const std::string& kind, const std::string& from, const std::string& to,
                  const std::string& more) {
    given("(setq p (pipe \"" + kind + "\" " + from + " " + to + " " + more +
          ") m (mapcar '(lambda (x y) (/ (+ x y) 2)) (place " + from + ") (place " + to +
          ")) arr (arrow (car m) (cadr m))) (note p \"pcgb\" arr)");
  }
  double turned(const std::string& kind, const std::string& from, const std::string& to,
                const std::string& more) {
    given_pipe(kind, from, to, more);
    EXPECT_EQ(eval("(updateJtDirection p)"), "");
    return turn("arr");
  }
};

TEST_F(FlowDirection, OfADrainagePipeIsFromTheHigherInvertToTheLower) {
  EXPECT_NEAR(turned("drainage-pipe", "a", "b", "(inverts 5.0 4.0)"), kAlong, 1e-12);
  EXPECT_NEAR(turned("drainage-pipe", "a", "b", "(inverts 4.0 5.0)"), kAlong + kPi, 1e-12);
  EXPECT_NEAR(turned("drainage-pipe", "b", "a", "(inverts 5.0 4.0)"), kAlong + kPi, 1e-12);
  EXPECT_EQ(printed.text(), "");
}

TEST_F(FlowDirection, OfAStormWaterPipeLikewise) {
  EXPECT_NEAR(turned("storm-pipe", "s1", "s2", "(inverts -1.5 -2.0)"), kPi / 2, 1e-12);
  EXPECT_NEAR(turned("storm-pipe", "s1", "s2", "(inverts -2.0 -1.5)"), kPi * 3 / 2, 1e-12);
}

TEST_F(FlowDirection, OfAWaterPipeIsThatOfTheCurrentCalculation) {
  // From w1 at 200 to w2 at 150: along it means to the west.
  const std::string heads =
      "(list '(1000 . \"start_head_1\") '(1040 . 20.0) '(1000 . \"end_head_1\") '(1040 . 18.0)"
      " '(1000 . \"start_head_2\") '(1040 . 20.0) '(1000 . \"end_head_2\") '(1040 . 24.0)"
      " '(1000 . \"head_case\") '(1070 . ";
  EXPECT_NEAR(turned("water-pipe", "w1", "w2", heads + "1))"), kPi, 1e-12);
  EXPECT_NEAR(turned("water-pipe", "w1", "w2", heads + "2))"), 2 * kPi, 1e-12);
  EXPECT_EQ(turned("water-pipe", "w1", "w2", heads + "3))"), kUntouched) << "has no values";
}

TEST_F(FlowDirection, OfEqualValuesIsAgainstThePipe) {
  EXPECT_NEAR(turned("drainage-pipe", "a", "b", "(inverts 4.0 4.0)"), kAlong + kPi, 1e-12);
}

TEST_F(FlowDirection, OfACurvedPipeIsItsTangentWhereTheArrowStands) {
  given(
      "(setq p (thing (list '(0 . \"LWPOLYLINE\") '(100 . \"AcDbEntity\")"
      " '(100 . \"AcDbPolyline\") '(90 . 2) '(70 . 0) '(10 0.0 0.0) '(42 . 1.0) '(10 10.0 0.0))"
      " (data \"drainage-pipe\" a b (inverts 5.0 4.0)))"
      " lowest (arrow 5.0 -7.0) start (arrow -1.0 0.0))"
      "(note p \"pcgb\" lowest) (note p \"xzgj\" start) (updateJtDirection p)");
  EXPECT_NEAR(turn("lowest"), 0.0, 1e-12);
  EXPECT_NEAR(turn("start"), kPi * 3 / 2, 1e-12);
  given(
      "(setq q (thing '((0 . \"ARC\") (10 0.0 0.0 0.0) (40 . 10.0) (50 . 0.0) (51 . 3.0))"
      " (data \"drainage-pipe\" a b (inverts 4.0 5.0))) top (arrow 0.0 11.0))"
      "(note q \"pcgb\" top) (updateJtDirection q)");
  EXPECT_NEAR(turn("top"), 2 * kPi, 1e-12) << "against the arc, which runs to the west there";
}

TEST_F(FlowDirection, EveryArrowOfThePipeTurns) {
  given(
      "(setq p (pipe \"drainage-pipe\" a b (inverts 5.0 4.0)) x (arrow 3.0 4.0)"
      " y (arrow 27.0 36.0)) (note p \"pcgb\" x) (note p \"xzgj\" y)"
      "(dimUserRec (list p \"bzjg\") \"xfdh\" \"3\")");
  EXPECT_EQ(eval("(updateJtDirection p)"), "");
  EXPECT_NEAR(turn("x"), kAlong, 1e-12);
  EXPECT_NEAR(turn("y"), kAlong, 1e-12);
}

TEST_F(FlowDirection, APipeWithoutArrowsSucceedsAndNothingChanges) {
  given(
      "(setq p (pipe \"drainage-pipe\" a b (inverts 5.0 4.0)) x (arrow 3.0 4.0))"
      "(dimGeRec (list p \"pcgb\") x)");  // recorded, though not as the arrow
  const std::string before = document->database()->save_bytes();
  EXPECT_EQ(eval("(updateJtDirection p)"), "");
  EXPECT_EQ(document->database()->save_bytes(), before);
  EXPECT_EQ(eval("(updateJtDirection x)"), "");  // no pipe at all, and no arrow either
}

TEST_F(FlowDirection, OnlyTheRotationOfTheArrowIsWritten) {
  given_pipe("drainage-pipe", "a", "b", "(inverts 5.0 4.0)");
  given("(entmod (subst '(50 . 0.0) (assoc 50 (entget arr)) (entget arr)))");
  reopen();
  given("(setq p (cdr (assoc -1 (entget (ssname (ssget \"X\" '((0 . \"LINE\"))) 0)))))");
  const std::string before = document->database()->save_bytes();
  EXPECT_EQ(eval("(updateJtDirection p)"), "");
  const std::string after = document->database()->save_bytes();
  const auto [old_at, new_at] = std::mismatch(before.begin(), before.end(), after.begin());
  ASSERT_NE(old_at, before.end());
  EXPECT_EQ(std::string(old_at - 4, old_at), " 50\n");
  const auto old_end = std::find(old_at, before.end(), '\n');
  const auto new_end = std::find(new_at, after.end(), '\n');
  EXPECT_EQ(std::string(old_at, old_end), "0.0");
  EXPECT_NEAR(std::stod(std::string(new_at, new_end)), 53.13010235415598, 1e-9);
  EXPECT_EQ(std::string(old_end, before.end()), std::string(new_end, after.end()));
}

TEST_F(FlowDirection, AnErasedArrowStopsTheRestAndKeepsWhatIsDone) {
  given(
      "(setq p (pipe \"drainage-pipe\" a b (inverts 5.0 4.0)) x (arrow 3.0 4.0)"
      " y (arrow 6.0 8.0) z (arrow 9.0 12.0))"
      "(note p \"bzjg\" x) (note p \"pcgb\" y) (note p \"xzgj\" z) (entdel y)");
  EXPECT_EQ(failure("(updateJtDirection p)"), "");
  EXPECT_NEAR(turn("x"), kAlong, 1e-12);
  EXPECT_EQ(turn("z"), kUntouched);
}

TEST_F(FlowDirection, AnArrowThatIsGoneForGoodIsTraced) {
  given_pipe("drainage-pipe", "a", "b", "(inverts 5.0 4.0)");
  given("(entdel arr) (setq n (handle p))");
  const std::string handle = eval("n");
  reopen();
  const TraceLines trace;
  EXPECT_EQ(failure("(updateJtDirection (e " + handle + "))"), "");
  EXPECT_EQ(trace.lines(), Texts{L"箭头已经被删除，打开实体失败!"});
}

TEST_F(FlowDirection, AnArrowWithoutHandleIsTracedTheSame) {
  given(
      "(setq p (pipe \"drainage-pipe\" a b (inverts 5.0 4.0)))"
      "(dimUserRec (list p \"pcgb\") \"jt\" \"->\")");
  const TraceLines trace;
  EXPECT_EQ(failure("(updateJtDirection p)"), "");
  EXPECT_EQ(trace.lines(), Texts{L"箭头已经被删除，打开实体失败!"});
}

TEST_F(FlowDirection, AnArrowThatIsNoBlockReferenceFails) {
  given("(setq p (pipe \"drainage-pipe\" a b (inverts 5.0 4.0))) (note p \"pcgb\" a)");
  EXPECT_EQ(failure("(updateJtDirection p)"), "");
}

TEST_F(FlowDirection, AnArrowOnALockedLayerFailsAndKeepsWhatIsDone) {
  given(
      "(setq p (pipe \"drainage-pipe\" a b (inverts 5.0 4.0)) x (arrow 3.0 4.0)"
      " y (arrow-on \"LOCKED\" 6.0 8.0)) (note p \"pcgb\" x) (note p \"xzgj\" y)");
  EXPECT_EQ(failure("(updateJtDirection p)"), "");
  EXPECT_NEAR(turn("x"), kAlong, 1e-12);
  EXPECT_EQ(turn("y"), kUntouched);
}

TEST_F(FlowDirection, OfWhatIsNoPipeCannotBeToldAndNoWellsAreLookedFor) {
  given(
      "(setq p (entmakex '((0 . \"LINE\") (10 0.0 0.0 0.0) (11 30.0 40.0 0.0)))"
      " x (arrow 15.0 20.0)) (note p \"pcgb\" x)");
  const TraceLines trace;
  EXPECT_EQ(eval("(updateJtDirection p)"), "");
  EXPECT_EQ(trace.lines(), Texts{L"计算流量切向角失败!"});
}

TEST_F(FlowDirection, WhatIsNoRecordUnderATypeStopsTheRest) {
  given_pipe("drainage-pipe", "a", "b", "(inverts 5.0 4.0)");
  given(
      "(dictadd (cdr (assoc 360 (entget p))) \"bjbh\""
      " (entmakex '((0 . \"DICTIONARY\") (100 . \"AcDbDictionary\"))))");
  const TraceLines trace;
  EXPECT_EQ(failure("(updateJtDirection p)"), "");
  EXPECT_EQ(trace.lines(), Texts{L"打开实体失败!"});
  EXPECT_EQ(turn("arr"), kUntouched);
}

TEST_F(FlowDirection, WithoutWellsCannotBeToldAndTheArrowStays) {
  given(
      "(setq p (thing '((0 . \"LINE\") (10 500.0 0.0 0.0) (11 600.0 0.0 0.0))"
      " (append '((1000 . \"kind\") (1000 . \"drainage-pipe\")) (inverts 5.0 4.0)))"
      " x (arrow 550.0 0.0)) (note p \"pcgb\" x)");
  const TraceLines trace;
  EXPECT_EQ(eval("(updateJtDirection p)"), "");
  EXPECT_EQ(trace.lines(), (Texts{L"取检查井失败!", L"计算流量切向角失败!"}));
  EXPECT_EQ(turn("x"), kUntouched);
}

TEST_F(FlowDirection, ThatCannotBeToldDoesNotStopTheRest) {
  // An arrow in each record; the pipe has no inverts until the end.
  given(
      "(setq p (pipe \"drainage-pipe\" a b nil) x (arrow 3.0 4.0) y (arrow 6.0 8.0))"
      "(note p \"pcgb\" x) (note p \"xzgj\" y)");
  const TraceLines trace;
  EXPECT_EQ(eval("(updateJtDirection p)"), "");
  EXPECT_EQ(trace.lines(), (Texts{L"计算流量切向角失败!", L"计算流量切向角失败!"}));
  EXPECT_EQ(turn("x"), kUntouched);
  EXPECT_EQ(turn("y"), kUntouched);
}

struct Unclear {
  const char* why;
  const char* pipe;
};

TEST_F(FlowDirection, OfDataThatMakeNoSenseCannotBeTold) {
  for (const Unclear& row : {
           Unclear{"no data", "(entmakex '((0 . \"LINE\") (10 0.0 0.0 0.0) (11 30.0 40.0 0.0)))"},
           Unclear{"a kind that is none", "(pipe \"canal\" a b (inverts 5.0 4.0))"},
           Unclear{"a kind of a node", "(pipe \"storm-well\" a b (inverts 5.0 4.0))"},
           Unclear{"one invert",
                   "(pipe \"drainage-pipe\" a b '((1000 . \"start_invert\")"
                   " (1040 . 5.0)))"},
           Unclear{"texts for numbers",
                   "(pipe \"drainage-pipe\" a b '((1000 . \"start_invert\") (1000 . \"5.0\")"
                   " (1000 . \"end_invert\") (1000 . \"4.0\")))"},
           Unclear{"a key without a value",
                   "(pipe \"drainage-pipe\" a b '((1000 . \"start_invert\")))"},
           Unclear{"wells that are pipes", "(pipe \"drainage-pipe\" line line (inverts 5.0 4.0))"},
           Unclear{
               "a head case that is none",
               "(pipe \"water-pipe\" w1 w2 '((1000 . \"head_case\") (1070 . 7)"
               " (1000 . \"start_head_1\") (1040 . 5.0) (1000 . \"end_head_1\") (1040 . 4.0)))"},
           Unclear{"a water pipe between drainage wells",
                   "(pipe \"water-pipe\" a b '((1000 . \"start_head_1\") (1040 . 5.0)"
                   " (1000 . \"end_head_1\") (1040 . 4.0)))"},
           Unclear{"no curve",
                   "(thing '((0 . \"TEXT\") (10 0.0 0.0 0.0) (40 . 1.0) (1 . \"pipe\"))"
                   " (data \"drainage-pipe\" a b (inverts 5.0 4.0)))"},
           Unclear{"no length", "(pipe \"drainage-pipe\" a a (inverts 5.0 4.0))"},
       }) {
    given("(setq line (pipe \"drainage-pipe\" a b (inverts 5.0 4.0)) p " + std::string(row.pipe) +
          " x (arrow 15.0 20.0)) (note p \"pcgb\" x)");
    EXPECT_EQ(eval("(updateJtDirection p)"), "") << row.why;
    EXPECT_EQ(turn("x"), kUntouched) << row.why;
  }
}

TEST_F(FlowDirection, AWellErasedMeanwhileBoundsNoPipe) {
  given_pipe("drainage-pipe", "a", "b", "(inverts 5.0 4.0)");
  given("(entdel b)");
  EXPECT_EQ(eval("(updateJtDirection p)"), "");
  EXPECT_EQ(turn("arr"), kUntouched);
  given("(entdel b)");
  EXPECT_EQ(eval("(updateJtDirection p)"), "");
  EXPECT_NEAR(turn("arr"), kAlong, 1e-12);
}

TEST_F(FlowDirection, APipeThatDoesNotOpenFails) {
  given_pipe("drainage-pipe", "a", "b", "(inverts 5.0 4.0)");
  given("(entdel p)");
  EXPECT_EQ(failure("(updateJtDirection p)"), "");
  EXPECT_EQ(turn("arr"), kUntouched);
}

TEST_F(FlowDirection, WithoutAPipeItSaysSo) {
  for (const char* call : {"(updateJtDirection)", "(updateJtDirection nil)",
                           "(updateJtDirection \"2F\")", "(updateJtDirection (list p))"}) {
    EXPECT_EQ(failure(call), "\n参数类型错误!") << call;
  }
}

TEST_F(FlowDirection, TheDrawingsScaleIsKeptBesideIt) {
  given_pipe("drainage-pipe", "a", "b", "(inverts 5.0 4.0)");
  given("(setvar \"USERI5\" 1000) (updateJtDirection p)");
  EXPECT_EQ(dim::drawing_scale(), 1000.0);
  given("(setvar \"USERI5\" 0) (updateJtDirection p)");
  EXPECT_EQ(dim::drawing_scale(), 500.0);
}

// The routine itself

TEST_F(FlowDirection, TheRoutineTellsWhetherItWentThroughAllRecords) {
  given_pipe("drainage-pipe", "a", "b", "(inverts 5.0 4.0)");
  EXPECT_EQ(dim::turn_flow_arrows(entity("p")), RTNORM);
  EXPECT_NEAR(turn("arr"), kAlong, 1e-12);
  EXPECT_EQ(dim::turn_flow_arrows(AcDbObjectId()), RTERROR);
  const AcDbObjectId pipe = entity("p");
  given("(entdel p)");
  EXPECT_EQ(dim::turn_flow_arrows(pipe), RTERROR);
}

TEST_F(FlowDirection, AnArrowThatIsOpenElsewhereFails) {
  given_pipe("drainage-pipe", "a", "b", "(inverts 5.0 4.0)");
  {
    const dim::Opened<AcDbEntity> held(entity("arr"), AcDb::kForRead);
    EXPECT_EQ(dim::turn_flow_arrows(entity("p")), RTERROR) << "it can be read, not written";
  }
  EXPECT_EQ(turn("arr"), kUntouched);
}

TEST_F(FlowDirection, TheManagerOffersItToo) {
  given_pipe("drainage-pipe", "a", "b", "(inverts 5.0 4.0)");
  CDimManager manager(entity("p"));
  EXPECT_EQ(manager.updateJtDirection(), Acad::eOk);
  EXPECT_NEAR(turn("arr"), kAlong, 1e-12);
  given("(entdel arr)");
  EXPECT_EQ(manager.updateJtDirection(), dim::kFailed);
}

TEST_F(FlowDirection, IsSavedAndReadAgain) {
  given_pipe("drainage-pipe", "a", "b", "(inverts 5.0 4.0)");
  const std::string handle = eval("(handle arr)");
  given("(updateJtDirection p)");
  reopen();
  const auto value = host.eval_string(document, "(cdr (assoc 50 (entget (e " + handle + "))))");
  ASSERT_TRUE(value);
  EXPECT_NEAR(value->real(), kAlong, 1e-12);
}

}  // namespace
