// The text of wininit.ini, by which Windows 9x moves and deletes files at its next start.
#pragma once

#include "core/String.h"

namespace korb {

/// Adds "left=right" as the first entry of the section [rename], which is made at the end when there is none. The
/// system moves `right` to `left`; a left side of NUL deletes.
void AddRename(String &text, const char *left, const char *right);

} // namespace korb
