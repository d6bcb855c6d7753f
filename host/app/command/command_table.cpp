#include "host/app/command/command_table.h"

#include <algorithm>
#include <map>

#include "host/base/codepage.h"
#include "host/base/fold.h"

namespace cad {
namespace {

using Names = std::map<std::string, const CommandRow*, LessNoCase>;

void add_names(Names& names, const CommandRow& row) {
  names.emplace(row.name, &row);
  std::string_view aliases = row.aliases;
  while (!aliases.empty()) {
    const std::size_t end = std::min(aliases.find(' '), aliases.size());
    if (end > 0) names.emplace(aliases.substr(0, end), &row);
    aliases.remove_prefix(std::min(end + 1, aliases.size()));
  }
}

const Names& names() {
  static const Names all = [] {
    Names made;
    for (const auto& table :
         {block_commands(),    circle_commands(), edit_commands(),     ellipse_commands(),
          erase_commands(),    face_commands(),   inquiry_commands(),  insert_commands(),
          layer_commands(),    line_commands(),   linetype_commands(), polyline_commands(),
          property_commands(), purge_commands(),  refused_commands(),  shape_commands(),
          style_commands(),    text_commands(),   ucs_commands(),      undo_commands(),
          variable_commands(), view_commands()})
      for (const CommandRow& row : table) add_names(made, row);
    return made;
  }();
  return all;
}

}  // namespace

const CommandRow* find_command(std::wstring_view name) {
  const std::size_t first = name.find_first_not_of(L"'_.-+");
  if (first == std::wstring_view::npos) return nullptr;
  const auto found = names().find(to_utf8(name.substr(first)));
  return found == names().end() ? nullptr : found->second;
}

std::vector<const CommandRow*> all_commands() {
  std::vector<const CommandRow*> rows;
  for (const auto& [name, row] : names())
    if (name == row->name) rows.push_back(row);
  return rows;
}

}  // namespace cad
