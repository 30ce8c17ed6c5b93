#include "archive/Scramble.h"

#include "core/String.h"

namespace korb {

void ScrambleBlock(String &block, uint32_t key) {
  // The rest lies at a multiple of 4, so its bytes meet the key's bytes in the same order as any other.
  char *bytes = block.data();
  for (int32_t i = 0; i < block.length(); ++i)
    bytes[i] = static_cast<char>(bytes[i] ^ static_cast<char>(key >> (i % 4 * 8)));
}

} // namespace korb
