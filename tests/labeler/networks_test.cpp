// Real networks from the model to a labelled drawing that stays right.

#include <algorithm>
#include <map>
#include <random>

#include "labeler/label_types.h"
#include "labeler/network_labels.h"
#include "network/model/model_drawing.h"
#include "network/model/network_model.h"
#include "tests/labeler/labelling.h"

namespace {

using labeler::Owner;
using network::Key;

class Networks : public Labelling, public testing::WithParamInterface<const char*> {
 protected:
  void SetUp() override {
    Labelling::SetUp();
    auto model = network::read_network_model(std::string(PN_FIXTURES "/networks/") + GetParam());
    ASSERT_TRUE(model) << model.error().message();
    ASSERT_TRUE(network::draw_model(*model, *document->database(), {}));
    eval("(labelnetwork)");
    const AcDbDatabase& drawing = *document->database();
    for (AcDbObjectId at = drawing.first_entity(); !at.isNull(); at = drawing.next_entity(at))
      if (std::optional<Owner> part = labeler::network_part(at)) parts.push_back(*std::move(part));
  }

  /// Of all labels: the owner, and place and text of each line.
  std::map<AcDbObjectId, std::vector<std::pair<AcGePoint3d, std::wstring>>> drawn_labels() const {
    std::map<AcDbObjectId, std::vector<std::pair<AcGePoint3d, std::wstring>>> labels;
    for (const Owner& part : parts)
      if (const auto label = labeler::read_label(
              part.id, part.kind == labeler::OwnerKind::kPipe ? L"xzgj" : L"bjbh"))
        for (const labeler::StoredLine& line : label->lines)
          labels[part.id].emplace_back(labeler::place_shown(line.entity), line.shown.text);
    return labels;
  }

  /// The label's text by the formatter alone.
  std::vector<std::wstring> formatted(const CGxGd& pipe) const {
    const auto or_none = [](std::optional<double> value) { return value.value_or(Gx::kNoData); };
    CDimStyle& style = CDimStyle::Instance();
    const bool water = pipe.kind() == network::Kind::kWaterPipe;
    CStringArray items, texts;
    style.GetDnOrderDims(items, water                                         ? L"J"
                                : pipe.kind() == network::Kind::kDrainagePipe ? L"P"
                                                                              : L"Y");
    const auto start = pipe.data().real(Key::kStartInvert), end = pipe.data().real(Key::kEndInvert);
    double slope = 0.0;
    if (start && end && pipe.length().value_or(0.0) > 0.0)
      slope = (*start - *end) / *pipe.length();
    else
      std::erase(items, L"坡度");
    const auto label = pipe.is_rectangular() && pipe.parallel() == 2
                           ? &CDimStyle::GetDRectCompositeDimExt
                           : &CDimStyle::GetCompositeDimExt;
    (style.*label)(or_none(pipe.diameter()), slope, or_none(pipe.length()),
                   pipe.material().value_or(0), items, texts, pipe.is_rectangular(),
                   or_none(pipe.width()), or_none(pipe.height()), or_none(pipe.ratio()), false,
                   pipe.is_rectangular() && pipe.parallel() == 2 ? 1 : pipe.parallel());
    return texts;
  }

  std::vector<Owner> parts;
};

TEST_P(Networks, EveryLabelShowsWhatTheFormatterGives) {
  std::size_t pipes = 0, wells = 0;
  for (const Owner& part : parts) {
    std::vector<std::wstring> shown;
    if (part.kind == labeler::OwnerKind::kNode) {
      const auto label = labeler::read_label(part.id, L"bjbh");
      ASSERT_TRUE(label);
      for (const auto& line : label->lines) shown.push_back(line.shown.text);
      EXPECT_EQ(shown, std::vector<std::wstring>{CDimStyle::Instance().GetJdStr(part.id)});
      ++wells;
    } else if (part.curve && part.curve->length() > 0.0) {
      const auto label = labeler::read_label(part.id, L"xzgj");
      ASSERT_TRUE(label);
      for (const auto& line : label->lines) shown.push_back(line.shown.text);
      EXPECT_EQ(shown, formatted(*part.pipe));
      ++pipes;
    }
  }
  EXPECT_GT(pipes, 10u);
  EXPECT_GT(wells, 8u);
}

TEST_P(Networks, LabelsJustDrawnAreInOrder) { EXPECT_EQ(stale(), "nil"); }

TEST_P(Networks, AfterRandomChangesOneUpdatePutsEverythingInOrder) {
  const auto before = drawn_labels();
  std::mt19937 random(7);
  std::vector<AcDbObjectId> changed;
  for (const Owner& part : parts) {
    if (random() % 5 != 0) continue;
    changed.push_back(part.id);
    if (part.kind == labeler::OwnerKind::kNode) {
      network::write_text(part.id, Key::kNumber, L"N" + std::to_wstring(random() % 1000));
    } else if (random() % 2) {
      network::write_real(part.id, Key::kDiameter, 100.0 + static_cast<double>(random() % 10) * 50);
    } else {
      dim::Opened<AcDbEntity> entity(part.id, AcDb::kForWrite);
      entity->transformBy(AcGeMatrix3d::translation(
          AcGeVector3d(static_cast<double>(random() % 50), static_cast<double>(random() % 50), 0)));
    }
  }
  eval("(labelupdate)");
  EXPECT_EQ(stale(), "nil");
  const auto after = drawn_labels();
  for (const auto& [owner, lines] : before) {
    if (std::find(changed.begin(), changed.end(), owner) != changed.end()) continue;
    EXPECT_EQ(after.at(owner).size(), lines.size());
    for (std::size_t i = 0; i < lines.size(); ++i) {
      EXPECT_EQ(after.at(owner)[i].second, lines[i].second);
      EXPECT_NEAR(after.at(owner)[i].first.distanceTo(lines[i].first), 0.0, 1e-9)
          << "an unaffected label was moved";
    }
  }
  const std::string settled = bytes();
  EXPECT_EQ(update(), "nil");
  EXPECT_TRUE(bytes() == settled) << "a second update changed something";
}

TEST_P(Networks, LabelsAreTheSameInTheSavedDrawing) {
  const cad::Result<AcApDocument*> again = host.open_bytes(bytes(), "again.dxf");
  ASSERT_TRUE(again);
  EXPECT_EQ(eval(*again, "(labelstale)"), "nil");
  EXPECT_EQ(eval(*again, "(cadr (assoc \"drawn\" (labelnetwork)))"), "0");
}

INSTANTIATE_TEST_SUITE_P(Samples, Networks,
                         testing::Values("Net1.inp", "Net3.inp", "ky4.inp", "sewer_state_plane.inp",
                                         "sewer_user2.inp"),
                         [](const auto& sample) {
                           const std::string name = sample.param;
                           return name.substr(0, name.find('.'));
                         });

}  // namespace
