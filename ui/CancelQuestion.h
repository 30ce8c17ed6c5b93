// The question whether a run is to end before its time.
#pragma once

namespace korb {

/// Asks, and ends the run on yes; returns on no.
void AskCancel();

} // namespace korb
