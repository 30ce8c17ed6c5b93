#include "packer/manifest/ImageFile.h"

#include <cstdlib>

namespace korb::packer {

namespace {

constexpr size_t kFileHeader = 14;
constexpr uint32_t kCoreHeader = 12, kInfoHeader = 40, kMasks = 12;

// Bytes that the rows of an uncompressed bitmap take.
uint64_t RowBytes(int64_t width, int64_t height, uint32_t bits) {
  const uint64_t row = (static_cast<uint64_t>(width) * bits + 31) / 32 * 4;
  return row * static_cast<uint64_t>(std::llabs(height));
}

} // namespace

std::optional<Bytes> BitmapOf(const Bytes &file) {
  if (file.size() < kFileHeader + kCoreHeader || file[0] != 'B' || file[1] != 'M')
    return std::nullopt;
  Bytes bitmap(file.begin() + kFileHeader, file.end());
  const uint32_t header = GetU32(bitmap, 0);
  int64_t width = 0, height = 0;
  uint32_t bits = 0;
  uint64_t start = 0, pixels = 0; // where the installer looks for the pixels, and their bytes
  if (header == kCoreHeader) {
    width = GetU16(bitmap, 4);
    height = GetU16(bitmap, 6);
    bits = GetU16(bitmap, 10);
    start = kCoreHeader + (bits < 24 ? uint64_t{3} << bits : 0);
    pixels = RowBytes(width, height, bits);
  } else if (header == kInfoHeader && bitmap.size() >= kInfoHeader) {
    width = static_cast<int32_t>(GetU32(bitmap, 4));
    height = static_cast<int32_t>(GetU32(bitmap, 8));
    bits = GetU16(bitmap, 14);
    const uint32_t compression = GetU32(bitmap, 16), used = GetU32(bitmap, 32);
    const uint64_t colors = used == 0 && bits < 16 ? uint64_t{1} << bits : used;
    start = kInfoHeader + (compression == 3 ? kMasks : 0) + 4 * colors;
    pixels = compression == 0 || compression == 3 ? RowBytes(width, height, bits) : GetU32(bitmap, 20);
  }
  const uint64_t stored = GetU32(file, 10);
  if (width < 1 || bits > 32 || pixels == 0 || stored < kFileHeader + start || stored + pixels > file.size())
    return std::nullopt;
  const auto place = bitmap.begin() + static_cast<ptrdiff_t>(start);
  bitmap.erase(place, bitmap.begin() + static_cast<ptrdiff_t>(stored - kFileHeader));
  return bitmap;
}

// An icon file: u16 0, u16 1, u16 count, and for each image 16 bytes with its size at 8 and its place at 12.
std::optional<Bytes> IconImageOf(const Bytes &file, uint32_t size) {
  constexpr size_t kHead = 6, kEntry = 16;
  if (file.size() < kHead || GetU16(file, 0) != 0 || GetU16(file, 2) != 1)
    return std::nullopt;
  for (size_t entry = kHead, left = GetU16(file, 4); left > 0 && entry + kEntry <= file.size();
       entry += kEntry, --left) {
    const uint64_t at = GetU32(file, entry + 12);
    if (GetU32(file, entry + 8) == size && at + size <= file.size())
      return Bytes(file.begin() + static_cast<ptrdiff_t>(at), file.begin() + static_cast<ptrdiff_t>(at + size));
  }
  return std::nullopt;
}

} // namespace korb::packer
