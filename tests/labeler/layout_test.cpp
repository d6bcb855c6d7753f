#include "labeler/layout.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "labeler/stored_label.h"

namespace labeler {
namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kWidth = 4.0;

double forward(const AcGePoint3d&, double along) { return along; }
double backward(const AcGePoint3d&, double along) { return along + kPi; }

Sizes some_sizes() {
  Sizes sizes;
  sizes.text_height = 2.0;
  sizes.gap = 0.5;
  sizes.line_space = 0.5;
  sizes.text_space = 1.0;
  sizes.arrow_length = 6.0;
  sizes.arrow_width = 1.0;
  sizes.node_radius = 1.0;
  sizes.end_distance = 3.0;
  sizes.tick = 1.0;
  return sizes;
}

Owner pipe_along(cad::Curve curve) {
  Owner owner;
  owner.kind = OwnerKind::kPipe;
  owner.curve = std::move(curve);
  return owner;
}

Owner straight_pipe(double length = 40.0) {
  return pipe_along(cad::Curve::line({0, 0, 0}, {length, 0, 0}));
}

Draft lines(Form form, int count) {
  Draft draft;
  draft.form = form;
  for (int i = 0; i < count; ++i) draft.lines.push_back({{{L"n", L"", L"x", L"", L""}}});
  return draft;
}

Shape shape_in(const Draft& draft, const Owner& owner, int variant,
               const ReadingAngle& reading = forward) {
  const std::vector<double> widths(draft.lines.size(), kWidth);
  return shape_of(draft, owner, place_of(draft.form, owner, variant, reading), some_sizes(),
                  reading, widths);
}

TEST(Layout, ALabelStandsAboveTheMiddleOfThePipe) {
  const Shape shape = shape_in(lines(Form::kAlongMiddle, 1), straight_pipe(), 0);
  ASSERT_EQ(shape.texts.size(), 1u);
  EXPECT_NEAR(shape.texts[0].at.x, 20.0, 1e-9);
  EXPECT_NEAR(shape.texts[0].at.y, 0.5, 1e-9);
  EXPECT_EQ(shape.texts[0].horizontal, AcDb::kTextCenter);
  EXPECT_EQ(shape.texts[0].vertical, AcDb::kTextBase);
}

TEST(Layout, TheMiddleIsThatOfTheLengthOnTheTrueCurve) {
  // A half circle of radius 10, then a line of the same length: the middle is where they meet.
  const cad::Curve::Vertex vertices[] = {{{0, 0}, 1.0}, {{20, 0}, 0.0}, {{20, 10 * kPi}, 0.0}};
  const Owner pipe = pipe_along(cad::Curve::polyline(vertices, false));
  const Place place = place_of(Form::kAlongMiddle, pipe, 0, forward);
  EXPECT_NEAR(place.anchor.x, 20.0, 1e-6);
  EXPECT_NEAR(place.anchor.y, 0.0, 1e-6);
  EXPECT_NEAR(place.along, kPi / 2, 1e-6);
}

TEST(Layout, FurtherLinesStandBelow) {
  const Shape shape = shape_in(lines(Form::kAlongMiddle, 3), straight_pipe(), 0);
  ASSERT_EQ(shape.texts.size(), 3u);
  EXPECT_NEAR(shape.texts[1].at.y, -0.5, 1e-9);
  EXPECT_NEAR(shape.texts[2].at.y, -3.0, 1e-9);
  EXPECT_EQ(shape.texts[2].vertical, AcDb::kTextTop);
}

TEST(Layout, LinesInARowStandBehindEachOtherAboutTheMiddle) {
  Draft draft = lines(Form::kAlongMiddle, 2);
  draft.in_a_row = true;
  draft.above = 2;
  const Shape shape = shape_in(draft, straight_pipe(), 0);
  EXPECT_NEAR(shape.texts[0].at.x, 20.0 - 4.5, 1e-9);
  EXPECT_NEAR(shape.texts[1].at.x, 20.0 + 0.5, 1e-9);
}

TEST(Layout, TheOtherSideIsTheSecondChoice) {
  const Shape shape = shape_in(lines(Form::kAlongMiddle, 1), straight_pipe(), 1);
  EXPECT_NEAR(shape.texts[0].at.y, -0.5, 1e-9);
  EXPECT_EQ(shape.texts[0].vertical, AcDb::kTextTop);
}

TEST(Layout, TheLastChoicesStandBeyondALabelThatIsNearer) {
  const Draft draft = lines(Form::kAlongMiddle, 1);
  const int further = variant_count(Form::kAlongMiddle) - 2;
  const Sizes sizes = some_sizes();
  const Box near = boxes_of(shape_in(draft, straight_pipe(), 0), sizes).front();
  const Box far = boxes_of(shape_in(draft, straight_pipe(), further), sizes).front();
  EXPECT_FALSE(overlap(near, far));
  EXPECT_GT(far.centre.y, near.centre.y);
  EXPECT_LT(boxes_of(shape_in(draft, straight_pipe(), further + 1), sizes).front().centre.y, 0.0);
}

TEST(Layout, ReadFromTheOtherSideAboveIsTheOtherSide) {
  const Shape shape = shape_in(lines(Form::kAlongMiddle, 1), straight_pipe(), 0, backward);
  EXPECT_NEAR(shape.texts[0].at.y, -0.5, 1e-9);
  EXPECT_NEAR(shape.texts[0].rotation, kPi, 1e-9);
}

TEST(Layout, AnArrowPointsWithTheFlowOnTheFreeSide) {
  Draft draft = lines(Form::kAlongMiddle, 1);
  draft.flow = -1;
  const Shape shape = shape_in(draft, straight_pipe(), 0);
  ASSERT_TRUE(shape.arrow);
  EXPECT_LT(shape.arrow->middle.y, 0.0);
  EXPECT_NEAR(shape.arrow->direction, kPi, 1e-9);
}

TEST(Layout, AnArrowStandsBeyondTheTextsWhenBothSidesHaveSome) {
  Draft draft = lines(Form::kAlongMiddle, 2);
  draft.flow = 1;
  const Shape shape = shape_in(draft, straight_pipe(), 0);
  ASSERT_TRUE(shape.arrow);
  EXPECT_GT(shape.arrow->middle.y, 2.5);
}

TEST(Layout, LabelsAtAnEndReachIntoThePipeHoweverTheyAreRead) {
  for (const auto& reading : {ReadingAngle(forward), ReadingAngle(backward)}) {
    for (const Form form : {Form::kAtStart, Form::kAtEnd}) {
      const Shape shape = shape_in(lines(form, 1), straight_pipe(), 0, reading);
      const Box box = box_of(shape.texts[0], 2.0);
      const double from = form == Form::kAtStart ? 3.0 : 40.0 - 3.0 - kWidth;
      EXPECT_NEAR(box.centre.x - box.half_width, from, 1e-9);
    }
  }
}

TEST(Layout, NumbersStandRoundTheirNodeAndClearOfIt) {
  Owner node;
  node.kind = OwnerKind::kNode;
  node.position = {100, 50, 0};
  const Sizes sizes = some_sizes();
  const Box symbol = boxes_of(node, sizes).front();
  for (int variant = 0; variant < variant_count(Form::kBesideNode); ++variant) {
    const Shape shape = shape_in(lines(Form::kBesideNode, 2), node, variant);
    for (const Box& box : boxes_of(shape, sizes)) EXPECT_FALSE(overlap(box, symbol)) << variant;
    EXPECT_GT(shape.texts[0].at.y, shape.texts[1].at.y) << "the first line is the upper one";
  }
}

TEST(Layout, ALeaderRunsToTheLabelAndUnderItsFirstLine) {
  Owner node;
  node.kind = OwnerKind::kNode;
  Draft draft = lines(Form::kOnLeader, 2);
  draft.leader.leader_angle = 3 * kPi / 4;
  draft.leader.distance = std::sqrt(200.0);
  const Shape shape = shape_in(draft, node, 0);
  ASSERT_EQ(shape.lines.size(), 2u);
  EXPECT_NEAR(shape.lines[0].second.x, -10.0, 1e-9);
  EXPECT_NEAR(shape.lines[0].second.y, 10.0, 1e-9);
  EXPECT_NEAR(shape.lines[1].first.x, -10.0 - kWidth, 1e-9);
  EXPECT_NEAR(shape.texts[0].at.x, -10.0 - kWidth, 1e-9);
  EXPECT_GT(shape.texts[0].at.y, 10.0);
  EXPECT_LT(shape.texts[1].at.y, 10.0);
}

TEST(Layout, StakesStandAcrossTheRoute) {
  Draft draft = lines(Form::kStakes, 2);
  draft.stakes = {0.0, 40.0};
  const Shape shape = shape_in(draft, straight_pipe(), 0);
  ASSERT_EQ(shape.lines.size(), 2u);
  EXPECT_NEAR(shape.lines[1].first.x, 40.0, 1e-9);
  EXPECT_NEAR(std::fabs(shape.lines[1].first.y), 1.0, 1e-9);
  EXPECT_NEAR(shape.texts[1].rotation, kPi / 2, 1e-9);
  EXPECT_GT(shape.texts[1].at.y, 1.0);
}

TEST(Layout, ACurveWithoutLengthAtItsStartHasTheDirectionOfWhatFollows) {
  const cad::Curve::Vertex vertices[] = {{{0, 0}, 0.0}, {{0, 0}, 0.0}, {{0, 10}, 0.0}};
  const Owner pipe = pipe_along(cad::Curve::polyline(vertices, false));
  EXPECT_NEAR(place_of(Form::kAtStart, pipe, 0, forward).along, kPi / 2, 1e-9);
}

TEST(Layout, APlaceThatIsNoneIsTheFirst) {
  EXPECT_EQ(place_of(Form::kAlongMiddle, straight_pipe(), 99, forward).variant, 0);
  EXPECT_EQ(place_of(Form::kAlongMiddle, straight_pipe(), -1, forward).variant, 0);
  EXPECT_EQ(leader_angle(99), leader_angle(0));
}

TEST(DrawnPlaceText, IsReadAsItWasWritten) {
  const DrawnPlace place{1234567.25, -3.5, 0.785398, 4, 10.5, 20.25, 3.141593};
  const std::optional<DrawnPlace> read = place_of_text(place_text(place));
  ASSERT_TRUE(read);
  EXPECT_EQ(place_text(place),
            L"( 1234567.250000, -3.500000, 0.785398, 4, 10.500000, 20.250000, 3.141593 )");
  EXPECT_EQ(place_text(*read), place_text(place));
  EXPECT_EQ(read->variant, 4);
  EXPECT_EQ(read->x, 1234567.25);
}

TEST(DrawnPlaceText, DamagedOnesAreNone) {
  for (const wchar_t* text : {L"", L"(", L"( 1.0, 2.0 )", L"( 1, 2, 3, 4, 5, 6, x )",
                              L"( inf, 2, 3, 4, 5, 6, 7 )", L"( 1, 2, 3, 4, 5, 6, 管 )"})
    EXPECT_FALSE(place_of_text(text));
  EXPECT_FALSE(place_of_text(std::wstring(10000, L'1')));
  EXPECT_FALSE(place_of_text(L"( 1e300, 2, 3, 4, 5, 6, 7 )")) << "no drawing reaches that far";
  EXPECT_EQ(place_of_text(L"( 1, 2, 3, 1e300, 5, 6, 7 )")->variant, 0);
}

}  // namespace
}  // namespace labeler
