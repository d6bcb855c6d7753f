#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "tests/host/app/small_drawing.h"

/// Names of blocks and their records.
inline constexpr std::pair<std::string_view, std::string_view> kPlannedBlocks[] = {
    {"WELL", "31"}, {"IN", "32"}, {"OUT", "33"}, {"B", "34"}};

/// A drawing of these entities and blocks, "code value" in each line, with the layers 0, OFF,
/// FROZEN and LOCKED.
inline std::string plan_drawing(std::string_view entities, std::string_view blocks = {}) {
  std::string lines = R"(0 SECTION
2 HEADER
9 $ACADVER
1 AC1027
9 $HANDSEED
5 1000
0 ENDSEC
0 SECTION
2 TABLES
0 TABLE
2 LAYER
5 2
330 0
100 AcDbSymbolTable
70 4
)";
  struct Layer {
    const char* handle;
    const char* name;
    int flags;
    int color;
  };
  for (const Layer& layer : {Layer{"10", "0", 0, 7}, Layer{"11", "OFF", 0, -7},
                             Layer{"12", "FROZEN", 1, 7}, Layer{"13", "LOCKED", 4, 7}}) {
    lines += std::string("0 LAYER\n5 ") + layer.handle +
             "\n330 2\n100 AcDbSymbolTableRecord\n100 AcDbLayerTableRecord\n2 " + layer.name +
             "\n70 " + std::to_string(layer.flags) + "\n62 " + std::to_string(layer.color) +
             "\n6 Continuous\n";
  }
  lines += R"(0 ENDTAB
0 TABLE
2 BLOCK_RECORD
5 1
330 0
100 AcDbSymbolTable
70 2
0 BLOCK_RECORD
5 1F
330 1
100 AcDbSymbolTableRecord
100 AcDbBlockTableRecord
2 *Model_Space
0 BLOCK_RECORD
5 1B
330 1
100 AcDbSymbolTableRecord
100 AcDbBlockTableRecord
2 *Paper_Space
)";
  for (const auto& [name, handle] : kPlannedBlocks)
    lines += "0 BLOCK_RECORD\n5 " + std::string(handle) +
             "\n330 1\n100 AcDbSymbolTableRecord\n100 AcDbBlockTableRecord\n2 " +
             std::string(name) + "\n";
  lines += R"(0 ENDTAB
0 ENDSEC
0 SECTION
2 BLOCKS
0 BLOCK
5 20
330 1F
100 AcDbEntity
8 0
100 AcDbBlockBegin
2 *Model_Space
70 0
10 0.0
20 0.0
30 0.0
0 ENDBLK
5 21
330 1F
100 AcDbEntity
8 0
100 AcDbBlockEnd
)";
  lines += blocks;
  lines += "0 ENDSEC\n0 SECTION\n2 ENTITIES\n";
  lines += entities;
  lines += "0 ENDSEC\n0 EOF\n";
  return dxf(lines);
}

inline std::string planned(std::string_view kind, std::string_view handle, std::string_view part,
                           std::string_view tags, std::string_view layer = "0") {
  return "0 " + std::string(kind) + "\n5 " + std::string(handle) + "\n330 1F\n100 AcDbEntity\n8 " +
         std::string(layer) + "\n100 " + std::string(part) + "\n" + std::string(tags);
}
inline std::string line(std::string_view handle, double x1, double y1, double x2, double y2,
                        std::string_view layer = "0") {
  const auto n = [](double value) { return std::to_string(value); };
  return planned(
      "LINE", handle, "AcDbLine",
      "10 " + n(x1) + "\n20 " + n(y1) + "\n30 0\n11 " + n(x2) + "\n21 " + n(y2) + "\n31 0\n",
      layer);
}
inline std::string circle(std::string_view handle, double x, double y, double r,
                          std::string_view layer = "0") {
  const auto n = [](double value) { return std::to_string(value); };
  return planned("CIRCLE", handle, "AcDbCircle",
                 "10 " + n(x) + "\n20 " + n(y) + "\n30 0\n40 " + n(r) + "\n", layer);
}
/// One of kPlannedBlocks.
inline std::string planned_block(std::string_view name, std::string_view entities) {
  std::string owner;
  for (const auto& [known, handle] : kPlannedBlocks)
    if (known == name) owner = "330 " + std::string(handle) + "\n";
  return "0 BLOCK\n" + owner + "100 AcDbEntity\n8 0\n100 AcDbBlockBegin\n2 " + std::string(name) +
         "\n70 0\n10 0\n20 0\n30 0\n" + std::string(entities) + "0 ENDBLK\n" + owner +
         "100 AcDbEntity\n8 0\n100 AcDbBlockEnd\n";
}
