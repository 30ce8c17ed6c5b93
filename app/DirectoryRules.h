// Which directories a user may choose. Pure rules: what the machine has to say is passed in.
#pragma once

#include <cstdint>

#include "core/String.h"
#include "core/Vector.h"

namespace korb {

/// What the machine and the archive say about a directory.
struct DirectoryFacts {
  bool drive_exists;           ///< asked for by a directory with a drive letter only
  bool refuses_network;        ///< the archive does
  const String &program_files; ///< the folder of all programs
};

/// The number of the text by which a directory is refused, the first one that applies; 0 for one that may do. The path
/// is not empty, and has no blanks around it.
int32_t RefusalOf(const String &path, const DirectoryFacts &facts);

/// Bytes that files of `sizes` take on a disk, each in whole clusters; a cluster below 1 byte is unknown.
int64_t BytesOnDisk(const Vector<int32_t> &sizes, int32_t cluster);

} // namespace korb
