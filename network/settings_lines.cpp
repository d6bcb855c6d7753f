#include "network/settings_lines.h"

#include <optional>

#include "host/base/codepage.h"
#include "network/gx_data.h"
#include "network/places.h"
#include "network/text_file.h"

namespace network {

CString in_install_dir(const wchar_t* file) {
  CString path;
  KT::GetInstallDir(path);  // without one the path stays relative
  return path + file;
}

void note_setting(const CString& name, const CString& value, const SettingOrigin& origin,
                  bool is_default) {
  if (SettingsLog* log = settings_log()) log->add(SettingNote{name, value, origin, is_default});
}

SettingsLines::SettingsLines(const wchar_t* below_install_dir)
    : path_(in_install_dir(below_install_dir)) {
  const std::optional<std::string> found = find_settings_file(path_);
  exists_ = found.has_value();
  shown_path_ = found ? cad::from_utf8(*found) : path_;
  // Asked for in any case: a file that is not there is told to the settings log, too.
  const bool read = KT::ReadTextFileToStringArray(path_, lines_, true, &numbers_, nullptr) == 0;
  if (!read) lines_.clear();
}

bool SettingsLines::read_or_complain(const wchar_t* missing, const wchar_t* unreadable) const {
  if (lines_.empty()) CGxData::Instance()->GetErr()->Set(exists_ ? unreadable : missing, path_);
  return !lines_.empty();
}

void SettingsLines::note(const CString& name, const CString& value, std::size_t line,
                         const CString& place) const {
  note_setting(name, value, {shown_path_, numbers_[line], place});
}

void SettingsLines::note_default(const CString& name, const CString& value) const {
  note_setting(name, value, {shown_path_, 0, {}}, true);
}

}  // namespace network
