// Labels of elevations and depths.
#include <algorithm>

#include "module/style/label_text.h"
#include "module/style/style.h"

namespace {

constexpr int kElevationDecimals = 3;  // of kinds that have no settings

/// The settings of the kind: its first row. Null when it has none.
const StuElevDimSet* find_type(const std::vector<StuElevDimSet>& rows, ElevType type) {
  const auto row = std::find_if(rows.begin(), rows.end(),
                                [type](const StuElevDimSet& r) { return r.type == type; });
  return row == rows.end() ? nullptr : &*row;
}

CString value_label(double value, int decimals) {
  if (Gx::IsInValidData(value)) return {};
  return dim::LabelText().fixed(value, decimals).str();
}

}  // namespace

CString CDimStyle::GetBgFhName(ElevType type) const {
  const StuElevDimSet* const row = find_type(m_elevations, type);
  return row ? row->symbolName : CString();
}

CString CDimStyle::GetBgStr(ElevType type, double elevation) const {
  const StuElevDimSet* const row = find_type(m_elevations, type);
  return value_label(elevation, row ? row->decimals : kElevationDecimals);
}

CString CDimStyle::GetBgStr(double elevation) const {
  return value_label(elevation, m_profileLabels.elevationDecimals);
}

CString CDimStyle::GetMsFtStr(double depthOrCover) const {
  return value_label(depthOrCover, m_profileLabels.depthDecimals);
}

CString CDimStyle::GetWellDepth(double depth, int cut) const {
  if (Gx::IsInValidData(depth)) return {};
  const bool millimetres = dim::equal_no_case(m_cnjUnit, L"mm");
  CString text = GetBgStr(USUAL, millimetres ? depth * 1000.0 : depth);
  // Printing has rounded already: 1234.500 becomes 1234.
  if (millimetres && cut != 0) text.resize(std::min(text.find(L'.'), text.size()));
  return text;
}
