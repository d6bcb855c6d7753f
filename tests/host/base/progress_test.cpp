#include "host/base/progress.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace {

class Progress : public testing::Test {
 protected:
  Progress() {
    cad::set_progress_sink(
        [this](std::string_view label, double done) { shown.emplace_back(label, done); });
  }
  ~Progress() override { cad::set_progress_sink({}); }

  std::vector<std::pair<std::string, double>> shown;
};

TEST_F(Progress, AMeterShowsEveryTurnOfAShortLoop) {
  {
    cad::ProgressMeter meter("drawing", 4);
    for (int i = 0; i < 4; ++i) meter.step();
  }
  const std::vector<std::pair<std::string, double>> expected = {{"drawing", 0.0}, {"drawing", 0.25},
                                                                {"drawing", 0.5}, {"drawing", 0.75},
                                                                {"drawing", 1.0}, {"", 0.0}};
  EXPECT_EQ(shown, expected);
}

TEST_F(Progress, ALongLoopIsShownAboutAHundredTimes) {
  cad::ProgressMeter meter("drawing", 1'000'000);
  for (int i = 0; i < 1'000'000; ++i) meter.step();
  EXPECT_EQ(shown.size(), 101U);
  EXPECT_EQ(shown.back().second, 1.0);
}

TEST_F(Progress, MoreTurnsThanAnnouncedAreNotMoreThanAll) {
  cad::ProgressMeter meter("drawing", 1);
  for (int i = 0; i < 5; ++i) meter.step();
  EXPECT_EQ(shown.back().second, 1.0);
}

TEST_F(Progress, ALoopWithoutTurnsCanBeShown) {
  { const cad::ProgressMeter meter("drawing", 0); }
  EXPECT_EQ(shown.front().second, 0.0);
  EXPECT_EQ(shown.back().first, "");
}

TEST_F(Progress, NobodyNeedsToListen) {
  cad::set_progress_sink({});
  cad::ProgressMeter meter("drawing", 2);
  meter.step();
  EXPECT_TRUE(shown.empty());
}

}  // namespace
