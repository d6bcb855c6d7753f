#include "host/db/block.h"

#include <gmock/gmock.h>

#include "host/db/record.h"
#include "tests/host/db/plan.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

constexpr std::uint64_t kModel = 0x18;
constexpr std::uint64_t kPaper = 0x19;
constexpr std::uint64_t kWell = 0x1A;

class Blocks : public DrawingTest {
 protected:
  Blocks() { given_plan(); }

  std::vector<std::uint64_t> drawing_order() {
    std::vector<std::uint64_t> handles;
    for (AcDbObjectId at = database().first_entity(); !at.isNull();
         at = database().next_entity(at)) {
      handles.push_back(at.handle());
    }
    return handles;
  }
};

TEST_F(Blocks, SpacesHoldTheirEntitiesWithoutSubEntities) {
  EXPECT_THAT(entities(kModel), ElementsAre(0x2F, 0x30, 0x31, 0x32, 0x33, 0x37, 0x3A, 0x3B, 0x3D));
  EXPECT_THAT(entities(kPaper), ElementsAre(0x3C));
  EXPECT_THAT(entities(kWell), ElementsAre(0x20, 0x21));
}

TEST_F(Blocks, WithoutOwnersTheFlag67TellsPaperFromModelSpace) {
  std::string note(plan_note());
  for (const char* owner : {"330 18\n", "330 19\n"}) {
    for (std::size_t at; (at = note.find(owner, note.find("2 ENTITIES"))) != std::string::npos;) {
      note.erase(at, 7);
    }
  }
  for (const Form form : {Form::kUtf8, Form::kOldBinary}) {
    given(spelled(note, form));
    EXPECT_THAT(entities(kModel),
                ElementsAre(0x2F, 0x30, 0x31, 0x32, 0x33, 0x37, 0x3A, 0x3B, 0x3D));
    EXPECT_THAT(entities(kPaper), ElementsAre(0x3C));
  }
}

TEST_F(Blocks, TheDrawingIsWalkedWithSubEntities) {
  EXPECT_THAT(drawing_order(), ElementsAre(0x2F, 0x30, 0x31, 0x32, 0x33, 0x34, 0x35, 0x36, 0x37,
                                           0x38, 0x39, 0x3A, 0x3B, 0x3C, 0x3D));
  EXPECT_EQ(database().last_entity(), id(0x3D));
  EXPECT_TRUE(database().next_entity(AcDbObjectId()).isNull());
}

TEST_F(Blocks, NewEntitiesStandAtTheEndAndErasedOnesAreSteppedOver) {
  const AcDbObjectId first = append(new AcDbLine);
  const AcDbObjectId second = append(new AcDbLine);
  EXPECT_EQ(database().last_entity(), second);
  EXPECT_EQ(database().next_entity(id(0x3D)), first);
  EXPECT_EQ(database().next_entity(first), second);
  EXPECT_TRUE(database().next_entity(second).isNull());
  erase(second.handle());
  EXPECT_EQ(database().last_entity(), first);
  erase(0x2F);
  erase(0x33);
  EXPECT_EQ(database().first_entity(), id(0x30));
  EXPECT_EQ(database().next_entity(id(0x32)), id(0x37));
  EXPECT_EQ(database().next_entity(id(0x2F)), id(0x30)) << "from an erased one too";
  const std::uint64_t kept = first.handle();  // the id goes with the drawing
  reopened();
  EXPECT_THAT(drawing_order(),
              ElementsAre(0x30, 0x31, 0x32, 0x37, 0x38, 0x39, 0x3A, 0x3B, 0x3C, 0x3D, kept));
}

TEST_F(Blocks, TheLastEntityIsAMainOne) {
  erase(0x3D);
  erase(0x3C);
  erase(0x3B);
  erase(0x3A);
  EXPECT_EQ(database().last_entity(), id(0x37));
}

TEST_F(Blocks, AnEmptyDrawingHasNoEntities) {
  AcDbDatabase empty;
  EXPECT_TRUE(empty.first_entity().isNull());
  EXPECT_TRUE(empty.last_entity().isNull());
}

TEST_F(Blocks, EntitiesOfABlockAreWalkedInsideIt) {
  EXPECT_EQ(database().next_entity(id(0x20)), id(0x21));
  EXPECT_TRUE(database().next_entity(id(0x21)).isNull());
  const AcDbObjectId made = append(new AcDbLine, kWell);
  EXPECT_EQ(database().next_entity(id(0x21)), made);
  EXPECT_TRUE(database().next_entity(made).isNull());
}

// Adding

TEST_F(Blocks, AnAppendedEntityTakesTheCurrentLayerAndStaysOpen) {
  auto* space = opened<AcDbBlockTableRecord>(kModel, AcDb::kForWrite);
  auto* line = new AcDbLine({1, 2, 0}, {3, 4, 0});
  AcDbObjectId made;
  EXPECT_EQ(space->appendAcDbEntity(made, line), Acad::eOk);
  EXPECT_TRUE(line->isWriteEnabled());
  EXPECT_EQ(made.handle().value(), 0x200u);
  EXPECT_EQ(line->ownerId(), id(kModel));
  EXPECT_EQ(line->layerId(), id(0x10));
  AcDbObjectId again;
  EXPECT_EQ(space->appendAcDbEntity(again, line), Acad::eAlreadyInDb);
  EXPECT_EQ(space->appendAcDbEntity(again, nullptr), Acad::eNullEntityPointer);
  line->close();
  space->close();
  EXPECT_THAT(database().save_bytes(),
              HasSubstr("  0\nLINE\n  5\n200\n330\n18\n100\nAcDbEntity\n  8\n0\n100\nAcDbLine\n"
                        " 10\n1.0\n 20\n2.0\n 30\n0.0\n 11\n3.0\n 21\n4.0\n 31\n0.0\n"
                        "  0\nENDSEC\n  0\nSECTION\n  2\nOBJECTS\n"));
}

TEST_F(Blocks, RefusedEntitiesStayTheCallers) {
  auto* space = opened<AcDbBlockTableRecord>(kModel);
  const auto line = std::make_unique<AcDbLine>();
  AcDbObjectId made;
  EXPECT_EQ(space->appendAcDbEntity(made, line.get()), Acad::eNotOpenForWrite);
  space->upgradeOpen();
  line->setLayer(L"none");
  EXPECT_EQ(space->appendAcDbEntity(made, line.get()), Acad::eKeyNotFound);
  EXPECT_TRUE(made.isNull());
  space->close();
  EXPECT_TRUE(line->objectId().isNull());
}

TEST_F(Blocks, ALockedLayerTakesNewEntities) {
  auto* line = new AcDbLine;
  line->setLayer(L"LOCKED");
  const AcDbObjectId made = append(line);
  EXPECT_EQ(open_status(made, AcDb::kForRead), Acad::eOk);
  EXPECT_EQ(open_status(made, AcDb::kForWrite), Acad::eOnLockedLayer);
}

TEST_F(Blocks, EntitiesGoIntoSpacesAndBlocksInEveryForm) {
  for (const Form form : kFormsWithDictionaries) {
    SCOPED_TRACE(form_name(form));
    given_plan(form);
    const auto in_model =
        append(new AcDbText({1, 2, 3}, L"管径 DN300", id(0x14), 3.5, 1.0), kModel);
    const auto in_paper = append(new AcDbLine({0, 0, 0}, {1, 1, 0}), kPaper);
    const auto in_block = append(new AcDbLine({0, 0, 0}, {1, 1, 0}), kWell);
    const auto handles = {in_model.handle(), in_paper.handle(), in_block.handle()};
    EXPECT_THAT(entities(kWell), ElementsAre(0x20, 0x21, in_block.handle().value()));
    for (int round = 0; round < 2; ++round) {
      EXPECT_EQ(entities(kModel).back(), handles.begin()[0].value());
      EXPECT_EQ(entities(kPaper).back(), handles.begin()[1].value());
      EXPECT_EQ(entities(kWell).back(), handles.begin()[2].value());
      EXPECT_EQ(entities(kModel).size(), 10u);
      EXPECT_EQ(text_of(handles.begin()[0]), L"管径 DN300");
      reopened();
    }
    auto* text = opened<AcDbText>(handles.begin()[0].value());
    EXPECT_EQ(text->position(), AcGePoint3d(1, 2, 3));
    EXPECT_EQ(text->height(), 3.5);
    EXPECT_NEAR(text->rotation(), 1.0, 1e-12);
    text->close();
  }
}

TEST_F(Blocks, ABlockRecordWithoutItsBlockTakesNothing) {
  std::string note(plan_note());
  const std::size_t begin = note.find("0 BLOCK\n5 1F");
  note.erase(begin, note.find("0 ENDSEC\n0 SECTION\n2 ENTITIES") - begin);
  given(spelled(note, Form::kUtf8));
  EXPECT_TRUE(entities(kWell).empty());
  auto* record = opened<AcDbBlockTableRecord>(kWell, AcDb::kForWrite);
  const auto line = std::make_unique<AcDbLine>();
  AcDbObjectId made;
  EXPECT_EQ(record->appendAcDbEntity(made, line.get()), Acad::eInvalidBlockName);
  record->close();
}

TEST_F(Blocks, ADrawingWithoutEntitiesGetsTheSectionOnDemand) {
  std::string note(plan_note());
  const std::size_t begin = note.find("0 SECTION\n2 ENTITIES");
  given(spelled(note.substr(0, begin) + "0 EOF\n", Form::kUtf8));
  EXPECT_TRUE(database().first_entity().isNull());
  const auto line = append(new AcDbLine({0, 0, 0}, {1, 1, 0})).handle();
  file_record(extension(id(line)), L"PIPE", L"x");
  const std::string bytes = database().save_bytes();
  EXPECT_LT(bytes.find("\nENTITIES\n"), bytes.find("\nOBJECTS\n"));
  reopened();
  EXPECT_THAT(entities(kModel), ElementsAre(line.value()));
  EXPECT_EQ(database().first_entity(), id(line));
  AcDbObject* object = opened(line.value());
  EXPECT_THAT(keys(object->extensionDictionary()), ElementsAre(L"PIPE"));
  object->close();
}

TEST_F(Blocks, TheCurrentSpaceFollowsTilemode) {
  EXPECT_EQ(database().modelSpaceId(), id(kModel));
  EXPECT_EQ(database().currentSpaceId(), id(kModel));
  std::string note(plan_note());
  note.replace(note.find("9 $TILEMODE\n70 1"), 16, "9 $TILEMODE\n70 0");
  for (const Form form : kFormsWithDictionaries) {
    given(spelled(note, form));
    EXPECT_EQ(database().currentSpaceId(), id(kPaper));
  }
}

TEST_F(Blocks, RecordsTellKindAndTags) {
  EXPECT_EQ(cad::record_kind(id(0x3B)), "ACAD_PROXY_ENTITY");
  EXPECT_EQ(cad::record_kind(AcDbObjectId()), "");
  EXPECT_TRUE(cad::is_entity(id(0x3B)));
  EXPECT_TRUE(cad::is_entity(id(0x34)));
  EXPECT_FALSE(cad::is_entity(id(0x51)));
  EXPECT_FALSE(cad::is_entity(AcDbObjectId()));
  EXPECT_EQ(cad::record_tags(id(0x36)).bytes,
            "  0\nSEQEND\n  5\n36\n330\n33\n100\nAcDbEntity\n  8\n0\n");
  EXPECT_TRUE(cad::record_tags(AcDbObjectId()).bytes.empty());
  EXPECT_EQ(cad::referenced(id(0x36), 0x33), id(0x33));
  EXPECT_TRUE(cad::referenced(id(0x36), 0xFFFF).isNull());
}

}  // namespace
