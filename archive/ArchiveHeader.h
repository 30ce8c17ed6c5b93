// Reads the plain header of an archive and unlocks the configuration block after it.
#pragma once

#include <cstdint>

#include "archive/ArchiveCursor.h"
#include "archive/ConfigHost.h"
#include "core/MemoryStream.h"
#include "core/Vector.h"
#include "format/Archive.h"

namespace korb {

/// The header's fields, checked against their limits.
struct ArchiveHeader {
  int32_t config_size = 0;       ///< 1 to kConfigSizeLimit - 1
  uint32_t config_key = 0;       ///< scrambles the configuration block and is the checksum of its contents
  uint32_t stub_checksum = 0;    ///< of the file's bytes before the section
  int32_t archive_length = 0;    ///< bytes from the start of the section to the end of the archive data in it
  int32_t payload_size = 0;      ///< bytes of the stored payload
  uint32_t payload_checksum = 0; ///< of the stored payload
  Vector<int32_t> sizes;         ///< bytes of each file's contents, 0 to kMaxFileSize, in payload order

  /// Distance from the section's start to the first byte after the configuration block.
  int64_t payload_offset() const { return header::kSize + int64_t{4} * sizes.count + config_size; }
};

/// Reads the header and the size table; `cursor` is at the section's start and then past the table. Damage is
/// reported and ends the run (codes 20, 22, 45, 27, 29, 28, in the order of the fields); so does an archive newer than
/// this program.
void ReadArchiveHeader(ArchiveCursor &cursor, ArchiveHeader &header);

/// Reads the configuration block at `cursor`, unscrambles and unpacks it into `stream`, which then stands at its start.
/// Sets InstallFlags, turns AutomaticMode on and makes the background window as they ask, and only then compares the
/// checksum. Damage is reported and ends the run (codes 47, 25).
void DecodeConfig(ArchiveCursor &cursor, const ArchiveHeader &header, MemoryStream &stream, ConfigHost &host);

} // namespace korb
