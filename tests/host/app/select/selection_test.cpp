#include <string>

#include "host/app/aced.h"
#include "host/app/prompt/user_input.h"
#include "host/app/select/arxdbg_sel_set.h"
#include "tests/host/app/host_test.h"
#include "tests/host/app/small_drawing.h"

namespace {

class Selection : public WithHost {
 protected:
  void SetUp() override {
    drawing = given_drawing(small_drawing());
    eval(
        "(defun handles (s / i l) (setq i 0) (if s (while (< i (sslength s))"
        " (setq l (cons (cdr (assoc 5 (entget (ssname s i)))) l) i (1+ i)))) (reverse l))");
  }
  std::string all(const std::string& filter) {
    return eval("(handles (ssget \"_X\" '" + filter + "))");
  }
  ~Selection() override { cad::user_input() = {}; }
  /// In one line each.
  static void given_answers(const std::string& lines) {
    cad::user_input() = cad::scripted_input(lines, "answers.txt");
  }
  static std::vector<std::uint64_t> handles_of(const ArxDbgSelSet& set) {
    AcDbObjectIdArray ids;
    set.asArray(ids);
    std::vector<std::uint64_t> handles;
    for (int i = 0; i < ids.length(); ++i) handles.push_back(ids[i].handle());
    return handles;
  }
  AcApDocument* drawing = nullptr;
};

TEST_F(Selection, TheWholeDrawingComesNewestFirstWithoutParts) {
  EXPECT_EQ(eval("(handles (ssget \"X\"))"), "(\"30\" \"2D\" \"2C\" \"2B\" \"2A\")");
}

TEST_F(Selection, NothingFittingIsNil) { EXPECT_EQ(all("((0 . \"SPLINE\"))"), "nil"); }

TEST_F(Selection, TextsAreWildcardsInAnyCase) {
  EXPECT_EQ(all("((0 . \"line,Text\"))"), "(\"30\" \"2B\" \"2A\")");
  EXPECT_EQ(all("((0 . \"*LINE\") (8 . \"pip*\"))"), "(\"2C\")");
  EXPECT_EQ(all("((8 . \"ZY-标注\"))"), "(\"2B\")");
  EXPECT_EQ(all("((0 . \"~*LINE\"))"), "(\"2D\" \"2B\")");
}

TEST_F(Selection, GroupsThatAreLeftOutHaveTheirUsualValue) {
  EXPECT_EQ(all("((62 . 256))"), "(\"30\" \"2D\" \"2C\" \"2B\")");
  EXPECT_EQ(all("((6 . \"ByLayer\"))"), "(\"30\" \"2D\" \"2B\" \"2A\")");
  EXPECT_EQ(all("((67 . 0) (0 . \"LINE\"))"), "(\"2A\")");
  EXPECT_EQ(all("((410 . \"Model\") (0 . \"LINE\"))"), "(\"2A\")");
}

TEST_F(Selection, RelationsCompareTheNextGroup) {
  EXPECT_EQ(all("((-4 . \"<=\") (40 . 2.5))"), "(\"2B\")");
  EXPECT_EQ(all("((-4 . \"<\") (40 . 2.5))"), "nil");
  EXPECT_EQ(all("((-4 . \"/=\") (62 . 256))"), "(\"2A\")");
  EXPECT_EQ(all("((-4 . \"&\") (70 . 1))"), "(\"2C\")");
  EXPECT_EQ(all("((-4 . \">,<,*\") (10 2.0 5.0 0.0))"), "(\"2C\")");
  EXPECT_EQ(all("((10 1.0 2.0))"), "(\"2C\")");
}

TEST_F(Selection, CombinationsNest) {
  EXPECT_EQ(all("((-4 . \"<OR\") (0 . \"TEXT\") (-4 . \"<and\") (0 . \"LINE\") (67 . 1)"
                "(-4 . \"AND>\") (-4 . \"OR>\"))"),
            "(\"30\" \"2B\")");
  EXPECT_EQ(all("((-4 . \"<NOT\") (0 . \"LINE\") (-4 . \"NOT>\"))"), "(\"2D\" \"2C\" \"2B\")");
  EXPECT_EQ(all("((-4 . \"<XOR\") (0 . \"LINE\") (67 . 1) (-4 . \"XOR>\"))"), "(\"2A\")");
}

TEST_F(Selection, ExtendedDataIsAskedForByApplication) {
  EXPECT_EQ(all("((-3 (\"PIPE*\")))"), "(\"2B\")");
  EXPECT_EQ(all("((-3 (\"pipenote\") (\"OTHER\")))"), "(\"2B\")");
  EXPECT_EQ(all("((-3 (\"pipenote\") (\"NONE\")))"), "nil");
}

TEST_F(Selection, FiltersThatMakeNoSenseAreErrors) {
  EXPECT_EQ(all("((-4 . \"<OR\") (0 . \"TEXT\"))"), "error: bad SSGET list");
  EXPECT_EQ(all("((-4 . \"OR>\"))"), "error: bad SSGET list");
  EXPECT_EQ(all("((-4 . \"<\"))"), "error: bad SSGET list");
  EXPECT_EQ(all("((-4 . \"<NOT\") (0 . \"A\") (0 . \"B\") (-4 . \"NOT>\"))"),
            "error: bad SSGET list");
  EXPECT_EQ(all("((-4 . \"~=\") (40 . 1.0))"), "error: bad SSGET list value");
  EXPECT_EQ(all("((0 . foo))"), "error: bad SSGET list value");
  EXPECT_EQ(all("(0)"), "error: bad SSGET list");
}

TEST_F(Selection, ManyCombinationsWithinEachOtherAreRefused) {
  eval(
      "(setq f '((0 . \"LINE\"))) (repeat 1000 (setq f (append '((-4 . \"<AND\")) f "
      "'((-4 . \"AND>\")))))");
  EXPECT_EQ(eval("(ssget \"X\" f)"), "error: bad SSGET list");
}

TEST_F(Selection, ModesOfTheHost) {
  EXPECT_EQ(eval("(handles (ssget \"A\"))"), "(\"2D\" \"2C\" \"2A\")");  // 2B is on a locked layer
  EXPECT_EQ(eval("(handles (ssget \"L\"))"), "(\"2D\")");
  EXPECT_EQ(eval("(handles (ssget \"P\"))"), "(\"2D\")");
  EXPECT_EQ(eval("(ssget \"ZZ\")"), "error: bad ssget mode string: ZZ");
}

TEST_F(Selection, TheUsersAnswerIsGivenBeforehandAndUsedOnce) {
  ASSERT_TRUE(host.set_selection(drawing, {"2b", "2A", "2B"}));
  EXPECT_EQ(eval("(handles (ssget))"), "(\"2B\" \"2A\")");
  EXPECT_EQ(eval("(ssget)"), "nil");
  ASSERT_TRUE(host.set_selection(drawing, {"2A", "2B"}));
  EXPECT_EQ(eval("(handles (ssget \"_:L\" '((0 . \"LINE,TEXT\"))))"), "(\"2A\")");
}

TEST_F(Selection, AnAnswerMustNameEntities) {
  EXPECT_EQ(host.set_selection(drawing, {"2A", "FFF"}).error().message(),
            "FFF: the drawing has no object of this handle");
  EXPECT_EQ(host.set_selection(drawing, {"C"}).error().message(),
            "C: the object of this handle is no entity");
  EXPECT_FALSE(host.set_selection(drawing, {"pipe"}));
}

TEST_F(Selection, SetsChangeInPlace) {
  EXPECT_EQ(eval("(setq a (handent \"2A\") b (handent \"2B\") s (ssadd a) other s)"
                 "(ssadd b s) (ssadd a s) (handles other)"),
            "(\"2A\" \"2B\")");
  EXPECT_EQ(eval("(list (equal (ssmemb a s) a) (ssmemb (handent \"2C\") s))"), "(T nil)");
  EXPECT_EQ(eval("(ssdel a s) (handles other)"), "(\"2B\")");
  EXPECT_EQ(eval("(list (ssdel a s) (sslength s) (ssname s 1) (ssname s -1) (sslength (ssadd)))"),
            "(nil 1 nil nil 0)");
}

TEST_F(Selection, ModulesSelectToo) {
  ads_name set, entity;
  EXPECT_EQ(acedSSGet(L"_X", nullptr, nullptr, nullptr, set), RTNORM);
  std::int32_t length = 0;
  EXPECT_EQ(acedSSLength(set, &length), RTNORM);
  EXPECT_EQ(length, 5);
  EXPECT_EQ(acedSSName(set, 4, entity), RTNORM);
  AcDbObjectId id;
  EXPECT_EQ(acdbGetObjectId(id, entity), Acad::eOk);
  EXPECT_EQ(id.handle(), 0x2AU);
  EXPECT_EQ(acedSSName(set, 5, entity), RTERROR);
  EXPECT_EQ(acedSSFree(set), RTNORM);

  const cad::ResbufChain filter(
      acutBuildList(-4, L"<OR", RTDXF0, L"TEXT", 8, L"PIPES", -4, L"OR>", 0));
  EXPECT_EQ(acedSSGet(L"X", nullptr, nullptr, filter.get(), set), RTNORM);
  EXPECT_EQ(acedSSLength(set, &length), RTNORM);
  EXPECT_EQ(length, 2);
  EXPECT_EQ(acedSSFree(set), RTNORM);

  EXPECT_EQ(acedSSGet(nullptr, nullptr, nullptr, nullptr, set), RTERROR);
  EXPECT_EQ(set[0], 0);
  EXPECT_EQ(acedSSGet(L"ZZ", nullptr, nullptr, nullptr, set), RTREJ);
}

TEST_F(Selection, ModulesAskWithPromptsOfTheirOwn) {
  given_answers("handle:2A\nhandle:2D\nr\nhandle:2A\n\n");
  ArxDbgSelSet set;
  EXPECT_EQ(set.userSelect(L"Pipes: ", L"Not these: "), ArxDbgSelSet::kSelected);
  EXPECT_EQ(handles_of(set), (std::vector<std::uint64_t>{0x2D}));
  EXPECT_EQ(printed,
            "Pipes: handle:2A\n1 found\nPipes: handle:2D\n1 found, 2 total\nPipes: r\n"
            "Not these: handle:2A\n1 found, 1 removed, 1 total\nNot these: \n");
}

TEST_F(Selection, ModulesAskWithTheUsualPromptsWhenTheyHaveNone) {
  given_answers("\n");
  ArxDbgSelSet set;
  EXPECT_EQ(set.userSelect(), ArxDbgSelSet::kNone);
  EXPECT_EQ(printed, "Select objects: \n");
}

TEST_F(Selection, AnAnswerGivenBeforehandSparesModulesTheQuestion) {
  ASSERT_TRUE(host.set_selection(drawing, {"2C", "2A"}));
  const cad::ResbufChain filter(acutBuildList(RTDXF0, L"LINE", 0));
  ArxDbgSelSet set;
  EXPECT_EQ(set.userSelect(L"Pipes: ", L"Not these: ", filter.get()), ArxDbgSelSet::kSelected);
  EXPECT_EQ(handles_of(set), (std::vector<std::uint64_t>{0x2A}));
  EXPECT_EQ(printed, "");
}

TEST_F(Selection, ASelectionOfAModuleThatComesToNothingIsEmpty) {
  ArxDbgSelSet set;
  EXPECT_EQ(set.userSelect(L"Pipes: "), ArxDbgSelSet::kNone);  // nobody is there
  const cad::ResbufChain filter(acutBuildList(-4, L"<OR", RTDXF0, L"LINE", 0));
  EXPECT_EQ(set.userSelect(L"Pipes: ", nullptr, filter.get()), ArxDbgSelSet::kRejected);
  given_answers("");
  EXPECT_EQ(set.userSelect(L"Pipes: "), ArxDbgSelSet::kCanceled);
  EXPECT_EQ(set.lastStatus(), ArxDbgSelSet::kCanceled);
  EXPECT_EQ(set.length(), 0);
  EXPECT_EQ(handles_of(set), std::vector<std::uint64_t>{});
}

}  // namespace
