#include "host/font/font_table.h"

#include <cstdlib>
#include <optional>

#include "host/base/codepage.h"
#include "host/base/file.h"
#include "host/base/fold.h"
#include "host/base/install_folder.h"
#include "host/base/numbers.h"
#include "host/base/trace.h"

namespace cad::font {
namespace {

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\r";
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == text.npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

/// The part up to `mark`, trimmed; what is behind the mark stays in `text`.
std::string_view take(std::string_view& text, char mark) {
  const std::size_t end = std::min(text.find(mark), text.size());
  const std::string_view part = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  return trimmed(part);
}

std::optional<Family> read_family(std::string_view text) {
  Family family{std::string(take(text, ':'))};
  while (!text.empty()) {
    const std::string_view trait = take(text, ':');
    if (trait == "bold")
      family.bold = true;
    else if (trait == "italic")
      family.italic = true;
    else
      return std::nullopt;
  }
  return family;
}

/// "-" or nothing: as the font has it.
bool read_size(std::string_view text, double& size) {
  if (text.empty() || text == "-") return true;
  const std::optional<double> number = parse_real(text);
  size = number.value_or(0.0);
  return size > 0.0 && size <= 10.0;
}

std::optional<Substitute> read_row(std::string_view line) {
  Substitute row;
  std::string_view names = take(line, '|'), families = take(line, '|');
  while (!names.empty())
    if (const std::string_view name = take(names, ','); !name.empty())
      row.patterns.push_back(folded(from_utf8(name)));
  while (!families.empty()) {
    std::optional<Family> family = read_family(take(families, ','));
    if (!family) return std::nullopt;
    if (!family->name.empty()) row.families.push_back(std::move(*family));
  }
  if (!read_size(take(line, '|'), row.digit) || !read_size(take(line, '|'), row.full))
    return std::nullopt;
  if (row.patterns.empty() || row.families.empty() || !line.empty()) return std::nullopt;
  return row;
}

bool matches(std::wstring_view pattern, std::wstring_view name) {
  // The last star can take more whenever what follows it does not fit.
  std::size_t p = 0, n = 0, star = pattern.npos, taken = 0;
  while (n < name.size()) {
    if (p < pattern.size() && pattern[p] == L'*') {
      star = p++, taken = n;
    } else if (p < pattern.size() && (pattern[p] == L'?' || pattern[p] == name[n])) {
      ++p, ++n;
    } else if (star != pattern.npos) {
      p = star + 1, n = ++taken;
    } else {
      return false;
    }
  }
  while (p < pattern.size() && pattern[p] == L'*') ++p;
  return p == pattern.size();
}

std::vector<Substitute> table_of(const std::string& path) {
  const Result<MappedFile> file = MappedFile::open(path);
  if (file) return read_table(file->bytes(), path);
  if (tracing()) trace(L"fonts: " + from_utf8(file.error().message()));
  return {};
}

}  // namespace

std::vector<Substitute> read_table(std::string_view text, const std::string& name) {
  constexpr std::string_view kMark = "\xEF\xBB\xBF";
  if (text.starts_with(kMark)) text.remove_prefix(kMark.size());
  std::vector<Substitute> table;
  for (std::size_t number = 1; !text.empty(); ++number) {
    const std::string_view line = take(text, '\n');
    if (line.empty() || line.front() == '#') continue;
    if (std::optional<Substitute> row = read_row(line))
      table.push_back(std::move(*row));
    else if (tracing())
      trace(from_utf8(name) + L":" + std::to_wstring(number) +
            L": is no row \"names | families | digit | full\"");
  }
  return table;
}

const Substitute* find_substitute(const std::vector<Substitute>& table, std::wstring_view name) {
  const std::wstring wanted = folded(name);
  for (const Substitute& row : table)
    for (const std::wstring& pattern : row.patterns)
      if (matches(pattern, wanted)) return &row;
  return nullptr;
}

const std::vector<Substitute>& user_table() {
  static const std::vector<Substitute> table = [] {
    const char* const path = std::getenv("PIPENOTE_FONTS");
    return path && *path ? table_of(path) : std::vector<Substitute>();
  }();
  return table;
}

const std::vector<Substitute>& installed_table() {
  static const std::vector<Substitute> table = [] {
    const std::string folder = installed_folder("fonts");
    if (folder.empty() && tracing()) trace(L"fonts: the table of substitutes is not installed");
    return folder.empty() ? std::vector<Substitute>() : table_of(folder + "/substitutes.txt");
  }();
  return table;
}

}  // namespace cad::font
