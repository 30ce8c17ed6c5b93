// An uninstall run, from the product's name to the end of the process.
#pragma once

#include "core/String.h"

namespace korb {

/// Undoes what the installation of `name` has recorded, in the reverse spirit of its order, and tells the user how that
/// ended. When nothing is left to do, the uninstaller's own file goes too.
///
/// Nothing changes when there is no such product or its record can't be used. When a file could not be removed, the
/// record holds what stayed, and a second run may finish it. Ends the process on every road.
[[noreturn]] void RunUninstall(const String &name);

} // namespace korb
