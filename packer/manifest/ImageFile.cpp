#include "packer/manifest/ImageFile.h"

#include <utility>

#include "ui/DibImage.h"

namespace korb::packer {

std::optional<Bytes> BitmapOf(const Bytes &file) {
  constexpr size_t kFileHeader = DibImage::kFileHeader, kPixelsAt = 10;
  if (file.size() < kFileHeader || file[0] != 'B' || file[1] != 'M')
    return std::nullopt;
  Bytes bitmap(file.begin() + kFileHeader, file.end());
  DibImage image;
  image.parse_header(reinterpret_cast<const char *>(bitmap.data()), static_cast<int32_t>(bitmap.size()));
  // Where the installer looks for the pixels, and where they are: what lies between is taken out.
  const uint64_t wanted = kFileHeader + static_cast<uint64_t>(image.bits_offset), stored = GetU32(file, kPixelsAt);
  if (image.is_empty() || image.height == 0 || image.bit_count > 32 || stored < wanted || stored >= file.size())
    return std::nullopt;
  bitmap.erase(bitmap.begin() + image.bits_offset, bitmap.begin() + static_cast<ptrdiff_t>(stored - kFileHeader));
  image.set_block(reinterpret_cast<const char *>(bitmap.data()), static_cast<int32_t>(bitmap.size()));
  return image.has_all_pixels() ? std::optional(std::move(bitmap)) : std::nullopt;
}

std::string BitmapFault(const Bytes &file) {
  constexpr size_t kHeaderSizeAt = 14;
  constexpr uint32_t kOldest = 12, kUsual = 40;
  if (file.size() < kHeaderSizeAt + 4 || file[0] != 'B' || file[1] != 'M')
    return "is no BMP file";
  const uint32_t header = GetU32(file, kHeaderSizeAt);
  if (header != kOldest && header != kUsual)
    return "is a BMP file with a header of " + std::to_string(header) +
           " bytes: save it with one of 40, the form of Windows 3, without colour space information";
  return "is a BMP file whose pixels are cut off, or of a kind that isn't shown";
}

} // namespace korb::packer
