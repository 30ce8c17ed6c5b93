#include "packer/write/StubImage.h"

#include <algorithm>
#include <cstring>

#include "core/Arithmetic.h"
#include "packer/ActiveCodePage.h"
#include "packer/PeResources.h"

namespace korb::packer {

namespace {

// Offsets from the optional header.
constexpr uint32_t kMagicAt = 0, kSectionAlignmentAt = 32, kFileAlignmentAt = 36, kImageSizeAt = 56,
                   kHeadersSizeAt = 60, kDirectoryCountAt = 92;
constexpr uint32_t kPlainOptionalHeader = 96; // bytes before the data directories
constexpr uint16_t kPe32 = 0x10B;
constexpr uint32_t kResourceDirectory = 2, kCertificateDirectory = 4, kDirectoryEntry = 8;

constexpr uint32_t kVirtualSizeAt = 8, kCharacteristicsAt = 36;
constexpr uint32_t kReadableData = 0x40000040;

constexpr uint32_t kPage = 4096;
constexpr uint8_t kPngFirstByte = 0x89;

bool IsPowerOfTwo(uint32_t value) {
  return value != 0 && (value & (value - 1)) == 0;
}

[[noreturn]] void Refuse(const char *reason) {
  throw PackError(std::string("the stub ") + reason);
}

} // namespace

StubImage::StubImage(Bytes stub) : bytes_(std::move(stub)) {
  if (bytes_.size() < 0x40 || bytes_[0] != 'M' || bytes_[1] != 'Z')
    Refuse("is no program");
  if (bytes_.size() > 0x10000000)
    Refuse("is larger than 256 MiB");
  pe_ = GetU32(bytes_, pe::kHeaderOffsetAt);
  if (pe_ < pe::kMinHeaderOffset || pe_ > pe::kMaxHeaderOffset)
    Refuse("has its PE header at an unusual place, where the installer would take it for damage");
  if (bytes_.size() < pe_ + pe::kOptionalHeaderAt + kPlainOptionalHeader || std::memcmp(&bytes_[pe_], "PE\0\0", 4) != 0)
    Refuse("is no PE file");
  sections_ = GetU16(bytes_, pe_ + pe::kSectionCountAt);
  table_ = pe_ + pe::kOptionalHeaderAt + GetU16(bytes_, pe_ + pe::kOptionalHeaderSizeAt);
  if (GetU16(bytes_, pe_ + pe::kOptionalHeaderAt + kMagicAt) != kPe32)
    Refuse("is no 32-bit program");
  if (sections_ < pe::kMinSections || sections_ >= pe::kMaxSections)
    Refuse("has fewer than 4 or more than 98 sections: its uninstaller would take itself for damage");
  section_alignment_ = OptionalField(kSectionAlignmentAt);
  file_alignment_ = OptionalField(kFileAlignmentAt);
  if (!IsPowerOfTwo(section_alignment_) || !IsPowerOfTwo(file_alignment_) || section_alignment_ > 0x100000 ||
      section_alignment_ < file_alignment_)
    Refuse("has unusable alignments");
  if (OptionalField(kImageSizeAt) > 0x40000000)
    Refuse("is larger than 1 GiB in memory");

  // When the section is cut out, the uninstaller moves the rest of the table up and takes one entry more than there
  // are along. Both that entry and the new one have to be free.
  const uint32_t free_begin = table_ + sections_ * pe::kSectionEntrySize;
  const uint32_t free_end = free_begin + 2 * pe::kSectionEntrySize;
  uint32_t headers_end = std::min<uint32_t>(OptionalField(kHeadersSizeAt), static_cast<uint32_t>(bytes_.size()));
  if (free_end > bytes_.size())
    Refuse("has no room for another section header");
  for (uint32_t i = 0; i < sections_; ++i) {
    const uint32_t entry = table_ + i * pe::kSectionEntrySize;
    if (std::strncmp(reinterpret_cast<const char *>(&bytes_[entry]), kArchiveSectionName, pe::kSectionNameSize) == 0)
      Refuse("carries an archive already");
    if (const uint32_t pointer = GetU32(bytes_, entry + pe::kRawPointerAt); pointer != 0)
      headers_end = std::min(headers_end, pointer);
  }
  if (free_end > headers_end ||
      std::any_of(bytes_.begin() + free_begin, bytes_.begin() + free_end, [](uint8_t byte) { return byte != 0; }))
    Refuse("has no room for another section header");
  if (OptionalField(kDirectoryCountAt) > kCertificateDirectory &&
      table_ >= pe_ + pe::kSignatureAt + pe::kSignatureEntrySize && GetU32(bytes_, pe_ + pe::kSignatureAt) != 0)
    Refuse("is signed: sign the finished installer instead");
}

uint32_t StubImage::SectionFilePos() const {
  return static_cast<uint32_t>(RoundUp(static_cast<int64_t>(bytes_.size()), std::max(kPage, file_alignment_)));
}

Bytes StubImage::WithSection(uint32_t used, uint32_t raw) const {
  Bytes out = bytes_;
  const int64_t address = RoundUp(OptionalField(kImageSizeAt), section_alignment_);
  const uint32_t entry = table_ + sections_ * pe::kSectionEntrySize;
  std::memcpy(&out[entry], kArchiveSectionName, sizeof kArchiveSectionName);
  SetU32(out, entry + kVirtualSizeAt, used);
  SetU32(out, entry + pe::kVirtualAddressAt, static_cast<uint32_t>(address));
  SetU32(out, entry + pe::kRawSizeAt, raw);
  SetU32(out, entry + pe::kRawPointerAt, SectionFilePos());
  SetU32(out, entry + kCharacteristicsAt, kReadableData);
  SetU16(out, pe_ + pe::kSectionCountAt, static_cast<uint16_t>(sections_ + 1));
  SetU32(out, pe_ + pe::kInitializedDataSizeAt, GetU32(out, pe_ + pe::kInitializedDataSizeAt) + raw);
  SetU32(out, pe_ + pe::kImageSizeAt, static_cast<uint32_t>(address + RoundUp(used, section_alignment_)));
  // The archive holds a checksum of these headers, so they can't hold one of the archive; 0 means that there is none,
  // and stays true for the uninstaller, which has the same headers but another body.
  SetU32(out, pe_ + pe::kImageChecksumAt, 0);
  out.resize(SectionFilePos());
  return out;
}

void StubImage::UseCodePage(int page) {
  if (page != kUtf8 && AsksForUtf8(bytes_))
    Refuse("takes texts as UTF-8: 'product.codepage' has to be \"utf-8\"");
  if (page == kUtf8 && !AskForUtf8(bytes_))
    Refuse("has no place in its manifest for the setting that makes it take texts as UTF-8: use the korb.exe that "
           "comes with this program");
}

ResourceContents StubImage::Resources() const {
  const auto found = AllResources(bytes_);
  if (!found)
    Refuse("has resources that can't be read");
  ResourceContents resources;
  size_t total = 0;
  for (const auto &[name, place] : *found) {
    if ((total += place.size) > bytes_.size())
      Refuse("has resources that lie over each other");
    resources.emplace(name, Bytes(bytes_.begin() + place.offset, bytes_.begin() + place.offset + place.size));
  }
  return resources;
}

void StubImage::ReplaceResources(const ResourceContents &resources) {
  const uint32_t directory = pe_ + pe::kOptionalHeaderAt + kPlainOptionalHeader + kResourceDirectory * kDirectoryEntry;
  const uint32_t last = table_ + (sections_ - 1) * pe::kSectionEntrySize;
  const uint32_t address = GetU32(bytes_, last + pe::kVirtualAddressAt),
                 place = GetU32(bytes_, last + pe::kRawPointerAt), old_raw = GetU32(bytes_, last + pe::kRawSizeAt);
  const int64_t image_end = RoundUp(int64_t{address} + GetU32(bytes_, last + kVirtualSizeAt), section_alignment_);
  if (OptionalField(kDirectoryCountAt) <= kResourceDirectory || directory + kDirectoryEntry > table_ ||
      GetU32(bytes_, directory) != address || uint64_t{place} + old_raw != bytes_.size() ||
      image_end != OptionalField(kImageSizeAt))
    Refuse("has no resources at its end, where they could grow: use the korb.exe that comes with this program");
  const Bytes section = ResourceSection(resources, address);
  const auto size = static_cast<uint32_t>(section.size());
  const auto raw = static_cast<uint32_t>(RoundUp(size, file_alignment_));
  bytes_.resize(place);
  PutBytes(bytes_, section);
  bytes_.resize(size_t{place} + raw);
  SetU32(bytes_, last + kVirtualSizeAt, size);
  SetU32(bytes_, last + pe::kRawSizeAt, raw);
  SetU32(bytes_, directory, address);
  SetU32(bytes_, directory + 4, size);
  SetU32(bytes_, pe_ + pe::kInitializedDataSizeAt, GetU32(bytes_, pe_ + pe::kInitializedDataSizeAt) + raw - old_raw);
  SetU32(bytes_, pe_ + pe::kImageSizeAt, static_cast<uint32_t>(RoundUp(int64_t{address} + size, section_alignment_)));
  if (Resources() != resources)
    Refuse("has sections that lie over each other");
}

std::optional<uint32_t> StubImage::FindIconImage(uint32_t size) const {
  for (const Resource &icon : FindResources(bytes_, kIconResource))
    if (icon.size == size && bytes_[icon.offset] != kPngFirstByte)
      return icon.offset;
  return std::nullopt;
}

} // namespace korb::packer
