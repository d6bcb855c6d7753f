#include "host/app/command/command_table.h"
#include "host/app/command/settings/linetype_file.h"
#include "host/app/command/settings/records.h"
#include "host/app/data/entget.h"
#include "host/base/codepage.h"
#include "host/base/fold.h"
#include "host/db/make_object.h"

namespace cad {
namespace {

/// Names that mean a linetype without a record of their own.
std::wstring_view standing_name(std::wstring_view typed) {
  if (typed.starts_with(L"_")) typed.remove_prefix(1);
  for (const std::wstring_view name : {L"ByLayer", L"ByBlock", L"Continuous"})
    if (equal_no_case(typed, name)) return name;
  return {};
}

Flow<> load_one(CommandLine& line, LinetypePattern pattern) {
  if (pattern.complex) {
    line.refuse(L"linetype " + pattern.name +
                L" holds texts or shapes, which are not read from linetype files");
    co_return;
  }
  const AcDbObjectId known = find_record(line.database(), "LTYPE", pattern.name);
  if (known.isNull()) {
    if (line.check(make_record(line.database(), pattern.groups())))
      line.remark(L"Linetype " + pattern.name + L" loaded.");
    co_return;
  }
  if (!line.spares_warning(3)) {
    const std::wstring text =
        L"Linetype \"" + group_text(known, 2) + L"\" is already loaded. Reload it? [Yes/No] <Y>: ";
    const Answer again = co_await line.keyword({.text = text, .keywords = L"Yes No"});
    if (again.is(L"No")) co_return;
  }
  line.check(change_object(known, pattern.groups()));
}

Flow<> load_linetypes(CommandLine& line) {
  const Answer names =
      co_await line.text({.text = L"Enter linetype(s) to load: ", .bits = kNoEnter});
  const Answer file =
      co_await line.text({.text = L"Enter name of linetype file to search <acad.lin>: "});
  const auto read = read_linetype_file(file.none() ? L"acad.lin" : file.text);
  if (!line.check(read)) co_return;
  const std::vector<LinetypePattern> patterns = *read;
  const std::vector<std::wstring> wanted = comma_parts(names.text);
  for (const std::wstring& name : wanted) {
    bool any = false;
    for (const LinetypePattern& pattern : patterns) {
      if (!equal_no_case(pattern.name, name) && !matches_no_case(pattern.name, name)) continue;
      any = true;
      co_await load_one(line, pattern);
      if (line.passing_over()) co_return;
    }
    if (!any) line.print(L"Linetype " + name + L" is not in that file.");
  }
}

Flow<> set_linetype(CommandLine& line) {
  const std::wstring text = L"Specify linetype name <" + line.text_variable(L"CELTYPE") + L">: ";
  const Answer name = co_await line.text({.text = text});
  if (name.none()) co_return;
  std::wstring wanted(standing_name(name.text));
  if (wanted.empty()) {
    AcDbObjectId record = find_record(line.database(), "LTYPE", name.text);
    if (record.isNull()) {
      line.refuse(L"Linetype \"" + name.text + L"\" not found.  Load it first.");
      co_return;
    }
    wanted = group_text(record, 2);
  }
  line.set_variable(L"CELTYPE", wanted);
}

Flow<> linetype_command(CommandLine& line) {
  for (;;) {
    const Answer option = co_await line.keyword(
        {.text = L"Enter an option [?/Load/Set]: ", .keywords = L"? Create Load Set"});
    if (option.none()) co_return;
    if (option.is(L"?"))
      for (const AcDbObjectId id : all_records(line.database(), "LTYPE"))
        line.print(L"\"" + group_text(id, 2) + L"\"  " + group_text(id, 3));
    if (option.is(L"Load")) co_await load_linetypes(line);
    if (option.is(L"Set")) co_await set_linetype(line);
    if (option.is(L"Create")) line.refuse(L"Create is not offered: write the linetype file");
    if (line.passing_over()) co_return;
  }
}

constexpr CommandRow kRows[] = {
    {"LINETYPE", "LT LTYPE", linetype_command, "[?] | Load, names, file | Set, name ..., Enter",
     "loads linetypes, and sets that of new objects"},
};

}  // namespace

std::span<const CommandRow> linetype_commands() { return kRows; }

}  // namespace cad
