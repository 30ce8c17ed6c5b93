// Keeps the windows alive between the steps of a long phase.
#pragma once

namespace korb {

/// Handles every window message that waits now and returns; does not wait for one. True when it met a closing message,
/// which it handles and leaves the later ones queued. A cancel that the user confirms in here ends the process.
/// Defined by ui/ in the program; the test programs count the calls.
bool PumpMessages();

} // namespace korb
