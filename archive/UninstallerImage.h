// Makes the uninstaller out of the installer.
#pragma once

#include <cstdint>

#include "archive/ArchiveFile.h"
#include "archive/ArchiveHeader.h"
#include "archive/ArchiveLocation.h"
#include "archive/InstallConfig.h"

namespace korb {

/// Fills `image` with the executable less its archive section: a working program that has no archive. Needs the
/// configuration, for IF_VERIFY_STUB and the patch. Damage is reported and ends the run (codes 35, 40, 42).
void BuildUninstallerImage(ArchiveFile &file, const ArchiveLocation &location, const ArchiveHeader &header,
                           const InstallConfig &config, String &image);

} // namespace korb
