// Where a dialog stands.
#pragma once

#include "core/Windows.h"

namespace korb {

/// Moves a window to the middle of the screen, and makes it no larger than that. Every dialog calls it as it comes up.
void CenterDialog(HWND window);

} // namespace korb
