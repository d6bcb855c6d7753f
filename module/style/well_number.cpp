// Labels of wells.
#include "module/style/label_text.h"
#include "module/style/style.h"

namespace {

CString well_label(bool is_hydrant, const CString& prefix, const CString& number,
                   const tdfGdcdpdbz& s) {
  if (number.empty()) return {};
  dim::LabelText label;
  if (s.hydrant == 0 && is_hydrant) {
    label.text(s.hydrantPrefix);
  } else {
    label.text(prefix);
    if (s.wellNumberUpperCase != 0) label.to_upper_case();
  }
  return label.text(s.wellNumberSeparator).text(number).str();
}

}  // namespace

CString CDimStyle::GetJdStr(const CGxJd* well, const CString& prefix, const CString& number) const {
  return well_label(well && well->IsKindOf(CGxXhs::GetThisClass()), prefix, number, m_pipeLabels);
}

CString CDimStyle::GetJdStr(CKtGxWellType1* well, const CString& prefix,
                            const CString& number) const {
  return well_label(well && well->IsKindOf(CKtGxGsWellXHS::GetThisClass()), prefix, number,
                    m_pipeLabels);
}

CString CDimStyle::GetJdStr(const AcDbObjectId& well) const {
  return DimUtility::getJdbhDimStr(well);
}
