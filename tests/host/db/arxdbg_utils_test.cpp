#include "host/db/arxdbg_utils.h"

#include <gtest/gtest.h>

#include "tests/host/db/plan.h"

namespace {

class ArxDbg : public DrawingTest {
 protected:
  ArxDbg() {
    given_plan();
    acdbHostApplicationServices()->setWorkingDatabase(&database());
  }
  ~ArxDbg() override { acdbHostApplicationServices()->setWorkingDatabase(before_); }

  static std::wstring handle_text(AcDbObjectId id) {
    std::wstring text = L"before";
    ArxDbgUtils::objIdToHandleStr(id, text);
    return text;
  }

 private:
  AcDbDatabase* const before_ = acdbHostApplicationServices()->workingDatabase();
};

TEST_F(ArxDbg, HandleTextsResolve) {
  AcDbObjectId found;
  for (const wchar_t* text : {L"2F", L"2f", L"002F", L" 2F "}) {
    EXPECT_EQ(ArxDbgUtils::handleStrToObjId(&database(), text, found), Acad::eOk) << text;
    EXPECT_EQ(found, id(0x2F));
  }
  erase(0x2F);
  EXPECT_EQ(ArxDbgUtils::handleStrToObjId(&database(), L"2F", found), Acad::eOk);
  EXPECT_EQ(found, id(0x2F)) << "erased objects keep their handle until the drawing is reopened";
}

TEST_F(ArxDbg, EveryHandleTextThatLeadsNowhereIsBadInput) {
  for (const wchar_t* text : {L"", L"0", L"FFF", L"2G", L"0x2F", L"-2F", L"12345678123456789"}) {
    AcDbObjectId found = id(0x2F);
    EXPECT_EQ(ArxDbgUtils::handleStrToObjId(&database(), text, found), Acad::eInvalidInput) << text;
    EXPECT_EQ(int{Acad::eInvalidInput}, 3);
    EXPECT_TRUE(found.isNull());
  }
  AcDbObjectId found = id(0x2F);
  EXPECT_EQ(ArxDbgUtils::handleStrToObjId(&database(), nullptr, found), Acad::eInvalidInput);
  EXPECT_EQ(ArxDbgUtils::handleStrToObjId(nullptr, L"2F", found), Acad::eInvalidInput);
}

TEST_F(ArxDbg, AnObjectThatCannotBeReadHasNoHandleText) {
  EXPECT_EQ(handle_text(id(0x2F)), L"2F");
  EXPECT_EQ(handle_text(AcDbObjectId()), L"");
  AcDbObject* writer = opened(0x2F, AcDb::kForWrite);
  EXPECT_EQ(handle_text(id(0x2F)), L"");
  writer->close();
  AcDbObject* reader = opened(0x2F);
  EXPECT_EQ(handle_text(id(0x2F)), L"2F");
  reader->close();
  erase(0x2F);
  EXPECT_EQ(handle_text(id(0x2F)), L"");
}

TEST_F(ArxDbg, NamesAndIdsAreTwoFormsOfOne) {
  ads_name name;
  AcDbObjectId found;
  EXPECT_EQ(ArxDbgUtils::objIdToEname(id(0x2F), name), Acad::eOk);
  EXPECT_EQ(ArxDbgUtils::enameToObjId(name, found), Acad::eOk);
  EXPECT_EQ(found, id(0x2F));
  ads_name nothing = {0, 0};
  EXPECT_EQ(ArxDbgUtils::enameToObjId(nothing, found), Acad::eNullObjectId);
}

TEST_F(ArxDbg, AnEntityAddedToTheCurrentSpaceStaysOpen) {
  auto* line = new AcDbLine;
  EXPECT_EQ(ArxDbgUtils::addToCurrentSpace(line), Acad::eOk);
  EXPECT_TRUE(line->isWriteEnabled());
  EXPECT_EQ(line->ownerId(), database().currentSpaceId());
  EXPECT_EQ(database().open_objects(), std::vector<AcDbObjectId>{line->objectId()})
      << "the space is closed";
  EXPECT_EQ(handle_text(line->objectId()), L"") << "until it is closed";
  line->close();
  EXPECT_EQ(handle_text(line->objectId()), L"200");
}

TEST_F(ArxDbg, AnEntityThatCannotBeAddedStaysTheCallers) {
  AcDbLine line;
  AcDbObject* space = opened(database().currentSpaceId());
  EXPECT_EQ(ArxDbgUtils::addToCurrentSpace(&line), Acad::eWasOpenForRead);
  space->close();
  acdbHostApplicationServices()->setWorkingDatabase(nullptr);
  EXPECT_EQ(ArxDbgUtils::addToCurrentSpace(&line), Acad::eNoDatabase);
  EXPECT_TRUE(line.objectId().isNull());
}

}  // namespace
