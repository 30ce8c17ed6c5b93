// The files of shortcuts, made by the shell's own object.
#pragma once

#include "core/String.h"

namespace korb {

/// Makes the shortcut `path`, which gets its extension in place, and the directories above it. `arguments`,
/// `working_dir` and `icon` may be empty; an empty icon takes the target's. False when the shell has no such object or
/// does not save it; `path` is then what it was at the failure.
bool CreateShortcut(String &path, const char *target, const char *arguments, const char *working_dir, const char *icon);

} // namespace korb
