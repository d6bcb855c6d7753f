// Labels drawn for the first time, through the LISP functions.

#include <cmath>
#include <numbers>
#include <set>

#include "module/registry/update_service.h"
#include "tests/labeler/labelling.h"

namespace {

constexpr double kPi = std::numbers::pi;
constexpr char kOneDrawn[] = "((\"drawn\" 1) (\"updated\" 0) (\"crowded\" 0) (\"skipped\" 0))";

class DrawingLabels : public Labelling {
 protected:
  std::wstring composite(const std::string& pipe_handle) {
    const std::unique_ptr<CGxGd> pipe = network::open_pipe(id(pipe_handle));
    const double slope = (*pipe->data().real(network::Key::kStartInvert) -
                          *pipe->data().real(network::Key::kEndInvert)) /
                         *pipe->length();
    CStringArray items, texts;
    CDimStyle::Instance().GetDnOrderDims(items, L"P");
    CDimStyle::Instance().GetCompositeDimExt(*pipe->diameter(), slope, *pipe->length(), 0, items,
                                             texts, 0, Gx::kNoData, Gx::kNoData, Gx::kNoData, false,
                                             pipe->parallel());
    return texts.at(0);
  }
};

TEST_F(DrawingLabels, APipeIsLabelledWithTheFormattersText) {
  const std::string pipe = given_pipe(0, 0, 40, 0);
  EXPECT_EQ(label_pipe(pipe), kOneDrawn);
  EXPECT_EQ(texts_of(pipe), std::vector<std::wstring>{composite(pipe)});
  EXPECT_EQ(texts_of(pipe), std::vector<std::wstring>{L"DN300-L=40.0m-i=2.5‰"});
}

TEST_F(DrawingLabels, ThePiecesAreRecordedUnderTheNamesOfTheVocabulary) {
  const std::string pipe = given_pipe(0, 0, 40, 0);
  label_pipe(pipe);
  EXPECT_EQ(item(pipe, L"pipe_dia").prefix, L"DN");
  EXPECT_EQ(item(pipe, L"pipe_dia").value, L"300");
  EXPECT_EQ(item(pipe, L"pipe_len").suffix, L"m");
  EXPECT_EQ(item(pipe, L"pipe_iii").value, L"2.5");
  CDimupateRegisiter& registry = CDimUpdateServ::getInstance().getDimRegServ();
  for (const StuDim& one : labeler::read_items(id(pipe), L"xzgj"))
    EXPECT_TRUE(!one.recordKind.empty() || registry.isDimName(one.name.c_str()));
}

TEST_F(DrawingLabels, AnotherProgramUpdatesOnePieceAlone) {
  const std::string pipe = given_pipe(0, 0, 40, 0);
  label_pipe(pipe);
  eval("(dimupdate " + ename(pipe) + " \"pipe_dia\" \"400\")");
  EXPECT_EQ(texts_of(pipe), std::vector<std::wstring>{L"DN400-L=40.0m-i=2.5‰"});
}

TEST_F(DrawingLabels, TheTextLiesAlongThePipeAndIsReadable) {
  const std::string pipe = given_pipe(40, 40, 0, 0);  // to the lower left
  label_pipe(pipe);
  EXPECT_NEAR(rotation_of(pipe), kPi / 4, 1e-9);
  // Above the middle, in the direction of reading.
  EXPECT_LT(place_of(pipe).x, 20.0);
  EXPECT_GT(place_of(pipe).y, 20.0);
}

TEST_F(DrawingLabels, TheReferenceDirectionTurnsTheText) {
  const std::string pipe = given_pipe(0, 0, 40, 0);
  label_pipe(pipe, "nil 3.14159265358979");
  EXPECT_TRUE(labeler::same_angle(rotation_of(pipe), kPi));
  EXPECT_LT(place_of(pipe).y, 0.0);
  EXPECT_EQ(stale(), "nil");
}

TEST_F(DrawingLabels, ParallelPipesAreCounted) {
  const std::string pipe = given_pipe(0, 0, 40, 0, "(1000 . \"parallel\") (1070 . 2)");
  label_pipe(pipe);
  EXPECT_EQ(texts_of(pipe), std::vector<std::wstring>{L"2xDN300-L=40.0m-i=2.5‰"});
  EXPECT_EQ(item(pipe, L"pipe_dia").prefix, L"2xDN");
}

TEST_F(DrawingLabels, ARectangularSectionIsOnePiece) {
  const std::string pipe =
      given_pipe(0, 0, 40, 0, real_pair("width", 2000) + real_pair("height", 1500));
  label_pipe(pipe);
  EXPECT_EQ(texts_of(pipe), std::vector<std::wstring>{L"BxH=2000x1500-L=40.0m-i=2.5‰"});
  EXPECT_EQ(item(pipe, L"pipe_gg").value, L"BxH=2000x1500");
}

TEST_F(DrawingLabels, TwinSectionsAreLabelledAsSuch) {
  const std::string pipe = given_pipe(
      0, 0, 40, 0,
      real_pair("width", 2000) + real_pair("height", 1500) + "(1000 . \"parallel\") (1070 . 2)");
  label_pipe(pipe);
  EXPECT_EQ(texts_of(pipe), std::vector<std::wstring>{L"2xBxH=2000x1500-L=40.0m-i=2.5‰"});
}

TEST_F(DrawingLabels, APipeWithoutInvertsHasNoSlopeInItsLabel) {
  const std::string pipe =
      made("(0 . \"LINE\") (10 0.0 0.0 0.0) (11 40.0 0.0 0.0)" +
           data(text_pair("kind", "drainage-pipe") + real_pair("diameter", 300)));
  label_pipe(pipe);
  EXPECT_EQ(texts_of(pipe), std::vector<std::wstring>{L"DN300-L=40.0m"});
}

TEST_F(DrawingLabels, TheFlowArrowPointsDownhill) {
  const std::string pipe = given_pipe_with_wells(40, 0, 0, 0);
  label_pipe(pipe);
  EXPECT_EQ(item(pipe, L"jt").value, L"jt");
  dim::Opened<AcDbBlockReference> arrow(label_of(pipe).arrow, AcDb::kForRead);
  ASSERT_TRUE(arrow);
  EXPECT_TRUE(labeler::same_angle(arrow->rotation(), kPi));
}

TEST_F(DrawingLabels, APipeWhoseWellsAreNotKnownHasNoArrow) {
  const std::string pipe = given_pipe(0, 0, 40, 0);
  label_pipe(pipe);
  EXPECT_EQ(item(pipe, L"jt").name, L"");
  EXPECT_EQ(stale(), "nil");
}

TEST_F(DrawingLabels, TheArrowIsTurnedByTheRecordingModule) {
  const std::string pipe = given_pipe_with_wells(0, 0, 40, 0);
  label_pipe(pipe);
  set_real(pipe, network::Key::kEndInvert, 11.0);
  eval("(updateJtDirection " + ename(pipe) + ")");
  dim::Opened<AcDbBlockReference> arrow(label_of(pipe).arrow, AcDb::kForRead);
  ASSERT_TRUE(arrow);
  EXPECT_TRUE(labeler::same_angle(arrow->rotation(), kPi));
}

TEST_F(DrawingLabels, LabelsAtThePipesEndsHaveTypesOfTheirOwn) {
  const std::string pipe = given_pipe(0, 0, 60, 0);
  label_pipe(pipe, "'(\"xdgj\" \"xdbg_st\" \"xdbg_ed\")");
  EXPECT_EQ(texts_of(pipe, L"xdgj"), std::vector<std::wstring>{L"DN300"});
  EXPECT_EQ(texts_of(pipe, L"xdbg_st"), std::vector<std::wstring>{L"10.200"});
  EXPECT_EQ(texts_of(pipe, L"xdbg_ed"), std::vector<std::wstring>{L"10.100"});
  EXPECT_LT(place_of(pipe, L"xdbg_st").x, 20.0);
  EXPECT_GT(place_of(pipe, L"xdbg_ed").x, 40.0);
}

TEST_F(DrawingLabels, TheCalculationLabelHasTheDecimalsOfTheCalculation) {
  const std::string pipe = given_pipe(
      0, 0, 40, 0,
      real_pair("flow", 12.345) + real_pair("speed", 1.2345) + real_pair("head_loss", 0.1));
  label_pipe(pipe, "\"pcgb\"");
  EXPECT_EQ(texts_of(pipe, L"pcgb"),
            (std::vector<std::wstring>{L"40.0-DN300", L"12.35-1.23-2.500"}));
}

TEST_F(DrawingLabels, AWellIsLabelledWithItsNumber) {
  const std::string well = given_well(10, 10, "12a", text_pair("prefix", "w"));
  EXPECT_EQ(eval("(labelwell " + ename(well) + ")"), kOneDrawn);
  EXPECT_EQ(texts_of(well, L"bjbh"), std::vector<std::wstring>{L"W-12a"});
  EXPECT_EQ(item(well, L"well_bh", L"bjbh").value, L"12a");
}

TEST_F(DrawingLabels, ANodeOfTheCalculationHasALineForEachValue) {
  const std::string node = given_well(
      10, 10, "7", real_pair("flow", 3.5) + real_pair("ground", 20) + real_pair("head", 35));
  eval("(labelwell " + ename(node) + " \"pcjdb\")");
  EXPECT_EQ(texts_of(node, L"pcjdb").size(), 5u);
  EXPECT_EQ(item(node, L"well_gdzy", L"pcjdb").value, L"15");
}

TEST_F(DrawingLabels, AWellPipeLabelListsThePipesUnderTheirHandles) {
  const std::string well = given_well(0, 0, "1", real_pair("ground", 12));
  const std::string pipe = given_pipe(0, 0, 40, 0, node_pair("start_node", well));
  eval("(labelwell " + ename(well) + " \"bzjg\")");
  EXPECT_EQ(texts_of(well, L"bzjg"), (std::vector<std::wstring>{L"1", L"12.000", L"DN300 10.200"}));
  EXPECT_EQ(item(well, (cad::from_utf8(pipe) + L"@pipe_dia").c_str(), L"bzjg").value, L"300");
}

TEST_F(DrawingLabels, ThePlacementOfAWellPipeLabelIsAnsweredForItsUpdate) {
  const std::string well = given_well(0, 0, "1");
  eval("(labelwell " + ename(well) + " \"bzjg\")");
  EXPECT_EQ(eval("(jgbzUpInfo " + ename(well) + ")"),
            "((\"zh_mc\" nil) (\"ang_yx\" 0.785398) (\"dist_jgbz\" 6.0) (\"ang_wz\" 0.0) "
            "(\"czfx_jgbz\" nil) (\"xfdh\" \"1\"))");
}

TEST_F(DrawingLabels, StakesStandAlongARouteAtWholeIntervals) {
  const std::string route = made("(0 . \"LINE\") (10 0.0 0.0 0.0) (11 120.0 0.0 0.0)");
  eval("(labelroute " + ename(route) + " 50 980)");
  std::vector<std::wstring> expected;
  for (const double stake : {980.0, 1000.0, 1050.0, 1100.0})
    expected.push_back(CDimStyle::Instance().GetZhStr(stake, L""));
  EXPECT_EQ(texts_of(route, labeler::kStakeType), expected);
  EXPECT_EQ(expected[2], L"K1+050");
}

TEST_F(DrawingLabels, LabellingAgainDrawsNothingTwice) {
  const std::string pipe = given_pipe(0, 0, 40, 0);
  label_pipe(pipe);
  const std::string before = bytes();
  EXPECT_EQ(label_pipe(pipe), "((\"drawn\" 0) (\"updated\" 1) (\"crowded\" 0) (\"skipped\" 0))");
  EXPECT_EQ(bytes(), before);
}

TEST_F(DrawingLabels, ALabelThatWasErasedIsDrawnAgain) {
  const std::string pipe = given_pipe(0, 0, 40, 0);
  label_pipe(pipe);
  erase(text_handle(pipe));
  EXPECT_EQ(label_pipe(pipe), kOneDrawn);
  EXPECT_EQ(texts_of(pipe).size(), 1u);
}

TEST_F(DrawingLabels, WhatCannotBeLabelledIsToldOnceWithItsHandle) {
  const std::string pipe = given_pipe(5, 5, 5, 5);
  const std::string well = given_well(0, 0, "");
  const std::string line = made("(0 . \"LINE\") (10 0.0 0.0 0.0) (11 1.0 0.0 0.0)");
  eval("(labelpipe (list " + ename(pipe) + " " + ename(pipe) + " " + ename(line) + "))");
  eval("(labelwell " + ename(well) + ")");
  EXPECT_EQ(printed, "\npipe " + pipe + " (xzgj): has no length; no label\n" + line +
                         " is no pipe; no label\nnode " + well +
                         " (bjbh): has no number; no label");
}

TEST_F(DrawingLabels, APipeOnALockedLayerIsToldAndNothingIsDrawn) {
  eval(
      "(entmake '((0 . \"LAYER\") (100 . \"AcDbSymbolTableRecord\") (100 . "
      "\"AcDbLayerTableRecord\") (2 . \"PIPES\") (70 . 0)))");
  const std::string pipe = given_pipe(0, 0, 40, 0);
  eval("(setq e (entget " + ename(pipe) + ")) (entmod (subst '(8 . \"PIPES\") (assoc 8 e) e))");
  lock_layer("PIPES");
  const std::string before = bytes();
  label_pipe(pipe);
  EXPECT_NE(printed.find("pipe " + pipe + " (xzgj): cannot be labelled, its layer is locked"),
            std::string::npos)
      << printed;
  EXPECT_EQ(bytes(), before);
}

TEST_F(DrawingLabels, LabelsGoToTheOtherSideRatherThanUponEachOther) {
  const std::string first = given_pipe(0, 0, 40, 0), second = given_pipe(0, -1.5, 40, -1.5);
  EXPECT_EQ(eval("(labelnetwork \"xzgj\")"),
            "((\"drawn\" 2) (\"updated\" 0) (\"crowded\" 0) (\"skipped\" 0))");
  EXPECT_GT(place_of(first).y, 0.0);
  EXPECT_LT(place_of(second).y, -1.5);
}

TEST_F(DrawingLabels, LabelsOfPipesInOnePlaceDoNotLieUponEachOther) {
  const std::string first = given_pipe(0, 0, 40, 0), second = given_pipe(0, 0, 40, 0),
                    third = given_pipe(0, 0, 40, 0);
  eval("(labelnetwork)");
  std::set<long> rows;
  for (const std::string& pipe : {first, second, third})
    rows.insert(std::lround(place_of(pipe).y * 100));
  EXPECT_EQ(rows.size(), 3u);
}

TEST_F(DrawingLabels, LabelsWithoutRoomAreCountedAndTold) {
  for (int i = 0; i < 4; ++i) given_pipe(0, i, 3, i);
  const std::string counts = eval("(labelnetwork)");
  EXPECT_EQ(counts.find("(\"crowded\" 0)"), std::string::npos) << counts;
  EXPECT_NE(printed.find("lies upon a pipe, a node or another text"), std::string::npos) << printed;
}

TEST_F(DrawingLabels, LabelsLieOnTheLayersTheStyleNames) {
  const std::string pipe = given_pipe(0, 0, 40, 0);
  label_pipe(pipe);
  EXPECT_EQ(eval("(cdr (assoc 8 (entget " + ename(text_handle(pipe)) + ")))"), "\"SwBzPPipe\"");
}

}  // namespace
