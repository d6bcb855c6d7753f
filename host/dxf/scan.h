#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "host/base/result.h"
#include "host/dxf/dialect.h"

namespace cad::dxf {

/// The sections whose records the scanner looks into; everything else is kept whole.
enum class Section : std::uint8_t {
  kNone,
  kHeader,
  kClasses,
  kTables,
  kBlocks,
  kEntities,
  kObjects,
  kOther
};

/// One record: a group 0 and the tags up to the next group 0.
struct RecordMark {
  std::string_view kind;     ///< value of group 0, points into the bytes
  std::uint64_t begin = 0;   ///< offset of the group code 0
  std::uint64_t end = 0;     ///< offset of the next record's group code 0
  std::uint64_t handle = 0;  ///< 0 when the record has none
  std::uint64_t owner = 0;   ///< group 330 of the frame, 0 when absent
  Section section = Section::kNone;
};

/// Receives the records of a drawing in file order, SECTION, TABLE, BLOCK and their ends included.
class RecordSink {
 public:
  virtual ~RecordSink() = default;
  /// An error ends the scan and becomes its result.
  virtual Status record(const RecordMark& mark) = 0;
};

/// What is known of a drawing before its records are read.
struct Preamble {
  Dialect dialect;
  std::string version;      ///< $ACADVER, empty when the header lacks it
  std::string code_page;    ///< $DWGCODEPAGE as spelled, empty when absent
  std::uint64_t start = 0;  ///< offset of the first tag
};

/// Reads the start of the bytes: binary or ASCII, line ends, release and code page.
/// Fails for bytes that are no drawing.
Result<Preamble> read_preamble(std::string_view bytes, const std::string& name);

/// One pass over all bytes. Checks that every group code is a number, that sections are closed and
/// that the drawing ends with EOF; bytes behind EOF are not looked at. Errors name the line (ASCII)
/// or the byte offset (binary), under `name`.
Status scan_records(std::string_view bytes, const Preamble& preamble, const std::string& name,
                    RecordSink& sink);

/// "plan.dxf:1042" for ASCII, "plan.dxf, byte 4711" for binary bytes.
std::string place(std::string_view bytes, const Dialect& dialect, const std::string& name,
                  std::uint64_t offset);

}  // namespace cad::dxf
