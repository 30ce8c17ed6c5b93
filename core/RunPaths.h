// The two directories of a run that the path variables of its texts name.
#pragma once

#include "core/String.h"

namespace korb {

/// Where the product goes. Filled by /d:; the run sequence settles it in its directory phase.
extern String InstallDir;
/// Directory for files that products share; empty without IF_UNINSTALL. Filled by the configuration stream.
extern String CommonDir;

} // namespace korb
