// The stake style of the project and the stake label layout of the installation.
#include <array>

#include "module/platform/pipe_library.h"
#include "module/platform/text.h"
#include "module/style/project_variable.h"
#include "module/style/style.h"

namespace {

using network::NumberRule;
using Field = network::SettingField<tdfPln_Stk_Set>;

constexpr wchar_t kStyleVariable[] = L"PLN_STK_SET";
constexpr wchar_t kDefaultStyle[] = L"1000 50 1 0 1 0 1 1 K 0 0 0 0 0";
constexpr int kModeToken = 10;

struct Row {
  const wchar_t* name;
  Field field;
  NumberRule rule = nullptr;
};

// In the order of the tokens.
using S = tdfPln_Stk_Set;
constexpr Row kRows[] = {
    {L"stake unit", &S::stakeUnit, network::number_rule},
    {L"stake step", &S::stakeStep, network::number_rule},
    {L"stake unit part of whole units only", &S::wholeOnlyPrefix, network::number_rule},
    {L"stake unit padded", &S::padUnit, network::number_rule},
    {L"stake metres padded", &S::padMetre, network::number_rule},
    {L"stake with trailing zeros", &S::keepZeros, network::number_rule},
    {L"stake without zero fraction", &S::omitZeroFraction, network::number_rule},
    {L"stake with letter", &S::letterFlag, network::number_rule},
    {L"stake letter", &S::letter},
    {L"stake with tail of a name", &S::nameTail, network::number_rule},
};

// The words behind the code of a layout, by mode.
using M = stuStakeDimMode;
struct ModeWords {
  double M::*fields[4];
};
constexpr ModeWords kModeWords[] = {
    {{&M::value1, &M::value2}},
    {{&M::value3, &M::value4, &M::value1, &M::value2}},
    {{&M::value3, &M::value4, &M::value1, &M::value2}},
    {{&M::value5, &M::value4, &M::value1, &M::value2}},
    {{&M::value5, &M::value4, &M::value1, &M::value2}},
    {{&M::value6}},
    {{&M::value6}},
};

}  // namespace

int CDimStyle::ReadZhSytle(tdfPln_Stk_Set& settings) const {
  std::array<wchar_t, 128> value{};
  const auto origin = dim::find_project_variable(kStyleVariable, value.data());
  CStringArray tokens;
  if (origin) {
    KTOLD::DisSpaceString(value.data(), tokens);
  } else {
    CGxData::Instance()->GetErr()->Set(L"读取桩号标风格失败!");
  }
  for (std::size_t i = 0; i < std::size(kRows); ++i) {
    const Row& row = kRows[i];
    const bool there = i < tokens.size();
    if (there) network::fill(settings, row.field, row.rule, tokens[i]);
    if (!network::settings_log()) continue;
    network::SettingOrigin place = origin.value_or(network::SettingOrigin{L"PLN_STK_SET", 0, {}});
    if (there) place.place += dim::format_text(L", token %d", static_cast<int>(i));
    network::note_setting(row.name, network::shown(settings, row.field), place, !there);
  }
  return origin ? 1 : 0;
}

void CDimStyle::ReadZhModeIndex(int& mode) const {
  CString value;
  if (!GetPrjVal(kStyleVariable, value)) value = kDefaultStyle;
  mode = _wtoi(KT::GetWordFromStr(value, kModeToken, L' ').c_str());
}

int CDimStyle::ReadZhMode(stuStakeDimMode& mode) const {
  ReadZhModeIndex(mode.mode);
  CString value;
  if (!GetPrjVal(dim::format_text(L"PLN_STKDIM_M%d", mode.mode).c_str(), value)) return 0;
  if (mode.mode < 0 || mode.mode >= static_cast<int>(std::size(kModeWords))) return 0;
  mode.code = _wtoi(KT::GetWordFromStr(value, 0, L' ').c_str());
  int word = 1;
  for (double M::*const field : kModeWords[mode.mode].fields) {
    if (!field) break;
    mode.*field = _wtof(KT::GetWordFromStr(value, word++, L' ').c_str());
  }
  return 1;
}
