// Temporary files.
#pragma once

#include "core/String.h"

namespace korb {

/// Without a backslash at its end; "c:\temp" where the system names none. Valid for the whole run.
const char *TempDirectory();
/// Makes an empty file in `directory`, or in TempDirectory for a null or empty one, and gives its full name. Empty when
/// it can't be made.
String TempFileName(const char *directory);

} // namespace korb
