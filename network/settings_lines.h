#pragma once

#include <cstddef>
#include <variant>
#include <vector>

#include "host/base/numbers.h"
#include "network/settings_log.h"
#include "network/strings.h"
#include "network/values.h"

namespace network {

/// The path of a file below the installation directory, relative when there is none.
CString in_install_dir(const wchar_t* file);

/// Tells the settings log, if one is kept, what a setting is and where it comes from.
void note_setting(const CString& name, const CString& value, const SettingOrigin& origin,
                  bool is_default = false);

/// A settings file of lines. Lines that are empty or comments are left out.
///     const SettingsLines file(L"Is\\gdbzfsk.dat");
///     if (!file.read_or_complain(kMissing, kUnreadable)) return 0;
/// Fields are told to the settings log, if one is kept.
class SettingsLines {
 public:
  explicit SettingsLines(const wchar_t* below_install_dir);

  /// Whether there are lines.
  bool read() const { return !lines_.empty(); }
  /// The same; otherwise the pipe library's error object gets the text for a file that is not there
  /// or one that cannot be read or holds nothing, "%s" in it being the path.
  bool read_or_complain(const wchar_t* missing, const wchar_t* unreadable) const;

  std::size_t size() const { return lines_.size(); }
  const CString& operator[](std::size_t line) const { return lines_[line]; }

  /// Tells where a setting comes from.
  void note(const CString& name, const CString& value, std::size_t line,
            const CString& place) const;
  /// Tells that the file does not say it.
  void note_default(const CString& name, const CString& value) const;

 private:
  CString path_;
  CString shown_path_;  // as found on disk
  bool exists_;
  CStringArray lines_;
  std::vector<int> numbers_;  // of the lines, in the file
};

/// A field of a settings structure; numbers are made of the file's text by a rule, which may look
/// at the value before.
template <class Settings>
using SettingField = std::variant<CString Settings::*, int Settings::*, double Settings::*>;
using NumberRule = int (*)(const CString& text, int before);

inline int number_rule(const CString& text, int) { return cad::wtoi(text); }
inline int one_if_one(const CString& text, int) { return text == L"1" ? 1 : 0; }
inline int zero_if_n(const CString& text, int) { return text == L"N" ? 0 : 1; }

template <class Settings>
void fill(Settings& settings, const SettingField<Settings>& field, NumberRule rule,
          const CString& text) {
  if (const auto* number = std::get_if<int Settings::*>(&field)) {
    settings.** number = rule(text, settings.**number);
  } else if (const auto* real = std::get_if<double Settings::*>(&field)) {
    settings.** real = cad::wtof(text);
  } else {
    settings.*std::get<CString Settings::*>(field) = text;
  }
}

/// The field as people read it.
template <class Settings>
CString shown(const Settings& settings, const SettingField<Settings>& field) {
  if (const auto* number = std::get_if<int Settings::*>(&field))
    return Gx::Format(L"%d", settings.**number);
  if (const auto* real = std::get_if<double Settings::*>(&field))
    return Gx::Format(L"%g", settings.**real);
  return settings.*std::get<CString Settings::*>(field);
}

}  // namespace network
