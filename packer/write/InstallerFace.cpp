#include "packer/write/InstallerFace.h"

#include <algorithm>

#include "packer/VersionResource.h"

namespace korb::packer {

namespace {

constexpr uint16_t kUsEnglish = 0x409;

void TakeAway(ResourceContents &resources, uint16_t type) {
  std::erase_if(resources, [&](const auto &one) { return one.first.type == ResourceId(type); });
}

// The first four numbers in `version`, none larger than the place for it.
std::array<uint16_t, 4> NumbersOf(const std::string &version) {
  std::array<uint16_t, 4> numbers{};
  size_t count = 0;
  bool was_digit = false;
  for (const char c : version) {
    const bool is_digit = c >= '0' && c <= '9';
    if (was_digit && !is_digit && ++count == numbers.size())
      break;
    if (is_digit)
      numbers[count] = static_cast<uint16_t>(std::min(numbers[count] * 10 + (c - '0'), UINT16_MAX + 0));
    was_digit = is_digit;
  }
  return numbers;
}

Bytes VersionOf(const Product &product) {
  const auto utf8 = [&](const std::string &text) { return FromCodePage(text, product.code_page); };
  const std::string version = utf8(product.version);
  VersionInfo info{NumbersOf(version),
                   {{"CompanyName", utf8(product.publisher)},
                    {"FileDescription", utf8(product.name) + " Setup"},
                    {"FileVersion", version},
                    {"LegalCopyright", product.copyright},
                    {"OriginalFilename", product.file_name},
                    {"ProductName", utf8(product.name)},
                    {"ProductVersion", version}}};
  std::erase_if(info.texts, [](const auto &text) { return text.second.empty(); });
  return VersionResource(info);
}

// Every image is a resource, and a directory of them another, in which 0 stands for 256 pixels.
void PutIcon(const std::vector<IconImage> &images, ResourceContents &resources) {
  constexpr uint16_t kIconKind = 1, kPlanes = 1;
  TakeAway(resources, kIconResource);
  TakeAway(resources, kIconGroupResource);
  Bytes group;
  PutU16(group, 0);
  PutU16(group, kIconKind);
  PutU16(group, static_cast<uint16_t>(images.size()));
  uint16_t number = 0;
  for (const IconImage &image : images) {
    ++number;
    PutU8(group, static_cast<uint8_t>(image.width));
    PutU8(group, static_cast<uint8_t>(image.height));
    PutU8(group, static_cast<uint8_t>(image.bits < 8 ? 1 << image.bits : 0)); // colours
    PutU8(group, 0);
    PutU16(group, kPlanes);
    PutU16(group, image.bits);
    PutU32(group, static_cast<uint32_t>(image.data.size()));
    PutU16(group, number);
    resources.emplace(ResourceName{kIconResource, number, kUsEnglish}, image.data);
  }
  resources.emplace(ResourceName{kIconGroupResource, uint16_t{1}, kUsEnglish}, std::move(group));
}

} // namespace

void PutFace(const Product &product, StubImage &program) {
  ResourceContents resources = program.Resources();
  if (resources.empty() && product.icon.empty())
    return;
  TakeAway(resources, kVersionResource);
  resources.emplace(ResourceName{kVersionResource, uint16_t{1}, kUsEnglish}, VersionOf(product));
  if (!product.icon.empty())
    PutIcon(product.icon, resources);
  program.ReplaceResources(resources);
}

} // namespace korb::packer
