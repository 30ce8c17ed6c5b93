#include "core/RationalStepper.h"

#include "core/Failure.h"

namespace korb {

RationalStepper::RationalStepper(int32_t numerator, int32_t denominator) {
  if (denominator == 0)
    InternalError("Core", 12090);
  const int64_t top = denominator < 0 ? -int64_t{numerator} : numerator;
  const int64_t bottom = denominator < 0 ? -int64_t{denominator} : denominator;
  negative_ = top < 0;
  whole_ = static_cast<int32_t>(top / bottom);
  const int64_t rest = top % bottom;
  remainder_ = static_cast<int32_t>(rest < 0 ? -rest : rest);
  denominator_ = bottom;
}

int32_t RationalStepper::next() {
  const int64_t sum = int64_t{accumulator_} + remainder_;
  if (sum < denominator_) {
    accumulator_ = static_cast<int32_t>(sum);
    return whole_;
  }
  accumulator_ = static_cast<int32_t>(sum - denominator_);
  return negative_ ? whole_ - 1 : whole_ + 1;
}

} // namespace korb
