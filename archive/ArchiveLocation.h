// Finds the archive's section in the running executable.
#pragma once

#include <cstdint>

#include "archive/ArchiveCursor.h"
#include "archive/ArchiveFile.h"
#include "archive/LoadedImage.h"

namespace korb {

/// The header's entry for a signature: where in the file it stands, and its bytes. Both are 0 without one.
struct SignatureEntry {
  int32_t place = 0;
  int32_t size = 0;
};

/// Where the section stands. Offsets are bytes from the start of the file.
struct ArchiveLocation {
  int32_t file_size = 0;        ///< without a signature, which stands at the end of the file
  SignatureEntry signature;     ///< as the header gives it; see is_signed
  int32_t pe_offset = 0;        ///< of the PE header
  int32_t section_count = 0;    ///< sections of the file, the archive's included
  int32_t section_index = 0;    ///< of the archive's section
  int32_t section_entry = 0;    ///< offset of its entry in the section table
  uint32_t section_address = 0; ///< from the image's base
  int32_t section_raw_size = 0; ///< bytes of the section in the file
  int32_t section_file_pos = 0; ///< offset of its bytes in the file; never 0

  /// Whether a signature ends where the file does. Bytes after one make it none: they are the archive's then.
  bool is_signed() const { return signature.place == file_size; }
};

/// Walks the PE headers of `file`. Damage is reported and ends the run (codes 43, 44, 9, 10); so does a file without
/// the section, which is how an uninstaller ends that was started without /u.
ArchiveLocation LocateArchive(ArchiveFile &file);

/// A cursor over the section as the loader mapped it, at most as long as both its raw bytes and the image allow. What
/// the headers say of a section that the image doesn't hold gives an empty block.
ArchiveCursor SectionCursor(const ArchiveLocation &location, const LoadedImage &image);

} // namespace korb
