#include "host/gi/looks.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "host/db/database.h"
#include "host/db/drawing.h"
#include "host/db/entity_fields.h"
#include "host/gi/entity_tags.h"
#include "tests/host/gi/drawing_note.h"

namespace {

class LooksOfEntities : public testing::Test {
 protected:
  cad::Look look(std::string_view layer, std::string_view common,
                 const cad::Look* reference = nullptr) {
    DrawingNote note;
    note.entity("LINE", line_tags(0, 0, 1, 1), layer, common);
    AcDbDatabase& database = *databases_.emplace_back(std::make_unique<AcDbDatabase>(false));
    EXPECT_TRUE(database.read_bytes(note.bytes(), "note"));
    cad::Looks& looks = *looks_.emplace_back(std::make_unique<cad::Looks>(database.drawing()));
    const auto entity = cad::EntityTags::of(database.first_entity());
    return looks.look_of(entity.bytes, entity.dialect, reference);
  }

  // What a look refers to stays until the test ends.
  std::vector<std::unique_ptr<AcDbDatabase>> databases_;
  std::vector<std::unique_ptr<cad::Looks>> looks_;
};

TEST_F(LooksOfEntities, ByLayerIsTheLayersColorLinetypeAndWeight) {
  const cad::Look green = look("GREEN", "");
  EXPECT_EQ(green.pen.color, 3);
  EXPECT_FALSE(green.pen.linetype.isNull());
  EXPECT_EQ(green.pen.weight, AcDb::kLnWtByLwDefault);
  EXPECT_TRUE(green.layer->shown());
}

TEST_F(LooksOfEntities, AWeightOfTheLayerIsTaken) { EXPECT_EQ(look("WIDE", "").pen.weight, 50); }

TEST_F(LooksOfEntities, ATrueColorOfTheLayerIsTaken) {
  EXPECT_EQ(look("ORANGE", "").pen.true_color, 0xFF8800U);
}

TEST_F(LooksOfEntities, TheEntitysOwnGoBeforeTheLayers) {
  const cad::Look own = look("GREEN", "62 1\n6 CONTINUOUS\n370 35\n48 2.5\n");
  EXPECT_EQ(own.pen.color, 1);
  EXPECT_TRUE(own.pen.linetype.isNull());
  EXPECT_EQ(own.pen.weight, 35);
  EXPECT_EQ(own.pen.linetype_scale, 2.5);
}

TEST_F(LooksOfEntities, ATrueColorGoesBeforeTheIndex) {
  EXPECT_EQ(look("0", "62 1\n420 255\n").pen.true_color, 0x0000FFU);
}

TEST_F(LooksOfEntities, ByBlockIsTheLookOfTheReference) {
  cad::Look reference;
  reference.pen.color = 6;
  reference.pen.weight = static_cast<AcDb::LineWeight>(70);
  const cad::Look inner = look("RED", "62 0\n6 BYBLOCK\n370 -2\n", &reference);
  EXPECT_EQ(inner.pen.color, 6);
  EXPECT_EQ(inner.pen.weight, 70);
  EXPECT_TRUE(inner.pen.linetype.isNull());
}

TEST_F(LooksOfEntities, ByBlockOutsideOfBlocksIsTheForeground) {
  EXPECT_EQ(look("RED", "62 0\n").pen.color, 7);
}

TEST_F(LooksOfEntities, Layer0InABlockIsTheLayerOfTheReference) {
  cad::LayerLook layer;
  layer.pen.color = 4;
  cad::Look reference;
  reference.layer = &layer;
  EXPECT_EQ(look("0", "", &reference).pen.color, 4);
  EXPECT_EQ(look("RED", "", &reference).pen.color, 1);
}

TEST_F(LooksOfEntities, OffFrozenAndUnplottedLayersAreNotShown) {
  EXPECT_FALSE(look("OFF", "").layer->shown());
  EXPECT_FALSE(look("FROZEN", "").layer->shown());
  EXPECT_FALSE(look("SCREEN", "").layer->shown());
}

TEST_F(LooksOfEntities, ALayerThatIsOffHasItsColorAllTheSame) {
  EXPECT_EQ(look("OFF", "").pen.color, 5);
}

TEST_F(LooksOfEntities, AnEntityMayBeInvisible) { EXPECT_FALSE(look("0", "60 1\n").visible); }

TEST_F(LooksOfEntities, AMissingLayerIsShownInTheForeground) {
  const cad::Look lost = look("NOWHERE", "");
  EXPECT_TRUE(lost.layer->shown());
  EXPECT_TRUE(lost.layer->id.isNull());
  EXPECT_EQ(lost.pen.color, 7);
}

TEST_F(LooksOfEntities, DefinitionPointsAreNotPlotted) {
  EXPECT_FALSE(look("Defpoints", "").layer->shown());
}

TEST_F(LooksOfEntities, LayerNamesIgnoreLetterCase) { EXPECT_EQ(look("red", "").pen.color, 1); }

}  // namespace
