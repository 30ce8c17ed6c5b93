#include "packer/FontFile.h"

#include <algorithm>

#include "format/Archive.h"
#include "packer/PeResources.h"

namespace korb::packer {

namespace {

// Numbers of TrueType files have their high byte first.
uint32_t Wide(const Bytes &file, uint64_t at, int bytes) {
  uint32_t value = 0;
  for (int i = 0; i < bytes; ++i)
    value = value << 8 | file[static_cast<size_t>(at) + static_cast<size_t>(i)];
  return value;
}

bool Holds(const Bytes &file, uint64_t at, uint64_t count) {
  return at <= file.size() && count <= file.size() - at;
}

constexpr uint32_t Tag(const char (&text)[5]) {
  return uint32_t{static_cast<uint8_t>(text[0])} << 24 | uint32_t{static_cast<uint8_t>(text[1])} << 16 |
         uint32_t{static_cast<uint8_t>(text[2])} << 8 | static_cast<uint8_t>(text[3]);
}

constexpr uint32_t kTrueType = 0x00010000, kCollection = Tag("ttcf");

bool IsOneFont(uint32_t tag) {
  return tag == kTrueType || tag == Tag("OTTO") || tag == Tag("true");
}

void AppendUtf8(std::string &text, uint32_t c) {
  if (c < 0x80)
    text += static_cast<char>(c);
  else if (c < 0x800)
    text += {static_cast<char>(0xC0 | c >> 6), static_cast<char>(0x80 | (c & 0x3F))};
  else
    text += {static_cast<char>(0xE0 | c >> 12), static_cast<char>(0x80 | (c >> 6 & 0x3F)),
             static_cast<char>(0x80 | (c & 0x3F))};
}

// UTF-16 with its high byte first; nothing when it holds what no name has.
std::string FromUtf16(const Bytes &file, uint64_t at, uint32_t bytes) {
  std::string text;
  for (uint32_t i = 0; i + 2 <= bytes; i += 2) {
    const uint32_t c = Wide(file, at + i, 2);
    if (c < ' ' || (c >= 0xD800 && c < 0xE000))
      return {};
    AppendUtf8(text, c);
  }
  return text;
}

std::string FromAscii(const Bytes &file, uint64_t at, uint32_t bytes) {
  std::string text;
  for (uint32_t i = 0; i < bytes; ++i) {
    const uint8_t c = file[static_cast<size_t>(at) + i];
    if (c < ' ' || c > '~')
      return {};
    text += static_cast<char>(c);
  }
  return text;
}

// The full names out of the table "name" of the font whose tables are listed at `at`, the US English one first.
std::vector<std::string> TrueTypeNames(const Bytes &file, uint64_t at) {
  constexpr uint32_t kHead = 12, kEntry = 16, kRecord = 12, kFullName = 4, kWindows = 3, kMacintosh = 1,
                     kUsEnglish = 0x409;
  std::vector<std::string> english, others;
  if (!Holds(file, at, kHead))
    return others;
  uint64_t names = 0;
  const uint32_t tables = Wide(file, at + 4, 2);
  for (uint32_t i = 0; i < tables && Holds(file, at + kHead + i * kEntry, kEntry); ++i)
    if (const uint64_t entry = at + kHead + i * kEntry; Wide(file, entry, 4) == Tag("name"))
      names = Wide(file, entry + 8, 4);
  if (names == 0 || !Holds(file, names, 6))
    return others;
  const uint32_t count = Wide(file, names + 2, 2);
  const uint64_t texts = names + Wide(file, names + 4, 2);
  for (uint32_t i = 0; i < count && Holds(file, names + 6 + i * kRecord, kRecord); ++i) {
    const uint64_t record = names + 6 + i * kRecord;
    const uint32_t platform = Wide(file, record, 2), language = Wide(file, record + 4, 2),
                   size = Wide(file, record + 8, 2);
    const uint64_t text = texts + Wide(file, record + 10, 2);
    if (Wide(file, record + 6, 2) != kFullName || !Holds(file, text, size))
      continue;
    const std::string name = platform == kMacintosh ? FromAscii(file, text, size) : FromUtf16(file, text, size);
    if (!name.empty())
      (platform == kWindows && language == kUsEnglish ? english : others).push_back(name);
  }
  english.insert(english.end(), others.begin(), others.end());
  return english;
}

std::vector<std::string> CollectionNames(const Bytes &file) {
  constexpr uint32_t kHead = 12, kMostFonts = 64;
  std::string best;
  std::vector<std::string> all;
  const uint32_t fonts = std::min(Wide(file, 8, 4), kMostFonts);
  for (uint32_t i = 0; i < fonts && Holds(file, kHead + 4 * uint64_t{i}, 4); ++i) {
    const std::vector<std::string> names = TrueTypeNames(file, Wide(file, kHead + 4 * uint64_t{i}, 4));
    if (!names.empty())
      best += (best.empty() ? "" : " & ") + names[0];
    all.insert(all.end(), names.begin(), names.end());
  }
  if (!best.empty())
    all.insert(all.begin(), best);
  return all;
}

std::string ZeroEnded(const Bytes &file, uint64_t at) {
  uint32_t size = 0;
  while (at + size < file.size() && file[static_cast<size_t>(at) + size] != 0)
    ++size;
  return at < file.size() ? FromAscii(file, at, size) : std::string();
}

// The head of a bitmap font: its version at 0, and at 105 where the name of its face is.
constexpr uint32_t kFontVersionAt = 0, kFaceAt = 105, kBitmapHead = 113;

bool IsBitmapFont(const Bytes &file) {
  const uint16_t version = Holds(file, 0, kBitmapHead) ? GetU16(file, kFontVersionAt) : uint16_t{0};
  return (version == 0x200 || version == 0x300) && GetU32(file, 2) <= file.size();
}

// Where the resources of type 8, fonts, begin in a 16-bit or 32-bit library.
std::vector<uint64_t> FontResources(const Bytes &file) {
  constexpr uint16_t kFontResource = 8;
  constexpr uint32_t kNewTypeBit = 0x8000, kResourceTableAt = 0x24;
  std::vector<uint64_t> found;
  if (!Holds(file, pe::kHeaderOffsetAt, 4) || file[0] != 'M' || file[1] != 'Z')
    return found;
  const uint64_t header = GetU32(file, pe::kHeaderOffsetAt);
  if (!Holds(file, header, kResourceTableAt + 2))
    return found;
  if (file[static_cast<size_t>(header)] == 'P')
    for (const Resource &resource : FindResources(file, kFontResource))
      found.push_back(resource.offset);
  if (file[static_cast<size_t>(header)] != 'N' || file[static_cast<size_t>(header) + 1] != 'E')
    return found;
  // A shift, then for each type: its number, a count, 4 bytes, and for each resource 12 bytes, the place being first.
  uint64_t at = header + GetU16(file, header + kResourceTableAt);
  const uint32_t shift = Holds(file, at, 2) ? GetU16(file, at) : 99;
  if (shift > 16)
    return found;
  for (at += 2; Holds(file, at, 8) && GetU16(file, at) != 0;) {
    const uint32_t type = GetU16(file, at), count = GetU16(file, at + 2);
    at += 8;
    for (uint32_t i = 0; i < count && Holds(file, at, 12); ++i, at += 12)
      if (type == (kFontResource | kNewTypeBit))
        found.push_back(uint64_t{GetU16(file, at)} << shift);
  }
  return found;
}

std::vector<std::string> BitmapNames(const Bytes &file) {
  std::vector<std::string> names;
  const auto add = [&](uint64_t font) {
    if (!Holds(file, font, kBitmapHead))
      return;
    const std::string name = ZeroEnded(file, font + GetU32(file, font + kFaceAt));
    if (!name.empty() && std::find(names.begin(), names.end(), name) == names.end())
      names.push_back(name);
  };
  if (IsBitmapFont(file))
    add(0);
  for (const uint64_t font : FontResources(file))
    add(font);
  return names;
}

} // namespace

bool IsFontFile(const Bytes &file) {
  if (!Holds(file, 0, 12))
    return false;
  const uint32_t tag = Wide(file, 0, 4);
  return IsOneFont(tag) || tag == kCollection || IsBitmapFont(file) || !FontResources(file).empty();
}

std::vector<std::string> FontNames(const Bytes &file) {
  if (!Holds(file, 0, 12))
    return {};
  const uint32_t tag = Wide(file, 0, 4);
  return tag == kCollection ? CollectionNames(file) : IsOneFont(tag) ? TrueTypeNames(file, 0) : BitmapNames(file);
}

} // namespace korb::packer
