// Is\gdcdpdbz.dat: labels in plan.
#include <vector>

#include "network/label_files.h"
#include "network/list_text.h"

namespace {

using DimUtility::tdfGdcdpdbz;
using network::NumberRule;
using Field = network::SettingField<tdfGdcdpdbz>;

int zero_if_metres(const CString& text, int) { return text == L"m" ? 0 : 1; }
int one_if_vertical(const CString& text, int) { return text == L"V" ? 1 : 0; }

int slope_unit(const CString& text, int before) {
  constexpr const wchar_t* kUnits[] = {L"小数", L"%", L"‰"};
  for (int unit = 0; unit < 3; ++unit)
    if (text == kUnits[unit]) return unit;
  return before;
}

struct Row {
  const wchar_t* name;
  std::size_t line;
  int token;
  Field field;
  NumberRule rule = nullptr;
};

using S = tdfGdcdpdbz;
constexpr Row kRows[] = {
    {L"length prefix", 0, 0, &S::lengthPrefix},
    {L"length suffix", 0, 1, &S::lengthSuffix},
    {L"length decimals", 0, 2, &S::lengthDecimals, network::number_rule},
    {L"length unit", 0, 3, &S::lengthUnit, zero_if_metres},
    {L"length without trailing zeros", 0, 4, &S::lengthTrailingZero, network::one_if_one},
    {L"slope prefix", 1, 0, &S::slopePrefix},
    {L"slope suffix", 1, 1, &S::slopeSuffix},
    {L"slope decimals", 1, 2, &S::slopeDecimals, network::number_rule},
    {L"slope unit", 1, 3, &S::slopeUnit, slope_unit},
    {L"slope without trailing zeros", 1, 4, &S::slopeTrailingZero, network::one_if_one},
    {L"well number in capitals", 2, 0, &S::wellNumberUpperCase, network::one_if_one},
    {L"well number separator", 2, 1, &S::wellNumberSeparator},
    {L"well number like others for hydrants", 2, 2, &S::hydrant, network::one_if_one},
    {L"well number prefix of hydrants", 2, 3, &S::hydrantPrefix},
    {L"well number extra text", 2, 4, &S::wellNumberExtra},
    {L"composite on separate lines", 3, 0, &S::compositeSeparateLines, network::one_if_one},
    {L"composite separator", 3, 1, &S::compositeSeparator},
    {L"composite slot 1", 3, 2, &S::compositeSlot1},
    {L"composite slot 2", 3, 3, &S::compositeSlot2},
    {L"composite slot 3", 3, 4, &S::compositeSlot3},
};

// What follows the three slots.
constexpr Row kRowsBehind[] = {
    {L"composite vertical", 3, 5, &S::verticalMode, one_if_vertical},
};
constexpr Row kRowsBehindInLy[] = {
    {L"composite slot 4", 3, 5, &S::compositeSlot4},
    {L"composite slot 5", 3, 6, &S::compositeSlot5},
    {L"composite vertical", 3, 7, &S::verticalMode, one_if_vertical},
};

std::vector<Row> rows_of(LocalStyle style) {
  std::vector<Row> rows(std::begin(kRows), std::end(kRows));
  if (style == LY) {
    rows.insert(rows.end(), std::begin(kRowsBehindInLy), std::end(kRowsBehindInLy));
  } else {
    rows.insert(rows.end(), std::begin(kRowsBehind), std::end(kRowsBehind));
  }
  return rows;
}

}  // namespace

void network::fill_plan_labels(const SettingsLines& file, LocalStyle style, tdfGdcdpdbz& settings) {
  for (const Row& row : rows_of(style)) {
    if (row.line >= file.size()) {
      file.note_default(row.name, network::shown(settings, row.field));
      continue;
    }
    const CString line = L"(" + file[row.line] + L")";
    network::fill(settings, row.field, row.rule, KT::Nth(line, row.token, true));
    file.note(row.name, network::shown(settings, row.field), row.line,
              Gx::Format(L"token %d", row.token));
  }
}
