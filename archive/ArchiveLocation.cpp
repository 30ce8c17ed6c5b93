#include "archive/ArchiveLocation.h"

#include <cstring>

#include "core/Failure.h"
#include "format/Archive.h"
#include "format/Damage.h"

namespace korb {

namespace {

constexpr const char *kNoArchive = "This program performs installations and uninstallations.\r\n"
                                   "There is no installation archive present.\r\n"
                                   "No Uninstallation parameters were specified.\r\n\r\n"
                                   "You should not delete this program or execute it directly.";

/// A little-endian field of `width` bytes, 0 when it can't be read.
bool ReadField(ArchiveFile &file, int32_t position, int32_t width, int32_t &value) {
  uint8_t bytes[4] = {};
  const bool read = file.ReadAt(position, bytes, width);
  if (!read)
    memset(bytes, 0, sizeof bytes);
  memcpy(&value, bytes, sizeof value);
  return read;
}

/// Leaves a signature out of the file's size, since whoever signs appends it to all that was packed.
void LeaveOutSignature(ArchiveFile &file, ArchiveLocation &location) {
  SignatureEntry &signature = location.signature;
  file.ReadAt(location.pe_offset + pe::kSignatureAt, &signature, pe::kSignatureEntrySize);
  if (signature.size > 0 && signature.place > 0 && signature.place == location.file_size - signature.size)
    location.file_size = signature.place;
}

/// Sets the entry's offset and index; the index is the section count when there is no such section.
void FindSection(ArchiveFile &file, ArchiveLocation &location) {
  for (; location.section_index < location.section_count; ++location.section_index) {
    char name[pe::kSectionNameSize + 1] = {}; // what can't be read is no name, and the walk runs off the table
    file.ReadAt(location.section_entry, name, pe::kSectionNameSize);
    if (strcmp(name, kArchiveSectionName) == 0)
      return;
    location.section_entry += pe::kSectionEntrySize;
  }
}

} // namespace

ArchiveLocation LocateArchive(ArchiveFile &file) {
  ArchiveLocation location;
  location.file_size = file.Size();

  if (!ReadField(file, pe::kHeaderOffsetAt, 2, location.pe_offset) || location.pe_offset < pe::kMinHeaderOffset ||
      location.pe_offset > pe::kMaxHeaderOffset)
    CorruptInstaller(DamageCode::PeHeaderPlace);
  if (!ReadField(file, location.pe_offset + pe::kSectionCountAt, 2, location.section_count) ||
      location.section_count < pe::kMinSections || location.section_count > pe::kMaxSections)
    CorruptInstaller(DamageCode::SectionCount);

  // Unchecked: with a wrong size the names below don't match, and the run ends there.
  int32_t optional_header_size;
  ReadField(file, location.pe_offset + pe::kOptionalHeaderSizeAt, 2, optional_header_size);
  location.section_entry = location.pe_offset + optional_header_size + pe::kOptionalHeaderAt;

  LeaveOutSignature(file, location);
  FindSection(file, location);
  if (location.section_index == location.section_count)
    FatalMessage(kNoArchive);

  int32_t fields[7] = {}; // VirtualAddress, SizeOfRawData, PointerToRawData, three of no use, Characteristics
  file.ReadAt(location.section_entry + pe::kVirtualAddressAt, fields, sizeof fields);
  location.section_address = static_cast<uint32_t>(fields[0]);
  location.section_raw_size = fields[1];
  location.section_file_pos = fields[2];
  if (location.section_file_pos == 0 || (fields[6] & pe::kReadableSection) == 0)
    CorruptInstaller(DamageCode::SectionPlace);
  if (!file.Seek(location.section_file_pos))
    CorruptInstaller(DamageCode::SectionUnreachable);
  return location;
}

ArchiveCursor SectionCursor(const ArchiveLocation &location, const LoadedImage &image) {
  if (image.size < 0 || location.section_address >= static_cast<uint32_t>(image.size))
    return ArchiveCursor();
  const int32_t mapped = image.size - static_cast<int32_t>(location.section_address);
  const int32_t length = location.section_raw_size < mapped ? location.section_raw_size : mapped;
  return ArchiveCursor(image.base + location.section_address, length);
}

} // namespace korb
