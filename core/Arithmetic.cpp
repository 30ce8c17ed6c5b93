#include "core/Arithmetic.h"

namespace korb {

int64_t RoundUp(int64_t value, int64_t multiple) {
  if (multiple <= 1)
    return value;
  const int64_t over = value % multiple;
  return over == 0 ? value : value - over + (over > 0 ? multiple : 0);
}

int32_t CompareIntArrays(const int32_t *a, const int32_t *b, int32_t count) {
  if (!a || !b)
    return 0;
  for (int32_t i = 0; i < count; ++i)
    if (a[i] != b[i])
      return a[i] > b[i] ? 1 : -1;
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

} // namespace korb
