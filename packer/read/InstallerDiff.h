// What changes for a user between two installers.
#pragma once

#include <ostream>

#include "packer/release/Release.h"

namespace korb::packer {

/// Writes how `after` differs from `before`: a line for each thing that is added, removed or changed, or JSON. Says
/// so when all of that is the same.
void WriteDiff(const Release &before, const Release &after, bool json, std::ostream &out);

} // namespace korb::packer
