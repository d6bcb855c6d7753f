#include "network/survey.h"

#include <gmock/gmock.h>

#include "tests/network/network_drawing.h"

namespace {

using namespace network_drawing;
using network::Kind;
using network::NetworkSurvey;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

const std::string kWell = kind("drainage-well");
const std::string kInverts = real("start_invert", "2.5") + real("end_invert", "2.4");
const std::string kDrainage = kind("drainage-pipe") + real("diameter", "300.0") + kInverts;
/// Wells for a pipe from (0,0) to (10,0), of ground 5 and 6.
const std::string kWells = well("B1", 0, 0, kWell + text("number", "1") + real("ground", "5.0")) +
                           well("B2", 10, 0, kWell + text("number", "2") + real("ground", "6.0"));

class Survey : public WithNetwork {
 protected:
  /// The problems of a drawing, "A1 diameter: diameter is 0".
  std::vector<std::string> problems(const std::string& entities) {
    given_network(entities);
    result = network::survey(*database);
    std::vector<std::string> lines;
    for (const network::Problem& problem : result.problems) {
      wchar_t handle[17];
      AcDbHandle(problem.object.handle()).getIntoAsciiBuffer(handle);
      const std::wstring digits = handle;
      lines.push_back(std::string(digits.begin(), digits.end()) + " " +
                      std::string(network::problem_name(problem.what)) + ": " + problem.text);
    }
    return lines;
  }
  /// Of a drainage pipe A1 between two wells.
  std::vector<std::string> pipe_problems(const std::string& pairs) {
    return problems(line("A1", 0, 0, 10, 0, pairs) + kWells);
  }
  NetworkSurvey::Count count(Kind kind) const {
    return result.counts[static_cast<std::size_t>(kind)];
  }

  NetworkSurvey result;
};

TEST_F(Survey, CountsPipesAndNodesByKind) {
  const std::string heads = real("start_head_1", "31.0") + real("end_head_1", "30.0");
  EXPECT_THAT(
      problems(line("A1", 0, 0, 10, 0, kDrainage) +
               line("A2", 10, 0, 0, 0, kDrainage + real("length", "10.5")) + kWells +
               line("A3", 0, 50, 30, 90, kind("water-pipe") + real("diameter", "100.0") + heads) +
               well("C1", 0, 50, kind("water-node")) + well("C2", 30, 90, kind("hydrant")) +
               line("A9", 0, 0, 1, 1, "")),
      IsEmpty());
  EXPECT_EQ(count(Kind::kDrainagePipe).objects, 2u);
  EXPECT_DOUBLE_EQ(count(Kind::kDrainagePipe).length, 20.5) << "drawn, and given";
  EXPECT_EQ(count(Kind::kDrainageWell).objects, 2u);
  EXPECT_EQ(count(Kind::kWaterPipe).objects, 1u);
  EXPECT_DOUBLE_EQ(count(Kind::kWaterPipe).length, 50.0);
  EXPECT_EQ(count(Kind::kWaterNode).objects, 1u);
  EXPECT_EQ(count(Kind::kHydrant).objects, 1u);
  EXPECT_EQ(count(Kind::kStormPipe).objects, 0u);
  EXPECT_EQ(count(Kind::kNone).objects, 0u);
}

TEST_F(Survey, ADrawingWithoutANetworkHasNothingWrong) {
  EXPECT_THAT(problems(line("A1", 0, 0, 10, 0, "")), IsEmpty());
}

TEST_F(Survey, ErasedPipesAreLeftOut) {
  given_network(line("A1", 0, 0, 10, 0, kDrainage));
  eval("(entdel (handent \"A1\"))");
  const NetworkSurvey survey = network::survey(*database);
  EXPECT_TRUE(survey.problems.empty());
  EXPECT_EQ(survey.counts[static_cast<std::size_t>(Kind::kDrainagePipe)].objects, 0u);
}

TEST_F(Survey, TellsOfAPipeWithoutAnEnd) {
  EXPECT_THAT(problems(line("A1", 0, 0, 20, 0, kDrainage) + well("B1", 0, 0, kWell)),
              ElementsAre("A1 no-end: no node at its end: end_node is missing, and none is within "
                          "0.5 of it"));
}

TEST_F(Survey, TellsOfReferencesToWhatIsNoNode) {
  EXPECT_THAT(
      problems(
          line("A1", 0, 0, 10, 0, kDrainage + node("start_node", "A2") + node("end_node", "FFFF")) +
          entity("TEXT", "A2", point(10, 0, 0) + "40 2.5\n1 x\n")),
      ElementsAre("A1 no-node: start_node A2 is no node, but a TEXT",
                  "A1 no-node: end_node FFFF leads nowhere: the drawing has no such handle"));
}

TEST_F(Survey, TellsOfReferencesToErasedNodes) {
  given_network(line("A1", 0, 0, 10, 0, kDrainage + node("start_node", "B1")) + kWells);
  eval("(entdel (handent \"B1\"))");
  const NetworkSurvey survey = network::survey(*database);
  ASSERT_EQ(survey.problems.size(), 1u);
  EXPECT_EQ(survey.problems[0].text, "start_node B1 leads to an erased entity");
}

TEST_F(Survey, TellsOfEndsThatAreAmbiguous) {
  EXPECT_THAT(problems(line("A1", 0, 0, 10, 0, kDrainage) + well("B1", 0, 0.1, kWell) +
                       well("B2", 0, -0.1, kWell) + well("B3", 10, 0, kWell)),
              ElementsAre("A1 ambiguous-end: several nodes are equally near to its start, and "
                          "start_node is missing",
                          "B1 isolated: no pipe ends here", "B2 isolated: no pipe ends here"));
  EXPECT_THAT(pipe_problems(kDrainage + node("start_node", "B1") + node("end_node", "B1")),
              Contains("A1 same-node: both ends meet the same node"));
}

TEST_F(Survey, TellsOfPipesThatEndInAnotherNetwork) {
  EXPECT_THAT(problems(line("A1", 0, 0, 10, 0,
                            kDrainage + node("start_node", "B1") + node("end_node", "B2")) +
                       well("B1", 0, 0, kind("hydrant")) + well("B2", 10, 0, kind("storm-well"))),
              ElementsAre("A1 other-network: start_node B1 is a hydrant"))
      << "sewers share wells";
}

TEST_F(Survey, TellsOfSizesThatAreNone) {
  const std::string pipe = kind("drainage-pipe") + kInverts;
  EXPECT_THAT(pipe_problems(pipe + real("diameter", "0.0")),
              ElementsAre("A1 diameter: diameter is 0"));
  EXPECT_THAT(pipe_problems(pipe + real("diameter", "-300.0")),
              ElementsAre("A1 diameter: diameter is -300"));
  EXPECT_THAT(pipe_problems(pipe),
              ElementsAre("A1 diameter: diameter is missing, and there are no width and height"));
  EXPECT_THAT(pipe_problems(pipe + real("width", "2000.0") + real("height", "1500.0")), IsEmpty())
      << "a rectangular section needs none";
  EXPECT_THAT(pipe_problems(pipe + real("width", "0.0") + real("height", "1500.0")),
              ElementsAre("A1 section: width is 0"));
  EXPECT_THAT(pipe_problems(kDrainage + real("length", "-1.5")),
              ElementsAre("A1 length: length is -1.5"));
  EXPECT_THAT(pipe_problems(kDrainage + real("length", "1e308")),
              ElementsAre("A1 length: length is 1e+308"));
  EXPECT_EQ(count(Kind::kDrainagePipe).length, 0.0) << "sums stay numbers";
}

TEST_F(Survey, TellsOfInvertsAboveTheGround) {
  EXPECT_THAT(pipe_problems(kind("drainage-pipe") + real("diameter", "300.0") +
                            real("start_invert", "5.25") + real("end_invert", "6.0")),
              ElementsAre("A1 invert-above-ground: start_invert 5.25 lies above the ground 5 of "
                          "node B1"))
      << "at the ground is not above it";
}

TEST_F(Survey, TellsOfWellsWhoseBottomIsAboveTheGround) {
  EXPECT_THAT(problems(line("A1", 0, 0, 10, 0, kDrainage) + well("B1", 0, 0, kWell) +
                       well("B2", 10, 0, kWell + real("ground", "3.0") + real("bottom", "3.5"))),
              ElementsAre("B2 bottom-above-ground: bottom 3.5 lies above the ground 3"));
}

TEST_F(Survey, TellsWhyTheFlowDirectionIsUnknown) {
  const std::string pipe = kind("drainage-pipe") + real("diameter", "300.0");
  EXPECT_THAT(pipe_problems(pipe), ElementsAre("A1 flow-direction: the flow direction is unknown: "
                                               "start_invert and end_invert are missing"));
  EXPECT_THAT(
      pipe_problems(pipe + real("start_invert", "2.0")),
      ElementsAre("A1 flow-direction: the flow direction is unknown: end_invert is missing"));
  const std::string ends = node("start_node", "C1") + node("end_node", "C2");
  const std::string water = kind("water-pipe") + real("diameter", "100.0") + ends;
  const auto water_problems = [&](const std::string& pairs) {
    return problems(line("A1", 0, 0, 10, 0, water + pairs) + well("C1", 0, 0, kind("water-node")) +
                    well("C2", 10, 0, kind("water-node")));
  };
  EXPECT_THAT(water_problems(whole("head_case", "3") + real("end_head_3", "30.0")),
              ElementsAre("A1 flow-direction: the flow direction is unknown: start_head_3 is "
                          "missing"));
  EXPECT_THAT(water_problems(whole("head_case", "7")),
              ElementsAre("A1 flow-direction: the flow direction is unknown: head_case is 7, none "
                          "of 1 to 6"));
}

TEST_F(Survey, TellsOfPipesWithoutACentreLine) {
  EXPECT_THAT(problems(entity("TEXT", "A1", point(10, 0, 0) + "40 2.5\n1 x\n", kDrainage)),
              ElementsAre("A1 no-centre-line: a TEXT without a centre line",
                          "A1 no-end: no node at its start: start_node is missing",
                          "A1 no-end: no node at its end: end_node is missing"));
  EXPECT_THAT(problems(line("A1", 5, 5, 5, 5,
                            kDrainage + node("start_node", "B1") + node("end_node", "B2")) +
                       kWells),
              ElementsAre("A1 no-centre-line: the centre line has no length"));
}

TEST_F(Survey, TellsOfDataInTheWrongForm) {
  EXPECT_THAT(pipe_problems(kind("drainage-pipe") + whole("diameter", "300") + kInverts),
              ElementsAre("A1 data: diameter has a value of group 1070 instead of 1040",
                          "A1 diameter: diameter is missing, and there are no width and height"));
}

TEST_F(Survey, TellsOfKindsItDoesNotKnow) {
  EXPECT_THAT(
      problems(line("A1", 0, 0, 10, 0, kind("gas-pipe")) +
               line("A2", 0, 0, 10, 0, real("diameter", "1.0"))),
      ElementsAre("A1 kind: the kind \"gas-pipe\" is unknown", "A2 kind: the kind is missing"));
  EXPECT_EQ(count(Kind::kNone).objects, 2u);
}

TEST_F(Survey, TellsOfIsolatedNodes) {
  EXPECT_THAT(problems(line("A1", 0, 0, 10, 0, kDrainage) + kWells + well("B3", 99, 0, kWell)),
              ElementsAre("B3 isolated: no pipe ends here"));
}

TEST_F(Survey, TellsOfNodesWithoutAPosition) {
  EXPECT_THAT(problems(line("A1", 0, 0, 10, 0, kDrainage + node("start_node", "B3")) + kWells +
                       entity("TEXT", "B3", point(10, 0, 0) + "40 2.5\n1 x\n", kWell)),
              Contains("B3 no-position: a TEXT has no position; INSERT, POINT and CIRCLE have"));
}

TEST_F(Survey, TellsOfNumbersThatTwoNodesHave) {
  const auto numbered = [](const std::string& handle, double y, const std::string& word,
                           const std::string& number, const std::string& prefix) {
    return well(handle, 99, y, kind(word) + text("number", number) + text("prefix", prefix));
  };
  const std::vector<std::string> found = problems(
      numbered("B1", 1, "drainage-well", "1", "W") + numbered("B2", 2, "drainage-well", "1", "W") +
      numbered("B3", 3, "drainage-well", "1", "WS") + numbered("B4", 4, "storm-well", "1", "W") +
      numbered("B5", 5, "hydrant", "7", "J") + numbered("B6", 6, "water-node", "7", "J") +
      well("B7", 99, 7, kWell) + well("B8", 99, 8, kWell));
  EXPECT_THAT(found, Contains("B2 duplicate-number: number \"1\" with prefix \"W\" is also that of "
                              "B1"));
  EXPECT_THAT(found, Contains("B6 duplicate-number: number \"7\" with prefix \"J\" is also that of "
                              "B5"));
  EXPECT_EQ(found.size(), 8u + 2u) << "all are isolated, two have a number that is taken";
}

TEST_F(Survey, IsInDrawingOrder) {
  EXPECT_THAT(problems(well("B9", 50, 0, kWell) + line("A1", 0, 0, 10, 0, kind("x")) +
                       line("A2", 0, 0, 10, 0, kDrainage) + well("B8", 60, 0, kWell)),
              ElementsAre(testing::StartsWith("B9 "), testing::StartsWith("A1 "),
                          testing::StartsWith("A2 "), testing::StartsWith("A2 "),
                          testing::StartsWith("B8 ")));
}

TEST_F(Survey, ProblemsAreSingleLines) {
  EXPECT_THAT(problems(line("A1", 0, 0, 10, 0, kind("gas^J^[[31mpipe"))),
              ElementsAre("A1 kind: the kind \"gas??[31mpipe\" is unknown"));
}

}  // namespace
