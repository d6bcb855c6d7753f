#include "network/pipe_ends.h"

#include "network/node_index.h"
#include "tests/network/network_drawing.h"

namespace {

using namespace network_drawing;
using network::EndState;
using network::PipeEnds;
using Wells = std::pair<AcDbObjectId, AcDbObjectId>;

class PipeEndWells : public WithNetwork {
 protected:
  PipeEnds ends(std::uint64_t handle = 0xA1) const {
    return network::ends_of(*network::open_pipe(id(handle)));
  }
  /// Handles of the wells at the start and end of the pipe A1; zeros when there are none.
  std::pair<std::uint64_t, std::uint64_t> wells() const {
    Wells wells;
    if (Gx::getWellAtGx(id(0xA1), wells) != Acad::eOk) return {0, 0};
    return {wells.first.handle(), wells.second.handle()};
  }
};
using Handles = std::pair<std::uint64_t, std::uint64_t>;

const std::string kDrainage = kind("drainage-pipe");
const std::string kWell = kind("drainage-well");

TEST_F(PipeEndWells, AreThoseTheDataName) {
  given_network(
      line("A1", 0, 0, 10, 0, kDrainage + node("start_node", "B1") + node("end_node", "B2")) +
      well("B1", 50, 50, kWell) + well("B2", 60, 60, kWell) + well("B3", 0, 0, kWell));
  EXPECT_EQ(wells(), Handles(0xB1, 0xB2)) << "wherever they are, whatever is nearer";
  EXPECT_EQ(ends().start.state, EndState::kGiven);
}

TEST_F(PipeEndWells, AreTheNearestWhereTheDataNameNone) {
  given_network(line("A1", 0, 0, 10, 0, kDrainage) + well("B1", 0.3, 0, kWell) +
                well("B2", 10, -0.4, kWell) + well("B3", -0.4, 0, kWell));
  EXPECT_EQ(wells(), Handles(0xB1, 0xB2));
  EXPECT_EQ(ends().start.state, EndState::kNearest);
}

TEST_F(PipeEndWells, OneEndMayBeNamedAndTheOtherNear) {
  given_network(line("A1", 0, 0, 10, 0, kDrainage + node("end_node", "B3")) +
                well("B1", 0, 0, kWell) + well("B2", 10, 0, kWell) + well("B3", 99, 0, kWell));
  EXPECT_EQ(wells(), Handles(0xB1, 0xB3));
}

TEST_F(PipeEndWells, AreWithinTheTolerance) {
  given_network(line("A1", 0, 0, 10, 0, kDrainage) + well("B1", -0.5, 0, kWell) +
                well("B2", 10.51, 0, kWell));
  EXPECT_EQ(ends().start.state, EndState::kNearest) << "half a metre is near enough";
  EXPECT_EQ(ends().end.state, EndState::kMissing) << "a centimetre more is not";
  EXPECT_EQ(wells(), Handles(0, 0));
}

TEST_F(PipeEndWells, AreFoundRoundEveryCorner) {
  // Ends and wells on both sides of the lines between the index's cells.
  for (const double x : {-10.0, -0.01, 0.0, 0.49, 0.5, 1e6}) {
    for (const double dx : {-0.35, 0.35}) {
      for (const double dy : {-0.35, 0.35}) {
        given_network(line("A1", x, x, x + 40, x, kDrainage) + well("B1", x + dx, x + dy, kWell) +
                      well("B2", x + 40 + dx, x + dy, kWell));
        EXPECT_EQ(wells(), Handles(0xB1, 0xB2)) << x << " " << dx << " " << dy;
      }
    }
  }
}

TEST_F(PipeEndWells, AreNearInPlan) {
  given_network(entity("LINE", "A1", point(10, 0, 0, 2.5) + point(11, 10, 0, 2.4), kDrainage) +
                well("B1", 0, 0, kWell) +
                entity("INSERT", "B2", "2 WELL\n" + point(10, 10, 0, 5.0), kWell));
  EXPECT_EQ(wells(), Handles(0xB1, 0xB2)) << "whatever their elevations";
}

TEST_F(PipeEndWells, BelongToThePipesNetwork) {
  given_network(line("A1", 0, 0, 10, 0, kDrainage) + well("B1", 0.2, 0, kWell) +
                well("B2", 0, 0, kind("storm-well")) + well("B3", 10, 0, kind("water-node")));
  EXPECT_EQ(ends().start.node, id(0xB1));
  EXPECT_EQ(ends().end.state, EndState::kMissing);
}

TEST_F(PipeEndWells, AHydrantEndsAWaterPipe) {
  given_network(line("A1", 0, 0, 10, 0, kind("water-pipe")) + well("B1", 0, 0, kind("hydrant")) +
                well("B2", 10, 0, kind("water-node")));
  EXPECT_EQ(wells(), Handles(0xB1, 0xB2));
}

TEST_F(PipeEndWells, AreInsertionsPointsAndCircles) {
  given_network(line("A1", 0, 0, 10, 0, kDrainage) + entity("POINT", "B1", point(10, 0, 0), kWell) +
                entity("CIRCLE", "B2", point(10, 10, 0) + "40 0.5\n", kWell));
  EXPECT_EQ(wells(), Handles(0xB1, 0xB2));
  given_network(
      line("A1", 0, 0, 10, 0, kDrainage) +
      entity("CIRCLE", "B1", point(10, 0, 0) + "40 0.5\n" + point(210, 0, 0, -1), kWell) +
      entity("INSERT", "B2", "2 WELL\n" + point(10, -10, 0) + point(210, 0, 0, -1), kWell));
  EXPECT_EQ(wells(), Handles(0xB1, 0xB2)) << "seen from below, x counts to the left";
}

TEST_F(PipeEndWells, AreThoseOfTheCurvesOwnEnds) {
  given_network(entity("ARC", "A1", point(10, 0, 0) + "40 10.0\n50 0.0\n51 90.0\n", kDrainage) +
                well("B1", 10, 0, kWell) + well("B2", 0, 10, kWell));
  EXPECT_EQ(wells(), Handles(0xB1, 0xB2));
  given_network(entity("LWPOLYLINE", "A1",
                       "90 3\n70 0\n10 0.0\n20 0.0\n10 5.0\n20 5.0\n10 10.0\n20 0.0\n", kDrainage) +
                well("B1", 0, 0, kWell) + well("B2", 10, 0, kWell) + well("B3", 5, 5, kWell));
  EXPECT_EQ(wells(), Handles(0xB1, 0xB2)) << "a well on the way is no end";
}

TEST_F(PipeEndWells, TwoEquallyNearOnesLeaveItOpen) {
  given_network(line("A1", 0, 0, 10, 0, kDrainage) + well("B1", 0, 0.2, kWell) +
                well("B2", 0, -0.2, kWell) + well("B3", 10, 0, kWell));
  EXPECT_EQ(ends().start.state, EndState::kAmbiguous);
  Wells found;
  EXPECT_EQ(Gx::getWellAtGx(id(0xA1), found), Acad::eAmbiguousInput);
  EXPECT_TRUE(found.first.isNull());
}

TEST_F(PipeEndWells, TwoDrawnOnOneSpotLeaveItOpen) {
  given_network(line("A1", 0, 0, 10, 0, kDrainage) + well("B1", 0, 0, kWell) +
                well("B2", 0, 0.0005, kWell) + well("B3", 10, 0, kWell));
  EXPECT_EQ(ends().start.state, EndState::kAmbiguous);
}

TEST_F(PipeEndWells, BothEndsMeetDifferentWells) {
  given_network(line("A1", 0, 0, 0.4, 0, kDrainage) + well("B1", 0.2, 0, kWell));
  EXPECT_EQ(ends().start.state, EndState::kSameNode);
  EXPECT_EQ(ends().end.state, EndState::kSameNode);
  Wells found;
  EXPECT_EQ(Gx::getWellAtGx(id(0xA1), found), Acad::eAmbiguousInput);
}

TEST_F(PipeEndWells, AHandleThatLeadsToNoNodeIsNotReplacedByANearOne) {
  given_network(
      line("A1", 0, 0, 10, 0, kDrainage + node("start_node", "A1") + node("end_node", "FFFF")) +
      well("B1", 0, 0, kWell) + well("B2", 10, 0, kWell));
  EXPECT_EQ(ends().start.state, EndState::kNoNode) << "a pipe";
  EXPECT_EQ(ends().end.state, EndState::kNoNode) << "nothing";
  Wells found;
  EXPECT_EQ(Gx::getWellAtGx(id(0xA1), found), Acad::eKeyNotFound);
}

TEST_F(PipeEndWells, WhatIsNoPipeHasNone) {
  given_network(line("A1", 0, 0, 10, 0, "") + well("B1", 0, 0, kWell) + well("B2", 10, 0, kWell));
  Wells found{id(0xB1), id(0xB2)};
  EXPECT_EQ(Gx::getWellAtGx(id(0xA1), found), Acad::eKeyNotFound);
  EXPECT_EQ(Gx::getWellAtGx(AcDbObjectId(), found), Acad::eKeyNotFound);
  EXPECT_EQ(Gx::getWellAtGx(id(0xB1), found), Acad::eKeyNotFound) << "a node";
  EXPECT_EQ(found, Wells(id(0xB1), id(0xB2)));
}

TEST_F(PipeEndWells, APipeThatIsNoCurveHasNoEndsToLookNear) {
  given_network(entity("TEXT", "A1", point(10, 0, 0) + "40 2.5\n1 x\n", kDrainage) +
                well("B1", 0, 0, kWell));
  EXPECT_EQ(ends().start.state, EndState::kNoCurve);
}

TEST_F(PipeEndWells, AreOfTheSameSpace) {
  given_network(line("A1", 0, 0, 10, 0, kDrainage) +
                entity("INSERT", "B1", "67 1\n2 WELL\n" + point(10, 0, 0), kWell) +
                well("B2", 10, 0, kWell));
  EXPECT_EQ(ends().start.state, EndState::kMissing) << "the well is on the paper";
  EXPECT_EQ(ends().end.node, id(0xB2));
}

class ChangingNetwork : public PipeEndWells {
 protected:
  ChangingNetwork() {
    given_network(line("A1", 0, 0, 10, 0, kDrainage) + well("B1", 0, 0, kWell) +
                  well("B2", 10, 0, kWell));
    EXPECT_EQ(wells(), Handles(0xB1, 0xB2));
  }
};

TEST_F(ChangingNetwork, AnErasedWellIsNoLongerFound) {
  eval("(entdel (handent \"B1\"))");
  EXPECT_EQ(ends().start.state, EndState::kMissing);
  eval("(entdel (handent \"B1\"))");
  EXPECT_EQ(wells(), Handles(0xB1, 0xB2)) << "until it is brought back";
}

TEST_F(ChangingNetwork, AWellThatMovedIsFoundWhereItIs) {
  eval("(command \"MOVE\" (handent \"B2\") \"\" '(0 0) '(20 0))");
  EXPECT_EQ(ends().end.state, EndState::kMissing);
  eval("(command \"MOVE\" (handent \"A1\") \"\" '(0 0) '(20 0))");
  EXPECT_EQ(ends().start.state, EndState::kMissing);
  EXPECT_EQ(ends().end.node, id(0xB2));
}

TEST_F(ChangingNetwork, ANewWellIsFound) {
  eval("(entdel (handent \"B1\"))");
  eval("(command \"COPY\" (handent \"B2\") \"\" '(0 0) '(-10 0))");
  EXPECT_EQ(ends().start.state, EndState::kNearest);
}

TEST_F(ChangingNetwork, AWellThatChangesItsKindIsNoLongerFound) {
  ASSERT_EQ(network::write_text(id(0xB1), network::Key::kKind, L"storm-well"), Acad::eOk);
  EXPECT_EQ(ends().start.state, EndState::kMissing);
}

TEST_F(ChangingNetwork, UndoneChangesAreUndoneHereToo) {
  eval("(command \"ERASE\" (handent \"B1\") \"\")");
  EXPECT_EQ(ends().start.state, EndState::kMissing);
  eval("(command \"U\")");
  EXPECT_EQ(wells(), Handles(0xB1, 0xB2));
}

TEST_F(ChangingNetwork, DrawingsDoNotShareWells) {
  AcDbDatabase* const first = database;
  given_network(line("A1", 0, 0, 10, 0, kDrainage));
  EXPECT_EQ(wells(), Handles(0, 0));
  database = first;
  EXPECT_EQ(wells(), Handles(0xB1, 0xB2));
}

}  // namespace
