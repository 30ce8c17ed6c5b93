// Old files that go before anything new is placed.
#pragma once

#include "archive/InstallConfig.h"
#include "core/Vector.h"

namespace korb {

/// Deletes the file of each record whose condition holds; one in use goes at the next start where its record allows it,
/// which sets IF_REBOOT_NEEDED. Names become full paths in place. What happened goes to LogText, and a deletion that
/// could not even be registered to ErrorReport.
void DeleteOldFiles(Vector<FileDeletion> &records);

} // namespace korb
