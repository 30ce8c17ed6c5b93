// An uninstall run, from the product's name to the last message.
#pragma once

#include "core/String.h"

namespace korb {

/// Undoes what the installation of `name` has recorded, in the reverse spirit of its order, and tells the user how that
/// ended. True when nothing is left to do, and the uninstaller's own file may go.
///
/// False when there is no such product or its record can't be used, in which case nothing has changed; and when a file
/// could not be removed: the record then holds what stayed, and a second run may finish it. A user who declines ends
/// the process.
bool RunUninstall(const String &name);

} // namespace korb
