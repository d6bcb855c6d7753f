#pragma once

#include <cstdint>
#include <cstdio>
#include <functional>
#include <map>
#include <string>
#include <string_view>

namespace bench {

/// How a drawing is spelled: its version and, before AC1021, the code page of its texts.
struct Format {
  std::string acad_version = "AC1027";
  std::string code_page = "ANSI_936";
  bool crlf = true;
};

/// Writes group codes and values to a file the way CAD programs spell them: codes right-aligned to
/// three places, 16-bit integers to six and 32-bit ones to nine. Deliberately shares nothing with
/// the host's own writer: what it writes is input for measuring that host.
class DxfOutput {
 public:
  /// The file stays the caller's. Texts given to this class are UTF-8; before AC1021 the drawing
  /// holds them in its code page, with \U+XXXX for what that lacks.
  DxfOutput(std::FILE* file, const Format& format);

  /// Throws std::runtime_error when it needs a code page that the system does not know.
  void text(int code, std::string_view value);
  void integer(int code, std::int64_t value);
  void real(int code, double value);
  void handle(int code, std::uint64_t value);
  void point(int code, double x, double y);

  /// Ends the output. False when anything could not be written; errno tells why.
  bool finish();

  const Format& format() const { return format_; }

 private:
  void code_line(int code);
  void value_line(std::string_view value);
  void flush();
  const std::string& encoded(std::string_view utf8);

  std::FILE* file_;
  Format format_;
  std::string_view line_end_;
  std::string buffer_;
  std::map<std::string, std::string, std::less<>> encoded_;  ///< few and often: layer names
  bool failed_ = false;
};

/// UTF-8 as the drawing holds it: unchanged from AC1021 on, before that in the code page, with
/// \U+XXXX for what the page lacks. Throws std::runtime_error for a code page the system does not
/// know.
std::string encode_text(std::string_view utf8, const Format& format);

}  // namespace bench
