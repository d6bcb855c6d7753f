#include "host/base/decimal_text.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <string>

#include <rapidcheck/gtest.h>

namespace cad {
namespace {

using Limits = std::numeric_limits<double>;

std::string fixed_text(double value, int decimals) {
  return std::string(DecimalText::fixed(value, decimals).view());
}

std::string scientific_text(double value, int decimals) {
  return std::string(DecimalText::scientific(value, decimals).view());
}

std::string general_text(double value, int significant) {
  return std::string(DecimalText::general(value, significant).view());
}

/// The same text made in another way: all decimals a double can have, rounded by hand.
std::string rounded_by_hand(double value, int decimals) {
  constexpr int kAll = 1100;
  std::string all(1600, '\0');
  all.resize(static_cast<std::size_t>(
      std::snprintf(all.data(), all.size(), "%.*f", kAll, std::fabs(value))));
  const std::size_t point = all.find('.');
  const bool up = all[point + 1 + static_cast<std::size_t>(decimals)] >= '5';
  std::string kept =
      all.substr(0, point) + all.substr(point + 1, static_cast<std::size_t>(decimals));
  std::size_t at = kept.size();
  bool carry = up;
  while (carry && at > 0) {
    --at;
    carry = kept[at] == '9';
    kept[at] = carry ? '0' : static_cast<char>(kept[at] + 1);
  }
  if (carry) kept.insert(0, 1, '1');
  if (decimals > 0) kept.insert(kept.size() - static_cast<std::size_t>(decimals), 1, '.');
  return (std::signbit(value) ? "-" : "") + kept;
}

/// Every finite double alike, or numbers of the size that labels have, ties among them.
rc::Gen<double> any_finite() {
  return rc::gen::suchThat(
      rc::gen::map(rc::gen::arbitrary<std::uint64_t>(),
                   [](std::uint64_t bits) { return std::bit_cast<double>(bits); }),
      [](double value) { return std::isfinite(value); });
}

rc::Gen<double> any_measure() {
  return rc::gen::map(rc::gen::pair(rc::gen::inRange<std::int64_t>(-4'000'000'000, 4'000'000'000),
                                    rc::gen::inRange(0, 40)),
                      [](const std::pair<std::int64_t, int>& drawn) {
                        return std::ldexp(static_cast<double>(drawn.first), -drawn.second);
                      });
}

struct Row {
  double value;
  int decimals;
  const char* text;
};

TEST(FixedText, AnExactTieRoundsAwayFromZero) {
  constexpr Row kRows[] = {
      {2.5, 0, "3"},
      {-2.5, 0, "-3"},
      {0.5, 0, "1"},
      {1.5, 0, "2"},
      {0.125, 2, "0.13"},
      {-0.125, 2, "-0.13"},
      {12.25, 1, "12.3"},
      {12.75, 1, "12.8"},
      {9.5, 0, "10"},
      {99.5, 0, "100"},
      {-99.5, 0, "-100"},
      {9.96875, 4, "9.9688"},
      {999.9375, 3, "999.938"},
      {0.0625, 3, "0.063"},
      {4503599627370497.5, 0, "4503599627370498"},
  };
  for (const auto& [value, decimals, text] : kRows) EXPECT_EQ(fixed_text(value, decimals), text);
}

TEST(FixedText, WhatOnlyLooksLikeATieFollowsItsExactValue) {
  EXPECT_EQ(fixed_text(1.005, 2), "1.00");  // 1.00499999999999989...
  EXPECT_EQ(fixed_text(0.15, 1), "0.1");    // 0.1499999999999999944...
  EXPECT_EQ(fixed_text(0.35, 1), "0.3");    // 0.34999999999999997...
  EXPECT_EQ(fixed_text(0.45, 1), "0.5");    // 0.4500000000000000111...
  EXPECT_EQ(fixed_text(2.675, 2), "2.67");
}

TEST(FixedText, HasExactlyTheDecimalsAskedFor) {
  constexpr Row kRows[] = {
      {0.0, 0, "0"},
      {0.0, 3, "0.000"},
      {-0.0, 2, "-0.00"},
      {-0.001, 2, "-0.00"},
      {36.0, 2, "36.00"},
      {36.5, 0, "37"},
      {0.999, 2, "1.00"},
      {-0.25, 3, "-0.250"},
      {1e22, 1, "10000000000000000000000.0"},
      {0.1, 20, "0.10000000000000000555"},
  };
  for (const auto& [value, decimals, text] : kRows) EXPECT_EQ(fixed_text(value, decimals), text);
}

TEST(FixedText, TheLargestNumberWithTheMostDecimalsFits) {
  const std::string text = fixed_text(-Limits::max(), kMostDecimals);
  EXPECT_EQ(text.size(), 1u + 309u + 1u + 512u);
  EXPECT_EQ(text.substr(0, 9), "-17976931");
  EXPECT_EQ(text.substr(309, 5), "8.000");
}

TEST(FixedText, NegativeDecimalsMeanSixAsIfNoneWereGiven) {
  EXPECT_EQ(fixed_text(12.5, -1), "12.500000");
  EXPECT_EQ(fixed_text(12.5, -5), "12.500000");
  EXPECT_EQ(fixed_text(12.5, std::numeric_limits<int>::min()), "12.500000");
}

TEST(FixedText, FourHundredDecimalsAreAllThere) {
  const std::string text = fixed_text(0.1, 400);
  EXPECT_EQ(text, rounded_by_hand(0.1, 400));
  EXPECT_EQ(text.size(), 402u);
}

TEST(FixedText, MoreDecimalsThanTheRuntimeWroteAreCut) {
  EXPECT_EQ(fixed_text(1.0, 513).size(), 2u + 512u);
  EXPECT_EQ(fixed_text(1.0, std::numeric_limits<int>::max()).size(), 2u + 512u);
}

TEST(FixedText, TheSmallestNumbersRoundToZero) {
  EXPECT_EQ(fixed_text(Limits::denorm_min(), 3), "0.000");
  EXPECT_EQ(fixed_text(-Limits::denorm_min(), 0), "-0");
  EXPECT_EQ(fixed_text(0x1p-70, 19), "0.0000000000000000000");
  EXPECT_EQ(fixed_text(0x1p-64, 19), "0.0000000000000000001");  // 0.54e-19
}

TEST(FixedText, ANumberBelowItsLastDecimalRoundsToOneThereOrToNothing) {
  EXPECT_EQ(fixed_text(6e-21, 20), "0.00000000000000000001");
  EXPECT_EQ(fixed_text(4e-21, 20), "0.00000000000000000000");
  EXPECT_EQ(fixed_text(6e-22, 20), "0.00000000000000000000");
  EXPECT_EQ(fixed_text(0x1p-21, 20), "0.00000047683715820313");  // ...0312|5
  EXPECT_EQ(fixed_text(Limits::denorm_min(), 300), "0." + std::string(300, '0'));
}

TEST(FixedText, APointMayBeAskedForBehindWholeNumbers) {
  EXPECT_EQ(DecimalText::fixed(36.5, 0, true).view(), "37.");
  EXPECT_EQ(DecimalText::fixed(36.5, 1, true).view(), "36.5");
  EXPECT_EQ(DecimalText::fixed(1e300, 0, true).view().back(), '.');
}

TEST(FixedText, WhatIsNoNumberIsRoundedLikeDigits) {
  EXPECT_EQ(fixed_text(Limits::infinity(), 6), "1.#INF00");
  EXPECT_EQ(fixed_text(Limits::infinity(), 4), "1.#INF");
  EXPECT_EQ(fixed_text(Limits::infinity(), 3), "1.#IO");
  EXPECT_EQ(fixed_text(-Limits::infinity(), 2), "-1.#J");
  EXPECT_EQ(fixed_text(Limits::infinity(), 1), "1.$");
  EXPECT_EQ(fixed_text(Limits::infinity(), 0), "1");
  EXPECT_EQ(fixed_text(std::bit_cast<double>(0x7FF8'0000'0000'0000), 6), "1.#QNAN0");
  EXPECT_EQ(fixed_text(std::bit_cast<double>(0xFFF8'0000'0000'0000), 6), "-1.#IND00");
  EXPECT_EQ(fixed_text(std::bit_cast<double>(0x7FF0'0000'0000'0001), 5), "1.#SNAN");
}

RC_GTEST_PROP(FixedText, EveryNumberIsItsExactExpansionRounded, ()) {
  const double value = *any_finite();
  const int decimals = *rc::gen::inRange(0, 401);
  RC_ASSERT(fixed_text(value, decimals) == rounded_by_hand(value, decimals));
}

RC_GTEST_PROP(FixedText, EveryMeasureIsItsExactExpansionRounded, ()) {
  const double value = *any_measure();
  const int decimals = *rc::gen::inRange(0, 21);
  RC_ASSERT(fixed_text(value, decimals) == rounded_by_hand(value, decimals));
}

TEST(ScientificText, HasAnExponentOfAtLeastThreeDigits) {
  EXPECT_EQ(scientific_text(1.5, -1), "1.500000e+000");
  EXPECT_EQ(scientific_text(-1e-7, 2), "-1.00e-007");
  EXPECT_EQ(scientific_text(9.996, 2), "1.00e+001");
  EXPECT_EQ(scientific_text(2.5, 0), "3e+000");
  EXPECT_EQ(scientific_text(0.0, 1), "0.0e+000");
  EXPECT_EQ(scientific_text(1.5e123, 1), "1.5e+123");
  EXPECT_EQ(scientific_text(1.5e-298, 1), "1.5e-298");
  EXPECT_EQ(scientific_text(1.5e45, 1), "1.5e+045");
  EXPECT_EQ(DecimalText::scientific(2.0, 0, true).view(), "2.e+000");
  EXPECT_EQ(scientific_text(Limits::infinity(), 6), "1.#INF00e+000");
}

TEST(GeneralText, TakesTheShorterFormWithoutZerosAtTheEnd) {
  EXPECT_EQ(general_text(0.0, -1), "0");
  EXPECT_EQ(general_text(100000.0, 6), "100000");
  EXPECT_EQ(general_text(1234567.0, 6), "1.23457e+006");
  EXPECT_EQ(general_text(0.0001, 6), "0.0001");
  EXPECT_EQ(general_text(0.00001234, 6), "1.234e-005");
  EXPECT_EQ(general_text(9.999, 3), "10");
  EXPECT_EQ(general_text(0.5, 0), "0.5");
  EXPECT_EQ(general_text(150000.0, 1), "2e+005");
  EXPECT_EQ(general_text(999999.5, 6), "1e+006");
  EXPECT_EQ(DecimalText::general(1.0, 6, true).view(), "1.00000");
  EXPECT_EQ(DecimalText::general(100000.0, 6, true).view(), "100000.");
  EXPECT_EQ(general_text(-Limits::infinity(), 6), "-1.#INF");
}

TEST(AppendFixed, TakesTextOfEitherWidth) {
  std::string narrow = "L=";
  std::wstring wide = L"管长";
  append_fixed(narrow, 35.25, 1);
  append_fixed(wide, -0.25, 1);
  EXPECT_EQ(narrow, "L=35.3");
  EXPECT_EQ(wide, L"管长-0.3");
}

}  // namespace
}  // namespace cad
