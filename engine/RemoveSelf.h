// The end of the uninstaller's own file.
#pragma once

#include <cstdint>

#include "core/String.h"

namespace korb {

/// Where the batch that removes the uninstaller stands, whatever drive the system is on.
inline constexpr char kSelfRemovalBatch[] = "c:\\delunins.bat";

/// The batch: deletes `program` as soon as that is possible, then the directories as far as they are empty, then
/// itself. Nothing is removed in `subdirectory`, relative to `install_dir`, when it is empty.
String SelfRemovalText(const String &program, const String &install_dir, const String &subdirectory);

enum SelfRemoval : int32_t {
  SELF_REMOVAL_STARTED = 0,
  SELF_REMOVAL_NOT_WRITTEN = 1,
  SELF_REMOVAL_NOT_STARTED = 2,
};

/// Writes the batch for the running program, in `subdirectory` of InstallDir, and starts it, minimised, without waiting: it goes to work when this process has ended. Shows
/// nothing when that fails; the uninstaller then stays.
SelfRemoval RemoveSelf(const String &subdirectory);

} // namespace korb
