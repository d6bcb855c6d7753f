#include "module/record/record_table.h"

#include "module/platform/text.h"
#include "module/platform/trace.h"
#include "module/record/record.h"
#include "module/record/record_cursor.h"
#include "module/record/record_factory.h"
#include "module/registry/update_service.h"

namespace {

/// Opens the record that is to take the items of a new one.
bool open_target(CDimRecord& target, AcDbObjectId existing) {
  if (target.open(existing, AcDb::kForWrite, false) == Acad::eOk) return true;
  dim::trace(L"打开实体失败!");
  return false;
}

bool write_item(CDimRecord& target, const StuDim& item) {
  if (target.setAt(item) == Acad::eOk) return true;
  dim::trace(L"写入信息失败!");
  return false;
}

}  // namespace

CDimRecordTable::~CDimRecordTable() {
  // Kept: a table that was closed closes once more, which the host shrugs off.
  // Test: RecordTable.ClosingTwiceIsHarmless
  if (dictionary_ && close_on_destroy_) dictionary_->close();
}

Acad::ErrorStatus CDimRecordTable::open(CDimupateRegisiter* reg, const AcDbObjectId& dictId,
                                        AcDb::OpenMode, int) {
  AcDbDictionary* opened = nullptr;
  if (acdbOpenObject(opened, dictId, AcDb::kForWrite) != Acad::eOk) return dim::kFailed;
  dictionary_ = opened;
  registry_ = reg;
  close_on_destroy_ = 1;
  return Acad::eOk;
}

Acad::ErrorStatus CDimRecordTable::open(CDimupateRegisiter* reg, AcDbDictionary* dict,
                                        int closeOnDestroy) {
  if (!dict || !dict->isWriteEnabled()) return dim::kFailed;
  dictionary_ = dict;
  registry_ = reg;
  close_on_destroy_ = closeOnDestroy;
  return Acad::eOk;
}

Acad::ErrorStatus CDimRecordTable::close() {
  return dictionary_ ? dictionary_->close() : Acad::eOk;
}

Acad::ErrorStatus CDimRecordTable::newIterator(CDimRecordTableIterator& iterator) const {
  if (!dictionary_ || !registry_) return dim::kNotOpen;
  iterator.entries_.reset();
  iterator.dictionary_ = dictionary_;
  iterator.registry_ = registry_;
  return Acad::eOk;
}

Acad::ErrorStatus CDimRecordTable::getAt(const wchar_t* typeName, AcDbObjectId& recordId) {
  if (!dictionary_ || !registry_) return dim::kNotOpen;
  AcDbObjectId found;
  if (!typeName || dictionary_->getAt(typeName, found) != Acad::eOk) return dim::kNotFound;
  recordId = found;
  return Acad::eOk;
}

Acad::ErrorStatus CDimRecordTable::add(const CDimRecord& record) {
  AcDbObjectId existing;
  const Acad::ErrorStatus status = getAt(record.getDimTypeName(), existing);
  if (status == Acad::eOk) return merge(record, existing);
  return status == dim::kNotFound ? file(record) : status;
}

Acad::ErrorStatus CDimRecordTable::add_item(const wchar_t* typeName, const StuDim& item) {
  AcDbObjectId existing;
  const Acad::ErrorStatus status = getAt(typeName, existing);
  if (status == Acad::eOk) {
    CDimRecord target;
    return open_target(target, existing) && write_item(target, item) ? Acad::eOk : dim::kFailed;
  }
  if (status != dim::kNotFound) return status;
  const std::unique_ptr<CDimRecord> record(
      CDimUpdateServ::getInstance().getDimFactory().CreateDimRec(item));
  if (!record) return dim::kFailed;
  record->setDimTypeName(typeName);
  return file(*record);
}

Acad::ErrorStatus CDimRecordTable::file(const CDimRecord& record) {
  AcDbObjectId id;
  return dictionary_->setAt(record.getDimTypeName(), record.record_object_, id);
}

Acad::ErrorStatus CDimRecordTable::merge(const CDimRecord& record, AcDbObjectId existing) {
  CDimRecord target;
  CDimRecordIterator cursor;
  if (!open_target(target, existing)) return dim::kFailed;
  if (record.newIterator(cursor) != Acad::eOk) return dim::kFailed;
  StuDim item;
  for (cursor.start(); !cursor.done(); cursor.step()) {
    if (cursor.getDim(item) != Acad::eOk) {
      dim::trace(L"读取信息失败!");
      return dim::kFailed;
    }
    if (!write_item(target, item)) return dim::kFailed;
  }
  return Acad::eOk;
}

void CDimRecordTableIterator::start() {
  if (!dictionary_) {
    dim::trace(L"表迭代器没有被初始化!");
    return;
  }
  type_name_.clear();
  record_id_.setNull();
  entries_.reset(dictionary_->newIterator());
  stand_on_registered();
}

void CDimRecordTableIterator::step() {
  if (!dictionary_) {
    dim::trace(L"表迭代器没有被初始化!");
    return;
  }
  if (!entries_ || entries_->done()) return;
  entries_->next();
  stand_on_registered();
}

void CDimRecordTableIterator::stand_on_registered() {
  if (!entries_) return;
  while (!entries_->done() && !registry_->isRegisted(entries_->name())) entries_->next();
  if (entries_->done()) return;
  type_name_ = entries_->name();
  record_id_ = entries_->objectId();
}

int CDimRecordTableIterator::done() {
  if (!dictionary_) dim::trace(L"表迭代器没有被初始化!");
  return !entries_ || entries_->done();
}

const wchar_t* CDimRecordTableIterator::getDimTypeName() const {
  return dictionary_ ? type_name_.c_str() : nullptr;
}
