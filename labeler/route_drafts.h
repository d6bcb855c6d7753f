#pragma once

#include <optional>
#include <span>

#include "labeler/draft.h"

/// Stake labels along a route.
namespace labeler {

/// The route's stakes as its record keeps them.
struct StakePlan {
  double interval = 50.0;  ///< m between stakes, above 0
  double first = 0.0;      ///< the stake at the start of the route, m
  CString name;            ///< handed to the stake formatter
};

/// A label at the start, at each whole multiple of the interval, and at the end.
Drafted draft_stakes(const Owner& route, const StakePlan& plan);

/// More stakes than that on one route are not drawn.
inline constexpr double kMostStakes = 10000;

/// The plan in the items of a record; nothing when they hold none.
std::optional<StakePlan> stake_plan_of(std::span<const StuDim> items);

}  // namespace labeler
