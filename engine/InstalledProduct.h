// What the system knows of a product that is installed.
#pragma once

#include "core/String.h"
#include "format/Texts.h"

namespace korb {

/// True when a product of this uninstall name can be uninstalled, its own way or silently. `location`, unless it is
/// null, gets its directory, which may be empty; otherwise it is emptied.
bool IsProductInstalled(const String &name, String *location);

/// The earlier installation of the product that is being installed.
struct EarlierInstallation {
  String location;       ///< its directory
  String version;        ///< its version, or empty
  String shared_files;   ///< entries of the shared files that it counts
  bool is_there = false; ///< the directory still exists

  /// The text by which the question begins whether to install `new_version` over it: with IF_COMPARE_VERSIONS, and
  /// where both have a version, that tells which is newer.
  TextNumber ReinstallText(const String &new_version) const;

  /// Reads it by its uninstall name. Nothing is read when there is none.
  void Find(const String &uninstall_name);
};

} // namespace korb
