// The system's reference counts of files that products share.
#pragma once

#include "engine/InstallNotes.h"

namespace korb {

/// Counts each of `shared_file_list` once more, and notes the entries in `shared_files`. `earlier` are the entries of an
/// earlier installation, whose counts are taken back first when the run is a reinstall. When the key can't be opened,
/// that is an error, and the entries noted are the earlier ones. Files are not touched. Does nothing without
/// IF_UNINSTALL: nobody would take the counts back.
void CountSharedFiles(InstallNotes &notes, const String &earlier, bool is_reinstall);

} // namespace korb
