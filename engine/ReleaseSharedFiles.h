// Giving back a product's references to shared files.
#pragma once

#include "core/String.h"

namespace korb {

/// Counts down the reference to each file of SharedFiles as `files` holds it, and removes the files that nobody counts
/// any more, unregistered first where that is theirs, other than those that are to stay or that the user keeps. False,
/// and nothing done, when the counts can't be reached.
bool ReleaseSharedFiles(String files);

} // namespace korb
