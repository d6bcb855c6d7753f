#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "host/base/fold.h"
#include "host/base/result.h"

namespace cad {

/// What programs keep from one run to the next with setcfg and vl-registry-write: named values
/// under keys ("HKEY_CURRENT_USER\Software\Tools", "AppData/Tools"). Names and keys have any letter
/// case,
/// "/" and "\" separate alike. The file is text, one section per key:
///     [HKEY_CURRENT_USER\Software\Tools]
///     @="the default value"
///     "Scale"=500
class SettingsStore {
 public:
  using Value = std::variant<std::wstring, std::int32_t>;

  /// The user's file: lisp-settings in $XDG_CONFIG_HOME/pipenote (~/.config/pipenote); empty when
  /// there is no home.
  static std::string user_file();
  /// A file that is not there is an empty store; one that cannot be understood is an error.
  static Result<SettingsStore> read(const std::string& path);
  /// Replaces the file as a whole, making its folder when need be.
  Status write(const std::string& path) const;

  bool has_key(std::wstring_view key) const;
  /// Null when there is none. The default value of a key has the empty name.
  const Value* find(std::wstring_view key, std::wstring_view name) const;
  void set_key(std::wstring_view key);
  void set(std::wstring_view key, std::wstring_view name, Value value);
  /// False when it is not there, or for a key when other keys lie below.
  bool remove_key(std::wstring_view key);
  bool remove(std::wstring_view key, std::wstring_view name);
  /// The next parts of the keys below, and the names of the values, in order.
  std::vector<std::wstring> keys_below(std::wstring_view key) const;
  std::vector<std::wstring> names(std::wstring_view key) const;

 private:
  using Section = std::map<std::wstring, Value, LessNoCase>;
  std::map<std::wstring, Section, LessNoCase> sections_;
};

}  // namespace cad
