#include "host/dxf/scan.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cstring>
#include <optional>

#include "host/base/codepage.h"
#include "host/base/numbers.h"
#include "host/dxf/binary_layout.h"
#include "host/dxf/group_codes.h"
#include "host/dxf/line_splitter.h"
#include "host/dxf/record_builder.h"
#include "host/dxf/tag_reader.h"

namespace cad::dxf {
namespace {

/// By group code; as long as what four digits can say, so that the scan needs no bounds check.
constexpr std::array<std::uint8_t, 10000> make_interests() {
  std::array<std::uint8_t, 10000> interests{};
  interests[0] = RecordBuilder::kFrame;
  interests[2] = RecordBuilder::kName;
  interests[5] = interests[105] = RecordBuilder::kHandle;
  interests[100] = interests[102] = interests[330] = RecordBuilder::kOwner;
  return interests;
}

constexpr auto kInterests = make_interests();

std::uint8_t interest(int code) {
  if (code < 0 || code >= static_cast<int>(kInterests.size())) return RecordBuilder::kNever;
  return kInterests[static_cast<std::size_t>(code)];
}

/// The number on a code line, blanks round it allowed. The slow road for unusual lines.
std::optional<int> code_of_line(std::string_view line) {
  const auto blank = [](char c) { return c == ' ' || c == '\t' || c == '\r'; };
  while (!line.empty() && blank(line.front())) line.remove_prefix(1);
  while (!line.empty() && blank(line.back())) line.remove_suffix(1);
  int code = 0;
  const auto [end, error] = std::from_chars(line.data(), line.data() + line.size(), code);
  if (error != std::errc() || end != line.data() + line.size()) return std::nullopt;
  if (code < -32768 || code > 32767) return std::nullopt;
  return code;
}

/// The same for lines of one to four characters, blanks in front allowed: four bytes at once.
/// `end` points behind the last character; the four bytes before it must be readable.
/// Negative when the line is unusual.
int code_of_short_line(const char* end, std::size_t length) {
  static_assert(std::endian::native == std::endian::little);
  constexpr std::uint32_t kKeep[] = {0, 0xFF000000, 0xFFFF0000, 0xFFFFFF00, 0xFFFFFFFF};
  constexpr std::uint32_t kBlanks = 0x20202020;
  std::uint32_t text;
  std::memcpy(&text, end - 4, 4);
  text = (text & kKeep[length]) | (kBlanks & ~kKeep[length]);
  const std::uint32_t is_digit = text & 0x10101010;  // a blank lacks this bit
  // A blank behind a digit, and a line of blanks only, are unusual.
  if ((is_digit & ~(is_digit >> 8) & 0x00101010) || !(is_digit & 0x10000000)) return -1;
  const std::uint32_t digits = (text | 0x10101010) ^ 0x30303030;
  const std::uint32_t allowed = (is_digit >> 4) * 0x0F;  // a byte without the bit must be a blank
  if ((digits & ~allowed) || ((digits + 0x76767676) & 0x80808080)) return -1;
  const std::uint32_t pairs = (digits * 10 + (digits >> 8)) & 0x00FF00FF;
  return static_cast<int>((pairs & 0xFF) * 100 + (pairs >> 16));
}

std::string quoted(std::string_view line) {
  constexpr std::size_t kShown = 40;
  std::string text = "\"";
  for (const char c : line.substr(0, kShown)) {
    const bool printable = static_cast<unsigned char>(c) >= ' ' && c != 0x7F;
    text.push_back(printable ? c : '?');
  }
  return text + (line.size() > kShown ? "...\"" : "\"");
}

/// Walks ASCII bytes pair by pair of lines.
class AsciiScan {
 public:
  AsciiScan(std::string_view bytes, const Dialect& dialect, const std::string& name,
            RecordSink& sink)
      : bytes_(bytes), dialect_(dialect), name_(name), builder_(bytes, dialect, name, sink) {}

  Status run(std::uint64_t start) {
    LineSplitter lines(bytes_);
    std::uint64_t position = start;
    while (!builder_.ended()) {
      const std::size_t count = lines.collect(position);
      if (count < 2) return last_pair(position, count == 1 ? lines.end(0) : bytes_.size());
      std::uint8_t wants = builder_.wants();
      for (std::size_t i = 0; i + 1 < count; i += 2) {
        const std::uint64_t value_end = lines.end(i + 1);
        const int code = short_code(position, lines.end(i));
        if (code < 0 || (kInterests[static_cast<std::size_t>(code)] & wants) != 0) {
          Status status = pair(position, lines.end(i), value_end);
          if (!status || builder_.ended()) return status ? builder_.finish() : std::move(status);
          wants = builder_.wants();
        }
        position = value_end + 1;
      }
    }
    return builder_.finish();
  }

 private:
  /// The code of an ordinary code line; negative for any other.
  int short_code(std::uint64_t begin, std::uint64_t line_end) const {
    const char* const data = bytes_.data();
    if (line_end > begin && data[line_end - 1] == '\r') --line_end;
    const std::uint64_t length = line_end - begin;
    return length - 1 < 4 && line_end >= 4 ? code_of_short_line(data + line_end, length) : -1;
  }

  Status pair(std::uint64_t begin, std::uint64_t code_end, std::uint64_t value_end) {
    const char* const data = bytes_.data();
    int code = short_code(begin, code_end);
    if (code < 0) {
      std::string_view line = bytes_.substr(begin, code_end - begin);
      if (line.ends_with('\r')) line.remove_suffix(1);
      const auto slow = code_of_line(line);
      if (!slow) {
        return fail(place(bytes_, dialect_, name_, begin),
                    "group code " + quoted(line) + " is not a number");
      }
      code = *slow;
    }
    if ((interest(code) & builder_.wants()) == 0) return {};
    const std::uint64_t value_begin = code_end + 1;
    if (value_end > value_begin && data[value_end - 1] == '\r') --value_end;
    std::string_view value = bytes_.substr(value_begin, value_end - value_begin);
    if (code == 0) value = trimmed(value);
    return builder_.tag(code, value, begin);
  }

  static std::string_view trimmed(std::string_view value) {
    while (!value.empty() && (value.front() == ' ' || value.front() == '\t'))
      value.remove_prefix(1);
    while (!value.empty() && (value.back() == ' ' || value.back() == '\t')) value.remove_suffix(1);
    return value;
  }

  /// Fewer than two line ends are left: a last value line without its end, or a cut.
  Status last_pair(std::uint64_t position, std::uint64_t code_end) {
    if (code_end < bytes_.size()) {
      if (Status status = pair(position, code_end, bytes_.size()); !status) return status;
    }
    return builder_.finish();
  }

  std::string_view bytes_;
  const Dialect& dialect_;
  const std::string& name_;
  RecordBuilder builder_;
};

Status scan_binary(std::string_view bytes, const Dialect& dialect, std::uint64_t start,
                   const std::string& name, RecordSink& sink) {
  RecordBuilder builder(bytes, dialect, name, sink);
  std::uint64_t position = start;
  while (!builder.ended() && position < bytes.size()) {
    const auto tag = binary_tag_at(bytes, position, dialect.one_byte_codes);
    if (!tag) {
      return fail(place(bytes, dialect, name, position),
                  "the drawing is cut off: it ends inside a value");
    }
    if (tag->code < 0 || tag->code > kLastGroupCode) {
      return fail(place(bytes, dialect, name, position),
                  std::to_string(tag->code) + " is not a group code");
    }
    if (interest(tag->code) & builder.wants()) {
      const auto value = bytes.substr(tag->value_begin, tag->value_end - tag->value_begin);
      if (Status status = builder.tag(tag->code, value, position); !status) return status;
    }
    position = tag->end;
  }
  return builder.finish();
}

/// Bytes that cannot be the start of a drawing get an answer that says what was found instead.
std::string not_a_drawing(std::string_view bytes) {
  if (bytes.empty()) return "the file is empty";
  if (bytes.starts_with("AC10")) {
    return "this is a DWG file; only DXF is read. Save it as DXF and run again";
  }
  return "this is not a DXF drawing: no SECTION at its start";
}

/// Skips a byte-order mark, blank lines and comments (group 999) in front of the first section.
std::optional<std::uint64_t> first_section(std::string_view bytes) {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  std::uint64_t position = bytes.starts_with(kByteOrderMark) ? kByteOrderMark.size() : 0;
  Tag tag;
  const Dialect ascii;
  for (int comments = 0; comments < 1000; ++comments) {
    TagReader tags(bytes, ascii, position);
    if (!tags.next(tag)) return std::nullopt;
    const std::size_t line = bytes.find('\n', position);
    if (!code_of_line(bytes.substr(position, line - position))) return std::nullopt;
    if (tag.code == 0) return position;
    if (tag.code != 999) return std::nullopt;
    position = tag.end;
  }
  return std::nullopt;
}

/// Version and code page, from the header that follows `start`.
void read_header_start(std::string_view bytes, Preamble& preamble) {
  constexpr int kTagsLookedAt = 4000;
  TagReader tags(bytes, preamble.dialect, preamble.start);
  Tag tag;
  std::string* wanted = nullptr;
  bool named = false;
  bool inside = false;
  for (int i = 0; i < kTagsLookedAt && tags.next(tag); ++i) {
    if (tag.code == 0 && tag.value != "SECTION") break;
    if (tag.code == 2 && !named) {
      named = true;
      inside = tag.value == "HEADER";
    }
    if (!inside && tag.code == 9) break;
    if (tag.code == 9) {
      wanted = tag.value == "$ACADVER"       ? &preamble.version
               : tag.value == "$DWGCODEPAGE" ? &preamble.code_page
                                             : nullptr;
    } else if (wanted) {
      *wanted = std::string(tag.value);
      wanted = nullptr;
    }
  }
}

void choose_code_page(Preamble& preamble) {
  Dialect& dialect = preamble.dialect;
  dialect.release =
      preamble.version.empty() ? Release::kR12 : release_from_version(preamble.version);
  if (dialect.release >= Release::kR2007) {
    dialect.code_page = CodePage::kUtf8;
  } else {
    dialect.code_page = code_page_from_name(preamble.code_page).value_or(CodePage::k1252);
  }
}

}  // namespace

Result<Preamble> read_preamble(std::string_view bytes, const std::string& name) {
  Preamble preamble;
  Dialect& dialect = preamble.dialect;
  if (bytes.starts_with(kBinarySentinel)) {
    dialect.binary = true;
    preamble.start = kBinarySentinel.size();
    const std::string_view rest = bytes.substr(preamble.start);
    dialect.one_byte_codes = rest.size() >= 2 && rest[0] == 0 && rest[1] != 0;
  } else {
    const auto start = first_section(bytes);
    if (!start) return fail(name, not_a_drawing(bytes));
    preamble.start = *start;
    const std::size_t newline = bytes.find('\n');
    dialect.crlf = newline != std::string_view::npos && newline > 0 && bytes[newline - 1] == '\r';
  }
  read_header_start(bytes, preamble);
  choose_code_page(preamble);
  return preamble;
}

Status scan_records(std::string_view bytes, const Preamble& preamble, const std::string& name,
                    RecordSink& sink) {
  if (preamble.dialect.binary) {
    return scan_binary(bytes, preamble.dialect, preamble.start, name, sink);
  }
  return AsciiScan(bytes, preamble.dialect, name, sink).run(preamble.start);
}

std::string place(std::string_view bytes, const Dialect& dialect, const std::string& name,
                  std::uint64_t offset) {
  if (dialect.binary) return name + ", byte " + std::to_string(offset);
  const std::string_view before = bytes.substr(0, offset);
  const auto line = std::count(before.begin(), before.end(), '\n') + 1;
  return name + ":" + std::to_string(line);
}

}  // namespace cad::dxf
