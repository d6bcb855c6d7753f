#include "host/app/command/edit/edit_commands.h"

#include <vector>

namespace cad {

std::span<const CommandRow> edit_commands() {
  static const std::vector<CommandRow> rows = [] {
    std::vector<CommandRow> all;
    for (const std::span<const CommandRow> table :
         {array_commands(), break_commands(), change_commands(), corner_commands(),
          divide_commands(), explode_commands(), join_commands(), match_commands(), move_commands(),
          offset_commands(), pedit_commands(), stretch_commands(), trim_commands()}) {
      all.insert(all.end(), table.begin(), table.end());
    }
    return all;
  }();
  return rows;
}

}  // namespace cad
