#include "module/manager/families.h"

#include "module/manager/dim_manager.h"
#include "tests/module/handlers.h"
#include "tests/module/plan.h"

namespace {

TEST(Family, ALengthGoesOnInMillimetresAndToTheCalculation) {
  EXPECT_EQ(dim::family_of(L"pipe_len", 12.3456), (Items{item_of(L"pipe_len_mm", L"12345.600000"),
                                                         item_of(L"pipe_len_pc", L"12.345600")}));
}

TEST(Family, ASlopeGoesOnInPerCentAndPerMille) {
  EXPECT_EQ(dim::family_of(L"pipe_i", 0.003),
            (Items{item_of(L"pipe_ii", L"0.300000"), item_of(L"pipe_iii", L"3.000000")}));
}

TEST(Family, AGroundElevationGoesOnToTheCalculation) {
  EXPECT_EQ(dim::family_of(L"well_bgdm", 4.5), Items{item_of(L"well_bgdm_pc", L"4.500000")});
}

TEST(Family, NoMemberHeadsAFamily) {
  for (const wchar_t* head : {L"pipe_len", L"pipe_i", L"well_bgdm"}) {
    for (const StuDim& member : dim::family_of(head, 1.0)) {
      EXPECT_TRUE(dim::family_of(member.name, 1.0).empty());
    }
  }
  EXPECT_TRUE(dim::family_of(L"gdh", 1.0).empty());
}

}  // namespace
