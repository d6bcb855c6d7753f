#include "host/db/class_table.h"

#include "host/db/block.h"
#include "host/db/dictionary.h"
#include "host/db/entity.h"
#include "host/db/line.h"
#include "host/db/object_access.h"
#include "host/db/symbol_table.h"
#include "host/db/text.h"
#include "host/db/xrecord.h"

namespace cad {
namespace {

template <class T>
constexpr ClassRow row(std::string_view kind, bool entity) {
  return {kind, &ObjectAccess::make<T>, &T::desc, entity};
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

constexpr ClassRow kEntities[] = {
    row<AcDbLine>("LINE", true),
    row<AcDbText>("TEXT", true),
    row<AcDbMText>("MTEXT", true),
};

constexpr ClassRow kTableRecords[] = {
    row<AcDbBlockTableRecord>("BLOCK_RECORD", false),
    row<AcDbLayerTableRecord>("LAYER", false),
    row<AcDbRegAppTableRecord>("APPID", false),
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
