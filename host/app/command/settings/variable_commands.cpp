#include <algorithm>

#include "host/app/command/command_table.h"
#include "host/app/command/settings/records.h"
#include "host/app/command/variable_command.h"
#include "host/app/data/entget.h"
#include "host/app/prompt/values.h"
#include "host/app/session.h"
#include "host/app/variables/system_variable_rows.h"
#include "host/base/codepage.h"
#include "host/lisp/names.h"

/// SETVAR, and commands that set one thing.
namespace cad {
namespace {

Flow<> list_variables(CommandLine& line) {
  const Answer names = co_await line.text({.text = L"Enter variable(s) to list <*>: "});
  const std::wstring pattern = names.none() ? L"*" : names.text;
  DocumentSession& session = line.session();
  for (const VariableRow& row : system_variable_rows()) {
    const std::wstring name = from_utf8(row.name);
    if (matches_no_case(name, pattern))
      line.print(name + L"  " + typed_value(session.variables.get(session.interpreter(), name)));
  }
}

Flow<> setvar_command(CommandLine& line) {
  const Answer answer = co_await line.word(
      {.text = L"Enter variable name or [?]: ", .keywords = L"?", .bits = kNoEnter});
  if (answer.is(L"?")) {
    co_await list_variables(line);
    co_return;
  }
  const std::wstring name = lisp::symbol_name(answer.text);
  if (!line.session().variables.get(line.session().interpreter(), name)) {
    line.refuse(L"Unknown variable name \"" + name + L"\".  Type SETVAR ? for a list.");
    co_return;
  }
  co_await ask_variable(line, name);
}

Flow<> color_command(CommandLine& line) {
  const std::wstring text = L"Enter default object color [Truecolor/COlorbook] <" +
                            line.text_variable(L"CECOLOR") + L">: ";
  const Answer typed = co_await line.text({.text = text});
  if (typed.none()) co_return;
  const auto color = color_number(typed.text);
  if (color)
    line.set_variable(L"CECOLOR", color_setting(*color));
  else
    line.refuse(L"A color number or standard color name is required.");
}

// --- UNITS

/// One question of UNITS: an integer within bounds, Enter keeps the variable.
Flow<> ask_setting(CommandLine& line, const wchar_t* variable, const wchar_t* text, int least,
                   int most, int off_by) {
  const int now = line.integer_variable(variable) + off_by;
  const std::wstring prompt = std::wstring(text) + L" <" + std::to_wstring(now) + L">: ";
  for (;;) {
    const Answer answer = co_await line.integer({.text = prompt});
    if (answer.none()) co_return;
    if (answer.integer() >= least && answer.integer() <= most) {
      line.set_variable(variable, answer.integer() - off_by);
      co_return;
    }
    line.print(L"Requires an integer between " + std::to_wstring(least) + L" and " +
               std::to_wstring(most) + L".");
  }
}

/// Fractions are chosen by their smallest part: 1, 2, 4 ... 256.
Flow<> ask_denominator(CommandLine& line) {
  const int now = 1 << std::clamp(line.integer_variable(L"LUPREC"), 0, 8);
  const std::wstring text =
      L"Enter denominator of smallest fraction to display (1, 2, 4, 8, 16, 32, 64, 128, or 256) "
      L"<" +
      std::to_wstring(now) + L">: ";
  for (;;) {
    const Answer answer = co_await line.integer({.text = text});
    if (answer.none()) co_return;
    for (int precision = 0; precision <= 8; ++precision) {
      if (answer.integer() != 1 << precision) continue;
      line.set_variable(L"LUPREC", precision);
      co_return;
    }
    line.print(L"Requires 1, 2, 4, 8, 16, 32, 64, 128, or 256.");
  }
}

Flow<> units_command(CommandLine& line) {
  co_await ask_setting(line, L"LUNITS",
                       L"Report formats: 1 Scientific, 2 Decimal, 3 Engineering, "
                       L"4 Architectural, 5 Fractional.  Enter choice, 1 to 5",
                       1, 5, 0);
  if (line.integer_variable(L"LUNITS") >= 4)
    co_await ask_denominator(line);
  else
    co_await ask_setting(line, L"LUPREC",
                         L"Enter number of digits to right of decimal point (0 to 8)", 0, 8, 0);
  co_await ask_setting(line, L"AUNITS",
                       L"Systems of angle measure: 1 Decimal degrees, 2 Degrees/minutes/seconds, "
                       L"3 Grads, 4 Radians, 5 Surveyor's units.  Enter choice, 1 to 5",
                       1, 5, 1);
  co_await ask_setting(line, L"AUPREC",
                       L"Enter number of fractional places for display of angles (0 to 8)", 0, 8,
                       0);
  const Answer zero = co_await line.turn({.text = L"Enter direction for angle 0: "});
  if (zero.is_number()) line.set_variable(L"ANGBASE", zero.number);
  const Answer clockwise = co_await line.keyword(
      {.text = L"Measure angles clockwise? [Yes/No] <N>: ", .keywords = L"Yes No"});
  if (!clockwise.none()) line.set_variable(L"ANGDIR", clockwise.is(L"Yes") ? 1 : 0);
}

// --- LIMITS, BASE

Flow<> limits_command(CommandLine& line) {
  const Answer low = co_await line.point(
      {.text = L"Specify lower left corner or [ON/OFF]: ", .keywords = L"ON OFF"});
  if (low.is_keyword()) {
    line.set_variable(L"LIMCHECK", low.is(L"ON") ? 1 : 0);
    co_return;
  }
  const Answer high = co_await line.point({.text = L"Specify upper right corner: "});
  lisp::Interpreter& interp = line.session().interpreter();
  const AcGeMatrix3d to_user = line.to_user();
  const auto flat = [&](const Answer& answer) {
    const AcGePoint3d point = to_user * answer.point;
    return interp.list({lisp::Value::real(point.x), lisp::Value::real(point.y)});
  };
  if (low.is_point()) line.set_variable(L"LIMMIN", flat(low));
  if (high.is_point()) line.set_variable(L"LIMMAX", flat(high));
}

Flow<> elev_command(CommandLine& line) {
  const Answer elevation = co_await line.distance({.text = L"Specify new default elevation: "});
  const Answer thickness = co_await line.distance({.text = L"Specify new default thickness: "});
  if (elevation.is_number()) line.set_variable(L"ELEVATION", elevation.number);
  if (thickness.is_number()) line.set_variable(L"THICKNESS", thickness.number);
}

Flow<> base_command(CommandLine& line) {
  const Answer base = co_await line.point({.text = L"Enter base point: "});
  if (base.is_point())
    line.set_variable(L"INSBASE", list_of(line.session().interpreter(), base.point));
}

constexpr CommandRow kRows[] = {
    {"SETVAR", "SET", setvar_command, "variable, new value | ?, names",
     "sets a system variable, or lists them", CommandRow::kTransparent},
    {"COLOR", "COL COLOUR", color_command, "color", "sets the color of new objects"},
    {"UNITS", "UN", units_command,
     "length format, precision, angle format, precision, direction of angle 0, clockwise",
     "sets how lengths and angles are written"},
    {"LIMITS", "", limits_command, "lower left corner [ON/OFF], upper right corner",
     "sets the drawing's limits"},
    {"ELEV", "", elev_command, "elevation, thickness",
     "sets the elevation of points without Z, and the thickness of new objects"},
    {"BASE", "", base_command, "point", "sets the drawing's insertion base"},
};

}  // namespace

std::span<const CommandRow> variable_commands() { return kRows; }

}  // namespace cad
