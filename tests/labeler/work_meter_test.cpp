#include "labeler/work_meter.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "host/base/progress.h"
#include "tests/labeler/labelling.h"

namespace {

class WorkMeter : public Labelling {
 protected:
  void SetUp() override {
    Labelling::SetUp();
    for (int i = 0; i < 5; ++i) pipes.push_back(given_pipe(0, 20.0 * i, 60, 20.0 * i));
    cad::set_progress_sink([this](std::string_view label, double done) {
      if (!label.empty() && (shown.empty() || shown.back().first != label)) shown.push_back({});
      if (!label.empty()) shown.back() = {std::string(label), done};
      if (!label.empty() && label == broken_off_at) host.interrupt();
    });
  }
  void TearDown() override { cad::set_progress_sink({}); }

  std::vector<std::string> labels_shown() const {
    std::vector<std::string> labels;
    for (const auto& [label, done] : shown) labels.push_back(label);
    return labels;
  }
  long labelled() const {
    return std::count_if(pipes.begin(), pipes.end(),
                         [&](const std::string& pipe) { return has_label(pipe); });
  }
  void given_other_diameters() {
    for (const std::string& pipe : pipes) set_real(pipe, network::Key::kDiameter, 700.0);
  }
  static bool is_error(const std::string& value) { return value.starts_with("error: "); }

  std::vector<std::string> pipes;
  std::vector<std::pair<std::string, double>> shown;  // each label with the last it came to
  std::string broken_off_at;
};

TEST_F(WorkMeter, LabellingANetworkShowsHowFarItHasCome) {
  eval("(labelnetwork)");
  EXPECT_EQ(labels_shown(),
            (std::vector<std::string>{"looking for pipes and nodes", "drawing labels"}));
  EXPECT_GE(shown.back().second, 0.8);
  EXPECT_LE(shown.back().second, 1.0);
}

TEST_F(WorkMeter, UpdatingShowsHowFarItHasCome) {
  eval("(labelnetwork)");
  given_other_diameters();
  shown.clear();
  eval("(labelupdate)");
  EXPECT_EQ(labels_shown(), (std::vector<std::string>{"comparing labels", "updating labels"}));
}

TEST_F(WorkMeter, LabellingEndsWhenTheUserBreaksOff) {
  for (const std::string at : {"looking for pipes and nodes", "drawing labels"}) {
    broken_off_at = at;
    EXPECT_TRUE(is_error(eval("(labelnetwork)"))) << at;
    EXPECT_EQ(labelled(), 0) << at;
  }
  broken_off_at.clear();
  eval("(labelnetwork)");
  EXPECT_EQ(labelled(), 5);
}

TEST_F(WorkMeter, UpdatingEndsWhenTheUserBreaksOff) {
  eval("(labelnetwork)");
  given_other_diameters();
  for (const std::string at : {"comparing labels", "updating labels"}) {
    broken_off_at = at;
    EXPECT_TRUE(is_error(eval("(labelupdate)"))) << at;
  }
  broken_off_at.clear();
  EXPECT_EQ(eval("(length (labelupdate))"), "5");
  EXPECT_EQ(eval("(labelstale)"), "nil");
}

}  // namespace
