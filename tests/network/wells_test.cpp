#include "network/wells.h"

#include "host/db/database.h"
#include "host/db/entity.h"
#include "host/db/open.h"
#include "tests/host/app/host_test.h"
#include "tests/host/app/small_drawing.h"

namespace {

TEST(WellKinds, AHydrantIsANodeToo) {
  const CGxXhs hydrant;
  const CGxJd node;
  EXPECT_TRUE(hydrant.IsKindOf(CGxXhs::GetThisClass()));
  EXPECT_TRUE(hydrant.IsKindOf(CGxJd::GetThisClass()));
  EXPECT_TRUE(node.IsKindOf(CGxJd::GetThisClass()));
  EXPECT_FALSE(node.IsKindOf(CGxXhs::GetThisClass()));
  EXPECT_FALSE(node.IsKindOf(nullptr));
}

TEST(WellKinds, TheOtherLibrarysHydrantIsAWell) {
  const CKtGxGsWellXHS hydrant;
  const CKtGxWellType1 well;
  EXPECT_TRUE(hydrant.IsKindOf(CKtGxGsWellXHS::GetThisClass()));
  EXPECT_TRUE(hydrant.IsKindOf(CKtGxWellType1::GetThisClass()));
  EXPECT_FALSE(well.IsKindOf(CKtGxGsWellXHS::GetThisClass()));
  EXPECT_FALSE(hydrant.IsKindOf(CGxXhs::GetThisClass()));
}

class WellNumbers : public WithHost {
 protected:
  /// The label of a well with these values in its extended data.
  template <class... Values>
  CString label(Values... values) {
    AcDbDatabase* const drawing = given_drawing(small_drawing())->database();
    AcDbObjectId id;
    AcDbEntity* well = nullptr;
    if (drawing->getAcDbObjectId(id, false, AcDbHandle(0x2D)) != Acad::eOk ||
        acdbOpenAcDbEntity(well, id, AcDb::kForWrite) != Acad::eOk)
      return L"(no well)";
    const cad::ResbufChain data(acutBuildList(1001, L"PIPENOTE", values..., 0));
    const Acad::ErrorStatus status = well->setXData(data.get());
    well->close();
    return status == Acad::eOk ? DimUtility::getJdbhDimStr(id) : L"(no data)";
  }
};

TEST_F(WellNumbers, StandInTheWellsExtendedData) {
  EXPECT_EQ(label(1000, L"number", 1000, L"W12"), L"W12");
  EXPECT_EQ(label(1000, L"prefix", 1000, L"J", 1000, L"number", 1000, L"12"), L"J-12");
  EXPECT_EQ(label(1002, L"{", 1000, L"number", 1000, L"12", 1002, L"}"), L"12");
  EXPECT_EQ(label(1000, L"kind", 1000, L"number", 1000, L"number", 1000, L"3"), L"3")
      << "a value is no name";
}

TEST_F(WellNumbers, WithoutANumberThereIsNoLabel) {
  EXPECT_EQ(label(1000, L"prefix", 1000, L"J"), L"");
  EXPECT_EQ(label(1000, L"number"), L"");
  EXPECT_EQ(label(1000, L"number", 1040, 2.0), L"");
  EXPECT_EQ(DimUtility::getJdbhDimStr(AcDbObjectId()), L"");
}

}  // namespace
