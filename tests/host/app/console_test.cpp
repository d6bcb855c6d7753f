#include "host/app/console.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace {

using cad::format_wide;

TEST(WideFormat, TextIsWideUnlessALetterSaysBytes) {
  EXPECT_EQ(format_wide(L"%s|%ls|%hs|%S", L"管", L"径", "m\xC2\xB2", "b"), L"管|径|m²|b");
  EXPECT_EQ(format_wide(L"%c%c|%hc", L'井', L'A', 'z'), L"井A|z");
}

TEST(WideFormat, NullTextIsSaidToBeNull) {
  EXPECT_EQ(format_wide(L"[%s]", static_cast<const wchar_t*>(nullptr)), L"[(null)]");
}

TEST(WideFormat, PrecisionCutsTextAndNeedsNoEnd) {
  const wchar_t endless[3] = {L'a', L'b', L'c'};
  EXPECT_EQ(format_wide(L"%.2s|%5.1s|%-4s|", endless, L"xy", L"ab"), L"ab|    x|ab  |");
}

TEST(WideFormat, LongHas32Bits) {
  EXPECT_EQ(format_wide(L"%ld", -1L), L"-1");
  EXPECT_EQ(format_wide(L"%lu", 0xFFFFFFFFL), L"4294967295");
  EXPECT_EQ(format_wide(L"%ld", 0x1'0000'0002L), L"2");
  EXPECT_EQ(format_wide(L"%I64d|%lld", 1LL << 40, -(1LL << 40)), L"1099511627776|-1099511627776");
}

TEST(WideFormat, IntegersTakeFlagsWidthAndPrecision) {
  EXPECT_EQ(format_wide(L"%5d|%-5d|%05d|%+d|% d", 42, 42, -42, 42, 42),
            L"   42|42   |-0042|+42| 42");
  EXPECT_EQ(format_wide(L"%x|%X|%#x|%o|%#o", 255, 255, 255, 8, 8), L"ff|FF|0xff|10|010");
  EXPECT_EQ(format_wide(L"%.3d|%.0d|%*d|%-*d|", 7, 0, 4, 7, 3, 7), L"007||   7|7  |");
  EXPECT_EQ(format_wide(L"%hd|%hhu|%d", 70000, 258, std::numeric_limits<int>::min()),
            L"4464|2|-2147483648");
}

TEST(WideFormat, TiesRoundAwayFromZero) {
  EXPECT_EQ(format_wide(L"%.0f|%.0f|%.2f|%.1f", 0.5, 2.5, 0.125, 12.25), L"1|3|0.13|12.3");
  EXPECT_EQ(format_wide(L"%.2lf|%.2f|%.1f", 0.005, 2.675, 9.95), L"0.01|2.67|9.9");
  EXPECT_EQ(format_wide(L"%.0e|%.1f|%.2f", 2.5, 9.96, 99.995), L"3e+000|10.0|100.00");
}

TEST(WideFormat, ExponentsHaveThreeDigits) {
  EXPECT_EQ(format_wide(L"%e|%.2E|%g|%g", 1.5, 1e-7, 1e20, 1e-10),
            L"1.500000e+000|1.00E-007|1e+020|1e-010");
}

TEST(WideFormat, ShortestFormDropsZeros) {
  EXPECT_EQ(format_wide(L"%g|%g|%g|%#g|%.3g", 0.0, 100000.0, 1234567.0, 1.0, 9.999),
            L"0|100000|1.23457e+006|1.00000|10");
}

TEST(WideFormat, NumbersThatAreNoneDoNotBreakAnything) {
  EXPECT_EQ(format_wide(L"%f|%.1f", std::numeric_limits<double>::infinity(),
                        -std::numeric_limits<double>::infinity()),
            L"1.#INF00|-1.$");
  EXPECT_EQ(format_wide(L"%.1f", -0.0), L"-0.0");
}

TEST(WideFormat, PercentAndUnknownLettersStandForThemselves) {
  EXPECT_EQ(format_wide(L"100%%|%y|%"), L"100%|y|");
}

TEST(WideFormat, WrittenCountsAreIgnored) {
  int written = 7;
  EXPECT_EQ(format_wide(L"ab%nc", &written), L"abc");
  EXPECT_EQ(written, 7);
}

TEST(Console, PrintsUtf8WithoutALineEnd) {
  std::string printed;
  cad::set_console([&](std::string_view text) { printed += text; });
  EXPECT_EQ(acutPrintf(L"\n参数格式不对!%d", 1), RTNORM);
  EXPECT_EQ(acutPrintf(nullptr), RTERROR);
  cad::set_console({});
  EXPECT_EQ(acutPrintf(L"nobody listens"), RTNORM);
  EXPECT_EQ(printed, "\n参数格式不对!1");
}

}  // namespace
