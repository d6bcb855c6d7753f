#include <cstdio>
#include <cstdlib>

#include "fuzz/settings/settings_readers.h"
#include "host/app/console.h"
#include "module/style/style.h"

namespace {

constexpr double kNoValue = -999999999.0;

void demand(bool holds, const char* law) {
  if (holds) return;
  std::fprintf(stderr, "broken: %s\n", law);
  std::abort();
}

/// All readers, with and without a log of what they find.
void read_all(std::string_view) {
  static CDimStyle style;
  cad::set_console([](std::string_view) {});
  {
    network::SettingsLog log;
    const network::SettingsLogScope scope(log);
    demand(style.UpdateData() == 1, "reading comes to an end");
    demand(!log.settings.empty() && !log.files.empty(), "every setting has an origin");
  }
  stuStakeDimMode layout;
  const int found = style.ReadZhMode(layout);
  demand(found == 0 || (layout.mode >= 0 && layout.mode <= 6), "a layout found is one of seven");
  wchar_t value[128];
  CDimStyle::KT_getSysVar(L"PLN_STK_SET", value);
  for (const double number : {0.0, -12.25, 1234.5, 999.9996, 1e300, kNoValue}) {
    style.GetPipeLongStr(number);
    demand(!style.GetPipePdStr(number).empty(), "slopes have labels");
    style.GetBgStr(GROUND, number);
    style.GetWellDepth(number, 1);
    style.GetMsFtStr(number);
    demand(style.GetZhStr(number, L"name of").empty() == (number == kNoValue),
           "stakes have labels");
    style.GetDnStr(number, 1, 0, kNoValue, kNoValue, kNoValue);
    CString second, third;
    style.GetCompositeDim(number, number, number, 1, second, third, 0, kNoValue, kNoValue, 0.0);
  }
  const CStringArray items = {L"管径", L"管长", L"坡度", L"管代号", L"公称直径"};
  CStringArray texts;
  style.GetCompositeDim_LY(300, 0.1, 35.2, 1, L"W", L"", L"1", false, items, texts, 0, kNoValue,
                           kNoValue, 0, false, 2);
  style.GetDnOrderDims(texts, L"J");
  style.SwBzTxtLineSpace();
  CString layer = style.SwBzGxLayer(L"W", L"1");
  std::vector<CString> pieces;
  CDimStyle::AnalyseSettingStr(layer, pieces);
}

constexpr SettingsReader kReaders[] = {{"style", read_all}};

}  // namespace

std::span<const SettingsReader> style_readers() { return kReaders; }
