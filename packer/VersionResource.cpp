#include "packer/VersionResource.h"

#include <algorithm>

#include "packer/PeResources.h"

namespace korb::packer {

namespace {

// Every block of a version resource: u16 size of the whole, u16 size of its value, u16 kind of the value, a name in
// UTF-16 with its end, then, each at a multiple of 4, the value and the blocks within.
struct Block {
  size_t begin = 0, end = 0; // of the whole
  size_t value = 0;          // where the value begins
  size_t value_size = 0;     // bytes
  std::string name;          // characters outside ASCII as '?'
};

class VersionReader {
public:
  VersionReader(const Bytes &file, const Resource &resource) : file_(file), base_(resource.offset) {
    Parse(resource.offset, size_t{resource.offset} + resource.size, root_);
  }

  std::optional<std::string> Text() const {
    std::optional<std::string> first;
    for (const Block &strings : Inside(root_, root_.value_size))
      for (const Block &table : Inside(strings, 0))
        for (const Block &text : Inside(table, 0)) {
          if (text.name != "FileVersion")
            continue;
          const std::string version = Wide(text.value, text.end);
          std::string language = table.name;
          std::transform(language.begin(), language.end(), language.begin(),
                         [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; });
          if (language == "040904E4")
            return version;
          if (!first)
            first = version;
        }
    return first;
  }

  std::optional<std::string> Number() const {
    constexpr uint32_t kSignature = 0xFEEF04BD;
    if (root_.value_size < 16 || root_.value + 16 > root_.end || GetU32(file_, root_.value) != kSignature)
      return std::nullopt;
    const uint32_t high = GetU32(file_, root_.value + 8), low = GetU32(file_, root_.value + 12);
    return std::to_string(high >> 16) + "." + std::to_string(high & 0xFFFF) + "." + std::to_string(low >> 16) + "." +
           std::to_string(low & 0xFFFF);
  }

private:
  size_t Aligned(size_t at) const { return base_ + (at - base_ + 3) / 4 * 4; }

  bool Parse(size_t at, size_t limit, Block &block) const {
    if (at + 6 > limit)
      return false;
    block = {at, std::min(limit, at + std::max<size_t>(GetU16(file_, at), 6)), 0, GetU16(file_, at + 2), {}};
    size_t name = at + 6;
    for (; name + 2 <= block.end && GetU16(file_, name) != 0; name += 2)
      block.name += GetU16(file_, name) < 0x80 ? static_cast<char>(file_[name]) : '?';
    block.value = std::min(Aligned(name + 2), block.end);
    return true;
  }

  std::vector<Block> Inside(const Block &outer, size_t value_size) const {
    std::vector<Block> blocks;
    Block block;
    for (size_t at = Aligned(outer.value + value_size); Parse(at, outer.end, block); at = Aligned(block.end))
      blocks.push_back(block);
    return blocks;
  }

  std::string Wide(size_t at, size_t end) const {
    std::string text;
    for (; at + 2 <= end && GetU16(file_, at) != 0; at += 2)
      text += GetU16(file_, at) < 0x80 ? static_cast<char>(file_[at]) : '?';
    return text;
  }

  const Bytes &file_;
  size_t base_;
  Block root_;
};

} // namespace

std::optional<std::string> FileVersionOf(const Bytes &file) {
  std::optional<std::string> number;
  for (const Resource &resource : FindResources(file, kVersionResource)) {
    const VersionReader reader(file, resource);
    if (auto text = reader.Text())
      return text;
    if (!number)
      number = reader.Number();
  }
  return number;
}

} // namespace korb::packer
