// How long a phase has been on screen.
#pragma once

#include <cstdint>

namespace korb {

/// True as long as less than `milliseconds` have gone since the tick count `start`. The counter may have wrapped in
/// between; a clock that stepped back counts by how far it did.
inline bool PhaseHasTimeLeft(uint32_t start, uint32_t now, int32_t milliseconds) {
  uint32_t elapsed = now - start;
  if (elapsed > 0x7FFFFFFF)
    elapsed = 0 - elapsed;
  // Half the counter's range has no sign to turn: it stays negative and ends the wait.
  return static_cast<int32_t>(elapsed) >= 0 && static_cast<int32_t>(elapsed) < milliseconds;
}

} // namespace korb
