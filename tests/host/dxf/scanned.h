#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/dxf/scan.h"

namespace cad::dxf {

/// The records a scan delivered, or its error. Keeps the bytes its records point into.
struct Scanned : RecordSink {
  explicit Scanned(std::string file) : bytes(std::move(file)) {
    const Result<Preamble> found = read_preamble(bytes, "plan.dxf");
    if (!found) {
      error = found.error().message();
      return;
    }
    preamble = *found;
    if (const Status status = scan_records(bytes, preamble, "plan.dxf", *this); !status) {
      error = status.error().message();
    }
  }

  Status record(const RecordMark& mark) override {
    marks.push_back(mark);
    return {};
  }

  std::vector<std::string> kinds() const {
    std::vector<std::string> all;
    for (const RecordMark& mark : marks) all.emplace_back(mark.kind);
    return all;
  }
  /// The first record of that kind; a record without handle when there is none.
  RecordMark first(std::string_view kind) const {
    for (const RecordMark& mark : marks) {
      if (mark.kind == kind) return mark;
    }
    return {};
  }

  std::string bytes;
  std::vector<RecordMark> marks;
  Preamble preamble;
  std::string error;  ///< empty when the scan came to its end
};

}  // namespace cad::dxf
