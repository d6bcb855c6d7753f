// Composite labels, the order of their items, and templates.
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "tests/module/style/style_fixture.h"

namespace {

/// A pipe DN300 of 35.2 m at 2.5 per mille, whose labels are DN300, 35.2 and 2.5‰.
class CompositeLabel : public WithStyle {
 protected:
  CompositeLabel() { given_slots("0 - DN LL PD"); }
  void given_slots(const std::string& line) {
    given_file("install/User/zdm_bzsz.dat", "管径 ((前缀 DN) (表示法 公称))\n");
    given_plan_labels("\"\" \"\" 1 m 0\n\"\" ‰ 1 ‰ 0\nx\n" + line + "\n");
  }
  CString main_text(double diameter = 300) {
    return style.GetCompositeDim(diameter, 0.0025, 35.2, 1, second, third, 0, kNoValue, kNoValue,
                                 kNoValue);
  }
  Texts texts_of(const Texts& items, bool apart = false, int pipes = 1, double diameter = 300) {
    Texts texts;
    result = style.GetCompositeDimExt(diameter, 0.0025, 35.2, 1, items, texts, 0, kNoValue,
                                      kNoValue, kNoValue, apart, pipes);
    return texts;
  }
  CString second, third;
  bool result = false;
  const Texts all = {L"管径", L"管长", L"坡度"};
};

TEST_F(CompositeLabel, JoinsDiameterLengthAndSlope) {
  second = third = L"before";
  EXPECT_EQ(main_text(), L"DN300-35.2-2.5‰");
  EXPECT_EQ(second, L"");
  EXPECT_EQ(third, L"");
}

TEST_F(CompositeLabel, HandsFurtherTextsOutForLinesOfTheirOwn) {
  given_slots("1 - DN LL PD");
  EXPECT_EQ(main_text(), L"DN300");
  EXPECT_EQ(second, L"35.2");
  EXPECT_EQ(third, L"2.5‰");
}

TEST_F(CompositeLabel, ClosesTheGapOfAnEmptyMainText) {
  given_slots("1 - DN LL PD");
  EXPECT_EQ(main_text(kNoValue), L"35.2");
  EXPECT_EQ(second, L"2.5‰");
  EXPECT_EQ(third, L"");
}

TEST_F(CompositeLabel, ClosesTheGapOfAnEmptySecondText) {
  given_slots("1 - LL DN PD");
  EXPECT_EQ(main_text(kNoValue), L"35.2");
  EXPECT_EQ(second, L"2.5‰");
  EXPECT_EQ(third, L"");
}

TEST_F(CompositeLabel, ClosesTwoGapsAtOnce) {
  given_slots("1 - DN DN PD");
  EXPECT_EQ(main_text(kNoValue), L"2.5‰");
  EXPECT_EQ(second, L"");
  EXPECT_EQ(third, L"");
}

TEST_F(CompositeLabel, AnUnknownSlotWordLeavesTheTextPassedIn) {
  given_slots("1 - XX YY ZZ");
  second = L"two";
  third = L"three";
  EXPECT_EQ(main_text(), L"two");
  EXPECT_EQ(second, L"three");
  EXPECT_EQ(third, L"");
  given_slots("0 / DN YY DH");
  second = L"two";
  third = L"three";
  EXPECT_EQ(main_text(), L"DN300/two/three");
}

TEST_F(CompositeLabel, WordsOfStandardLYAreUnknownElsewhere) {
  given_slots("1 - GCDN DH LL");
  second = L"two";
  EXPECT_EQ(main_text(), L"two");
  EXPECT_EQ(second, L"35.2");
  EXPECT_EQ(third, L"");
  EXPECT_EQ(texts_of({L"公称直径", L"管代号", L"管长"}), Texts({L"35.2"}));
}

TEST_F(CompositeLabel, OfASectionIsThatOfOneSection) {
  EXPECT_EQ(style.GetCompositeDim(300, 0.0025, 35.2, 1, second, third, 1, 2000, 1500, 2.5),
            L"BxH=2000x1500(1:2.5)-35.2-2.5‰");
  EXPECT_EQ(style.GetCompositeDim(300, 0.0025, 35.2, 1, second, third, 1, 2000, 1500, 0),
            L"BxH=2000x1500-35.2-2.5‰");
}

TEST_F(CompositeLabel, WithNothingToSayIsEmpty) {
  given_slots("0 - DN DN DN");
  second = L"before";
  EXPECT_EQ(main_text(kNoValue), L"");
  EXPECT_EQ(second, L"");
  EXPECT_EQ(third, L"");
}

TEST_F(CompositeLabel, ShowsTheItemsNamedOnly) {
  EXPECT_EQ(texts_of({L"管长", L"坡度"}), Texts({L"35.2-2.5‰"}));
  EXPECT_EQ(texts_of({L"管长", L"坡度"}, true), Texts({L"35.2", L"2.5‰"}));
  EXPECT_TRUE(result);
  EXPECT_EQ(texts_of(all), Texts({L"DN300-35.2-2.5‰"}));
  EXPECT_TRUE(result);
  EXPECT_EQ(texts_of({L"管代号"}), Texts());
  EXPECT_FALSE(result);
  EXPECT_EQ(texts_of({}), Texts());
}

TEST_F(CompositeLabel, TheSettingsKeepTextsApartToo) {
  given_slots("1 - PD DN LL");
  EXPECT_EQ(texts_of(all), Texts({L"2.5‰", L"DN300", L"35.2"}));
}

TEST_F(CompositeLabel, TextsAreAppended) {
  Texts texts = {L"before"};
  EXPECT_TRUE(
      style.GetCompositeDimEx(300, 0.0025, 35.2, 1, all, texts, 0, kNoValue, kNoValue, 0, false));
  EXPECT_EQ(texts, Texts({L"before", L"DN300-35.2-2.5‰"}));
  EXPECT_FALSE(
      style.GetCompositeDimEx(300, 0.0025, 35.2, 1, {}, texts, 0, kNoValue, kNoValue, 0, false));
  EXPECT_EQ(texts.size(), 2u) << "nothing to show is false, whatever the array holds";
}

TEST_F(CompositeLabel, ParallelPipesAreCounted) {
  EXPECT_EQ(texts_of({L"管径"}, false, 3), Texts({L"3xDN300"}));
  EXPECT_EQ(texts_of({L"管径"}, false, 2), Texts({L"2xDN300"}));
  EXPECT_EQ(texts_of({L"管径"}, false, 1), Texts({L"DN300"}));
  EXPECT_EQ(texts_of({L"管径"}, false, -3), Texts({L"DN300"}));
  EXPECT_EQ(texts_of({L"管径"}, false, 2, kNoValue), Texts({L"2x"}))
      << "the number is there even when the diameter is not";
}

TEST_F(CompositeLabel, OfATwinSectionSaysSo) {
  Texts texts;
  EXPECT_TRUE(style.GetDRectCompositeDimEx(300, 0.0025, 35.2, 1, {L"管径"}, texts, 1, 2000, 1500, 0,
                                           false));
  EXPECT_TRUE(style.GetDRectCompositeDimExt(300, 0.0025, 35.2, 1, {L"管径"}, texts, 1, 2000, 1500,
                                            0, false, 2));
  EXPECT_TRUE(
      style.GetCompositeDimEx(300, 0.0025, 35.2, 1, {L"管径"}, texts, 1, 2000, 1500, 0, false));
  EXPECT_EQ(texts, Texts({L"2xBxH=2000x1500", L"2x2xBxH=2000x1500", L"BxH=2000x1500"}));
}

class CompositeLabelOfLY : public CompositeLabel {
 protected:
  CompositeLabelOfLY() { given_ly_slots("0 - DH GCDN DN LL PD V"); }
  void given_ly_slots(const std::string& line) {
    given_file("install/sys/DimStyle.ini", "[GxBz]\nLocalStyle=LY\n");
    given_slots(line);
  }
  Texts ly_texts(const Texts& items, bool apart = false, int pipes = 1, bool twin = false,
                 int rectangular = 0, double width = kNoValue, double height = kNoValue) {
    Texts texts;
    result = style.GetCompositeDim_LY(300.9, 0.0025, 35.2, 1, L"W", L"-", L"1", twin, items, texts,
                                      rectangular, width, height, 0, apart, pipes);
    return texts;
  }
  const Texts five = {L"管径", L"管长", L"坡度", L"管代号", L"公称直径"};
};

TEST_F(CompositeLabelOfLY, HasFiveSlots) {
  EXPECT_EQ(ly_texts(five), Texts({L"W-1-300-DN301-35.2-2.5‰"}));
  EXPECT_TRUE(result);
  EXPECT_EQ(ly_texts(five, true), Texts({L"W-1", L"300", L"DN301", L"35.2", L"2.5‰"}));
}

TEST_F(CompositeLabelOfLY, TheSettingsKeepTextsApartToo) {
  given_ly_slots("1 - LL PD \"\" x DN");
  EXPECT_EQ(ly_texts(five), Texts({L"35.2", L"2.5‰", L"DN301"}));
}

TEST_F(CompositeLabelOfLY, ARepeatedSlotIsRepeated) {
  given_ly_slots("0 / LL LL LL LL LL");
  EXPECT_EQ(ly_texts(five), Texts({L"35.2/35.2/35.2/35.2/35.2"}));
}

TEST_F(CompositeLabelOfLY, ShowsTheItemsNamedOnly) {
  EXPECT_EQ(ly_texts({L"公称直径", L"管长"}), Texts({L"300-35.2"}));
  EXPECT_EQ(ly_texts({L"水流方向"}), Texts());
  EXPECT_FALSE(result);
}

TEST_F(CompositeLabelOfLY, TheNominalSizeOfASectionIsWidthAndHeight) {
  EXPECT_EQ(ly_texts({L"公称直径"}, false, 1, false, 1, 2000.9, 1500.9), Texts({L"2000x1500"}));
}

TEST_F(CompositeLabelOfLY, CountsParallelPipesAndTwinSections) {
  EXPECT_EQ(ly_texts({L"管径"}, false, 2), Texts({L"2xDN301"}));
  EXPECT_EQ(ly_texts({L"管径"}, false, 1, true, 1, 2000, 1500), Texts({L"2xBxH=2000x1500"}));
}

class ItemOrder : public WithStyle {
 protected:
  Texts order(const std::string& ini) {
    given_style_keys(ini);
    Texts items = {L"before"};
    result = style.GetDnOrderDims(items, L"");
    return items;
  }
  int result = -1;
};

TEST_F(ItemOrder, ByDefaultShowsAll) {
  Texts items = {L"before"};
  EXPECT_EQ(CDimStyle::ReadDnDimSet(items, L"SwBzGd"), 1);
  EXPECT_EQ(items, Texts({L"管径", L"管长", L"坡度", L"水流方向"}));
}

TEST_F(ItemOrder, ReadsItemsThatAreMarkedY) {
  given_style_keys("SwBzGd=((\"管长\" \"Y\") (\"管径\" \"N\") (\"\" \"Y\") (坡度 y) (a) (b Y))\n");
  Texts items;
  EXPECT_EQ(CDimStyle::ReadDnDimSet(items, L"SwBzGd"), 1);
  EXPECT_EQ(items, Texts({L"管长", L"b"}));
}

TEST_F(ItemOrder, EndsAtTheFirstEmptyElement) {
  given_style_keys("SwBzGd=(\"\" (\"管长\" \"Y\"))\nJ_SwBzGd=\n");
  Texts items = {L"before"};
  EXPECT_EQ(CDimStyle::ReadDnDimSet(items, L"SwBzGd"), 0);
  EXPECT_EQ(items, Texts());
  EXPECT_EQ(CDimStyle::ReadDnDimSet(items, L"J_SwBzGd"), 0) << "a key that holds nothing";
}

TEST_F(ItemOrder, AnEmptyKeyGivesNothing) {
  Texts items = {L"before"};
  EXPECT_EQ(CDimStyle::ReadDnDimSet(items, L""), 0);
  EXPECT_EQ(items, Texts());
}

TEST_F(ItemOrder, OfALabelFollowsItsSlots) {
  given_file("install/Is/gdcdpdbz.dat", "x\nx\nx\n0 - PD DN LL V\n");
  EXPECT_EQ(order(""), Texts({L"坡度", L"管径", L"管长", L"水流方向"}));
  EXPECT_EQ(result, 1);
}

TEST_F(ItemOrder, OfALabelLeavesOutWhatIsNotShown) {
  EXPECT_EQ(order("SwBzGd=((管长 Y) (管径 N))\n"), Texts({L"管长"}));
  EXPECT_EQ(order("SwBzGd=((x Y))\n"), Texts());
  EXPECT_EQ(result, 1) << "there is a list for the key";
}

TEST_F(ItemOrder, RepeatsRepeatedSlotsAndSkipsUnknownOnes) {
  given_file("install/Is/gdcdpdbz.dat", "x\nx\nx\n0 - LL DH LL V\n");
  EXPECT_EQ(order(""), Texts({L"管长", L"管长", L"水流方向"}));
}

TEST_F(ItemOrder, EachKindOfPipesHasAList) {
  given_style_keys("J_SwBzGd=((管长 Y))\nP_SwBzGd=((管径 Y))\n");
  Texts items;
  EXPECT_EQ(style.GetDnOrderDims(items, L"j"), 1);
  EXPECT_EQ(items, Texts({L"管长"}));
  EXPECT_EQ(style.GetDnOrderDims(items, L"P"), 1);
  EXPECT_EQ(items, Texts({L"管径"}));
  EXPECT_EQ(style.GetDnOrderDims(items, L"Y"), 1);
  EXPECT_EQ(items.size(), 4u);
  EXPECT_EQ(style.GetDnOrderDims(items, L"X"), 0);
  EXPECT_EQ(items, Texts());
}

TEST_F(ItemOrder, BeforeSettingsAreReadThereIsNone) {
  Texts items;
  EXPECT_EQ(style.GetDnOrderDims(items, L""), 0);
}

TEST_F(ItemOrder, FurtherSlotsOfStandardLYCountThereOnly) {
  given_file("install/Is/gdcdpdbz.dat", "x\nx\nx\n0 - DN LL PD DN LL V\n");
  order("LocalStyle=LY\n");
  EXPECT_EQ(order("LocalStyle=GB\n"), Texts({L"管径", L"管长", L"坡度", L"水流方向"}))
      << "though their words are still known";
}

TEST_F(ItemOrder, StandardLYHasFiveSlots) {
  given_file("install/Is/gdcdpdbz.dat", "x\nx\nx\n0 - DH GCDN DN LL PD V\n");
  EXPECT_EQ(order("LocalStyle=LY\nSwBzGd=((管代号 Y) (公称直径 Y) (坡度 Y))\n"),
            Texts({L"管代号", L"公称直径", L"坡度"}));
}

Texts pieces_of(CString text) {
  Texts pieces;
  CDimStyle::AnalyseSettingStr(text, pieces);
  return pieces;
}

TEST(Template, IsCutIntoFieldsAndTextsBetween) {
  EXPECT_EQ(pieces_of(L"{管代号}-{管径}"), Texts({L"管代号", L"-", L"管径", L""}));
  EXPECT_EQ(pieces_of(L"{a}{b} c"), Texts({L"a", L"b", L" c"}));
  EXPECT_EQ(pieces_of(L"{}x"), Texts({L"", L"x"}));
}

TEST(Template, TheFirstCharacterIsLostUnlessItIsABrace) {
  EXPECT_EQ(pieces_of(L"abc"), Texts({L"bc"}));
  EXPECT_EQ(pieces_of(L"abc{d}"), Texts({L"bc", L"d", L""}));
  EXPECT_EQ(pieces_of(L"a{d}"), Texts({L"d", L""})) << "nothing is left in front of the field";
  EXPECT_EQ(pieces_of(L"a"), Texts({L""}));
}

TEST(Template, IsTrimmed) {
  CString text = L" \t{a}b \x3000";
  Texts pieces = {L"before"};
  CDimStyle::AnalyseSettingStr(text, pieces);
  EXPECT_EQ(text, L"{a}b");
  EXPECT_EQ(pieces, Texts({L"before", L"a", L"b"}));
}

TEST(Template, WithNothingInItHasNoPieces) {
  EXPECT_EQ(pieces_of(L""), Texts());
  EXPECT_EQ(pieces_of(L"  "), Texts());
}

TEST(Template, AFieldThatDoesNotEndIsText) {
  EXPECT_EQ(pieces_of(L"{a}x{b"), Texts({L"a", L"x{b"}));
  EXPECT_EQ(pieces_of(L"{"), Texts({L""}));
  EXPECT_EQ(pieces_of(L"}{"), Texts({L"{"}));
}

RC_GTEST_PROP(Template, OfFieldsAndTextsComesApartAsItWasPutTogether, ()) {
  const auto word = rc::gen::container<CString>(rc::gen::elementOf(CString(L"ab管-")));
  const auto fields = *rc::gen::nonEmpty(rc::gen::container<std::vector<CString>>(word));
  CString text;
  Texts expected;
  for (const CString& field : fields) {
    const CString between = *word;
    text += L"{" + field + L"}" + between;
    expected.push_back(field);
    if (!between.empty() || &field == &fields.back()) expected.push_back(between);
  }
  RC_ASSERT(pieces_of(text) == expected);
}

RC_GTEST_PROP(Template, OfAnyTextComesApart, ()) {
  const CString text = *rc::gen::container<CString>(rc::gen::elementOf(CString(L"{}ab ")));
  std::size_t size = 0;
  for (const CString& piece : pieces_of(text)) size += piece.size();
  RC_ASSERT(size <= text.size());
}

}  // namespace
