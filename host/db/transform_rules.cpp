#include "host/db/transform_rules.h"

#include <algorithm>

namespace cad {
namespace {

constexpr Rule kPointRules[] = {{10, Role::kPoint}, {39, Role::kThickness}, {50, Role::kAngle}};
constexpr Rule kLineRules[] = {{10, Role::kPoint}, {11, Role::kPoint}, {39, Role::kThickness}};
constexpr Rule kRayRules[] = {{10, Role::kPoint}, {11, Role::kDirection}};
constexpr Rule kFaceRules[] = {
    {10, Role::kPoint}, {11, Role::kPoint}, {12, Role::kPoint}, {13, Role::kPoint}};
constexpr Rule kSolidRules[] = {{10, Role::kOwnPoint},
                                {11, Role::kOwnPoint},
                                {12, Role::kOwnPoint},
                                {13, Role::kOwnPoint},
                                {39, Role::kThickness}};
constexpr Rule kCircleRules[] = {
    {10, Role::kOwnPoint}, {40, Role::kLength}, {39, Role::kThickness}};
constexpr Rule kEllipseRules[] = {{10, Role::kPoint}};
constexpr Rule kSplineRules[] = {
    {10, Role::kPoint}, {11, Role::kPoint}, {12, Role::kVector}, {13, Role::kVector}};
constexpr Rule kLightPolylineRules[] = {
    {38, Role::kElevation}, {10, Role::kFlatPoint}, {40, Role::kLength},   {41, Role::kLength},
    {43, Role::kLength},    {42, Role::kBulge},     {39, Role::kThickness}};
constexpr Rule kPolylineRules[] = {
    {40, Role::kLength}, {41, Role::kLength}, {39, Role::kThickness}};
constexpr Rule kFlatVertexRules[] = {{10, Role::kOwnPoint},
                                     {40, Role::kLength},
                                     {41, Role::kLength},
                                     {42, Role::kBulge},
                                     {50, Role::kAngle}};
constexpr Rule kVertexRules[] = {{10, Role::kPoint}};
constexpr Rule kInsertRules[] = {{10, Role::kOwnPoint}};
constexpr Rule kShapeRules[] = {{10, Role::kOwnPoint}, {40, Role::kLength}, {39, Role::kThickness}};
constexpr Rule kDimensionRules[] = {
    {10, Role::kPoint}, {11, Role::kOwnPoint}, {12, Role::kOwnPoint}, {13, Role::kPoint},
    {14, Role::kPoint}, {15, Role::kPoint},    {16, Role::kOwnPoint}, {40, Role::kLength},
    {50, Role::kAngle}, {51, Role::kAngle}};
constexpr Rule kLeaderRules[] = {{10, Role::kPoint},   {40, Role::kLength},  {41, Role::kLength},
                                 {211, Role::kVector}, {212, Role::kVector}, {213, Role::kVector}};
constexpr Rule kToleranceRules[] = {{10, Role::kPoint}, {11, Role::kDirection}};
constexpr Rule kViewportRules[] = {{10, Role::kPoint}, {40, Role::kLength}, {41, Role::kLength}};
constexpr Rule kImageRules[] = {{10, Role::kPoint}, {11, Role::kVector}, {12, Role::kVector}};

bool any_map(const TagSheet&) { return true; }
bool no_skew(const TagSheet&) { return false; }

/// Arcs and widths have no skewed form.
bool straight_and_thin(const TagSheet& sheet) {
  for (std::size_t i = 0; i < sheet.size(); ++i) {
    if (sheet.zone(i) != TagSheet::Zone::kOwn) continue;
    const int code = sheet.code(i);
    if ((code == 40 || code == 41 || code == 42 || code == 43) && sheet.real(i) != 0) return false;
  }
  return true;
}

bool in_space(const TagSheet& sheet) {
  return !is_flat_polyline(sheet) || straight_and_thin(sheet);
}

constexpr KindRules kKinds[] = {
    // kind, class part of the normal, rules, special change, takes any map, moves as a whole
    {"POINT", "AcDbPoint", kPointRules, nullptr, any_map, false},
    {"LINE", "AcDbLine", kLineRules, nullptr, any_map, false},
    {"RAY", "", kRayRules, nullptr, any_map, true},
    {"XLINE", "", kRayRules, nullptr, any_map, true},
    {"3DFACE", "", kFaceRules, nullptr, any_map, false},
    {"SOLID", "AcDbTrace", kSolidRules, nullptr, any_map, false},
    {"TRACE", "AcDbTrace", kSolidRules, nullptr, any_map, false},
    {"CIRCLE", "AcDbCircle", kCircleRules, nullptr, no_skew, true},
    {"ARC", "AcDbCircle", kCircleRules, map_arc, no_skew, true},
    {"ELLIPSE", "AcDbEllipse", kEllipseRules, map_ellipse, any_map, true},
    {"SPLINE", "", kSplineRules, nullptr, any_map, false},
    {"LWPOLYLINE", "AcDbPolyline", kLightPolylineRules, nullptr, straight_and_thin, false},
    {"POLYLINE", "AcDb2dPolyline", kPolylineRules, map_polyline, in_space, false},
    {"TEXT", "AcDbText", {}, map_text, no_skew, true},
    {"ATTDEF", "AcDbText", {}, map_text, no_skew, true},
    {"ATTRIB", "AcDbText", {}, map_text, no_skew, true},
    {"MTEXT", "AcDbMText", {}, map_mtext, no_skew, true},
    {"INSERT", "AcDbBlockReference", kInsertRules, map_block_reference, any_map, true},
    {"SHAPE", "AcDbShape", kShapeRules, map_shape, no_skew, true},
    {"HATCH", "AcDbHatch", {}, map_hatch, no_skew, true},
    {"DIMENSION", "AcDbDimension", kDimensionRules, map_dimension, no_skew, true},
    {"LEADER", "AcDbLeader", kLeaderRules, nullptr, no_skew, false},
    {"TOLERANCE", "AcDbFcf", kToleranceRules, nullptr, no_skew, true},
    {"VIEWPORT", "", kViewportRules, nullptr, no_skew, true},
    {"IMAGE", "", kImageRules, nullptr, any_map, true},
    {"WIPEOUT", "", kImageRules, nullptr, any_map, true},
};

constexpr KindRules kFlatVertex = {"VERTEX",          "",   kFlatVertexRules, nullptr,
                                   straight_and_thin, false};
constexpr KindRules kSpaceVertex = {"VERTEX", "", kVertexRules, nullptr, any_map, false};

}  // namespace

const KindRules* rules_of_kind(std::string_view kind) {
  const auto* found = std::find_if(std::begin(kKinds), std::end(kKinds),
                                   [&](const KindRules& row) { return row.kind == kind; });
  return found == std::end(kKinds) ? nullptr : found;
}

bool is_flat_polyline(const TagSheet& polyline) {
  constexpr std::int64_t kInSpace = 8 | 16 | 64;  // 3D polyline, polygon mesh, polyface mesh
  return (polyline.integer({}, 70, 0) & kInSpace) == 0;
}

bool is_face_record(const TagSheet& vertex) {
  constexpr std::int64_t kMesh = 64, kFace = 128;
  return (vertex.integer({}, 70, 0) & (kMesh | kFace)) == kFace;
}

const KindRules* rules_of_vertices(const TagSheet& polyline) {
  return is_flat_polyline(polyline) ? &kFlatVertex : &kSpaceVertex;
}

}  // namespace cad
