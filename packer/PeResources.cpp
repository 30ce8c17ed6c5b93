#include "packer/PeResources.h"

#include "format/Archive.h"

namespace korb::packer {

namespace {

// From the optional header: its magic number, and where the data directories begin in either form.
constexpr uint16_t kPe32 = 0x10B, kPe32Plus = 0x20B;
constexpr uint32_t kDirectoriesAt = 96, kWideDirectoriesAt = 112, kResourceDirectory = 2;

class ResourceReader {
public:
  explicit ResourceReader(const Bytes &file) : file_(file) {}

  std::vector<Resource> Find(uint32_t type);
  bool ReadHeaders(); // false when it is no program or library
  bool IsNarrow() const { return magic_ == kPe32; }
  bool HasSection(std::string_view name) const;

private:
  bool Holds(uint64_t at, uint64_t count) const { return at + count <= file_.size(); }
  std::optional<uint64_t> Root();
  std::optional<uint64_t> FileOffset(uint32_t address) const;

  const Bytes &file_;
  uint64_t optional_ = 0; // the optional header
  uint16_t magic_ = 0;
  uint64_t table_ = 0; // the section table
  uint32_t sections_ = 0;
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

// The place of the resource tree, which has one when the headers lead to it.
std::optional<uint64_t> ResourceReader::Root() {
  if (!ReadHeaders())
    return std::nullopt;
  const uint64_t directories = optional_ + (magic_ == kPe32 ? kDirectoriesAt : kWideDirectoriesAt);
  if (!Holds(directories, 8 * (kResourceDirectory + 1)) || GetU32(file_, directories - 4) <= kResourceDirectory)
    return std::nullopt;
  return FileOffset(GetU32(file_, directories + 8 * kResourceDirectory));
}

// A tree of three levels, type, name and language, whose leaves tell address and size. Every offset in it counts from
// the root; the top bit of one tells a further level from a leaf.
std::vector<Resource> ResourceReader::Find(uint32_t type) {
  constexpr uint32_t kDirectoryHead = 16, kEntry = 8, kDeeper = 0x80000000;
  std::vector<Resource> found;
  const auto root = Root();
  if (!root)
    return found;
  struct Node {
    uint64_t at;
    int level;
  };
  std::vector<Node> open{{*root, 0}};
  for (size_t visited = 0; visited < open.size() && visited < 10000; ++visited) {
    const Node node = open[visited];
    if (!Holds(node.at, kDirectoryHead))
      continue;
    const uint32_t entries = uint32_t{GetU16(file_, node.at + 12)} + GetU16(file_, node.at + 14);
    for (uint32_t i = 0; i < entries; ++i) {
      const uint64_t entry = node.at + kDirectoryHead + uint64_t{i} * kEntry;
      if (!Holds(entry, kEntry))
        break;
      if (node.level == 0 && GetU32(file_, entry) != type)
        continue;
      const uint32_t below = GetU32(file_, entry + 4);
      const uint64_t at = *root + (below & ~kDeeper);
      if (below & kDeeper) {
        if (node.level < 2 && open.size() < 10000)
          open.push_back({at, node.level + 1});
      } else if (Holds(at, kDirectoryHead) && found.size() < 10000) {
        const uint32_t size = GetU32(file_, at + 4);
        const auto offset = FileOffset(GetU32(file_, at));
        if (offset && Holds(*offset, size))
          found.push_back({static_cast<uint32_t>(*offset), size});
      }
    }
  }
  return found;
}

} // namespace

std::vector<Resource> FindResources(const Bytes &file, uint32_t type) {
  return ResourceReader(file).Find(type);
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
