#include "packer/IconFile.h"

#include <algorithm>
#include <cstring>
#include <optional>

#include "packer/PeResources.h"

namespace korb::packer {

namespace {

// The file: u16 0, u16 1, u16 count, and for each image 16 bytes with its size at 8 and its place at 12. What else the
// entries say of the images is often wrong.
constexpr size_t kHead = 6, kEntry = 16, kEntrySizeAt = 8, kEntryPlaceAt = 12;
constexpr uint16_t kIconKind = 1;
constexpr size_t kMostImages = 100, kMostBytes = 4 << 20; // an icon is in each uninstaller too

constexpr uint32_t kMostPixels = 256; // of a side
constexpr uint32_t kBitmapHead = 40;
constexpr char kOddForm[] = "is neither a PNG nor a bitmap as icons have it";
constexpr char kTooLarge[] = "has more than 256 by 256 pixels";
constexpr char kCut[] = "is cut off";

// A bitmap of twice the icon's height: its colours, the pixels, and a mask of one bit for each. `fault` is why not.
std::optional<IconImage> BitmapImage(const Bytes &data, std::string &fault) {
  const uint32_t width = GetU32(data, 4), double_height = GetU32(data, 8);
  const uint16_t bits = GetU16(data, 14);
  constexpr uint16_t kDepths[] = {1, 4, 8, 16, 24, 32};
  fault = kOddForm;
  if (width == 0 || double_height == 0 || double_height % 2 != 0 || GetU32(data, 16) != 0 ||
      std::find(std::begin(kDepths), std::end(kDepths), bits) == std::end(kDepths))
    return std::nullopt;
  fault = kTooLarge;
  if (width > kMostPixels || double_height > 2 * kMostPixels)
    return std::nullopt;
  const auto row = [&](uint32_t depth) { return (width * depth + 31) / 32 * 4; };
  const uint32_t used = GetU32(data, 32), colors = used != 0 ? used : bits <= 8 ? 1U << bits : 0;
  fault = kOddForm;
  if (colors > 256)
    return std::nullopt;
  fault = kCut;
  // With 32 bits the mask is in the pixels, and some tools leave the other one out.
  const uint32_t mask = bits == 32 ? 0 : row(1);
  if (kBitmapHead + 4 * colors + (row(bits) + mask) * (double_height / 2) > data.size())
    return std::nullopt;
  fault.clear();
  return IconImage{static_cast<uint16_t>(width), static_cast<uint16_t>(double_height / 2), bits, false, data};
}

// A PNG begins with a mark and a chunk of 13 bytes, numbers with the highest byte first.
std::optional<IconImage> PngImage(const Bytes &data, std::string &fault) {
  const auto side = [&](size_t at) {
    return data[at] != 0 || data[at + 1] != 0 ? 0x10000U : data[at + 2] * 256U + data[at + 3];
  };
  const uint32_t width = side(16), height = side(20);
  const uint8_t depth = data[24], kind = data[25];
  constexpr uint8_t kChannels[] = {1, 0, 3, 1, 2, 0, 4};
  if (std::memcmp(&data[12], "IHDR", 4) != 0 || width == 0 || height == 0 || kind >= std::size(kChannels) ||
      kChannels[kind] == 0 || depth > 16) {
    fault = kOddForm;
    return std::nullopt;
  }
  if (width > kMostPixels || height > kMostPixels) {
    fault = kTooLarge;
    return std::nullopt;
  }
  return IconImage{static_cast<uint16_t>(width), static_cast<uint16_t>(height),
                   static_cast<uint16_t>(depth * kChannels[kind]), true, data};
}

std::optional<IconImage> ImageOf(const Bytes &data, std::string &fault) {
  constexpr uint8_t kPngMark[] = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
  if (data.size() >= kBitmapHead && std::equal(std::begin(kPngMark), std::end(kPngMark), data.begin()))
    return PngImage(data, fault);
  if (data.size() >= kBitmapHead && GetU32(data, 0) == kBitmapHead)
    return BitmapImage(data, fault);
  fault = kOddForm;
  return std::nullopt;
}

} // namespace

IconFile ReadIconFile(const Bytes &file) {
  IconFile icon;
  if (file.size() < kHead || GetU16(file, 0) != 0 || GetU16(file, 2) != kIconKind) {
    icon.fault = "is no icon file, which has the images of all sizes";
    return icon;
  }
  const size_t count = GetU16(file, 4);
  if (count == 0 || count > kMostImages) {
    icon.fault = count == 0 ? "holds no image" : "holds more than 100 images";
    return icon;
  }
  size_t total = 0;
  for (size_t i = 0; i < count; ++i) {
    const size_t entry = kHead + i * kEntry;
    std::string fault = kCut;
    std::optional<IconImage> image;
    if (entry + kEntry <= file.size()) {
      const uint64_t size = GetU32(file, entry + kEntrySizeAt), at = GetU32(file, entry + kEntryPlaceAt);
      if (at + size <= file.size() && (total += static_cast<size_t>(size)) <= kMostBytes)
        image = ImageOf(
            Bytes(file.begin() + static_cast<ptrdiff_t>(at), file.begin() + static_cast<ptrdiff_t>(at + size)), fault);
    }
    if (image)
      icon.images.push_back(std::move(*image));
    else if (icon.fault.empty())
      icon.fault = total > kMostBytes ? "holds more than 4 MiB"
                                      : "is of no use: its image " + std::to_string(i + 1) + " " + fault;
  }
  return icon;
}

// Of the first directory of images: 6 bytes as in a file, and 14 for each image, in which 0 stands for 256 pixels.
std::vector<std::string> IconImagesOf(const Bytes &program) {
  constexpr size_t kGroupEntry = 14, kBitsAt = 6;
  std::vector<std::string> images;
  const auto groups = FindResources(program, kIconGroupResource);
  if (groups.empty() || groups[0].size < kHead)
    return images;
  const auto side = [&](size_t at) { return std::to_string(program[at] == 0 ? kMostPixels : program[at]); };
  const size_t begin = groups[0].offset;
  for (size_t i = 0; i < GetU16(program, begin + 4) && kHead + (i + 1) * kGroupEntry <= groups[0].size; ++i) {
    const size_t entry = begin + kHead + i * kGroupEntry;
    images.push_back(side(entry) + "x" + side(entry + 1) + ", " + std::to_string(GetU16(program, entry + kBitsAt)) +
                     " bits");
  }
  return images;
}

} // namespace korb::packer
