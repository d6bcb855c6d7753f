#include "host/db/block_reference.h"

#include <gmock/gmock.h>

#include "tests/host/db/little.h"
#include "tests/host/db/plan.h"
#include "tests/host/geometry/near.h"

namespace {

constexpr std::uint64_t kWell = 0x1A;

class BlockReferences : public DrawingTest {
 protected:
  BlockReferences() { given_plan(); }
};

TEST_F(BlockReferences, OfAFileTellWhereAndWhatTheyInsert) {
  auto* well = opened<AcDbBlockReference>(0x37);
  EXPECT_EQ(well->blockTableRecord(), id(kWell));
  EXPECT_EQ(well->rotation(), 0.0);
  EXPECT_EQ(well->normal(), AcGeVector3d::kZAxis);
  well->close();
}

TEST_F(BlockReferences, TurningOneChangesItsRotationAlone) {
  const std::string before = database().save_bytes();
  auto* well = opened<AcDbBlockReference>(0x37, AcDb::kForWrite);
  const AcGePoint3d place = well->position();
  EXPECT_EQ(well->setRotation(kPi / 2), Acad::eOk);
  EXPECT_EQ(well->position(), place);
  EXPECT_NEAR(well->rotation(), kPi / 2, 1e-15);
  EXPECT_EQ(well->setRotation(0.0), Acad::eOk);
  well->close();
  std::string after = database().save_bytes();
  const std::size_t added = after.find(" 50\n0.0\n");
  ASSERT_NE(added, std::string::npos);
  EXPECT_EQ(after.erase(added, 8), before);
}

TEST_F(BlockReferences, PlacesAreOfTheWorldWhateverTheNormal) {
  given(
      little_drawing("0 INSERT\n5 30\n100 AcDbEntity\n8 0\n100 AcDbBlockReference\n2 WELL\n"
                     "10 1\n20 2\n30 3\n50 90\n210 0\n220 0\n230 -1\n"));
  auto* well = opened<AcDbBlockReference>(0x30, AcDb::kForWrite);
  EXPECT_THAT(well->position(), Is(-1, 2, -3));
  EXPECT_NEAR(well->rotation(), kPi / 2, 1e-15);
  EXPECT_EQ(well->setPosition({5, 6, 7}), Acad::eOk);
  EXPECT_EQ(well->setNormal({0, 0, 2}), Acad::eOk);
  EXPECT_THAT(well->position(), Is(5, 6, 7));
  EXPECT_EQ(well->normal(), AcGeVector3d::kZAxis);
  well->close();
}

TEST_F(BlockReferences, NewOnesInsertABlock) {
  const AcDbObjectId made = append(new AcDbBlockReference({1, 2, 0}, id(kWell)));
  const std::uint64_t handle = made.handle();
  reopened();
  auto* well = opened<AcDbBlockReference>(handle);
  EXPECT_EQ(well->blockTableRecord(), id(kWell));
  EXPECT_THAT(well->position(), Is(1, 2, 0));
  well->close();
}

TEST_F(BlockReferences, RefuseWhatMakesNoReference) {
  auto* well = opened<AcDbBlockReference>(0x37, AcDb::kForWrite);
  EXPECT_EQ(well->setRotation(NAN), Acad::eInvalidInput);
  EXPECT_EQ(well->setPosition({0, INFINITY, 0}), Acad::eInvalidInput);
  EXPECT_EQ(well->setNormal({0, 0, 0}), Acad::eInvalidInput);
  EXPECT_EQ(well->setBlockTableRecord(AcDbObjectId()), Acad::eNullObjectId);
  EXPECT_EQ(well->setBlockTableRecord(id(0x2F)), Acad::eWrongObjectType);
  EXPECT_EQ(well->blockTableRecord(), id(kWell));
  well->close();
  well = opened<AcDbBlockReference>(0x37);
  EXPECT_EQ(well->setRotation(1.0), Acad::eNotOpenForWrite);
  well->close();
}

TEST_F(BlockReferences, AreToldFromOtherEntities) {
  AcDbBlockReference* reference = nullptr;
  EXPECT_EQ(acdbOpenObject(reference, id(0x2F), AcDb::kForRead), Acad::eNotThatKindOfClass);
  EXPECT_EQ(reference, nullptr);
}

}  // namespace
