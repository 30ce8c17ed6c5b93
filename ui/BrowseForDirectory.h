// The shell's dialog for choosing a directory.
#pragma once

#include "core/String.h"
#include "core/Windows.h"

namespace korb {

/// Lets the user browse all drives, from `path` on. False, and `path` as it was, when nothing was chosen.
bool BrowseForDirectory(HWND owner, String &path);

} // namespace korb
