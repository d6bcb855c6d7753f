#include "host/db/symbol_table.h"

#include <gmock/gmock.h>

#include "tests/host/db/plan.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class SymbolTables : public DrawingTest {
 protected:
  SymbolTables() { given_plan(); }

  std::vector<std::wstring> names(std::uint64_t table_handle) {
    auto* table = opened<AcDbSymbolTable>(table_handle);
    AcDbSymbolTableIterator* made = nullptr;
    EXPECT_EQ(table->newIterator(made), Acad::eOk);
    table->close();
    const std::unique_ptr<AcDbSymbolTableIterator> at(made);
    std::vector<std::wstring> found;
    for (; !at->done(); at->step()) {
      AcDbObjectId record_id;
      EXPECT_EQ(at->getRecordId(record_id), Acad::eOk);
      auto* record = opened<AcDbSymbolTableRecord>(record_id);
      found.push_back(record->name());
      record->close();
    }
    AcDbObjectId none;
    EXPECT_EQ(at->getRecordId(none), Acad::eIteratorDone);
    return found;
  }
  AcDbObjectId layer(const wchar_t* name, bool erased = false) {
    AcDbLayerTable* table = nullptr;
    EXPECT_EQ(database().getSymbolTable(table, AcDb::kForRead), Acad::eOk);
    AcDbObjectId found;
    const Acad::ErrorStatus status = table->getAt(name, found, erased);
    EXPECT_EQ(status, found.isNull() ? Acad::eKeyNotFound : Acad::eOk);
    EXPECT_EQ(table->has(name), !found.isNull() && !found.isErased());
    table->close();
    return found;
  }
  /// eOk and filed, or refused and freed.
  Acad::ErrorStatus add_layer(const wchar_t* name, AcDb::OpenMode mode = AcDb::kForWrite) {
    auto* table = opened<AcDbLayerTable>(0x2, mode);
    auto record = std::make_unique<AcDbLayerTableRecord>();
    if (*name) record->setName(name);
    AcDbObjectId made;
    const Acad::ErrorStatus status = table->add(made, record.get());
    if (status == Acad::eOk) record.release()->close();
    table->close();
    return status;
  }
};

TEST_F(SymbolTables, AreFoundById) {
  EXPECT_EQ(database().layerTableId(), id(0x2));
  EXPECT_EQ(database().textStyleTableId(), id(0x3));
  EXPECT_EQ(database().regAppTableId(), id(0x9));
  EXPECT_EQ(database().blockTableId(), id(0x1));
  EXPECT_TRUE(database().linetypeTableId().isNull()) << "the plan has none";
  AcDbTextStyleTable* styles = nullptr;
  EXPECT_EQ(database().getSymbolTable(styles, AcDb::kForRead), Acad::eOk);
  EXPECT_TRUE(styles->has(L"STANDARD"));
  styles->close();
}

TEST_F(SymbolTables, RecordsAreWalkedInFileOrder) {
  EXPECT_THAT(names(0x2), ElementsAre(L"0", L"LOCKED", L"FROZEN", L"OFF"));
  EXPECT_THAT(names(0x9), ElementsAre(L"ACAD", L"PN"));
  EXPECT_THAT(names(0x1), ElementsAre(L"*Model_Space", L"*Paper_Space", L"WELL"));
  EXPECT_THAT(names(0xA), ElementsAre(L"Standard"));
}

TEST_F(SymbolTables, NamesAreFoundWhateverTheirLetterCase) {
  EXPECT_EQ(layer(L"locked"), id(0x11));
  EXPECT_EQ(layer(L"LOCKED"), id(0x11));
  EXPECT_TRUE(layer(L"none").isNull());
  EXPECT_TRUE(layer(L"").isNull());
}

TEST_F(SymbolTables, ErasedRecordsAreFoundOnRequest) {
  erase(0x12);
  EXPECT_TRUE(layer(L"frozen").isNull());
  EXPECT_EQ(layer(L"frozen", true), id(0x12));
  EXPECT_THAT(names(0x2), ElementsAre(L"0", L"LOCKED", L"OFF"));
  AcDbObject* record = opened(id(0x12), AcDb::kForWrite, true);
  record->erase(false);
  record->close();
  EXPECT_EQ(layer(L"frozen"), id(0x12));
}

TEST_F(SymbolTables, LayersTellTheirState) {
  struct Row {
    std::uint64_t handle;
    bool locked, frozen, off;
    int color;
  };
  for (const Row& row : {Row{0x10, false, false, false, 7}, Row{0x11, true, false, false, 1},
                         Row{0x12, false, true, false, 2}, Row{0x13, false, false, true, 5}}) {
    auto* record = opened<AcDbLayerTableRecord>(row.handle);
    EXPECT_EQ(record->isLocked(), row.locked);
    EXPECT_EQ(record->isFrozen(), row.frozen);
    EXPECT_EQ(record->isOff(), row.off);
    EXPECT_EQ(record->colorIndex(), row.color);
    record->close();
  }
}

TEST_F(SymbolTables, LayerStatesAreSetIndependently) {
  auto* record = opened<AcDbLayerTableRecord>(0x13, AcDb::kForWrite);
  EXPECT_EQ(record->setIsLocked(true), Acad::eOk);
  EXPECT_EQ(record->setIsFrozen(true), Acad::eOk);
  EXPECT_EQ(record->setIsOff(false), Acad::eOk);
  EXPECT_EQ(record->setIsOff(true), Acad::eOk);
  EXPECT_EQ(record->setColorIndex(3), Acad::eOk);
  EXPECT_EQ(record->setColorIndex(0), Acad::eOutOfRange);
  EXPECT_EQ(record->setColorIndex(256), Acad::eOutOfRange);
  record->close();
  EXPECT_THAT(database().save_bytes(), HasSubstr("  2\nOFF\n 70\n     5\n 62\n    -3\n  6\n"));
  reopened();
  record = opened<AcDbLayerTableRecord>(0x13, AcDb::kForWrite);
  EXPECT_TRUE(record->isLocked());
  EXPECT_TRUE(record->isFrozen());
  EXPECT_TRUE(record->isOff());
  EXPECT_EQ(record->colorIndex(), 3);
  record->setIsLocked(false);
  record->setIsOff(false);
  EXPECT_TRUE(record->isFrozen());
  EXPECT_EQ(record->colorIndex(), 3);
  record->close();
}

TEST_F(SymbolTables, TheCurrentLayerCannotBeFrozen) {
  auto* current = opened<AcDbLayerTableRecord>(0x10, AcDb::kForWrite);
  EXPECT_EQ(current->setIsFrozen(true), Acad::eInvalidLayer);
  EXPECT_EQ(int{Acad::eInvalidLayer}, 173);
  EXPECT_EQ(current->setIsFrozen(false), Acad::eOk);
  EXPECT_EQ(current->setIsLocked(true), Acad::eOk) << "locked it may be";
  current->close();
  auto* other = opened<AcDbLayerTableRecord>(0x11, AcDb::kForWrite);
  EXPECT_EQ(other->setIsFrozen(true), Acad::eOk);
  other->close();
  EXPECT_EQ(AcDbLayerTableRecord().setIsFrozen(true), Acad::eOk) << "a layer of no drawing";
}

TEST_F(SymbolTables, NewLayersComeBackInEveryForm) {
  for (const Form form : kFormsWithDictionaries) {
    SCOPED_TRACE(form_name(form));
    given_plan(form);
    EXPECT_EQ(add_layer(L"ZY-标注"), Acad::eOk);
    EXPECT_FALSE(layer(L"zy-标注").isNull());
    reopened();
    const AcDbObjectId made = layer(L"zy-标注");
    ASSERT_FALSE(made.isNull());
    auto* record = opened<AcDbLayerTableRecord>(made);
    EXPECT_EQ(record->name(), L"ZY-标注");
    EXPECT_EQ(record->ownerId(), id(0x2));
    EXPECT_EQ(record->colorIndex(), 7);
    record->close();
    EXPECT_THAT(names(0x2), ElementsAre(L"0", L"LOCKED", L"FROZEN", L"OFF", L"ZY-标注"));
  }
}

TEST_F(SymbolTables, SomeRecordsAreRefused) {
  EXPECT_EQ(add_layer(L"new", AcDb::kForRead), Acad::eNotOpenForWrite);
  EXPECT_EQ(add_layer(L"locked"), Acad::eDuplicateRecordName);
  EXPECT_EQ(add_layer(L""), Acad::eInvalidInput);
  auto* table = opened<AcDbLayerTable>(0x2, AcDb::kForWrite);
  const auto application = std::make_unique<AcDbRegAppTableRecord>();
  application->setName(L"NEW");
  AcDbObjectId made;
  EXPECT_EQ(table->add(made, application.get()), Acad::eWrongObjectType);
  EXPECT_EQ(table->add(made, nullptr), Acad::eNullObjectPointer);
  auto* present = opened<AcDbLayerTableRecord>(0x11);
  EXPECT_EQ(table->add(made, present), Acad::eAlreadyInDb);
  present->close();
  table->close();
  EXPECT_EQ(names(0x2).size(), 4u);
}

TEST_F(SymbolTables, AnApplicationIsRegistered) {
  AcDbRegAppTable* table = nullptr;
  EXPECT_EQ(database().getSymbolTable(table, AcDb::kForWrite), Acad::eOk);
  auto* record = new AcDbRegAppTableRecord;
  EXPECT_EQ(record->setName(L"PIPENOTE"), Acad::eOk);
  AcDbObjectId made;
  EXPECT_EQ(table->add(made, record), Acad::eOk);
  record->close();
  table->close();
  reopened();
  EXPECT_THAT(names(0x9), ElementsAre(L"ACAD", L"PN", L"PIPENOTE"));
}

TEST_F(SymbolTables, ARenamedRecordIsFoundUnderItsNewName) {
  auto* record = opened<AcDbLayerTableRecord>(0x12, AcDb::kForWrite);
  EXPECT_EQ(record->setName(L""), Acad::eInvalidInput);
  EXPECT_EQ(record->setName(nullptr), Acad::eInvalidInput);
  EXPECT_EQ(record->setName(L"COLD"), Acad::eOk);
  ACHAR* name = nullptr;
  EXPECT_EQ(record->getName(name), Acad::eOk);
  EXPECT_STREQ(name, L"COLD");
  acutDelString(name);
  record->close();
  EXPECT_TRUE(layer(L"FROZEN").isNull());
  EXPECT_EQ(layer(L"cold"), id(0x12));
}

TEST_F(SymbolTables, ReadersCannotWrite) {
  auto* record = opened<AcDbLayerTableRecord>(0x10);
  EXPECT_EQ(record->setName(L"x"), Acad::eNotOpenForWrite);
  EXPECT_EQ(record->setIsLocked(true), Acad::eNotOpenForWrite);
  EXPECT_EQ(record->setIsFrozen(true), Acad::eNotOpenForWrite);
  EXPECT_EQ(record->setIsOff(true), Acad::eNotOpenForWrite);
  EXPECT_EQ(record->setColorIndex(3), Acad::eNotOpenForWrite);
  record->close();
  EXPECT_FALSE(database().is_modified());
}

TEST_F(SymbolTables, ATableThatTheFileLacksIsNull) {
  given(spelled("0 SECTION\n2 ENTITIES\n0 ENDSEC\n0 EOF\n", Form::kUtf8));
  AcDbLayerTable* table = nullptr;
  EXPECT_EQ(database().getSymbolTable(table, AcDb::kForRead), Acad::eNullObjectId);
  EXPECT_EQ(table, nullptr);
  EXPECT_TRUE(database().clayer().isNull());
  EXPECT_TRUE(database().modelSpaceId().isNull());
}

}  // namespace
