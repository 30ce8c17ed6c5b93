// The folders of the shell and of the system: from the registry, with what stands in for a missing entry.
#pragma once

#include "core/String.h"

namespace korb {

/// A folder of the shell by its value name, or empty. Asks the registry, without a backslash at the end.
String ShellFolder(const char *value, bool all_users);
/// A setting of the system by its value name, or empty; the same way.
String WindowsSetting(const char *value);

// None of these asks whether the folder exists. Nothing is cached: each call reads the registry.

String DesktopFolder();
String DesktopAllFolder();
String DocumentFolder();
String DocumentAllFolder();
String FavoritesFolder();
String FavoritesAllFolder();
String FontFolder();
String StartMenuFolder();
String StartMenuAllFolder();
String StartMenuProgramsFolder();
String StartMenuProgramsAllFolder();
String StartupFolder();
String StartupAllFolder();
String ProgramFilesFolder();
String CommonFilesFolder();
String MediaFolder();
String DeviceFolder();
/// The system's own, else below the Windows directory.
String SystemFolder();
/// In upper case; C when the registry does not tell.
char BootDriveLetter();

// What the machine tells, apart from the folders themselves.

/// A text of the registry by its path below the root, value name included; empty when it is missing. Looking for it
/// creates its key.
String MachineSetting(const char *path);
String UserSetting(const char *path);
/// What the system gives as its own directory; may be empty.
String RawSystemDirectory();
/// The value of %SystemRoot%, or empty.
String SystemRoot();

} // namespace korb
