#include "packer/write/ResourceSection.h"

#include <algorithm>

namespace korb::packer {

namespace {

// Of an entry: it leads to a further table, or its id is a text.
constexpr uint32_t kDeeper = 0x80000000;
constexpr size_t kTableHead = 16, kEntry = 8, kLeaf = 16;
constexpr int kLanguageLevel = 2;

ResourceId IdAt(const ResourceName &name, int level) {
  return level == 0 ? name.type : level == 1 ? name.name : ResourceId(name.language);
}

// In this order: the tables of type, name and language, the texts that they name, the leaves, the contents.
class SectionWriter {
public:
  explicit SectionWriter(const ResourceContents &resources) {
    PutTable(resources.begin(), resources.end(), 0);
    PutTexts();
  }

  Bytes Finish(uint32_t address) && {
    size_t leaf = out_.size();
    out_.resize(leaf + kLeaf * leaves_.size());
    for (const auto &[entry, contents] : leaves_) {
      SetU32(out_, entry, static_cast<uint32_t>(leaf));
      SetU32(out_, leaf, address + static_cast<uint32_t>(out_.size()));
      SetU32(out_, leaf + 4, static_cast<uint32_t>(contents->size()));
      leaf += kLeaf;
      PutBytes(out_, *contents);
      Align();
    }
    return std::move(out_);
  }

private:
  using Iterator = ResourceContents::const_iterator;

  void PutTable(Iterator begin, Iterator end, int level) {
    std::vector<Iterator> firsts; // of those with one id
    for (Iterator it = begin; it != end; ++it)
      if (it == begin || !(IdAt(it->first, level) == IdAt(std::prev(it)->first, level)))
        firsts.push_back(it);
    const auto texts = std::count_if(firsts.begin(), firsts.end(),
                                     [&](Iterator first) { return !IdAt(first->first, level).text.empty(); });
    const size_t table = out_.size();
    out_.resize(table + kTableHead + kEntry * firsts.size());
    SetU16(out_, table + 12, static_cast<uint16_t>(texts));
    SetU16(out_, table + 14, static_cast<uint16_t>(static_cast<ptrdiff_t>(firsts.size()) - texts));
    for (size_t i = 0; i < firsts.size(); ++i) {
      const size_t entry = table + kTableHead + kEntry * i;
      const ResourceId id = IdAt(firsts[i]->first, level);
      SetU32(out_, entry, id.number);
      if (!id.text.empty())
        texts_.emplace_back(entry, id.text);
      if (level == kLanguageLevel) {
        leaves_.emplace_back(entry + 4, &firsts[i]->second);
        continue;
      }
      SetU32(out_, entry + 4, static_cast<uint32_t>(out_.size()) | kDeeper);
      PutTable(firsts[i], i + 1 < firsts.size() ? firsts[i + 1] : end, level + 1);
    }
  }

  void PutTexts() {
    for (const auto &[entry, text] : texts_) {
      SetU32(out_, entry, static_cast<uint32_t>(out_.size()) | kDeeper);
      PutU16(out_, static_cast<uint16_t>(text.size()));
      for (const char16_t unit : text)
        PutU16(out_, unit);
    }
    Align();
  }

  void Align() { out_.resize((out_.size() + 3) / 4 * 4); }

  Bytes out_;
  std::vector<std::pair<size_t, std::u16string>> texts_; // by the place that leads to each
  std::vector<std::pair<size_t, const Bytes *>> leaves_; // by the same
};

} // namespace

Bytes ResourceSection(const ResourceContents &resources, uint32_t address) {
  return SectionWriter(resources).Finish(address);
}

} // namespace korb::packer
