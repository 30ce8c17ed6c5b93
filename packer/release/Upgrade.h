// What an installer has to take away so that a machine with an earlier release becomes one that never had it.
#pragma once

#include <vector>

#include "packer/check/Findings.h"
#include "packer/release/Release.h"

namespace korb::packer {

struct UpgradeResult {
  size_t deletions = 0, folders = 0; ///< that were added
};

/// Adds to `product`, in which nothing is wrong, what an upgrade from any of `earlier` takes: deletions of files and
/// shortcuts that it no longer brings, the removal of folders that this leaves empty, and of uninstall values. What
/// may be the user's, or may belong to others, stays and is told. An `earlier` of another product is an error.
UpgradeResult PlanUpgrade(const std::vector<Release> &earlier, const Place &place, Product &product,
                          Findings &findings);

} // namespace korb::packer
