// The path variables of an archive's texts, such as "%InstallDir%".
#pragma once

#include "core/String.h"

namespace korb {

/// Replaces every variable in `text`, in any case of its letters, by its value of this moment. The order of the table
/// counts: a value that names a later variable is expanded in its turn. Unknown names stay.
void ExpandPathVariables(String &text);

/// The value of one variable at this moment; `name` is one of path_variable (format/Words.h) itself. Of any other text,
/// one that reads the same too, it is empty.
String PathVariableValue(const char *name);

} // namespace korb
