#include "host/base/codepage.h"
#include "host/db/copy_entity.h"
#include "host/db/undo.h"
#include "tests/host/db/inserting.h"
#include "tests/host/db/little.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

TEST_F(InsertDrawing, ModelSpaceBecomesTheBlock) {
  given(drawing_of(""));
  given_source(spelled(plan_note(), Form::kUtf8));
  const AcDbObjectId block = inserted();
  EXPECT_EQ(cad::record_kind(block), "BLOCK_RECORD");
  EXPECT_THAT(kinds(block),
              ElementsAre("LINE", "TEXT", "LINE", "MTEXT", "POLYLINE", "VERTEX", "VERTEX", "SEQEND",
                          "INSERT", "ATTRIB", "SEQEND", "CIRCLE", "ACAD_PROXY_ENTITY", "LINE"));
  // The base point of the drawing is the block's.
  EXPECT_THAT(tags(begin_of(block)), HasSubstr(" 10\n1.5\n 20\n2.5\n 30\n0.0\n"));
  EXPECT_EQ(entity_in(block, "VERTEX").stub()->owner, entity_in(block, "POLYLINE").handle());
  EXPECT_EQ(entity_in(block, "POLYLINE").stub()->owner, block.handle());
  reopened();
  const AcDbObjectId again = record("BLOCK_RECORD", L"symbol");
  ASSERT_FALSE(again.isNull());
  EXPECT_EQ(kinds(again).size(), 14u);
}

TEST_F(InsertDrawing, TheSourceStaysAsItIs) {
  given(drawing_of(""));
  const std::string bytes = spelled(plan_note(), Form::kUtf8);
  given_source(bytes);
  inserted();
  EXPECT_EQ(source().save_bytes(), bytes);
  EXPECT_TRUE(source().open_objects().empty());
}

TEST_F(InsertDrawing, TheWorkingDatabaseIsLeftAlone) {
  given(drawing_of(""));
  acdbHostApplicationServices()->setWorkingDatabase(&database());
  given_source(drawing_of(kLine));
  AcDbObjectId block;
  EXPECT_EQ(database().insert(block, L"SYMBOL", &source()), Acad::eOk);
  given_source(drawing_of(""));
  EXPECT_EQ(acdbHostApplicationServices()->workingDatabase(), &database());
}

TEST_F(InsertDrawing, LayersAndStylesComeAlong) {
  given(drawing_of(""));
  given_source(spelled(plan_note(), Form::kUtf8));
  inserted();
  // Of the source's layers only those in use, and not in place of this drawing's own.
  EXPECT_TRUE(record("LAYER", L"FROZEN").isNull());
  EXPECT_THAT(tags(record("LAYER", L"locked")), HasSubstr(" 62\n3\n"));
  EXPECT_FALSE(record("APPID", L"PN").isNull());
}

TEST_F(InsertDrawing, ANewLayerKeepsItsPropertiesAndLinetype) {
  given(drawing_of(""));
  std::string bytes = drawing_of("0 LINE\n5 100\n330 1F\n100 AcDbEntity\n8 GAS\n100 AcDbLine\n");
  const std::string layer = written::ascii(
      "0 LAYER\n5 80\n330 2\n100 AcDbSymbolTableRecord\n100 AcDbLayerTableRecord\n2 Gas\n70 1\n"
      "62 -30\n6 DASHED\n390 F\n");
  bytes.insert(bytes.find("  0\nENDTAB"), layer);
  const std::string linetypes = written::ascii(
      "0 TABLE\n2 LTYPE\n5 90\n330 0\n100 AcDbSymbolTable\n70 1\n0 LTYPE\n5 91\n330 90\n"
      "100 AcDbSymbolTableRecord\n100 AcDbLinetypeTableRecord\n2 DASHED\n70 0\n3 - -\n72 65\n73 0\n"
      "40 0.0\n0 ENDTAB\n");
  bytes.insert(bytes.find("  0\nTABLE"), linetypes);
  given_source(bytes);
  std::string own = drawing_of("");
  own.insert(
      own.find("  0\nTABLE"),
      written::ascii("0 TABLE\n2 LTYPE\n5 90\n330 0\n100 AcDbSymbolTable\n70 0\n0 ENDTAB\n"));
  given(own);
  inserted();
  const std::string made = tags(record("LAYER", L"gas"));
  EXPECT_THAT(made, HasSubstr("  2\nGas\n 70\n1\n 62\n-30\n  6\nDASHED\n"));
  EXPECT_THAT(made, HasSubstr("330\n2\n100"));
  EXPECT_THAT(made, Not(HasSubstr("390\n")));
  EXPECT_FALSE(record("LTYPE", L"dashed").isNull());
}

TEST_F(InsertDrawing, ReferencesFollowAndTextsOfHandlesStay) {
  std::string bytes = drawing_of(
      "0 LINE\n5 100\n102 {ACAD_XDICTIONARY\n360 200\n102 }\n102 {ACAD_REACTORS\n330 C\n102 }\n"
      "330 1F\n100 AcDbEntity\n8 0\n100 AcDbLine\n10 0.0\n20 0.0\n30 0.0\n11 1.0\n21 0.0\n31 0.0\n"
      "0 CIRCLE\n5 101\n330 1F\n100 AcDbEntity\n8 0\n100 AcDbCircle\n10 0.0\n20 0.0\n30 0.0\n"
      "40 1.0\n1001 PN\n1005 100\n1005 FFF\n");
  bytes.insert(
      bytes.rfind("  0\nENDSEC"),
      written::ascii("0 DICTIONARY\n5 200\n330 100\n100 AcDbDictionary\n280 1\n281 1\n"
                     "3 pcgb\n360 201\n3 gone\n360 2FF\n0 XRECORD\n5 201\n"
                     "102 {ACAD_REACTORS\n330 200\n102 }\n330 200\n100 AcDbXrecord\n280 1\n"
                     "1 101\n320 100\n330 101\n340 100\n330 BAD\n"));
  given_source(bytes);
  given(drawing_of(""));
  const AcDbObjectId block = inserted();
  const AcDbObjectId line = entity_in(block, "LINE"), circle = entity_in(block, "CIRCLE");
  EXPECT_THAT(tags(line), Not(HasSubstr("REACTORS")));
  EXPECT_THAT(tags(circle), HasSubstr("1001\nPN\n1005\n" + hex(line) + "\n1005\n0\n"));
  const AcDbObjectId dictionary = referred(line, 360);
  EXPECT_EQ(dictionary.stub()->owner, line.handle());
  EXPECT_THAT(tags(dictionary), Not(HasSubstr("gone")));
  const AcDbObjectId xrecord = referred(dictionary, 360);
  EXPECT_EQ(tags(xrecord), "  0\nXRECORD\n  5\n" + hex(xrecord) + "\n102\n{ACAD_REACTORS\n330\n" +
                               hex(dictionary) + "\n102\n}\n330\n" + hex(dictionary) +
                               "\n100\nAcDbXrecord\n280\n1\n  1\n101\n320\n100\n330\n" +
                               hex(circle) + "\n340\n" + hex(line) + "\n330\n0\n");
}

TEST_F(InsertDrawing, NestedBlocksComeAlongOnce) {
  given_source(drawing_of(insert_of("BOX") + insert_of("Box")));
  given(spelled(plan_note(), Form::kUtf8));
  const AcDbObjectId block = inserted();
  const AcDbObjectId box = record("BLOCK_RECORD", L"box");
  ASSERT_FALSE(box.isNull());
  EXPECT_THAT(kinds(box), testing::SizeIs(testing::Ge(2u)));
  EXPECT_THAT(kinds(block), ElementsAre("INSERT", "INSERT"));
  reopened();
  EXPECT_FALSE(record("BLOCK_RECORD", L"BOX").isNull());
}

TEST_F(InsertDrawing, ABlockThatTheDrawingHasCounts) {
  given_source(drawing_of(insert_of("BOX")));
  given(drawing_of(""));
  const std::size_t before = kinds(id(0x1A)).size();
  inserted();
  EXPECT_EQ(record("BLOCK_RECORD", L"BOX"), id(0x1A));
  EXPECT_EQ(kinds(id(0x1A)).size(), before);
}

TEST_F(InsertDrawing, AnonymousBlocksGetNewNames) {
  const std::string own = block("*D1", std::string(kLine));
  given_source(little_drawing(
      "0 DIMENSION\n5 200\n100 AcDbEntity\n8 0\n100 AcDbDimension\n2 *D1\n10 0.0\n20 0.0\n30 0.0\n"
      "70 1\n",
      own));
  given(little_drawing("", block("*D1", "")));
  Acad::ErrorStatus status;
  const auto made = cad::insert_drawing(database(), L"SYMBOL", source(), status);
  ASSERT_TRUE(made) << made.error().message();
  const std::string saved = database().save_bytes();
  EXPECT_THAT(saved, HasSubstr("AcDbDimension\n  2\n*D2\n"));
  EXPECT_THAT(saved, HasSubstr("AcDbBlockBegin\n  2\n*D2\n"));
}

TEST_F(InsertDrawing, AnEmptyRecordOfThatNameIsFilled) {
  given(drawing_of(""));
  given_source(drawing_of(kLine));
  AcDbBlockTable* table = nullptr;
  ASSERT_EQ(database().getSymbolTable(table, AcDb::kForWrite), Acad::eOk);
  auto* made = new AcDbBlockTableRecord;
  EXPECT_EQ(made->setName(L"psjt"), Acad::eOk);
  AcDbObjectId block, filled;
  EXPECT_EQ(table->add(block, made), Acad::eOk);
  made->close();
  table->close();
  EXPECT_THAT(kinds(block), testing::IsEmpty());
  EXPECT_EQ(database().insert(filled, L"PSJT", &source(), true), Acad::eOk);
  EXPECT_EQ(filled, block);
  EXPECT_THAT(kinds(block), ElementsAre("LINE"));
  reopened();
  EXPECT_THAT(kinds(record("BLOCK_RECORD", L"psjt")), ElementsAre("LINE"));
}

TEST_F(InsertDrawing, AnExistingBlockLosesItsContents) {
  given(drawing_of(insert_of("BOX")));
  std::string bytes = drawing_of(kLine);
  for (std::size_t at; (at = bytes.find("BOX")) != std::string::npos;) bytes.replace(at, 3, "BAG");
  given_source(bytes);
  EXPECT_EQ(inserted(L"BOX"), id(0x1A));
  EXPECT_THAT(kinds(id(0x1A)), ElementsAre("LINE"));
  reopened();
  EXPECT_THAT(kinds(id(0x1A)), ElementsAre("LINE"));
}

TEST_F(InsertDrawing, AttributeDefinitionsMarkTheBlock) {
  given(drawing_of(""));
  given_source(
      drawing_of("0 ATTDEF\n5 100\n330 1F\n100 AcDbEntity\n8 0\n100 AcDbText\n10 0.0\n"
                 "20 0.0\n30 0.0\n40 1.0\n1 1\n100 AcDbAttributeDefinition\n3 Number\n"
                 "2 NO\n70 0\n"));
  const AcDbObjectId block = inserted();
  EXPECT_THAT(kinds(block), ElementsAre("ATTDEF"));
  EXPECT_THAT(tags(begin_of(block)), HasSubstr(" 70\n     2\n"));
}

TEST_F(InsertDrawing, ABlockCannotContainItself) {
  given(drawing_of(""));
  given_source(drawing_of(kLine));
  EXPECT_EQ(refusal(L"BOX"), "97 block BOX: symbol.dxf contains a block of that name itself");
  // The source shows a block of the name without defining it.
  given_source(drawing_of(insert_of("SYMBOL")));
  EXPECT_EQ(refusal(), "97 block SYMBOL: would contain itself");
}

TEST_F(InsertDrawing, ABlockOfTheDrawingMayNotShowTheNewOne) {
  std::string bytes = drawing_of("");
  bytes.insert(
      bytes.find("  0\nENDBLK", bytes.find("AcDbBlockBegin\n  2\nBOX")),
      written::ascii("0 INSERT\n5 30\n330 1A\n100 AcDbEntity\n8 0\n100 AcDbBlockReference\n"
                     "2 SYMBOL\n10 0.0\n20 0.0\n30 0.0\n"));
  given(bytes);
  given_source(drawing_of(insert_of("BOX")));
  EXPECT_EQ(refusal(),
            "97 block SYMBOL: contains the block BOX, which in this drawing contains it in turn");
}

TEST_F(InsertDrawing, ADrawingCannotHoldItself) {
  given(drawing_of(kLine));
  AcDbObjectId block;
  EXPECT_EQ(database().insert(block, L"SYMBOL", &database()), Acad::eSelfReference);
  EXPECT_EQ(database().insert(block, L"SYMBOL", nullptr), Acad::eNullObjectPointer);
  EXPECT_TRUE(block.isNull());
}

TEST_F(InsertDrawing, RingsOfBlocksAreRefused) {
  given(drawing_of(""));
  const std::string a = block("A", "0 INSERT\n100 AcDbEntity\n8 0\n100 AcDbBlockReference\n2 B\n");
  const std::string b = block("B", "0 INSERT\n100 AcDbEntity\n8 0\n100 AcDbBlockReference\n2 A\n");
  const std::string self =
      block("C", "0 INSERT\n100 AcDbEntity\n8 0\n100 AcDbBlockReference\n2 C\n");
  given_source(little_drawing(insert_of("A"), a + b));
  EXPECT_EQ(refusal(), "97 block A: contains itself");
  given_source(little_drawing(insert_of("C"), self));
  EXPECT_EQ(refusal(), "97 block C: contains itself");
  given_source(little_drawing(insert_of("*Model_Space")));
  EXPECT_EQ(refusal(), "97 *Model_Space: is a space, but is inserted");
}

TEST_F(InsertDrawing, BlockNamesAreChecked) {
  given(drawing_of(""));
  given_source(drawing_of(kLine));
  for (const wchar_t* name : {L"", L"a/b", L"*Model_Space", L"*Paper_Space0", L"*"}) {
    EXPECT_THAT(refusal(name), testing::StartsWith("47 "));
  }
  EXPECT_EQ(text(begin_of(inserted(L"*U")), "AcDbBlockBegin", 2), L"*U1");
}

TEST_F(InsertDrawing, UndoingLeavesTheFileAsItWas) {
  const std::string bytes = spelled(plan_note(), Form::kUtf8);
  given(bytes);
  std::string from = drawing_of(insert_of("BOX") + std::string(kLine));
  given_source(from);
  inserted();
  EXPECT_EQ(cad::undo_log(database()).undo(1), 1u);
  EXPECT_EQ(database().save_bytes(), bytes);
  EXPECT_TRUE(record("BLOCK_RECORD", L"SYMBOL").isNull());
  EXPECT_EQ(cad::undo_log(database()).redo(1), 1u);
  EXPECT_FALSE(record("BLOCK_RECORD", L"BOX").isNull());
  EXPECT_THAT(kinds(record("BLOCK_RECORD", L"SYMBOL")), ElementsAre("INSERT", "LINE"));
}

TEST_F(InsertDrawing, ProxiesBringTheirClass) {
  given(drawing_of(""));
  given_source(spelled(plan_note(), Form::kUtf8));
  const AcDbObjectId block = inserted();
  EXPECT_THAT(tags(entity_in(block, "ACAD_PROXY_ENTITY")), HasSubstr(" 91\n      500\n"));
  const std::string saved = database().save_bytes();
  EXPECT_THAT(saved, HasSubstr("  2\nCLASSES\n  0\nCLASS\n  1\nGX_PIPE\n  2\nCGxPipe\n"));
  EXPECT_LT(saved.find("CLASSES"), saved.find("TABLES"));
  // In a drawing that has the class at another place.
  std::string own = drawing_of("");
  own.insert(
      own.find("  0\nSECTION\n  2\nTABLES"),
      written::ascii("0 SECTION\n2 CLASSES\n0 CLASS\n1 OTHER\n2 COther\n3 O\n90 1\n280 0\n281 1\n"
                     "0 CLASS\n1 GX_PIPE\n2 CGxPipe\n3 Gx\n90 1\n280 0\n281 1\n0 ENDSEC\n"));
  given(own);
  EXPECT_THAT(tags(entity_in(inserted(), "ACAD_PROXY_ENTITY")), HasSubstr(" 91\n      501\n"));
  EXPECT_EQ(cad::undo_log(database()).undo(1), 1u);
  EXPECT_EQ(database().save_bytes(), own);
}

TEST_F(InsertDrawing, FiledObjectsAreFoundByTheirKeys) {
  const auto with_image = [](std::string_view path) {
    std::string bytes = drawing_of(
        "0 IMAGE\n5 100\n330 1F\n100 AcDbEntity\n8 0\n100 AcDbRasterImage\n90 0\n340 303\n");
    bytes.insert(bytes.rfind("  0\nENDSEC"),
                 written::ascii("3 ACAD_IMAGE_DICT\n350 301\n0 DICTIONARY\n5 301\n330 C\n"
                                "100 AcDbDictionary\n281 1\n3 photo\n350 303\n0 IMAGEDEF\n5 303\n"
                                "102 {ACAD_REACTORS\n330 301\n102 }\n330 301\n"
                                "100 AcDbRasterImageDef\n90 0\n1 " +
                                std::string(path) + "\n"));
    return bytes;
  };
  given_source(with_image("new.png"));
  given(drawing_of(""));
  const AcDbObjectId image = entity_in(inserted(), "IMAGE");
  const AcDbObjectId definition = referred(image, 340);
  ASSERT_FALSE(definition.isNull());
  EXPECT_EQ(text(definition, "AcDbRasterImageDef", 1), L"new.png");
  const AcDbObjectId owner = cad::referenced(definition, definition.stub()->owner);
  EXPECT_EQ(keys(owner), (std::vector<std::wstring>{L"photo"}));
  EXPECT_EQ(keys(database().namedObjectsDictionaryId()),
            (std::vector<std::wstring>{L"ACAD_IMAGE_DICT"}));
  given_source(with_image("other.png"));
  const AcDbObjectId second = entity_in(inserted(L"SECOND"), "IMAGE");
  EXPECT_EQ(referred(second, 340), definition);
}

TEST_F(InsertDrawing, DrawOrderAndUnitsComeAlong) {
  std::string bytes = drawing_of(
      std::string(kLine) +
      "0 POINT\n5 101\n330 1F\n100 AcDbEntity\n8 0\n100 AcDbPoint\n10 0.0\n20 0.0\n30 0.0\n");
  const auto put = [&](std::string_view in_front, std::string_view note) {
    const std::size_t at = bytes.find(in_front);
    ASSERT_NE(at, std::string::npos) << in_front;
    bytes.insert(at, written::ascii(note));
  };
  put("  9\n$HANDSEED", "9 $INSUNITS\n70 6\n");
  put("330\n1\n100\nAcDbSymbolTableRecord\n100\nAcDbBlockTableRecord\n  2\n*Model_Space",
      "102 {ACAD_XDICTIONARY\n360 400\n102 }\n");
  bytes.insert(bytes.rfind("  0\nENDSEC"),
               written::ascii("0 DICTIONARY\n5 400\n330 1F\n100 AcDbDictionary\n280 1\n281 1\n"
                              "3 ACAD_SORTENTS\n360 401\n0 SORTENTSTABLE\n5 401\n"
                              "102 {ACAD_REACTORS\n330 400\n102 }\n330 400\n"
                              "100 AcDbSortentsTable\n330 1F\n331 100\n5 101\n331 101\n5 100\n"));
  given_source(bytes);
  given(drawing_of(""));
  const AcDbObjectId block = inserted();
  const AcDbObjectId order = referred(referred(block, 360), 360);
  const std::string line = hex(entity_in(block, "LINE")), point = hex(entity_in(block, "POINT"));
  EXPECT_THAT(tags(order), HasSubstr("AcDbSortentsTable\n330\n" + hex(block) + "\n331\n" + line +
                                     "\n  5\n" + point + "\n331\n" + point + "\n  5\n" + line));
  EXPECT_THAT(tags(block), HasSubstr(" 70\n     6\n"));
  reopened();
  EXPECT_FALSE(referred(record("BLOCK_RECORD", L"SYMBOL"), 360).isNull());
}

TEST_F(InsertDrawing, UndefinedNamesDoNoHarm) {
  given(drawing_of(""));
  given_source(little_drawing(
      "0 TEXT\n5 100\n100 AcDbEntity\n8 NOWHERE\n6 NOLINES\n100 AcDbText\n10 0.0\n20 0.0\n40 1.0\n"
      "1 T\n7 NOSTYLE\n100 AcDbText\n1001 NOAPP\n1000 x\n" +
      insert_of("NOBLOCK")));
  const AcDbObjectId block = inserted();
  EXPECT_FALSE(record("LAYER", L"NOWHERE").isNull());
  EXPECT_FALSE(record("APPID", L"NOAPP").isNull());
  const std::string made = tags(entity_in(block, "TEXT"));
  EXPECT_THAT(made, Not(HasSubstr("NOLINES")));
  EXPECT_THAT(made, Not(HasSubstr("NOSTYLE")));
  EXPECT_THAT(kinds(record("BLOCK_RECORD", L"NOBLOCK")), testing::IsEmpty());
}

TEST_F(InsertDrawing, RecordsOfAnotherKindAndStrayFramesStayOut) {
  std::string bytes = drawing_of(
      "0 ENDBLK\n5 101\n330 1F\n100 AcDbEntity\n8 0\n100 AcDbBlockEnd\n"
      "0 LINE\n5 100\n330 1F\n100 AcDbEntity\n8 GAS\n100 AcDbLine\n10 0.0\n20 0.0\n");
  bytes.insert(bytes.find("  0\nENDTAB"), written::ascii("0 CIRCLE\n5 80\n330 2\n2 GAS\n"));
  given_source(bytes);
  given(drawing_of(""));
  EXPECT_THAT(kinds(inserted()), ElementsAre("LINE"));
  EXPECT_EQ(cad::record_kind(record("LAYER", L"GAS")), "LAYER");
  reopened();
  EXPECT_THAT(kinds(record("BLOCK_RECORD", L"SYMBOL")), ElementsAre("LINE"));
}

TEST_F(InsertDrawing, AKindThatOnlyABinaryFileCanNameIsRefused) {
  std::string bytes = spelled(plan_note(), Form::kBinary);
  const std::string line("\0LINE\0", 6);
  const std::size_t at = bytes.find(line, bytes.find("ENTITIES"));
  ASSERT_NE(at, bytes.npos);
  bytes.replace(at + 1, 2, "L\n");
  given_plan();
  given_source(bytes);
  EXPECT_THAT(refusal(), HasSubstr("L?NE 2F: the name of its kind holds a control character"));
}

TEST_F(InsertDrawing, AnEmptyDrawingMakesAnEmptyBlock) {
  given(drawing_of(""));
  given_source(drawing_of(""));
  EXPECT_THAT(kinds(inserted()), testing::IsEmpty());
}

TEST_F(InsertDrawing, WhatTheDrawingWasChangedToCounts) {
  given(drawing_of(""));
  AcDbDatabase& from = given_source(drawing_of(kLine));
  const auto copy = cad::copy_entity(AcDbObjectId(from.drawing().find(0x100)));
  ASSERT_TRUE(copy);
  EXPECT_THAT(kinds(inserted()), ElementsAre("LINE", "LINE"));
}

TEST_F(InsertDrawing, EntitiesAreCopiedIntoOtherDrawings) {
  given(drawing_of(""));
  AcDbDatabase& from = given_source(spelled(plan_note(), Form::kChinese));
  const auto copies = cad::copy_entities(
      {AcDbObjectId(from.drawing().find(0x37)), AcDbObjectId(from.drawing().find(0x3A))}, id(0x1F));
  ASSERT_TRUE(copies) << copies.error().message();
  ASSERT_EQ(copies->size(), 2u);
  EXPECT_EQ(cad::record_kind(database().next_entity(copies->front())), "ATTRIB");
  EXPECT_FALSE(record("BLOCK_RECORD", L"WELL").isNull());
  const auto paper = cad::copy_entity(AcDbObjectId(from.drawing().find(0x2F)), id(0x1B));
  ASSERT_TRUE(paper);
  EXPECT_THAT(tags(*paper), HasSubstr("100\nAcDbEntity\n 67\n     1\n  8\n0\n"));
  const auto shown =
      cad::copy_entity(AcDbObjectId(from.drawing().find(0x37)), record("BLOCK_RECORD", L"WELL"));
  ASSERT_FALSE(shown);
  EXPECT_EQ(shown.error().message(), "block WELL: would contain itself");
}

}  // namespace
