#pragma once

#include <cstdint>

#include "bench/generate/dxf_output.h"
#include "bench/generate/pipes.h"

namespace bench {

/// Pipes joined by wells: every row of a drawing is a street of pipes from well to well, in turn
/// drainage, storm water and water supply. Pipes and wells carry the extended data of the
/// application PIPENOTE; every fourth pipe does not name its wells, which are then those at its
/// ends.
class Network {
 public:
  explicit Network(std::uint64_t pipes) : pipes_(pipes) {}

  /// Numbered behind the pipes' own handles.
  std::uint64_t wells() const;
  std::uint64_t first_free_handle() const;
  /// As bench::pipe_at(), but from well to well.
  Pipe pipe_at(std::uint64_t number) const;

  /// The extended data of that pipe, to follow its LINE.
  void write_pipe_data(DxfOutput& out, std::uint64_t number) const;
  /// A circle with its data.
  void write_well(DxfOutput& out, std::uint64_t well, std::uint64_t model_space) const;

 private:
  std::uint64_t pipes_;
};

}  // namespace bench
