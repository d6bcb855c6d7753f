#include "module/record/record.h"

#include "module/platform/opened.h"
#include "module/platform/trace.h"
#include "module/record/item_chain.h"
#include "module/record/record_cursor.h"
#include "module/record/record_factory.h"
#include "module/record/stale_items.h"
#include "module/registry/update_service.h"

CDimRecord::~CDimRecord() {
  if (!record_object_) return;
  if (record_object_->close() == dim::kNotInDrawing) delete record_object_;
}

Acad::ErrorStatus CDimRecord::open(const AcDbObjectId& id, AcDb::OpenMode mode, bool openErased) {
  AcDbXrecord* opened = nullptr;
  const Acad::ErrorStatus status = acdbOpenObject(opened, id, mode, openErased);
  if (status != Acad::eOk) return status;
  record_object_ = opened;
  record_id_ = id;
  return Acad::eOk;
}

Acad::ErrorStatus CDimRecord::close() {
  return isValid() ? record_object_->close() : dim::kNotOpen;
}

int CDimRecord::isValid() const {
  return record_object_ && (record_object_->isNewObject() || record_object_->isReadEnabled() ||
                            record_object_->isWriteEnabled() || record_object_->isNotifyEnabled());
}

Acad::ErrorStatus CDimRecord::newIterator(CDimRecordIterator& cursor) const {
  if (!isValid()) return dim::kNotOpen;
  resbuf* chain = nullptr;
  record_object_->rbChain(&chain);  // a record that cannot be read is one without items
  cursor.take_chain(chain, record_object_);
  return Acad::eOk;
}

Acad::ErrorStatus CDimRecord::getAt(StuDim& item) {
  if (item.name.empty()) return dim::kFailed;
  CDimRecordIterator cursor;
  if (find(item.name.c_str(), cursor) != Acad::eOk) return dim::kFailed;
  return cursor.getDim(item);
}

Acad::ErrorStatus CDimRecord::getAt(const wchar_t* name, StuDim& item) {
  item.name = dim::text_of(name);
  return getAt(item);
}

Acad::ErrorStatus CDimRecord::setAt(const StuDim& item) {
  // One cursor for the clean-up and the edit: what the clean-up alone would have stored is stored
  // with the item. Both need the same permission to write, so the result does not tell them apart.
  CDimRecordIterator cursor;
  if (newIterator(cursor) != Acad::eOk || !dim::drop_stale_items(cursor)) return dim::kFailed;
  cursor.start();
  if (!item.name.empty()) cursor.setDim(item);  // a record without items stays without
  const bool stored = cursor.commit() == Acad::eOk;
  return stored && !item.name.empty() ? Acad::eOk : dim::kFailed;
}

Acad::ErrorStatus CDimRecord::insertAfter(const StuDim& item, const wchar_t* afterName) {
  CDimRecordIterator cursor;
  if (newIterator(cursor) != Acad::eOk || !dim::drop_stale_items(cursor)) return dim::kFailed;
  cursor.start();
  dim::ResbufChain added(CDimUpdateServ::getInstance().getDimFactory().CreateDimResbuf(item));
  if (!added) return dim::kFailed;
  resbuf* previous = nullptr;
  resbuf* following = nullptr;
  if (!cursor.find(previous, afterName, following)) {
    cursor.setDim(item);
  } else if (previous) {
    resbuf*& named = cursor.nth(CDimRecordIterator::posNext, previous);
    resbuf* last = added.get();
    cursor.nth(CDimRecordIterator::posNext, last) = following;
    cursor.nth(CDimRecordIterator::posNext, named) = added.release();
  } else {
    // Kept: inserting behind the first item drops the items after it; callers rely on the two-item
    // record. Test: Record.InsertAfterTheFirstItemDropsTheRest
    acutRelRb(following);
    cursor.nth(CDimRecordIterator::posNext, cursor.head_) = added.release();
  }
  return cursor.commit() == Acad::eOk ? Acad::eOk : dim::kFailed;
}

void CDimRecord::setDimTypeName(const wchar_t* name) { type_name_ = dim::text_of(name); }

Acad::ErrorStatus CDimRecord::clearInvalid() {
  if (!isValid()) return dim::kNotOpen;
  CDimRecordIterator cursor;
  if (newIterator(cursor) != Acad::eOk || !dim::drop_stale_items(cursor)) return dim::kFailed;
  return cursor.commit();
}

Acad::ErrorStatus CDimRecord::find(const wchar_t* name, CDimRecordIterator& cursor) {
  if (newIterator(cursor) != Acad::eOk) return dim::kFailed;
  const std::wstring_view wanted = dim::text_of(name);
  for (cursor.start(); !cursor.done(); cursor.step()) {
    if (dim::equal_no_case(cursor.field(CDimRecordIterator::posName), wanted)) return Acad::eOk;
  }
  return dim::kNotFound;
}
