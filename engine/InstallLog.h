// Install.LOG, and how an installation ends for its user.
#pragma once

#include "core/Date.h"
#include "engine/Journal.h"

namespace korb {

/// The block of one run: who, when, where, then what `journal` holds.
String InstallLogBlock(bool is_reinstall, const Journal &journal, const DateTime &now);

/// Tells the user how the run ended, which with `show_result` opens a box unless AutomaticMode is on, and appends the
/// run's block to the log when there are errors or IF_ALWAYS_LOG is set. The user is asked before that whether to see
/// the log, which is in `uninstall_dir`; one that could not be written is not shown.
void WriteInstallLog(const String &uninstall_dir, bool is_reinstall, bool show_result, Journal journal);

} // namespace korb
