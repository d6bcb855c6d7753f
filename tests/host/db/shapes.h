#pragma once

#include <string>
#include <string_view>

#include "tests/host/dxf/drawing_parts.h"
#include "tests/host/dxf/written.h"

/// A drawing of these entities, noted one tag per line; handles from 100 on are free for them.
/// Model space is 1F; there is a block record 1A of a block BOX with a LINE 25 and a CIRCLE 26.
inline std::string drawing_of(std::string_view entities, std::string_view version = "AC1027") {
  constexpr std::string_view kStyle = R"(0 STYLE
5 14
330 3
100 AcDbSymbolTableRecord
100 AcDbTextStyleTableRecord
2 Standard
70 0
40 0.0
41 1.0
50 0.0
71 0
42 2.5
3 txt
4 
)";
  constexpr std::string_view kBox = R"(0 LINE
5 25
330 1A
100 AcDbEntity
8 0
100 AcDbLine
10 1.0
20 1.0
30 0.0
11 3.0
21 1.0
31 0.0
0 CIRCLE
5 26
330 1A
100 AcDbEntity
8 PIPES
62 0
100 AcDbCircle
10 2.0
20 1.0
30 0.0
40 0.5
0 ATTDEF
5 27
330 1A
100 AcDbEntity
8 0
100 AcDbText
10 1.0
20 1.0
30 0.0
40 1.0
1 W0
100 AcDbAttributeDefinition
3 Number?
2 NUMBER
70 0
)";
  constexpr std::string_view kDimension = R"(0 LINE
5 2A
330 1D
100 AcDbEntity
8 0
100 AcDbLine
10 0.0
20 5.0
30 0.0
11 10.0
21 5.0
31 0.0
)";
  const std::string layers = noted::layer("10", "0") + noted::layer("11", "LOCKED", 4, 3) +
                             noted::layer("12", "PIPES", 0, 3);
  const std::string block_records =
      noted::block_record("1F", "*Model_Space") + noted::block_record("1B", "*Paper_Space") +
      noted::block_record("1A", "BOX") + noted::block_record("1D", "*D1");
  const std::string tables = noted::table("LAYER", "2", 2, layers) +
                             noted::table("STYLE", "3", 1, kStyle) +
                             noted::table("APPID", "4", 1, noted::application("15", "4", "PN")) +
                             noted::table("BLOCK_RECORD", "1", 3, block_records);
  const std::string blocks =
      noted::block({.name = "*Model_Space", .record = "1F", .begin = "20", .end = "21"}) +
      noted::block(
          {.name = "*Paper_Space", .record = "1B", .begin = "22", .end = "23", .in_paper = true}) +
      noted::block({.name = "BOX",
                    .record = "1A",
                    .begin = "24",
                    .end = "28",
                    .flags = 2,
                    .base = "10 1.0\n20 1.0\n30 0.0\n",
                    .entities = kBox}) +
      noted::block({.name = "*D1",
                    .record = "1D",
                    .begin = "29",
                    .end = "2B",
                    .flags = 1,
                    .entities = kDimension});
  const std::string header = noted::join("9 $ACADVER\n1 ", version, "\n9 $HANDSEED\n5 1000\n");
  return written::ascii(noted::join(
      noted::section("HEADER", header), noted::section("TABLES", tables),
      noted::section("BLOCKS", blocks), noted::section("ENTITIES", entities),
      noted::section("OBJECTS", "0 DICTIONARY\n5 C\n330 0\n100 AcDbDictionary\n281 1\n"),
      "0 EOF\n"));
}
