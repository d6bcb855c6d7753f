#include "network/profile_file.h"

#include <algorithm>
#include <utility>

#include "host/base/codepage.h"
#include "host/base/fold.h"
#include "network/places.h"

namespace network {
namespace {

constexpr bool is_blank(wchar_t c) { return c == L' ' || c == L'\t'; }

std::wstring_view trimmed(std::wstring_view text) {
  while (!text.empty() && is_blank(text.front())) text.remove_prefix(1);
  while (!text.empty() && is_blank(text.back())) text.remove_suffix(1);
  return text;
}

std::wstring_view unquoted(std::wstring_view text) {
  const bool quoted = text.size() >= 2 && (text.front() == L'"' || text.front() == L'\'') &&
                      text.front() == text.back();
  return quoted ? text.substr(1, text.size() - 2) : text;
}

/// How many bytes the line at the front takes, its end included: CR LF, LF or CR.
std::size_t line_size(std::string_view bytes, std::size_t unit) {
  const auto is = [&](std::size_t at, char c) {
    return at + unit <= bytes.size() && bytes[at] == c && (unit == 1 || bytes[at + 1] == 0);
  };
  for (std::size_t at = 0; at + unit <= bytes.size(); at += unit) {
    if (is(at, '\n')) return at + unit;
    if (is(at, '\r')) return at + (is(at + unit, '\n') ? 2 : 1) * unit;
  }
  return bytes.size();
}

bool is_line_end(wchar_t c) { return c == L'\r' || c == L'\n'; }

}  // namespace

ProfileFile::ProfileFile(std::string bytes) : encoding_(detect_encoding(bytes)) {
  std::string_view rest = bytes;
  rest.remove_prefix(mark_size(encoding_));
  mark_ = bytes.substr(0, mark_size(encoding_));
  const std::size_t unit = encoding_ == TextEncoding::kUtf16WithMark ? 2 : 1;
  while (!rest.empty()) {
    const std::size_t size = line_size(rest, unit);
    lines_.push_back(parsed(std::string(rest.substr(0, size))));
    rest.remove_prefix(size);
  }
}

ProfileFile ProfileFile::read(const CString& path) {
  FileNote note{path, {}, {}};
  ProfileFile file;
  if (const std::optional<std::string> found = find_settings_file(path)) {
    note.path = cad::from_utf8(*found);
    if (cad::Result<std::string> bytes = read_settings_file(*found)) {
      file = ProfileFile(*std::move(bytes));
      note.encoding = encoding_name(file.encoding_);
    } else {
      note.problem = cad::from_utf8(bytes.error().what);
    }
  } else {
    note.problem = L"no such file";
  }
  file.path_ = note.path;
  if (SettingsLog* log = settings_log()) log->add(std::move(note));
  return file;
}

ProfileFile::Line ProfileFile::parsed(std::string bytes) const {
  Line line;
  std::wstring decoded = decode_settings(bytes, encoding_);
  while (!decoded.empty() && is_line_end(decoded.back())) decoded.pop_back();
  std::wstring_view text = trimmed(decoded);
  line.bytes = std::move(bytes);
  line.blank = text.empty();
  if (text.empty() || text.front() == L';') return line;
  if (text.front() == L'[') {
    line.kind = Line::Kind::kSection;
    text.remove_prefix(1);
    line.name = trimmed(text.substr(0, text.find(L']')));
    return line;
  }
  const std::size_t equals = text.find(L'=');
  if (equals == text.npos) return line;
  line.name = trimmed(text.substr(0, equals));
  if (line.name.empty()) return line;
  line.kind = Line::Kind::kKey;
  line.value = unquoted(trimmed(text.substr(equals + 1)));
  return line;
}

ProfileFile::Line ProfileFile::written(std::wstring_view text) const {
  return parsed(encode_settings(std::wstring(text) + L"\r\n", encoding_));
}

std::size_t ProfileFile::behind_header(std::wstring_view section) const {
  section = trimmed(section);
  for (std::size_t i = 0; i < lines_.size(); ++i) {
    const Line& line = lines_[i];
    if (line.kind == Line::Kind::kSection && cad::equal_no_case(line.name, section)) return i + 1;
  }
  return kNone;
}

std::size_t ProfileFile::section_end(std::size_t begin) const {
  while (begin < lines_.size() && lines_[begin].kind != Line::Kind::kSection) ++begin;
  return begin;
}

std::size_t ProfileFile::key_line(std::wstring_view section, std::wstring_view key) const {
  const std::size_t begin = behind_header(section);
  if (begin == kNone) return kNone;
  key = trimmed(key);
  for (std::size_t i = begin, end = section_end(begin); i < end; ++i) {
    const Line& line = lines_[i];
    if (line.kind == Line::Kind::kKey && cad::equal_no_case(line.name, key)) return i;
  }
  return kNone;
}

std::optional<ProfileFile::Value> ProfileFile::find(std::wstring_view section,
                                                    std::wstring_view key) const {
  const std::size_t at = key_line(section, key);
  if (at == kNone) return std::nullopt;
  return Value{lines_[at].value, static_cast<int>(at) + 1};
}

std::vector<std::wstring> ProfileFile::sections() const {
  std::vector<std::wstring> names;
  for (const Line& line : lines_)
    if (line.kind == Line::Kind::kSection) names.push_back(line.name);
  return names;
}

std::vector<std::wstring> ProfileFile::keys(std::wstring_view section) const {
  std::vector<std::wstring> names;
  const std::size_t begin = behind_header(section);
  if (begin == kNone) return names;
  for (std::size_t i = begin, end = section_end(begin); i < end; ++i)
    if (lines_[i].kind == Line::Kind::kKey) names.push_back(lines_[i].name);
  return names;
}

void ProfileFile::end_last_line() {
  if (lines_.empty()) return;
  std::string& last = lines_.back().bytes;
  if (encoding_ == TextEncoding::kUtf16WithMark && last.size() % 2 != 0) last.pop_back();
  const std::wstring text = decode_settings(last, encoding_);
  if (!text.empty() && !is_line_end(text.back())) last += encode_settings(L"\r\n", encoding_);
}

void ProfileFile::set(std::wstring_view section, std::wstring_view key, std::wstring_view value) {
  const auto line_of = [&](std::wstring_view name) {
    return written(std::wstring(name) + L"=" + std::wstring(value));
  };
  if (const std::size_t at = key_line(section, key); at != kNone) {
    Line line = line_of(lines_[at].name);
    lines_[at] = std::move(line);
    return;
  }
  std::size_t at = behind_header(section);
  if (at == kNone) {
    end_last_line();
    lines_.push_back(written(L"[" + std::wstring(trimmed(section)) + L"]"));
    lines_.push_back(line_of(trimmed(key)));
    return;
  }
  const std::size_t header = at;
  at = section_end(at);
  while (at > header && lines_[at - 1].blank) --at;
  if (at == lines_.size()) end_last_line();
  lines_.insert(lines_.begin() + static_cast<std::ptrdiff_t>(at), line_of(trimmed(key)));
}

void ProfileFile::remove_key(std::wstring_view section, std::wstring_view key) {
  const std::size_t at = key_line(section, key);
  if (at != kNone) lines_.erase(lines_.begin() + static_cast<std::ptrdiff_t>(at));
}

void ProfileFile::remove_section(std::wstring_view section) {
  const std::size_t begin = behind_header(section);
  if (begin == kNone) return;
  const auto first = lines_.begin() + static_cast<std::ptrdiff_t>(begin) - 1;
  const auto end = lines_.begin() + static_cast<std::ptrdiff_t>(section_end(begin));
  lines_.erase(
      std::remove_if(first, end, [](const Line& line) { return line.kind != Line::Kind::kOther; }),
      end);
}

SettingNote note_of(const ProfileFile& file, std::wstring_view section, std::wstring_view key,
                    const std::optional<ProfileFile::Value>& value, std::wstring_view text) {
  SettingNote note;
  note.name = key;
  note.value = text;
  note.origin.file = file.path();
  note.origin.line = value ? value->line : 0;
  note.origin.place = L"[" + CString(section) + L"] " + CString(key);
  note.is_default = !value;
  return note;
}

std::string ProfileFile::bytes() const {
  std::string all = mark_;
  for (const Line& line : lines_) all += line.bytes;
  return all;
}

}  // namespace network
