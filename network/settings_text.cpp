#include "network/settings_text.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

#include "host/base/codepage.h"

namespace network {
namespace {

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view kUtf16Mark = "\xFF\xFE";

/// Length of the UTF-8 character that begins here, 0 when none does. `cut`: the end of the text
/// comes before the end of the character.
std::size_t utf8_length(std::string_view text, bool& cut) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned char lead = byte(0);
  const std::size_t length = lead < 0x80                    ? 1
                             : lead >= 0xC2 && lead < 0xE0  ? 2
                             : lead >= 0xE0 && lead < 0xF0  ? 3
                             : lead >= 0xF0 && lead <= 0xF4 ? 4
                                                            : 0;
  for (std::size_t i = 1; i < length; ++i) {
    if (i == text.size()) {
      cut = true;
      return 0;
    }
    if ((byte(i) & 0xC0) != 0x80) return 0;
  }
  if (length < 3) return length;
  // No overlong form, no surrogate, nothing beyond U+10FFFF.
  const unsigned char second = byte(1);
  if ((lead == 0xE0 && second < 0xA0) || (lead == 0xED && second > 0x9F) ||
      (lead == 0xF0 && second < 0x90) || (lead == 0xF4 && second > 0x8F)) {
    return 0;
  }
  return length;
}

/// Latin-1 or Greek, where the signs of labels are: U+0080-U+00FF, U+0370-U+03FF.
bool is_label_sign(std::string_view two_bytes) {
  const auto lead = static_cast<unsigned char>(two_bytes[0]);
  const auto trail = static_cast<unsigned char>(two_bytes[1]);
  return lead <= 0xC3 || (lead == 0xCD && trail >= 0xB0) || lead == 0xCE || lead == 0xCF;
}

bool looks_like_utf8(std::string_view bytes) {
  bool has_long = false, has_foreign = false, cut = false;
  while (!bytes.empty()) {
    const std::size_t length = utf8_length(bytes, cut);
    if (length == 0) break;
    has_long |= length > 2;
    has_foreign |= length == 2 && !is_label_sign(bytes);
    bytes.remove_prefix(length);
  }
  if (!bytes.empty() && !(cut && has_long)) return false;
  return has_long || !has_foreign;
}

bool is_ascii(std::string_view bytes) {
  return std::all_of(bytes.begin(), bytes.end(), [](char c) { return (c & 0x80) == 0; });
}

std::wstring decode_utf16(std::string_view bytes) {
  std::wstring text;
  text.reserve(bytes.size() / 2);
  const auto unit = [&](std::size_t i) {
    return static_cast<char32_t>(static_cast<unsigned char>(bytes[i]) |
                                 static_cast<unsigned char>(bytes[i + 1]) << 8);
  };
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
    char32_t c = unit(i);
    if (c >= 0xD800 && c < 0xDC00 && i + 3 < bytes.size()) {
      const char32_t low = unit(i + 2);
      if (low >= 0xDC00 && low < 0xE000) {
        c = 0x10000 + ((c - 0xD800) << 10) + (low - 0xDC00);
        i += 2;
      }
    }
    text += static_cast<wchar_t>(c);
  }
  return text;
}

void append_unit(std::string& out, char32_t unit) {
  out += static_cast<char>(unit & 0xFF);
  out += static_cast<char>(unit >> 8);
}

std::string encode_utf16(std::wstring_view text) {
  std::string bytes;
  for (const wchar_t wide : text) {
    const auto c = static_cast<char32_t>(wide);
    if (c < 0x10000) {
      append_unit(bytes, c);
    } else if (c < 0x110000) {
      append_unit(bytes, 0xD800 + ((c - 0x10000) >> 10));
      append_unit(bytes, 0xDC00 + ((c - 0x10000) & 0x3FF));
    } else {
      append_unit(bytes, U'?');
    }
  }
  return bytes;
}

}  // namespace

const wchar_t* encoding_name(TextEncoding encoding) {
  switch (encoding) {
    case TextEncoding::kUtf8:
      return L"UTF-8";
    case TextEncoding::kUtf8WithMark:
      return L"UTF-8 with a mark";
    case TextEncoding::kUtf16WithMark:
      return L"UTF-16";
    case TextEncoding::kAnsi936:
      break;
  }
  return L"code page 936";
}

TextEncoding detect_encoding(std::string_view bytes) {
  if (bytes.starts_with(kUtf8Mark)) return TextEncoding::kUtf8WithMark;
  if (bytes.starts_with(kUtf16Mark)) return TextEncoding::kUtf16WithMark;
  // Plain ASCII reads the same either way; what is added to it later is written in the code page.
  return !is_ascii(bytes) && looks_like_utf8(bytes) ? TextEncoding::kUtf8 : TextEncoding::kAnsi936;
}

std::size_t mark_size(TextEncoding encoding) {
  if (encoding == TextEncoding::kUtf8WithMark) return kUtf8Mark.size();
  return encoding == TextEncoding::kUtf16WithMark ? kUtf16Mark.size() : 0;
}

std::wstring decode_settings(std::string_view bytes, TextEncoding encoding) {
  switch (encoding) {
    case TextEncoding::kUtf16WithMark:
      return decode_utf16(bytes);
    case TextEncoding::kAnsi936:
      // Without a Chinese character there is no need to build the page's table, which takes longer
      // than reading all settings.
      if (is_ascii(bytes)) return std::wstring(bytes.begin(), bytes.end());
      return cad::decode(bytes, cad::CodePage::k936);
    default:
      return cad::decode(bytes, cad::CodePage::kUtf8);
  }
}

std::string encode_settings(std::wstring_view text, TextEncoding encoding) {
  if (encoding == TextEncoding::kUtf16WithMark) return encode_utf16(text);
  std::string bytes;
  const bool ansi = encoding == TextEncoding::kAnsi936;
  cad::encode_append(text, ansi ? cad::CodePage::k936 : cad::CodePage::kUtf8, bytes);
  return bytes;
}

cad::Result<std::string> read_settings_file(const std::string& path) {
  struct stat facts;
  // Asked before opening: a pipe would keep us waiting for its other end.
  if (::stat(path.c_str(), &facts) != 0) return cad::fail(path, std::strerror(errno));
  if (!S_ISREG(facts.st_mode)) return cad::fail(path, "is not a regular file");
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"),
                                                             std::fclose);
  if (!file) return cad::fail(path, std::strerror(errno));
  if (static_cast<std::size_t>(facts.st_size) > kLargestSettingsFile)
    return cad::fail(path, "is too large for a settings file (more than 16 MB)");
  std::string bytes(static_cast<std::size_t>(facts.st_size), '\0');
  bytes.resize(std::fread(bytes.data(), 1, bytes.size(), file.get()));
  if (std::ferror(file.get())) return cad::fail(path, "cannot be read");
  return bytes;
}

}  // namespace network
