// One row of the table that scripts/bench gathers.
#pragma once

#include <algorithm>
#include <cstdio>
#include <vector>

namespace korb::bench {

using Rounds = std::vector<double>; ///< a figure of each round, in their order

inline double Median(Rounds values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

/// Prints what was compared, the median of the yardstick's figures and of ours, in `unit`, and the median of the ratios
/// of each round, which is what counts where a machine's speed drifts, with the lowest and the highest. A goal of 0 is
/// none. Less is better in all. False when the median ratio is above the goal.
inline bool PrintRow(const char *what, const char *unit, const Rounds &yardstick, const Rounds &ours, double goal) {
  Rounds ratios;
  for (size_t i = 0; i < ours.size(); ++i)
    ratios.push_back(ours[i] / yardstick[i]);
  const auto [lowest, highest] = std::minmax_element(ratios.begin(), ratios.end());
  const double ratio = Median(ratios);
  printf("| %s | %.5g %s | %.5g %s | %.2f | %.2f to %.2f |", what, Median(yardstick), unit, Median(ours), unit, ratio,
         *lowest, *highest);
  if (goal > 0)
    printf(" %.2f |\n", goal);
  else
    printf(" |\n");
  fflush(stdout);
  return goal <= 0 || ratio <= goal;
}

} // namespace korb::bench
