// A machine as far as a product can change it: looked at often, compared, and put back.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "core/Windows.h"

namespace korb::faults {

/// By name what it is. A name begins with "file ", "key " or "value ". A file is its bytes' size and sum, its date and
/// its attributes; a directory has no size. What differs from run to run is left out, or is there without its contents.
using State = std::map<std::string, std::string>;

/// Every place that a product of these tests can change, and those near it where it must not: looked at many times. The
/// whole machine is compared once, by Snapshot.h.
State TakeState();

/// What a state says of a file, without its date and attributes.
std::string BytesOf(const std::string &what);

/// A line for each difference: "gone NAME", "new NAME", "other NAME", or "dated NAME" for a file whose bytes are the
/// same.
std::vector<std::string> Compare(const State &before, const State &after);

/// The bytes of the files of a state, by path.
using Backup = std::map<std::string, std::string>;
Backup TakeBackup(const State &state);

/// Makes of a machine that is `now` the one that is wanted. False when something can't be put back, and the machine is
/// of no more use.
bool Restore(const State &wanted, const Backup &backup, State now);

/// Whether files wait for the next start of the machine.
bool IsMovePending();

/// Ends the sessions of the machine and starts it again, which carries out what waits.
void Restart();

/// Waits until no program is left that a run has started. False after `milliseconds`.
bool WaitForPrograms(int milliseconds);

} // namespace korb::faults
