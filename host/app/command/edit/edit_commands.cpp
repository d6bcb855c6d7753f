#include "host/app/command/edit/edit_commands.h"

#include <vector>

namespace cad {

std::span<const CommandRow> edit_commands() {
  static const std::vector<CommandRow> rows = [] {
    std::vector<CommandRow> all;
    for (const std::span<const CommandRow> table : {move_commands()}) {
      all.insert(all.end(), table.begin(), table.end());
    }
    return all;
  }();
  return rows;
}

}  // namespace cad
