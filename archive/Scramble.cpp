#include "archive/Scramble.h"

namespace korb {

void ScrambleBlock(void *block, int32_t count, uint32_t key) {
  // The rest lies at a multiple of 4, so its bytes meet the key's bytes in the same order as any other.
  char *bytes = static_cast<char *>(block);
  for (int32_t i = 0; i < count; ++i)
    bytes[i] = static_cast<char>(bytes[i] ^ static_cast<char>(key >> (i % 4 * 8)));
}

} // namespace korb
