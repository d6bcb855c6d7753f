#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "network/settings_log.h"
#include "network/settings_text.h"
#include "network/strings.h"

/// Private profile ("ini") files by Windows' rules:
///     [GxBz]
///     ; a comment
///     LocalStyle = "GB"
/// - Names of sections and keys match ignoring the case of A-Z. The first section of a name counts,
///   and in it the first key of a name.
/// - Blanks and tabs round section, key and value are dropped; then one pair of quotes of a kind
///   round a value ("..." or '...'), with what is inside left as it is.
/// - A line that begins with ";" is a comment; a ";" further on is text like any other. Text behind
///   "]", lines in front of the first section and lines without "=" mean nothing. "]" may be
///   missing.
/// Other than there, a path without folder means the current folder, and a file without mark may be
/// UTF-8 (see detect_encoding()).
namespace network {

class ProfileFile {
 public:
  struct Value {
    std::wstring text;
    int line;  ///< in the file, from 1
  };

  /// Every byte string is a profile file.
  explicit ProfileFile(std::string bytes);
  /// An empty file, as it would be created: code page 936.
  ProfileFile() : ProfileFile(std::string()) {}
  /// The file a path means, see find_settings_file(); an empty one when it is not there or cannot
  /// be read, which the settings log is told.
  static ProfileFile read(const CString& path);
  const CString& path() const { return path_; }  ///< where it was found, else what was asked for

  /// Empty when there is no such section or key; a key that holds nothing is there.
  std::optional<Value> find(std::wstring_view section, std::wstring_view key) const;
  std::vector<std::wstring> sections() const;  ///< every header's name, repeated ones too
  std::vector<std::wstring> keys(std::wstring_view section) const;

  /// Replaces the value, in place, or adds the key at the end of its section, and the section at
  /// the end of the file. The line is written as "key=value" CR LF, the value as given; every other
  /// byte of the file stays. (A line end inside the value ends the line, as there.)
  void set(std::wstring_view section, std::wstring_view key, std::wstring_view value);
  void remove_key(std::wstring_view section, std::wstring_view key);
  /// Removes the header and the keys; comments stay.
  void remove_section(std::wstring_view section);

  TextEncoding encoding() const { return encoding_; }
  std::string bytes() const;

 private:
  struct Line {
    enum class Kind { kOther, kSection, kKey } kind = Kind::kOther;
    bool blank = false;
    std::string bytes;   // with the line end
    std::wstring name;   // of the section or key, as spelled
    std::wstring value;  // of the key
  };
  Line parsed(std::string bytes) const;
  Line written(std::wstring_view text) const;
  std::size_t behind_header(
      std::wstring_view section) const;  // kNone when there is no such section
  std::size_t section_end(std::size_t begin) const;
  std::size_t key_line(std::wstring_view section, std::wstring_view key) const;
  void end_last_line();

  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);
  TextEncoding encoding_;
  CString path_;
  std::string mark_;
  std::vector<Line> lines_;
};

/// What the settings log is told of a key: where its value stands, or that `text`, the default,
/// stands in.
SettingNote note_of(const ProfileFile& file, std::wstring_view section, std::wstring_view key,
                    const std::optional<ProfileFile::Value>& value, std::wstring_view text);

}  // namespace network

/// Copies the value of a key into the buffer and returns its length. A file, section or key that is
/// missing gives the default, without its trailing blanks. A text too long for the buffer is cut to
/// size - 1 (a character beyond U+FFFF counts twice, as in the host's 16-bit text). A null key
/// gives the names of the section's keys, a null section the names of the sections, each with a
/// null behind it and one more at the end; cut, the result is size - 2.
unsigned GetPrivateProfileStringW(const wchar_t* section, const wchar_t* key,
                                  const wchar_t* default_text, wchar_t* buffer, unsigned size,
                                  const wchar_t* path);

/// Writes a value, see ProfileFile::set(); a null value removes the key, a null key the section.
/// The file is replaced as a whole; a new one is of code page 936. 0 when it cannot be written:
/// folders are not created.
int WritePrivateProfileStringW(const wchar_t* section, const wchar_t* key, const wchar_t* value,
                               const wchar_t* path);
