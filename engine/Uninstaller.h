// The uninstaller and what it is called by.
#pragma once

#include "archive/InstallConfig.h"
#include "engine/Journal.h"

namespace korb {

/// Writes UninstallerImage to UninstallerPath and the values of the product's Uninstall key, by which the system shows
/// and starts it, and which an uninstall run and a later installation read back. `journal` gets an error when the file
/// can't be written, and when the key does not keep what was written. A file that waits for the next start has set
/// IF_REBOOT_NEEDED before the flags are stored.
///
/// UninstallerPath and UninstallCommand must be set, and SharedFiles and ProductFonts complete.
void WriteUninstaller(const InstallConfig &config, Journal &journal);

} // namespace korb
