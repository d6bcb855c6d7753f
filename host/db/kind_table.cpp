#include "host/db/kind_table.h"

#include <charconv>
#include <span>

namespace cad {
namespace {

using dxf::Release;
constexpr auto kEntity = KindPlace::kEntity;
constexpr auto kSubEntity = KindPlace::kSubEntity;
constexpr auto kRecord = KindPlace::kRecord;
constexpr auto kObject = KindPlace::kObject;

/// One class part. Its groups in the order they are written:
///   10   may be left out        10!  is required
///   10*  repeats, by turns with the neighbours so marked      40+  repeats, together
///   10/  is a point without z   70=1 gets that value when it is left out
///   ~    in front: groups are written as they come
struct PartText {
  std::string_view marker;
  std::string_view groups;
};

/// A kind, or the variety of it whose group 70 has `value` under `mask`. The first row that fits
/// counts.
struct KindText {
  std::string_view kind;
  KindPlace place;
  Release since;
  std::int64_t mask;
  std::int64_t value;
  PartText parts[3];
};

constexpr PartText kEntityPart = {
    "AcDbEntity", "67 410 8 6 62 48 60 92 160 310* 370 390 347 348 420 430 440 284"};
constexpr PartText kRecordPart = {"AcDbSymbolTableRecord", ""};

constexpr std::string_view kText = "39 10! 40! 1! 50 41 51 7 71 72 11 210";
constexpr std::string_view kCorners = "10! 11! 12! 13=@12 39 210";
constexpr std::string_view kPolyline = "66=1 10=0,0,0 39 70=0 40 41 71 72 73 74 75 210";
constexpr std::string_view kVertex = "10! 40 41 42 70=0 50 91 71 72 73 74";
constexpr std::string_view kDimension =
    "280 2 10! 11 12 70! 71 72 41 42 73 74 75 1 53 54 51 210 3=$DIMSTYLE";
constexpr PartText kAligned = {"AcDbAlignedDimension", "12 13! 14! 50 52"};
constexpr std::string_view kRaster =
    "~ 90=0 10! 11! 12! 13! 340 70=7 280=0 281=50 282=50 283=0 360 71! 91! 14*/ 290";

constexpr KindText kKinds[] = {
    // Entities.
    {"LINE", kEntity, Release::kR10, 0, 0, {{"AcDbLine", "39 10! 11! 210"}}},
    {"POINT", kEntity, Release::kR10, 0, 0, {{"AcDbPoint", "10! 39 210 50"}}},
    {"CIRCLE", kEntity, Release::kR10, 0, 0, {{"AcDbCircle", "39 10! 40! 210"}}},
    {"ARC",
     kEntity,
     Release::kR10,
     0,
     0,
     {{"AcDbCircle", "39 10! 40! 210"}, {"AcDbArc", "50! 51!"}}},
    {"ELLIPSE",
     kEntity,
     Release::kR13,
     0,
     0,
     {{"AcDbEllipse", "10! 11! 210 40! 41=0.0 42=6.283185307179586"}}},
    {"TEXT", kEntity, Release::kR10, 0, 0, {{"AcDbText", kText}, {"AcDbText", "73"}}},
    {"MTEXT",
     kEntity,
     Release::kR13,
     0,
     0,
     {{"AcDbMText",
       "10! 40=$TEXTSIZE 41=0.0 46 71=1 72=5 3* 1!* 7 210 11 42 43 50 73 44 90 63 421 431 "
       "45 441 75 76 78 79 49 74"}}},
    {"LWPOLYLINE",
     kEntity,
     Release::kR14,
     0,
     0,
     {{"AcDbPolyline", "90=0 70=0 43 38 39 10!*/ 40* 41* 42* 91* 210"}}},
    {"POLYLINE", kEntity, Release::kR10, 8, 8, {{"AcDb3dPolyline", kPolyline}}},
    {"POLYLINE", kEntity, Release::kR10, 16, 16, {{"AcDbPolygonMesh", kPolyline}}},
    {"POLYLINE", kEntity, Release::kR10, 64, 64, {{"AcDbPolyFaceMesh", kPolyline}}},
    {"POLYLINE", kEntity, Release::kR10, 0, 0, {{"AcDb2dPolyline", kPolyline}}},
    {"INSERT",
     kEntity,
     Release::kR10,
     0,
     0,
     {{"AcDbBlockReference", "66 2! 10! 41 42 43 50 70 71 44 45 210"}}},
    {"ATTDEF",
     kEntity,
     Release::kR10,
     0,
     0,
     {{"AcDbText", "39 10! 40! 1= 50 41 51 7 71 72 11 210"},
      {"AcDbAttributeDefinition", "280* 3= 2! 70=0 73 74"}}},
    {"SOLID", kEntity, Release::kR10, 0, 0, {{"AcDbTrace", kCorners}}},
    {"TRACE", kEntity, Release::kR10, 0, 0, {{"AcDbTrace", kCorners}}},
    {"3DFACE", kEntity, Release::kR10, 0, 0, {{"AcDbFace", "10! 11! 12! 13=@12 70"}}},
    {"RAY", kEntity, Release::kR13, 0, 0, {{"AcDbRay", "10! 11!"}}},
    {"XLINE", kEntity, Release::kR13, 0, 0, {{"AcDbXline", "10! 11!"}}},
    {"SPLINE",
     kEntity,
     Release::kR13,
     0,
     0,
     {{"AcDbSpline", "210 70! 71! 72=0 73=0 74=0 42 43 44 12 13 40+ 41+ 10+ 11+"}}},
    {"HATCH",
     kEntity,
     Release::kR14,
     0,
     0,
     {{"AcDbHatch",
       "~ 10!* 210 2! 70! 71=0 91!* 92* 93* 72* 73* 11* 40* 42* 50* 51* 94* 95* 96* 12* 13* 97* "
       "330* 75! 76! 52 41 77 78 53* 43* 44* 45* 46* 79* 49* 47 98! 450 451 460 453 463* 63* 421* "
       "452 461 462 470"}}},
    {"LEADER",
     kEntity,
     Release::kR13,
     0,
     0,
     {{"AcDbLeader",
       "3=$DIMSTYLE 71=1 72=0 73=3 74=1 75=0 40=0.0 41=0.0 76=0 10!+ 340 210 211 212 213 77"}}},
    {"DIMENSION",
     kEntity,
     Release::kR10,
     7,
     0,
     {{"AcDbDimension", kDimension}, kAligned, {"AcDbRotatedDimension", ""}}},
    {"DIMENSION", kEntity, Release::kR10, 7, 1, {{"AcDbDimension", kDimension}, kAligned}},
    {"DIMENSION",
     kEntity,
     Release::kR10,
     7,
     2,
     {{"AcDbDimension", kDimension}, {"AcDb2LineAngularDimension", "13! 14! 15! 16! 40"}}},
    {"DIMENSION",
     kEntity,
     Release::kR10,
     7,
     3,
     {{"AcDbDimension", kDimension}, {"AcDbDiametricDimension", "15! 40"}}},
    {"DIMENSION",
     kEntity,
     Release::kR10,
     7,
     4,
     {{"AcDbDimension", kDimension}, {"AcDbRadialDimension", "15! 40"}}},
    {"DIMENSION",
     kEntity,
     Release::kR10,
     7,
     5,
     {{"AcDbDimension", kDimension}, {"AcDb3PointAngularDimension", "13! 14! 15! 16 40"}}},
    {"DIMENSION",
     kEntity,
     Release::kR10,
     7,
     6,
     {{"AcDbDimension", kDimension}, {"AcDbOrdinateDimension", "13! 14!"}}},
    {"WIPEOUT",
     kEntity,
     Release::kR2000,
     0,
     0,
     {{"AcDbRasterImage", kRaster}, {"AcDbWipeout", ""}}},
    // Parts of entities.
    {"VERTEX",
     kSubEntity,
     Release::kR10,
     192,
     192,
     {{"AcDbVertex", ""}, {"AcDbPolyFaceMeshVertex", kVertex}}},
    {"VERTEX",
     kSubEntity,
     Release::kR10,
     192,
     128,
     {{"AcDbFaceRecord", "10=0,0,0 70=128 71 72 73 74"}}},
    {"VERTEX",
     kSubEntity,
     Release::kR10,
     64,
     64,
     {{"AcDbVertex", ""}, {"AcDbPolygonMeshVertex", kVertex}}},
    {"VERTEX",
     kSubEntity,
     Release::kR10,
     32,
     32,
     {{"AcDbVertex", ""}, {"AcDb3dPolylineVertex", kVertex}}},
    {"VERTEX", kSubEntity, Release::kR10, 0, 0, {{"AcDbVertex", ""}, {"AcDb2dVertex", kVertex}}},
    {"ATTRIB",
     kSubEntity,
     Release::kR10,
     0,
     0,
     {{"AcDbText", kText}, {"AcDbAttribute", "280* 2! 70=0 73 74"}}},
    {"SEQEND", kSubEntity, Release::kR10, 0, 0, {}},
    // Records of symbol tables.
    {"LAYER",
     kRecord,
     Release::kR10,
     0,
     0,
     {{"AcDbLayerTableRecord", "2! 70=0 62=7 6=Continuous 290 370 390 347 348"}}},
    {"STYLE",
     kRecord,
     Release::kR10,
     0,
     0,
     {{"AcDbTextStyleTableRecord", "2! 70=0 40=0.0 41=1.0 50=0.0 71=0 42=2.5 3=txt 4="}}},
    {"LTYPE",
     kRecord,
     Release::kR10,
     0,
     0,
     {{"AcDbLinetypeTableRecord",
       "2! 70=0 3= 72=65 73=0 40=0.0 49* 74* 75* 340* 46* 50* 44* 45* 9*"}}},
    {"APPID", kRecord, Release::kR10, 0, 0, {{"AcDbRegAppTableRecord", "2! 70=0 71"}}},
    {"DIMSTYLE",
     kRecord,
     Release::kR10,
     0,
     0,
     {{"AcDbDimStyleTableRecord",
       "2! 70=0 3 4 5 6 7 40 41 42 43 44 45 46 47 48 49 50 140 141 142 143 144 145 146 147 148 69 "
       "71 72 73 74 75 76 77 78 79 90 170 171 172 173 174 175 176 177 178 179 270 271 272 273 274 "
       "275 276 277 278 279 280 281 282 283 284 285 286 287 288 289 290 294 340 341 342 343 344 "
       "345 346 347 371 372"}}},
    {"VIEW",
     kRecord,
     Release::kR10,
     0,
     0,
     {{"AcDbViewTableRecord",
       "2! 70=0 40=1.0 10=0,0/ 41=1.0 11=0,0,1 12=0,0,0 42=50.0 43=0.0 44=0.0 50=0.0 71=0 281 72 "
       "110 111 112 79 146 345 346 348 332 334 335 361 73"}}},
    {"UCS",
     kRecord,
     Release::kR10,
     0,
     0,
     {{"AcDbUCSTableRecord", "2! 70=0 10=0,0,0 11=1,0,0 12=0,1,0 79 146 346 345 71* 13*"}}},
    // Objects.
    {"XRECORD", kObject, Release::kR13, 0, 0, {{"AcDbXrecord", "~ 280=1"}}},
    {"DICTIONARY",
     kObject,
     Release::kR13,
     0,
     0,
     {{"AcDbDictionary", "280 281=1 3* 340* 350* 360*"}}},
    {"DICTIONARYVAR", kObject, Release::kR2000, 0, 0, {{"DictionaryVariables", "280=0 1!"}}},
};

GroupRow parse_group(std::string_view word, bool& by_turns) {
  GroupRow row;
  const char* const end = word.data() + word.size();
  const char* at = std::from_chars(word.data(), end, row.code).ptr;
  by_turns = false;
  for (; at != end && *at != '='; ++at) {
    row.required |= *at == '!';
    row.repeated |= *at == '*' || *at == '+';
    by_turns |= *at == '*';
    row.flat |= *at == '/';
  }
  if (at == end) return row;
  row.has_initial = true;
  row.initial = {at + 1, static_cast<std::size_t>(end - at - 1)};
  if (row.initial.ends_with('/')) {
    row.flat = true;
    row.initial.remove_suffix(1);
  }
  return row;
}

PartRow parse_part(const PartText& text) {
  PartRow part;
  part.marker = text.marker;
  std::string_view words = text.groups;
  bool shared = false;  // the group before repeats by turns
  int rank = 0;
  while (!words.empty()) {
    const std::size_t blank = words.find(' ');
    const std::string_view word = words.substr(0, blank);
    words.remove_prefix(blank == std::string_view::npos ? words.size() : blank + 1);
    if (word == "~") {
      part.as_listed = true;
      continue;
    }
    bool by_turns = false;
    GroupRow row = parse_group(word, by_turns);
    row.rank = by_turns && shared ? rank : ++rank;
    shared = by_turns;
    part.groups.push_back(row);
  }
  return part;
}

struct Variety {
  std::int64_t mask, value;
  KindRow row;
};

std::vector<Variety> parse_kinds() {
  std::vector<Variety> kinds;
  for (const KindText& text : kKinds) {
    KindRow row{text.kind, text.place, text.since, {}};
    if (text.place == kEntity || text.place == kSubEntity)
      row.parts.push_back(parse_part(kEntityPart));
    if (text.place == kRecord) row.parts.push_back(parse_part(kRecordPart));
    for (const PartText& part : text.parts)
      if (!part.marker.empty()) row.parts.push_back(parse_part(part));
    kinds.push_back({text.mask, text.value, std::move(row)});
  }
  return kinds;
}

}  // namespace

const GroupRow* PartRow::find(int code) const {
  for (const GroupRow& row : groups)
    if (row.code == code) return &row;
  return nullptr;
}

const KindRow* kind_row(std::string_view kind, std::int64_t flags) {
  static const std::vector<Variety> kinds = parse_kinds();
  for (const Variety& variety : kinds)
    if (variety.row.kind == kind && (flags & variety.mask) == variety.value) return &variety.row;
  return nullptr;
}

}  // namespace cad
