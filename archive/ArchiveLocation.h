// Finds the archive's section in the running executable.
#pragma once

#include <cstdint>

#include "archive/ArchiveCursor.h"
#include "archive/ArchiveFile.h"
#include "archive/LoadedImage.h"

namespace korb {

/// Where the section stands. Offsets are bytes from the start of the file.
struct ArchiveLocation {
  int32_t file_size = 0;
  int32_t pe_offset = 0;        ///< of the PE header
  int32_t section_count = 0;    ///< sections of the file, the archive's included
  int32_t section_index = 0;    ///< of the archive's section
  int32_t section_entry = 0;    ///< offset of its entry in the section table
  uint32_t section_address = 0; ///< from the image's base
  int32_t section_raw_size = 0; ///< bytes of the section in the file
  int32_t section_file_pos = 0; ///< offset of its bytes in the file; never 0
};

/// Walks the PE headers of `file`. Damage is reported and ends the run (codes 43, 44, 9, 10); so does a file without
/// the section, which is how an uninstaller ends that was started without /u.
ArchiveLocation LocateArchive(ArchiveFile &file);

/// A cursor over the section as the loader mapped it, at most as long as both its raw bytes and the image allow. What
/// the headers say of a section that the image doesn't hold gives an empty block.
ArchiveCursor SectionCursor(const ArchiveLocation &location, const LoadedImage &image);

} // namespace korb
