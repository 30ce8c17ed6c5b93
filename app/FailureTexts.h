// The words of the failure reports that this program itself brings.
#pragma once

#include <cstdint>

#include "core/String.h"

namespace korb {

/// Format of the report of damage, with the code as its one argument: the archive's own text once that is loaded, the
/// built-in one before. Valid as long as the text table.
const char *CorruptFormat();

/// Caption of an error box: the archive's, or the built-in one. Valid as long as the text table.
const char *ErrorCaption();

/// Format of a usage report: the complaint, the program's file name.
extern const char kUsageFormat[];

/// Format of the report of an impossible state: module, line.
extern const char kInternalErrorFormat[];

/// Format of the report that the program can't open its own file: the path.
extern const char kOwnFileFormat[];

} // namespace korb
