#include "packer/write/Checksum.h"

namespace korb::packer {

uint32_t Checksum32(std::span<const uint8_t> bytes) {
  uint32_t sum = 0x79E2BC9D;
  const size_t whole = bytes.size() & ~size_t{3};
  for (size_t i = 0; i < whole; i += 4)
    sum += bytes[i] | uint32_t{bytes[i + 1]} << 8 | uint32_t{bytes[i + 2]} << 16 | uint32_t{bytes[i + 3]} << 24;
  for (size_t i = whole; i < bytes.size(); ++i)
    sum += static_cast<uint32_t>(static_cast<int8_t>(bytes[i]));
  return sum + static_cast<uint32_t>(bytes.size());
}

void ScrambleBlock(Bytes &bytes, uint32_t key) {
  for (size_t i = 0; i < bytes.size(); ++i)
    bytes[i] ^= static_cast<uint8_t>(key >> (i & 3) * 8);
}

} // namespace korb::packer
