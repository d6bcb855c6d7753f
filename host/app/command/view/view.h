#pragma once

#include "host/app/command/command_line.h"

/// The view that a screen would show: its centre and height (VIEWCTR, VIEWSIZE).
namespace cad {

AcGePoint3d view_centre(const CommandLine& line);  ///< of the world
double view_height(const CommandLine& line);
/// Width over height of the screen (SCREENSIZE).
double screen_ratio(const CommandLine& line);
void set_view(CommandLine& line, const AcGePoint3d& centre, double height);

}  // namespace cad
