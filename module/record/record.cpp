#include "module/record/record.h"

#include "module/platform/opened.h"
#include "module/platform/trace.h"
#include "module/record/item_chain.h"
#include "module/record/record_cursor.h"
#include "module/record/record_factory.h"
#include "module/record/stale_items.h"
#include "module/record/stored_items.h"
#include "module/record/text_marks.h"
#include "module/registry/update_service.h"

namespace {

/// Whether the text of that handle can be written now; the trace tells when not.
bool is_there_to_write(const CString& handle) {
  const AcDbObjectId id = dim::object_of_handle(handle.c_str());
  if (dim::Opened<AcDbEntity>(id, AcDb::kForWrite)) return true;
  dim::trace(L"文本实体没有打开，可能已经被删除!");
  return false;
}

void set_text(AcDbEntity& entity, const CString& text) {
  if (auto* lines = AcDbMText::cast(&entity)) {
    lines->setContents(text.c_str());
  } else if (auto* line = AcDbText::cast(&entity)) {
    line->setTextString(text.c_str());
  }
}

void write_text(const dim::TextMark& mark) {
  const AcDbObjectId id = dim::object_of_handle(mark.first.c_str());
  if (id.isNull()) {
    dim::trace(L"句柄转换失败,更新操作已经被忽略!");
    return;
  }
  if (const dim::Opened<AcDbEntity> entity{id, AcDb::kForWrite}) {
    set_text(*entity, mark.second);
  } else {
    dim::trace(L"打开实体失败!");
  }
}

/// Erases what an item stands for.
void erase_entity(const dim::StoredItems& items, std::size_t item) {
  if (dim::equal_no_case(items.field(item, CDimRecordIterator::posKind), dim::kNoEntityKind))
    return;
  const std::wstring_view handle = items.field(item, CDimRecordIterator::posHandle);
  const AcDbObjectId id = dim::object_of_handle(handle.data());
  const dim::Opened<AcDbEntity> entity(id, AcDb::kForWrite);
  if (entity) {
    entity->erase();
  } else if (!id.isNull() && entity.status() != Acad::eWasErased) {
    dim::trace(L"打开实体失败!");  // it stays drawn
  }
}

}  // namespace

CDimRecord::~CDimRecord() { release_record(); }

void CDimRecord::release_record() {
  if (!record_object_) return;
  if (record_object_->close() == dim::kNotInDrawing) delete record_object_;
  record_object_ = nullptr;
}

void CDimRecord::erase_record() {
  record_object_->erase(true);
  release_record();
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
  CDimRecordIterator cursor;
  if (item.name.empty() || newIterator(cursor) != Acad::eOk) return dim::kFailed;
  return get_at(cursor, item.name.c_str(), item);
}

Acad::ErrorStatus CDimRecord::getAt(const wchar_t* name, StuDim& item) {
  item.name = dim::text_of(name);
  return getAt(item);
}

namespace {

bool stand_on(CDimRecordIterator& cursor, std::wstring_view name) {
  for (cursor.start(); !cursor.done(); cursor.step()) {
    if (dim::equal_no_case(cursor.field(CDimRecordIterator::posName), name)) return true;
  }
  return false;
}

}  // namespace

Acad::ErrorStatus CDimRecord::get_at(CDimRecordIterator& cursor, const wchar_t* name,
                                     StuDim& item) {
  return stand_on(cursor, name) ? cursor.getDim(item) : dim::kFailed;
}

Acad::ErrorStatus CDimRecord::setAt(const StuDim& item) {
  CDimRecordIterator cursor;
  return newIterator(cursor) == Acad::eOk ? set_at(cursor, item) : dim::kFailed;
}

Acad::ErrorStatus CDimRecord::set_at(CDimRecordIterator& cursor, const StuDim& item) {
  // One commit for the clean-up and the edit: what the clean-up alone would have stored is stored
  // with the item. Both need the same permission to write, so the result does not tell them apart.
  if (!dim::drop_stale_items(cursor)) return dim::kFailed;
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
  CDimRecordIterator cursor;
  const Acad::ErrorStatus status = newIterator(cursor);
  return status == Acad::eOk ? clear_invalid(cursor) : status;
}

Acad::ErrorStatus CDimRecord::clear_invalid(CDimRecordIterator& cursor) {
  if (!isValid()) return dim::kNotOpen;
  const std::optional<int> dropped = dim::drop_stale_items(cursor);
  if (!dropped) return dim::kFailed;
  const bool is_stored = *dropped == 0 && record_object_->isWriteEnabled();
  return is_stored ? Acad::eOk : cursor.commit();
}

Acad::ErrorStatus CDimRecord::extractTxtMark(std::vector<std::pair<CString, CString>>& marks) {
  CDimRecordIterator cursor;
  const Acad::ErrorStatus status = newIterator(cursor);
  return status == Acad::eOk ? extract_marks(cursor, marks) : status;
}

Acad::ErrorStatus CDimRecord::extract_marks(CDimRecordIterator& cursor,
                                            std::vector<std::pair<CString, CString>>& marks) {
  if (clear_invalid(cursor) != Acad::eOk) {
    dim::trace(L"清除垃圾数据失败!");
    return dim::kFailed;
  }
  std::vector<dim::TextMark> made;
  if (!dim::make_text_marks(cursor, made)) return dim::kFailed;
  for (dim::TextMark& mark : made) {
    if (is_there_to_write(mark.first)) marks.push_back(std::move(mark));
  }
  return Acad::eOk;
}

Acad::ErrorStatus CDimRecord::updateDim() {
  CDimRecordIterator cursor;
  if (newIterator(cursor) == Acad::eOk) return update_texts(cursor);
  dim::trace(L"提取标注文字失败!");
  return dim::kFailed;
}

Acad::ErrorStatus CDimRecord::update_texts(CDimRecordIterator& cursor) {
  std::vector<dim::TextMark> marks;
  if (extract_marks(cursor, marks) != Acad::eOk) {
    dim::trace(L"提取标注文字失败!");
    return dim::kFailed;
  }
  for (const dim::TextMark& mark : marks) write_text(mark);
  return Acad::eOk;
}

Acad::ErrorStatus CDimRecord::deleteDim() {
  if (!isValid()) return dim::kNotOpen;
  dim::StoredItems items;
  items.read(*record_object_);
  for (std::size_t i = 0; i < items.size(); ++i) erase_entity(items, i);
  erase_record();
  return Acad::eOk;
}

Acad::ErrorStatus CDimRecord::deleteDimInfo() {
  if (!isValid()) return dim::kNotOpen;
  erase_record();
  record_id_.setNull();
  return Acad::eOk;
}

Acad::ErrorStatus CDimRecord::find(const wchar_t* name, CDimRecordIterator& cursor) {
  if (newIterator(cursor) != Acad::eOk) return dim::kFailed;
  return stand_on(cursor, dim::text_of(name)) ? Acad::eOk : dim::kNotFound;
}
