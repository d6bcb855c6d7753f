#include "module/registry/update_service.h"

#include "module/platform/pipe_library.h"
#include "module/platform/trace.h"
#include "module/record/record.h"
#include "module/record/record_cursor.h"
#include "module/record/record_factory.h"

CDimUpdateServ CDimUpdateServ::m_instance;

CDimUpdateServ::CDimUpdateServ() = default;
CDimUpdateServ::~CDimUpdateServ() = default;

CDimUpdateServ& CDimUpdateServ::getInstance() { return m_instance; }

CDimupateRegisiter& CDimUpdateServ::getDimRegServ() {
  if (!registry_) registry_ = std::make_unique<CDimupateRegisiter>();
  return *registry_;
}

CDimRecFactory& CDimUpdateServ::getDimFactory() {
  if (!factory_) factory_ = std::make_unique<CDimRecFactory>();
  return *factory_;
}

const DimUtility::tdfGdcdpdbz* CDimUpdateServ::getGcGpBzSz() const {
  return CGxData::Instance()->getGcGpBzSz();
}

const DimUtility::tdfZdm_bzsz* CDimUpdateServ::getZdmGdBzSz() const {
  return CGxData::Instance()->getZdmGdBzSz();
}

const DimUtility::tagPcBzSz* CDimUpdateServ::getPcBzSz() const {
  return CGxData::Instance()->getPcBzSz();
}

void CDimUpdateServ::dumpDimRec(const CDimRecord& record) const {
  dim::trace(L"开始输出标注记录:");
  CDimRecordIterator cursor;
  record.newIterator(cursor);
  for (cursor.start(); !cursor.done(); cursor.step()) {
    StuDim item;
    if (cursor.getDim(item) != Acad::eOk) continue;
    dim::trace_format(L"%s %s %s%s%s", item.name.c_str(), item.handle.c_str(), item.prefix.c_str(),
                      item.value.c_str(), item.suffix.c_str());
  }
}
