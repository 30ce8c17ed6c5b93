#include "core/Checksum.h"

#include <cstring>

namespace korb {

namespace {

uint32_t WordAt(const char *bytes) {
  uint32_t word;
  memcpy(&word, bytes, sizeof word); // contents of an archive stand at any address
  return word;
}

} // namespace

uint32_t Checksum32(const void *p, int32_t n) {
  uint32_t sum = 0x79E2BC9D;
  if (!p || n < 1)
    return sum;
  const char *bytes = static_cast<const char *>(p);
  const char *const end = bytes + n;
  // Two sums, as each addition waits for the one before it.
  uint32_t other = static_cast<uint32_t>(n);
  for (; end - bytes >= 8; bytes += 8) {
    sum += WordAt(bytes);
    other += WordAt(bytes + 4);
  }
  if (end - bytes >= 4) {
    sum += WordAt(bytes);
    bytes += 4;
  }
  for (; bytes < end; ++bytes)
    sum += static_cast<uint32_t>(static_cast<int8_t>(*bytes));
  return sum + other;
}

} // namespace korb
