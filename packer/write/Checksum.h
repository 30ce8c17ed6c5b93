// The checksum and the scrambling that guard an archive.
#pragma once

#include <span>

#include "packer/Bytes.h"

namespace korb::packer {

/// The archive's checksum: the sum of the little-endian dwords, of the 1 to 3 bytes behind them as signed bytes, and
/// of the size, from a fixed start. Blind to the order of dwords; the reader computes the same.
uint32_t Checksum32(std::span<const uint8_t> bytes);

/// XORs `bytes` with `key`, dword by dword, the last 1 to 3 bytes with the key's low bytes. Its own inverse.
void ScrambleBlock(Bytes &bytes, uint32_t key);

} // namespace korb::packer
