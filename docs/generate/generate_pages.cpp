// Writes the tables of functions, commands and system variables into pages of the documentation:
// generate_pages [--check] PAGE...
// What stands between "<!-- generated: NAME -->" and "<!-- end of NAME -->" is replaced. With
// --check nothing is written, and a page that would change is a failure.

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "host/app/builtin_tables.h"
#include "host/app/command/command_table.h"
#include "host/app/host.h"
#include "host/app/session.h"
#include "host/app/variables/system_variable_rows.h"
#include "host/lisp/names.h"
#include "host/lisp/tables.h"

namespace {

using cad::lisp::Builtin;

struct Group {
  const char* title;
  std::vector<std::span<const Builtin>> tables;
};

std::vector<Group> function_groups() {
  using namespace cad;
  using namespace cad::lisp;
  return {
      {"Control", {control_functions(), trace_functions()}},
      {"Lists", {list_functions(), list_search_functions()}},
      {"Numbers", {number_functions(), compare_functions()}},
      {"Kinds and symbols", {predicate_functions(), symbol_functions(), namespace_functions()}},
      {"Texts",
       {string_functions(), string_search_functions(), convert_functions(), unit_functions()}},
      {"Points", {geometry_functions(), coordinate_functions(), curve_functions()}},
      {"Printing and files", {print_functions(), file_functions(), path_functions()}},
      {"The drawing",
       {entity_functions(), make_functions(), selection_functions(), symbol_table_functions(),
        dictionary_functions(), ldata_functions(), property_functions()}},
      {"Questions to the user", {prompt_functions()}},
      {"Commands and variables", {command_functions(), host_functions()}},
      {"Loading, settings, documents",
       {loading_functions(), environment_functions(), menu_functions(), blackboard_functions()}},
      {"The screen", {display_functions()}},
      {"Functions that fail", {unsupported_functions()}},
  };
}

/// A cell of a table: a bar would end it.
std::string cell(std::string_view text) {
  std::string out;
  for (const char c : text) out += c == '|' ? std::string("\\|") : std::string(1, c);
  return out;
}

std::string code(std::string_view text) { return "`" + cell(text) + "`"; }

template <class Row>
void add_row(std::string& page, const Row& row) {
  page += "| " + code(row.usage) + " | " + cell(row.help) + " |\n";
}

constexpr char kFunctionHead[] = "| call | what it does |\n|---|---|\n";

std::string functions_text(AcApDocument& document) {
  std::set<std::string> told;
  std::string page = std::string("### Special forms\n\n") + kFunctionHead;
  for (const auto& table : {cad::lisp::special_forms(), cad::lisp::trace_forms()})
    for (const auto& row : table) {
      add_row(page, row);
      told.insert(row.name);
    }
  for (const Group& group : function_groups()) {
    page += "\n### " + std::string(group.title) + "\n\n" + kFunctionHead;
    for (const auto& table : group.tables)
      for (const Builtin& row : table) {
        add_row(page, row);
        told.insert(row.name);
      }
  }
  // A table that has no group yet must not be lost.
  std::string others;
  cad::lisp::Interpreter& interp = document.session().interpreter();
  for (const std::wstring& name : interp.bound_names()) {
    const cad::lisp::Value value = interp.variable(name);
    if (value.is(cad::lisp::Kind::kSubr) && !told.contains(value.subr()->row->name))
      add_row(others, *value.subr()->row);
  }
  return others.empty() ? page : page + "\n### Others\n\n" + kFunctionHead + others;
}

std::string commands_text() {
  std::string page = "| command | also | prompts | what it does |\n|---|---|---|---|\n";
  for (const cad::CommandRow* row : cad::all_commands())
    page += "| " + code(row->name) + " | " + cell(row->aliases) + " | " + cell(row->prompts) +
            " | " + cell(row->help) + " |\n";
  return page;
}

std::string names_of(cad::VariableRow::Source source) {
  std::vector<std::string> names;
  for (const cad::VariableRow& row : cad::system_variable_rows())
    if (row.source == source) names.emplace_back(row.name);
  std::ranges::sort(names);
  std::string text;
  for (const std::string& name : names) text += (text.empty() ? "`" : " `") + name + "`";
  return text;
}

std::string variables_text() {
  using Source = cad::VariableRow::Source;
  struct Line {
    Source source;
    const char* kind;
  };
  constexpr Line kLines[] = {{Source::kHeader, "of the drawing, saved with it"},
                             {Source::kHeaderOnly, "of the drawing, read-only"},
                             {Source::kSession, "of the session"},
                             {Source::kComputed, "found out when asked, read-only"}};
  std::string page = "| kind | names |\n|---|---|\n";
  for (const Line& line : kLines)
    page += "| " + std::string(line.kind) + " | " + names_of(line.source) + " |\n";
  return page;
}

/// False when the page lacks the end of a region.
bool replace_region(std::string& page, const std::string& name, const std::string& text) {
  const std::string begin = "<!-- generated: " + name + " -->\n";
  const std::size_t from = page.find(begin);
  if (from == page.npos) return true;
  const std::size_t to = page.find("<!-- end of " + name + " -->", from);
  if (to == page.npos) return false;
  page.replace(from + begin.size(), to - from - begin.size(), "\n" + text + "\n");
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> arguments(argv + 1, argv + argc);
  cad::Host host;
  AcApDocument& document = *host.new_drawing();
  const bool check = std::ranges::find(arguments, "--check") != arguments.end();
  int status = 0;
  for (const std::string& path : arguments) {
    if (path == "--check") continue;
    std::ifstream in(path, std::ios::binary);
    const std::string page{std::istreambuf_iterator<char>(in), {}};
    std::string made = page;
    if (!in || !replace_region(made, "functions", functions_text(document)) ||
        !replace_region(made, "commands", commands_text()) ||
        !replace_region(made, "variables", variables_text())) {
      std::fprintf(stderr, "%s: cannot be read, or a generated region has no end\n", path.c_str());
      return 1;
    }
    if (made == page) continue;
    if (check) {
      std::fprintf(stderr, "%s: differs from the tables; run script/docs\n", path.c_str());
      status = 1;
      continue;
    }
    std::ofstream(path, std::ios::binary) << made;
    std::printf("%s: written\n", path.c_str());
  }
  return status;
}
