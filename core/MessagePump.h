// Keeps the windows alive, and what they show true, between the steps of a long phase.
#pragma once

namespace korb {

/// Handles every window message that waits now and returns; does not wait for one. True when it met a closing message,
/// which it handles and leaves the later ones queued. A cancel that the user confirms in here ends the process.
/// Defined by ui/ in the program; the test programs count the calls.
bool PumpMessages();

/// Shows what the run has told of its course and is not on screen yet, and handles the messages of that. For whoever is
/// about to keep the windows waiting: for a user, another program, the disk or the processor. Does nothing where all
/// is shown. A cancel that the user confirms in here ends the process.
/// Defined by ui/ in the program; in the test programs nothing is shown.
void ShowPendingProgress();

} // namespace korb
