#pragma once

#include <string>
#include <string_view>

#include "tests/host/dxf/written.h"

/// A drawing of nothing but these entities and blocks, noted one tag per line; without tables.
inline std::string little_drawing(std::string_view entities, std::string_view blocks = {}) {
  std::string note = "0 SECTION\n2 HEADER\n9 $ACADVER\n1 AC1027\n9 $HANDSEED\n5 1000\n0 ENDSEC\n";
  note += "0 SECTION\n2 BLOCKS\n";
  note += blocks;
  note += "0 ENDSEC\n0 SECTION\n2 ENTITIES\n";
  note += entities;
  note += "0 ENDSEC\n0 EOF\n";
  return written::ascii(note);
}

/// A block of these entities with its base point at x, y.
inline std::string block(std::string_view name, std::string_view entities,
                         std::string_view base = "10 0\n20 0\n30 0\n") {
  std::string note = "0 BLOCK\n100 AcDbEntity\n8 0\n100 AcDbBlockBegin\n2 ";
  note += name;
  note += "\n70 0\n";
  note += base;
  note += entities;
  note += "0 ENDBLK\n100 AcDbEntity\n8 0\n100 AcDbBlockEnd\n";
  return note;
}
