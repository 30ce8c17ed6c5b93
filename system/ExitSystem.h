// Ending or restarting the system.
#pragma once

#include <cstdint>

namespace korb {

enum ExitAction : int32_t {
  kExitPowerOff = 1,
  kExitRestart = 2,
  kExitLogOff = 3,
  kExitShutDown = 4, ///< as any other value
};

/// Asks the system to end. Without `force` its programs may object, unless they hang. True when the request was taken.
bool ExitSystem(ExitAction action, bool force);

} // namespace korb
