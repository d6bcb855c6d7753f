#include "host/app/command/command_table.h"
#include "host/app/command/draw/draw.h"
#include "host/app/command/settings/records.h"
#include "host/base/fold.h"
#include "host/db/make_object.h"

namespace cad {
namespace {

enum Generation { kBackwards = 2, kUpsideDown = 4 };
constexpr int kVertical = 4;  // of group 70

bool ends_no_case(std::wstring_view text, std::wstring_view end) {
  return text.size() >= end.size() && equal_no_case(text.substr(text.size() - end.size()), end);
}

/// Only stroke fonts can run downwards. Faces have names with blanks or beyond ASCII.
bool is_stroke_font(std::wstring_view font) {
  for (const wchar_t c : font)
    if (c == L' ' || c > 0x7F) return false;
  return !ends_no_case(font, L".ttf") && !ends_no_case(font, L".ttc") &&
         !ends_no_case(font, L".otf");
}

struct Style {
  std::wstring name;
  std::wstring font = L"txt";
  std::wstring big_font;
  double height = 0.0;
  double width = 1.0;
  double oblique = 0.0;
  int generation = 0;
  bool vertical = false;
};

Style read_style(AcDbObjectId id, const std::wstring& name) {
  Style style;
  style.name = name;
  if (id.isNull()) return style;
  style.name = group_text(id, 2, name);
  style.font = group_text(id, 3, L"txt");
  style.big_font = group_text(id, 4);
  style.height = group_real(id, 40);
  style.width = group_real(id, 41, 1.0);
  style.oblique = group_real(id, 50);
  style.generation = group_integer(id, 71);
  style.vertical = (group_integer(id, 70) & kVertical) != 0;
  return style;
}

bool write_style(CommandLine& line, AcDbObjectId id, const Style& style) {
  GroupList groups;
  if (id.isNull()) groups = GroupList(L"STYLE").text(2, style.name);
  groups.integer(70, style.vertical ? kVertical : 0)
      .real(40, style.height)
      .real(41, style.width)
      .real(50, style.oblique)
      .integer(71, style.generation)
      .text(3, style.font)
      .text(4, style.big_font);
  if (!id.isNull()) return line.check(change_object(id, groups));
  groups.real(42, style.height > 0.0 ? style.height : line.real_variable(L"TEXTSIZE"));
  return line.check(make_record(line.database(), groups));
}

Flow<bool> ask_yes(CommandLine& line, const wchar_t* text, bool now, unsigned bits = 0) {
  const std::wstring prompt = std::wstring(text) + L" [Yes/No] <" + (now ? L"Y" : L"N") + L">: ";
  const Answer answer =
      co_await line.keyword({.text = prompt, .keywords = L"Yes No", .bits = bits});
  co_return answer.none() ? now : answer.is(L"Yes");
}

Flow<> ask_font(CommandLine& line, Style& style) {
  const std::wstring text = L"Specify full font name or font filename (TTF or SHX) <" + style.font +
                            (style.big_font.empty() ? L"" : L"," + style.big_font) + L">: ";
  const Answer typed = co_await line.text({.text = text});
  if (typed.none()) co_return;
  const std::size_t comma = typed.text.find(L',');
  style.font = typed.text.substr(0, comma);
  style.big_font = comma == std::wstring::npos ? L"" : typed.text.substr(comma + 1);
}

Flow<> list_styles(CommandLine& line) {
  const Answer names = co_await line.text({.text = L"Enter text style(s) to list <*>: "});
  for (const AcDbObjectId id :
       matching_records(line.database(), "STYLE", names.none() ? L"*" : names.text)) {
    const Style style = read_style(id, {});
    line.print(L"Style name: \"" + style.name + L"\"  Font files: " + style.font +
               (style.big_font.empty() ? L"" : L"," + style.big_font) + L"  Height: " +
               shown(line, style.height) + L"  Width factor: " + shown(line, style.width));
  }
}

Flow<> style_command(CommandLine& line) {
  const std::wstring current = line.text_variable(L"TEXTSTYLE");
  const std::wstring text = L"Enter name of text style or [?] <" + current + L">: ";
  const Answer name = co_await line.text({.text = text, .keywords = L"?"});
  if (name.is(L"?")) {
    co_await list_styles(line);
    co_return;
  }
  const std::wstring wanted = name.none() ? current : name.text;
  const AcDbObjectId id = find_record(line.database(), "STYLE", wanted);
  if (id.isNull() && !is_symbol_name(wanted, line.database().has_dictionaries())) {
    line.refuse(L"\"" + wanted + L"\" is no name for a text style");
    co_return;
  }
  Style style = read_style(id, wanted);
  co_await ask_font(line, style);
  const std::wstring height_text =
      L"Specify height of text or [Annotative] <" + shown(line, style.height) + L">: ";
  const Answer height = co_await line.distance({.text = height_text, .bits = kNoNegative});
  if (height.is_number()) style.height = height.number;
  const std::wstring width_text = L"Specify width factor <" + shown(line, style.width) + L">: ";
  const Answer width = co_await line.real({.text = width_text, .bits = kNoZero | kNoNegative});
  if (width.is_number()) style.width = width.number;
  const std::wstring oblique_text =
      L"Specify obliquing angle <" + shown_angle(line, style.oblique) + L">: ";
  const Answer oblique = co_await line.turn({.text = oblique_text});
  if (oblique.is_number()) style.oblique = oblique.number;
  const bool backwards =
      co_await ask_yes(line, L"Display text backwards?", (style.generation & kBackwards) != 0);
  const bool upside_down =
      co_await ask_yes(line, L"Display text upside-down?", (style.generation & kUpsideDown) != 0);
  style.generation = (backwards ? kBackwards : 0) | (upside_down ? kUpsideDown : 0);
  // A program may know that its font cannot run downwards where the name does not tell.
  const bool was_vertical = style.vertical;
  style.vertical = false;
  if (is_stroke_font(style.font))
    style.vertical = co_await ask_yes(line, L"Vertical?", was_vertical, kMayEnd);
  if (!write_style(line, id, style)) co_return;
  line.set_variable(L"TEXTSTYLE", style.name);
  if (style.height > 0.0) line.set_variable(L"TEXTSIZE", style.height);
  line.remark(L"\"" + style.name + L"\" is now the current text style.");
}

constexpr CommandRow kRows[] = {
    {"STYLE", "ST", style_command,
     "name [?], font file[,big font file], height, width factor, obliquing angle, backwards, "
     "upside-down, and with a stroke font vertical",
     "makes or changes a text style and makes it current"},
};

}  // namespace

std::span<const CommandRow> style_commands() { return kRows; }

}  // namespace cad
