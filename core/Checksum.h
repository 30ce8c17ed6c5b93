// The sum that guards every stored block of an archive.
#pragma once

#include <cstdint>

namespace korb {

/// A fixed start, the whole little-endian words, the rest as signed bytes, and `n`, added with wrap-around. Blind to
/// the order of words. A null `p`, or `n` below 1, gives the start alone.
uint32_t Checksum32(const void *p, int32_t n);

} // namespace korb
