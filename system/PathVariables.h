// The path variables of an archive's texts, such as "%InstallDir%".
#pragma once

#include "core/String.h"

namespace korb {

/// Replaces every variable in `text`, in any case of its letters, by its value of this moment. The order of the table
/// counts: a value that names a later variable is expanded in its turn. Unknown names stay.
void ExpandPathVariables(String &text);

} // namespace korb
