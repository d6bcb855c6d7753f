#include "host/dxf/scan.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <optional>

#include "host/base/codepage.h"
#include "host/base/numbers.h"
#include "host/base/quoted.h"
#include "host/dxf/binary_layout.h"
#include "host/dxf/group_codes.h"
#include "host/dxf/record_builder.h"
#include "host/dxf/short_lines.h"
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

/// Walks ASCII bytes pair by pair of lines.
class AsciiScan {
 public:
  AsciiScan(std::string_view bytes, const Dialect& dialect, const std::string& name,
            RecordSink& sink)
      : bytes_(bytes), dialect_(dialect), name_(name), builder_(bytes, dialect, name, sink) {}

  Status run(std::uint64_t start) {
    const char* const data = bytes_.data();
    const char* const end = data + bytes_.size();
    const char* at = data + start;
    std::uint8_t wants = builder_.wants();
    while (!builder_.ended()) {
      CodeLine line;
      const bool readable = static_cast<std::size_t>(end - at) >= kLongestUsualCodeLine;
      if (!readable || !read_usual_code_line(at, line)) {
        // Bytes behind the last line end are no tag; finish() says whether the drawing is cut off.
        const char* const code_end = find_newline(at, end);
        if (!code_end) break;
        const std::optional<int> code = unusual_code(at, code_end);
        if (!code) {
          const std::string_view text(at, static_cast<std::size_t>(code_end - at));
          return fail(place(bytes_, dialect_, name_, offset(at)),
                      "group code " + quoted(without_return(text)) + " is not a number");
        }
        line = {*code, static_cast<std::size_t>(code_end + 1 - at)};
      }
      const char* const value = at + line.length;
      const char* const newline = find_newline(value, end);
      const char* const value_end = newline ? newline : end;
      if ((interest(line.code) & wants) != 0) {
        std::string_view text(value, static_cast<std::size_t>(value_end - value));
        text = without_return(text);
        if (line.code == 0) text = trimmed(text);
        if (Status status = builder_.tag(line.code, text, offset(at)); !status) return status;
        wants = builder_.wants();
      }
      if (!newline) break;
      at = newline + 1;
    }
    return builder_.finish();
  }

 private:
  std::uint64_t offset(const char* at) const {
    return static_cast<std::uint64_t>(at - bytes_.data());
  }

  /// The code on a line that ends at `end`, however it is spelled.
  std::optional<int> unusual_code(const char* begin, const char* end) const {
    const char* const line_end = end > begin && end[-1] == '\r' ? end - 1 : end;
    const auto length = static_cast<std::size_t>(line_end - begin);
    if (length - 1 < 4 && line_end - bytes_.data() >= 4) {
      std::uint32_t columns;
      std::memcpy(&columns, line_end - 4, sizeof columns);
      const auto in_front = static_cast<unsigned>(32 - 8 * length);  // bits of the line before
      const auto blanks = static_cast<std::uint32_t>(std::uint64_t{0x20202020} >> (8 * length));
      const int code = code_of_columns((columns >> in_front << in_front) | blanks);
      if (code >= 0) return code;
    }
    return code_of_line({begin, length});
  }

  static std::string_view without_return(std::string_view line) {
    if (line.ends_with('\r')) line.remove_suffix(1);
    return line;
  }

  static std::string_view trimmed(std::string_view value) {
    while (!value.empty() && (value.front() == ' ' || value.front() == '\t'))
      value.remove_prefix(1);
    while (!value.empty() && (value.back() == ' ' || value.back() == '\t')) value.remove_suffix(1);
    return value;
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
