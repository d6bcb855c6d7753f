#include "network/model/model_drawing.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "host/base/codepage.h"
#include "host/db/database.h"
#include "host/db/entity.h"
#include "host/db/open.h"
#include "host/db/resbuf.h"

namespace {

using network::ModelDrawingOptions;
using network::ModelDrawingReport;
using network::NetworkModel;
using testing::Contains;
using testing::DoubleNear;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr char kSupply[] = R"([JUNCTIONS]
 A 10 0
 B 12 0
 C 12 0
[PIPES]
 P1 A B 100 300 100 0 Open
 P2 B C 60  200 100 0 Open
[PUMPS]
 U1 A C HEAD 1
[OPTIONS]
 Units LPS
[COORDINATES]
 A 0 0
 B 100 0
 C 150 30
[VERTICES]
 P2 120 5
[LABELS]
 1 2 "Works"
)";

NetworkModel read(const std::string& text) {
  auto model = network::read_network_model(text, "model.inp");
  EXPECT_TRUE(model) << model.error().message();
  return model ? std::move(*model) : NetworkModel();
}

ModelDrawingReport draw(NetworkModel& model, AcDbDatabase& database,
                        const ModelDrawingOptions& options = {}) {
  auto report = network::draw_model(model, database, options);
  EXPECT_TRUE(report) << report.error().message();
  return report ? std::move(*report) : ModelDrawingReport();
}

/// An entity of the drawing as texts, extended data of the application included.
struct Drawn {
  std::string kind;
  std::string layer;
  std::string data;
};

void PrintTo(const Drawn& drawn, std::ostream* out) {
  *out << drawn.kind << " on " << drawn.layer << ": " << drawn.data;
}

std::string data_text(const AcDbEntity& entity) {
  std::string text;
  for (const wchar_t* application : {L"PIPENOTE", L"PIPENOTE_MODEL"}) {
    const cad::ResbufChain chain(entity.xData(application));
    for (const resbuf* group = chain.get(); group; group = group->rbnext) {
      if (group->restype == 1001) continue;
      if (group->restype == 1040)
        text += std::to_string(group->resval.rreal);
      else if (group->restype == 1070)
        text += std::to_string(group->resval.rint);
      else if (group->restype == 1005)
        text += "handle";
      else
        text += cad::to_utf8(group->resval.rstring);
      text += ' ';
    }
  }
  return text;
}

std::vector<Drawn> entities_of(AcDbDatabase& database) {
  std::vector<Drawn> drawn;
  for (AcDbObjectId id = database.first_entity(); !id.isNull(); id = database.next_entity(id)) {
    AcDbEntity* entity = nullptr;
    if (acdbOpenAcDbEntity(entity, id, AcDb::kForRead) != Acad::eOk) continue;
    ACHAR* layer = entity->layer();
    drawn.push_back({entity->isA()->dxfName() ? cad::to_utf8(entity->isA()->dxfName()) : "",
                     cad::to_utf8(layer), data_text(*entity)});
    acutDelString(layer);
    entity->close();
  }
  return drawn;
}

auto entity(const std::string& kind, const std::string& layer, const std::string& data) {
  return testing::AllOf(testing::Field(&Drawn::kind, kind), testing::Field(&Drawn::layer, layer),
                        testing::Field(&Drawn::data, HasSubstr(data)));
}

double unit_of(const std::string& text) {
  NetworkModel model = read(text);
  AcDbDatabase database;
  return draw(model, database).map_unit;
}

TEST(ModelDrawing, PipesAndNodesCarryTheDataOfTheirKind) {
  NetworkModel model = read(kSupply);
  AcDbDatabase database;
  draw(model, database);
  const std::vector<Drawn> drawn = entities_of(database);
  EXPECT_THAT(drawn,
              Contains(entity("INSERT", "给水-节点", "kind water-node number A ground 10.000000")));
  EXPECT_THAT(drawn, Contains(entity("LINE", "给水-管线",
                                     "kind water-pipe start_node handle end_node handle code P1 "
                                     "diameter 300.000000 length 100.000000")));
  EXPECT_THAT(drawn, Contains(entity("LWPOLYLINE", "给水-管线", "code P2")));
}

TEST(ModelDrawing, LinksThatAreNoPipesGetASymbolAndTheirName) {
  NetworkModel model = read(kSupply);
  AcDbDatabase database;
  draw(model, database);
  const std::vector<Drawn> drawn = entities_of(database);
  EXPECT_THAT(drawn, Contains(entity("LINE", "给水-水泵", "element pump name U1")));
  EXPECT_THAT(drawn, Contains(entity("INSERT", "给水-水泵", "element pump name U1")));
}

TEST(ModelDrawing, LabelsOfTheMapBecomeTexts) {
  NetworkModel model = read(kSupply);
  AcDbDatabase database;
  const ModelDrawingReport report = draw(model, database);
  EXPECT_THAT(entities_of(database), Contains(entity("TEXT", "给水-说明", "")));
  EXPECT_EQ(report.made.back().what, "labels of the map");
}

TEST(ModelDrawing, TheMapUnitOfTheFileCountsBeforeLengths) {
  EXPECT_EQ(unit_of(std::string(kSupply) + "[BACKDROP]\nUNITS Feet\n"), 0.3048);
}

TEST(ModelDrawing, WithoutMapUnitTheLengthsOfPipesTellIt) {
  EXPECT_EQ(unit_of(kSupply), 1.0);
  std::string schematic = kSupply;
  schematic.replace(schematic.find("B 100 0"), 7, "B 1   0");
  schematic.replace(schematic.find("C 150 30"), 8, "C 1.6 0 ");
  schematic.replace(schematic.find("P2 120 5"), 8, "P2 1.2 0");
  EXPECT_THAT(unit_of(schematic), DoubleNear(100.0, 1e-9));
}

TEST(ModelDrawing, TheMapUnitAskedForCountsBeforeAll) {
  NetworkModel model = read(std::string(kSupply) + "[BACKDROP]\nUNITS Feet\n");
  AcDbDatabase database;
  ModelDrawingOptions options;
  options.map_unit = 2.5;
  const ModelDrawingReport report = draw(model, database, options);
  EXPECT_EQ(report.map_unit, 2.5);
  EXPECT_EQ(report.map_unit_from, "as asked for");
}

TEST(ModelDrawing, SewersAreStormWaterWhenSurfacesDrainIntoThemUnlessAskedOtherwise) {
  const std::string sewer =
      "[JUNCTIONS]\nA 1 2\nB 1 2\n[CONDUITS]\nC A B 10 0.01 0 0\n[COORDINATES]\nA 0 0\nB 9 0\n";
  const std::string with_rain = sewer + "[SUBCATCHMENTS]\nS G A 1 2 3 4 5\n";
  ModelDrawingOptions options;
  const auto system_of = [&](const std::string& text) {
    NetworkModel model = read(text);
    AcDbDatabase database;
    return draw(model, database, options).system;
  };
  EXPECT_EQ(system_of(sewer), network::PipeSystem::kDrainage);
  EXPECT_EQ(system_of(with_rain), network::PipeSystem::kStorm);
  options.system = network::PipeSystem::kDrainage;
  EXPECT_EQ(system_of(with_rain), network::PipeSystem::kDrainage);
}

TEST(ModelDrawing, ANodeWithoutPlaceIsToldAndItsLinksAreNotDrawn) {
  std::string text = kSupply;
  text.replace(text.find(" C 150 30"), 9, "");
  NetworkModel model = read(text);
  AcDbDatabase database;
  draw(model, database);
  ASSERT_THAT(model.faults, SizeIs(1));
  EXPECT_EQ(model.faults[0].line, 4);
  EXPECT_THAT(model.faults[0].what, HasSubstr("\"C\" has no coordinates"));
  EXPECT_THAT(entities_of(database), testing::Not(Contains(entity("LWPOLYLINE", "给水-管线", ""))));
}

TEST(ModelDrawing, APipeWithoutLengthInPlanIsDrawnAndTold) {
  std::string text = kSupply;
  text.replace(text.find("B 100 0"), 7, "B 0   0");
  NetworkModel model = read(text);
  AcDbDatabase database;
  draw(model, database);
  ASSERT_THAT(model.faults, SizeIs(1));
  EXPECT_THAT(model.faults[0].what, HasSubstr("\"P1\" has no length in plan"));
  EXPECT_THAT(entities_of(database), Contains(entity("LINE", "给水-管线", "code P1")));
}

TEST(ModelDrawing, TheHeaderTellsUnitScaleAndExtents) {
  NetworkModel model = read(kSupply);
  AcDbDatabase database;
  draw(model, database);
  EXPECT_EQ(database.header_value("$INSUNITS"), L"6");
  EXPECT_EQ(database.header_value("$USERI5"), L"500");
  EXPECT_EQ(database.header_point("$EXTMAX"), AcGePoint3d(150, 30, 0));
}

TEST(ModelDrawing, ANetworkAtOnePlaceIsDrawnInItsOwnUnit) {
  NetworkModel model = read(
      "[JUNCTIONS]\nA 1\n[PIPES]\nP A A 5 1\n[COORDINATES]\nA 1e12 -1e12\n[OPTIONS]\nUNITS LPS\n");
  AcDbDatabase database;
  EXPECT_EQ(draw(model, database).map_unit, 1.0);
  EXPECT_THAT(entities_of(database), SizeIs(2));
}

TEST(ModelDrawing, LayersAndSymbolsThatAreThereKeepTheirLooks) {
  NetworkModel model = read(kSupply);
  AcDbDatabase database;
  draw(model, database);
  const std::size_t before = entities_of(database).size();
  NetworkModel again = read(kSupply);
  draw(again, database);
  EXPECT_EQ(entities_of(database).size(), 2 * before);
  EXPECT_THAT(again.faults, IsEmpty());
}

}  // namespace
