#include <gtest/gtest.h>

#include <string>

#include "tests/host/app/host_test.h"
#include "tests/host/app/select/plan_drawing.h"

namespace {

class Coordinates : public WithHost {
 protected:
  Coordinates() {
    given_drawing(plan_drawing(
        planned("CIRCLE", "A1", "AcDbCircle", "10 1\n20 2\n30 3\n40 1\n210 0\n220 0\n230 -1\n") +
        line("A2", 0, 0, 1, 1)));
  }
  void set_ucs(const std::string& origin, const std::string& x, const std::string& y) {
    eval("(command \"_.UCS\" \"_3\" '" + origin + " '" + x + " '" + y + ")");
  }
};

TEST_F(Coordinates, AreTheSameInTheWorldUntilSomethingIsSet) {
  EXPECT_EQ(eval("(trans '(1 2 3) 0 1)"), "(1.0 2.0 3.0)");
  EXPECT_EQ(eval("(trans '(1 2) 1 0)"), "(1.0 2.0 0.0)");
  EXPECT_EQ(eval("(trans '(1 2 3) 1 2)"), "(1.0 2.0 3.0)");
}

TEST_F(Coordinates, OfTheUserAreMovedAndTurned) {
  set_ucs("(100.0 0.0 0.0)", "(100.0 1.0 0.0)", "(99.0 0.0 0.0)");
  ASSERT_EQ(eval("(getvar \"UCSORG\")"), "(100.0 0.0 0.0)");
  EXPECT_EQ(eval("(trans '(1.0 0.0 0.0) 1 0)"), "(100.0 1.0 0.0)");
  EXPECT_EQ(eval("(trans '(1.0 0.0 0.0) 1 0 T)"), "(0.0 1.0 0.0)");
  EXPECT_EQ(eval("(trans '(100.0 1.0 0.0) 0 1)"), "(1.0 0.0 0.0)");
}

TEST_F(Coordinates, OfEntitiesAreThoseOfTheirNormal) {
  EXPECT_EQ(eval("(trans '(1.0 2.0 3.0) (handent \"A1\") 0)"), "(-1.0 2.0 -3.0)");
  EXPECT_EQ(eval("(trans '(-1.0 2.0 -3.0) 0 (handent \"A1\"))"), "(1.0 2.0 3.0)");
  EXPECT_EQ(eval("(trans '(1.0 2.0 3.0) '(0 0 -1) 0)"), "(-1.0 2.0 -3.0)");
  EXPECT_EQ(eval("(trans '(1.0 2.0 3.0) (handent \"A2\") 0)"), "(1.0 2.0 3.0)");
  EXPECT_EQ(eval("(trans '(1 2 3) '(1 0 0) 0)"), "(3.0 1.0 2.0)");
}

TEST_F(Coordinates, OfSystemsThatDoNotExistAreErrors) {
  EXPECT_EQ(eval("(trans '(1 2 3) 0 5)"), "error: bad argument value: coordinate system 0 to 3: 5");
  EXPECT_EQ(eval("(trans '(1 2 3) 3 2)").substr(0, 12), "error: trans");
  EXPECT_EQ(eval("(trans nil 0 1)"), "error: bad argument type: 2D/3D point: nil");
  EXPECT_EQ(eval("(trans '(1 2 3) '(0 0 0) 1)"), "error: bad argument type: 2D/3D point: (0 0 0)");
}

TEST_F(Coordinates, ATextboxIsMeasuredAtTheOrigin) {
  EXPECT_EQ(eval("(setq box (textbox '((0 . \"TEXT\") (1 . \"标注\") (40 . 2.5) (10 7.0 7.0 0.0)"
                 " (50 . 1.0)))) (list (car box) (caadr box) (< 2.0 (cadadr box) 2.75))"),
            "((0.0 0.0 0.0) 5.0 T)");
  EXPECT_EQ(eval("(caadr (textbox '((1 . \"标注\") (40 . 2.5) (41 . 2.0))))"), "10.0");
  EXPECT_EQ(eval("(equal (cadadr (textbox '((1 . \"H\") (40 . 2.5)))) 2.5 1e-9)"), "T");
  EXPECT_EQ(eval("(caddr (cadr (textbox '((1 . \"gx\")))))"), "0.0");  // the current height
  EXPECT_EQ(eval("(minusp (cadar (textbox '((1 . \"gx\") (40 . 1)))))"), "T");
  EXPECT_EQ(eval("(textbox '((0 . \"TEXT\")))"), "nil");
  EXPECT_EQ(eval("(textbox 1)"), "error: bad argument type: listp: 1");
}

}  // namespace
