#include "host/db/entity.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>
#include <numbers>

#include "host/db/polyline.h"
#include "host/db/undo.h"
#include "tests/host/db/plan.h"

namespace {

using testing::HasSubstr;

std::wstring taken(ACHAR* text) {
  std::wstring copy = text;
  acutDelString(text);
  return copy;
}

class Entities : public DrawingTest {
 protected:
  Entities() { given_plan(); }

  /// The whole file must be as it was but for `from`, which is now `to`.
  void expect_only_change(const std::string& from, const std::string& to) {
    std::string wanted = spelled(plan_note(), Form::kUtf8);
    wanted.replace(wanted.find(from), from.size(), to);
    EXPECT_EQ(database().save_bytes(), wanted);
  }
};

TEST_F(Entities, TextsReadTheirTags) {
  auto* text = opened<AcDbText>(0x30);
  EXPECT_EQ(taken(text->textString()), L"DN300");
  EXPECT_EQ(text->position(), AcGePoint3d(10, 20, 0));
  EXPECT_EQ(text->height(), 2.5);
  EXPECT_NEAR(text->rotation(), std::numbers::pi / 2, 1e-12);
  EXPECT_EQ(taken(text->layer()), L"0");
  EXPECT_EQ(text->colorIndex(), 256);
  text->close();
  auto* line = opened<AcDbLine>(0x2F);
  EXPECT_EQ(line->startPoint(), AcGePoint3d(1, 2, 0));
  EXPECT_EQ(line->endPoint(), AcGePoint3d(4, 6, 0.5));
  EXPECT_EQ(line->colorIndex(), 3);
  line->close();
}

TEST_F(Entities, ChangingATextChangesItsLineOnly) {
  auto* text = opened<AcDbText>(0x3C, AcDb::kForWrite);
  EXPECT_EQ(text->setTextString(L"A0"), Acad::eOk);
  text->close();
  expect_only_change("  1\nA1\n", "  1\nA0\n");
}

TEST_F(Entities, ATextSetToWhatItShowsKeepsItsBytes) {
  auto* text = opened<AcDbText>(0x30, AcDb::kForWrite);
  EXPECT_EQ(text->setTextString(L"DN300"), Acad::eOk);
  EXPECT_FALSE(text->isModified());
  text->close();
  EXPECT_FALSE(database().is_modified());
}

TEST_F(Entities, AnAttributeIsAText) {
  auto* attribute = opened<AcDbText>(0x38, AcDb::kForWrite);
  ASSERT_NE(attribute, nullptr);
  EXPECT_STREQ(attribute->isA()->dxfName(), L"ATTRIB");
  EXPECT_EQ(taken(attribute->textString()), L"W1");
  EXPECT_EQ(attribute->setTextString(L"W2"), Acad::eOk);
  attribute->close();
  expect_only_change("  1\nW1\n", "  1\nW2\n");
}

TEST_F(Entities, AnAttributeHasItsVerticalModeInItsOwnPart) {
  auto* attribute = opened<AcDbText>(0x38, AcDb::kForWrite);
  ASSERT_NE(attribute, nullptr);
  EXPECT_EQ(attribute->setVerticalMode(AcDb::kTextTop), Acad::eOk);
  EXPECT_EQ(attribute->verticalMode(), AcDb::kTextTop);
  EXPECT_FALSE(attribute->isDefaultAlignment());
  EXPECT_EQ(attribute->setAlignmentPoint(AcGePoint3d(3, 9, 0)), Acad::eOk);
  attribute->close();
  EXPECT_NEAR(attribute->position().y, 8.0, 0.01);
  const std::string saved = database().save_bytes();
  EXPECT_THAT(saved, HasSubstr("100\nAcDbAttribute\n  2\nNO\n 70\n0\n 74\n     3\n"));
}

TEST_F(Entities, ChangedNumbersTakeThePlaceOfTheOldOnes) {
  auto* line = opened<AcDbLine>(0x2F, AcDb::kForWrite);
  EXPECT_EQ(line->setEndPoint({4, 7.5, 0.5}), Acad::eOk);
  EXPECT_EQ(line->setColorIndex(256), Acad::eOk);
  line->close();
  std::string wanted = spelled(plan_note(), Form::kUtf8);
  const std::string from =
      " 62\n3\n370\n25\n100\nAcDbLine\n 10\n1.0\n 20\n2.0\n 30\n0.0\n 11\n4.0\n 21\n6.0\n";
  wanted.replace(
      wanted.find(from), from.size(),
      " 62\n   256\n370\n25\n100\nAcDbLine\n 10\n1.0\n 20\n2.0\n 30\n0.0\n 11\n4.0\n 21\n7.5\n");
  EXPECT_EQ(database().save_bytes(), wanted);
}

TEST_F(Entities, ATagThatWasNotThereGoesToItsOwnClassPart) {
  // A TEXT has the marker AcDbText twice; height, rotation and style belong behind the first.
  auto* text = opened<AcDbText>(0x3C, AcDb::kForWrite);
  EXPECT_EQ(text->setRotation(std::numbers::pi / 2), Acad::eOk);
  EXPECT_EQ(text->setColorIndex(1), Acad::eOk);
  text->close();
  EXPECT_THAT(database().save_bytes(),
              HasSubstr("100\nAcDbEntity\n 67\n1\n  8\n0\n 62\n     1\n100\nAcDbText\n 10\n0.0\n"
                        " 20\n0.0\n 30\n0.0\n 40\n2.5\n  1\nA1\n 50\n90.0\n100\nAcDbText\n"));
}

TEST_F(Entities, ANewTextHoldsItsTagsInTheirParts) {
  append(new AcDbText({1, 2, 0}, L"x", id(0x14), 2, std::numbers::pi / 2));
  EXPECT_THAT(database().save_bytes(),
              HasSubstr("100\nAcDbText\n 10\n1.0\n 20\n2.0\n 30\n0.0\n 40\n2.0\n  1\nx\n 50\n90.0\n"
                        "  7\nStandard\n100\nAcDbText\n"));
}

TEST_F(Entities, LayersMustExist) {
  auto* line = opened<AcDbLine>(0x2F, AcDb::kForWrite);
  EXPECT_EQ(line->setLayer(L"none"), Acad::eKeyNotFound);
  EXPECT_EQ(line->setLayer(static_cast<const ACHAR*>(nullptr)), Acad::eInvalidInput);
  EXPECT_EQ(line->setLayer(AcDbObjectId()), Acad::eNullObjectId);
  EXPECT_EQ(line->setLayer(L"frozen"), Acad::eOk);
  EXPECT_EQ(line->layerId(), id(0x12));
  EXPECT_EQ(line->setLayer(id(0x13)), Acad::eOk);
  EXPECT_EQ(taken(line->layer()), L"OFF");
  EXPECT_EQ(line->setColorIndex(-1), Acad::eOutOfRange);
  EXPECT_EQ(line->setColorIndex(257), Acad::eOutOfRange);
  line->close();
}

TEST_F(Entities, ReadersCannotWrite) {
  auto* text = opened<AcDbText>(0x30);
  EXPECT_EQ(text->setTextString(L"x"), Acad::eNotOpenForWrite);
  EXPECT_EQ(text->setPosition({0, 0, 0}), Acad::eNotOpenForWrite);
  EXPECT_EQ(text->setHeight(1), Acad::eNotOpenForWrite);
  EXPECT_EQ(text->setRotation(1), Acad::eNotOpenForWrite);
  EXPECT_EQ(text->setLayer(L"OFF"), Acad::eNotOpenForWrite);
  EXPECT_EQ(text->setLayer(id(0x13)), Acad::eNotOpenForWrite);
  EXPECT_EQ(text->setColorIndex(1), Acad::eNotOpenForWrite);
  EXPECT_EQ(text->erase(), Acad::eNotOpenForWrite);
  EXPECT_EQ(text->addPersistentReactor(id(0xC)), Acad::eNotOpenForWrite);
  EXPECT_EQ(text->removePersistentReactor(id(0xC)), Acad::eNotOpenForWrite);
  text->close();
  auto* mtext = opened<AcDbMText>(0x32);
  EXPECT_EQ(mtext->setContents(L"x"), Acad::eNotOpenForWrite);
  EXPECT_EQ(mtext->setLocation({0, 0, 0}), Acad::eNotOpenForWrite);
  EXPECT_EQ(mtext->setTextHeight(1), Acad::eNotOpenForWrite);
  mtext->close();
  auto* line = opened<AcDbLine>(0x2F);
  EXPECT_EQ(line->setStartPoint({0, 0, 0}), Acad::eNotOpenForWrite);
  EXPECT_EQ(line->setEndPoint({0, 0, 0}), Acad::eNotOpenForWrite);
  line->close();
  EXPECT_FALSE(database().is_modified());
}

TEST_F(Entities, NumbersThatAreNotFiniteAreRefused) {
  constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  for (const double bad : {kNaN, kInfinity, -kInfinity}) {
    auto* text = opened<AcDbText>(0x30, AcDb::kForWrite);
    EXPECT_EQ(text->setHeight(bad), Acad::eInvalidInput);
    EXPECT_EQ(text->setRotation(bad), Acad::eInvalidInput);
    EXPECT_EQ(text->setPosition({1, bad, 0}), Acad::eInvalidInput);
    text->close();
    auto* line = opened<AcDbLine>(0x2F, AcDb::kForWrite);
    EXPECT_EQ(line->setStartPoint({bad, 0, 0}), Acad::eInvalidInput);
    EXPECT_EQ(line->setEndPoint({0, 0, bad}), Acad::eInvalidInput);
    line->close();
  }
  EXPECT_EQ(database().save_bytes(), spelled(plan_note(), Form::kUtf8));
}

// Texts placed by their alignment point

TEST_F(Entities, AJustifiedTextBeginsElsewhereWhenItChanges) {
  auto* text = opened<AcDbText>(0x30, AcDb::kForWrite);
  EXPECT_EQ(text->setTextString(L"DN3000"), Acad::eOk);
  EXPECT_EQ(text->position(), AcGePoint3d(10, 20, 0)) << "while it is open";
  text->close();
  text = opened<AcDbText>(0x30);
  EXPECT_EQ(text->alignmentPoint(), AcGePoint3d(11, 20, 0));
  EXPECT_NEAR(text->position().x, 12.25, 1e-9) << "half a height, turned";
  EXPECT_LT(text->position().y, 20 - 2.5) << "half a width";
  text->close();
}

TEST_F(Entities, AJustifiedTextStaysWhereItIsWhenOnlyItsColourChanges) {
  auto* text = opened<AcDbText>(0x30, AcDb::kForWrite);
  EXPECT_EQ(text->setColorIndex(1), Acad::eOk);
  text->close();
  text = opened<AcDbText>(0x30, AcDb::kForWrite);
  EXPECT_EQ(text->position(), AcGePoint3d(10, 20, 0));
  EXPECT_EQ(text->adjustAlignment(), Acad::eOk) << "on demand";
  EXPECT_NEAR(text->position().x, 12.25, 1e-9);
  text->close();
}

TEST_F(Entities, AlignmentPointsAreForJustifiedTexts) {
  auto* text = opened<AcDbText>(0x3C, AcDb::kForWrite);
  EXPECT_EQ(text->setAlignmentPoint({1, 2, 0}), Acad::eNotApplicable);
  EXPECT_EQ(text->adjustAlignment(), Acad::eNotApplicable);
  EXPECT_EQ(text->setVerticalMode(AcDb::kTextTop), Acad::eOk);
  EXPECT_EQ(text->setAlignmentPoint({1, 2, 0}), Acad::eOk);
  text->close();
  EXPECT_THAT(database().save_bytes(),
              HasSubstr(" 20\n-0.5\n 30\n0.0\n 40\n2.5\n  1\nA1\n 11\n1.0\n 21\n2.0\n 31\n0.0\n"
                        "100\nAcDbText\n 73\n     3\n"))
      << "the vertical mode in the second class part";
}

TEST_F(Entities, AFittedTextKeepsBothItsPoints) {
  auto* text = new AcDbText({1, 2, 0}, L"fit", AcDbObjectId(), 2);
  text->setHorizontalMode(AcDb::kTextFit);
  EXPECT_EQ(text->setAlignmentPoint({9, 2, 0}), Acad::eOk);
  const AcDbObjectId made = append(text);
  text = opened<AcDbText>(made);
  EXPECT_EQ(text->position(), AcGePoint3d(1, 2, 0));
  EXPECT_EQ(text->alignmentPoint(), AcGePoint3d(9, 2, 0));
  text->close();
}

TEST_F(Entities, ATextOfNoDrawingStaysWhereItWasPut) {
  AcDbText text({1, 2, 0}, L"abc", AcDbObjectId(), 2);
  text.setHorizontalMode(AcDb::kTextCenter);
  EXPECT_EQ(text.setAlignmentPoint({5, 5, 0}), Acad::eOk);
  EXPECT_EQ(text.adjustAlignment(), Acad::eNotApplicable);
  EXPECT_EQ(text.position(), AcGePoint3d(1, 2, 0));
}

// New entities hold values until their tags are asked for

TEST_F(Entities, NewOnesAnswerWhatTheyWereGiven) {
  AcDbText text({1, 2, 3}, L"管", id(0x14), 2, 0.5);
  EXPECT_EQ(text.position(), AcGePoint3d(1, 2, 3));
  EXPECT_EQ(taken(text.textString()), L"管");
  EXPECT_EQ(text.textStyle(), id(0x14));
  EXPECT_EQ(text.setWidthFactor(0.7), Acad::eOk);
  EXPECT_EQ(text.setWidthFactor(1.0), Acad::eOk);
  EXPECT_EQ(text.widthFactor(), 1.0);
  EXPECT_EQ(text.setColorIndex(3), Acad::eOk);
  EXPECT_EQ(text.setColorIndex(256), Acad::eOk);
  EXPECT_EQ(text.colorIndex(), 256);
  EXPECT_EQ(text.setLayer(id(0x13)), Acad::eOk);
  EXPECT_EQ(taken(text.layer()), L"OFF");
  AcDbPolyline line;
  EXPECT_EQ(line.addVertexAt(0, {1, 1}), Acad::eOk);
  EXPECT_EQ(line.addVertexAt(0, {2, 2}, 0.5, 0.1, 0.2), Acad::eOk);
  EXPECT_EQ(line.addVertexAt(3, {2, 2}), Acad::eInvalidIndex);
  EXPECT_EQ(line.numVerts(), 2u);
  double bulge = 0;
  EXPECT_EQ(line.getBulgeAt(0, bulge), Acad::eOk);
  EXPECT_EQ(bulge, 0.5);
}

TEST_F(Entities, NewOnesTakeTheCurrentProperties) {
  ASSERT_TRUE(database().set_header_variable("$CLAYER", std::wstring(L"OFF")));
  ASSERT_TRUE(database().set_header_variable("$CECOLOR", std::int64_t{4}));
  auto* line = opened<AcDbLine>(append(new AcDbLine({0, 0, 0}, {1, 0, 0})));
  EXPECT_EQ(line->layerId(), id(0x13));
  EXPECT_EQ(line->colorIndex(), 4);
  line->close();
  auto* by_layer = new AcDbLine({0, 0, 0}, {1, 0, 0});
  by_layer->setColorIndex(256);
  line = opened<AcDbLine>(append(by_layer));
  EXPECT_EQ(line->colorIndex(), 256) << "said so";
  line->close();
  auto* mtext = opened<AcDbMText>(append(new AcDbMText));
  EXPECT_EQ(mtext->layerId(), id(0x13));
  EXPECT_EQ(mtext->colorIndex(), 4);
  mtext->close();
}

TEST_F(Entities, OfPaperSpaceAreMarkedAsSuch) {
  append(new AcDbLine({0, 0, 0}, {1, 0, 0}), 0x19);
  EXPECT_THAT(database().save_bytes(),
              HasSubstr("330\n19\n100\nAcDbEntity\n 67\n     1\n  8\n0\n"));
}

TEST_F(Entities, ChangedBetweenStepsCanBeTakenBackStepByStep) {
  AcDbBlockTableRecord* space = opened<AcDbBlockTableRecord>(0x18, AcDb::kForWrite);
  auto* text = new AcDbText({1, 2, 0}, L"first", AcDbObjectId(), 2);
  AcDbObjectId made;
  ASSERT_EQ(space->appendAcDbEntity(made, text), Acad::eOk);
  space->close();
  cad::undo_log(database()).next_step();
  text->setTextString(L"second");
  text->close();
  EXPECT_EQ(text_of(made.handle()), L"second");
  EXPECT_EQ(cad::undo_log(database()).undo(1), 1u);
  EXPECT_EQ(text_of(made.handle()), L"first");
  EXPECT_EQ(cad::undo_log(database()).undo(1), 1u);
  EXPECT_TRUE(made.isErased());
  EXPECT_EQ(cad::undo_log(database()).redo(2), 2u);
  EXPECT_EQ(text_of(made.handle()), L"second");
}

TEST_F(Entities, AreSavedAsTheyStandWhileTheyAreOpen) {
  AcDbBlockTableRecord* space = opened<AcDbBlockTableRecord>(0x18, AcDb::kForWrite);
  auto* text = new AcDbText({1, 2, 0}, L"open", AcDbObjectId(), 2);
  AcDbObjectId made;
  ASSERT_EQ(space->appendAcDbEntity(made, text), Acad::eOk);
  space->close();
  EXPECT_THAT(database().save_bytes(), HasSubstr("  1\nopen\n"));
  EXPECT_EQ(text->setTextString(L"closed"), Acad::eOk);
  text->close();
  EXPECT_THAT(database().save_bytes(), HasSubstr("  1\nclosed\n"));
}

TEST_F(Entities, OfAnotherDrawingsRecordsAreRefused) {
  AcDbDatabase other;
  auto* text = new AcDbText({1, 2, 0}, L"x", AcDbObjectId(), 2);
  EXPECT_EQ(text->setLayer(other.clayer()), Acad::eOk) << "nobody knows yet";
  AcDbBlockTableRecord* space = opened<AcDbBlockTableRecord>(0x18, AcDb::kForWrite);
  AcDbObjectId made;
  EXPECT_EQ(space->appendAcDbEntity(made, text), Acad::eWrongDatabase);
  space->close();
  delete text;
}

// Texts of several pieces

TEST_F(Entities, MTextComesInPiecesOf250Characters) {
  const std::wstring contents = std::wstring(250, L'a') + std::wstring(250, L'b') + L"c";
  auto* text = opened<AcDbMText>(0x32, AcDb::kForWrite);
  EXPECT_EQ(taken(text->contents()), L"L=36.5\\P{\\H2;m}");
  EXPECT_EQ(text->setContents(contents.c_str()), Acad::eOk);
  text->close();
  expect_only_change("  1\nL=36.5\\P{\\H2;m}\n", "  3\n" + std::string(250, 'a') + "\n  3\n" +
                                                     std::string(250, 'b') + "\n  1\nc\n");
  reopened();
  text = opened<AcDbMText>(0x32, AcDb::kForWrite);
  EXPECT_EQ(taken(text->contents()), contents);
  EXPECT_EQ(text->setContents(L"short"), Acad::eOk);
  text->close();
  expect_only_change("  1\nL=36.5\\P{\\H2;m}\n", "  1\nshort\n");
}

TEST_F(Entities, MTextSetToWhatItShowsKeepsItsBytes) {
  auto* text = opened<AcDbMText>(0x32, AcDb::kForWrite);
  EXPECT_EQ(text->setContents(L"L=36.5\\P{\\H2;m}"), Acad::eOk);
  EXPECT_FALSE(text->isModified());
  text->close();
  EXPECT_FALSE(database().is_modified());
}

TEST_F(Entities, MTextReadsBackWhateverStandsAtTheEndOfAPiece) {
  for (const Form form : kFormsWithDictionaries) {
    SCOPED_TRACE(form_name(form));
    given_plan(form);
    for (const wchar_t* tail : {L"\\U+0041", L"\\M+5B9DC", L"^J", L"^ x", L"管", L"\U0001F600",
                                L"\u20BF", L"\\P{", L"\n", L"\\\\U+0041"}) {
      for (std::size_t length = 236; length <= 252; ++length) {
        const std::wstring contents = std::wstring(length, L'x') + tail + std::wstring(260, L'y');
        auto* text = opened<AcDbMText>(0x32, AcDb::kForWrite);
        EXPECT_EQ(text->setContents(contents.c_str()), Acad::eOk);
        EXPECT_EQ(taken(text->contents()), contents) << length;
        text->close();
      }
    }
  }
}

TEST_F(Entities, MTextPiecesOfOtherWritersMayEndAnywhere) {
  std::string note(plan_note());
  const std::string from = "1 L=36.5\\P{\\H2;m}\n";
  note.replace(note.find(from), from.size(), "3 a\\U+7B\n3 A1b\n1 c\n");
  given(spelled(note, Form::kUtf8));
  auto* text = opened<AcDbMText>(0x32);
  EXPECT_EQ(taken(text->contents()), L"a管bc");
  text->close();
}

TEST_F(Entities, ATextBehindAnEmbeddedObjectIsNotItsOwn) {
  std::string note(plan_note());
  const std::string from = "67 1\n8 0\n100 AcDbText\n10 0.0\n";
  note.replace(note.find(from), from.size(),
               "67 1\n8 0\n101 Embedded Object\n100 AcDbText\n10 0.0\n");
  given(spelled(note, Form::kUtf8));
  EXPECT_EQ(text_of(0x3C), L"");
  auto* text = opened<AcDbText>(0x3C, AcDb::kForWrite);
  EXPECT_EQ(text->setTextString(L"own"), Acad::eOk);
  text->close();
  EXPECT_EQ(text_of(0x3C), L"own");
  EXPECT_THAT(database().save_bytes(), HasSubstr("  8\n0\n100\nAcDbText\n  1\nown\n101\nEmbedded"));
}

TEST_F(Entities, ATextOfADamagedRecordIsEmptyAndCanBeSet) {
  std::string note(plan_note());
  const std::size_t begin = note.find("100 AcDbText\n10 0.0\n", note.find("5 3C\n"));
  note.erase(begin, note.find("0 LINE\n5 3D") - begin);
  given(spelled(note, Form::kUtf8));
  EXPECT_EQ(text_of(0x3C), L"");
  auto* text = opened<AcDbText>(0x3C, AcDb::kForWrite);
  EXPECT_EQ(text->setTextString(L"one"), Acad::eOk);
  EXPECT_EQ(text->setTextString(L"two"), Acad::eOk);
  text->close();
  EXPECT_EQ(text_of(0x3C), L"two");
  reopened();
  EXPECT_EQ(text_of(0x3C), L"two");
}

}  // namespace
