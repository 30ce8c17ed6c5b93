#include "core/Checksum.h"

#include <cstring>

namespace korb {

uint32_t Checksum32(const void *p, int32_t n) {
  uint32_t sum = 0x79E2BC9D;
  if (!p || n < 1)
    return sum;
  const char *bytes = static_cast<const char *>(p);
  int32_t left = n;
  for (; left >= 4; left -= 4, bytes += 4) {
    uint32_t word;
    memcpy(&word, bytes, 4); // contents of an archive stand at any address
    sum += word;
  }
  for (; left > 0; --left, ++bytes)
    sum += static_cast<uint32_t>(static_cast<int8_t>(*bytes));
  return sum + static_cast<uint32_t>(n);
}

} // namespace korb
