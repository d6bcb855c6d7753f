#include <gmock/gmock.h>

#include "host/base/numbers.h"
#include "tests/host/db/plan.h"
#include "tests/host/dxf/written.h"

namespace {

using testing::HasSubstr;
using testing::Not;

class Header : public DrawingTest {
 protected:
  /// The plan with a stretch of its note replaced.
  AcDbDatabase& given_with(std::string_view from, std::string_view to, Form form = Form::kUtf8) {
    std::string note(plan_note());
    note.replace(note.find(from), from.size(), to);
    return given(spelled(note, form));
  }
  std::uint64_t seed() const { return database().handseed(); }
};

TEST_F(Header, ValuesAreReadAsTextInEveryForm) {
  for (const Form form :
       {Form::kUtf8, Form::kChinese, Form::kBinary, Form::kOldBinary, Form::kR12}) {
    SCOPED_TRACE(form_name(form));
    given_plan(form);
    EXPECT_EQ(database().header_value("$CLAYER"), L"0");
    EXPECT_EQ(database().header_value("$LTSCALE"), L"2.5");
    EXPECT_EQ(database().header_value("$INSBASE"), L"1.5") << "the first value of several";
    EXPECT_EQ(database().header_value("$USERI1"), L"-3");
    EXPECT_EQ(database().header_value("$HANDSEED"), L"200");
    EXPECT_EQ(database().header_value("$FINGERPRINTGUID"), L"{A^B}");
    EXPECT_EQ(database().header_value("$NONE"), L"");
    EXPECT_EQ(database().header_value("$clayer"), L"") << "names are upper case";
    EXPECT_EQ(database().header_value(""), L"");
  }
}

TEST_F(Header, TheCurrentLayerIsFound) {
  given_plan();
  EXPECT_EQ(database().clayer(), id(0x10));
  given_with("9 $CLAYER\n8 0", "9 $CLAYER\n8 frozen");
  EXPECT_EQ(database().clayer(), id(0x12));
  given_with("9 $CLAYER\n8 0", "9 $CLAYER\n8 none");
  EXPECT_TRUE(database().clayer().isNull());
}

TEST_F(Header, FactsTellWhatTheFileHolds) {
  struct Row {
    Form form;
    const char *version, *name;
    bool binary, crlf;
  };
  for (const Row& row : {Row{Form::kUtf8, "AC1027", "R2013", false, false},
                         Row{Form::kChinese, "AC1015", "R2000", false, true},
                         Row{Form::kBinary, "AC1032", "R2018", true, false},
                         Row{Form::kOldBinary, "AC1012", "R13", true, false},
                         Row{Form::kR12, "AC1009", "R12", false, false}}) {
    const cad::DrawingFacts& facts = given_plan(row.form).facts();
    EXPECT_EQ(facts.version, row.version);
    EXPECT_EQ(facts.version_name, row.name);
    EXPECT_EQ(facts.code_page, "ANSI_936");
    EXPECT_EQ(facts.binary, row.binary);
    EXPECT_EQ(facts.crlf, row.crlf);
    EXPECT_EQ(facts.bytes, spelled(plan_note(), row.form).size());
    EXPECT_EQ(facts.objects, 46u);
    EXPECT_EQ(facts.without_handle, 0u);
    EXPECT_EQ(facts.duplicate_handles, 0u);
    EXPECT_EQ(facts.handle_seed, 0x200u);
    std::uint64_t lines = 0;
    for (const auto& kind : facts.kinds) lines += kind.name == "LINE" ? kind.count : 0;
    EXPECT_EQ(lines, 4u) << "in blocks too";
  }
}

// The handle seed

TEST_F(Header, TheSeedAdvancesWithEveryNewObject) {
  for (const Form form : kFormsWithDictionaries) {
    SCOPED_TRACE(form_name(form));
    given_plan(form);
    EXPECT_EQ(append(new AcDbLine).handle().value(), 0x200u);
    EXPECT_EQ(append(new AcDbLine).handle().value(), 0x201u);
    EXPECT_EQ(seed(), 0x202u);
    reopened();
    EXPECT_EQ(database().header_value("$HANDSEED"), L"202");
    EXPECT_EQ(append(new AcDbLine).handle().value(), 0x202u);
  }
}

TEST_F(Header, ASeedBelowTheHighestHandleIsNotBelieved) {
  for (const char* damaged :
       {"9 $HANDSEED\n5 30", "9 $HANDSEED\n5 0", "9 $HANDSEED\n5 x",
        "9 $HANDSEED\n5 FFFFFFFFFFFFFFFF", "9 $HANDSEED\n5 10000000000000000", "9 $HANDSEED\n5 ",
        "9 $HANDSEED\n1 30", "9 $HANDSEED\n70 30", "9 $HANDSEED\n310 30", "9 $HANDSEED\n40 30",
        "9 $HANDSEED", "9 $NONE\n5 200"}) {
    for (const Form form : kFormsWithDictionaries) {
      SCOPED_TRACE(std::string(form_name(form)) + ": " + damaged);
      given_with("9 $HANDSEED\n5 200", damaged, form);
      EXPECT_EQ(database().save_bytes().size(), database().facts().bytes);
      const auto made = append(new AcDbLine).handle();
      EXPECT_GT(made.value(), 0x54u);
      EXPECT_LT(made.value(), 0x200u);
      reopened();
      EXPECT_FALSE(id(made).isNull());
      EXPECT_EQ(database().header_value("$HANDSEED"), cad::handle_text(made + 1));
      EXPECT_EQ(append(new AcDbLine).handle().value(), made + 1);
    }
  }
}

TEST_F(Header, AMissingHeaderIsMadeForTheSeed) {
  std::string note(plan_note());
  note.erase(0, note.find("0 SECTION\n2 CLASSES"));
  const std::string front = "999 a comment\n0 SECTION\n2 HEADER\n9 $ACADVER\n1 AC1027\n0 ENDSEC\n";
  given(spelled(front + note, Form::kUtf8));
  append(new AcDbLine);
  EXPECT_THAT(database().save_bytes(), HasSubstr("AC1027\n  9\n$HANDSEED\n  5\n56\n  0\nENDSEC\n"));

  // Without a header a drawing counts as R12.
  given(spelled("999 a comment\n" + note, Form::kUtf8));
  auto* text = opened<AcDbText>(0x30, AcDb::kForWrite);
  text->setTextString(L"x");
  text->close();
  EXPECT_THAT(database().save_bytes(), Not(HasSubstr("HEADER"))) << "no object is new";
  auto* line = opened<AcDbLine>(0x2F, AcDb::kForWrite);
  line->close();
  append(new AcDbLine);
  EXPECT_THAT(database().save_bytes(),
              HasSubstr("999\na comment\n  0\nSECTION\n  2\nHEADER\n  9\n$HANDSEED\n  5\n56\n  0\n"
                        "ENDSEC\n  0\nSECTION\n  2\nCLASSES\n"));
  reopened();
  EXPECT_EQ(seed(), 0x56u);
}

TEST_F(Header, AHeaderBehindTheObjectsIsFoundAndChangedInItsPlace) {
  std::string note(plan_note());
  const std::size_t end = note.find("0 SECTION\n2 CLASSES");
  const std::string header = note.substr(0, end);
  note.erase(0, end);
  note.insert(note.find("0 EOF"), header);
  given(spelled(note, Form::kR12));
  append(new AcDbLine);
  reopened();
  EXPECT_EQ(database().header_value("$HANDSEED"), L"201");
  EXPECT_FALSE(id(0x200).isNull());
}

TEST_F(Header, AbsurdHandlesDoNotUseUpTheOthers) {
  for (const char* absurd :
       {"FFFFFFFFFFFFFFFF", "FFFFFFFFFFFFFFFE", "7FFFFFFFFFFFFFFF", "4000000000000000"}) {
    SCOPED_TRACE(absurd);
    given_with("0 LINE\n5 3D\n", "0 LINE\n5 " + std::string(absurd) + "\n");
    EXPECT_FALSE(id(cad::parse_handle(absurd).value()).isNull());
    const auto made = append(new AcDbLine).handle();
    EXPECT_LT(made.value(), 0x300u);
    reopened();
    EXPECT_FALSE(id(made).isNull());
    EXPECT_FALSE(id(cad::parse_handle(absurd).value()).isNull());
    EXPECT_NE(append(new AcDbLine).handle(), made);
  }
}

TEST_F(Header, LargeHandlesOfSparseDrawingsAreFound) {
  given_with("0 LINE\n5 3D\n", "0 LINE\n5 123456789ABC\n");
  EXPECT_FALSE(id(0x123456789ABC).isNull());
  EXPECT_EQ(append(new AcDbLine).handle().value(), 0x123456789ABDu);
}

// Duplicate and missing handles

TEST_F(Header, OfTwoObjectsWithOneHandleTheFirstKeepsIt) {
  given_with("0 LINE\n5 3D\n", "0 LINE\n5 2F\n");
  EXPECT_EQ(database().facts().duplicate_handles, 1u);
  auto* line = opened<AcDbLine>(0x2F);
  EXPECT_EQ(line->startPoint(), AcGePoint3d(1, 2, 0));
  line->close();
  EXPECT_EQ(entities(0x18).size(), 9u) << "the second is still drawn";
}

TEST_F(Header, ObjectsWithoutHandleHaveIdsAllTheSame) {
  given_with("0 LINE\n5 2F\n", "0 LINE\n");
  EXPECT_EQ(database().facts().without_handle, 1u);
  const AcDbObjectId first = database().first_entity();
  EXPECT_TRUE(first.handle().isNull());
  auto* line = opened<AcDbLine>(first, AcDb::kForWrite);
  EXPECT_EQ(line->setColorIndex(5), Acad::eOk);
  line->close();
  reopened();
  line = opened<AcDbLine>(database().first_entity());
  EXPECT_EQ(line->colorIndex(), 5);
  line->close();
}

}  // namespace
