// Paths of the registry.
#pragma once

#include "core/String.h"

namespace korb {

/// "Software\" and `path`.
String SoftwarePath(const char *path);
/// Cuts a path at its last backslash, or after a drive-like colon, into key and name. False, and nothing changed, when
/// it has neither.
bool SplitRegistryPath(const char *path, String &key, String &name);

} // namespace korb
