// The list of what an uninstall removes.
#pragma once

#include <cstdint>

#include "core/BucketTable.h"
#include "core/String.h"

namespace korb {

enum UninstallEntryMode : int32_t {
  kUninstallFile = 0,
  kUninstallDirectory = 1,
  kUninstallKey = 2, ///< '!' and a registry path; read by uninstallers, never written by an installation
};

class UninstallList {
public:
  UninstallList();

  /// Appends the line for `path`, whose case is kept. A path of 3 characters or fewer is passed over, so that no
  /// drive's root gets in. A directory is listed once, whatever its case; a file as often as it comes.
  void AddUninstallEntry(const char *path, UninstallEntryMode mode);

  /// Lines ended by "\r\n", in the order of the calls: a file's path, or '~' and a directory's.
  const String &text() const { return text_; }

private:
  String text_;
  BucketTable<bool, String> listed_paths_; // in capitals, and no files
};

} // namespace korb
