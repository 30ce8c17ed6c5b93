#include "packer/PeResources.h"

#include "format/Archive.h"

namespace korb::packer {

namespace {

// From the optional header: its magic number, and where the data directories begin in either form.
constexpr uint16_t kPe32 = 0x10B, kPe32Plus = 0x20B;
constexpr uint32_t kDirectoriesAt = 96, kWideDirectoriesAt = 112, kResourceDirectory = 2;
// Of an entry of the tables: its id is a text, or it leads to a further table.
constexpr uint32_t kDeeper = 0x80000000;
constexpr uint32_t kLeafSize = 16;
constexpr uint64_t kLongestName = 1000; // characters; tools have 256

class ResourceReader {
public:
  explicit ResourceReader(const Bytes &file) : file_(file) {}

  struct Leaf {
    ResourceName name;
    Resource resource;
  };
  /// The leaves of the tree, below `type` alone if that is given.
  std::vector<Leaf> Leaves(std::optional<uint16_t> type);
  bool IsWhole() const { return is_whole_; } // whether Leaves could read all that the tables tell of
  bool ReadHeaders();                        // false when it is no program or library
  bool IsNarrow() const { return magic_ == kPe32; }
  bool HasSection(std::string_view name) const;

private:
  bool Holds(uint64_t at, uint64_t count) const { return at + count <= file_.size(); }
  bool HasRoot();
  ResourceId Id(uint64_t entry);
  std::optional<Resource> Contents(uint64_t leaf);
  std::optional<uint64_t> FileOffset(uint32_t address) const;

  const Bytes &file_;
  uint64_t optional_ = 0; // the optional header
  uint16_t magic_ = 0;
  uint64_t table_ = 0; // the section table
  uint32_t sections_ = 0;
  uint64_t root_ = 0; // of the tree of resources
  bool is_whole_ = true;
};

std::optional<uint64_t> ResourceReader::FileOffset(uint32_t address) const {
  for (uint32_t i = 0; i < sections_; ++i) {
    const uint64_t entry = table_ + i * pe::kSectionEntrySize;
    if (!Holds(entry, pe::kSectionEntrySize))
      break;
    const uint32_t begin = GetU32(file_, entry + pe::kVirtualAddressAt);
    if (address >= begin && address - begin < GetU32(file_, entry + pe::kRawSizeAt))
      return uint64_t{address - begin} + GetU32(file_, entry + pe::kRawPointerAt);
  }
  return std::nullopt;
}

bool ResourceReader::ReadHeaders() {
  if (!Holds(pe::kHeaderOffsetAt, 4) || file_[0] != 'M' || file_[1] != 'Z')
    return false;
  const uint64_t header = GetU32(file_, pe::kHeaderOffsetAt);
  optional_ = header + pe::kOptionalHeaderAt;
  if (!Holds(optional_, kWideDirectoriesAt))
    return false;
  sections_ = GetU16(file_, header + pe::kSectionCountAt);
  table_ = optional_ + GetU16(file_, header + pe::kOptionalHeaderSizeAt);
  magic_ = GetU16(file_, optional_);
  return magic_ == kPe32 || magic_ == kPe32Plus;
}

bool ResourceReader::HasSection(std::string_view name) const {
  for (uint32_t i = 0; i < sections_; ++i) {
    const uint64_t entry = table_ + i * pe::kSectionEntrySize;
    if (!Holds(entry, pe::kSectionEntrySize))
      break;
    const std::string_view text(reinterpret_cast<const char *>(file_.data()) + entry, pe::kSectionNameSize);
    if (text.substr(0, text.find('\0')) == name)
      return true;
  }
  return false;
}

// False when there is no tree of resources, or the headers lead nowhere.
bool ResourceReader::HasRoot() {
  if (!ReadHeaders())
    return false;
  const uint64_t directories = optional_ + (magic_ == kPe32 ? kDirectoriesAt : kWideDirectoriesAt);
  if (!Holds(directories, 8 * (kResourceDirectory + 1)) || GetU32(file_, directories - 4) <= kResourceDirectory)
    return false;
  const uint32_t address = GetU32(file_, directories + 8 * kResourceDirectory);
  const auto root = FileOffset(address);
  is_whole_ = root || address == 0;
  root_ = root.value_or(0);
  return root.has_value();
}

// The number in an entry, or the text that it leads to.
ResourceId ResourceReader::Id(uint64_t entry) {
  const uint32_t id = GetU32(file_, entry);
  if (!(id & kDeeper)) {
    is_whole_ = is_whole_ && id <= UINT16_MAX;
    return static_cast<uint16_t>(id);
  }
  const uint64_t at = root_ + (id & ~kDeeper);
  std::u16string text;
  const uint64_t length = Holds(at, 2) ? GetU16(file_, at) : 0;
  if (length <= kLongestName && Holds(at, 2 + 2 * length))
    for (uint64_t i = 1; i <= length; ++i)
      text += static_cast<char16_t>(GetU16(file_, at + 2 * i));
  is_whole_ = is_whole_ && !text.empty();
  return text;
}

std::optional<Resource> ResourceReader::Contents(uint64_t leaf) {
  if (!Holds(leaf, kLeafSize))
    return std::nullopt;
  const uint32_t size = GetU32(file_, leaf + 4);
  const auto offset = FileOffset(GetU32(file_, leaf));
  if (!offset || !Holds(*offset, size))
    return std::nullopt;
  return Resource{static_cast<uint32_t>(*offset), size};
}

// A tree of three levels, type, name and language, whose leaves tell address and size. Every offset in it counts from
// the root; the top bit of one tells a further level from a leaf.
std::vector<ResourceReader::Leaf> ResourceReader::Leaves(std::optional<uint16_t> type) {
  constexpr uint32_t kDirectoryHead = 16, kEntry = 8;
  constexpr size_t kMostEntries = 20000; // of all levels: tables may lead to each other
  std::vector<Leaf> found;
  if (!HasRoot())
    return found;
  struct Node {
    uint64_t at;
    int level;
    ResourceName name;
  };
  std::vector<Node> open{{root_, 0, {0, 0, 0}}};
  size_t visited = 0;
  for (size_t next = 0; next < open.size(); ++next) {
    const Node node = open[next];
    const uint32_t entries =
        Holds(node.at, kDirectoryHead) ? uint32_t{GetU16(file_, node.at + 12)} + GetU16(file_, node.at + 14) : 0;
    is_whole_ = is_whole_ && entries > 0;
    for (uint32_t i = 0; i < entries; ++i) {
      const uint64_t entry = node.at + kDirectoryHead + uint64_t{i} * kEntry;
      if (!Holds(entry, kEntry) || ++visited > kMostEntries) {
        is_whole_ = false;
        break;
      }
      if (node.level == 0 && type && GetU32(file_, entry) != *type)
        continue;
      const ResourceId id = Id(entry);
      Node below{root_ + (GetU32(file_, entry + 4) & ~kDeeper), node.level + 1, node.name};
      if (node.level == 2)
        below.name.language = id.number;
      else
        (node.level == 0 ? below.name.type : below.name.name) = id;
      const bool is_table = (GetU32(file_, entry + 4) & kDeeper) != 0;
      is_whole_ = is_whole_ && is_table == (node.level < 2) && (node.level < 2 || id.text.empty());
      if (is_table && node.level < 2)
        open.push_back(std::move(below));
      else if (const auto contents = is_table ? std::nullopt : Contents(below.at))
        found.push_back({below.name, *contents});
      else
        is_whole_ = false;
    }
  }
  return found;
}

} // namespace

std::vector<Resource> FindResources(const Bytes &file, uint16_t type) {
  std::vector<Resource> found;
  for (const auto &leaf : ResourceReader(file).Leaves(type))
    found.push_back(leaf.resource);
  return found;
}

std::optional<std::map<ResourceName, Resource>> AllResources(const Bytes &file) {
  ResourceReader reader(file);
  std::map<ResourceName, Resource> all;
  for (const auto &leaf : reader.Leaves(std::nullopt))
    if (!all.emplace(leaf.name, leaf.resource).second)
      return std::nullopt;
  return reader.IsWhole() ? std::optional(std::move(all)) : std::nullopt;
}

bool IsProgram(const Bytes &file) {
  return ResourceReader(file).ReadHeaders();
}

bool Is32BitProgram(const Bytes &file) {
  ResourceReader reader(file);
  return reader.ReadHeaders() && reader.IsNarrow();
}

bool CarriesArchive(const Bytes &file) {
  ResourceReader reader(file);
  return reader.ReadHeaders() && reader.HasSection(kArchiveSectionName);
}

} // namespace korb::packer
