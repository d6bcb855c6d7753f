#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "network/strings.h"

/// Where settings come from, for those who ask why a label looks as it does. Readers tell the log
/// what they found; nobody listens unless a SettingsLogScope lives, and then a reader pays one
/// test:
///     if (SettingsLog* log = settings_log()) log->add(...);
///
///     SettingsLog log;
///     SettingsLogScope scope(log);
///     CDimStyle::Instance().UpdateData();
///     for (const SettingNote& note : log.settings) ...
namespace network {

/// The place of a setting inside its file.
struct SettingOrigin {
  CString file;   ///< path as found, or as looked for when the file is missing; "useri4" and other
                  ///< sources that are no files by their names
  int line = 0;   ///< from 1; 0 when the setting has no line
  CString place;  ///< "token 2", "[GxBz] LocalStyle", "record 4"; may be empty
};

struct SettingNote {
  CString name;   ///< what people call it: "length decimals", "LocalStyle"
  CString value;  ///< as text
  SettingOrigin origin;
  bool is_default = false;  ///< not in the file: the built-in value stands in
};

/// A settings file that was asked for.
struct FileNote {
  CString path;
  CString encoding;  ///< "UTF-8", "code page 936", "records"; empty when not read
  CString problem;   ///< why it was not read: "no such file"; empty when it was
};

class SettingsLog {
 public:
  void add(SettingNote note) { settings.push_back(std::move(note)); }
  /// A file read several times is listed once.
  void add(FileNote note);

  std::vector<SettingNote> settings;  ///< in the order of reading; the last of a name is in force
  std::vector<FileNote> files;
};

/// The log being kept; null when nobody listens.
SettingsLog* settings_log();

/// Keeps a log while it lives. An inner scope takes over from an outer one.
class SettingsLogScope {
 public:
  explicit SettingsLogScope(SettingsLog& log);
  ~SettingsLogScope();
  SettingsLogScope(const SettingsLogScope&) = delete;
  SettingsLogScope& operator=(const SettingsLogScope&) = delete;

 private:
  SettingsLog* outer_;
};

}  // namespace network
