// The system's reference counts of files that products share.
#pragma once

#include "engine/Journal.h"

namespace korb {

/// Takes the counts of `SharedFiles` back when the run is a reinstall, counts each of SharedFileList once more, and
/// leaves the new entries in SharedFiles. When the key can't be opened, that is an error of `journal`, and SharedFiles stays the
/// earlier list. Files are not touched. Does nothing without IF_UNINSTALL: nobody would take the counts back.
void CountSharedFiles(Journal &journal);

} // namespace korb
