// Directories: asking for them, making and removing them.
#pragma once

#include "core/String.h"

namespace korb {

/// Empty when the system can't say.
String CurrentDirectory();
/// True when the directory can be entered; the current one is moved there and back. False for null or empty too.
bool DirectoryExists(const char *path);
/// The same, and no box of the system complains of a drive without a disk.
bool QuietDirectoryExists(const char *path);
/// The one name that the system has for a directory, whatever it is called by. From Windows Vista on that is the long
/// one, with links and substituted drives followed (none to a network). Before, and for a path to nothing, it is the
/// full one, short where it has a short name. For comparing only: characters outside the code page are lost. Empty for
/// a path that is too long.
String SystemName(const char *path);

/// Creates `path` and what is missing above it, other than a root. True when the directory exists at the end, and for a
/// root, even of a missing drive. After a false the last error is that of looking for the directory, not of making it.
bool CreateDirectoryTree(const char *path);
/// False for a path of fewer than 4 characters, and for a directory that is not empty.
bool RemoveEmptyDirectory(const char *path);
/// Removes the directory with all that is in it, but not what links in it lead to. Goes on after a failure, whose error
/// stays behind; false then, and for a path of 3 characters or fewer, and for every path that begins as the Windows
/// directory does.
bool DeleteDirectoryTree(const char *path);

} // namespace korb
