#include "tests/host/db/plan.h"
#include "tests/host/dxf/drawing_parts.h"

namespace {

constexpr std::string_view kHeader = R"(9 $ACADVER
1 @
9 $DWGCODEPAGE
3 ANSI_936
9 $INSBASE
10 1.5
20 2.5
30 0.0
9 $CLAYER
8 0
9 $LTSCALE
40 2.5
9 $TILEMODE
70 1
9 $USERI1
70 -3
9 $FINGERPRINTGUID
2 {A^ B}
9 $HANDSEED
5 200
)";

constexpr std::string_view kClasses = R"(0 CLASS
1 GX_PIPE
2 CGxPipe
3 Gx
90 1
280 0
281 1
)";

constexpr std::string_view kStyle = R"(0 STYLE
5 14
330 3
100 AcDbSymbolTableRecord
100 AcDbTextStyleTableRecord
2 Standard
70 0
40 0.0
3 txt
)";

constexpr std::string_view kDimStyle = R"(0 DIMSTYLE
105 17
330 A
100 AcDbSymbolTableRecord
100 AcDbDimStyleTableRecord
2 Standard
70 0
)";

constexpr std::string_view kWell = R"(0 CIRCLE
5 20
330 1A
100 AcDbEntity
8 0
100 AcDbCircle
10 0.0
20 0.0
30 0.0
40 0.5
0 LINE
5 21
330 1A
100 AcDbEntity
8 0
100 AcDbLine
10 0.0
20 0.0
30 0.0
11 1.0
21 0.0
31 0.0
)";

constexpr std::string_view kEntities = R"(0 LINE
5 2F
330 18
100 AcDbEntity
8 0
62 3
370 25
100 AcDbLine
10 1.0
20 2.0
30 0.0
11 4.0
21 6.0
31 0.5
0 TEXT
5 30
102 {ACAD_REACTORS
330 C
102 }
330 18
100 AcDbEntity
8 0
100 AcDbText
10 10.0
20 20.0
30 0.0
40 2.5
1 DN300
50 90.0
41 0.8
7 Standard
72 1
11 11.0
21 20.0
31 0.0
100 AcDbText
73 2
0 LINE
5 31
330 18
100 AcDbEntity
8 locked
100 AcDbLine
10 0.0
20 0.0
30 0.0
11 1.0
21 1.0
31 0.0
0 MTEXT
5 32
330 18
100 AcDbEntity
8 0
100 AcDbMText
10 5.0
20 5.0
30 0.0
40 3.5
41 0.0
71 1
1 L=36.5\P{\H2;m}
7 Standard
0 POLYLINE
5 33
330 18
100 AcDbEntity
8 0
100 AcDb2dPolyline
66 1
10 0.0
20 0.0
30 0.0
0 VERTEX
5 34
330 33
100 AcDbEntity
8 0
100 AcDbVertex
10 0.0
20 0.0
30 0.0
0 VERTEX
5 35
330 33
100 AcDbEntity
8 0
100 AcDbVertex
10 9.0
20 0.0
30 0.0
0 SEQEND
5 36
330 33
100 AcDbEntity
8 0
0 INSERT
5 37
330 18
100 AcDbEntity
8 0
100 AcDbBlockReference
66 1
2 WELL
10 3.0
20 3.0
30 0.0
0 ATTRIB
5 38
330 37
100 AcDbEntity
8 0
100 AcDbText
10 3.0
20 3.0
30 0.0
40 1.0
1 W1
100 AcDbAttribute
2 NO
70 0
0 SEQEND
5 39
330 37
100 AcDbEntity
8 0
0 CIRCLE
5 3A
330 18
100 AcDbEntity
8 0
100 AcDbCircle
10 7.0
20 8.0
30 0.0
40 0.5
1001 ACAD
1000 other
1001 PN
1002 {
1000 well
1070 7
1071 70000
1040 36.5
1005 2F
1010 1.0
1020 2.0
1030 3.0
1004 00FF
1002 }
0 ACAD_PROXY_ENTITY
5 3B
330 18
100 AcDbEntity
8 0
100 AcDbProxyEntity
90 498
91 500
92 8
310 0102030405060708
93 16
310 AABBCCDD
94 0
0 TEXT
5 3C
330 19
100 AcDbEntity
67 1
8 0
100 AcDbText
10 0.0
20 0.0
30 0.0
40 2.5
1 A1
100 AcDbText
0 LINE
5 3D
330 18
100 AcDbEntity
8 0
100 AcDbLine
10 0.0
20 0.0
30 0.0
11 1.0
21 1.0
31 0.0
)";

constexpr std::string_view kObjects = R"(0 DICTIONARY
5 C
330 0
100 AcDbDictionary
281 1
3 ACAD_GROUP
350 D
3 PN
350 50
0 DICTIONARY
5 D
330 C
100 AcDbDictionary
281 1
0 DICTIONARY
5 50
330 C
100 AcDbDictionary
281 1
3 zeta
350 51
3 Alpha
350 52
3 beta
350 53
0 XRECORD
5 51
102 {ACAD_REACTORS
330 50
102 }
330 50
100 AcDbXrecord
280 1
1 last
280 5
0 XRECORD
5 52
330 50
100 AcDbXrecord
280 1
1 first
102 {not a group
102 }
0 XRECORD
5 53
330 50
100 AcDbXrecord
1 middle
330 FFF
330 2F
0 GX_NETWORK
5 54
330 C
100 CGxNetwork
90 3
1 a^Jb
40 1.50
)";

std::string tables() {
  const std::string layers = noted::layer("10", "0") + noted::layer("11", "LOCKED", 4, 1) +
                             noted::layer("12", "FROZEN", 1, 2) + noted::layer("13", "OFF", 0, -5);
  const std::string applications =
      noted::application("15", "9", "ACAD") + noted::application("16", "9", "PN");
  const std::string block_records = noted::block_record("18", "*Model_Space") +
                                    noted::block_record("19", "*Paper_Space") +
                                    noted::block_record("1A", "WELL");
  return noted::join(noted::table("LAYER", "2", 4, layers), noted::table("STYLE", "3", 1, kStyle),
                     noted::table("APPID", "9", 2, applications),
                     noted::table("DIMSTYLE", "A", 1, kDimStyle),
                     noted::table("BLOCK_RECORD", "1", 3, block_records));
}

/// Without the base points, which may be left out.
std::string blocks() {
  return noted::block(
             {.name = "*Model_Space", .record = "18", .begin = "1B", .end = "1C", .base = {}}) +
         noted::block({.name = "*Paper_Space",
                       .record = "19",
                       .begin = "1D",
                       .end = "1E",
                       .base = {},
                       .in_paper = true}) +
         noted::block({.name = "WELL",
                       .record = "1A",
                       .begin = "1F",
                       .end = "22",
                       .base = {},
                       .entities = kWell});
}

}  // namespace

std::string_view plan_note() {
  static const std::string note = noted::join(
      noted::section("HEADER", kHeader), noted::section("CLASSES", kClasses),
      noted::section("TABLES", tables()), noted::section("BLOCKS", blocks()),
      noted::section("ENTITIES", kEntities), noted::section("OBJECTS", kObjects), "0 EOF\n");
  return note;
}
