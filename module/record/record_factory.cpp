#include "module/record/record_factory.h"

#include <memory>
#include <new>

#include "module/platform/value_texts.h"
#include "module/record/item_chain.h"
#include "module/record/kt_exception.h"
#include "module/record/record.h"

namespace {

// Where creating a record failed, as reported since the first release.
enum FailedLine { kRecord = 60, kRecordObject = 66, kStoring = 72 };

[[noreturn]] void fail_at(FailedLine line) { throw CKTException(0, L".\\DimRecFactory", line); }

}  // namespace

resbuf* CDimRecFactory::CreateDimResbuf(const StuDim& item) { return dim::new_item(item); }

CDimRecord* CDimRecFactory::CreateDimRec(const std::vector<StuDim>& items) {
  dim::ItemTexts texts;
  for (const StuDim& item : items) texts.add(item);
  return create(texts);
}

CDimRecord* CDimRecFactory::CreateDimRec(const StuDim& item) {
  dim::ItemTexts texts;
  texts.add(item);
  return create(texts);
}

/// Stores what the buffers of CreateDimResbuf() would, one item behind the other.
CDimRecord* CDimRecFactory::create(const dim::ItemTexts& items) {
  try {
    std::unique_ptr<CDimRecord> record(new (std::nothrow) CDimRecord);
    if (!record) fail_at(kRecord);
    record->record_object_ = new (std::nothrow) AcDbXrecord;
    if (!record->record_object_) fail_at(kRecordObject);
    if (dim::set_value_texts(*record->record_object_, dim::kItemGroup, items.stored()) != Acad::eOk)
      fail_at(kStoring);
    return record.release();
  } catch (const CKTException&) {
    return nullptr;
  }
}
