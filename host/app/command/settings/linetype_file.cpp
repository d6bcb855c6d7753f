#include "host/app/command/settings/linetype_file.h"

#include <algorithm>
#include <cmath>

#include "host/app/command/settings/records.h"
#include "host/app/host.h"
#include "host/base/codepage.h"
#include "host/base/file.h"
#include "host/base/fold.h"
#include "host/base/numbers.h"
#include "host/lisp/stream.h"

namespace cad {
namespace {

/// Linetypes every drawing office has, in inches; the metric file is 25.4 times as long.
constexpr std::wstring_view kStandard =
    LR"(*BORDER,Border __ __ . __ __ . __ __ .
A,.5,-.25,.5,-.25,0,-.25
*BORDER2,Border (.5x)
A,.25,-.125,.25,-.125,0,-.125
*BORDERX2,Border (2x)
A,1.0,-.5,1.0,-.5,0,-.5
*CENTER,Center ____ _ ____ _ ____
A,1.25,-.25,.25,-.25
*CENTER2,Center (.5x)
A,.75,-.125,.125,-.125
*CENTERX2,Center (2x)
A,2.5,-.5,.5,-.5
*DASHDOT,Dash dot __ . __ . __ .
A,.5,-.25,0,-.25
*DASHDOT2,Dash dot (.5x)
A,.25,-.125,0,-.125
*DASHDOTX2,Dash dot (2x)
A,1.0,-.5,0,-.5
*DASHED,Dashed __ __ __ __ __
A,.5,-.25
*DASHED2,Dashed (.5x)
A,.25,-.125
*DASHEDX2,Dashed (2x)
A,1.0,-.5
*DIVIDE,Divide ____ . . ____ . .
A,.5,-.25,0,-.25,0,-.25
*DIVIDE2,Divide (.5x)
A,.25,-.125,0,-.125,0,-.125
*DIVIDEX2,Divide (2x)
A,1.0,-.5,0,-.5,0,-.5
*DOT,Dot . . . . . . . .
A,0,-.25
*DOT2,Dot (.5x)
A,0,-.125
*DOTX2,Dot (2x)
A,0,-.5
*HIDDEN,Hidden __ __ __ __ __
A,.25,-.125
*HIDDEN2,Hidden (.5x)
A,.125,-.0625
*HIDDENX2,Hidden (2x)
A,.5,-.25
*PHANTOM,Phantom ______ __ __ ______
A,1.25,-.25,.25,-.25,.25,-.25
*PHANTOM2,Phantom (.5x)
A,.625,-.125,.125,-.125,.125,-.125
*PHANTOMX2,Phantom (2x)
A,2.5,-.5,.5,-.5,.5,-.5
)";

std::wstring_view next_line(std::wstring_view& text) {
  const std::size_t end = std::min(text.find(L'\n'), text.size());
  std::wstring_view line = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  const std::size_t last = line.find_last_not_of(L" \t\r");
  return line.substr(0, last == std::wstring_view::npos ? 0 : last + 1);
}

/// The dashes behind "A,"; false for a line that is no pattern.
bool read_dashes(std::wstring_view line, LinetypePattern& to) {
  const std::vector<std::wstring> parts = comma_parts(line);
  if (parts.empty() || !equal_no_case(parts.front(), L"A")) return false;
  to.complex = line.find(L'[') != std::wstring_view::npos;
  for (std::size_t i = 1; i < parts.size() && !to.complex; ++i) {
    const auto number = parse_real(to_utf8(parts[i]));
    if (!number) return false;
    to.dashes.push_back(*number);
  }
  return to.complex || !to.dashes.empty();
}

}  // namespace

GroupList LinetypePattern::groups() const {
  double length = 0.0;
  for (const double dash : dashes) length += std::abs(dash);
  GroupList list(L"LTYPE");
  list.text(2, name)
      .integer(70, 0)
      .text(3, description)
      .integer(72, 65)
      .integer(73, static_cast<std::int64_t>(dashes.size()))
      .real(40, length);
  for (const double dash : dashes) list.real(49, dash).integer(74, 0);
  return list;
}

std::vector<LinetypePattern> parse_linetypes(std::wstring_view text) {
  std::vector<LinetypePattern> patterns;
  while (!text.empty()) {
    const std::wstring_view line = next_line(text);
    if (!line.starts_with(L"*")) continue;
    LinetypePattern pattern;
    const std::size_t comma = std::min(line.find(L','), line.size());
    pattern.name = line.substr(1, comma - 1);
    if (comma < line.size()) pattern.description = line.substr(comma + 1);
    std::wstring_view dashes = next_line(text);
    while (!text.empty() && (dashes.empty() || dashes.starts_with(L";"))) dashes = next_line(text);
    if (!pattern.name.empty() && read_dashes(dashes, pattern))
      patterns.push_back(std::move(pattern));
  }
  return patterns;
}

Result<std::vector<LinetypePattern>> read_linetype_file(std::wstring_view name) {
  std::wstring full(name);
  if (full.find(L'.') == std::wstring::npos) full += L".lin";
  if (const auto path = find_support_file(to_utf8(full))) {
    const Result<MappedFile> file = MappedFile::open(*path);
    if (!file) return file.error();
    return parse_linetypes(lisp::decode_file(file->bytes()));
  }
  const std::size_t slash = full.find_last_of(L"/\\");
  const std::wstring base = slash == std::wstring::npos ? full : full.substr(slash + 1);
  const bool is_metric = equal_no_case(base, L"acadiso.lin");
  if (!is_metric && !equal_no_case(base, L"acad.lin"))
    return fail(to_utf8(full), "there is no such linetype file");
  std::vector<LinetypePattern> patterns = parse_linetypes(kStandard);
  for (LinetypePattern& pattern : patterns) {
    for (double& dash : pattern.dashes) dash *= is_metric ? 25.4 : 1.0;
  }
  return patterns;
}

}  // namespace cad
