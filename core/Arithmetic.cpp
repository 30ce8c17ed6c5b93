#include "core/Arithmetic.h"

#include <cstring>

#include "core/Failure.h"

namespace korb {

int64_t RoundUp(int64_t value, int64_t multiple) {
  if (multiple <= 1)
    return value;
  const int64_t over = value % multiple;
  return over == 0 ? value : value - over + (over > 0 ? multiple : 0);
}

int32_t CompareDwords(const void *a, const void *b, int32_t count) {
  if (!a || !b)
    return 0;
  // As bytes: the fields of an object are no array, so no pointer to one of them reaches the next.
  const char *p = static_cast<const char *>(a);
  const char *q = static_cast<const char *>(b);
  for (; count > 0; --count, p += sizeof(int32_t), q += sizeof(int32_t)) {
    int32_t left, right;
    memcpy(&left, p, sizeof left);
    memcpy(&right, q, sizeof right);
    if (left != right)
      return left > right ? 1 : -1;
  }
  return 0;
}

bool CopyBits(void *dest, int32_t dest_bit, const void *src, int32_t src_bit, int32_t count) {
  if (!dest || !src || count < 1)
    return false;
  uint8_t *to = static_cast<uint8_t *>(dest);
  const uint8_t *from = static_cast<const uint8_t *>(src);
  for (; count > 0; --count, ++dest_bit, ++src_bit) {
    const int32_t mask = 1 << (dest_bit & 7);
    uint8_t &byte = to[dest_bit >> 3];
    const bool bit = (from[src_bit >> 3] >> (src_bit & 7) & 1) != 0;
    byte = static_cast<uint8_t>(bit ? byte | mask : byte & ~mask);
  }
  return true;
}

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
