#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

#include "host/base/result.h"

namespace cad::dwg {

struct Limits {
  std::chrono::milliseconds time = std::chrono::minutes(3);
  std::uint64_t file_bytes = std::uint64_t{4} << 30;  ///< of each file it writes
};

/// Runs a program to its end, without a shell and without input; what it prints on stderr goes to
/// the file `log`. `words` are the program, a path, and its arguments. Done when it ended with
/// status 0. When its time is over it is killed together with what it started. The error tells what
/// happened ("took more than 180 s and was stopped"), with the program's own last line where it
/// printed one, and names no place.
Status run_program(const std::vector<std::string>& words, const std::string& log,
                   const Limits& limits);

}  // namespace cad::dwg
