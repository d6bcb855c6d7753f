// Labels are the same wherever the program runs.
#include "tests/comma_locale.h"
#include "tests/module/style/style_fixture.h"

namespace {

class WhereNumbersHaveCommas : public WithStyle {};

TEST_F(WhereNumbersHaveCommas, LabelsAndSettingsHavePoints) {
  const CommaLocale locale;
  if (!locale) GTEST_SKIP() << "localedef cannot make a locale";
  given_file("install/using/PipeMaterials.dat", "管材 7 PE 0 \"\"\n规格 7 110 96.8 6.6\n");
  given_file("install/sys/QrmvPz.ini", "[Swjcj]\nHigh-CnjDown=0.75\n");
  given_file("install/sys/DimStyle.ini", "[GxBz]\nSwBzTxtLineSpace=1.25\n");
  given_file("install/Is/gdbzfsk.dat", "de OUT × WALL\n");
  given_file("install/Is/gdcdpdbz.dat", "L= m 3 m 1\ni= ‰ 2 ‰ 0\n");
  style.UpdateData();
  EXPECT_EQ(style.GetPipeLongStr(1234.56), L"L=1234.56m");
  EXPECT_EQ(style.GetPipePdStr(0.0035), L"i=3.50‰");
  EXPECT_EQ(style.GetBgStr(GROUND, 12.3456), L"12.346");
  EXPECT_EQ(style.GetZhStr(1234.5, L""), L"K1+234.5");
  EXPECT_EQ(style.GetDnStr(110, 7, 0, kNoValue, kNoValue, 0), L"de110×6.6");
  EXPECT_EQ(style.GetDnStr(0, 7, 1, 2000, 1500, 2.5), L"BxH=2000x1500(1:2.5)");
  EXPECT_EQ(style.CnjHeight(), 0.75);
  EXPECT_EQ(style.SwBzTxtLineSpace(), 1.25);
  stuStakeDimMode layout;
  given_installation_variables(*network::variable_record(L"PLN_STKDIM_M0", L"1 1.5 2.5"));
  EXPECT_EQ(style.ReadZhMode(layout), 1);
  EXPECT_EQ(layout, (stuStakeDimMode{0, 1, 1.5, 2.5}));
}

}  // namespace
