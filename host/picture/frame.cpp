#include "host/picture/frame.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace cad::picture {
namespace {

constexpr int kLongSide = 1600, kShortestSide = 160;
constexpr double kMargin = 0.025;  // of the longer side, all round
constexpr double kMuchFarther = 50.0;

bool has_extent(const Item& item) {
  return item.kind != Item::Kind::kRay && item.kind != Item::Kind::kXline;
}

double median(std::vector<double>& values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

/// The distance from the middle from which on items are far away; infinity when none are.
double far_distance(const Scene& scene, Point middle, std::vector<double>& distances) {
  for (const Item& item : scene.items)
    if (has_extent(item))
      distances.push_back(
          std::max({std::abs(item.box.left - middle.x), std::abs(item.box.right - middle.x),
                    std::abs(item.box.bottom - middle.y), std::abs(item.box.top - middle.y)}));
  std::vector<double> sorted = distances;
  std::sort(sorted.begin(), sorted.end());
  const std::size_t most = std::max<std::size_t>(1, sorted.size() / 50);
  double far = Box::kFar;
  for (std::size_t i = sorted.size(); i-- > 1 && sorted.size() - i <= most;)
    if (sorted[i] > kMuchFarther * sorted[i - 1] && sorted[i - 1] > 0.0) far = sorted[i];
  return far;
}

Box box_of(const Scene& scene, std::size_t& far_away) {
  std::vector<double> xs, ys, distances;
  for (const Item& item : scene.items)
    if (has_extent(item)) {
      xs.push_back((item.box.left + item.box.right) / 2.0);
      ys.push_back((item.box.bottom + item.box.top) / 2.0);
    }
  Box box;
  if (xs.empty()) return box;
  const double far = far_distance(scene, {median(xs), median(ys)}, distances);
  std::size_t i = 0;
  for (const Item& item : scene.items) {
    if (!has_extent(item)) continue;
    if (distances[i++] < far)
      box.add(item.box);
    else
      ++far_away;
  }
  return box;
}

PictureSize size_for(const Box& box) {
  const double ratio = box.width() / box.height();
  const auto shorter = [](double share) {
    return std::clamp(static_cast<int>(std::lround(kLongSide * share)), kShortestSide, kLongSide);
  };
  return ratio >= 1.0 ? PictureSize{kLongSide, shorter(1.0 / ratio)}
                      : PictureSize{shorter(ratio), kLongSide};
}

}  // namespace

Frame frame_of(const Scene& scene, std::optional<Box> window, std::optional<PictureSize> size) {
  Frame frame;
  Box box = window ? *window : box_of(scene, frame.far_away);
  if (box.is_empty()) box = {0.0, 0.0, 1.0, 1.0};
  // Something without width or height is shown in the middle of as much as it has otherwise.
  const double longer = std::max(box.width(), box.height());
  const double margin = !(longer > 0.0) ? 0.5 : window ? 0.0 : longer * kMargin;
  const double least = window ? 0.0 : longer / 20.0;
  const Point middle{(box.left + box.right) / 2.0, (box.bottom + box.top) / 2.0};
  const double half_width = std::max(box.width(), least) / 2.0 + margin;
  const double half_height = std::max(box.height(), least) / 2.0 + margin;
  box = {middle.x - half_width, middle.y - half_height, middle.x + half_width,
         middle.y + half_height};

  const PictureSize pixels = size ? *size : size_for(box);
  View& view = frame.view;
  view.width = pixels.width;
  view.height = pixels.height;
  view.scale = std::min(pixels.width / box.width(), pixels.height / box.height());
  view.left = middle.x - pixels.width / view.scale / 2.0;
  view.top = middle.y + pixels.height / view.scale / 2.0;
  return frame;
}

}  // namespace cad::picture
