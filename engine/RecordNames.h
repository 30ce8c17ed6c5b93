// Where an installation's record stands, on the disk and in the registry: the same for who writes and who reads it.
#pragma once

#include "core/String.h"

namespace korb {

// Files beside the uninstaller, by InstallDir and UninstallSubdir as they are at the call.

/// What was installed, and the texts of the uninstaller.
String UninstallDataPath();
/// What happened in each installation.
String InstallLogPath();
/// The picture that the uninstaller's window shows.
String BackgroundBitmapPath();

/// Name of the value that keeps what an association has replaced: such values are never another product's.
String BackupValueName();

} // namespace korb
