// The keyed transform over the stored configuration.
#pragma once

#include <cstdint>

namespace korb {

/// Changes the `count` bytes at `block` in place: each little-endian dword is XORed with `key`, each of the 1 to 3
/// bytes after the last dword with the key's byte of the same rank, lowest first. A second time with the same key
/// undoes it.
void ScrambleBlock(void *block, int32_t count, uint32_t key);

} // namespace korb
