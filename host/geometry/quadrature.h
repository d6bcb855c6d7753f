#pragma once

#include <array>
#include <cmath>

namespace cad {

/// The integral of a smooth function, by Gauss' rule on halves until they agree within 1e-13 of the
/// whole. The value type needs +, * and measure(), the size that is compared.
template <class Value, class Function, class Measure>
Value integral(const Function& function, double from, double to, const Measure& measure,
               double scale) {
  struct Node {
    double x, weight;
  };
  static constexpr std::array<Node, 5> kHalf = {{{0.1488743389816312, 0.2955242247147529},
                                                 {0.4333953941292472, 0.2692667193099963},
                                                 {0.6794095682990244, 0.2190863625159820},
                                                 {0.8650633666889845, 0.1494513491505806},
                                                 {0.9739065285171717, 0.0666713443086881}}};
  const auto rule = [&](double a, double b) {
    const double middle = (a + b) / 2, half = (b - a) / 2;
    Value sum{};
    for (const Node& node : kHalf)
      sum += (function(middle - half * node.x) + function(middle + half * node.x)) * node.weight;
    return sum * half;
  };
  const auto refine = [&](const auto& self, double a, double b, const Value& whole,
                          int depth) -> Value {
    const double middle = (a + b) / 2;
    const Value left = rule(a, middle), right = rule(middle, b);
    Value both = left;
    both += right;
    Value difference = both;
    difference += whole * -1.0;
    if (depth == 0 || !(measure(difference) > 1e-13 * scale)) return both;
    both = self(self, a, middle, left, depth - 1);
    both += self(self, middle, b, right, depth - 1);
    return both;
  };
  constexpr int kDeepest = 20;
  return refine(refine, from, to, rule(from, to), kDeepest);
}

}  // namespace cad
