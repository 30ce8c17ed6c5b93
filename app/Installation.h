// An installation, from the archive to the end of the process.
#pragma once

#include "core/String.h"
#include "files/DiskFile.h"

namespace korb {

/// Installs what `own_file`, the running executable, carries. `run_after` is a command line, started at the end of a
/// run without any failure; it may be empty. Ends the process on every road; `own_file` stays open until then.
[[noreturn]] void RunInstallation(DiskFile &own_file, const String &run_after);

} // namespace korb
