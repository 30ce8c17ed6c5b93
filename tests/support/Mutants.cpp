#include "tests/support/Mutants.h"

#include <algorithm>

#include "format/Archive.h"
#include "packer/write/ConfigWriter.h"

namespace korb::test {

namespace {

constexpr uint32_t kLimits[] = {0, 1, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF, 0x40000001, 0x10000, 100};

packer::Product MakeProduct(uint32_t which) {
  packer::Product product;
  product.name = "Mutant";
  product.install_dir = "<OS>\\Mutant";
  product.version = "1.2";
  product.flags = IF_UNINSTALL | (which == 0 ? IF_PACKED_PAYLOAD : 0);
  product.license_pages = {"Licence"};
  product.deletions = {{"C:\\old.txt", kDeleteDateFrom, "2/3/2001", 0, {}}};
  product.associations = {{1, ".mut", "Mutant.File", "A mutant", "open", "&Open", "none", "English", "", {}}};
  product.uninstall_values = {{"HelpLink", kUninstallNumber, "7", {}}};
  product.languages = {{"English", std::vector<std::string>(72), {}}};
  product.volume_base_name = Mutants::kVolumeName;
  packer::FileEntry file;
  for (int i = 0; i < 3; ++i) {
    file.name = "dir\\file" + std::to_string(i) + ".txt";
    file.contents.assign(static_cast<size_t>(i) * 700, static_cast<uint8_t>('a' + i));
    for (size_t at = 0; at < file.contents.size(); at += 3)
      file.contents[at] = static_cast<uint8_t>(at * at >> 4);
    file.date = {2001, 2, 3, 4, 5, 6};
    file.flags = i == 1 ? FF_START_MENU : 0u;
    product.files.push_back(file);
  }
  product.payload.layout = which == 1 ? packer::PayloadLayout::kInFile : packer::PayloadLayout::kInSection;
  if (which == 2) {
    product.payload.volume_size = 900;
    product.payload.first_part_size = 500;
  }
  return product;
}

/// Where the archive's entry stands in the section table: the last one.
size_t SectionEntryOf(const Bytes &file) {
  const size_t pe = packer::GetU32(file, pe::kHeaderOffsetAt);
  return pe + pe::kOptionalHeaderAt + packer::GetU16(file, pe + pe::kOptionalHeaderSizeAt) +
         (packer::GetU16(file, pe + pe::kSectionCountAt) - 1u) * pe::kSectionEntrySize;
}

Mutant From(packer::Installer installer, std::string what) {
  return {std::move(what), std::move(installer.executable), std::move(installer.volumes)};
}

} // namespace

/// One to three bits, bytes or numbers between `from` and `to`.
void Mutants::Spoil(Bytes &bytes, size_t from, size_t to) {
  to = std::min(to, bytes.size());
  if (from >= to)
    return;
  for (uint32_t n = 1 + Below(3); n > 0; --n) {
    const size_t at = from + Below(to - from);
    switch (Below(3)) {
    case 0:
      bytes[at] ^= static_cast<uint8_t>(1u << Below(8));
      break;
    case 1:
      bytes[at] = static_cast<uint8_t>(Below(256));
      break;
    default:
      const uint32_t value = kLimits[Below(std::size(kLimits))];
      for (size_t i = 0; i < 4 && at + i < to; ++i)
        bytes[at + i] = static_cast<uint8_t>(value >> 8 * i);
    }
  }
}

/// What a stream can suffer besides: bytes that come in, go, or come again.
void Mutants::Edit(Bytes &bytes, size_t from) {
  const size_t size = bytes.size() - from;
  const auto at = bytes.begin() + static_cast<ptrdiff_t>(from + Below(size));
  const auto end = at + static_cast<ptrdiff_t>(Below(std::min<size_t>(static_cast<size_t>(bytes.end() - at), 300)));
  switch (Below(6)) {
  case 0:
    bytes.erase(at, end);
    break;
  case 1: {
    const Bytes again(at, end);
    bytes.insert(at, again.begin(), again.end());
    break;
  }
  case 2:
    bytes.insert(at, Below(Below(4) == 0 ? 70000 : 10), static_cast<uint8_t>(Below(256)));
    break;
  default:
    Spoil(bytes, from, bytes.size());
  }
}

Mutant Mutants::Raw(const Product &product) {
  Mutant mutant = From(packer::BuildInstaller(product, stub_), "");
  Bytes &file = mutant.executable;
  const size_t entry = SectionEntryOf(file), archive = packer::GetU32(file, entry + pe::kRawPointerAt);
  const size_t sizes = archive + header::kSize, config = sizes + 4 * product.files.size();
  const size_t payload = config + packer::GetU32(file, archive + header::kConfigSizeAt);
  struct Part {
    const char *what;
    size_t from, to;
  };
  const Part parts[] = {{"section entry", entry, entry + pe::kSectionEntrySize},
                        {"archive header", archive, sizes},
                        {"size table", sizes, config},
                        {"configuration", config, payload},
                        {"payload", payload, file.size()},
                        {"padding", file.size() - std::min<size_t>(file.size(), 512), file.size()},
                        {"headers", 0, 0x400}};
  const Part &part = parts[Below(std::size(parts) - (to_run_ ? 1 : 0))];
  mutant.what = part.what;
  Spoil(file, part.from, part.to);
  if (Below(8) == 0) {
    mutant.what = "cut off";
    file.resize(archive + Below(file.size() - archive));
  } else if (Below(16) == 0) {
    mutant.what = "lengthened";
    file.resize(file.size() + 1 + Below(3000), static_cast<uint8_t>(Below(256)));
  }
  return mutant;
}

/// The readers behind keys and checksums.
Mutant Mutants::WithRightSums(Product product) {
  constexpr size_t kOptions = 8;
  const uint32_t which = Below(4);
  if (which == 3)
    product.flags &= ~IF_PACKED_PAYLOAD; // so that it is the records that are spoiled
  Bytes config = packer::WriteConfig(product);
  packer::Payload payload = packer::WritePayload(product);
  const char *what = "configuration with its key";
  if (which < 2) {
    Edit(config, to_run_ ? kOptions : 0);
  } else if (which == 2 && Below(2) == 0) {
    what = "sizes of files";
    payload.sizes[Below(payload.sizes.size())] =
        static_cast<int32_t>(Below(2) == 0 ? kLimits[Below(std::size(kLimits))] : Below(3000));
  } else {
    what = which == 2 ? "packed payload with its sum" : "records with their sum";
    Edit(payload.stored, 0);
  }
  return From(packer::AssembleInstaller(product, config, payload, stub_), what);
}

Mutant Mutants::Disks(const Product &product) {
  Mutant mutant = From(packer::BuildInstaller(product, stub_), "volume");
  const uint32_t which = Below(mutant.volumes.size());
  Bytes &volume = mutant.volumes[which];
  switch (Below(5)) {
  case 0:
    volume.resize(Below(volume.size()));
    break;
  case 1:
    volume.resize(volume.size() + 1 + Below(1000));
    break;
  case 2:
    std::swap(volume, mutant.volumes[Below(mutant.volumes.size())]);
    break;
  default:
    Spoil(volume, 0, Below(2) == 0 ? 4 : volume.size());
  }
  return mutant;
}

Mutant Mutants::Make(uint32_t number) {
  random_.seed(number);
  random_.discard(16);
  const uint32_t which = Below(3);
  const Product product = MakeProduct(which);
  switch (Below(6)) {
  case 0:
    if (which == 2)
      return Disks(product);
    [[fallthrough]];
  case 1:
  case 2:
    return Raw(product);
  default:
    return WithRightSums(product);
  }
}

} // namespace korb::test
