#include "tests/host/app/host_test.h"

namespace {

using Blackboard = WithHost;

TEST_F(Blackboard, IsSharedByDocuments) {
  AcApDocument* const first = host.new_drawing();
  AcApDocument* const second = host.new_drawing();
  EXPECT_EQ(eval(first, "(vl-bb-ref '*shared*)"), "nil");
  EXPECT_EQ(eval(first, "(vl-bb-set '*shared* '(1 2.5 \"a\" (b . c) ((nil)) . d))"),
            "(1 2.5 \"a\" (B . C) ((nil)) . D)");
  EXPECT_EQ(eval(second, "(vl-bb-ref '*SHARED*)"), "(1 2.5 \"a\" (B . C) ((nil)) . D)");
  EXPECT_EQ(eval(second, "*shared*"), "nil");
}

TEST_F(Blackboard, KeepsValuesOfDocumentsThatAreClosed) {
  AcApDocument* const first = host.new_drawing();
  eval(first, "(vl-bb-set 'kept (list \"still\" (/ 1.0 3)))");
  host.close(first);
  AcApDocument* const second = host.new_drawing();
  EXPECT_EQ(eval(second, "(equal (vl-bb-ref 'kept) (list \"still\" (/ 1.0 3)))"), "T");
}

TEST_F(Blackboard, HasEntityNamesOfOnesOwnDrawing) {
  AcApDocument* const first = host.new_drawing();
  AcApDocument* const second = host.new_drawing();
  const std::string point = "(setq p (entmakex '((0 . \"POINT\") (10 1.0 2.0 0.0))))";
  eval(first, point + "(vl-bb-set 'points (list p 1 (cons 2 p)))");
  EXPECT_EQ(eval(first, "(equal (vl-bb-ref 'points) (list p 1 (cons 2 p)))"), "T");
  EXPECT_EQ(eval(second, "(vl-bb-ref 'points)"), "(nil 1 (2))");
  host.close(first);
  EXPECT_EQ(eval(second, "(vl-bb-ref 'points)"), "(nil 1 (2))");
  EXPECT_EQ(eval(host.new_drawing(), "(vl-bb-ref 'points)"), "(nil 1 (2))");
}

TEST_F(Blackboard, TakesDataOnly) {
  host.new_drawing();
  EXPECT_EQ(eval("(vl-bb-set 'f car)").substr(0, 30), "error: bad argument type: data");
  EXPECT_EQ(eval("(vl-bb-set \"f\" 1)"), "error: bad argument type: symbolp: \"f\"");
}

TEST_F(Blackboard, TakesListsOfAnyDepth) {
  host.new_drawing();
  eval("(setq l nil) (repeat 50000 (setq l (list l)))");
  EXPECT_EQ(eval("(vl-bb-set 'deep l) (equal (vl-bb-ref 'deep) l)"), "T");
}

using Propagate = WithHost;

TEST_F(Propagate, ReachesOpenAndLaterDocuments) {
  AcApDocument* const first = host.new_drawing();
  AcApDocument* const second = host.new_drawing();
  eval(first, "(setq company \"Waterworks\") (vl-propagate 'company)");
  EXPECT_EQ(eval(second, "company"), "\"Waterworks\"");
  AcApDocument* const third = host.new_drawing();
  EXPECT_EQ(eval(third, "company"), "\"Waterworks\"");
}

TEST_F(Propagate, LeavesEntityNamesInTheirDrawing) {
  AcApDocument* const first = host.new_drawing();
  AcApDocument* const second = host.new_drawing();
  eval(first, "(setq p (list (entmakex '((0 . \"POINT\") (10 1.0 2.0 0.0))) 7)) (vl-propagate 'p)");
  EXPECT_EQ(eval(second, "p"), "(nil 7)");
  EXPECT_EQ(eval(host.new_drawing(), "p"), "(nil 7)");
  EXPECT_EQ(eval(first, "(cdr (assoc 0 (entget (car p))))"), "\"POINT\"");
}

}  // namespace
