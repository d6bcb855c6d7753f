#include "host/db/explode_text.h"

#include <cmath>
#include <numbers>
#include <utility>

#include "host/db/lens.h"
#include "host/db/object_groups.h"
#include "host/db/record.h"
#include "host/db/tag_sheet.h"
#include "host/db/text_box.h"
#include "host/geometry/ocs.h"

namespace cad {
namespace {

/// Codes that take a value up to a semicolon.
bool takes_value(wchar_t code) {
  return std::wstring_view(L"ACcFfHQTWp").find(code) != std::wstring_view::npos;
}

/// Lines where the contents break them.
std::vector<std::wstring> given_lines(std::wstring_view contents) {
  std::vector<std::wstring> lines(1);
  for (std::size_t i = 0; i < contents.size(); ++i) {
    const wchar_t c = contents[i];
    if (c == L'\n') {
      lines.emplace_back();
    } else if (c == L'{' || c == L'}' || c == L'\r') {
      continue;
    } else if (c != L'\\' || i + 1 == contents.size()) {
      lines.back() += c;
    } else {
      const wchar_t code = contents[++i];
      if (code == L'P' || code == L'X' || code == L'N') {
        lines.emplace_back();
      } else if (code == L'~') {
        lines.back() += L' ';
      } else if (code == L'\\' || code == L'{' || code == L'}') {
        lines.back() += code;
      } else if (code == L'S') {  // a fraction: "\S1^2;"
        for (++i; i < contents.size() && contents[i] != L';'; ++i) {
          lines.back() += contents[i] == L'^' || contents[i] == L'#' ? L'/' : contents[i];
        }
      } else if (takes_value(code)) {
        while (i + 1 < contents.size() && contents[i] != L';') ++i;
      }
      // What is left turns underlining and the like on and off.
    }
  }
  return lines;
}

void add_wrapped(std::vector<std::wstring>& out, std::wstring_view line, double height,
                 double limit) {
  std::wstring current;
  while (!line.empty()) {
    const std::size_t blank = line.find(L' ');
    const std::size_t end = blank == std::wstring_view::npos ? line.size() : blank + 1;
    std::wstring longer = current;
    longer.append(line.substr(0, blank));
    if (!current.empty() && limit > 0.0 && line_box(longer, height).right > limit) {
      current.pop_back();  // the blank at which the line is broken
      out.push_back(std::exchange(current, {}));
    }
    current.append(line.substr(0, end));
    line.remove_prefix(end);
  }
  out.push_back(std::move(current));
}

}  // namespace

std::vector<std::wstring> plain_lines(std::wstring_view contents, double height,
                                      double reference_width) {
  std::vector<std::wstring> lines;
  for (const std::wstring& line : given_lines(contents)) {
    add_wrapped(lines, line, height, reference_width);
  }
  return lines;
}

std::vector<GroupList> lines_of_mtext(AcDbObjectId mtext) {
  const RecordTags record = record_tags(mtext);
  const TagSheet sheet(record.bytes, *record.dialect);
  const double height = sheet.real({}, 40, 1.0);
  const std::vector<std::wstring> lines =
      plain_lines(Lens(record.bytes, *record.dialect).chunked_text("AcDbMText"), height,
                  sheet.real({}, 41, 0.0));

  const AcGeVector3d normal = sheet.normal();
  const AcGeMatrix3d own = ocs_to_wcs(normal).transpose();
  const std::size_t place = sheet.find({}, 10), along = sheet.find({}, 11);
  const std::size_t turned = sheet.find({}, 50), style = sheet.find({}, 7);
  constexpr double kDegree = std::numbers::pi / 180.0;
  double angle = turned == TagSheet::kNone ? 0.0 : sheet.real(turned) * kDegree;
  if (along != TagSheet::kNone && (turned == TagSheet::kNone || turned < along)) {
    const AcGeVector3d reading = own * sheet.point(along).asVector();
    angle = std::atan2(reading.y, reading.x);
  }
  const AcGeVector3d reading(std::cos(angle), std::sin(angle), 0);
  const AcGeVector3d down(reading.y, -reading.x, 0);

  // Attachment 1 to 9 is top left to bottom right, row by row.
  const std::int64_t attachment = sheet.integer({}, 71, 1);
  const std::int64_t column = (attachment - 1) % 3, row = (attachment - 1) / 3;
  constexpr double kSpacing = 5.0 / 3.0;  // of base lines, in text heights
  const double step = kSpacing * height * sheet.real({}, 44, 1.0);
  const double whole = step * static_cast<double>(lines.size() - 1) + height;
  const double top = row == 0 ? 0.0 : row == 1 ? whole / 2.0 : whole;
  const AcGePoint3d at = place == TagSheet::kNone ? AcGePoint3d() : own * sheet.point(place);

  std::vector<GroupList> texts;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (lines[i].find_first_not_of(L' ') == std::wstring::npos) continue;
    const double below = height + step * static_cast<double>(i) - top;
    const AcGePoint3d base = at + down * below;
    GroupList text = like(mtext, L"TEXT");
    // Readers place a centred or right text by its second point.
    const double shift =
        column == 0 ? 0.0 : line_box(lines[i], height).right * (column == 1 ? 0.5 : 1.0);
    text.point(10, base - reading * shift).real(40, height).text(1, lines[i]).real(50, angle);
    if (style != TagSheet::kNone) text.text(7, sheet.text_value(style));
    if (column != 0) text.integer(72, column).point(11, base);
    text.point(210, AcGePoint3d::kOrigin + normal);
    texts.push_back(std::move(text));
  }
  return texts;
}

}  // namespace cad
