// What is asked of the shell itself: to make the files of shortcuts, and to show them.
#pragma once

#include "core/String.h"

namespace korb {

/// Makes the shortcut `path`, which gets its extension in place, and the directories above it. `arguments`,
/// `working_dir` and `icon` may be empty; an empty icon takes the target's. False when the shell has no such object or
/// does not save it; `path` is then what it was at the failure.
bool CreateShortcut(String &path, const char *target, const char *arguments, const char *working_dir, const char *icon);

/// Tells the shell that the contents of a folder have changed.
void TellShellOfFolder(const char *path);

} // namespace korb
