// The list of what an uninstall removes.
#pragma once

#include <cstdint>

#include "core/String.h"

namespace korb {

/// Lines ended by "\r\n", in the order of the calls: a file's path, or '~' and a directory's.
extern String UninstallList;

enum UninstallEntryMode : int32_t {
  kUninstallFile = 0,
  kUninstallDirectory = 1,
  kUninstallKey = 2, ///< '!' and a registry path; read by uninstallers, never written by an installation
};

void ClearUninstallList();

/// Appends the line for `path`, whose case is kept. A path of 3 characters or fewer is passed over, so that no drive's
/// root gets in. A directory is listed once, whatever its case; a file as often as it comes.
void AddUninstallEntry(const char *path, UninstallEntryMode mode);

} // namespace korb
