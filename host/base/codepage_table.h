#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "host/base/codepage.h"

/// Tables behind codepage.h; nobody else includes this.
namespace cad {

/// One code page of single and double bytes as flat tables; 0 is "no such character". ASCII is not
/// in it, being the same everywhere. All characters lie in the BMP, and none is a surrogate.
struct CodePageTable {
  /// Codes are one byte, or lead << 8 | trail.
  using Row = std::array<char16_t, 256>;

  CodePageTable() : codes(0x10000) {}

  char16_t& cell(unsigned code);

  Row single{};
  std::array<std::uint8_t, 256> row_of_lead{};  // index + 1 into rows; 0: not a lead byte
  std::vector<Row> rows;
  std::vector<std::uint16_t> codes;  // by character; the spelling that is written
};

/// The table of a page other than UTF-8, built at the first call. A page the system's converter
/// lacks gets the one of 1252, which is built in.
const CodePageTable& code_page_table(CodePage page);

}  // namespace cad
