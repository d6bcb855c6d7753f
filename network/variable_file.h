#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "host/base/result.h"
#include "network/settings_text.h"
#include "network/strings.h"

/// System-variable files ("ktsysvar.ksv"): records of 160 bytes without a header, 32 bytes of name
/// and 128 bytes of value, both ended by a null inside their field, in code page 936 (or UTF-8,
/// when all texts of the file are).
namespace network {

struct VariableRecord {
  static constexpr std::size_t kNameBytes = 32;
  static constexpr std::size_t kValueBytes = 128;
  static constexpr std::size_t kBytes = kNameBytes + kValueBytes;

  CString name;
  CString value;           ///< at most 127 characters
  bool name_ends = false;  ///< a name that fills its field has no end and matches nothing

  /// Letter case counts.
  bool is(std::wstring_view wanted) const { return name_ends && name == wanted; }
};

/// The records of a file, in order.
///     std::optional<VariableFile> file = VariableFile::open(path);
///     while (file) { std::optional<VariableRecord> record = file->next(); if (!record) break; ...
///     }
class VariableFile {
 public:
  /// Found as find_settings_file() finds it; empty when it cannot be read.
  static std::optional<VariableFile> open(const CString& path);
  explicit VariableFile(std::string bytes);

  /// Empty at the end. A record cut short by the end of the file counts, with nulls for what is
  /// missing.
  std::optional<VariableRecord> next();
  /// Number, from 1, of the record that next() gave last.
  int number() const { return number_; }
  const CString& path() const { return path_; }  ///< where it was found; empty for bytes

 private:
  std::string bytes_;
  TextEncoding encoding_ = TextEncoding::kAnsi936;
  std::size_t at_ = 0;
  int number_ = 0;
  CString path_;
};

/// The value of the first record of the name; empty when the file cannot be read or has none.
/// Recorded in the settings log, if one is kept.
std::optional<CString> find_variable(const CString& path, std::wstring_view name);

/// The 160 bytes of a record in code page 936. An error when a text does not fit its field or
/// cannot be written.
cad::Result<std::string> variable_record(std::wstring_view name, std::wstring_view value);

}  // namespace network
