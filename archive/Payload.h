// Gathers the payload into one block.
#pragma once

#include <cstdint>

#include "archive/ArchiveCursor.h"
#include "archive/ArchiveFile.h"
#include "archive/ArchiveHeader.h"
#include "archive/ArchiveLocation.h"
#include "archive/InstallConfig.h"
#include "archive/PayloadHost.h"

namespace korb {

/// Brings the payload together, verifies it, unpacks it with IF_PACKED_PAYLOAD, and leaves `cursor`, which comes in as
/// a cursor over the section, at the first record in a block of exactly the payload's length.
///
/// The block stays in place for the rest of the run: the loaded image (then no byte was copied), `buffer`, or an
/// unpacked block that nothing frees. Volumes are looked for in `volume_directory`, and asked for until they are
/// there. Damage is reported and ends the run (codes 50, 55, 60, and the text of error 2).
void AssemblePayload(ArchiveFile &file, const ArchiveLocation &location, const ArchiveHeader &header,
                     const InstallConfig &config, const String &volume_directory, PayloadHost &host, String &buffer,
                     ArchiveCursor &cursor);

} // namespace korb
