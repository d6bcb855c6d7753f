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
  const std::string layers = noted::layer("10", "0") + noted::layer("11", "OFF", 0, -7) +
                             noted::layer("12", "FROZEN", 1) + noted::layer("13", "LOCKED", 4);
  std::string records =
      noted::block_record("1F", "*Model_Space") + noted::block_record("1B", "*Paper_Space");
  for (const auto& [name, handle] : kPlannedBlocks) records += noted::block_record(handle, name);
  const std::string space =
      noted::block({.name = "*Model_Space", .record = "1F", .begin = "20", .end = "21"});
  return dxf(
      noted::join(noted::section("HEADER", "9 $ACADVER\n1 AC1027\n9 $HANDSEED\n5 1000\n"),
                  noted::section("TABLES", noted::table("LAYER", "2", 4, layers) +
                                               noted::table("BLOCK_RECORD", "1", 2, records)),
                  noted::section("BLOCKS", space + std::string(blocks)),
                  noted::section("ENTITIES", entities), "0 EOF\n"));
}

inline std::string planned(std::string_view kind, std::string_view handle, std::string_view part,
                           std::string_view tags, std::string_view layer = "0") {
  return noted::entity(kind, handle, "1F", layer, part, tags);
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
  std::string_view record;
  for (const auto& [known, handle] : kPlannedBlocks)
    if (known == name) record = handle;
  return noted::block(
      {.name = name, .record = record, .base = "10 0\n20 0\n30 0\n", .entities = entities});
}
