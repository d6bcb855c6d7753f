// user\zdm_bzsz.dat: labels in the profile (longitudinal section).
#include <algorithm>
#include <vector>

#include "network/label_files.h"
#include "network/list_text.h"

namespace {

using DimUtility::tdfZdm_bzsz;
using network::NumberRule;
using Field = network::SettingField<tdfZdm_bzsz>;

constexpr std::size_t kLinesRead = 6;

int zero_if_by_material(const CString& text, int) { return text == L"随管材" ? 0 : 1; }
int one_if_it_has_y(const CString& text, int) { return text.find(L'Y') == text.npos ? 0 : 1; }

struct Row {
  const wchar_t* name;
  const wchar_t* section;
  const wchar_t* key;
  Field field;
  NumberRule rule = nullptr;
};

using S = tdfZdm_bzsz;
constexpr Row kRows[] = {
    {L"profile elevation decimals", L"标高", L"小数位", &S::elevationDecimals,
     network::number_rule},
    {L"profile depth decimals", L"埋深及覆土", L"小数位", &S::depthDecimals, network::number_rule},
    {L"profile diameter prefix", L"管径", L"前缀", &S::diameterPrefix},
    {L"profile diameter suffix", L"管径", L"后缀", &S::diameterSuffix},
    {L"profile diameter notation", L"管径", L"表示法", &S::diameterNotation, zero_if_by_material},
    {L"profile whole stakes", L"整桩号标注", L"标注", &S::wholeStake, network::zero_if_n},
    {L"profile whole stake interval", L"整桩号标注", L"整桩号", &S::wholeStakeInterval},
    {L"profile nodes above the section", L"断面上方节点标注", L"标注", &S::nodesAboveSection,
     one_if_it_has_y},
    {L"profile drops", L"跌水标注", L"标注", &S::dropLabels, network::zero_if_n},
};

/// Fills the field that section and key name, if there is one; answers its row.
const Row* fill_pair(S& settings, const CString& section, const CString& key,
                     const CString& value) {
  const auto row = std::find_if(std::begin(kRows), std::end(kRows),
                                [&](const Row& r) { return section == r.section && key == r.key; });
  if (row == std::end(kRows)) return nullptr;
  network::fill(settings, row->field, row->rule, value);
  return row;
}

}  // namespace

void network::fill_profile_labels(const SettingsLines& file, tdfZdm_bzsz& settings) {
  std::vector<const Row*> filled;
  for (std::size_t line = 0; line < std::min(file.size(), kLinesRead); ++line) {
    const CString section = KT::Nth(file[line], 0, true);
    const CString pairs = KT::Nth(file[line], 1, true);
    if (section.empty() || pairs.empty()) continue;
    network::ListReader list(pairs, true);
    for (CString pair = list.next(); !pair.empty(); pair = list.next()) {
      const CString key = KT::Nth(pair, 0, true);
      const CString value = KT::Nth(pair, 1, true);
      if (key.empty() || value.empty()) continue;
      const Row* const row = fill_pair(settings, section, key, value);
      if (!row) continue;
      filled.push_back(row);
      file.note(row->name, network::shown(settings, row->field), line, section + L" " + key);
    }
  }
  for (const Row& row : kRows)
    if (std::find(filled.begin(), filled.end(), &row) == filled.end())
      file.note_default(row.name, network::shown(settings, row.field));
}
