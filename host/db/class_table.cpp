#include "host/db/class_table.h"

#include "host/db/arc.h"
#include "host/db/attribute.h"
#include "host/db/block.h"
#include "host/db/block_reference.h"
#include "host/db/circle.h"
#include "host/db/dictionary.h"
#include "host/db/ellipse.h"
#include "host/db/entity.h"
#include "host/db/entity_fields.h"
#include "host/db/line.h"
#include "host/db/object_access.h"
#include "host/db/polyline.h"
#include "host/db/polyline_heavy.h"
#include "host/db/spline.h"
#include "host/db/symbol_table.h"
#include "host/db/text.h"
#include "host/db/xrecord.h"

namespace cad {
namespace {

template <class T>
constexpr ClassRow row(std::string_view kind, bool entity) {
  return {kind, &ObjectAccess::make<T>, &T::desc, entity, nullptr};
}

constexpr ClassRow kObject = row<AcDbObject>("", false);
constexpr ClassRow kEntity = row<AcDbEntity>("", true);
constexpr ClassRow kTable = row<AcDbSymbolTable>("", false);
constexpr ClassRow kTableRecord = row<AcDbSymbolTableRecord>("", false);

constexpr ClassRow kObjects[] = {
    row<AcDbDictionary>("DICTIONARY", false),
    row<AcDbDictionary>("ACDBDICTIONARYWDFLT", false),
    row<AcDbXrecord>("XRECORD", false),
};

constexpr ClassRow k2dPolyline = row<AcDb2dPolyline>("POLYLINE", true);
constexpr ClassRow k3dPolyline = row<AcDb3dPolyline>("POLYLINE", true);
constexpr ClassRow k2dVertex = row<AcDb2dVertex>("VERTEX", true);
constexpr ClassRow k3dVertex = row<AcDb3dPolylineVertex>("VERTEX", true);
constexpr ClassRow kVertex = row<AcDbVertex>("VERTEX", true);

/// By the flags: in space, a mesh, or else flat.
const ClassRow& polyline_class(std::string_view record, const dxf::Dialect& dialect) {
  constexpr int kInSpace = 8, kMesh = 16 | 64;
  const int flags = EntityFields(record, dialect).integer(70);
  return flags & kMesh ? kEntity : flags & kInSpace ? k3dPolyline : k2dPolyline;
}

const ClassRow& vertex_class(std::string_view record, const dxf::Dialect& dialect) {
  constexpr int kInSpace = 32, kMesh = 64 | 128;
  const int flags = EntityFields(record, dialect).integer(70);
  return flags & kMesh ? kVertex : flags & kInSpace ? k3dVertex : k2dVertex;
}

constexpr ClassRow refined(ClassRow row,
                           const ClassRow& (*refine)(std::string_view, const dxf::Dialect&)) {
  row.refine = refine;
  return row;
}

constexpr ClassRow kEntities[] = {
    row<AcDbLine>("LINE", true),           row<AcDbText>("TEXT", true),
    row<AcDbMText>("MTEXT", true),         row<AcDbBlockReference>("INSERT", true),
    row<AcDbPolyline>("LWPOLYLINE", true), row<AcDbArc>("ARC", true),
    row<AcDbCircle>("CIRCLE", true),       refined(k2dPolyline, polyline_class),
    refined(kVertex, vertex_class),        row<AcDbEllipse>("ELLIPSE", true),
    row<AcDbSpline>("SPLINE", true),       row<AcDbRay>("RAY", true),
    row<AcDbXline>("XLINE", true),         row<AcDbLeader>("LEADER", true),
    row<AcDbAttribute>("ATTRIB", true),    row<AcDbAttributeDefinition>("ATTDEF", true),
};

constexpr ClassRow kTableRecords[] = {
    row<AcDbBlockTableRecord>("BLOCK_RECORD", false),
    row<AcDbLayerTableRecord>("LAYER", false),
    row<AcDbRegAppTableRecord>("APPID", false),
    row<AcDbTextStyleTableRecord>("STYLE", false),
};

constexpr ClassRow kTables[] = {
    row<AcDbBlockTable>("BLOCK_RECORD", false), row<AcDbLayerTable>("LAYER", false),
    row<AcDbLinetypeTable>("LTYPE", false),     row<AcDbRegAppTable>("APPID", false),
    row<AcDbTextStyleTable>("STYLE", false),
};

template <std::size_t N>
const ClassRow& search(const ClassRow (&rows)[N], std::string_view kind, const ClassRow& other) {
  for (const ClassRow& row : rows) {
    if (row.kind == kind) return row;
  }
  return other;
}

}  // namespace

const ClassRow& class_of_kind(std::string_view kind, dxf::Section section) {
  switch (section) {
    case dxf::Section::kBlocks:
    case dxf::Section::kEntities:
      return search(kEntities, kind, kEntity);
    case dxf::Section::kTables:
      return search(kTableRecords, kind, kTableRecord);
    case dxf::Section::kObjects:
      return search(kObjects, kind, kObject);
    default:
      return kObject;
  }
}

const ClassRow& class_of_table(std::string_view table) { return search(kTables, table, kTable); }

}  // namespace cad
