#include <gtest/gtest.h>

#include <string>

#include "tests/host/app/host_test.h"
#include "tests/host/app/select/plan_drawing.h"

namespace {

/// A line A1 of length 50, an arc A2, a closed polyline A3 with an arc, a spline A4, a text A5, an
/// xline A6, a sloping line A7.
class CurveFunctions : public WithHost {
 protected:
  CurveFunctions() {
    given_drawing(plan_drawing(
        line("A1", 0, 0, 30, 40) +
        planned("ARC", "A2", "AcDbCircle", "10 0\n20 0\n30 0\n40 2\n50 270\n51 90\n") +
        planned("LWPOLYLINE", "A3", "AcDbPolyline",
                "90 3\n70 1\n38 5\n10 0\n20 0\n10 10\n20 0\n42 1\n10 10\n20 4\n") +
        planned("SPLINE", "A4", "AcDbSpline",
                "70 8\n71 2\n72 6\n73 3\n40 0\n40 0\n40 0\n40 1\n40 1\n40 1\n10 0\n20 0\n30 0\n"
                "10 1\n20 0\n30 0\n10 2\n20 4\n30 0\n") +
        planned("TEXT", "A5", "AcDbText", "10 0\n20 0\n30 0\n40 1\n1 x\n") +
        planned("XLINE", "A6", "AcDbXline", "10 1\n20 1\n30 0\n11 1\n21 0\n31 0\n") +
        planned("LINE", "A7", "AcDbLine", "10 0\n20 0\n30 0\n11 10\n21 0\n31 100\n")));
    eval(
        "(setq a1 (handent \"A1\") a2 (handent \"A2\") a3 (handent \"A3\") a4 (handent \"A4\")"
        " a5 (handent \"A5\") a6 (handent \"A6\") a7 (handent \"A7\"))");
  }
};

TEST_F(CurveFunctions, TellParametersOfTheirKind) {
  EXPECT_EQ(eval("(list (vlax-curve-getStartParam a1) (vlax-curve-getEndParam a1))"), "(0.0 50.0)");
  EXPECT_EQ(eval("(vlax-curve-getEndParam a3)"), "3.0");
  EXPECT_EQ(eval("(equal (- (vlax-curve-getEndParam a2) (vlax-curve-getStartParam a2)) pi 1e-12)"),
            "T");
  EXPECT_EQ(eval("(list (vlax-curve-getStartParam a4) (vlax-curve-getEndParam a4))"), "(0.0 1.0)");
  EXPECT_EQ(eval("(list (vlax-curve-getEndParam a6) (vlax-curve-getEndPoint a6))"), "(nil nil)");
}

TEST_F(CurveFunctions, TurnParametersPointsAndDistancesIntoEachOther) {
  EXPECT_EQ(eval("(vlax-curve-getPointAtParam a1 25)"), "(15.0 20.0 0.0)");
  EXPECT_EQ(eval("(vlax-curve-getPointAtParam a3 0.5)"), "(5.0 0.0 5.0)");
  EXPECT_EQ(eval("(vlax-curve-getPointAtDist a3 4)"), "(4.0 0.0 5.0)");
  EXPECT_EQ(eval("(vlax-curve-getParamAtDist a3 4)"), "0.4");
  EXPECT_EQ(eval("(vlax-curve-getDistAtParam a3 1)"), "10.0");
  EXPECT_EQ(eval("(vlax-curve-getDistAtPoint a3 '(4.0 0.0 5.0))"), "4.0");
  EXPECT_EQ(eval("(vlax-curve-getParamAtPoint a3 (vlax-curve-getPointAtParam a3 1.25))"), "1.25");
  EXPECT_EQ(eval("(equal (vlax-curve-getDistAtParam a3 3) (+ 10 (* 2 pi) (sqrt 116)) 1e-9)"), "T");
  EXPECT_EQ(eval("(vlax-curve-getPointAtDist a6 5)"), "(6.0 1.0 0.0)");
}

TEST_F(CurveFunctions, AnswerNilToWhatIsNotOnTheCurve) {
  EXPECT_EQ(eval("(vlax-curve-getPointAtParam a1 51)"), "nil");
  EXPECT_EQ(eval("(vlax-curve-getPointAtParam a1 -1)"), "nil");
  EXPECT_EQ(eval("(vlax-curve-getPointAtDist a1 1000)"), "nil");
  EXPECT_EQ(eval("(vlax-curve-getParamAtPoint a1 '(0 1))"), "nil");
  EXPECT_EQ(eval("(vlax-curve-getDistAtPoint a3 '(4.0 0.0 0.0))"), "nil");
  EXPECT_EQ(eval("(vlax-curve-getFirstDeriv a1 99)"), "nil");
}

TEST_F(CurveFunctions, GiveDirections) {
  EXPECT_EQ(eval("(vlax-curve-getFirstDeriv a1 0)"), "(0.6 0.8 0.0)");
  EXPECT_EQ(eval("(vlax-curve-getFirstDeriv a3 0.5)"), "(10.0 0.0 0.0)");
  EXPECT_EQ(eval("(vlax-curve-getFirstDeriv a4 0.5)"), "(2.0 4.0 0.0)");
  EXPECT_EQ(eval("(vlax-curve-getSecondDeriv a4 0.5)"), "(0.0 8.0 0.0)");
  // The direction of a label along its pipe.
  EXPECT_EQ(eval("(angtos (angle '(0 0 0) (vlax-curve-getFirstDeriv a1 (vlax-curve-getParamAtPoint"
                 " a1 (vlax-curve-getClosestPointTo a1 '(10 0))))) 0 3)"),
            "\"53.130\"");
}

TEST_F(CurveFunctions, FindTheNearestPoint) {
  EXPECT_EQ(eval("(vlax-curve-getClosestPointTo a1 '(40 30))"), "(28.8 38.4 0.0)");
  EXPECT_EQ(eval("(vlax-curve-getClosestPointTo a1 '(60 80))"), "(30.0 40.0 0.0)");
  EXPECT_EQ(eval("(vlax-curve-getClosestPointTo a1 '(60 80) T)"), "(60.0 80.0 0.0)");
  EXPECT_EQ(eval("(vlax-curve-getClosestPointTo a2 '(-5 0) T)"), "(-2.0 0.0 0.0)");
  EXPECT_EQ(eval("(vlax-curve-getClosestPointToProjection a7 '(5 3 0) '(0 0 1))"),
            "(5.0 0.0 50.0)");
  EXPECT_EQ(eval("(vlax-curve-getClosestPointToProjection a7 '(5 3 0) '(0 0 0))"), "nil");
}

TEST_F(CurveFunctions, TellWhatKindOfCurveItIs) {
  EXPECT_EQ(eval("(mapcar 'vlax-curve-isClosed (list a1 a2 a3))"), "(nil nil T)");
  EXPECT_EQ(eval("(mapcar 'vlax-curve-isPeriodic (list a1 a3))"), "(nil T)");
  EXPECT_EQ(eval("(mapcar 'vlax-curve-isPlanar (list a1 a3 a4))"), "(T T T)");
  EXPECT_EQ(eval("(equal (vlax-curve-getArea a3) (+ 20 (* 2 pi)) 1e-9)"), "T");
  EXPECT_EQ(eval("(vlax-curve-getArea a6)"), "nil");
  EXPECT_EQ(eval("(vlax-curve-getStartPoint a3)"), "(0.0 0.0 5.0)");
  EXPECT_EQ(eval("(vlax-curve-getEndPoint a3)"), "(0.0 0.0 5.0)");
}

TEST_F(CurveFunctions, RefuseWhatIsNoCurve) {
  EXPECT_EQ(eval("(vlax-curve-getStartParam nil)"), "error: bad argument type: lentityp: nil");
  EXPECT_EQ(eval("(vlax-curve-getStartParam a5)").substr(0, 30), "error: bad argument type: curv");
  EXPECT_EQ(eval("(vlax-curve-getPointAtParam a1 nil)"), "error: bad argument type: numberp: nil");
  EXPECT_EQ(eval("(vlax-curve-getClosestPointTo a1 1)"),
            "error: bad argument type: 2D/3D point: 1");
  eval("(entdel a1)");
  EXPECT_EQ(eval("(vlax-curve-getStartParam a1)").substr(0, 25), "error: bad argument type:");
}

}  // namespace
