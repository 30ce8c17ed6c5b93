#include "archive/UninstallerImage.h"

#include <cstring>

#include "core/Checksum.h"
#include "core/Failure.h"
#include "core/RunValues.h"
#include "format/Archive.h"
#include "format/Damage.h"

namespace korb {

namespace {

/// The image's bytes. Fields that lie outside are left as they are: the headers may be shorter than they say.
struct ImageBytes {
  char *data;
  int32_t length;

  bool holds(int32_t offset, int32_t count) const { return offset >= 0 && offset <= length - count; }
  void put_u16(int32_t offset, int32_t value) {
    if (holds(offset, 2))
      memcpy(data + offset, &value, 2);
  }
  void subtract_u32(int32_t offset, int32_t value) {
    if (!holds(offset, 4))
      return;
    uint32_t field;
    memcpy(&field, data + offset, 4);
    field -= static_cast<uint32_t>(value);
    memcpy(data + offset, &field, 4);
  }
};

/// Adds what comes after the archive's section in the file.
void AppendTail(ArchiveFile &file, const ArchiveLocation &location, String &image) {
  const int64_t tail_start = int64_t{location.section_file_pos} + location.section_raw_size;
  const int64_t tail = location.file_size - tail_start;
  if (tail <= 0)
    return;
  // A negative section would make the tail longer than what the file has after the headers.
  if (location.section_raw_size < 0)
    CorruptInstaller(DamageCode::TailUnreadable);
  const int32_t old_length = image.length();
  image.set_length(old_length + static_cast<int32_t>(tail));
  if (!file.ReadAt(static_cast<int32_t>(tail_start), image.data() + old_length, static_cast<int32_t>(tail)))
    CorruptInstaller(DamageCode::TailUnreadable);
}

/// Takes the archive's entry out of the section table. The step after the last entry brings the bytes after the table
/// up into its place, so that the table ends as it did before, in the zeros of the header area.
void CloseSectionTable(ImageBytes &image, const ArchiveLocation &location) {
  int32_t entry = location.section_entry;
  for (int32_t index = location.section_index; index <= location.section_count; ++index) {
    if (image.holds(entry, 2 * pe::kSectionEntrySize))
      memmove(image.data + entry, image.data + entry + pe::kSectionEntrySize, pe::kSectionEntrySize);
    if (index < location.section_count - 1)
      image.subtract_u32(entry + pe::kRawPointerAt, location.section_raw_size);
    entry += pe::kSectionEntrySize;
  }
}

} // namespace

void BuildUninstallerImage(ArchiveFile &file, const ArchiveLocation &location, const ArchiveHeader &header,
                           const InstallConfig &config, String &image) {
  if (!file.ReadSpan(image, 0, location.section_file_pos))
    CorruptInstaller(DamageCode::StubUnreadable);
  if (HasInstallFlag(IF_VERIFY_STUB) && Checksum32(image.data(), image.length()) != header.stub_checksum)
    CorruptInstaller(DamageCode::StubChecksum);
  AppendTail(file, location, image);

  ImageBytes bytes{image.data(), image.length()};
  const int32_t pe_offset = location.pe_offset, raw_size = location.section_raw_size;
  bytes.put_u16(pe_offset + pe::kSectionCountAt, location.section_count - 1);
  bytes.subtract_u32(pe_offset + pe::kInitializedDataSizeAt, raw_size);
  bytes.subtract_u32(pe_offset + pe::kImageSizeAt, raw_size);
  // What signing filled in would lead to nothing.
  if (location.is_signed() && bytes.holds(pe_offset + pe::kSignatureAt, pe::kSignatureEntrySize)) {
    memset(bytes.data + pe_offset + pe::kImageChecksumAt, 0, 4);
    memset(bytes.data + pe_offset + pe::kSignatureAt, 0, pe::kSignatureEntrySize);
  }
  CloseSectionTable(bytes, location);

  const int32_t patch = config.stub_patch_offset;
  if (patch > 0 && bytes.holds(patch, kStubPatchSize) && config.stub_patch.length() == kStubPatchSize)
    memcpy(bytes.data + patch, config.stub_patch.data(), kStubPatchSize);
}

} // namespace korb
