#include "network/pipes.h"

#include <cmath>
#include <numbers>

#include "host/db/entity.h"
#include "host/db/open.h"
#include "network/scale.h"
#include "tests/network/network_drawing.h"

namespace {

using namespace network_drawing;
using network::Key;
using network::Kind;
using network::open_pipe;

class Pipes : public WithNetwork {
 protected:
  std::unique_ptr<CGxGd> pipe(const std::string& pairs) {
    given_network(line("A1", 0, 0, 30, 40, pairs));
    return open_pipe(id(0xA1));
  }
};

TEST_F(Pipes, HaveTheClassOfTheirKind) {
  const struct {
    const char* word;
    const CRuntimeClass* is;
    const CRuntimeClass* is_not;
  } rows[] = {
      {"water-pipe", CGxJsGd::GetThisClass(), CGxPsGd::GetThisClass()},
      {"drainage-pipe", CGxPsGd::GetThisClass(), CGxYsGd::GetThisClass()},
      {"storm-pipe", CGxYsGd::GetThisClass(), CGxPsGd::GetThisClass()},
  };
  for (const auto& row : rows) {
    const std::unique_ptr<CGxGd> opened = pipe(kind(row.word));
    ASSERT_TRUE(opened) << row.word;
    EXPECT_TRUE(opened->IsKindOf(row.is));
    EXPECT_TRUE(opened->IsKindOf(CGxGd::GetThisClass()));
    EXPECT_FALSE(opened->IsKindOf(row.is_not));
    EXPECT_FALSE(opened->IsKindOf(nullptr));
    EXPECT_EQ(opened->objectId(), id(0xA1));
  }
}

TEST_F(Pipes, AreOpenedFromPipesOnly) {
  EXPECT_FALSE(open_pipe(AcDbObjectId()));
  EXPECT_FALSE(pipe("")) << "no data";
  EXPECT_FALSE(pipe(real("diameter", "300.0"))) << "no kind";
  EXPECT_FALSE(pipe(kind("gas-pipe")));
  EXPECT_FALSE(pipe(kind("hydrant"))) << "a node";
}

TEST_F(Pipes, AnErasedOneIsNone) {
  ASSERT_TRUE(pipe(kind("water-pipe")));
  eval("(entdel (handent \"A1\"))");
  EXPECT_FALSE(open_pipe(id(0xA1)));
  eval("(entdel (handent \"A1\"))");
  EXPECT_TRUE(open_pipe(id(0xA1)));
}

TEST_F(Pipes, AreOpenedThoughSomebodyWritesThem) {
  ASSERT_TRUE(pipe(kind("water-pipe")));
  AcDbEntity* held = nullptr;
  ASSERT_EQ(acdbOpenAcDbEntity(held, id(0xA1), AcDb::kForWrite), Acad::eOk);
  EXPECT_TRUE(open_pipe(id(0xA1)));
  held->close();
}

TEST_F(Pipes, ValuesThatAreNotThereAreAbsent) {
  const auto opened = pipe(kind("drainage-pipe"));
  EXPECT_FALSE(opened->diameter());
  EXPECT_FALSE(opened->material());
  EXPECT_FALSE(opened->is_rectangular());
  EXPECT_EQ(opened->parallel(), 1) << "one pipe unless there are more";
  EXPECT_EQ(opened->code(), L"");
  EXPECT_TRUE(opened->start_node().isNull());
}

TEST_F(Pipes, AWidthAndAHeightMakeARectangularSection) {
  EXPECT_TRUE(
      pipe(kind("drainage-pipe") + real("width", "2.0") + real("height", "1.0"))->is_rectangular());
  EXPECT_FALSE(pipe(kind("drainage-pipe") + real("width", "2.0"))->is_rectangular());
}

TEST_F(Pipes, TheLengthIsTheCurvesUnlessTheDataSay) {
  EXPECT_DOUBLE_EQ(*pipe(kind("water-pipe"))->length(), 50.0);
  EXPECT_EQ(pipe(kind("water-pipe") + real("length", "51.25"))->length(), 51.25);
  EXPECT_DOUBLE_EQ(*pipe(kind("water-pipe") + whole("length", "51"))->length(), 50.0)
      << "the wrong group";
}

TEST_F(Pipes, WhatIsNoCurveHasNoCentreLine) {
  given_network(entity("TEXT", "A1", point(10, 0, 0) + "40 2.5\n1 DN300\n", kind("water-pipe")) +
                entity("XLINE", "A2", point(10, 0, 0) + point(11, 1, 0), kind("water-pipe")));
  for (const std::uint64_t handle : {0xA1, 0xA2}) {
    ASSERT_TRUE(open_pipe(id(handle)));
    EXPECT_FALSE(open_pipe(id(handle))->centre_line());
    EXPECT_FALSE(open_pipe(id(handle))->length());
  }
}

TEST_F(Pipes, ADrainagePipeFlowsByItsInverts) {
  double start = 0, end = 0;
  for (const char* word : {"drainage-pipe", "storm-pipe"}) {
    const auto opened = pipe(kind(word) + real("start_invert", "3.5") + real("end_invert", "3.25"));
    ASSERT_TRUE(network::flow_ends(*opened, start, end)) << word;
    EXPECT_EQ(start, 3.5);
    EXPECT_EQ(end, 3.25);
  }
}

TEST_F(Pipes, AWaterPipeFlowsByTheHeadsOfItsCase) {
  const std::string heads = real("start_head_1", "31.0") + real("end_head_1", "30.0") +
                            real("start_head_2", "20.0") + real("end_head_2", "25.0");
  double start = 0, end = 0;
  ASSERT_TRUE(
      network::flow_ends(*pipe(kind("water-pipe") + whole("head_case", "2") + heads), start, end));
  EXPECT_EQ(start, 20.0);
  EXPECT_EQ(end, 25.0);
  ASSERT_TRUE(network::flow_ends(*pipe(kind("water-pipe") + heads), start, end));
  EXPECT_EQ(start, 31.0) << "the design peak when the data name no case";
}

TEST_F(Pipes, WithoutBothValuesThereIsNoFlow) {
  double start = 7, end = 8;
  const std::string water = kind("water-pipe") + real("start_head_1", "31.0");
  for (const std::string& pairs :
       {water, water + real("end_head_2", "30.0"), water + whole("head_case", "7"),
        water + real("end_head_1", "30.0") + whole("head_case", "0"),
        kind("drainage-pipe") + real("start_invert", "3.5"),
        kind("storm-pipe") + real("end_invert", "3.5"),
        kind("storm-pipe") + real("start_head_1", "3.5") + real("end_head_1", "3.0")}) {
    EXPECT_FALSE(network::flow_ends(*pipe(pairs), start, end)) << pairs;
  }
  EXPECT_EQ(start, 7);
  EXPECT_EQ(end, 8);
}

TEST_F(Pipes, ChangesReachTheDrawing) {
  given_network(line("A1", 0, 0, 30, 40, kind("water-pipe") + text("remark", "old")) +
                well("B1", 0, 0, kind("water-node")));
  const auto opened = open_pipe(id(0xA1));
  EXPECT_EQ(opened->set_real(Key::kDiameter, 300.0), Acad::eOk);
  EXPECT_EQ(opened->set_integer(Key::kMaterial, 3), Acad::eOk);
  EXPECT_EQ(opened->set_text(Key::kCode, L"给1"), Acad::eOk);
  EXPECT_EQ(opened->set_node(Key::kStartNode, id(0xB1)), Acad::eOk);
  for (const CGxGd* view : {opened.get(), open_pipe(id(0xA1)).release()}) {
    EXPECT_EQ(view->diameter(), 300.0);
    EXPECT_EQ(view->material(), 3);
    EXPECT_EQ(view->code(), L"给1");
    EXPECT_EQ(view->start_node(), id(0xB1));
    if (view != opened.get()) delete view;
  }
  EXPECT_EQ(opened->set_node(Key::kStartNode, AcDbObjectId()), Acad::eOk);
  EXPECT_FALSE(open_pipe(id(0xA1))->data().has(Key::kStartNode));
  EXPECT_EQ(opened->remove(Key::kDiameter), Acad::eOk);
  EXPECT_FALSE(opened->diameter());
  EXPECT_FALSE(open_pipe(id(0xA1))->diameter());
}

TEST_F(Pipes, AChangeThatFailsLeavesTheView) {
  const auto opened = pipe(kind("water-pipe") + real("diameter", "300.0"));
  EXPECT_EQ(opened->set_real(Key::kDiameter, INFINITY), Acad::eInvalidInput);
  EXPECT_EQ(opened->diameter(), 300.0);
  eval("(entdel (handent \"A1\"))");
  EXPECT_EQ(opened->set_real(Key::kDiameter, 1.0), Acad::eWasErased);
  EXPECT_EQ(opened->diameter(), 300.0);
}

class CentreLines : public WithNetwork {
 protected:
  /// The direction of the curve A1 nearest to a point, in degrees; -1 when there is none.
  double degrees_at(double x, double y, double z = 0.0) const {
    AcGeVector3d derivative;
    if (!Gx::GetCurFirstDeriv(id(0xA1), AcGePoint3d(x, y, z), derivative)) return -1.0;
    const double angle = std::atan2(derivative.y, derivative.x) * 180.0 / std::numbers::pi;
    return angle < -1e-9 ? angle + 360.0 : std::abs(angle);
  }
  void given_curve(const std::string& type, const std::string& groups,
                   const std::string& behind = {}) {
    given_network(entity(type, "A1", groups) + behind);
  }
  static std::string vertex(double x, double y, double bulge = 0.0, int flags = 0) {
    return "0 VERTEX\n8 0\n" + point(10, x, y) + "42 " + std::to_string(bulge) + "\n70 " +
           std::to_string(flags) + "\n";
  }
};

TEST_F(CentreLines, OfALineHaveItsDirectionEverywhere) {
  given_curve("LINE", point(10, 0, 0) + point(11, 10, 10));
  for (const double at : {-5.0, 0.0, 3.0, 10.0, 20.0}) EXPECT_NEAR(degrees_at(at, 0), 45.0, 1e-9);
  given_curve("LINE", point(10, 10, 0) + point(11, 0, 0));
  EXPECT_NEAR(degrees_at(5, 1), 180.0, 1e-9) << "from its start to its end";
}

TEST_F(CentreLines, OfALightPolylineTurnAtItsVertices) {
  given_curve("LWPOLYLINE", "90 3\n70 0\n10 0.0\n20 0.0\n10 10.0\n20 0.0\n10 10.0\n20 10.0\n");
  EXPECT_NEAR(degrees_at(0, 0), 0.0, 1e-9) << "the start";
  EXPECT_NEAR(degrees_at(5, 1), 0.0, 1e-9);
  EXPECT_NEAR(degrees_at(10, 0), 90.0, 1e-9) << "at a vertex, that of the piece behind it";
  EXPECT_NEAR(degrees_at(9, 6), 90.0, 1e-9);
  EXPECT_NEAR(degrees_at(10, 10), 90.0, 1e-9) << "the end";
  EXPECT_NEAR(degrees_at(30, 30), 90.0, 1e-9) << "beyond the end";
}

TEST_F(CentreLines, OfAClosedPolylineComeBackToTheStart) {
  given_curve("LWPOLYLINE", "90 3\n70 1\n10 0.0\n20 0.0\n10 10.0\n20 0.0\n10 10.0\n20 10.0\n");
  EXPECT_NEAR(degrees_at(4, 6), 225.0, 1e-9) << "the closing piece";
  EXPECT_NEAR(degrees_at(0, 0), 0.0, 1e-9);
}

TEST_F(CentreLines, FollowBulges) {
  // A half circle to the right of the way from (0,0) to (10,0), then straight up.
  given_curve("LWPOLYLINE",
              "90 3\n70 0\n10 0.0\n20 0.0\n42 1.0\n10 10.0\n20 0.0\n10 10.0\n20 10.0\n");
  EXPECT_NEAR(degrees_at(0, 0), 270.0, 1e-6) << "the start of the arc";
  EXPECT_NEAR(degrees_at(5, -8), 0.0, 1e-6) << "its middle";
  EXPECT_NEAR(degrees_at(5 - 5 * std::sqrt(0.5), -5 * std::sqrt(0.5)), 315.0, 1e-6);
  EXPECT_NEAR(degrees_at(10, 0), 90.0, 1e-6);
  given_curve("LWPOLYLINE", "90 2\n70 0\n10 0.0\n20 0.0\n42 -1.0\n10 10.0\n20 0.0\n");
  EXPECT_NEAR(degrees_at(0, 0), 90.0, 1e-6) << "clockwise";
  EXPECT_NEAR(degrees_at(10, 0), 270.0, 1e-6) << "the end";
}

TEST_F(CentreLines, OfAHeavyPolylineFollowItsVertices) {
  given_curve("POLYLINE", "66 1\n70 0\n" + point(10, 0, 0),
              vertex(0, 0, 1.0) + vertex(10, 0) + vertex(10, 10) + "0 SEQEND\n8 0\n");
  EXPECT_NEAR(degrees_at(0, 0), 270.0, 1e-6);
  EXPECT_NEAR(degrees_at(5, -8), 0.0, 1e-6);
  EXPECT_NEAR(degrees_at(10, 0), 90.0, 1e-6);
  EXPECT_NEAR(degrees_at(10, 10), 90.0, 1e-6);
}

TEST_F(CentreLines, OfAPolylineInSpaceAreNearestInSpace) {
  // Two storeys above each other.
  given_curve("POLYLINE", "66 1\n70 8\n" + point(10, 0, 0),
              "0 VERTEX\n8 0\n" + point(10, 0, 0, 0) + "70 32\n0 VERTEX\n8 0\n" +
                  point(10, 10, 0, 0) + "70 32\n0 VERTEX\n8 0\n" + point(10, 10, 0, 8) +
                  "70 32\n0 VERTEX\n8 0\n" + point(10, 0, 0, 8) + "70 32\n0 SEQEND\n8 0\n");
  EXPECT_NEAR(degrees_at(5, 0, 1), 0.0, 1e-9);
  EXPECT_NEAR(degrees_at(5, 0, 7), 180.0, 1e-9);
  AcGeVector3d derivative;
  ASSERT_TRUE(Gx::GetCurFirstDeriv(id(0xA1), AcGePoint3d(10, 0, 4), derivative));
  EXPECT_TRUE(derivative.isParallelTo(AcGeVector3d::kZAxis));
}

TEST_F(CentreLines, OfAnArcAreTangents) {
  given_curve("ARC", point(10, 0, 0) + "40 10.0\n50 0.0\n51 180.0\n");
  EXPECT_NEAR(degrees_at(10, 0), 90.0, 1e-6) << "the start";
  EXPECT_NEAR(degrees_at(0, 20), 180.0, 1e-6);
  EXPECT_NEAR(degrees_at(7, 7), 135.0, 1e-6);
  EXPECT_NEAR(degrees_at(-10, 0), 270.0, 1e-6) << "the end";
}

TEST_F(CentreLines, OfAnArcSeenFromBelowTurnTheOtherWay) {
  given_curve("ARC", point(10, 0, 0) + "40 10.0\n50 0.0\n51 180.0\n" + point(210, 0, 0, -1));
  EXPECT_NEAR(degrees_at(-10, 0), 90.0, 1e-6);
  EXPECT_NEAR(degrees_at(0, 10), 0.0, 1e-6);
}

TEST_F(CentreLines, PiecesWithoutLengthHaveTheDirectionOfTheirNeighbours) {
  given_curve("LWPOLYLINE",
              "90 4\n70 0\n10 0.0\n20 0.0\n10 10.0\n20 0.0\n10 10.0\n20 0.0\n10 10.0\n20 10.0\n");
  EXPECT_NEAR(degrees_at(10, -1), 90.0, 1e-9) << "drawn twice in the middle";
  given_curve("LWPOLYLINE", "90 3\n70 0\n10 0.0\n20 0.0\n10 10.0\n20 0.0\n10 10.0\n20 0.0\n");
  EXPECT_NEAR(degrees_at(12, 0), 0.0, 1e-9) << "drawn twice at the end";
  given_curve("LWPOLYLINE", "90 3\n70 0\n10 0.0\n20 0.0\n10 0.0\n20 0.0\n10 0.0\n20 9.0\n");
  EXPECT_NEAR(degrees_at(-2, 0), 90.0, 1e-9) << "drawn twice at the start";
}

TEST_F(CentreLines, WhatHasNoDirectionSaysSo) {
  given_curve("LINE", point(10, 1, 1) + point(11, 1, 1));
  EXPECT_EQ(degrees_at(0, 0), -1.0) << "a line without length";
  given_curve("TEXT", point(10, 0, 0) + "40 2.5\n1 x\n");
  EXPECT_EQ(degrees_at(0, 0), -1.0) << "no curve";
  given_curve("POLYLINE", "66 1\n70 0\n" + point(10, 0, 0), "0 SEQEND\n8 0\n");
  EXPECT_EQ(degrees_at(0, 0), -1.0) << "a polyline without vertices";
  given_curve("LINE", point(10, 0, 0) + point(11, 1, 1));
  eval("(entdel (handent \"A1\"))");
  EXPECT_EQ(degrees_at(0, 0), -1.0) << "erased";
  AcGeVector3d derivative(1, 2, 3);
  EXPECT_FALSE(Gx::GetCurFirstDeriv(AcDbObjectId(), AcGePoint3d(), derivative));
  EXPECT_EQ(derivative, AcGeVector3d(1, 2, 3));
}

class DrawingScale : public WithHost {};

TEST_F(DrawingScale, Is500UnlessTheDrawingSays) {
  EXPECT_EQ(WDLGX::GetCTBL(), 500) << "no drawing";
  host.new_drawing();
  EXPECT_EQ(WDLGX::GetCTBL(), 500);
  eval("(setvar \"USERI5\" 1000)");
  EXPECT_EQ(WDLGX::GetCTBL(), 1000);
  for (const char* number : {"0", "-200"}) {
    eval("(setvar \"USERI5\" " + std::string(number) + ")");
    EXPECT_EQ(WDLGX::GetCTBL(), 500);
  }
}

TEST_F(DrawingScale, IsTheCurrentDrawings) {
  AcApDocument* const first = host.new_drawing();
  eval("(setvar \"USERI5\" 200)");
  host.new_drawing();
  EXPECT_EQ(WDLGX::GetCTBL(), 500);
  acDocManagerPtr()->setCurDocument(first);
  EXPECT_EQ(WDLGX::GetCTBL(), 200);
}

}  // namespace
