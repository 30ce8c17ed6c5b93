// The system's reference counts of files that products share.
#pragma once

namespace korb {

/// Takes the counts of `SharedFiles` back when the run is a reinstall, counts each of SharedFileList once more, and
/// leaves the new entries in SharedFiles. When the key can't be opened, ErrorReport says so, and SharedFiles stays the
/// earlier list. Files are not touched. Does nothing without IF_UNINSTALL: nobody would take the counts back.
void CountSharedFiles();

} // namespace korb
