#include "bench/generate/pipes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <numbers>
#include <string_view>

namespace bench {
namespace {

constexpr double kTextHeight = 2.5;
constexpr int kDiameters[] = {100, 150, 200, 300, 400, 500, 600, 800, 1000, 1200};

// Coordinates in a drawing carry a few decimals, not all a double has.
double rounded(double value) { return std::round(value * 1e6) / 1e6; }

struct Label {
  std::uint64_t handle;
  std::string_view text;
  double side;  ///< +1 above the pipe, -1 below
};

void write_label(DxfOutput& out, const Pipe& pipe, const Label& label, std::uint64_t model_space) {
  const double angle = std::atan2(pipe.y2 - pipe.y1, pipe.x2 - pipe.x1);
  const double off = label.side > 0 ? 1.0 : -1.0 - kTextHeight;
  out.text(0, "TEXT");
  out.handle(5, label.handle);
  out.handle(330, model_space);
  out.text(100, "AcDbEntity");
  out.text(8, kLabelLayer);
  out.text(100, "AcDbText");
  out.point(10, rounded((pipe.x1 + pipe.x2) / 2 - off * std::sin(angle)),
            rounded((pipe.y1 + pipe.y2) / 2 + off * std::cos(angle)));
  out.real(40, kTextHeight);
  out.text(1, label.text);
  out.real(50, rounded(angle * 180.0 / std::numbers::pi));
  out.text(100, "AcDbText");
}

}  // namespace

// splitmix64
std::uint64_t mixed(std::uint64_t n) {
  n += 0x9E3779B97F4A7C15u;
  n = (n ^ (n >> 30)) * 0xBF58476D1CE4E5B9u;
  n = (n ^ (n >> 27)) * 0x94D049BB133111EBu;
  return n ^ (n >> 31);
}

Pipe pipe_at(std::uint64_t number) {
  const std::uint64_t random = mixed(number);
  const double length = 10.0 + static_cast<double>(random % 400) / 10.0;
  const double angle =
      (static_cast<double>(random >> 16 & 0xFF) / 255.0 - 0.5) * std::numbers::pi / 2;

  Pipe pipe;
  pipe.line = kFirstPipeHandle + number * kHandlesPerPipe;
  pipe.diameter_text = pipe.line + 1;
  pipe.length_text = pipe.line + 2;
  pipe.dictionary = pipe.line + 3;
  pipe.record = pipe.line + 4;
  pipe.x1 = static_cast<double>(number % kPipesPerRow) * kSpacing;
  pipe.y1 = static_cast<double>(number / kPipesPerRow) * kSpacing;
  pipe.x2 = rounded(pipe.x1 + length * std::cos(angle));
  pipe.y2 = rounded(pipe.y1 + length * std::sin(angle));
  pipe.diameter = kDiameters[(random >> 32) % std::size(kDiameters)];
  std::array<char, 32> text;
  std::snprintf(text.data(), text.size(), "%.1f", length);
  pipe.length = text.data();
  return pipe;
}

Corner corner_of(std::uint64_t pipes) {
  const std::uint64_t rows = (pipes + kPipesPerRow - 1) / kPipesPerRow;
  return {static_cast<double>(std::min(pipes, kPipesPerRow)) * kSpacing,
          static_cast<double>(rows) * kSpacing};
}

void write_line(DxfOutput& out, const Pipe& pipe, std::uint64_t model_space) {
  out.text(0, "LINE");
  out.handle(5, pipe.line);
  out.text(102, "{ACAD_XDICTIONARY");
  out.handle(360, pipe.dictionary);
  out.text(102, "}");
  out.handle(330, model_space);
  out.text(100, "AcDbEntity");
  out.text(8, kPipeLayer);
  out.text(100, "AcDbLine");
  out.point(10, pipe.x1, pipe.y1);
  out.point(11, pipe.x2, pipe.y2);
}

void write_labels(DxfOutput& out, const Pipe& pipe, std::uint64_t model_space) {
  write_label(out, pipe, {pipe.diameter_text, "DN" + std::to_string(pipe.diameter), +1},
              model_space);
  write_label(out, pipe, {pipe.length_text, "L=" + pipe.length + "m", -1}, model_space);
}

void write_objects(DxfOutput& out, const Pipe& pipe) {
  out.text(0, "DICTIONARY");
  out.handle(5, pipe.dictionary);
  out.handle(330, pipe.line);
  out.text(100, "AcDbDictionary");
  out.integer(280, 1);
  out.integer(281, 1);
  out.text(3, "pcgb");
  out.handle(360, pipe.record);

  out.text(0, "XRECORD");
  out.handle(5, pipe.record);
  out.text(102, "{ACAD_REACTORS");
  out.handle(330, pipe.dictionary);
  out.text(102, "}");
  out.handle(330, pipe.dictionary);
  out.text(100, "AcDbXrecord");
  out.integer(280, 1);

  // Two items of eight texts: name, handle, prefix, value, suffix, separator, kind, extra.
  out.text(1, "pipe_dia");
  out.handle(1, pipe.diameter_text);
  out.text(1, "DN");
  out.integer(1, pipe.diameter);
  for (const char* rest : {"", "-", "", ""}) out.text(1, rest);
  out.text(1, "pipe_len");
  out.handle(1, pipe.length_text);
  out.text(1, "L=");
  out.text(1, pipe.length);
  for (const char* rest : {"m", "", "", ""}) out.text(1, rest);
}

}  // namespace bench
