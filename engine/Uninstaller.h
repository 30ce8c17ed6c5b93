// What an installation leaves for its undoing: the uninstaller, the product's key and the file of the record.
#pragma once

#include "archive/InstallConfig.h"
#include "engine/InstallNotes.h"

namespace korb {

/// Writes `image` to `uninstaller_path` and the values of the product's Uninstall key, by which the system shows and
/// starts it, and which an uninstall run and a later installation read back. It is an error when the file can't be
/// written, and when the key does not keep what was written. A file that waits for the next start has set
/// IF_REBOOT_NEEDED before the flags are stored.
///
/// The uninstaller's path and command must be set, and the shared files and fonts complete.
void WriteUninstaller(const InstallConfig &config, const String &image, InstallNotes &notes);

/// Writes UninstallRecordText to Uninstall.DAT in `uninstall_dir`, over whatever stands there. False when that fails;
/// the system's last error tells why.
bool WriteUninstallData(const String &uninstall_dir, const UninstallList &list, const String &association_lines);

} // namespace korb
