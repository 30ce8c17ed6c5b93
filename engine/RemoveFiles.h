// Removing what the uninstall list names.
#pragma once

#include "core/String.h"
#include "core/Vector.h"
#include "engine/UninstallRecord.h"

namespace korb {

/// Deletes the files and keys that the lines of `entries` name, in their order, then the directories, inner ones first,
/// with those above them that are empty by then; other than InstallDir and what is not empty. Shows its course.
///
/// A file that can't be deleted gets a line in `report` and goes to `left`, the list of a second run. What is
/// missing, and a directory that stays, are no failures.
void RemoveListedFiles(const Vector<String> &entries, String &report, UninstallList &left);

} // namespace korb
