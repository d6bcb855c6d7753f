#include "network/model/network_model.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "tests/host/base/temporary_folder.h"

namespace {

using network::ModelLink;
using network::ModelNode;
using network::NetworkModel;
using testing::DoubleNear;
using testing::ElementsAre;
using testing::Field;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Optional;
using testing::SizeIs;

constexpr char kSupply[] = R"([TITLE]
 two pipes ; a comment

[JUNCTIONS]
;ID  Elev Demand
 A   10   5  ;
 B   12.5 0
[RESERVOIRS]
 R   40
[TANKS]
 T   20 5 0 10 12 0
[PIPES]
 P1  R  A  100  300  100 0 Open
 P2  A  B  60.5 0.2e3 100 0 Open
[VALVES]
 V1  B  T  250  PRV 40
[OPTIONS]
 Units LPS
[COORDINATES]
 R 0   0
 A 100 0
 B 150 30
 T 200 30
[VERTICES]
 P2 120 5
 P2 130 20
[BACKDROP]
 UNITS Meters
[END]
)";

constexpr char kSewer[] = R"([OPTIONS]
FLOW_UNITS CMS
[JUNCTIONS]
J1  10.0  3.5  0 0 0
J2  9.0   0    0 0 0
[OUTFALLS]
O1  8.0   FREE NO
[STORAGE]
S1  7.5   4  0 FUNCTIONAL 15 0 0
[CONDUITS]
C1  J1 J2  50  0.013  0.5 0.25  0 0
C2  J2 O1  40  0.013  0   *     0 0
C3  J2 S1  40  0.013  0   0     0 0
[WEIRS]
W1  S1 O1  TRANSVERSE 1 2 NO
[XSECTIONS]
C1  CIRCULAR     0.6  0    0 0 1
C2  RECT_CLOSED  1.2  2.0  0 0 2
C3  EGG          1.0  0    0 0 1
W1  RECT_OPEN    1    1    0 0
[COORDINATES]
J1 0 0
J2 50 0
O1 90 0
S1 50 40
)";

NetworkModel read(std::string text) {
  auto model = network::read_network_model(std::move(text), "model.inp");
  EXPECT_TRUE(model) << model.error().message();
  return model ? std::move(*model) : NetworkModel();
}

std::string error_of(std::string text) {
  const auto model = network::read_network_model(std::move(text), "model.inp");
  return model ? "" : model.error().message();
}

const ModelNode& node(const NetworkModel& model, std::string_view name) {
  for (const ModelNode& node : model.nodes)
    if (node.name == name) return node;
  throw std::invalid_argument("no node " + std::string(name));
}

const ModelLink& link(const NetworkModel& model, std::string_view name) {
  for (const ModelLink& link : model.links)
    if (link.name == name) return link;
  throw std::invalid_argument("no link " + std::string(name));
}

/// The text with one piece replaced, which must be there.
std::string with(std::string text, std::string_view piece, std::string_view by) {
  const std::size_t at = text.find(piece);
  if (at == text.npos) throw std::invalid_argument("not in the text: " + std::string(piece));
  return text.replace(at, piece.size(), by);
}

auto fault(int line, const std::string& what) {
  return testing::AllOf(Field(&network::ModelFault::line, line),
                        Field(&network::ModelFault::what, HasSubstr(what)));
}

TEST(SupplyModel, NodesCarryTheirElevationsHeadsAndDemands) {
  const NetworkModel model = read(kSupply);
  EXPECT_THAT(node(model, "A").ground, Optional(10.0));
  EXPECT_THAT(node(model, "A").flow, Optional(5.0));
  EXPECT_THAT(node(model, "R").head, Optional(40.0));
  EXPECT_THAT(node(model, "T").bottom, Optional(20.0));
  EXPECT_EQ(node(model, "R").kind, ModelNode::Kind::kReservoir);
  EXPECT_EQ(node(model, "T").kind, ModelNode::Kind::kTank);
  EXPECT_THAT(model.faults, IsEmpty());
}

TEST(SupplyModel, PipesCarryLengthDiameterAndBends) {
  const NetworkModel model = read(kSupply);
  const ModelLink& pipe = link(model, "P2");
  EXPECT_THAT(pipe.length, Optional(60.5));
  EXPECT_THAT(pipe.diameter, Optional(200.0));
  EXPECT_THAT(pipe.bends, SizeIs(2));
  EXPECT_EQ(model.nodes[pipe.from].name, "A");
  EXPECT_EQ(model.nodes[pipe.to].name, "B");
  EXPECT_EQ(link(model, "V1").kind, ModelLink::Kind::kValve);
}

TEST(SupplyModel, UsFlowUnitsMeanFeetAndInches) {
  const NetworkModel model = read(with(kSupply, "LPS", "GPM"));
  EXPECT_TRUE(model.us_units);
  EXPECT_THAT(link(model, "P1").length, Optional(DoubleNear(30.48, 1e-9)));
  EXPECT_THAT(link(model, "P1").diameter, Optional(DoubleNear(7620.0, 1e-9)));
  EXPECT_THAT(node(model, "A").ground, Optional(DoubleNear(3.048, 1e-9)));
  EXPECT_THAT(node(model, "A").flow, Optional(DoubleNear(0.315450982, 1e-9)));
}

TEST(SupplyModel, GallonsPerMinuteAreTakenWithoutAnOption) {
  EXPECT_EQ(read(with(kSupply, "Units LPS", "")).flow_units, "GPM");
}

TEST(SupplyModel, DemandsOfSeveralUsersReplaceTheOneOfTheJunction) {
  const NetworkModel model = read(with(kSupply, "[END]", "[DEMANDS]\n A 2\n A 3.5\n[END]"));
  EXPECT_THAT(node(model, "A").flow, Optional(5.5));
  EXPECT_THAT(node(model, "B").flow, Optional(0.0));
}

TEST(SupplyModel, SectionsMayStandInAnyOrderAndSpelling) {
  const std::string pipes = " P1  R  A  100  300  100 0 Open\n";
  const NetworkModel model =
      read("[pipes]\n" + pipes + with(with(kSupply, pipes, ""), "[JUNCTIONS]", "[Junc]"));
  EXPECT_THAT(model.links, SizeIs(3));
  EXPECT_THAT(model.faults, IsEmpty());
}

TEST(SupplyModel, QuotedFieldsMayHoldBlanksAndSemicolons) {
  const NetworkModel model = read(with(kSupply, "[END]", "[LABELS]\n 1 2 \"Pump; old\" A\n[END]"));
  ASSERT_THAT(model.texts, SizeIs(1));
  EXPECT_EQ(model.texts[0].text, "Pump; old");
}

TEST(SupplyModel, EveryUnusedSectionIsNamedWithItsRows) {
  const NetworkModel model = read(
      with(kSupply, "[END]", "[TIMES]\n Duration 24\n Step 1\n[Odd]\n[TIMES]\n More 1\n[END]"));
  ASSERT_THAT(model.unused, SizeIs(2));
  EXPECT_EQ(model.unused[0].name, "TIMES");
  EXPECT_EQ(model.unused[0].rows, 3u);
  EXPECT_EQ(model.unused[0].line, 29);
  EXPECT_EQ(model.unused[1].name, "Odd");
  EXPECT_EQ(model.unused[1].rows, 0u);
}

TEST(SupplyModel, ALinkToANodeThatDoesNotExistIsLeftOutWithItsLine) {
  const NetworkModel model = read(with(kSupply, "P1  R  A", "P1  R  Z"));
  EXPECT_THAT(model.links, SizeIs(2));
  EXPECT_THAT(model.faults,
              ElementsAre(fault(13, "\"P1\" ends at the node \"Z\", which is not declared")));
}

TEST(SupplyModel, ATruncatedRowIsLeftOutWithItsLine) {
  const NetworkModel model = read(with(kSupply, "P2  A  B  60.5 0.2e3 100 0 Open", "P2  A"));
  EXPECT_THAT(model.links, SizeIs(2));
  EXPECT_THAT(model.faults, testing::Contains(fault(14, "does not say at which node it ends")));
}

TEST(SupplyModel, AFileCutOffInARowKeepsWhatStandsBeforeIt) {
  const std::string text = kSupply;
  const NetworkModel model = read(text.substr(0, text.find("T 200 30") + 5));
  EXPECT_THAT(model.nodes, SizeIs(4));
  EXPECT_FALSE(node(model, "T").place);
  EXPECT_THAT(model.faults, ElementsAre(fault(23, "\"T\" has no y coordinate")));
}

TEST(SupplyModel, DiametersThatNoPipeHasAreLeftOut) {
  for (const char* diameter : {"-300", "0", "wide", "1e999"}) {
    const NetworkModel model = read(with(kSupply, "100  300", "100  " + std::string(diameter)));
    EXPECT_FALSE(link(model, "P1").diameter) << diameter;
    EXPECT_THAT(model.faults, ElementsAre(fault(13, "diameter"))) << diameter;
  }
}

TEST(SupplyModel, CoordinatesThatAreNoNumbersLeaveTheNodeWithoutPlace) {
  for (const char* number : {"nan", "1,5x", "--", "inf", "1e13"}) {
    const NetworkModel model = read(with(kSupply, "A 100 0", "A " + std::string(number) + " 0"));
    EXPECT_FALSE(node(model, "A").place) << number;
    EXPECT_THAT(model.faults, SizeIs(1)) << number;
  }
}

TEST(SupplyModel, ANameDeclaredTwiceCountsOnce) {
  const NetworkModel model = read(with(kSupply, "[RESERVOIRS]", " A 99\n[RESERVOIRS]"));
  EXPECT_THAT(node(model, "A").ground, Optional(10.0));
  EXPECT_THAT(model.faults, ElementsAre(fault(8, "declared a second time")));
}

TEST(SupplyModel, AnUnknownFlowUnitIsToldAndTheUsualOneTaken) {
  const NetworkModel model = read(with(kSupply, "LPS", "BARRELS"));
  EXPECT_EQ(model.flow_units, "GPM");
  EXPECT_THAT(model.faults, ElementsAre(fault(18, "\"BARRELS\" is not known; GPM")));
}

TEST(SewerModel, GroundIsTheInvertAndTheDepth) {
  const NetworkModel model = read(kSewer);
  EXPECT_EQ(model.program, NetworkModel::Program::kSwmm);
  EXPECT_THAT(node(model, "J1").bottom, Optional(10.0));
  EXPECT_THAT(node(model, "J1").ground, Optional(13.5));
  EXPECT_FALSE(node(model, "J2").ground) << "no depth is given";
  EXPECT_EQ(node(model, "O1").kind, ModelNode::Kind::kOutfall);
  EXPECT_EQ(node(model, "S1").kind, ModelNode::Kind::kStorage);
}

TEST(SewerModel, InvertsAreHeightsAboveTheNodes) {
  const NetworkModel model = read(kSewer);
  EXPECT_THAT(link(model, "C1").start_invert, Optional(10.5));
  EXPECT_THAT(link(model, "C1").end_invert, Optional(9.25));
  EXPECT_THAT(link(model, "C2").end_invert, Optional(8.0)) << "a star stands for the bottom";
}

TEST(SewerModel, InvertsAreElevationsWhenTheFileSaysSo) {
  const NetworkModel model =
      read(with(kSewer, "[JUNCTIONS]", "LINK_OFFSETS ELEVATION\n[JUNCTIONS]"));
  EXPECT_THAT(link(model, "C1").start_invert, Optional(0.5));
  EXPECT_THAT(link(model, "C2").end_invert, Optional(8.0));
}

TEST(SewerModel, SectionsAreMillimetres) {
  const NetworkModel model = read(kSewer);
  EXPECT_THAT(link(model, "C1").diameter, Optional(600.0));
  EXPECT_THAT(link(model, "C2").height, Optional(1200.0));
  EXPECT_THAT(link(model, "C2").width, Optional(2000.0));
  EXPECT_EQ(link(model, "C2").parallel, 2);
  EXPECT_FALSE(link(model, "C2").diameter);
}

TEST(SewerModel, SectionsOfOtherShapesAreToldAndLeftOut) {
  const NetworkModel model = read(kSewer);
  EXPECT_THAT(model.faults, ElementsAre(fault(19, "neither round nor rectangular (EGG)")));
  EXPECT_FALSE(link(model, "C3").diameter || link(model, "C3").width);
}

TEST(SewerModel, SurfacesThatDrainIntoItMakeItCarryRain) {
  EXPECT_FALSE(read(kSewer).carries_rain);
  EXPECT_TRUE(read(std::string(kSewer) + "[SUBCATCHMENTS]\nS1 G J1 1 2 3 4 5\n").carries_rain);
}

TEST(NetworkModelFile, AFileWithoutCoordinatesSaysWhatIsMissing) {
  const std::string text = kSupply;
  const std::string without = text.substr(0, text.find("[COORDINATES]"));
  EXPECT_THAT(error_of(without), HasSubstr("model.inp: has no coordinates"));
}

TEST(NetworkModelFile, OtherTextsAreRefusedByName) {
  for (const char* text : {"", "hello", "[README]\n x\n", "\0\0\0", "  0\nSECTION\n"})
    EXPECT_THAT(error_of(text), HasSubstr("model.inp: is no network of EPANET or SWMM")) << text;
}

TEST(NetworkModelFile, ANetworkWithoutNodesSaysSo) {
  EXPECT_THAT(error_of("[PIPES]\n"), HasSubstr("declares no nodes"));
}

TEST(NetworkModelFile, LinesMayEndInCrLfOrInCr) {
  std::string cr_lf, cr;
  for (const char c : std::string(kSupply)) {
    cr_lf += c == '\n' ? "\r\n" : std::string(1, c);
    cr += c == '\n' ? '\r' : c;
  }
  for (const std::string& text : {cr_lf, cr}) {
    const NetworkModel model = read(with(text, " V1  B  T  250", " V1  B  T  x"));
    EXPECT_THAT(model.links, SizeIs(3));
    EXPECT_THAT(model.faults, ElementsAre(fault(16, "the diameter of \"V1\"")));
  }
}

TEST(NetworkModelFile, ANameTooLongForADrawingIsToldAndTheRestIsRead) {
  const std::string fits(255, 'n'), long_name(256, 'n');
  EXPECT_THAT(
      read(with(with(kSupply, " B   12.5", ' ' + fits + " 12.5"), " P2  A  B", " P2 A " + fits))
          .nodes,
      SizeIs(4));
  const NetworkModel model = read(with(kSupply, " P2  A  B", ' ' + long_name + " A B"));
  EXPECT_THAT(model.links, SizeIs(2));
  EXPECT_THAT(model.faults[0], fault(14, "\" has 256 bytes; a drawing holds 255; left out"));
}

TEST(NetworkModelFile, MessagesShowTheBeginningOfALongField) {
  const NetworkModel model = read(with(kSupply, "12.5", std::string(1 << 20, '9') + "\x1B[2J"));
  ASSERT_THAT(model.faults, SizeIs(1));
  EXPECT_EQ(model.faults[0].what, "the elevation of \"B\" is no number that makes sense: \"" +
                                      std::string(40, '9') + "...\"");
}

TEST(NetworkModelFile, FaultsBeyondAThousandAreCounted) {
  std::string text = "[PIPES]\n";
  for (int i = 0; i < 1500; ++i) text += "P" + std::to_string(i) + " X Y 1 1\n";
  const NetworkModel model = read(std::string(kSupply) + text);
  EXPECT_THAT(model.faults, SizeIs(NetworkModel::kMostFaults));
  EXPECT_EQ(model.further_faults, 500u);
}

TEST(NetworkModelFile, AMillionSectionsAreReadInLinearTime) {
  std::string text = kSupply;
  for (int i = 0; i < 1000000; ++i) text += "[S" + std::to_string(i) + "]\n";
  EXPECT_THAT(read(std::move(text)).unused, SizeIs(1000000));
}

class NetworkModelOnDisk : public TemporaryFolder {};

TEST_F(NetworkModelOnDisk, NamesInCodePage936AreUnderstood) {
  std::string text = kSupply;
  for (std::size_t at; (at = text.find("P1")) != text.npos;)
    text.replace(at, 2, "\xB8\xC9\xB9\xDC");
  const auto model = network::read_network_model(given_file("model.inp", text));
  ASSERT_TRUE(model) << model.error().message();
  EXPECT_EQ(link(*model, "干管").kind, ModelLink::Kind::kPipe);
}

TEST_F(NetworkModelOnDisk, AFileThatIsNotThereIsNamed) {
  const auto model = network::read_network_model(path("model.inp"));
  ASSERT_FALSE(model);
  EXPECT_THAT(model.error().message(), HasSubstr(path("model.inp")));
}

}  // namespace
