// The step of an installation in which the user settles where the product goes.
#pragma once

#include <cstdint>

#include "core/Vector.h"

namespace korb {

/// Asks for InstallDir until it will do, and makes it. `sizes` are those of the files to be placed, for the room that
/// they need. Ends the run when the user cancels.
void AskDirectory(const Vector<int32_t> &sizes);

} // namespace korb
