// The batch that removes an uninstaller.
#pragma once

#include "core/String.h"

namespace korb {

/// Where the batch that removes the uninstaller stands, whatever drive the system is on.
inline constexpr const char *kSelfRemovalBatch = "c:\\delunins.bat";

/// The batch: deletes `program` as soon as that is possible, then the directories as far as they are empty, then
/// itself. Nothing is removed in `subdirectory`, relative to `install_dir`, when it is empty.
String SelfRemovalText(const char *program, const char *install_dir, const char *subdirectory);

} // namespace korb
