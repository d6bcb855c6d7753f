#include "network/model/inp_file.h"

#include <algorithm>

#include "host/base/codepage.h"
#include "host/base/file.h"
#include "host/base/fold.h"
#include "network/settings_text.h"

namespace network {
namespace {

constexpr std::string_view kSeparators = " \t\r,";
constexpr std::size_t kShortestName = 4;  // [JUNC] is understood, [JUN] is not

/// Takes the next line off the text, without its end.
std::string_view take_line(std::string_view& text) {
  const std::size_t end = std::min(text.find('\n'), text.size());
  const std::string_view line = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  return line;
}

/// The name in a heading "[NAME]"; empty for any other line.
std::string_view heading(std::string_view line) {
  const std::size_t first = line.find_first_not_of(" \t");
  if (first == line.npos || line[first] != '[') return {};
  line.remove_prefix(first + 1);
  return line.substr(0, line.find_first_of("]\r"));
}

/// Takes the next field off the line; false at its end or at a comment.
bool take_field(std::string_view& line, std::string_view& field) {
  const std::size_t first = line.find_first_not_of(kSeparators);
  if (first == line.npos || line[first] == ';') return false;
  line.remove_prefix(first);
  if (line.front() == '"') {
    line.remove_prefix(1);
    const std::size_t end = std::min(line.find('"'), line.size());
    field = line.substr(0, end);
    line.remove_prefix(std::min(end + 1, line.size()));
    return true;
  }
  const std::size_t end = std::min(line.find_first_of(" \t\r,;"), line.size());
  field = line.substr(0, end);
  line.remove_prefix(end);
  return true;
}

bool starts_with_no_case(std::string_view text, std::string_view start) {
  return text.size() >= start.size() && cad::equal_no_case(text.substr(0, start.size()), start);
}

std::string as_utf8(std::string_view bytes) {
  const TextEncoding encoding = detect_encoding(bytes);
  const std::string_view text = bytes.substr(mark_size(encoding));
  if (encoding == TextEncoding::kUtf8 || encoding == TextEncoding::kUtf8WithMark)
    return std::string(text);
  return cad::to_utf8(decode_settings(text, encoding));
}

}  // namespace

cad::Result<std::unique_ptr<InpFile>> InpFile::read(const std::string& path) {
  const cad::Result<cad::MappedFile> file = cad::MappedFile::open(path);
  if (!file) return file.error();
  return std::make_unique<InpFile>(as_utf8(file->bytes()), path);
}

InpFile::InpFile(std::string text, std::string name)
    : text_(std::move(text)), name_(std::move(name)) {
  if (text_.find('\n') == text_.npos) std::replace(text_.begin(), text_.end(), '\r', '\n');
  int line_number = 0;
  for (std::string_view rest = text_; !rest.empty();) {
    const std::string_view line = take_line(rest);
    ++line_number;
    const std::string_view section = heading(line);
    if (!section.empty()) {
      sections_.push_back({std::string(section), line_number, {rest.data(), 0}});
    } else if (!sections_.empty()) {
      std::string_view& body = sections_.back().body;
      body = {body.data(), static_cast<std::size_t>(line.data() + line.size() - body.data())};
    }
  }
}

bool InpFile::is_named(const Section& section, std::string_view known) {
  if (section.name.size() < kShortestName) return cad::equal_no_case(section.name, known);
  return starts_with_no_case(known, section.name) || starts_with_no_case(section.name, known);
}

bool InpFile::has(std::string_view known) const {
  return std::any_of(sections_.begin(), sections_.end(),
                     [&](const Section& section) { return is_named(section, known); });
}

void InpFile::for_each_row(const Section& section, const std::function<void(const Row&)>& visit) {
  std::vector<std::string_view> fields;
  int line_number = section.line;
  for (std::string_view rest = section.body; !rest.empty();) {
    std::string_view line = take_line(rest);
    ++line_number;
    fields.clear();
    for (std::string_view field; take_field(line, field);) fields.push_back(field);
    if (!fields.empty()) visit({line_number, fields});
  }
}

std::size_t InpFile::count_rows(const Section& section) {
  std::size_t count = 0;
  for_each_row(section, [&](const Row&) { ++count; });
  return count;
}

}  // namespace network
