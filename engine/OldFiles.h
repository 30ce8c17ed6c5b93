// Old files that go before anything new is placed.
#pragma once

#include "archive/InstallConfig.h"
#include "core/Vector.h"
#include "engine/Journal.h"

namespace korb {

/// Deletes the file of each record whose condition holds; one in use goes at the next start where its record allows it,
/// which sets IF_REBOOT_NEEDED. Names become full paths in place. What happened is told in `journal`, where
/// only a deletion that could not even be registered is an error.
void DeleteOldFiles(Vector<FileDeletion> &records, Journal &journal);

} // namespace korb
