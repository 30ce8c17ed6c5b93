// The random source.
#pragma once

#include <cstdint>

namespace korb {

/// 0 to `range` - 1. A range of 0x7FFFFFFF gives all 31 bits as they come, one below 2 gives 0.
int32_t RandomNumber(int32_t range);

} // namespace korb
