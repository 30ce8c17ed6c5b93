// Install.LOG, and how an installation ends for its user.
#pragma once

#include "archive/InstallConfig.h"
#include "engine/InstallNotes.h"

namespace korb {

/// Tells the user how the run ended, which with `show_result` opens a box unless AutomaticMode is on, and appends the
/// run's block to the log, beside the uninstaller, when there are errors or IF_ALWAYS_LOG is set. The user is asked
/// before that whether to see the log; one that could not be written is not shown.
void WriteInstallLog(const InstallConfig &config, const InstallNotes &notes, bool is_reinstall, bool show_result);

} // namespace korb
