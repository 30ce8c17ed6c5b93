// Starting another program.
#pragma once

#include <cstdint>

#include "core/Options.h"

namespace korb {

enum ProcessOptions : uint32_t {
  RP_NONE = 0,
  RP_WAIT = 0x1, ///< for its end, and fetch its exit code
  RP_INHERIT = 0x2,
  RP_IDLE_PRIORITY = 0x4,
  RP_HIGH_PRIORITY = 0x8, ///< wins over idle
  RP_HIDE = 0x10,
  RP_MAXIMIZE = 0x20, ///< wins over minimise, which wins over hide
  RP_MINIMIZE = 0x40,
  RP_REPORT = 0x80, ///< a failed start shows a box
  RP_PUMP = 0x100,  ///< keep the windows alive while waiting; nothing without RP_WAIT
};
template <>
inline constexpr bool IsOptionWord<ProcessOptions> = true;

inline constexpr int32_t kProcessNotStarted = INT32_MIN;
/// Started, but its end was not awaited or its code is not known.
inline constexpr int32_t kProcessCodeUnknown = INT32_MIN + 1;

/// Runs `command` in `directory`, null for the current one. The exit code, or one of the two above.
int32_t RunProcess(const char *command, ProcessOptions flags, const char *directory);

} // namespace korb
