#include "module/registry/update_service.h"

#include <gtest/gtest.h>

#include <memory>

#include "module/platform/pipe_library.h"
#include "module/record/record.h"
#include "module/record/record_factory.h"
#include "tests/module/plan.h"

namespace {

CDimUpdateServ& service() { return CDimUpdateServ::getInstance(); }

TEST(UpdateService, HandsOutOneRegistryWithTheVocabulary) {
  CDimupateRegisiter& registry = service().getDimRegServ();
  EXPECT_EQ(&registry, &service().getDimRegServ());
  EXPECT_EQ(registry.isRegisted(L"bzjg"), 1);
  EXPECT_EQ(registry.isDimName(L"xfdh"), 1);
}

TEST(UpdateService, HandsOutOneFactory) {
  EXPECT_EQ(&service().getDimFactory(), &service().getDimFactory());
}

TEST(UpdateService, PassesOnTheSettingsOfThePipeLibraryItself) {
  EXPECT_EQ(service().getGcGpBzSz(), CGxData::Instance()->getGcGpBzSz());
  EXPECT_EQ(service().getZdmGdBzSz(), CGxData::Instance()->getZdmGdBzSz());
  EXPECT_EQ(service().getPcBzSz(), CGxData::Instance()->getPcBzSz());
}

TEST(UpdateService, DumpingARecordWithoutItemsTracesTheOpeningLineOnly) {
  const std::unique_ptr<CDimRecord> record(service().getDimFactory().CreateDimRec(Items{}));
  const TraceLines trace;
  const Printed printed;
  service().dumpDimRec(*record);
  service().dumpDimRec(CDimRecord());
  EXPECT_EQ(trace.lines(), (Texts{L"开始输出标注记录:", L"开始输出标注记录:"}));
  EXPECT_EQ(printed.text(), "");
}

TEST(UpdateService, DumpingARecordTracesEachItem) {
  const std::unique_ptr<CDimRecord> record(service().getDimFactory().CreateDimRec(
      Items{item_of(L"pipe_len", L"36.5"), item_of(L"pipe_dia", L"300")}));
  const TraceLines trace;
  service().dumpDimRec(*record);
  ASSERT_EQ(trace.lines().size(), 3u);
  EXPECT_NE(trace.lines()[1].find(L"36.5"), std::wstring::npos);
  EXPECT_NE(trace.lines()[2].find(L"pipe_dia"), std::wstring::npos);
}

}  // namespace
