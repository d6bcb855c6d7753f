#pragma once

#include <memory>

#include "module/platform/objects.h"
#include "module/registry/dim_iterator.h"

class CDimRecord;
class CDimRecordTableIterator;
class CDimupateRegisiter;
struct StuDim;

/// The annotation records of one entity: its extension dictionary, seen as a table keyed by
/// annotation type name. Keys are compared without regard to letter case; entries of other
/// applications are left alone.
///     CDimRecordTable table;
///     if (table.open(&registry, extension_dictionary, AcDb::kForRead, 0) == Acad::eOk) ...
/// Statuses: 0 success; 1 failure; 22 no record of that type; 374 not open.
class CDimRecordTable : public CObject {
 public:
  CDimRecordTable() = default;
  CDimRecordTable(const CDimRecordTable&) = delete;
  CDimRecordTable& operator=(const CDimRecordTable&) = delete;
  /// Closes the dictionary when the table is to.
  ~CDimRecordTable() override;

  /// Opens the dictionary, always for write: `mode` and `flag` are accepted and not used. The
  /// table closes it when it is destroyed. On failure nothing changes. `reg` must outlive the
  /// table and its iterators. Close before opening again.
  Acad::ErrorStatus open(CDimupateRegisiter* reg, const AcDbObjectId& dictId, AcDb::OpenMode mode,
                         int flag);
  /// Works on a dictionary that the caller has open for write, else 1. With a nonzero
  /// `closeOnDestroy` the table closes it when it is destroyed.
  Acad::ErrorStatus open(CDimupateRegisiter* reg, AcDbDictionary* dict, int closeOnDestroy);
  /// Closes the dictionary; 0 when there is none.
  Acad::ErrorStatus close();

  /// Prepares the walk over the records; start() it.
  Acad::ErrorStatus newIterator(CDimRecordTableIterator& iterator) const;
  /// The record of a type, registered or not.
  Acad::ErrorStatus getAt(const wchar_t* typeName, AcDbObjectId& recordId);
  /// Files the record under its type name: the drawing then owns its xrecord. When the entity has
  /// a record of that type already, each item is written into that one with CDimRecord::setAt()
  /// and the new record stays the caller's, not filed.
  Acad::ErrorStatus add(const CDimRecord& record);
  /// What add() does with a new record of this one item; spares making the record when its item
  /// would be written into the one that is there.
  Acad::ErrorStatus add_item(const wchar_t* typeName, const StuDim& item);

 private:
  Acad::ErrorStatus file(const CDimRecord& record);
  Acad::ErrorStatus merge(const CDimRecord& record, AcDbObjectId existing);

  AcDbDictionary* dictionary_ = nullptr;  // open; closed by the destructor when it is to
  CDimupateRegisiter* registry_ = nullptr;
  int close_on_destroy_ = 0;
};

/// Walks the records of a table by type name, skipping what is filed under names that are not
/// registered. Use it while the table is open.
///     for (walk.start(); !walk.done(); walk.step()) walk.GetObjectId(id);
class CDimRecordTableIterator : public CDimIterator {
 public:
  CDimRecordTableIterator() = default;
  CDimRecordTableIterator(const CDimRecordTableIterator&) = delete;
  CDimRecordTableIterator& operator=(const CDimRecordTableIterator&) = delete;

  /// 1 without a table, and before start().
  int done() override;
  void step() override;
  void start() override;
  /// Key of the current record as stored; null without a table, empty when there was no record.
  const wchar_t* getDimTypeName() const;
  void GetObjectId(AcDbObjectId& id) const { id = record_id_; }

 private:
  friend class CDimRecordTable;
  void stand_on_registered();

  AcDbDictionary* dictionary_ = nullptr;  // not owned
  CDimupateRegisiter* registry_ = nullptr;
  std::unique_ptr<AcDbDictionaryIterator> entries_;
  CString type_name_;
  AcDbObjectId record_id_;
};
