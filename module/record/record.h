#pragma once

#include <utility>
#include <vector>

#include "module/platform/objects.h"
#include "module/record/dim_item.h"

class CDimRecordIterator;

/// One annotation record: the xrecord in an annotated entity's extension dictionary that holds the
/// items of one annotation type.
///     CDimRecord record;
///     if (record.open(id, AcDb::kForWrite, false) == Acad::eOk) record.setAt(item);
/// Statuses: 0 success; 1 failure; 22 no item of that name; 374 not open.
///
/// Holds the open xrecord as a raw pointer. A copy shares it: let only one of the copies be
/// destroyed while it is open.
class CDimRecord : public CObject {
 public:
  CDimRecord() = default;
  CDimRecord(const CDimRecord&) = default;
  CDimRecord& operator=(const CDimRecord&) = default;
  /// Closes the xrecord, or deletes one that was never filed in a drawing.
  ~CDimRecord() override;

  /// Opens an existing record; close what this one held before. On failure the status of the open
  /// call, 46 when the object is no xrecord, and nothing changes.
  Acad::ErrorStatus open(const AcDbObjectId& id, AcDb::OpenMode mode, bool openErased);
  /// Closes the xrecord, which open() may open again. 374 when not valid.
  Acad::ErrorStatus close();
  /// Nonzero while the xrecord is new or open in any mode.
  int isValid() const;

  /// Hands the cursor a copy of the stored items and stands it on the first. 374 when not valid.
  Acad::ErrorStatus newIterator(CDimRecordIterator& cursor) const;
  /// Reads the item whose name is `item.name` (letter case ignored) into `item`, all fields. 1 for
  /// an empty name or one that is not there.
  Acad::ErrorStatus getAt(StuDim& item);
  /// As above; `item.name` is set to `name` in any case.
  Acad::ErrorStatus getAt(const wchar_t* name, StuDim& item);
  /// Drops stale items, then replaces the item of the same name in place or appends, and stores.
  /// Needs the record open for write, else 1. A record without items stays without. 1 for an empty
  /// name, the stale items being dropped all the same.
  Acad::ErrorStatus setAt(const StuDim& item);
  /// Drops stale items, then puts the item behind the named one and stores. Behind the first item
  /// the new one ends the record: all others are dropped. Without an item `afterName` as setAt().
  /// An item of the same name elsewhere stays; look-ups find the first.
  Acad::ErrorStatus insertAfter(const StuDim& item, const wchar_t* afterName);

  /// Writes the texts of the record's items into their TEXTs, MTEXTs and attributes, whole; other
  /// entities stay as they are. Drops stale items before. An entity that is erased, on a locked
  /// layer or open elsewhere is left out and nothing fails for it. Needs the record open for write,
  /// else 1; 1 also for an item that cannot be read, and then no text is written.
  Acad::ErrorStatus updateDim();
  /// getAt(), setAt() and updateDim() on one copy of the items, which a caller who does one after
  /// the other hands from call to call. newIterator() fills the cursor; after each success it holds
  /// what is stored.
  Acad::ErrorStatus get_at(CDimRecordIterator& cursor, const wchar_t* name, StuDim& item);
  Acad::ErrorStatus set_at(CDimRecordIterator& cursor, const StuDim& item);
  Acad::ErrorStatus update_texts(CDimRecordIterator& cursor);

  /// Erases the annotation entities of all items, then the record, which is no longer valid. Left
  /// drawn are entities that cannot be opened for write (a locked layer, open elsewhere) and what
  /// items of the kind without entity name. 374 when not valid.
  Acad::ErrorStatus deleteDim();
  /// Erases the record, which is no longer valid; the annotation entities stay drawn and nothing
  /// knows of them any more. 374 when not valid.
  Acad::ErrorStatus deleteDimInfo();

  /// Annotation type under which the record is, or is to be, filed. Setting it changes no drawing.
  const wchar_t* getDimTypeName() const { return type_name_.c_str(); }
  void setDimTypeName(const wchar_t* name);

 protected:
  friend class CDimRecFactory;
  friend class CDimRecordTable;

  /// Drops the items whose annotation entity cannot be opened any more, erased ones counting as
  /// present, and stores what is left. The item behind a dropped one is looked at the next time.
  /// 374 when not valid; 1 for an item that cannot be read; else the status of the commit.
  Acad::ErrorStatus clearInvalid();
  /// Drops stale items, then appends what each text entity of the record is to show: its handle and
  /// the text, in the order of the handles. Entities that cannot be opened for write are left out.
  /// 374 when not valid; 1 when the clean-up fails.
  Acad::ErrorStatus extractTxtMark(std::vector<std::pair<CString, CString>>& marks);
  /// Hands the cursor a fresh copy and stands it on the named item; 22 when there is none.
  Acad::ErrorStatus find(const wchar_t* name, CDimRecordIterator& cursor);

 private:
  Acad::ErrorStatus clear_invalid(CDimRecordIterator& cursor);
  Acad::ErrorStatus extract_marks(CDimRecordIterator& cursor,
                                  std::vector<std::pair<CString, CString>>& marks);
  void erase_record();
  void release_record();

  AcDbXrecord* record_object_ = nullptr;
  CString type_name_;
  AcDbObjectId record_id_;
};
