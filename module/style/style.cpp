#include "module/style/style.h"

#include "module/platform/lisp.h"
#include "module/platform/resbuf.h"
#include "module/style/label_text.h"

CDimStyle CDimStyle::s_instance;

namespace {

constexpr wchar_t kSection[] = L"GxBz";
constexpr wchar_t kItemOrder[] = L"SwBzGd";
constexpr int kHintIcon = 3;
constexpr wchar_t kMissing[] = L"管线标注设置文件:%s不能找到";
constexpr wchar_t kUnreadable[] = L"读管线标注设置文件:%s失败!";

/// Shows what the reader put into the error object.
void report() { CGxData::Instance()->GetErr()->Report2Pp(kHintIcon, L""); }

void replace_all(CString& text, std::wstring_view old, const CString& by) {
  for (std::size_t at = text.find(old); at != text.npos; at = text.find(old, at + by.size()))
    text.replace(at, old.size(), by);
}

int read_user_integer_4() {
  int value = 3;
  const bool read = KT::GetCADVar(L"useri4", value);
  network::note_setting(L"useri4", dim::format_text(L"%d", value),
                        {L"useri4", 0, read ? L"variable of the drawing" : L""}, !read);
  return value;
}

}  // namespace

CDimStyle::CDimStyle()
    : m_lineSpace(Gx::kNoData), m_textSpace(Gx::kNoData), m_localStyle(kLocalStyleNotRead) {}

int CDimStyle::ReadGdcdpdbz(tdfGdcdpdbz& settings, LocalStyle style) {
  const network::SettingsLines file(network::kPlanLabelFile);
  const bool read = file.read_or_complain(kMissing, kUnreadable);
  network::fill_plan_labels(file, style, settings);
  return read ? 1 : 0;
}

int CDimStyle::ReadZdm_bzsz(tdfZdm_bzsz& settings) {
  const network::SettingsLines file(network::kProfileLabelFile);
  const bool read = file.read_or_complain(kMissing, kUnreadable);
  network::fill_profile_labels(file, settings);
  return read ? 1 : 0;
}

int CDimStyle::UpdateData() {
  CGxData::Instance()->Update();
  m_lineSpace = m_textSpace = Gx::kNoData;
  m_localStyle = kLocalStyleNotRead;
  const LocalStyle style = GetLocalStyle();
  if (ReadGdcdpdbz(m_pipeLabels, style) == 0) report();
  if (ReadZdm_bzsz(m_profileLabels) == 0) report();
  if (ReadGdbzfsk(m_diameterStyles) == 0) report();
  ReadZhSytle(m_stakeStyle);  // its text stays in the error object: a project need not set stakes
  if (ReadElevDimSet(m_elevations) == 0) report();
  m_userI4 = read_user_integer_4();
  m_gxBzPath = network::in_install_dir(L"User\\KtGxBz.ini");
  m_cnjUnit = Gx::getQrmvPz(L"Unit_Jcjsd", L"m", L"Swjcj");
  m_cnjHeight = _wtof(Gx::getQrmvPz(L"High-CnjDown", L"0.5", L"Swjcj").c_str());
  if (dim::equal_no_case(m_cnjUnit, L"mm")) m_cnjHeight /= 1000.0;
  m_rectangleFormat = Gx::getQrmvPz(L"GgDimPre", L"BxH", L"WDLDIM");
  m_itemOrders.clear();
  for (const wchar_t* prefix : {L"", L"J_", L"Y_", L"P_"}) {
    const CString key = CString(prefix) + kItemOrder;
    ReadDnDimSet(m_itemOrders[key], key);
  }
  return 1;
}

LocalStyle CDimStyle::GetLocalStyle() const {
  if (m_localStyle != kLocalStyleNotRead) return m_localStyle;
  m_localStyle = network::read_local_style();
  return m_localStyle;
}

double CDimStyle::SwBzTxtLineSpace() const {
  if (Gx::IsInValidData(m_lineSpace))
    m_lineSpace = _wtof(GetProfileStringW(kSection, L"SwBzTxtLineSpace", L"1.0").c_str());
  return m_lineSpace;
}

double CDimStyle::SwBzTxtTxtSpace() const {
  if (Gx::IsInValidData(m_textSpace))
    m_textSpace = _wtof(GetProfileStringW(kSection, L"SwBzTxtTxtSpace", L"2.0").c_str());
  return m_textSpace;
}

CString CDimStyle::layer(const wchar_t* key, const wchar_t* by_default, const CString& pipe_type,
                         const CString& pipe_code) const {
  CString name = GetProfileStringW(kSection, key, by_default);
  replace_all(name, L"{管类型}", pipe_type);
  replace_all(name, L"{管代号}", pipe_code);
  return name;
}

CString CDimStyle::SwBzJdBhLayer(const CString& pipeType, const CString& pipeCode) const {
  return layer(L"SwBzJdBhLayer", L"SwBz{管类型}{管代号}JdBh", pipeType, pipeCode);
}

CString CDimStyle::SwBzJgBzLayer(const CString& pipeType, const CString& pipeCode) const {
  return layer(L"SwBzJgBzLayer", L"SwBz{管类型}{管代号}JgBz", pipeType, pipeCode);
}

CString CDimStyle::SwBzGxLayer(const CString& pipeType, const CString& pipeCode) const {
  return layer(L"SwBzGxLayer", L"SwBz{管类型}{管代号}Pipe", pipeType, pipeCode);
}

int CDimStyle::GetIsRefStake() const {
  resbuf* value = nullptr;
  if (acedGetSym(L"global_isAccordZh", &value) != RTNORM) return 1;
  const dim::ResbufChain owner(value);
  // A symbol that is unset gives no buffer.
  return value && dim::equal_no_case(dim::buffer_text(*value), L"Z") ? 0 : 1;
}

void CDimStyle::GetFlag(bool& flag, CString& text) const {
  flag = m_pipeLabels.compositeSeparateLines != 0;
  text = m_pipeLabels.compositeSeparator;
}
