#include <cmath>
#include <numbers>

#include "host/app/command/command_table.h"
#include "host/app/command/settings/records.h"
#include "host/app/command/text/text_place.h"
#include "host/db/make_object.h"

namespace cad {
namespace {

bool draw_text(CommandLine& line, const TextPlace& place, std::wstring_view text) {
  GroupList groups(L"TEXT");
  groups.text(1, text);
  add_place(groups, line, place, text, 73);
  return !draw(line, groups).isNull();
}

/// One line: what programs mean by TEXT.
Flow<> text_command(CommandLine& line) {
  const TextPlace place = co_await ask_text_place(line);
  const Answer text = co_await line.text({.text = L"Enter text: "});
  if (text.is_text()) draw_text(line, place, text.text);
}

/// Lines below each other until Enter.
Flow<> dtext_command(CommandLine& line) {
  constexpr double kLineSpacing = 5.0 / 3.0;
  TextPlace place = co_await ask_text_place(line);
  for (;;) {
    const Answer text = co_await line.text({.text = L"Enter text: "});
    if (!text.is_text() || !draw_text(line, place, text.text)) co_return;
    const double down = place.angle - std::numbers::pi / 2;
    place.point = polar(place.point, down, kLineSpacing * place.height);
    place.second = polar(place.second, down, kLineSpacing * place.height);
  }
}

// --- MTEXT

struct Paragraph {
  double height = 0.0;
  double width = 0.0;
  double angle = 0.0;
  int attachment = 1;  // 1 top left ... 9 bottom right
  std::wstring style;
  double spacing = 1.0;
  int spacing_kind = 1;  // 1 at least, 2 exactly
};

constexpr const wchar_t* kAttachments[] = {L"TL", L"TC", L"TR", L"ML", L"MC",
                                           L"MR", L"BL", L"BC", L"BR"};

Flow<> ask_attachment(CommandLine& line, Paragraph& text) {
  const Answer option =
      co_await line.keyword({.text = L"Enter justification [TL/TC/TR/ML/MC/MR/BL/BC/BR] <TL>: ",
                             .keywords = L"TL TC TR ML MC MR BL BC BR"});
  for (int i = 0; i < 9; ++i)
    if (option.is(kAttachments[i])) text.attachment = i + 1;
}

Flow<> ask_spacing(CommandLine& line, Paragraph& text) {
  const Answer kind =
      co_await line.keyword({.text = L"Enter line spacing type [At least/Exactly] <At least>: ",
                             .keywords = L"At Exactly"});
  text.spacing_kind = kind.is(L"Exactly") ? 2 : 1;
  const Answer factor = co_await line.word({.text = L"Enter line spacing factor <1x>: "});
  if (factor.none()) co_return;
  const bool is_factor = factor.text.ends_with(L"x") || factor.text.ends_with(L"X");
  const auto number = lisp::parse_length(
      std::wstring_view(factor.text).substr(0, factor.text.size() - (is_factor ? 1 : 0)),
      lisp::LengthUnits::kDecimal);
  // A distance is that of one line of 5/3 of the height.
  const double spacing = number.value_or(0.0) / (is_factor ? 1.0 : text.height * 5.0 / 3.0);
  if (spacing >= 0.25 && spacing <= 4.0)
    text.spacing = spacing;
  else
    line.refuse(L"Requires a line spacing between 0.25x and 4x.");
}

Flow<> ask_mtext_style(CommandLine& line, Paragraph& text) {
  const std::wstring prompt = L"Enter style name <" + text.style + L">: ";
  const Answer name = co_await line.text({.text = prompt});
  if (name.none()) co_return;
  const AcDbObjectId style = find_record(line.database(), "STYLE", name.text);
  if (style.isNull()) {
    line.refuse(L"Cannot find text style \"" + name.text + L"\".");
    co_return;
  }
  text.style = group_text(style, 2);
}

Flow<> ask_option(CommandLine& line, Paragraph& text, const Answer& option,
                  const AcGePoint3d& first) {
  if (option.is(L"Height")) {
    const Answer height = co_await line.distance(
        {.text = L"Specify height: ", .bits = kNoZero | kNoNegative, .from = &first});
    if (height.is_number()) text.height = height.number;
  }
  if (option.is(L"Justify")) co_await ask_attachment(line, text);
  if (option.is(L"Line")) co_await ask_spacing(line, text);
  if (option.is(L"Rotation")) {
    const Answer angle =
        co_await line.orientation({.text = L"Specify rotation angle <0>: ", .from = &first});
    text.angle = angle.number;
  }
  if (option.is(L"Style")) co_await ask_mtext_style(line, text);
}

/// The point by which the text hangs in the box of two corners.
AcGePoint3d hanging_point(const AcGePoint3d& a, const AcGePoint3d& b, int attachment) {
  const int column = (attachment - 1) % 3, row = (attachment - 1) / 3;
  const double left = std::min(a.x, b.x), right = std::max(a.x, b.x);
  const double bottom = std::min(a.y, b.y), top = std::max(a.y, b.y);
  const double x = column == 0 ? left : column == 1 ? (left + right) / 2 : right;
  const double y = row == 0 ? top : row == 1 ? (bottom + top) / 2 : bottom;
  return {x, y, a.z};
}

Flow<std::wstring> ask_lines(CommandLine& line) {
  std::wstring contents;
  for (bool first = true;; first = false) {
    const Answer typed = co_await line.text({.text = L"MText: "});
    if (!typed.is_text()) break;
    if (!first) contents += L"\\P";
    contents += typed.text;
  }
  co_return contents;
}

Flow<> mtext_command(CommandLine& line) {
  Paragraph text;
  text.style = line.text_variable(L"TEXTSTYLE");
  const double fixed = group_real(find_record(line.database(), "STYLE", text.style), 40);
  text.height = fixed > 0.0 ? fixed : line.real_variable(L"TEXTSIZE");
  const Answer first = co_await line.point({.text = L"Specify first corner: ", .bits = kNoEnter});
  const WorkPlane plane(line);
  const AcGePoint3d a = plane.user(first.point);
  AcGePoint3d at = a;
  for (;;) {
    const Answer other = co_await line.corner(
        {.text = L"Specify opposite corner or [Height/Justify/Line spacing/Rotation/Style/Width]: ",
         .keywords = L"Height Justify Line Rotation Style Width",
         .bits = kNoEnter,
         .from = &first.point});
    if (other.is_point()) {
      const AcGePoint3d b = plane.user(other.point);
      at = hanging_point(a, b, text.attachment);
      text.width = std::abs(b.x - a.x);
      break;
    }
    if (other.is(L"Width")) {
      const Answer width = co_await line.distance(
          {.text = L"Specify width: ", .bits = kNoEnter | kNoNegative, .from = &first.point});
      text.width = width.number;
      break;
    }
    co_await ask_option(line, text, other, first.point);
    if (line.passing_over()) co_return;
  }
  const std::wstring contents = co_await ask_lines(line);
  if (contents.empty()) co_return;
  const double angle = plane.stored_angle(text.angle);
  GroupList groups(L"MTEXT");
  groups.point(10, plane.world(at))
      .real(40, text.height)
      .real(41, text.width)
      .integer(71, text.attachment)
      .integer(72, 5)
      .text(1, contents)
      .text(7, text.style)
      .real(50, angle)
      .integer(73, text.spacing_kind)
      .real(44, text.spacing);
  if (!plane.is_world()) groups.point(210, AcGePoint3d::kOrigin + plane.normal());
  if (!draw(line, groups).isNull() && fixed <= 0.0) line.set_variable(L"TEXTSIZE", text.height);
}

constexpr CommandRow kRows[] = {
    {"TEXT", "", text_command,
     "start point [Justify/Style], height unless the style fixes it, rotation, text",
     "draws a line of text"},
    {"DTEXT", "DT", dtext_command,
     "start point [Justify/Style], height unless the style fixes it, rotation, texts ..., Enter",
     "draws lines of text below each other"},
    {"MTEXT", "T MT", mtext_command,
     "first corner, opposite corner [Height/Justify/Line spacing/Rotation/Style/Width], lines "
     "..., Enter",
     "draws a paragraph"},
};

}  // namespace

std::span<const CommandRow> text_commands() { return kRows; }

}  // namespace cad
