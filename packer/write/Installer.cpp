#include "packer/write/Installer.h"

#include <algorithm>

#include "core/Arithmetic.h"
#include "packer/write/ConfigWriter.h"
#include "packer/write/InstallerFace.h"

namespace korb::packer {

namespace {

constexpr size_t kMaxInstaller = 0x7FFF0000; // all sizes and positions are signed 32 bits
// Left free of a volume for the signature of an installer that is going to be signed: one with a time stamp and all its
// certificates has some 10 KB, two of them less than this.
constexpr size_t kSignatureRoom = 32 * 1024;

// The size of a section that is filled by `size` bytes.
size_t FilledSection(size_t size, const StubImage &stub) {
  return static_cast<size_t>(RoundUp(static_cast<int64_t>(size), stub.SectionAlignment()));
}

// How many payload bytes the executable holds. `head` is what the section holds before them.
size_t FirstPartSize(const PayloadPlan &plan, size_t payload, size_t head, const StubImage &stub) {
  if (plan.volume_size == 0 && !plan.first_part_size)
    return payload;
  if (plan.volume_size <= kVolumeHeaderSize)
    throw PackError("a volume needs a size of more than 4 bytes");
  if (plan.first_part_size) {
    if (*plan.first_part_size < 0)
      throw PackError("the size of the first part is negative");
    return std::min<size_t>(static_cast<size_t>(*plan.first_part_size), payload);
  }
  // Without a size of its own, the first part fills an executable that is as large as the other disks' files.
  const bool in_file = plan.layout == PayloadLayout::kInFile;
  const size_t begin = stub.SectionFilePos(), alignment = stub.SectionAlignment();
  const size_t taken = begin + (plan.will_be_signed ? kSignatureRoom : 0);
  size_t room = std::max<size_t>(static_cast<size_t>(plan.volume_size), taken) - taken;
  if (!in_file)
    room -= room % alignment;
  if (room < (in_file ? FilledSection(head, stub) : head))
    throw PackError("the program and the configuration alone are larger than a volume");
  return std::min(room - head, payload);
}

void PutHeader(Bytes &out, const StoredConfig &config, const Payload &payload, uint32_t stub_checksum,
               size_t archive_length) {
  PutU32(out, kArchiveMagic);
  PutI32(out, kFormatVersion);
  PutU32(out, static_cast<uint32_t>(config.block.size()));
  PutU32(out, config.key);
  PutU32(out, stub_checksum);
  PutU32(out, static_cast<uint32_t>(archive_length));
  PutU32(out, static_cast<uint32_t>(payload.sizes.size()));
  PutU32(out, static_cast<uint32_t>(payload.stored.size()));
  PutU32(out, ChecksumOf(payload.stored));
  for (int32_t size : payload.sizes)
    PutI32(out, size);
  PutBytes(out, config.block);
}

std::vector<Bytes> CutVolumes(const Product &product, const Bytes &stored, size_t first) {
  std::vector<Bytes> volumes;
  const size_t room = static_cast<size_t>(product.payload.volume_size) - kVolumeHeaderSize;
  for (size_t begin = first; begin < stored.size();) {
    const size_t end = std::min(begin + room, stored.size());
    Bytes volume;
    PutU32(volume, product.volume_serial + static_cast<uint32_t>(volumes.size()));
    volume.insert(volume.end(), stored.begin() + static_cast<ptrdiff_t>(begin),
                  stored.begin() + static_cast<ptrdiff_t>(end));
    volumes.push_back(std::move(volume));
    begin = end;
  }
  return volumes;
}

} // namespace

StubImage ProgramOf(const Product &product, const Bytes &stub) {
  StubImage image(stub);
  image.UseCodePage(product.code_page);
  PutFace(product, image);
  return image;
}

Installer AssembleInstaller(const Product &product, const Bytes &config, const Payload &payload, const Bytes &stub) {
  const StubImage image = ProgramOf(product, stub);
  const bool in_file = product.payload.layout == PayloadLayout::kInFile;
  StoredConfig stored = StoreConfig(config);
  const size_t table_size = header::kSize + 4 * payload.sizes.size();
  size_t head = table_size + stored.block.size();
  size_t first = FirstPartSize(product.payload, payload.stored.size(), head, image);
  // What fills the file up to the place of a signature would be payload here, with more of it in the volumes.
  if (in_file && first < payload.stored.size())
    first -= std::min(first, (head + first) % pe::kSignatureAlignment);
  if (image.SectionFilePos() + FilledSection(head + first, image) > kMaxInstaller)
    throw PackError("the installer would be larger than 2 GiB");

  // A payload in the file runs to the file's very end. When it would end inside the section, which is always full, the
  // configuration is lengthened instead.
  const size_t raw = FilledSection(in_file ? head : head + first, image);
  if (in_file && head + first < raw) {
    stored = StoreConfig(config, stored.block.size() + raw - head - first);
    head = table_size + stored.block.size();
  }
  const size_t used = in_file ? raw : head + first;

  Installer installer;
  installer.executable = image.WithSection(static_cast<uint32_t>(used), static_cast<uint32_t>(raw));
  const size_t section = installer.executable.size();
  installer.executable.reserve(section + std::max(raw, head + first));
  PutHeader(installer.executable, stored, payload, ChecksumOf(installer.executable), used);
  installer.executable.insert(installer.executable.end(), payload.stored.begin(),
                              payload.stored.begin() + static_cast<ptrdiff_t>(first));
  installer.executable.resize(std::max(installer.executable.size(), section + raw));
  installer.tail_size = installer.executable.size() - section - raw;
  installer.volumes = CutVolumes(product, payload.stored, first);
  installer.config_size = stored.block.size();
  installer.payload_size = payload.stored.size();
  installer.plain_size = payload.plain_size;
  installer.storing = payload.storing;
  return installer;
}

bool TryInstaller(const Product &product, const Bytes &stub) {
  const StubImage image = ProgramOf(product, stub);
  uint64_t payload = 0;
  for (const FileEntry &file : product.files)
    payload += file.contents.size();
  if (payload > INT32_MAX)
    throw PackError("the files add up to more than 2 GiB");
  const size_t head = header::kSize + 4 * product.files.size() + StoreConfig(WriteConfig(product)).block.size();
  FirstPartSize(product.payload, static_cast<size_t>(payload), head, image);
  // What is packed can be told for sure when it is a hundred times the size of what it would have to fit into.
  constexpr uint64_t kBestRatio = 100;
  const uint64_t least = product.Has(IF_PACKED_PAYLOAD) ? payload / kBestRatio : payload;
  return product.payload.layout == PayloadLayout::kInFile && least > FilledSection(head, image) - head;
}

Installer BuildInstaller(const Product &product, const Bytes &stub, const ProgressCallback &progress) {
  const Payload payload = WritePayload(product, progress);
  const uint64_t without = payload.storing == Storing::kAsWished ? 0 : IF_PACKED_PAYLOAD;
  return AssembleInstaller(product, WriteConfig(product, without), payload, stub);
}

std::string VolumeFileName(const Product &product, size_t number) {
  return product.volume_base_name + std::to_string(number) + ".KRB";
}

} // namespace korb::packer
