// Reads the decoded configuration of an archive.
#pragma once

#include <cstdint>

#include "archive/ConfigHost.h"
#include "archive/InstallConfig.h"
#include "core/MemoryStream.h"

namespace korb {

/// Walks `stream` from its start, field by field in the order of Format.h, and fills `config` and the values of
/// core/RunValues.h. `own_file_size`, in bytes, bounds the place of the stub patch.
///
/// Any bytes end in a filled configuration or in a damage report, which ends the run (codes 19, 21, 23, 24, 26, 30 to
/// 32, 36 to 38): a stream that is cut short reads as zeros and empty texts, so that the next limit speaks.
///
/// `config.uninstall_name` may hold a name already. Creates CommonDir, with IF_UNINSTALL, long before the user has
/// agreed to anything.
void ReadConfigStream(MemoryStream &stream, int32_t own_file_size, ConfigHost &host, InstallConfig &config);

} // namespace korb
