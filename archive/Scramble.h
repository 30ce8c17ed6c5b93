// The keyed transform over the stored configuration.
#pragma once

#include <cstdint>

namespace korb {

class String;

/// Changes every byte of `block` in place: each little-endian dword is XORed with `key`, each of the 1 to 3 bytes
/// behind the last dword with the key's byte of the same rank, lowest first. A second time with the same key undoes it.
void ScrambleBlock(String &block, uint32_t key);

} // namespace korb
