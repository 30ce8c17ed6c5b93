// Small arithmetic that several layers share.
#pragma once

#include <cstdint>
#include <type_traits>

namespace korb {

/// `value` raised to the next multiple of `multiple`; unchanged with a multiple of 1 or less.
int64_t RoundUp(int64_t value, int64_t multiple);

/// Compares `count` signed dwords that lie one after another in memory: 1 or -1 by the first difference, 0 when all are
/// equal or either place is null.
int32_t CompareDwords(const void *a, const void *b, int32_t count);

inline int32_t CompareIntArrays(const int32_t *a, const int32_t *b, int32_t count) {
  return CompareDwords(a, b, count);
}

/// The same of objects that consist of int32_t fields alone: field by field in the order of their declaration.
template <class T>
int32_t CompareFields(const T &a, const T &b) {
  static_assert(std::is_trivially_copyable_v<T> && alignof(T) == alignof(int32_t));
  return CompareDwords(&a, &b, static_cast<int32_t>(sizeof(T) / sizeof(int32_t)));
}

/// Copies `count` bits, least significant bit of a byte first; other bits of `dest` keep their value. The two must not
/// overlap. False with a null pointer, or with a count below 1.
bool CopyBits(void *dest, int32_t dest_bit, const void *src, int32_t src_bit, int32_t count);

/// Spreads a fraction evenly over integer steps, for ramps of colours.
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
