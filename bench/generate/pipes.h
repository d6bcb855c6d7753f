#pragma once

#include <cstdint>
#include <string>

#include "bench/generate/dxf_output.h"

namespace bench {

inline constexpr char kLabelLayer[] = "ZY-标注";
inline constexpr char kPipeLayer[] = "ZY-管线";

/// Lower than any handle of a pipe, above those of the skeleton.
inline constexpr std::uint64_t kFirstPipeHandle = 0x100;
inline constexpr std::uint64_t kHandlesPerPipe = 5;
inline constexpr std::uint64_t kPipesPerRow = 1000;
inline constexpr double kSpacing = 60.0;  ///< of rows and columns, drawing units

/// A well mixed number for each input.
std::uint64_t mixed(std::uint64_t n);

/// One labelled pipe. Everything follows from its number, so that both sections are written in a
/// stream and every run gives the same drawing.
struct Pipe {
  std::uint64_t line;  ///< handles
  std::uint64_t diameter_text;
  std::uint64_t length_text;
  std::uint64_t dictionary;
  std::uint64_t record;
  double x1, y1, x2, y2;  ///< drawing units
  int diameter;           ///< nominal, millimetres
  std::string length;     ///< metres with one decimal, as labelled
};

Pipe pipe_at(std::uint64_t number);

/// Upper right corner of a drawing of that many pipes.
struct Corner {
  double x, y;
};
Corner corner_of(std::uint64_t pipes);

/// The pipe's line, for ENTITIES; its extended data may follow.
void write_line(DxfOutput& out, const Pipe& pipe, std::uint64_t model_space);
/// Its two labels.
void write_labels(DxfOutput& out, const Pipe& pipe, std::uint64_t model_space);

/// The extension dictionary of the line and the annotation record in it, for OBJECTS.
void write_objects(DxfOutput& out, const Pipe& pipe);

}  // namespace bench
