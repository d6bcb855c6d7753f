#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "host/app/console.h"
#include "module/style/style.h"
#include "network/variable_file.h"
#include "tests/network/settings_folder.h"

/// A style of its own over an installation and a project of its own, both empty at the start. What
/// is printed on the command line is kept.
class WithStyle : public WithSettingsFolders {
 protected:
  WithStyle() {
    cad::set_console([this](std::string_view text) { printed += text; });
    CGxData::Instance()->GetErr()->Set(L"");
  }
  ~WithStyle() override { cad::set_console({}); }

  void given_plan_labels(const std::string& lines) {
    given_file("install/Is/gdcdpdbz.dat", lines);
    style.UpdateData();
  }
  void given_profile_labels(const std::string& lines) {
    given_file("install/User/zdm_bzsz.dat", lines);
    style.UpdateData();
  }
  void given_diameter_styles(const std::string& lines) {
    given_file("install/Is/gdbzfsk.dat", lines);
    style.UpdateData();
  }
  void given_elevations(const std::string& lines) {
    given_file("install/Is/bgbzfsk.dat", lines);
    style.UpdateData();
  }
  /// Keys of the section GxBz of the style ini file.
  void given_style_keys(const std::string& lines) {
    given_file("install/sys/DimStyle.ini", "[GxBz]\n" + lines);
    style.UpdateData();
  }
  /// The pipe library's store, whole.
  void given_library_settings(const std::string& ini) {
    given_file("install/sys/QrmvPz.ini", ini);
    style.UpdateData();
  }
  void given_stake_style(std::wstring_view tokens) {
    given_file("project/ktsysvar.ksv", *network::variable_record(L"PLN_STK_SET", tokens));
    style.UpdateData();
  }
  void given_installation_variables(const std::string& records) {
    given_file("install/using/ktsysvar.ksv", records);
  }
  static CString error_text() { return CGxData::Instance()->GetErr()->text(); }

  CDimStyle style;
  std::string printed;
};

using Texts = std::vector<CString>;
inline constexpr double kNoValue = -999999999.0;
