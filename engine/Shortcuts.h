// The shortcuts of a product, and those to its uninstaller.
#pragma once

#include <cstdint>

#include "archive/InstallConfig.h"
#include "engine/InstallNotes.h"

namespace korb {

/// Puts the uninstaller's desktop shortcut on the list of shortcuts where the archive wants one.
void AddUninstallerShortcut(InstallNotes &notes);

/// Makes what the list of shortcuts asks for, then the uninstaller's in the start menu and in its own folder. Each one
/// that is made is listed for the uninstall, unless it is to stay; each that fails is an error. True when one on the
/// desktop was wanted, made or not: TellShellOfShortcuts is then due.
bool MakeShortcuts(const InstallConfig &config, InstallNotes &notes);

/// Tells the shell that the desktop has changed.
void TellShellOfShortcuts(const InstallConfig &config);

} // namespace korb
