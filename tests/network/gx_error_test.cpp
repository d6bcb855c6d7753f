#include "network/gx_error.h"

#include <gtest/gtest.h>

#include "host/app/console.h"
#include "network/gx_data.h"

namespace {

class ErrorObject : public testing::Test {
 protected:
  ErrorObject() {
    cad::set_console([this](std::string_view text) { printed += text; });
  }
  ~ErrorObject() override { cad::set_console({}); }
  std::string printed;
  CGxError error;
};

TEST_F(ErrorObject, AFaultIsShownWhenSomebodyReports) {
  error.Set(L"管线标注设置文件:%s不能找到", CString(L"a.dat"));
  EXPECT_EQ(error.text(), L"管线标注设置文件:a.dat不能找到");
  EXPECT_EQ(printed, "");
  error.Report2Pp(3, L"");
  EXPECT_EQ(printed, "\n管线标注设置文件:a.dat不能找到");
}

TEST_F(ErrorObject, AFaultIsShownOnce) {
  error.Set(L"x");
  error.Report2Pp(3, L"");
  error.Report2Pp(3, L"");
  EXPECT_EQ(printed, "\nx");
}

TEST_F(ErrorObject, AReportHasATextOfItsOwn) {
  error.Report2Pp(3, L"100%s");
  EXPECT_EQ(printed, "\n100%s");
  error.Set(L"a");
  error.Report2Pp(3, L"b");
  EXPECT_EQ(printed, "\n100%s\na\nb");
}

TEST_F(ErrorObject, AHintOfItsOwnLeavesTheFaultForItsReport) {
  error.Set(L"a");
  error.Report(L"b");
  EXPECT_EQ(printed, "\nb");
  error.Report2Pp(3, L"");
  EXPECT_EQ(printed, "\nb\na");
}

TEST_F(ErrorObject, NothingToTellPrintsNothing) {
  error.Report(L"");
  error.Report2Pp(3, L"");
  EXPECT_EQ(printed, "");
}

TEST_F(ErrorObject, BelongsToTheLibrarysData) {
  EXPECT_NE(CGxData::Instance()->GetErr(), nullptr);
  EXPECT_EQ(CGxData::Instance()->GetErr(), CGxData::Instance()->GetErr());
}

TEST(Format, TakesTextsAndNumbers) {
  const CString separator = L"-";
  EXPECT_EQ(Gx::Format(L"%s%s%s", CString(L"DN300"), separator, L"35.2"), L"DN300-35.2");
  EXPECT_EQ(Gx::Format(L"%dx%.1lf", 2, 12.25), L"2x12.3") << "a tie rounds away from zero";
  EXPECT_EQ(Gx::Format(L"%%"), L"%");
}

TEST(MeasuredValues, OnlyTheMarkIsNoValue) {
  EXPECT_TRUE(Gx::IsInValidData(-999999999.0));
  EXPECT_FALSE(Gx::IsValidData(-999999999.0));
  for (const double value : {0.0, 999999999.0, -1.0}) {
    EXPECT_TRUE(Gx::IsValidData(value));
    EXPECT_FALSE(Gx::IsInValidData(value));
  }
}

}  // namespace
