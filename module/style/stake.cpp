// Labels of stakes (chainages).
#include <algorithm>
#include <charconv>
#include <cmath>

#include "module/style/label_text.h"
#include "module/style/style.h"

namespace {

using dim::LabelText;

constexpr std::size_t kNameHead = 5;  // characters of a caller's text in front of its tail

/// The number that a printed number reads back as.
double read_back(const dim::DecimalText& printed) {
  const std::string_view text = printed.view();
  double value = 0.0;
  std::from_chars(text.data(), text.data() + text.size(), value);
  return value;
}

/// A stake taken apart: unit number and metres, all without sign but `fraction`.
struct StakeParts {
  double stake;
  int unit;
  int metres;
  double beyond;    ///< metres beyond the whole unit, signed
  double fraction;  ///< of them, signed
};

StakeParts parts_of(double stake, int unit) {
  StakeParts parts{};
  parts.stake = read_back(dim::DecimalText::fixed(stake, 4));
  parts.beyond = std::fmod(parts.stake, unit);
  parts.fraction = parts.beyond - std::trunc(parts.beyond);
  parts.unit = dim::whole_part(std::fabs((parts.stake - parts.beyond) / unit));
  parts.metres = dim::whole_part(std::fabs(parts.beyond));
  return parts;
}

int next_metre(const StakeParts& parts) {
  return dim::whole_part(std::trunc(std::fabs(parts.beyond)) + 1.0);
}

/// The fraction from its point on; empty without decimals. Rounding up may take it to the next
/// metre.
void round_fraction(StakeParts& parts, int decimals, LabelText& fraction) {
  if (decimals <= 0) {
    // Kept: the fraction with its sign is compared, so a stake below zero never rounds away.
    // Test: StakeLabel.WithoutDecimalsANegativeStakeNeverRoundsUp
    if (parts.fraction >= 0.5) parts.metres = next_metre(parts);
    return;
  }
  double size = std::fabs(parts.fraction);
  if (read_back(dim::DecimalText::fixed(size, decimals)) >= 1.0) {
    parts.metres = next_metre(parts);
    size = std::fabs(parts.fraction - 1.0);
  }
  const dim::DecimalText text = dim::DecimalText::fixed(size, decimals);
  const std::string_view printed = text.view();
  fraction.ascii(printed.substr(std::min(printed.find('.'), printed.size())));
}

/// A number with zeros in front up to the width; `padded` 0: as it is.
void append_padded(LabelText& label, int number, std::size_t width, bool padded) {
  LabelText digits;
  digits.whole(number);
  if (padded)
    for (std::size_t size = digits.view().size(); size < width; ++size) label.text(L"0");
  label.text(digits.view());
}

}  // namespace

CString CDimStyle::GetZhStr(double stake, const CString& text) const {
  if (Gx::IsInValidData(stake)) return {};
  const tdfPln_Stk_Set& s = m_stakeStyle;
  const bool hectometres = s.stakeUnit == 100;
  StakeParts parts = parts_of(stake, s.stakeUnit);
  LabelText fraction;
  round_fraction(parts, m_userI4, fraction);
  if (s.keepZeros == 0) {
    // Kept: nothing at all becomes ".00", while ".000" becomes the point alone.
    // Test: StakeLabel.WithoutDecimalsTheFractionIsTwoZeros
    fraction.drop_zeros();
    if (fraction.view().empty()) fraction.text(L".00");
  }

  LabelText label;
  const bool whole = KT::ISZERO(parts.beyond) && KT::ISZERO(parts.fraction);
  if (s.wholeOnlyPrefix != 1 || whole) {
    if (s.nameTail == 1)
      label.text(std::wstring_view(text).substr(std::min(kNameHead, text.size())));
    if (s.letterFlag == 1) label.text(label.view().empty() ? L"" : L" ").text(s.letter);
    append_padded(label, parts.unit, hectometres ? 2 : 1, s.padUnit == 1);
  }
  label.text(parts.stake >= 0.0 ? L"+" : L"-");
  append_padded(label, parts.metres, hectometres ? 2 : 3, s.padMetre == 1);
  const bool omitted = s.omitZeroFraction == 1 && KT::ISZERO(parts.fraction);
  if (!omitted) label.text(fraction.view());
  return label.str();
}
