#include "module/manager/precision.h"

#include "module/platform/text.h"
#include "module/style/label_text.h"

namespace dim {
namespace {

using DimUtility::tagPcBzSz;
using Settings = PrecisionSettings;

constexpr int kUnset = -1;

struct Decimals {
  int count = kUnset;
  bool drop_zeros = false;
};

int calculation(const Settings& settings, tagPcBzSz::Position position) {
  return settings.calculation->decimals[position];
}

Decimals of_length(std::wstring_view name, const Settings& settings) {
  const bool zeros = settings.plan->lengthTrailingZero != 0;
  const int own = calculation(settings, tagPcBzSz::kPipeLength);
  if (own != kUnset && equal_no_case(name, L"pipe_len_pc")) return {own, zeros};
  return {settings.plan->lengthDecimals, zeros};
}

Decimals of_slope(std::wstring_view, const Settings& settings) {
  return {settings.plan->slopeDecimals, settings.plan->slopeTrailingZero != 0};
}

Decimals of_pipe_elevation(std::wstring_view, const Settings& settings) {
  return {settings.profile->elevationDecimals};
}

Decimals of_well_elevation(std::wstring_view name, const Settings& settings) {
  const int own = calculation(settings, tagPcBzSz::kFreeHeadElevation);
  if (own != kUnset && equal_no_case(name, L"well_bgzyst")) return {own};
  return {settings.profile->elevationDecimals};
}

template <tagPcBzSz::Position kPosition, int kOtherwise>
Decimals of_calculation(std::wstring_view, const Settings& settings) {
  const int set = calculation(settings, kPosition);
  return {set == kUnset ? kOtherwise : set};
}

// Kept: whether the speed is set is asked of the flow; drawings of both are rounded alike.
// Test: Precision.WhetherTheSpeedIsSetIsAskedOfTheFlow
Decimals of_speed(std::wstring_view, const Settings& settings) {
  if (calculation(settings, tagPcBzSz::kPipeFlow) == kUnset) return {2};
  return {calculation(settings, tagPcBzSz::kPipeSpeed)};
}

Decimals of_diameter(std::wstring_view, const Settings&) { return {0}; }

enum class Match {
  kBegins,   // letter case counts
  kEquals,   // letter case ignored
  kContains  // letter case counts
};

struct Rule {
  Match match;
  std::wstring_view text;
  Decimals (*decimals)(std::wstring_view name, const Settings&);
};

// The first row that fits decides: "pipe_idia" is a slope, not a diameter.
constexpr Rule kRules[] = {
    {Match::kBegins, L"pipe_len", of_length},
    {Match::kBegins, L"pipe_i", of_slope},
    {Match::kBegins, L"pipe_bg", of_pipe_elevation},
    {Match::kBegins, L"well_bg", of_well_elevation},
    {Match::kEquals, L"well_gdzy", of_calculation<tagPcBzSz::kFreeHead, 0>},
    {Match::kBegins, L"well_loss", of_calculation<tagPcBzSz::kLossFromSource, 0>},
    {Match::kEquals, L"pipe_head", of_calculation<tagPcBzSz::kHeadLoss, 2>},
    {Match::kEquals, L"pipe_headi", of_calculation<tagPcBzSz::kHeadLossPerKilometre, 3>},
    {Match::kEquals, L"pipe_flow", of_calculation<tagPcBzSz::kPipeFlow, 2>},
    {Match::kEquals, L"pipe_speed", of_speed},
    {Match::kContains, L"dia", of_diameter},
};

bool fits(const Rule& rule, std::wstring_view name) {
  switch (rule.match) {
    case Match::kBegins:
      return name.starts_with(rule.text);
    case Match::kEquals:
      return equal_no_case(name, rule.text);
    case Match::kContains:
      return name.find(rule.text) != name.npos;
  }
  return false;
}

Decimals decimals_of(std::wstring_view name, const Settings& settings) {
  for (const Rule& rule : kRules) {
    if (fits(rule, name)) return rule.decimals(name, settings);
  }
  return {};
}

}  // namespace

CString rounded_value(std::wstring_view name, const CString& value, const Settings& settings) {
  constexpr Decimals kOfNoRule{3, true};
  Decimals decimals = decimals_of(name, settings);
  if (decimals.count == kUnset) {
    const bool has_point = value.find(L'.') != value.npos;
    if (!has_point || !KT::IsNum(value)) return value;
    decimals = kOfNoRule;
  }
  LabelText label;
  label.fixed(_wtof(value.c_str()), decimals.count);
  if (decimals.drop_zeros) label.drop_zeros();
  return label.str();
}

}  // namespace dim
