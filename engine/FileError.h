// The report of a file that could not be dealt with.
#pragma once

#include "core/String.h"

namespace korb {

/// Appends text 31 and `path`, and on a line of its own what the system says of its last error, which may be nothing.
void AppendFileError(String &report, const char *path);

} // namespace korb
