// The notice before the pages: what the user is to know, and may decline, before anything else of the installation.
#pragma once

namespace korb {

/// Shows the archive's notice, if it has one and IF_NOTICE is set, to be accepted or declined. True ends the run: the
/// user declined. Not for a silent run.
bool RunNotice();

} // namespace korb
