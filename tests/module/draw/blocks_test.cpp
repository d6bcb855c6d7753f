// Symbols: blocks loaded from their files, and the arrows made of them.

#include <filesystem>
#include <limits>

#include "host/base/trace.h"
#include "tests/module/draw/draw_fixture.h"
#include "tests/module/draw/recording_draw.h"

namespace {

/// An installation with symbols: a line from the origin along X, 15 and 8 units long.
class InsertedBlocks : public WithDraw {
 protected:
  InsertedBlocks() {
    cad::set_trace_sink([this](std::wstring_view line) { trace += std::wstring(line) + L"\n"; });
    given_symbol("install/szwdl/psjt.dwg", 15);
    given_symbol("install/Dwg/ktwdljtk/cd01015.dwg", 8);
  }
  ~InsertedBlocks() override { cad::set_trace_sink({}); }

  void given_symbol(const std::string& path, double length) const {
    given_file(path, symbol(length));
  }
  static std::string symbol(double length) {
    AcDbDatabase* const current = acdbHostApplicationServices()->workingDatabase();
    AcDbDatabase source(true);
    acdbHostApplicationServices()->setWorkingDatabase(&source);
    auto* line = new AcDbLine({0, 0, 0}, {length, 0, 0});
    EXPECT_EQ(ArxDbgUtils::addToCurrentSpace(line), Acad::eOk);
    line->close();
    acdbHostApplicationServices()->setWorkingDatabase(current);
    return source.save_bytes();
  }
  CString installed(const wchar_t* file) const { return path("install") + L"\\" + file; }
  bool has_block(const wchar_t* name) const {
    AcDbBlockTable* table = nullptr;
    if (database().getSymbolTable(table, AcDb::kForRead) != Acad::eOk) return false;
    const bool found = table->has(name);
    table->close();
    return found;
  }
  static std::wstring block_of(AcDbObjectId reference) {
    const AcDbObjectId block = reading<AcDbBlockReference>(reference)->blockTableRecord();
    return reading<AcDbBlockTableRecord>(block)->name();
  }
  /// The length of the one line of the reference's block.
  static double symbol_length(AcDbObjectId reference) {
    const auto block =
        reading<AcDbBlockTableRecord>(reading<AcDbBlockReference>(reference)->blockTableRecord());
    AcDbBlockTableRecordIterator* walk = nullptr;
    block->newIterator(walk);
    const std::unique_ptr<AcDbBlockTableRecordIterator> owned(walk);
    AcDbObjectId first;
    if (walk->getEntityId(first) != Acad::eOk) return 0.0;
    return reading<AcDbLine>(first)->endPoint().x;
  }

  std::wstring trace;
};

TEST_F(InsertedBlocks, AreLoadedFromTheirFiles) {
  CDimDraw draw(500, L"A");
  draw.SetDrawColor(1);
  const AcDbObjectId id =
      draw.InsertBlkEnt(installed(L"szwdl\\psjt.dwg"), L"flow", {1, 2, 3}, 0.5, 2.0);
  const auto reference = reading<AcDbBlockReference>(id);
  EXPECT_THAT(reference->position(), Is(1, 2, 3));
  EXPECT_NEAR(reference->rotation(), 0.5, 1e-12);
  EXPECT_EQ(reference->scaleFactors(), AcGeScale3d(2.0));
  EXPECT_EQ(reference->layerId(), Gx::GetLayer(L"A"));
  EXPECT_EQ(reference->colorIndex(), 1);
  EXPECT_EQ(block_of(id), L"flow");
  EXPECT_EQ(symbol_length(id), 15);
  ASSERT_EQ(draw.GetAllDimEntityId().length(), 1);
  EXPECT_EQ(draw.GetAllDimEntityId()[0], id);
}

TEST_F(InsertedBlocks, TakeThreeFactors) {
  CDimDraw draw(500, nullptr);
  const AcDbObjectId id =
      draw.InsertBlkEnt(installed(L"szwdl\\psjt.dwg"), L"", {0, 0, 0}, 0, AcGeScale3d(1, -2, 3));
  EXPECT_EQ(reading<AcDbBlockReference>(id)->scaleFactors(), AcGeScale3d(1, -2, 3));
}

TEST_F(InsertedBlocks, WithoutANameAreNamedAfterTheFile) {
  CDimDraw draw(500, nullptr);
  EXPECT_EQ(block_of(draw.InsertBlkEnt(installed(L"szwdl\\psjt.dwg"), L"", {0, 0, 0}, 0, 1.0)),
            L"psjt");
  EXPECT_EQ(
      block_of(draw.InsertBlkEnt(installed(L"Dwg/ktwdljtk/cd01015.dwg"), L"", {0, 0, 0}, 0, 1.0)),
      L"cd01015");
  given_symbol("install/two.dots.dwg", 3);
  EXPECT_EQ(block_of(draw.InsertBlkEnt(installed(L"two.dots.dwg"), L"", {0, 0, 0}, 0, 1.0)),
            L"two.dots");
}

TEST_F(InsertedBlocks, AreFoundWhateverTheLetterCaseOfTheirFiles) {
  CDimDraw draw(500, nullptr);
  const AcDbObjectId id = draw.InsertBlkEnt(installed(L"SZWDL\\PSJT.DWG"), L"", {0, 0, 0}, 0, 1.0);
  EXPECT_EQ(block_of(id), L"PSJT");
}

TEST_F(InsertedBlocks, ReadTheirFileOnce) {
  CDimDraw draw(500, nullptr);
  const CString file = installed(L"szwdl\\psjt.dwg");
  const AcDbObjectId first = draw.InsertBlkEnt(file, L"", {0, 0, 0}, 0, 1.0);
  std::filesystem::remove(folder / "install/szwdl/psjt.dwg");
  const AcDbObjectId second = draw.InsertBlkEnt(file, L"", {5, 0, 0}, 0, 1.0);
  ASSERT_FALSE(second.isNull());
  EXPECT_EQ(reading<AcDbBlockReference>(first)->blockTableRecord(),
            reading<AcDbBlockReference>(second)->blockTableRecord());
}

TEST_F(InsertedBlocks, OfTheDrawingNeedNoFile) {
  CDimDraw draw(500, nullptr);
  draw.InsertBlkEnt(installed(L"szwdl\\psjt.dwg"), L"known", {0, 0, 0}, 0, 1.0);
  EXPECT_FALSE(draw.InsertBlkEnt(L"nowhere.dwg", L"KNOWN", {0, 0, 0}, 0, 1.0).isNull());
}

TEST_F(InsertedBlocks, WithoutAFileAreNoneEvenIfTheDrawingHasTheBlock) {
  CDimDraw draw(500, nullptr);
  draw.InsertBlkEnt(installed(L"szwdl\\psjt.dwg"), L"", {0, 0, 0}, 0, 1.0);
  EXPECT_TRUE(draw.InsertBlkEnt(L"", L"psjt", {0, 0, 0}, 0, 1.0).isNull());
}

TEST_F(InsertedBlocks, ADriveIsNoPartOfTheName) {
  CDimDraw draw(500, nullptr);
  draw.InsertBlkEnt(installed(L"szwdl\\psjt.dwg"), L"", {0, 0, 0}, 0, 1.0);
  EXPECT_EQ(block_of(draw.InsertBlkEnt(L"C:psjt.dwg", L"", {0, 0, 0}, 0, 1.0)), L"psjt");
}

TEST_F(InsertedBlocks, WithoutFileOrNameAreNone) {
  CDimDraw draw(500, nullptr);
  EXPECT_TRUE(draw.InsertBlkEnt(L"", L"", {0, 0, 0}, 0, 1.0).isNull());
  EXPECT_TRUE(draw.InsertBlkEnt(L"", L"psjt", {0, 0, 0}, 0, 1.0).isNull());
  EXPECT_TRUE(draw.InsertBlkEnt(L"folder\\", L"", {0, 0, 0}, 0, 1.0).isNull());
  EXPECT_EQ(entities(), 0u);
}

TEST_F(InsertedBlocks, OfAMissingFileAreAbsentAndOnlyTheTraceTells) {
  CDimDraw draw(500, nullptr);
  const std::string untouched = database().save_bytes();
  EXPECT_TRUE(draw.InsertBlkEnt(installed(L"none.dwg"), L"", {0, 0, 0}, 0, 1.0).isNull());
  EXPECT_EQ(printed, "");
  EXPECT_THAT(trace, testing::HasSubstr(L"readDrwFile failed"));
  EXPECT_THAT(trace, testing::HasSubstr(L"none.dwg"));
  EXPECT_EQ(database().save_bytes(), untouched);
  given_symbol("install/none.dwg", 4);
  EXPECT_FALSE(draw.InsertBlkEnt(installed(L"none.dwg"), L"", {0, 0, 0}, 0, 1.0).isNull())
      << "once it is there";
}

TEST_F(InsertedBlocks, OfADamagedFileAreAbsent) {
  CDimDraw draw(500, nullptr);
  given_file("install/bad.dwg", "this is no drawing\n");
  const std::string untouched = database().save_bytes();
  EXPECT_TRUE(draw.InsertBlkEnt(installed(L"bad.dwg"), L"", {0, 0, 0}, 0, 1.0).isNull());
  EXPECT_EQ(printed, "");
  EXPECT_EQ(database().save_bytes(), untouched);
}

TEST_F(InsertedBlocks, ThatWouldContainThemselvesAreRefused) {
  // The file has a block of the name that the file itself is to get.
  {
    AcDbDatabase* const current = acdbHostApplicationServices()->workingDatabase();
    AcDbDatabase source(true);
    acdbHostApplicationServices()->setWorkingDatabase(&source);
    CDimDraw inner(500, nullptr);
    inner.InsertBlkEnt(installed(L"szwdl\\psjt.dwg"), L"loop", {0, 0, 0}, 0, 1.0);
    given_file("install/loop.dwg", source.save_bytes());
    acdbHostApplicationServices()->setWorkingDatabase(current);
  }
  CDimDraw draw(500, nullptr);
  EXPECT_TRUE(draw.InsertBlkEnt(installed(L"loop.dwg"), L"", {0, 0, 0}, 0, 1.0).isNull());
  EXPECT_FALSE(has_block(L"loop"));
  EXPECT_THAT(trace, testing::HasSubstr(L" insert error !"));
  EXPECT_FALSE(draw.InsertBlkEnt(installed(L"loop.dwg"), L"other", {0, 0, 0}, 0, 1.0).isNull())
      << "under another name it contains no cycle";
}

TEST_F(InsertedBlocks, WhoseNumbersAreNoneAreNotInserted) {
  CDimDraw draw(500, nullptr);
  const double bad = std::numeric_limits<double>::quiet_NaN();
  const CString file = installed(L"szwdl\\psjt.dwg");
  EXPECT_TRUE(draw.InsertBlkEnt(file, L"", {bad, 0, 0}, 0, 1.0).isNull());
  EXPECT_TRUE(draw.InsertBlkEnt(file, L"", {0, 0, 0}, bad, 1.0).isNull());
  EXPECT_TRUE(draw.InsertBlkEnt(file, L"", {0, 0, 0}, 0, bad).isNull());
  EXPECT_TRUE(draw.InsertBlkEnt(file, L"", {0, 0, 0}, 0, 0.0).isNull());
  EXPECT_EQ(entities(), 0u);
}

TEST_F(InsertedBlocks, AreNotTurnedByTheMatrix) {
  CDimDraw draw(500, nullptr);
  draw.SetReferenceDirection({0, 0, 0}, kPi, 0);
  const AcDbObjectId id =
      draw.InsertBlkEnt(installed(L"szwdl\\psjt.dwg"), L"", {1, 2, 0}, 0.25, 1.0);
  EXPECT_THAT(reading<AcDbBlockReference>(id)->position(), Is(1, 2, 0));
  EXPECT_NEAR(reading<AcDbBlockReference>(id)->rotation(), 0.25, 1e-12);
}

// Arrows

class InsertedArrows : public InsertedBlocks {};

TEST_F(InsertedArrows, TheLeftArrowIsCentredOnItsPoint) {
  CDimDraw draw(1000, L"A");
  const AcDbObjectId id = draw.LeftInsertArrow({100, 50, 0}, {0, 3, 0}, false, nullptr);
  const auto arrow = reading<AcDbBlockReference>(id);
  EXPECT_THAT(arrow->position(), Is(100, 42.5, 0)) << "7.5 units back along its direction";
  EXPECT_NEAR(arrow->rotation(), kPi / 2, 1e-12);
  EXPECT_EQ(arrow->scaleFactors(), AcGeScale3d(1.0));
  EXPECT_EQ(arrow->layerId(), Gx::GetLayer(L"A"));
  EXPECT_EQ(block_of(id), L"psjt");
}

TEST_F(InsertedArrows, TheLeftArrowFollowsTheScale) {
  CDimDraw draw(500, nullptr);
  const auto arrow =
      reading<AcDbBlockReference>(draw.LeftInsertArrow({100, 50, 0}, {1, 0, 0}, false, nullptr));
  EXPECT_THAT(arrow->position(), Is(96.25, 50, 0));
  EXPECT_EQ(arrow->scaleFactors(), AcGeScale3d(0.5));
}

TEST_F(InsertedArrows, TheLeftArrowKeepsItsDirectionUnderAFlip) {
  CDimDraw draw(1000, nullptr);
  draw.SetReferenceDirection({0, 0, 0}, kPi, 0);
  const auto arrow =
      reading<AcDbBlockReference>(draw.LeftInsertArrow({100, 50, 0}, {1, 0, 0}, true, nullptr));
  EXPECT_NEAR(arrow->rotation(), 0, 1e-12);
  EXPECT_THAT(arrow->position(), Is(-107.5, -50, 0)) << "its point is flipped";
}

TEST_F(InsertedArrows, TheOtherTwoTurnAroundUnderAFlip) {
  CDimDraw draw(1000, nullptr);
  draw.SetReferenceDirection({0, 0, 0}, kPi, 0);
  for (const AcDbObjectId id : {draw.MidInsertArrow({100, 50, 0}, {1, 0, 0}, true, nullptr, 0),
                                draw.InsertArrowONline({100, 50, 0}, {1, 0, 0}, true, nullptr, 0),
                                draw.MidInsertArrow({100, 50, 0}, {1, 0, 0}, true, L"Arrows", 0)}) {
    const auto arrow = reading<AcDbBlockReference>(id);
    EXPECT_NEAR(arrow->rotation(), kPi, 1e-12);
    EXPECT_THAT(arrow->position(), Is(-100, -50, 0));
  }
}

TEST_F(InsertedArrows, WithoutTheSwitchTheMatrixDoesNotApply) {
  CDimDraw draw(1000, nullptr);
  draw.SetReferenceDirection({0, 0, 0}, kPi, 0);
  const AcDbObjectId ids[] = {draw.LeftInsertArrow({100, 50, 0}, {1, 0, 0}, false, nullptr),
                              draw.MidInsertArrow({100, 50, 0}, {1, 0, 0}, false, nullptr, 0),
                              draw.InsertArrowONline({100, 50, 0}, {1, 0, 0}, false, nullptr, 0)};
  const double x[] = {92.5, 100, 100};
  for (int i = 0; i < 3; ++i) {
    EXPECT_THAT(reading<AcDbBlockReference>(ids[i])->position(), Is(x[i], 50, 0));
    EXPECT_NEAR(reading<AcDbBlockReference>(ids[i])->rotation(), 0, 1e-12);
  }
}

TEST_F(InsertedArrows, AMoveByTheMatrixTurnsThemToo) {
  CDimDraw draw(1000, nullptr);
  draw.SetMatrix(AcGeMatrix3d::translation({1, 0, 0}));
  const auto arrow =
      reading<AcDbBlockReference>(draw.MidInsertArrow({0, 0, 0}, {1, 0, 0}, true, nullptr, 0));
  EXPECT_THAT(arrow->position(), Is(1, 0, 0));
  EXPECT_NEAR(arrow->rotation(), kPi, 1e-12) << "any matrix that is not the identity";
}

TEST_F(InsertedArrows, TheirScaleIsThePapersUnlessOneIsGiven) {
  CDimDraw draw(500, nullptr);
  const auto scale = [&](double given) {
    return reading<AcDbBlockReference>(
               draw.MidInsertArrow({0, 0, 0}, {1, 0, 0}, false, nullptr, given))
        ->scaleFactors()
        .sx;
  };
  EXPECT_EQ(scale(0), 0.5);
  EXPECT_EQ(scale(-2), 0.5);
  EXPECT_EQ(scale(2), 2.0);
  const auto on_line =
      reading<AcDbBlockReference>(draw.InsertArrowONline({0, 0, 0}, {1, 0, 0}, false, nullptr, 3));
  EXPECT_EQ(on_line->scaleFactors(), AcGeScale3d(3.0));
}

TEST_F(InsertedArrows, ComeFromTheSymbolsOfTheInstallation) {
  CDimDraw draw(500, nullptr);
  EXPECT_EQ(symbol_length(draw.MidInsertArrow({0, 0, 0}, {1, 0, 0}, false, nullptr, 0)), 15);
  const AcDbObjectId on_line = draw.InsertArrowONline({0, 0, 0}, {1, 0, 0}, false, nullptr, 0);
  EXPECT_EQ(symbol_length(on_line), 8);
  EXPECT_EQ(block_of(on_line), L"cd01015");
}

TEST_F(InsertedArrows, WithoutAnInstallationComeFromTheCurrentFolder) {
  cad::host_settings().install_dir.clear();
  const std::filesystem::path started_in = std::filesystem::current_path();
  std::filesystem::current_path(folder / "install");
  CDimDraw draw(500, nullptr);
  const AcDbObjectId arrow = draw.MidInsertArrow({0, 0, 0}, {1, 0, 0}, false, nullptr, 0);
  std::filesystem::current_path(started_in);
  ASSERT_FALSE(arrow.isNull());
  EXPECT_EQ(symbol_length(arrow), 15);
}

TEST_F(InsertedArrows, TakeALayerForOnceOnly) {
  CDimDraw draw(500, L"A");
  const AcDbObjectId arrow = draw.MidInsertArrow({0, 0, 0}, {1, 0, 0}, false, L"Arrows", 0);
  EXPECT_EQ(reading<AcDbBlockReference>(arrow)->layerId(), Gx::GetLayer(L"Arrows"));
  EXPECT_EQ(draw.GetLayerName(), L"A");
  const AcDbObjectId line = draw.DrawLine({0, 0, 0}, {1, 0, 0}, -1);
  EXPECT_EQ(reading<AcDbLine>(line)->layerId(), Gx::GetLayer(L"A"));
}

TEST_F(InsertedArrows, WithoutTheirSymbolAreSilentlyAbsent) {
  std::filesystem::remove_all(folder / "install/szwdl");
  std::filesystem::remove_all(folder / "install/Dwg");
  CDimDraw draw(500, L"A");
  EXPECT_TRUE(draw.LeftInsertArrow({0, 0, 0}, {1, 0, 0}, false, nullptr).isNull());
  EXPECT_TRUE(draw.MidInsertArrow({0, 0, 0}, {1, 0, 0}, false, L"B", 0).isNull());
  EXPECT_TRUE(draw.InsertArrowONline({0, 0, 0}, {1, 0, 0}, false, nullptr, 0).isNull());
  EXPECT_EQ(printed, "");
  EXPECT_EQ(entities(), 0u);
  EXPECT_THAT(trace, testing::HasSubstr(L"psjt.dwg"));
  EXPECT_THAT(trace, testing::HasSubstr(L"cd01015.dwg"));
}

TEST_F(InsertedArrows, WithoutDirectionAreNotDrawn) {
  CDimDraw draw(500, nullptr);
  EXPECT_TRUE(draw.LeftInsertArrow({0, 0, 0}, {0, 0, 0}, false, nullptr).isNull());
  EXPECT_TRUE(draw.MidInsertArrow({0, 0, 0}, {0, 0, 0}, false, nullptr, 0).isNull());
  EXPECT_TRUE(draw.InsertArrowONline({0, 0, 0}, {0, 0, 0}, false, nullptr, 0).isNull());
  EXPECT_EQ(entities(), 0u);
}

TEST_F(InsertedArrows, InAPreviewLeaveAtMostTheBlockBehind) {
  RecordingDraw world;
  CDimDraw draw(1000, &world, nullptr);
  EXPECT_TRUE(draw.LeftInsertArrow({100, 0, 0}, {1, 0, 0}, false, nullptr).isNull());
  EXPECT_TRUE(draw.MidInsertArrow({100, 0, 0}, {1, 0, 0}, false, nullptr, 0).isNull());
  EXPECT_TRUE(draw.InsertArrowONline({100, 0, 0}, {1, 0, 0}, false, nullptr, 0).isNull());
  EXPECT_TRUE(draw.InsertBlkEnt(installed(L"szwdl\\psjt.dwg"), L"", {0, 0, 0}, 0, 1.0).isNull());
  EXPECT_TRUE(draw.GetAllDimEntityId().isEmpty());
  EXPECT_EQ(entities(), 0u);
  EXPECT_TRUE(has_block(L"psjt"));
  ASSERT_EQ(world.lines.size(), 4u);
  EXPECT_THAT(world.lines[0].front(), Is(92.5, 0, 0));
  EXPECT_THAT(world.lines[0].back(), Is(107.5, 0, 0));
}

TEST_F(InsertedArrows, InAPreviewMakeNoLayer) {
  RecordingDraw world;
  CDimDraw draw(1000, &world, nullptr);
  EXPECT_TRUE(draw.InsertBlkEnt(installed(L"szwdl\\psjt.dwg"), L"", {0, 0, 0}, 0, 1.0).isNull());
  const std::string untouched = database().save_bytes();
  draw.LeftInsertArrow({100, 0, 0}, {1, 0, 0}, false, L"Arrows");
  draw.MidInsertArrow({100, 0, 0}, {1, 0, 0}, false, L"Arrows", 0);
  EXPECT_EQ(world.lines.size(), 3u);
  EXPECT_EQ(database().save_bytes(), untouched);
}

TEST_F(InsertedArrows, InAPreviewHaveItsColourAndLeaveItToWhatFollows) {
  {
    AcDbDatabase* const current = acdbHostApplicationServices()->workingDatabase();
    AcDbDatabase source(true);
    acdbHostApplicationServices()->setWorkingDatabase(&source);
    CDimDraw symbol(1000, nullptr);
    symbol.SetDrawColor(0);  // ByBlock
    symbol.DrawLine({0, 0, 0}, {15, 0, 0}, -1);
    given_file("install/szwdl/psjt.dwg", source.save_bytes());
    acdbHostApplicationServices()->setWorkingDatabase(current);
  }
  RecordingDraw world;
  CDimDraw draw(1000, &world, nullptr);
  draw.SetDrawColor(1);
  draw.LeftInsertArrow({100, 0, 0}, {1, 0, 0}, false, nullptr);
  draw.DrawLine({0, 0, 0}, {1, 0, 0}, -1);
  EXPECT_THAT(world.line_colors, testing::ElementsAre(1, 1));
}

TEST_F(InsertedArrows, OnALayerWithoutANameAreOnTheCurrentOne) {
  const AcDbObjectId current = given_layer(L"Current", false, false, false);
  make_current(L"Current");
  CDimDraw draw(500, L"A");
  const AcDbObjectId arrow = draw.MidInsertArrow({0, 0, 0}, {1, 0, 0}, false, L"", 0);
  EXPECT_EQ(reading<AcDbBlockReference>(arrow)->layerId(), current);
}

TEST_F(InsertedArrows, LeaveTheStateOfTheirLayerAlone) {
  const AcDbObjectId layer = given_layer(L"Arrows", true, true, true);
  CDimDraw draw(500, L"A");
  const AcDbObjectId arrow = draw.LeftInsertArrow({0, 0, 0}, {1, 0, 0}, false, L"Arrows");
  EXPECT_EQ(reading<AcDbBlockReference>(arrow)->layerId(), layer);
  EXPECT_EQ(state(layer), "olf");
}

// The symbols that come with the program

TEST_F(InsertedArrows, TheSymbolsInstalledAreMillimetresLong) {
  cad::host_settings().install_dir = network::default_install_dir();
  RecordingDraw world;
  CDimDraw draw(1000, &world, nullptr);
  draw.MidInsertArrow({0, 0, 0}, {1, 0, 0}, false, nullptr, 0);
  draw.InsertArrowONline({100, 0, 0}, {1, 0, 0}, false, nullptr, 0);
  AcDbExtents flow, on_line;
  const auto add = [&](const std::vector<AcGePoint3d>& points) {
    for (const AcGePoint3d& point : points) (point.x < 50 ? flow : on_line).addPoint(point);
  };
  for (const auto& points : world.lines) add(points);
  for (const auto& points : world.polygons) add(points);
  EXPECT_NEAR(flow.minPoint().x, 0, 1e-6) << "from its insertion point";
  EXPECT_NEAR(flow.maxPoint().x, 15, 1e-6);
  EXPECT_NEAR(on_line.minPoint().x, 96, 1e-6) << "about its insertion point";
  EXPECT_NEAR(on_line.maxPoint().x, 104, 1e-6);
}

}  // namespace
