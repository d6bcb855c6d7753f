#include "module/record/record_factory.h"

#include <memory>
#include <new>

#include "module/platform/objects.h"
#include "module/record/item_chain.h"
#include "module/record/kt_exception.h"
#include "module/record/record.h"

namespace {

// Where creating a record failed, as reported since the first release.
enum FailedLine { kItemBuffers = 53, kRecord = 60, kRecordObject = 66, kStoring = 72 };

[[noreturn]] void fail_at(FailedLine line) { throw CKTException(0, L".\\DimRecFactory", line); }

}  // namespace

resbuf* CDimRecFactory::CreateDimResbuf(const StuDim& item) { return dim::new_item(item); }

CDimRecord* CDimRecFactory::CreateDimRec(const std::vector<StuDim>& items) { return create(items); }

CDimRecord* CDimRecFactory::CreateDimRec(const StuDim& item) { return create({&item, 1}); }

CDimRecord* CDimRecFactory::create(std::span<const StuDim> items) {
  try {
    dim::ChainBuilder chain;
    for (const StuDim& item : items) {
      resbuf* buffers = CreateDimResbuf(item);
      if (!buffers) fail_at(kItemBuffers);
      chain.add(buffers);
    }
    std::unique_ptr<CDimRecord> record(new (std::nothrow) CDimRecord);
    if (!record) fail_at(kRecord);
    record->record_object_ = new (std::nothrow) AcDbXrecord;
    if (!record->record_object_) fail_at(kRecordObject);
    if (dim::store_chain(*record->record_object_, chain.head()) != Acad::eOk) fail_at(kStoring);
    return record.release();
  } catch (const CKTException&) {
    return nullptr;
  }
}
