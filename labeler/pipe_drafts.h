#pragma once

#include "labeler/draft.h"

/// Labels of pipes.
namespace labeler {

/// Diameter, length, slope and direction of flow, as the settings order them ("xzgj").
Drafted draft_composite(const Owner& pipe);
/// Diameter at the pipe's end ("xdgj").
Drafted draft_end_diameter(const Owner& pipe);
/// Inverts ("xdbg_st", "xdbg_ed").
Drafted draft_start_invert(const Owner& pipe);
Drafted draft_end_invert(const Owner& pipe);
/// Length and diameter above, flow, speed and head loss below ("pcgb").
Drafted draft_calculation(const Owner& pipe);

// What labels of wells show of their pipes.

/// The diameter label as a piece, empty without diameter: its value alone where it is one whole
/// number, else the whole text, under another name. Parallel pipes are counted in front of it.
Piece diameter_piece(const Owner& pipe);
/// Invert elevations; nothing for a pipe that has none.
std::optional<double> start_invert(const CGxGd& pipe);
std::optional<double> end_invert(const CGxGd& pipe);
/// "J" water supply, "P" drainage, "Y" storm water: keys of settings and parts of layer names.
const wchar_t* system_letter(network::Kind kind);

}  // namespace labeler
