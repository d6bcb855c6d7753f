#include "labeler/route_drafts.h"

#include <cmath>
#include <utility>

#include "module/manager/draw_value.h"
#include "module/platform/text.h"
#include "module/style/style.h"

namespace labeler {
namespace {

constexpr wchar_t kIntervalNote[] = L"zh_jg";
constexpr wchar_t kFirstNote[] = L"zh_qd";
constexpr wchar_t kNameNote[] = L"zh_xlm";

/// Stakes nearer to each other than that are one, m.
constexpr double kSameStake = 1e-6;

std::vector<double> places_along(double length, const StakePlan& plan) {
  std::vector<double> places = {0.0};
  const double last = plan.first + length;
  for (double n = std::floor(plan.first / plan.interval) + 1.0; n * plan.interval < last;
       n += 1.0) {
    const double place = n * plan.interval - plan.first;
    if (place > places.back() + kSameStake && place < length - kSameStake) places.push_back(place);
  }
  if (length > kSameStake) places.push_back(length);
  return places;
}

}  // namespace

Drafted draft_stakes(const Owner& route, const StakePlan& plan) {
  const double length = route.curve ? route.curve->length() : 0.0;
  if (!(length > 0.0)) return {{}, L"has no length"};
  if (!(plan.interval > 0.0)) return {{}, L"has stakes of no interval"};
  if (!(length / plan.interval < kMostStakes))
    return {{}, L"would get more than 10000 stakes; give a larger interval"};
  Draft draft;
  draft.form = Form::kStakes;
  draft.stakes = places_along(length, plan);
  for (std::size_t i = 0; i < draft.stakes.size(); ++i) {
    const CString text = CDimStyle::Instance().GetZhStr(plan.first + draft.stakes[i], plan.name);
    draft.lines.push_back({{{std::to_wstring(i + 1) + L"@zh_mc", {}, text, {}, {}}}});
  }
  draft.notes = {note_of(kIntervalNote, dim::value_text(plan.interval)),
                 note_of(kFirstNote, dim::value_text(plan.first))};
  if (!plan.name.empty()) draft.notes.push_back(note_of(kNameNote, plan.name));
  return {std::move(draft), nullptr};
}

std::optional<StakePlan> stake_plan_of(std::span<const StuDim> items) {
  StakePlan plan;
  bool found = false;
  for (const StuDim& item : items) {
    if (item.name == kIntervalNote) {
      plan.interval = _wtof(item.value.c_str());
      found = true;
    } else if (item.name == kFirstNote) {
      plan.first = _wtof(item.value.c_str());
    } else if (item.name == kNameNote) {
      plan.name = item.value;
    }
  }
  if (!found) return std::nullopt;
  return plan;
}

}  // namespace labeler
