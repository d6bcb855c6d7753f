#include "network/text_file.h"

#include <string_view>
#include <utility>

#include "host/base/codepage.h"
#include "network/places.h"
#include "network/settings_log.h"

namespace {

/// Takes the next line off the text, without its end.
std::wstring_view take_line(std::wstring_view& text) {
  const std::size_t end = std::min(text.find_first_of(L"\r\n"), text.size());
  const std::wstring_view line = text.substr(0, end);
  text.remove_prefix(end);
  if (text.starts_with(L"\r\n")) {
    text.remove_prefix(2);
  } else if (!text.empty()) {
    text.remove_prefix(1);
  }
  return line;
}

bool says_nothing(std::wstring_view line) {
  const std::size_t first = line.find_first_not_of(L" \t");
  return first == line.npos || line[first] == L';';
}

void note_file(const CString& path, network::TextEncoding encoding) {
  if (network::SettingsLog* log = network::settings_log())
    log->add(network::FileNote{path, network::encoding_name(encoding), {}});
}

void note_problem(const CString& path, const std::string& problem) {
  if (network::SettingsLog* log = network::settings_log())
    log->add(network::FileNote{path, {}, cad::from_utf8(problem)});
}

}  // namespace

int KT::ReadTextFileToStringArray(const CString& path, CStringArray& lines, bool skip,
                                  std::vector<int>* numbers, network::TextEncoding* encoding) {
  lines.clear();
  if (numbers) numbers->clear();
  const std::optional<std::string> found = network::find_settings_file(path);
  if (!found) {
    note_problem(path, "no such file");
    return 1;
  }
  const cad::Result<std::string> bytes = network::read_settings_file(*found);
  if (!bytes) {
    note_problem(cad::from_utf8(*found), bytes.error().what);
    return 1;
  }
  const network::TextEncoding how = network::detect_encoding(*bytes);
  if (encoding) *encoding = how;
  note_file(cad::from_utf8(*found), how);
  const std::wstring text =
      network::decode_settings(std::string_view(*bytes).substr(network::mark_size(how)), how);
  int number = 0;
  for (std::wstring_view rest = text; !rest.empty();) {
    const std::wstring_view line = take_line(rest);
    ++number;
    if (skip && says_nothing(line)) continue;
    lines.emplace_back(line);
    if (numbers) numbers->push_back(number);
  }
  return 0;
}
