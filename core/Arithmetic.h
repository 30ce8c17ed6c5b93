// Small arithmetic that several layers share.
#pragma once

#include <cstdint>

namespace korb {

/// `value` raised to the next multiple of `multiple`; unchanged with a multiple of 1 or less.
int64_t RoundUp(int64_t value, int64_t multiple);

/// 1 or -1 by the first difference, 0 when all `count` are equal or either array is null.
int32_t CompareIntArrays(const int32_t *a, const int32_t *b, int32_t count);

/// Copies `count` bits, least significant bit of a byte first; other bits of `dest` keep their value. The two must not
/// overlap. False with a null pointer, or with a count below 1.
bool CopyBits(void *dest, int32_t dest_bit, const void *src, int32_t src_bit, int32_t count);

} // namespace korb
