#pragma once

#include <string>
#include <string_view>

#include "tests/host/dxf/drawing_parts.h"
#include "tests/host/dxf/written.h"

/// DXF from lines that hold code and value side by side: "0 LINE\n8 0\n".
inline std::string dxf(std::string_view lines) {
  std::string out;
  written::for_each_tag(lines, [&](int code, std::string_view value) {
    out.append(std::to_string(code)).append("\n").append(value).append("\n");
  });
  return out;
}

/// A pipe (LINE 2A), its label (TEXT 2B, turned by 90 degrees, on a locked layer, with extended
/// data), a LWPOLYLINE (2C), a well (INSERT 2D with ATTRIB 2E), and a paper-space line (30).
inline std::string small_drawing() {
  constexpr std::string_view kHeader = R"(9 $ACADVER
1 AC1027
9 $DWGCODEPAGE
3 ANSI_936
9 $HANDSEED
5 100
9 $CLAYER
8 0
9 $LUPREC
70 3
9 $DIMZIN
70 8
9 $ANGBASE
50 90.0
9 $LTSCALE
40 2.5
9 $CECOLOR
62 256
)";
  constexpr std::string_view kCircle = R"(0 CIRCLE
5 25
330 1A
100 AcDbEntity
8 0
100 AcDbCircle
10 0.0
20 0.0
30 0.0
40 0.5
)";
  constexpr std::string_view kEntities = R"(0 LINE
5 2A
102 {ACAD_XDICTIONARY
360 50
102 }
330 1F
100 AcDbEntity
8 0
62 1
100 AcDbLine
10 0.0
20 0.0
30 0.0
11 30.0
21 40.0
31 0.0
0 TEXT
5 2B
330 1F
100 AcDbEntity
8 ZY-标注
100 AcDbText
10 15.0
20 20.0
30 0.0
40 2.5
1 DN300 管
50 90.0
7 Standard
100 AcDbText
1001 PIPENOTE
1000 label
1005 2A
1010 1.0
1020 2.0
1030 3.0
1070 7
1001 OTHER
1040 1.5
0 LWPOLYLINE
5 2C
330 1F
100 AcDbEntity
8 PIPES
6 DASHED
100 AcDbPolyline
90 2
70 1
38 5.0
10 1.0
20 2.0
42 0.5
10 3.0
20 4.0
0 INSERT
5 2D
330 1F
100 AcDbEntity
8 WELLS
66 1
100 AcDbBlockReference
2 WELL
10 7.0
20 8.0
30 0.0
0 ATTRIB
5 2E
330 2D
100 AcDbEntity
8 WELLS
100 AcDbText
10 7.0
20 8.0
30 0.0
40 1.0
1 W1
100 AcDbAttribute
2 NUMBER
70 0
0 SEQEND
5 2F
330 2D
100 AcDbEntity
8 WELLS
0 LINE
5 30
330 1B
100 AcDbEntity
67 1
8 0
100 AcDbLine
10 0.0
20 0.0
30 0.0
11 1.0
21 0.0
31 0.0
)";
  constexpr std::string_view kObjects = R"(0 DICTIONARY
5 C
330 0
100 AcDbDictionary
281 1
3 b_second
350 52
3 A_first
350 51
0 DICTIONARY
5 50
330 2A
100 AcDbDictionary
280 1
281 1
3 pcgb
360 53
0 XRECORD
5 51
330 C
100 AcDbXrecord
280 1
1 one
0 XRECORD
5 52
330 C
100 AcDbXrecord
280 1
1 two
50 90.0
0 XRECORD
5 53
330 50
100 AcDbXrecord
280 1
1 three
0 LAYOUT
5 41
330 C
100 AcDbPlotSettings
1 page set-up
100 AcDbLayout
1 A3 横向
)";
  const std::string layers =
      noted::layer("10", "0", 0, 7, "370 -3\n") + noted::layer("11", "ZY-标注", 4, 3);
  const std::string block_records = noted::block_record("1F", "*Model_Space", "340 0\n") +
                                    noted::block_record("1B", "*Paper_Space", "340 41\n") +
                                    noted::block_record("1A", "WELL", "340 0\n");
  const std::string blocks = noted::block({.name = "*Model_Space",
                                           .record = "1F",
                                           .begin = "20",
                                           .end = "21",
                                           .more = "3 *Model_Space\n1 \n"}) +
                             noted::block({.name = "*Paper_Space",
                                           .record = "1B",
                                           .begin = "22",
                                           .end = "23",
                                           .more = "3 *Paper_Space\n1 \n",
                                           .in_paper = true}) +
                             noted::block({.name = "WELL",
                                           .record = "1A",
                                           .begin = "24",
                                           .end = "26",
                                           .flags = 2,
                                           .base = "10 1.0\n20 2.0\n30 0.0\n",
                                           .more = "3 WELL\n1 \n",
                                           .entities = kCircle});
  return dxf(
      noted::join(noted::section("HEADER", kHeader),
                  noted::section("TABLES", noted::table("LAYER", "2", 2, layers) +
                                               noted::table("BLOCK_RECORD", "1", 3, block_records)),
                  noted::section("BLOCKS", blocks), noted::section("ENTITIES", kEntities),
                  noted::section("OBJECTS", kObjects), "0 EOF\n"));
}
