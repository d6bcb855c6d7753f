#pragma once

#include "host/db/symbol_table.h"

class AcDbBlockTableRecordIterator;

/// A block, or a space: the owner of entities.
class AcDbBlockTableRecord : public AcDbSymbolTableRecord {
  PN_RX_MEMBERS(AcDbBlockTableRecord)
 public:
  /// A block without entities, to be named and added to the block table.
  AcDbBlockTableRecord();
  /// Adds a new entity, which stays open for write. What was not set explicitly takes the
  /// drawing's current layer, colour, linetype and text style. eNotOpenForWrite, eAlreadyInDb,
  /// eKeyNotFound when its layer does not exist, eNotApplicable when the drawing's release has no
  /// entities of its kind.
  Acad::ErrorStatus appendAcDbEntity(AcDbObjectId& id, AcDbEntity* entity);
  /// Walks the entities in drawing order, erased ones left out. The caller deletes the iterator.
  Acad::ErrorStatus newIterator(AcDbBlockTableRecordIterator*& iterator) const;

 private:
  friend class cad::ObjectAccess;
  using AcDbSymbolTableRecord::AcDbSymbolTableRecord;
};

class AcDbBlockTableRecordIterator {
 public:
  bool done() const { return current_.isNull(); }
  void start();
  void step();
  Acad::ErrorStatus getEntityId(AcDbObjectId& id) const;
  Acad::ErrorStatus getEntity(AcDbEntity*& entity, AcDb::OpenMode mode) const;

 private:
  friend class AcDbBlockTableRecord;
  explicit AcDbBlockTableRecordIterator(AcDbObjectId block) : block_(block) { start(); }
  AcDbObjectId block_;
  AcDbObjectId current_;
};

class AcDbBlockTable : public AcDbSymbolTable {
  PN_RX_MEMBERS(AcDbBlockTable)
 private:
  friend class cad::ObjectAccess;
  using AcDbSymbolTable::AcDbSymbolTable;
};
