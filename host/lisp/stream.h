#pragma once

#include <cstddef>
#include <fstream>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace cad::lisp {

enum class StreamMode { kRead, kWrite, kAppend };

/// A text file a program opened. Reading takes UTF-8, or code page 936 when the bytes are not
/// UTF-8, and any line end; writing gives UTF-8.
class Stream {
 public:
  /// Null when the file cannot be opened that way.
  static std::unique_ptr<Stream> open(const std::string& path, StreamMode mode);

  StreamMode mode() const { return mode_; }
  std::optional<wchar_t> read_char();
  /// Without the line end; empty at the end of the file.
  std::optional<std::wstring> read_line();
  void write(std::wstring_view text);
  /// False when something written did not reach the file.
  bool close();

 private:
  explicit Stream(StreamMode mode) : mode_(mode) {}

  StreamMode mode_;
  std::wstring text_;  // all of a file being read
  std::size_t at_ = 0;
  std::ofstream out_;
};

/// The text of a source or data file: UTF-8 with or without a mark, code page 936 when it is not
/// UTF-8 (the second byte of a character may look like "\", so this comes before reading tokens).
std::wstring decode_file(std::string_view bytes);

/// Every CR LF and every CR alone becomes LF.
std::wstring with_plain_line_ends(std::wstring text);

}  // namespace cad::lisp
