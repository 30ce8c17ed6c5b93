// The end of the uninstaller's own file.
#pragma once

#include <cstdint>

#include "core/String.h"

namespace korb {

enum SelfRemoval : int32_t {
  SELF_REMOVAL_STARTED = 0,
  SELF_REMOVAL_NOT_WRITTEN = 1,
  SELF_REMOVAL_NOT_STARTED = 2,
};

/// Writes the batch that removes the running program, `subdirectory` of InstallDir and InstallDir, and starts it,
/// minimised, without waiting: it goes to work when this process has ended. Shows nothing when that fails; the
/// uninstaller then stays.
SelfRemoval RemoveSelf(const String &subdirectory);

} // namespace korb
