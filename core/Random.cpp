#include "core/Random.h"

#include <cstdlib>

namespace korb {

int32_t RandomNumber(int32_t range) {
  if (range <= 1)
    return 0;
  // `rand` of a small C library has 15 bits; the sum covers 31.
  const uint32_t high = static_cast<uint32_t>(rand()) << 16;
  const int32_t word = static_cast<int32_t>((high + static_cast<uint32_t>(rand())) & 0x7FFFFFFF);
  return range == 0x7FFFFFFF ? word : word % range;
}

} // namespace korb
