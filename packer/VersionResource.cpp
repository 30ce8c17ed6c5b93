#include "packer/VersionResource.h"

#include <algorithm>

#include "packer/CodePage.h"
#include "packer/PeResources.h"
#include "packer/Product.h"

namespace korb::packer {

namespace {

constexpr uint32_t kFixedMark = 0xFEEF04BD;

// Every block of a version resource: u16 size of the whole, u16 size of its value, u16 kind of the value, a name in
// UTF-16 with its end, then, each at a multiple of 4, the value and the blocks within.
struct FoundBlock {
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
    for (const FoundBlock &strings : Inside(root_, root_.value_size))
      for (const FoundBlock &table : Inside(strings, 0))
        for (const FoundBlock &text : Inside(table, 0)) {
          if (text.name != "FileVersion")
            continue;
          const std::string version = Ascii(Wide(text));
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

  std::optional<std::array<uint16_t, 4>> Numbers() const {
    if (root_.value_size < 16 || root_.value + 16 > root_.end || GetU32(file_, root_.value) != kFixedMark)
      return std::nullopt;
    const auto number = [&](size_t at) { return GetU16(file_, root_.value + at); };
    return std::array{number(10), number(8), number(14), number(12)};
  }

  std::vector<std::pair<std::string, std::string>> FirstTexts() const {
    std::vector<std::pair<std::string, std::string>> texts;
    for (const FoundBlock &strings : Inside(root_, root_.value_size))
      if (strings.name == "StringFileInfo")
        for (const FoundBlock &table : Inside(strings, 0)) {
          for (const FoundBlock &text : Inside(table, 0))
            texts.emplace_back(text.name, FromUtf16(Wide(text)));
          return texts;
        }
    return texts;
  }

private:
  size_t Aligned(size_t at) const { return base_ + (at - base_ + 3) / 4 * 4; }

  bool Parse(size_t at, size_t limit, FoundBlock &block) const {
    if (at + 6 > limit)
      return false;
    block = {at, std::min(limit, at + std::max<size_t>(GetU16(file_, at), 6)), 0, GetU16(file_, at + 2), {}};
    size_t name = at + 6;
    for (; name + 2 <= block.end && GetU16(file_, name) != 0; name += 2)
      block.name += GetU16(file_, name) < 0x80 ? static_cast<char>(file_[name]) : '?';
    block.value = std::min(Aligned(name + 2), block.end);
    return true;
  }

  std::vector<FoundBlock> Inside(const FoundBlock &outer, size_t value_size) const {
    std::vector<FoundBlock> blocks;
    FoundBlock block;
    for (size_t at = Aligned(outer.value + value_size); Parse(at, outer.end, block); at = Aligned(block.end))
      blocks.push_back(block);
    return blocks;
  }

  // The value of a block that is a text.
  std::u16string Wide(const FoundBlock &block) const {
    std::u16string text;
    for (size_t at = block.value; at + 2 <= block.end && GetU16(file_, at) != 0; at += 2)
      text += static_cast<char16_t>(GetU16(file_, at));
    return text;
  }

  static std::string Ascii(std::u16string_view wide) {
    std::string text;
    for (const char16_t unit : wide)
      text += unit < 0x80 ? static_cast<char>(unit) : '?';
    return text;
  }

  const Bytes &file_;
  size_t base_;
  FoundBlock root_;
};

// One block with its value and those within, whose sizes have been made even.
Bytes Block(std::string_view name, size_t value_size, bool is_text, const Bytes &value,
            const std::vector<Bytes> &inside) {
  Bytes out;
  const auto align = [&] { out.resize((out.size() + 3) / 4 * 4); };
  PutU16(out, 0);
  PutU16(out, static_cast<uint16_t>(value_size));
  PutU16(out, is_text);
  for (const char c : name)
    PutU16(out, static_cast<uint8_t>(c));
  PutU16(out, 0);
  align();
  PutBytes(out, value);
  for (const Bytes &block : inside) {
    align();
    PutBytes(out, block);
  }
  if (out.size() > UINT16_MAX)
    throw PackError("name, version, publisher and copyright together are too long for the version of a program");
  SetU16(out, 0, static_cast<uint16_t>(out.size()));
  return out;
}

Bytes TextBlock(const std::string &name, const std::string &text) {
  Bytes value;
  for (const char16_t unit : ToUtf16(text) + u'\0')
    PutU16(value, unit);
  return Block(name, value.size() / 2, true, value, {});
}

} // namespace

std::optional<std::string> FileVersionOf(const Bytes &file) {
  std::optional<std::string> number;
  for (const Resource &resource : FindResources(file, kVersionResource)) {
    const VersionReader reader(file, resource);
    if (auto text = reader.Text())
      return text;
    if (const auto numbers = reader.Numbers(); numbers && !number)
      number = DottedNumbers(*numbers);
  }
  return number;
}

std::string DottedNumbers(const std::array<uint16_t, 4> &numbers) {
  std::string text;
  for (const uint16_t number : numbers)
    text += (text.empty() ? "" : ".") + std::to_string(number);
  return text;
}

Bytes VersionResource(const VersionInfo &info) {
  constexpr uint32_t kLayoutVersion = 0x10000, kFlagsMask = 0x3F, kForWindows32 = 4, kIsProgram = 1;
  constexpr uint32_t kUsEnglish = 0x409, kUtf16 = 1200;
  const auto &numbers = info.numbers;
  const uint32_t high = uint32_t{numbers[0]} << 16 | numbers[1], low = uint32_t{numbers[2]} << 16 | numbers[3];
  Bytes fixed, language;
  for (const uint32_t field : {kFixedMark, kLayoutVersion, high, low, high, low, kFlagsMask, 0U, kForWindows32,
                               kIsProgram, 0U, 0U, 0U}) // no kind of its own, no date
    PutU32(fixed, field);
  PutU32(language, kUsEnglish | kUtf16 << 16);
  std::vector<Bytes> texts;
  for (const auto &[name, text] : info.texts)
    texts.push_back(TextBlock(name, text));
  return Block("VS_VERSION_INFO", fixed.size(), false, fixed,
               {Block("StringFileInfo", 0, true, {}, {Block("040904B0", 0, true, {}, texts)}),
                Block("VarFileInfo", 0, true, {}, {Block("Translation", language.size(), false, language, {})})});
}

std::optional<VersionInfo> ReadVersionInfo(const Bytes &file) {
  for (const Resource &resource : FindResources(file, kVersionResource)) {
    const VersionReader reader(file, resource);
    return VersionInfo{reader.Numbers().value_or(std::array<uint16_t, 4>{}), reader.FirstTexts()};
  }
  return std::nullopt;
}

} // namespace korb::packer
