#include "host/db/id_set.h"

#include <gtest/gtest.h>

#include "tests/host/db/plan.h"

namespace {

class IdSet : public DrawingTest {
 protected:
  IdSet() { given_plan(); }
  cad::IdSet set;
};

TEST_F(IdSet, HoldsWhatWasPutIn) {
  set.insert(id(0x51));
  set.insert(id(0x51));
  EXPECT_TRUE(set.contains(id(0x51)));
  EXPECT_FALSE(set.contains(id(0x52)));
  EXPECT_FALSE(set.contains(id(0x50)));
}

TEST_F(IdSet, NeverHoldsTheNullId) {
  set.insert(AcDbObjectId());
  EXPECT_FALSE(set.contains(AcDbObjectId()));
}

TEST_F(IdSet, TakesObjectsThatWereMadeLater) {
  set.insert(id(0x51));
  const AcDbObjectId made = append(new AcDbLine);
  EXPECT_FALSE(set.contains(made));
  set.insert(made);
  EXPECT_TRUE(set.contains(made));
}

}  // namespace
