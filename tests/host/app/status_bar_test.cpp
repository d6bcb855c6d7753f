#include "host/app/status_bar.h"

#include <string>
#include <utility>
#include <vector>

#include "host/app/aced.h"
#include "host/base/progress.h"
#include "tests/host/app/host_test.h"
#include "tests/host/app/scripted_module.h"

namespace {

class StatusBar : public WithHost {
 protected:
  StatusBar() {
    cad::set_progress_sink(
        [this](std::string_view label, double done) { shown.emplace_back(label, done); });
  }
  ~StatusBar() override {
    acedRestoreStatusBar();
    cad::set_progress_sink({});
  }
  using Shown = std::vector<std::pair<std::string, double>>;
  Shown shown;
};

TEST_F(StatusBar, TheMeterIsShownFromItsLowestToItsHighestPosition) {
  EXPECT_EQ(acedSetStatusBarProgressMeter(L"绘制标注", 10, 20), 0);
  EXPECT_EQ(acedSetStatusBarProgressMeterPos(15), 0);
  acedRestoreStatusBar();
  EXPECT_EQ(shown, (Shown{{"绘制标注", 0.0}, {"绘制标注", 0.5}, {"", 0.0}}));
}

TEST_F(StatusBar, ANegativePositionMovesTheMeterOn) {
  acedSetStatusBarProgressMeter(L"x", 0, 10);
  acedSetStatusBarProgressMeterPos(-3);
  acedSetStatusBarProgressMeterPos(-2);
  EXPECT_EQ(shown.back().second, 0.5);
}

TEST_F(StatusBar, TheMeterStopsAtItsEnds) {
  acedSetStatusBarProgressMeter(L"x", 5, 10);
  acedSetStatusBarProgressMeterPos(2'000'000'000);
  EXPECT_EQ(shown.back().second, 1.0);
  acedSetStatusBarProgressMeterPos(-2'000'000'000);
  EXPECT_EQ(shown.back().second, 1.0);
  acedSetStatusBarProgressMeterPos(0);
  EXPECT_EQ(shown.back().second, 0.0);
}

TEST_F(StatusBar, WithoutAMeterThereIsNothingToMove) {
  EXPECT_EQ(acedSetStatusBarProgressMeterPos(1), -1);
  acedSetStatusBarProgressMeter(L"x", 0, 10);
  acedRestoreStatusBar();
  EXPECT_EQ(acedSetStatusBarProgressMeterPos(1), -1);
}

TEST_F(StatusBar, AMeterWithoutLabelOrLengthIsRefused) {
  EXPECT_EQ(acedSetStatusBarProgressMeter(nullptr, 0, 10), -1);
  EXPECT_EQ(acedSetStatusBarProgressMeter(L"x", 10, 10), -1);
  EXPECT_EQ(acedSetStatusBarProgressMeter(L"x", 10, 0), -1);
  EXPECT_TRUE(shown.empty());
}

TEST_F(StatusBar, AModuleLearnsThatTheUserHasBrokenOff) {
  ScriptedModule module;
  std::vector<int> answers;
  module.given_function(L"work", [&] {
    answers.push_back(acedUsrBrk());
    host.interrupt();
    answers.push_back(acedUsrBrk());
    return RSRSLT;
  });
  AcApDocument* const document = host.new_drawing();
  ASSERT_TRUE(host.load_module("scripted"));
  EXPECT_EQ(acedUsrBrk(), 0);
  EXPECT_NE(eval(document, "(progn (work) (while T))").find("error"), std::string::npos);
  EXPECT_EQ(answers, (std::vector<int>{0, 1}));
  EXPECT_EQ(acedUsrBrk(), 0);
}

}  // namespace
