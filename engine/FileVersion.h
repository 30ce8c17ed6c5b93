// The version text in a file's resources.
#pragma once

#include "core/String.h"

namespace korb {

/// The FileVersion text of the file at `path` in US English and the Windows code page, the only one looked at; empty
/// when there is none. `normalise`: as NormaliseVersion makes it.
String ReadFileVersion(const char *path, bool normalise);

} // namespace korb
