// The machine's search path, as the boot drive's autoexec.bat sets it.
#pragma once

#include "core/String.h"

namespace korb {

/// Adds InstallDir to the search path, or takes it out. Empty when the file could be opened and read, whether or not a
/// line had to be changed; else what to tell the user, who has to do it by hand.
String EditAutoexecPath(bool add);

} // namespace korb
