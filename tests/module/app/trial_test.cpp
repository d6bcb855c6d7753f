#include "module/app/trial.h"

#include <gtest/gtest.h>

#include "host/app/prompt/user_input.h"
#include "tests/module/app/lisp_host.h"

namespace {

class Trial : public LispHost {
 protected:
  ~Trial() override { cad::user_input() = {}; }
  static void given_answers(const std::string& lines) {
    cad::user_input() = cad::scripted_input(lines, "answers.txt");
  }
  /// What no record can be: a dictionary in the pipe's extension dictionary.
  void given_something_else_filed_under(const std::string& type) {
    ASSERT_EQ(eval("(dimUserRec (list (e \"2F\") \"bzjg\") \"xfdh\" \"1\")"), "");
    ASSERT_NE(eval("(dictadd (cdr (assoc 360 (entget (e \"2F\")))) \"" + type +
                   "\" (entmakex '((0 . \"DICTIONARY\") (100 . \"AcDbDictionary\"))))"),
              "nil");
  }
};

const Items kRecorded{item_of(L"pipe_flow", L"12345678.00")};

TEST_F(Trial, RecordsAndUpdatesAFlowOnEachEntityThatIsSelected) {
  ASSERT_TRUE(host.set_selection(document, {"2F", "4A"}));
  EXPECT_EQ(eval("(t1)"), "");
  EXPECT_EQ(items(L"pcgb", L"2F"), kRecorded);
  EXPECT_EQ(items(L"pcgb", L"4A"), kRecorded);
  EXPECT_EQ(items(L"pcgb", L"30"), Items{});
  EXPECT_EQ(printed.text(), "");
}

TEST_F(Trial, AsksWithItsOwnPrompts) {
  given_answers("handle:2F\nhandle:30\nr\nhandle:2F\n\n");
  EXPECT_EQ(eval("(t1)"), "");
  EXPECT_EQ(printed.text(),
            "\n请选择一个实体:handle:2F\n1 found\n"
            "\n请选择一个实体:handle:30\n1 found, 2 total\n"
            "\n请选择一个实体:r\n完毕handle:2F\n1 found, 1 removed, 1 total\n完毕\n");
  EXPECT_EQ(items(L"pcgb", L"30"), kRecorded);
  EXPECT_EQ(items(L"pcgb", L"2F"), Items{});
}

TEST_F(Trial, AnEmptySelectionIsASuccess) {
  given_answers("\n");
  EXPECT_EQ(eval("(t1)"), "");
  EXPECT_EQ(items(), Items{});
}

TEST_F(Trial, WithNobodyToAskNothingIsSelected) {
  EXPECT_EQ(eval("(t1)"), "");
  EXPECT_EQ(items(), Items{});
}

TEST_F(Trial, ArgumentsAreIgnored) {
  ASSERT_TRUE(host.set_selection(document, {"2F"}));
  EXPECT_EQ(eval("(t1 nil 1 \"x\")"), "");
  EXPECT_EQ(items(), kRecorded);
}

TEST_F(Trial, StopsAtTheFirstEntityThatDoesNotOpen) {
  ASSERT_TRUE(host.set_selection(document, {"2F", "31", "30"}));  // 31 is on a locked layer
  EXPECT_EQ(failure("(t1)"), "\n打开实体失败!");
  EXPECT_EQ(items(L"pcgb", L"2F"), kRecorded);
  EXPECT_EQ(items(L"pcgb", L"30"), Items{});
}

TEST_F(Trial, StopsWhereTheFlowCannotBeRecorded) {
  given_something_else_filed_under("pcgb");
  ASSERT_TRUE(host.set_selection(document, {"2F", "30"}));
  EXPECT_EQ(failure("(t1)"), "\n添加失败!");
  EXPECT_EQ(items(L"pcgb", L"30"), Items{});
}

TEST_F(Trial, StopsWhereTheFlowCannotBeUpdated) {
  given_something_else_filed_under("xzgj");
  ASSERT_TRUE(host.set_selection(document, {"2F", "30"}));
  EXPECT_EQ(failure("(t1)"), "\n更新实体信息失败!");
  EXPECT_EQ(items(L"pcgb", L"2F"), kRecorded);  // what was done stays done
  EXPECT_EQ(items(L"pcgb", L"30"), Items{});
}

TEST_F(Trial, RecordsALongerFlowThanItUpdatesTo) {
  given_something_else_filed_under("bjbh");  // before pcgb in the table: the update stops there
  ASSERT_TRUE(host.set_selection(document, {"2F"}));
  EXPECT_EQ(failure("(t1)"), "\n更新实体信息失败!");
  EXPECT_EQ(items(), Items{item_of(L"pipe_flow", L"1234567890")});
}

}  // namespace
