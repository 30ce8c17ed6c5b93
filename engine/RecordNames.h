// Where an installation's record stands, on the disk and in the registry: the same for who writes and who reads it.
#pragma once

#include "core/String.h"

namespace korb {

// Files beside the uninstaller, whose directory is `uninstall_dir`.

/// What was installed, and the texts of the uninstaller.
String UninstallDataPath(const String &uninstall_dir);
/// What happened in each installation.
String InstallLogPath(const String &uninstall_dir);
/// The picture that the uninstaller's window shows.
String BackgroundBitmapPath(const String &uninstall_dir);

/// Name of the value that keeps what an association has replaced: such values are never another product's.
String BackupValueName();

} // namespace korb
