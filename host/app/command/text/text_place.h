#pragma once

#include <optional>
#include <string>

#include "host/app/command/command_line.h"
#include "host/app/command/draw/draw.h"
#include "host/app/command/flow.h"

namespace cad {

/// Where and how a line of text stands, as TEXT and ATTDEF ask for it; points and angle in the
/// user's coordinates.
struct TextPlace {
  std::wstring style;
  int horizontal = 0;  ///< group 72: 0 left, 1 centre, 2 right, 3 aligned, 4 middle, 5 fit
  int vertical = 0;    ///< group 73: 0 base line, 1 bottom, 2 middle, 3 top
  AcGePoint3d point;
  AcGePoint3d second;  ///< the other end of an aligned or fitted base line
  double height = 0.0;
  double angle = 0.0;
};

/// Asks for start point with justification and style, height unless the style fixes it, and
/// rotation.
Flow<TextPlace> ask_text_place(CommandLine& line);

/// Adds the groups of TEXT that place `text`; `vertical_code` is 73, or 74 in an ATTDEF.
void add_place(GroupList& groups, CommandLine& line, const TextPlace& place, std::wstring_view text,
               int vertical_code);

}  // namespace cad
