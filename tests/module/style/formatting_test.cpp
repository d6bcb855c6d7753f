// Labels of lengths, slopes, elevations, depths and wells.
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <bit>
#include <cmath>
#include <limits>

#include "host/base/decimal_text.h"
#include "host/base/numbers.h"
#include "tests/module/style/style_fixture.h"

namespace {

class LengthLabel : public WithStyle {};
class SlopeLabel : public WithStyle {};
class ElevationLabel : public WithStyle {};
class DepthLabel : public WithStyle {};
class WellLabel : public WithStyle {};

TEST(RemoveZero, DropsZerosBehindThePointAndThePoint) {
  const std::pair<const wchar_t*, const wchar_t*> rows[] = {
      {L"12.500", L"12.5"}, {L"12.000", L"12"}, {L"0.000", L"0"},         {L"100", L"100"},
      {L"0", L"0"},         {L"", L""},         {L"12.", L"12"},          {L"12.05", L"12.05"},
      {L"-0.00", L"-0"},    {L".500", L".5"},   {L"1.#INF00", L"1.#INF"},
  };
  for (const auto& [text, expected] : rows) EXPECT_EQ(CDimStyle::RemoveZero(text), expected);
}

TEST(RemoveZero, NeverTouchesTheFirstCharacter) {
  EXPECT_EQ(CDimStyle::RemoveZero(L".000"), L".");
  EXPECT_EQ(CDimStyle::RemoveZero(L"."), L".");
  EXPECT_EQ(CDimStyle::RemoveZero(L"0."), L"0");
}

TEST(RemoveZero, APointInFrontOfTheNumberCountsToo) {
  EXPECT_EQ(CDimStyle::RemoveZero(L"L.100"), L"L.1");
  EXPECT_EQ(CDimStyle::RemoveZero(L"L.000"), L"L");
}

RC_GTEST_PROP(RemoveZero, LeavesAnEqualNumberWithoutZerosBehindThePoint, ()) {
  const double value = *rc::gen::map(rc::gen::inRange(-100'000'000, 100'000'000),
                                     [](int whole) { return whole / 1000.0; });
  const int decimals = *rc::gen::inRange(0, 12);
  CString text;
  cad::append_fixed(text, value, decimals);
  const CString shorter = CDimStyle::RemoveZero(text);
  RC_ASSERT(cad::wtof(shorter) == cad::wtof(text));
  RC_ASSERT(text.starts_with(shorter));
  RC_ASSERT(shorter.find(L'.') == CString::npos ||
            (shorter.back() != L'0' && shorter.back() != L'.'));
  RC_ASSERT(CDimStyle::RemoveZero(shorter) == shorter);
}

RC_GTEST_PROP(RemoveZero, AnyTextLosesZerosAndOnePointAtMost, ()) {
  const CString text = *rc::gen::container<CString>(rc::gen::elementOf(CString(L"0.1a管")));
  const CString shorter = CDimStyle::RemoveZero(text);
  RC_ASSERT(text.starts_with(shorter));
  const CString dropped = text.substr(shorter.size());
  RC_ASSERT(dropped.find_first_not_of(L'0', dropped.starts_with(L'.') ? 1 : 0) == CString::npos);
  RC_ASSERT(text.empty() == shorter.empty());
}

TEST_F(LengthLabel, InMillimetresWithoutDecimals) {
  given_plan_labels("L= mm 0 mm 0\n");
  EXPECT_EQ(style.GetPipeLongStr(35.2), L"L=35200mm");
}

TEST_F(LengthLabel, DropsZerosInFrontOfTheSuffix) {
  given_plan_labels("L= 0m 3 m 1\n");
  EXPECT_EQ(style.GetPipeLongStr(35.2), L"L=35.20m");
  EXPECT_EQ(style.GetPipeLongStr(35.0), L"L=350m");
  EXPECT_EQ(style.GetPipeLongStr(-0.0), L"L=-00m");
}

TEST_F(LengthLabel, APointInThePrefixTakesZerosOfAWholeNumber) {
  given_plan_labels("L. \"\" 0 m 1\n");
  EXPECT_EQ(style.GetPipeLongStr(100.0), L"L.1");
}

TEST_F(LengthLabel, ALengthThatNobodyMeasuredIsEmpty) {
  given_plan_labels("L= mm 0 mm 0\n");
  EXPECT_EQ(style.GetPipeLongStr(kNoValue), L"");
}

TEST_F(LengthLabel, TiesAreRoundedAwayFromZero) {
  given_plan_labels("\"\" \"\" 1 m 0\n");
  EXPECT_EQ(style.GetPipeLongStr(12.25), L"12.3");
  EXPECT_EQ(style.GetPipeLongStr(-12.25), L"-12.3");
  EXPECT_EQ(style.GetPipeLongStr(0.15), L"0.1") << "0.1499999999999999944...";
}

TEST_F(LengthLabel, OutOfRangeDecimalsAreSixOrAsMany) {
  given_plan_labels("\"\" \"\" -5 m 0\n");
  EXPECT_EQ(style.GetPipeLongStr(1.5), L"1.500000");
  given_plan_labels("\"\" \"\" 400 m 0\n");
  EXPECT_EQ(style.GetPipeLongStr(1.5), L"1.5" + CString(399, L'0'));
  given_plan_labels("\"\" \"\" 99999999999 m 0\n");
  EXPECT_EQ(style.GetPipeLongStr(1.5), L"1.5" + CString(511, L'0'));
}

TEST_F(LengthLabel, WhatIsNoNumberStaysALabel) {
  given_plan_labels("L= m 2 m 0\n");
  EXPECT_EQ(style.GetPipeLongStr(std::numeric_limits<double>::infinity()), L"L=1.#Jm");
  EXPECT_EQ(style.GetPipeLongStr(std::numeric_limits<double>::max()).size(), 2u + 309u + 3u + 1u);
}

TEST_F(LengthLabel, LongPrefixesAreKeptWhole) {
  const CString prefix(500, L'管');
  given_plan_labels(cad::to_utf8(prefix) + " m 1 m 0\n");
  EXPECT_EQ(style.GetPipeLongStr(1.0), prefix + L"1.0m");
}

TEST_F(LengthLabel, AnyLengthOfTextIsKeptWhole) {
  for (std::size_t size = 100; size < 140; ++size) {
    const CString prefix(size, L'管'), suffix(size - 90, L'米');
    given_plan_labels(cad::to_utf8(prefix) + " " + cad::to_utf8(suffix) + " 1 m 0\n");
    EXPECT_EQ(style.GetPipeLongStr(123.0), prefix + L"123.0" + suffix);
  }
}

TEST_F(SlopeLabel, IsPrintedPerMilleWithoutSign) {
  given_plan_labels("x\ni= ‰ 2 ‰ 0\n");
  EXPECT_EQ(style.GetPipePdStr(-0.0035), L"i=3.50‰");
  given_plan_labels("x\ni= ‰ 2 ‰ 1\n");
  EXPECT_EQ(style.GetPipePdStr(-0.0035), L"i=3.5‰");
}

TEST_F(SlopeLabel, IsPrintedPerCentOrPlain) {
  given_plan_labels("x\n\"\" % 1 % 0\n");
  EXPECT_EQ(style.GetPipePdStr(0.5), L"50.0%");
  given_plan_labels("x\n\"\" \"\" 4 小数 0\n");
  EXPECT_EQ(style.GetPipePdStr(-0.005), L"0.0050");
}

TEST_F(SlopeLabel, ASlopeThatNobodyMeasuredIsPrintedAsANumber) {
  given_plan_labels("x\n\"\" \"\" 0 ‰ 0\n");
  EXPECT_EQ(style.GetPipePdStr(kNoValue), L"999999999000");
}

TEST_F(ElevationLabel, HasTheDecimalsOfItsKind) {
  given_elevations("GROUND x 2 BG1.dwg\nUSUAL x 0 BG2.dwg\n");
  EXPECT_EQ(style.GetBgStr(GROUND, 12.3456), L"12.35");
  EXPECT_EQ(style.GetBgStr(USUAL, 12.5), L"13");
}

TEST_F(ElevationLabel, AKindWithoutSettingsHasThreeDecimals) {
  EXPECT_EQ(style.GetBgStr(GROUND, 12.3456), L"12.346");
  given_elevations("USUAL x 0 BG2.dwg\n");
  EXPECT_EQ(style.GetBgStr(GROUND, 12.3456), L"12.346");
  EXPECT_EQ(style.GetBgFhName(GROUND), L"");
}

TEST_F(ElevationLabel, TheFirstSettingsOfAKindCount) {
  given_elevations("GROUND x 1 A.dwg\nGROUND x 2 B.dwg\n");
  EXPECT_EQ(style.GetBgFhName(GROUND), L"A");
  EXPECT_EQ(style.GetBgStr(GROUND, 1.0), L"1.0");
}

TEST_F(ElevationLabel, InTheProfileTakesTheProfilesDecimals) {
  EXPECT_EQ(style.GetBgStr(12.34567), L"12.346");
  given_profile_labels("标高 ((小数位 1))\n");
  EXPECT_EQ(style.GetBgStr(-0.04), L"-0.0");
  EXPECT_EQ(style.GetBgStr(kNoValue), L"");
  EXPECT_EQ(style.GetBgStr(GROUND, kNoValue), L"");
}

TEST_F(DepthLabel, OfBurialAndCoverTakesTheProfilesDecimals) {
  EXPECT_EQ(style.GetMsFtStr(1.255), L"1.25") << "1.25499999999999989...";
  EXPECT_EQ(style.GetMsFtStr(1.125), L"1.13");
  given_profile_labels("埋深及覆土 ((小数位 0))\n");
  EXPECT_EQ(style.GetMsFtStr(1.5), L"2");
  EXPECT_EQ(style.GetMsFtStr(kNoValue), L"");
}

TEST_F(DepthLabel, OfAWellInMetresHasTheUsualDecimals) {
  style.UpdateData();
  EXPECT_EQ(style.GetWellDepth(1.2346, 1), L"1.235");
  EXPECT_EQ(style.GetWellDepth(kNoValue, 0), L"");
}

TEST_F(DepthLabel, OfAWellThatNobodyMeasuredIsEmptyInMillimetresToo) {
  given_library_settings("[Swjcj]\nUnit_Jcjsd=mm\n");
  EXPECT_EQ(style.GetWellDepth(kNoValue, 0), L"");
}

TEST_F(DepthLabel, OfAWellInMillimetresIsCutBehindRounding) {
  given_library_settings("[Swjcj]\nUnit_Jcjsd=Mm\n");
  given_elevations("USUAL x 3 BG.dwg\n");
  EXPECT_EQ(style.GetWellDepth(1.2345, 1), L"1234");
  EXPECT_EQ(style.GetWellDepth(1.2345, 0), L"1234.500");
  given_elevations("USUAL x 0 BG.dwg\n");
  EXPECT_EQ(style.GetWellDepth(1.2345, 1), L"1235") << "printing rounds, there is nothing to cut";
}

TEST_F(WellLabel, JoinsPrefixSeparatorAndNumber) {
  const CGxJd well;
  CKtGxWellType1 well_type;
  EXPECT_EQ(style.GetJdStr(&well, L"w", L"12"), L"W-12") << "in capitals until a file says not";
  EXPECT_EQ(style.GetJdStr(&well_type, L"污w", L"a1"), L"污W-a1");
  given_plan_labels("x\nx\n0 / 0 XH L\n");
  EXPECT_EQ(style.GetJdStr(&well, L"w", L"12"), L"w/12");
}

TEST_F(WellLabel, LettersFromAToZHaveCapitals) {
  const CGxJd well;
  EXPECT_EQ(style.GetJdStr(&well, L"`amz{éß管ａ", L"az"), L"`AMZ{éß管ａ-az");
}

TEST_F(WellLabel, WithoutANumberIsEmpty) {
  const CGxXhs hydrant;
  CKtGxWellType1 well;
  EXPECT_EQ(style.GetJdStr(&hydrant, L"W", L""), L"");
  EXPECT_EQ(style.GetJdStr(&well, L"W", L""), L"");
}

TEST_F(WellLabel, HydrantsHaveAPrefixOfTheirOwn) {
  const CGxXhs hydrant;
  CKtGxGsWellXHS hydrant_type;
  given_plan_labels("x\nx\n1 - 0 xh L\n");
  EXPECT_EQ(style.GetJdStr(&hydrant, L"w", L"3"), L"xh-3") << "not turned into capitals";
  EXPECT_EQ(style.GetJdStr(&hydrant_type, L"w", L"3"), L"xh-3");
}

TEST_F(WellLabel, WithTheFlagAHydrantIsAWellLikeOthers) {
  const CGxXhs hydrant;
  CKtGxGsWellXHS hydrant_type;
  given_plan_labels("x\nx\n1 - 1 xh L\n");
  EXPECT_EQ(style.GetJdStr(&hydrant, L"w", L"3"), L"W-3");
  EXPECT_EQ(style.GetJdStr(&hydrant_type, L"w", L"3"), L"W-3");
}

TEST_F(WellLabel, NoWellIsNoHydrant) {
  EXPECT_EQ(style.GetJdStr(static_cast<const CGxJd*>(nullptr), L"w", L"3"), L"W-3");
  EXPECT_EQ(style.GetJdStr(static_cast<CKtGxWellType1*>(nullptr), L"w", L"3"), L"W-3");
}

TEST_F(WellLabel, OfAnIdThatIsNoWellIsEmpty) { EXPECT_EQ(style.GetJdStr(AcDbObjectId()), L""); }

}  // namespace
