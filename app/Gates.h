// What must be true before an installation begins. A refusal is reported, and ends the run; in a silent one the report
// is left out unless the archive asks for its errors.
#pragma once

#include "archive/InstallConfig.h"
#include "engine/InstalledProduct.h"

namespace korb {

/// Refuses to run after the archive's last day; an archive without a valid one never expires.
void RefuseExpired(const InstallConfig &config);
/// Refuses a system that the archive excludes.
void RefusePlatform(const InstallConfig &config);
/// With IF_MASTER_PRODUCT, refuses to go on without that product, and puts its directory in for the proposed directory
/// "<master>".
void RequireMasterProduct(InstallConfig &config);
/// What is to happen with an earlier installation that is still there: refuses with IF_REFUSE_REINSTALL, asks, or takes
/// it without asking. True when the run is a reinstall: InstallDir is then its
/// directory. `version` is this product's, or empty.
bool DecideOnReinstall(const EarlierInstallation &earlier, const String &version);

} // namespace korb
