// Drawings as blocks of drawings of other releases, forms and code pages.

#include "host/base/codepage.h"
#include "tests/host/db/inserting.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

/// An R12 drawing without handles: an entity and a block, noted one tag per line.
std::string old_drawing(std::string_view tables, std::string_view blocks,
                        std::string_view entities) {
  std::string note =
      "0 SECTION\n2 HEADER\n9 $ACADVER\n1 AC1009\n9 $INSBASE\n10 4.0\n20 5.0\n30 0.0\n";
  note += "0 ENDSEC\n0 SECTION\n2 TABLES\n";
  note += tables;
  note += "0 ENDSEC\n0 SECTION\n2 BLOCKS\n";
  note += blocks;
  note += "0 ENDSEC\n0 SECTION\n2 ENTITIES\n";
  note += entities;
  note += "0 ENDSEC\n0 EOF\n";
  return written::ascii(note);
}

TEST_F(InsertDrawing, EveryFormOfFileGoesIntoEveryOther) {
  for (const Form from :
       {Form::kUtf8, Form::kChinese, Form::kBinary, Form::kOldBinary, Form::kR12}) {
    for (const Form into : kFormsWithDictionaries) {
      SCOPED_TRACE(std::string(form_name(from)) + " into " + std::string(form_name(into)));
      given_plan(into);
      std::string bytes = spelled(plan_note(), from);
      std::size_t at = bytes.rfind("WELL");
      for (at = 0; (at = bytes.find("WELL", at)) != std::string::npos;)
        bytes.replace(at, 4, "PUMP");
      given_source(bytes);
      inserted();
      reopened();
      const AcDbObjectId block = record("BLOCK_RECORD", L"SYMBOL");
      ASSERT_FALSE(block.isNull());
      EXPECT_EQ(kinds(block).size(), 14u);
      EXPECT_FALSE(record("BLOCK_RECORD", L"PUMP").isNull());
      auto* line = opened<AcDbLine>(entity_in(block, "LINE"));
      ASSERT_TRUE(line);
      EXPECT_EQ(line->endPoint(), AcGePoint3d(4, 6, 0.5));
      line->close();
      EXPECT_EQ(text(entity_in(block, "TEXT"), "AcDbText", 1), L"DN300");
    }
  }
}

TEST_F(InsertDrawing, TextsChangeTheirCodePage) {
  const std::string name = "\xB9\xDC\xCF\xDF";  // 管线 in code page 936
  std::string note = "0 SECTION\n2 HEADER\n9 $ACADVER\n1 AC1015\n9 $DWGCODEPAGE\n3 ANSI_936\n";
  note += "0 ENDSEC\n0 SECTION\n2 ENTITIES\n0 TEXT\n100 AcDbEntity\n8 " + name +
          "\n100 AcDbText\n10 0.0\n20 0.0\n40 1.0\n1 " + name +
          "^J\\U+2103\n100 AcDbText\n0 ENDSEC\n0 EOF\n";
  given_source(written::ascii(note));
  given(drawing_of(""));
  const AcDbObjectId block = inserted(L"符号");
  EXPECT_FALSE(record("LAYER", L"管线").isNull());
  EXPECT_EQ(text(entity_in(block, "TEXT"), "AcDbText", 1), L"管线\n℃");
  EXPECT_THAT(tags(entity_in(block, "TEXT")), HasSubstr("\n管线^J℃\n"));
  // The other way round: in the receiver's page, or as escapes where the page lacks them.
  given_source(drawing_of(
      "0 TEXT\n5 100\n330 1F\n100 AcDbEntity\n8 0\n100 AcDbText\n10 0.0\n20 0.0\n40 1.0\n1 管线\n"
      "100 AcDbText\n"));
  for (const auto& [page, spelled_text] :
       {std::pair<std::string, std::string>("ANSI_936", name), {"ANSI_1252", "\\U+7BA1\\U+7EBF"}}) {
    given(written::ascii("0 SECTION\n2 HEADER\n9 $ACADVER\n1 AC1015\n9 $DWGCODEPAGE\n3 " + page +
                         "\n0 ENDSEC\n0 SECTION\n2 ENTITIES\n0 ENDSEC\n0 EOF\n"));
    inserted();
    EXPECT_THAT(database().save_bytes(), HasSubstr("  1\n" + spelled_text + "\n100\nAcDbText\n"));
  }
}

TEST_F(InsertDrawing, OldDrawingsGetHandlesAndClassMarkers) {
  given_source(old_drawing(
      "0 TABLE\n2 LAYER\n70 1\n0 LAYER\n2 OLD\n70 0\n62 5\n6 CONTINUOUS\n0 ENDTAB\n"
      "0 TABLE\n2 STYLE\n70 1\n0 STYLE\n2 HZ\n70 0\n40 0.0\n41 0.7\n50 0.0\n71 0\n42 2.5\n3 txt\n"
      "4 hztxt\n0 ENDTAB\n",
      "0 BLOCK\n8 0\n2 DOT\n70 0\n10 0.0\n20 0.0\n30 0.0\n3 DOT\n0 POINT\n8 0\n10 0.0\n20 0.0\n"
      "30 0.0\n0 ENDBLK\n8 0\n",
      "0 TEXT\n8 OLD\n10 1.0\n20 2.0\n40 2.5\n1 T\n7 HZ\n72 1\n11 3.0\n21 4.0\n73 2\n"
      "0 POLYLINE\n8 OLD\n66 1\n10 0.0\n20 0.0\n30 0.0\n0 VERTEX\n8 OLD\n10 1.0\n20 1.0\n30 0.0\n"
      "0 SEQEND\n8 OLD\n0 INSERT\n8 0\n2 DOT\n10 1.0\n20 1.0\n30 0.0\n"
      "0 3DLINE\n8 0\n10 0.0\n20 0.0\n30 0.0\n11 1.0\n21 1.0\n31 1.0\n"
      "0 LINE\n67 1\n8 0\n10 0.0\n20 0.0\n11 1.0\n21 1.0\n"));
  given(drawing_of(""));
  const AcDbObjectId block = inserted();
  EXPECT_THAT(kinds(block), ElementsAre("TEXT", "POLYLINE", "VERTEX", "SEQEND", "INSERT", "LINE"));
  EXPECT_THAT(tags(begin_of(block)), HasSubstr(" 10\n4.0\n 20\n5.0\n"));
  EXPECT_EQ(tags(entity_in(block, "TEXT")),
            "  0\nTEXT\n  5\n" + hex(entity_in(block, "TEXT")) + "\n330\n" + hex(block) +
                "\n100\nAcDbEntity\n  8\nOLD\n100\nAcDbText\n 10\n1.0\n 20\n2.0\n 40\n2.5\n  1\nT\n"
                "  7\nHZ\n 72\n1\n 11\n3.0\n 21\n4.0\n100\nAcDbText\n 73\n2\n");
  EXPECT_THAT(tags(entity_in(block, "VERTEX")),
              HasSubstr("100\nAcDbVertex\n100\nAcDb2dVertex\n 10\n1.0\n"));
  EXPECT_THAT(tags(record("STYLE", L"HZ")),
              HasSubstr("100\nAcDbSymbolTableRecord\n100\nAcDbTextStyleTableRecord\n  2\nHZ\n"));
  const AcDbObjectId dot = record("BLOCK_RECORD", L"DOT");
  ASSERT_FALSE(dot.isNull());
  EXPECT_THAT(tags(begin_of(dot)), HasSubstr("100\nAcDbEntity\n  8\n0\n100\nAcDbBlockBegin\n"));
  EXPECT_THAT(kinds(dot), ElementsAre("POINT"));
}

TEST_F(InsertDrawing, ArrowsOfDimensionStylesAreNamedOrReferredTo) {
  const std::string style =
      "0 TABLE\n2 DIMSTYLE\n70 1\n0 DIMSTYLE\n2 GB\n70 0\n3 \n4 \n5 DOT\n6 \n7 \n40 1.0\n0 "
      "ENDTAB\n";
  const std::string dot = "0 BLOCK\n8 0\n2 DOT\n70 0\n10 0.0\n20 0.0\n30 0.0\n0 ENDBLK\n8 0\n";
  const std::string dimension =
      "0 DIMENSION\n8 0\n3 GB\n10 0.0\n20 0.0\n11 0.0\n21 0.0\n70 1\n13 0.0\n23 0.0\n14 1.0\n"
      "24 0.0\n";
  given_source(old_drawing(style, dot, dimension));
  std::string bytes = drawing_of("");
  bytes.insert(bytes.find("  0\nTABLE"),
               written::ascii("0 TABLE\n2 DIMSTYLE\n5 90\n330 0\n100 AcDbSymbolTable\n70 0\n"
                              "0 ENDTAB\n"));
  given(bytes);
  inserted();
  const AcDbObjectId made = record("DIMSTYLE", L"GB");
  ASSERT_FALSE(made.isNull());
  EXPECT_EQ(referred(made, 342), record("BLOCK_RECORD", L"DOT"));
  EXPECT_THAT(tags(made), HasSubstr("DIMSTYLE\n105\n"));
  // The other way round.
  const std::string in_space = drawing_of(
      "0 DIMENSION\n5 100\n330 1F\n100 AcDbEntity\n8 0\n100 AcDbDimension\n3 GB\n10 0.0\n70 1\n");
  std::string saved = database().save_bytes();
  saved.replace(saved.find("  0\nSECTION\n  2\nENTITIES"), std::string::npos,
                in_space.substr(in_space.find("  0\nSECTION\n  2\nENTITIES")));
  given_source(saved);
  given(old_drawing("0 TABLE\n2 DIMSTYLE\n70 0\n0 ENDTAB\n", "", ""));
  inserted(L"BACK");
  EXPECT_THAT(tags(record("DIMSTYLE", L"GB")), HasSubstr("  5\nDOT\n"));
  EXPECT_THAT(database().save_bytes(), HasSubstr("BLOCK\n"));
}

TEST_F(InsertDrawing, OldDrawingsTakeWhatTheyCanHold) {
  given(old_drawing("0 TABLE\n2 LAYER\n70 0\n0 ENDTAB\n", "", ""));
  given_source(drawing_of(kLine));
  const AcDbObjectId block = inserted();
  EXPECT_EQ(cad::record_kind(block), "BLOCK");
  EXPECT_THAT(kinds(block), ElementsAre("LINE"));
  const std::string saved = database().save_bytes();
  const std::string made = saved.substr(saved.find("SYMBOL"));
  EXPECT_THAT(made.substr(0, made.find("ENDBLK")), Not(HasSubstr("AcDb")));
  given_source(drawing_of(
      "0 ELLIPSE\n5 100\n330 1F\n100 AcDbEntity\n8 0\n100 AcDbEllipse\n10 0.0\n20 0.0\n"));
  EXPECT_EQ(refusal(L"OTHER"),
            "2 ELLIPSE 100: needs a drawing of release R13 or newer; this one is R12");
}

TEST_F(InsertDrawing, LightPolylinesBecomeOldOnes) {
  given(
      old_drawing("0 TABLE\n2 LAYER\n70 0\n0 ENDTAB\n0 TABLE\n2 APPID\n70 0\n0 ENDTAB\n", "", ""));
  given_source(drawing_of(
      "0 LWPOLYLINE\n5 100\n330 1F\n100 AcDbEntity\n8 PIPES\n62 1\n100 AcDbPolyline\n90 2\n70 1\n"
      "38 5.0\n10 1.0\n20 2.0\n40 0.5\n41 0.0\n42 1.0\n10 3.0\n20 4.0\n1001 PN\n1005 100\n"));
  const AcDbObjectId block = inserted();
  EXPECT_THAT(kinds(block), ElementsAre("POLYLINE", "VERTEX", "VERTEX", "SEQEND"));
  const std::string saved = database().save_bytes();
  const std::size_t at = saved.find("  0\nPOLYLINE");
  ASSERT_NE(at, std::string::npos);
  const std::string handle = saved.substr(saved.find("  5\n", at) + 4, 1);
  EXPECT_THAT(saved.substr(at),
              testing::MatchesRegex("(.|\n)*  8\nPIPES\n 62\n1\n 66\n     1\n 10\n0.0\n 20\n0.0\n"
                                    " 30\n5.0\n 70\n     1\n1001\nPN\n1005\n" +
                                    handle + "\n  0\nVERTEX\n(.|\n)*"));
  EXPECT_THAT(saved,
              HasSubstr(" 62\n1\n 10\n1.0\n 20\n2.0\n 30\n5.0\n 40\n0.5\n 41\n0.0\n 42\n1.0\n"));
  EXPECT_THAT(saved, HasSubstr("  0\nSEQEND\n"));
}

TEST_F(InsertDrawing, NewerGroupsStayOutOfOlderDrawings) {
  given(spelled(plan_note(), Form::kChinese));
  given_source(
      drawing_of("0 LINE\n5 100\n330 1F\n100 AcDbEntity\n160 4\n310 01020304\n8 0\n62 1\n420 "
                 "255\n440 33554560\n"
                 "370 25\n100 AcDbLine\n10 0.0\n20 0.0\n11 1.0\n21 0.0\n"));
  const std::string line = tags(entity_in(inserted(), "LINE"));
  EXPECT_THAT(line, Not(HasSubstr("420\n")));
  EXPECT_THAT(line, Not(HasSubstr("440\n")));
  EXPECT_THAT(line, HasSubstr(" 92\n        4\n310\n01020304\n"));
  EXPECT_THAT(line, HasSubstr("370\n25\n"));
}

}  // namespace
