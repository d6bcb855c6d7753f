#pragma once

#include <string_view>

#include "host/db/object.h"
#include "host/dxf/scan.h"

namespace cad {

/// How objects of one DXF kind open.
struct ClassRow {
  std::string_view kind;  ///< group 0; for tables the table's name
  AcDbObject* (*make)(std::string_view record);
  AcRxClass* (*describe)();
  bool entity;
  /// For a kind that stands for several classes: the one of this record. Null for all others.
  const ClassRow& (*refine)(std::string_view record, const dxf::Dialect& dialect) = nullptr;
};

/// The row of a kind found in `section`; kinds without a row of their own open as AcDbEntity in
/// BLOCKS and ENTITIES and as AcDbObject elsewhere.
const ClassRow& class_of_kind(std::string_view kind, dxf::Section section);
/// The row of a symbol table by its name ("LAYER").
const ClassRow& class_of_table(std::string_view table);

}  // namespace cad
