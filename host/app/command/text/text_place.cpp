#include "host/app/command/text/text_place.h"

#include "host/app/command/settings/records.h"
#include "host/db/text_style.h"
#include "host/font/placement.h"

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
  constexpr int kAligned = 3, kFit = 5;
  const WorkPlane plane(line);
  const AcDbObjectId record = find_record(line.database(), "STYLE", place.style);
  const TextStyleRef style = text_style(record);
  const bool between = place.horizontal == kAligned || place.horizontal == kFit;
  const bool justified = place.horizontal != 0 || place.vertical != 0;
  const AcGePoint3d& alignment = between ? place.second : place.point;

  font::LinePlace where;
  where.first = {place.point.x, place.point.y};
  where.second = {alignment.x, alignment.y};
  where.across = static_cast<font::Across>(place.horizontal);
  where.up = static_cast<font::Up>(place.vertical);
  where.rotation = place.angle;
  // The height of an aligned text follows from its ends, unless they are one.
  where.shape.height =
      place.horizontal == kAligned ? line.real_variable(L"TEXTSIZE") : place.height;
  where.shape.width_factor = style->font.width_factor;
  where.shape.oblique = style->font.oblique;
  where.shape.vertical = style->font.vertical;
  const font::PlacedLine placed = font::place_line(text, *style->face, where);

  groups.point(10, plane.stored({placed.start.x, placed.start.y, place.point.z}))
      .real(40, placed.shape.height)
      .real(41, placed.shape.width_factor)
      .real(50, plane.stored_angle(placed.rotation))
      .text(7, place.style);
  if (placed.shape.oblique != 0.0) groups.real(51, placed.shape.oblique);
  if (justified)
    groups.integer(72, place.horizontal)
        .point(11, plane.stored(alignment))
        .integer(vertical_code, place.vertical);
  plane.flat(groups);
}

}  // namespace cad
