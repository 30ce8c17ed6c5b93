// Spreads a fraction evenly over integer steps, for ramps of colours.
#pragma once

#include <cstdint>

namespace korb {

class RationalStepper {
public:
  /// A denominator of 0 ends the process.
  RationalStepper(int32_t numerator, int32_t denominator);

  /// The next step. Any `denominator` steps in a row add up to `numerator`.
  int32_t next();

private:
  bool negative_;
  int32_t whole_;
  int32_t remainder_; ///< without its sign
  int32_t accumulator_ = 0;
  int64_t denominator_; ///< above 0
};

} // namespace korb
