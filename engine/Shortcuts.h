// The shortcuts of a product, and those to its uninstaller.
#pragma once

#include <cstdint>

#include "archive/InstallConfig.h"
#include "engine/Journal.h"

namespace korb {

/// Puts the uninstaller's desktop shortcut on ShortcutList where the archive wants one. UninstallerPath and
/// UninstallCommand stand by then.
void AddUninstallerShortcut();

/// Makes what ShortcutList asks for, then the uninstaller's shortcuts in the start menu and in its own folder. Each one
/// that is made is listed for the uninstall, unless it is to stay; each that fails is an error of `journal`.
void MakeShortcuts(const InstallConfig &config, Journal &journal);

/// Tells the shell that the desktop has changed, once a shortcut on it was wanted.
void TellShellOfShortcuts(const InstallConfig &config);

} // namespace korb
