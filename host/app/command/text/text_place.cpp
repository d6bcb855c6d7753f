#include "host/app/command/text/text_place.h"

#include <cmath>

#include "host/app/command/settings/records.h"
#include "host/db/text_box.h"

namespace cad {
namespace {

struct Justification {
  const wchar_t* name;
  int horizontal;
  int vertical;
  const wchar_t* prompt;
};
constexpr Justification kJustifications[] = {
    {L"Left", 0, 0, L"Specify start point of text: "},
    {L"Align", 3, 0, L"Specify first endpoint of text baseline: "},
    {L"Fit", 5, 0, L"Specify first endpoint of text baseline: "},
    {L"Center", 1, 0, L"Specify center point of text: "},
    {L"Middle", 4, 0, L"Specify middle point of text: "},
    {L"Right", 2, 0, L"Specify right endpoint of text baseline: "},
    {L"TL", 0, 3, L"Specify top-left point of text: "},
    {L"TC", 1, 3, L"Specify top-center point of text: "},
    {L"TR", 2, 3, L"Specify top-right point of text: "},
    {L"ML", 0, 2, L"Specify middle-left point of text: "},
    {L"MC", 1, 2, L"Specify middle point of text: "},
    {L"MR", 2, 2, L"Specify middle-right point of text: "},
    {L"BL", 0, 1, L"Specify bottom-left point of text: "},
    {L"BC", 1, 1, L"Specify bottom-center point of text: "},
    {L"BR", 2, 1, L"Specify bottom-right point of text: "},
};
constexpr std::wstring_view kJustificationWords =
    L"Left Align Fit Center Middle Right TL TC TR ML MC MR BL BC BR";

const Justification& justification_of(const Answer& answer) {
  for (const Justification& row : kJustifications)
    if (answer.is(row.name)) return row;
  return kJustifications[0];
}

Flow<> ask_style(CommandLine& line, TextPlace& place) {
  for (;;) {
    const std::wstring text = L"Enter style name or [?] <" + place.style + L">: ";
    const Answer name = co_await line.text({.text = text, .keywords = L"?"});
    if (name.none()) co_return;
    if (name.is(L"?")) {
      for (const AcDbObjectId style : all_records(line.database(), "STYLE"))
        line.print(group_text(style, 2));
      continue;
    }
    const AcDbObjectId style = find_record(line.database(), "STYLE", name.text);
    if (!style.isNull()) {
      place.style = group_text(style, 2);
      line.set_variable(L"TEXTSTYLE", place.style);
      co_return;
    }
    line.print(L"Cannot find text style \"" + name.text + L"\".");
  }
}

Flow<> ask_height(CommandLine& line, TextPlace& place) {
  const double fixed = group_real(find_record(line.database(), "STYLE", place.style), 40);
  const double usual = line.real_variable(L"TEXTSIZE");
  place.height = fixed > 0.0 ? fixed : usual;
  if (fixed > 0.0) co_return;
  const AcGePoint3d from = WorkPlane(line).world(place.point);
  const std::wstring text = L"Specify height <" + shown(line, usual) + L">: ";
  const Answer height =
      co_await line.distance({.text = text, .bits = kNoZero | kNoNegative, .from = &from});
  if (height.is_number()) place.height = height.number;
  line.set_variable(L"TEXTSIZE", place.height);
}

}  // namespace

Flow<TextPlace> ask_text_place(CommandLine& line) {
  const WorkPlane plane(line);
  TextPlace place;
  place.style = line.text_variable(L"TEXTSTYLE");
  const Justification* how = &kJustifications[0];
  for (;;) {
    const std::wstring words = L"Justify Style " + (how->horizontal == 0 && how->vertical == 0
                                                        ? std::wstring(kJustificationWords)
                                                        : std::wstring());
    const bool plain = how == &kJustifications[0];
    const Answer start = co_await line.point(
        {.text = plain ? L"Specify start point of text or [Justify/Style]: " : how->prompt,
         .keywords = plain ? std::wstring_view(words) : std::wstring_view(),
         .bits = kNoEnter});
    if (start.is_point()) {
      place.point = plane.user(start.point);
      break;
    }
    if (start.is(L"Style")) {
      co_await ask_style(line, place);
      continue;
    }
    if (!start.is(L"Justify")) {
      how = &justification_of(start);
      continue;
    }
    const Answer option = co_await line.keyword(
        {.text = L"Enter an option [Left/Align/Fit/Center/Middle/Right/TL/TC/TR/ML/MC/MR/BL/BC/"
                 L"BR]: ",
         .keywords = kJustificationWords});
    how = &justification_of(option);
  }
  place.horizontal = how->horizontal;
  place.vertical = how->vertical;
  const AcGePoint3d from = plane.world(place.point);
  const bool between = place.horizontal == 3 || place.horizontal == 5;
  if (between) {
    const Answer end = co_await line.point(
        {.text = L"Specify second endpoint of text baseline: ", .bits = kNoEnter, .from = &from});
    place.second = plane.user(end.point);
    place.angle = direction(place.point, place.second);
  }
  if (place.horizontal != 3) co_await ask_height(line, place);
  if (!between) {
    const Answer angle =
        co_await line.orientation({.text = L"Specify rotation angle of text <0>: ", .from = &from});
    place.angle = angle.none() ? input_units(line.session()).angle_base : angle.number;
  }
  co_return place;
}

void add_place(GroupList& groups, CommandLine& line, const TextPlace& place, std::wstring_view text,
               int vertical_code) {
  const WorkPlane plane(line);
  const AcDbObjectId style = find_record(line.database(), "STYLE", place.style);
  const double oblique = group_real(style, 50);
  double width_factor = group_real(style, 41, 1.0), height = place.height;
  const double length = flat_distance(place.point, place.second);
  if (place.horizontal == 3) {
    const double unit = line_box(text, 1.0, width_factor, oblique).width();
    height = unit > 0.0 && length > 0.0 ? length / unit : line.real_variable(L"TEXTSIZE");
  } else if (place.horizontal == 5) {
    const double unit = line_box(text, height, 1.0, oblique).width();
    if (unit > 0.0 && length > 0.0) width_factor = length / unit;
  }
  AcGePoint3d start = place.point;
  AcGePoint3d alignment = place.point;
  if (place.horizontal == 3 || place.horizontal == 5) {
    alignment = place.second;
  } else if (place.horizontal != 0 || place.vertical != 0) {
    // Where the base line begins, for readers that do not align by themselves.
    const TextBox box = line_box(text, height, width_factor, oblique);
    const bool in_middle = place.horizontal == 4;
    const double x = place.horizontal == 2                ? -box.right
                     : place.horizontal == 1 || in_middle ? -(box.left + box.right) / 2
                                                          : 0.0;
    const double y = in_middle             ? -(box.bottom + box.top) / 2
                     : place.vertical == 3 ? -height
                     : place.vertical == 2 ? -height / 2
                     : place.vertical == 1 ? -box.bottom
                                           : 0.0;
    start = polar(polar(start, place.angle, x), place.angle + std::acos(0.0), y);
  }
  groups.point(10, plane.stored(start))
      .real(40, height)
      .real(41, width_factor)
      .real(50, plane.stored_angle(place.angle))
      .text(7, place.style);
  if (oblique != 0.0) groups.real(51, oblique);
  if (place.horizontal != 0 || place.vertical != 0)
    groups.integer(72, place.horizontal)
        .point(11, plane.stored(alignment))
        .integer(vertical_code, place.vertical);
  plane.flat(groups);
}

}  // namespace cad
