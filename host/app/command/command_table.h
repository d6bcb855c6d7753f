#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "host/app/command/command_line.h"
#include "host/app/command/flow.h"

/// Commands are rows of tables, one table per source file or folder:
///     constexpr CommandRow kRows[] = {
///         {"LINE", "L", line_command, "first point, next points [Undo/Close], Enter",
///          "draws line segments"},
///     };
namespace cad {

struct CommandRow {
  const char* name;     ///< upper case, without "-"
  const char* aliases;  ///< others, separated by blanks
  Flow<> (*run)(CommandLine&);
  const char* prompts;  ///< its sequence of prompts, one line
  const char* help;
  enum Flag : unsigned {
    kTransparent = 1,    ///< may be used inside of another command
    kNoStep = 2,         ///< makes no step that U could take back
    kNoPickFirst = 8,    ///< objects selected beforehand are not what its first prompt wants
    kEndsWithEnter = 4,  ///< Esc ends it as Enter does: what is drawn so far stays
  };
  unsigned flags = 0;
};

/// The row of a name or alias in any letter case, "_", ".", "-" in front left out; null when there
/// is none.
const CommandRow* find_command(std::wstring_view name);

/// All rows by name, without the names of system variables.
std::vector<const CommandRow*> all_commands();

// The tables.
std::span<const CommandRow> block_commands();
std::span<const CommandRow> circle_commands();
std::span<const CommandRow> edit_commands();
std::span<const CommandRow> ellipse_commands();
std::span<const CommandRow> erase_commands();
std::span<const CommandRow> face_commands();
std::span<const CommandRow> inquiry_commands();
std::span<const CommandRow> insert_commands();
std::span<const CommandRow> layer_commands();
std::span<const CommandRow> line_commands();
std::span<const CommandRow> linetype_commands();
std::span<const CommandRow> polyline_commands();
std::span<const CommandRow> property_commands();
std::span<const CommandRow> purge_commands();
std::span<const CommandRow> refused_commands();
std::span<const CommandRow> shape_commands();
std::span<const CommandRow> style_commands();
std::span<const CommandRow> text_commands();
std::span<const CommandRow> ucs_commands();
std::span<const CommandRow> undo_commands();
std::span<const CommandRow> variable_commands();
std::span<const CommandRow> view_commands();

}  // namespace cad
