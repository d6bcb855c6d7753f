#include "bench/generate/dxf_output.h"

#include <iconv.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <stdexcept>

namespace bench {
namespace {

constexpr std::size_t kFlushAt = std::size_t{1} << 20;

// Widths by group code, as CAD programs pad them; a code outside every row is not padded.
struct IntegerWidth {
  int first;
  int last;
  int width;
};
constexpr IntegerWidth kIntegerWidths[] = {
    {60, 79, 6}, {90, 99, 9}, {170, 179, 6}, {270, 289, 6}, {290, 299, 6}, {370, 389, 6},
};

int width_of(int code) {
  for (const auto& row : kIntegerWidths) {
    if (code >= row.first && code <= row.last) return row.width;
  }
  return 0;
}

template <class Number, class... Options>
std::string_view digits(std::array<char, 40>& space, Number value, Options... options) {
  const auto end = std::to_chars(space.data(), space.data() + space.size(), value, options...).ptr;
  return {space.data(), static_cast<std::size_t>(end - space.data())};
}

void append_padded(std::string& out, std::string_view value, std::size_t width) {
  if (value.size() < width) out.append(width - value.size(), ' ');
  out += value;
}

bool is_ascii(std::string_view text) {
  return std::all_of(text.begin(), text.end(),
                     [](char c) { return static_cast<signed char>(c) >= 0; });
}

class Converter {
 public:
  Converter(const std::string& to, const std::string& from)
      : handle_(iconv_open(to.c_str(), from.c_str())) {
    if (handle_ == iconv_t(-1)) throw std::runtime_error("no conversion to code page " + to);
  }
  ~Converter() { iconv_close(handle_); }
  Converter(const Converter&) = delete;
  Converter& operator=(const Converter&) = delete;

  /// Converts one character; empty when the target cannot hold it.
  std::string convert(std::string_view character) {
    std::array<char, 16> space;
    char* in = const_cast<char*>(character.data());
    std::size_t in_left = character.size();
    char* out = space.data();
    std::size_t out_left = space.size();
    if (iconv(handle_, &in, &in_left, &out, &out_left) != 0) return {};
    return {space.data(), space.size() - out_left};
  }

 private:
  iconv_t handle_;
};

std::size_t utf8_length(char lead) {
  const auto byte = static_cast<unsigned char>(lead);
  return byte < 0x80 ? 1 : byte < 0xE0 ? 2 : byte < 0xF0 ? 3 : 4;
}

// UTF-8 in the code page, with \U+XXXX for what that lacks. ANSI_936 is CP936 to the system's
// converter.
std::string in_code_page(std::string_view utf8, const std::string& code_page) {
  Converter to_page("CP" + code_page.substr(code_page.rfind('_') + 1), "UTF-8");
  Converter to_utf16("UTF-16BE", "UTF-8");
  std::string out;
  while (!utf8.empty()) {
    const auto character = utf8.substr(0, utf8_length(utf8.front()));
    utf8.remove_prefix(character.size());
    const std::string encoded = to_page.convert(character);
    if (!encoded.empty()) {
      out += encoded;
      continue;
    }
    const std::string units = to_utf16.convert(character);
    for (std::size_t i = 0; i + 1 < units.size(); i += 2) {
      std::array<char, 16> escape;
      const unsigned unit =
          static_cast<unsigned char>(units[i]) << 8 | static_cast<unsigned char>(units[i + 1]);
      std::snprintf(escape.data(), escape.size(), "\\U+%04X", unit);
      out += escape.data();
    }
  }
  return out;
}

}  // namespace

DxfOutput::DxfOutput(std::FILE* file, const Format& format)
    : file_(file), format_(format), line_end_(format.crlf ? "\r\n" : "\n") {
  buffer_.reserve(kFlushAt + 4096);
}

void DxfOutput::code_line(int code) {
  std::array<char, 40> space;
  append_padded(buffer_, digits(space, code), 3);
  buffer_ += line_end_;
}

void DxfOutput::value_line(std::string_view value) {
  buffer_ += value;
  buffer_ += line_end_;
  if (buffer_.size() >= kFlushAt) flush();
}

void DxfOutput::text(int code, std::string_view value) {
  code_line(code);
  value_line(format_.acad_version >= "AC1021" || is_ascii(value) ? value : encoded(value));
}

const std::string& DxfOutput::encoded(std::string_view utf8) {
  auto found = encoded_.find(utf8);
  if (found == encoded_.end()) {
    found = encoded_.emplace(utf8, in_code_page(utf8, format_.code_page)).first;
  }
  return found->second;
}

void DxfOutput::integer(int code, std::int64_t value) {
  code_line(code);
  std::array<char, 40> space;
  append_padded(buffer_, digits(space, value), static_cast<std::size_t>(width_of(code)));
  value_line({});
}

void DxfOutput::real(int code, double value) {
  code_line(code);
  std::array<char, 40> space;
  const auto number = digits(space, value, std::chars_format::fixed);
  buffer_ += number;
  value_line(number.find('.') == std::string_view::npos ? ".0" : "");
}

void DxfOutput::handle(int code, std::uint64_t value) {
  code_line(code);
  std::array<char, 40> space;
  const auto number = digits(space, value, 16);
  std::transform(number.begin(), number.end(), space.data(),
                 [](char c) { return c >= 'a' ? static_cast<char>(c - 'a' + 'A') : c; });
  value_line(number);
}

void DxfOutput::point(int code, double x, double y) {
  real(code, x);
  real(code + 10, y);
  real(code + 20, 0.0);
}

void DxfOutput::flush() {
  if (std::fwrite(buffer_.data(), 1, buffer_.size(), file_) != buffer_.size()) failed_ = true;
  buffer_.clear();
}

bool DxfOutput::finish() {
  flush();
  return std::fflush(file_) == 0 && !failed_;
}

}  // namespace bench
