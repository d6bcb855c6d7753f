#include "module/record/text_marks.h"

#include "module/platform/opened.h"
#include "module/record/record.h"
#include "module/record/record_cursor.h"
#include "tests/module/plan.h"

namespace {

using Marks = std::vector<dim::TextMark>;

/// A text item: name, handle, and the pieces as they stand in the label.
StuDim piece(const wchar_t* name, const wchar_t* handle, const wchar_t* prefix,
             const wchar_t* value, const wchar_t* suffix = L"", const wchar_t* separator = L"") {
  return {name, handle, value, prefix, suffix, separator, L"", L""};
}

class OpenRecord : public CDimRecord {
 public:
  using CDimRecord::extractTxtMark;
};

class TextMarks : public PlanTest {
 protected:
  Marks marks_of(const Items& items) {
    OpenRecord record;
    Marks marks;
    const AcDbObjectId id = plan.store_items(L"2F", L"pcgb", items);
    EXPECT_EQ(record.open(id, AcDb::kForWrite, false), Acad::eOk);
    EXPECT_EQ(record.extractTxtMark(marks), Acad::eOk);
    return marks;
  }
};

TEST_F(TextMarks, PiecesAreJoinedByTheirSeparatorsAndTheLastOneIsDropped) {
  EXPECT_EQ(
      marks_of({piece(L"a", L"40", L"", L"A", L"", L"/"), piece(L"b", L"40", L"", L"B", L"", L"-"),
                piece(L"c", L"40", L"", L"C", L"", L"+")}),
      (Marks{{L"40", L"A/B-C"}}));
}

TEST_F(TextMarks, APieceIsPrefixValueSuffix) {
  EXPECT_EQ(marks_of({piece(L"a", L"40", L"DN", L"300", L"")}), (Marks{{L"40", L"DN300"}}));
  EXPECT_EQ(marks_of({piece(L"a", L"40", L"L=", L"36.5", L"m")}), (Marks{{L"40", L"L=36.5m"}}));
}

TEST_F(TextMarks, AMissingSeparatorJoinsPiecesDirectly) {
  EXPECT_EQ(marks_of({piece(L"a", L"40", L"DN", L"300"), piece(L"b", L"40", L"L", L"5")}),
            (Marks{{L"40", L"DN300L5"}}));
}

TEST_F(TextMarks, APieceWithoutValueIsEmptyAndKeepsItsSeparator) {
  EXPECT_EQ(marks_of({piece(L"a", L"40", L"DN", L"", L"mm", L"-"),
                      piece(L"b", L"40", L"L=", L"36.5", L"m")}),
            (Marks{{L"40", L"-L=36.5m"}}));
  EXPECT_EQ(marks_of({piece(L"a", L"40", L"DN", L"300", L"", L"-"),
                      piece(L"b", L"40", L"L=", L"", L"m", L"+")}),
            (Marks{{L"40", L"DN300-"}}));
  EXPECT_EQ(marks_of({piece(L"a", L"40", L"DN", L"")}), (Marks{{L"40", L""}}));
}

TEST_F(TextMarks, PiecesKeepTheOrderOfTheirItems) {
  EXPECT_EQ(
      marks_of({piece(L"z", L"40", L"", L"1", L"", L","), piece(L"y", L"41", L"", L"2", L"", L","),
                piece(L"x", L"40", L"", L"3", L"", L","), piece(L"w", L"41", L"", L"4", L"", L","),
                piece(L"v", L"40", L"", L"5", L"", L",")}),
      (Marks{{L"40", L"1,3,5"}, {L"41", L"2,4"}}));
}

TEST_F(TextMarks, TheEntityWhoseHandleSortsFirstComesFirst) {
  EXPECT_EQ(marks_of({piece(L"a", L"4A", L"", L"A"), piece(L"b", L"40", L"", L"B"),
                      piece(L"c", L"9", L"", L"C"), piece(L"d", L"42", L"", L"D")}),
            (Marks{{L"40", L"B"}, {L"42", L"D"}, {L"4A", L"A"}}));
}

TEST_F(TextMarks, TwoSpellingsOfAHandleAreTwoTexts) {
  EXPECT_EQ(marks_of({piece(L"a", L"4a", L"", L"A", L"", L"/"), piece(L"b", L"4A", L"", L"B")}),
            (Marks{{L"4A", L"B"}, {L"4a", L"A"}}));
}

TEST_F(TextMarks, OnlyTextItemsMakeTexts) {
  StuDim information = item_of(L"info", L"1", L"40");
  information.recordKind = dim::kNoEntityKind;
  EXPECT_EQ(marks_of({information}), Marks{});
  EXPECT_EQ(marks_of({item_of(L"41", L"", L"41")}), Marks{});
  EXPECT_EQ(marks_of({item_of(L"same", L"same", L"42")}), Marks{});
  EXPECT_EQ(marks_of({item_of(L"same", L"SAME", L"42")}), (Marks{{L"42", L"SAME"}}));
  EXPECT_EQ(marks_of({item_of(L"empty", L"", L"43")}), Marks{});
}

TEST_F(TextMarks, ATextWithoutEntityIsLeftOutAndTraced) {
  const TraceLines trace;
  EXPECT_EQ(marks_of({piece(L"a", L"", L"", L"A"), piece(L"b", L"40", L"", L"B")}),
            (Marks{{L"40", L"B"}}));
  EXPECT_EQ(trace.lines(), Texts{L"文本实体没有打开，可能已经被删除!"});
}

TEST_F(TextMarks, MarksAreAppended) {
  OpenRecord record;
  Marks marks{{L"before", L"kept"}};
  const AcDbObjectId id = plan.store_items(L"2F", L"pcgb", {piece(L"a", L"40", L"", L"A")});
  ASSERT_EQ(record.open(id, AcDb::kForWrite, false), Acad::eOk);
  EXPECT_EQ(record.extractTxtMark(marks), Acad::eOk);
  EXPECT_EQ(marks, (Marks{{L"before", L"kept"}, {L"40", L"A"}}));
}

TEST_F(TextMarks, NothingIsMadeOfARecordThatIsNotOpen) {
  OpenRecord record;
  Marks marks;
  EXPECT_EQ(record.extractTxtMark(marks), 374);
}

TEST_F(TextMarks, ARecordThatCannotBeCleanedGivesNone) {
  const AcDbObjectId id = plan.store_items(L"2F", L"pcgb", {piece(L"a", L"40", L"", L"A")});
  OpenRecord record;
  Marks marks;
  ASSERT_EQ(record.open(id, AcDb::kForRead, false), Acad::eOk);
  const TraceLines trace;
  EXPECT_EQ(record.extractTxtMark(marks), 1);
  EXPECT_EQ(marks, Marks{});
  EXPECT_EQ(trace.lines(), (Texts{L"扩展记录指针失效,无法写入!", L"清除垃圾数据失败!"}));
}

}  // namespace
