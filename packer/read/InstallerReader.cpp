#include "packer/read/InstallerReader.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "archive/ArchiveFile.h"
#include "archive/ConfigStream.h"
#include "archive/Payload.h"
#include "archive/UninstallerImage.h"
#include "core/Failure.h"
#include "core/MemoryStream.h"
#include "core/RunValues.h"
#include "engine/DeletionRule.h"
#include "format/Damage.h"
#include "packer/ActiveCodePage.h"
#include "packer/FileIo.h"
#include "packer/PeResources.h"
#include "packer/Product.h"
#include "packer/check/TextRules.h"
#include "packer/release/NoMachine.h"

namespace korb::packer {

namespace fs = std::filesystem;

namespace {

class BytesFile final : public ArchiveFile {
public:
  explicit BytesFile(const Bytes &bytes) : bytes_(bytes) {}
  int32_t Size() override { return static_cast<int32_t>(bytes_.size()); }
  bool Seek(int32_t position) override { return position >= 0; }
  bool ReadAt(int32_t position, void *destination, int32_t count) override {
    if (!Holds(position, count))
      return false;
    std::copy_n(bytes_.data() + position, static_cast<size_t>(count), static_cast<uint8_t *>(destination));
    return true;
  }
  bool ReadSpan(String &text, int32_t position, int32_t count) override {
    if (!Holds(position, count))
      return false;
    text.assign(reinterpret_cast<const char *>(bytes_.data()) + position, count);
    return true;
  }

private:
  bool Holds(int32_t position, int32_t count) const {
    return position >= 0 && count >= 0 && int64_t{position} + count <= static_cast<int64_t>(bytes_.size());
  }

  const Bytes &bytes_;
};

// Whether what begins no installer has no look of a damaged one: a program without an archive, or no program at all.
bool IsOtherFile(const Bytes &file) {
  return file.size() < 2 || file[0] != 'M' || file[1] != 'Z' || (IsProgram(file) && !CarriesArchive(file));
}

// The volumes that lie beside the installer. Nobody changes disks: a missing one is the end.
class VolumesBeside final : public PayloadHost {
public:
  VolumesBeside(fs::path folder, int page, std::vector<FoundVolume> &found)
      : folder_(std::move(folder)), page_(page), found_(found) {}

  void SetProgress(int32_t) override {}
  void SetStep(int32_t, int32_t) override {}
  void WaitPhase(int32_t) override {}
  const char *Text(int32_t) override { return ""; }
  bool AskForVolume(const String &) override {
    throw ReportedDamage{"the volume '" + name_ + "' " +
                             (bytes_ ? "is not the one that belongs here" : "is not beside the installer") +
                             ": the installer would ask for its disk",
                         0};
  }
  void AskCancel() override {}

  ByteSource *OpenVolume(const String &path, int32_t &size) override {
    name_ = FromCodePage(path.c_str(), page_);
    std::replace_if(
        name_.begin(), name_.end(), [](char c) { return c >= 0 && (c < 0x20 || c == 0x7F); }, '?');
    bytes_.reset();
    // A name that leads to another folder is not followed.
    if (name_.find_first_of("/\\:") == name_.npos)
      bytes_ = ReadFileBytes(InFolder(name_));
    if (!bytes_ || bytes_->size() > INT32_MAX)
      return nullptr;
    source_ = Source(*bytes_);
    size = static_cast<int32_t>(bytes_->size());
    return &source_;
  }
  void CloseVolume() override {
    if (source_.TouchedContents())
      found_.push_back({name_, static_cast<int32_t>(bytes_->size())});
  }

private:
  // The file in the folder; in any case of its letters, as Windows looks for it.
  fs::path InFolder(const std::string &name) const {
    std::error_code error;
    const fs::path wanted = folder_ / PathFromUtf8(name);
    if (!fs::exists(wanted, error))
      for (const auto &entry : fs::directory_iterator(folder_.empty() ? fs::path(".") : folder_, error))
        if (LowerCase(ManifestPath(entry.path().filename())) == LowerCase(name))
          return entry.path();
    return wanted;
  }

  class Source final : public ByteSource {
  public:
    Source() = default;
    explicit Source(const Bytes &bytes) : bytes_(&bytes) {}
    bool Read(void *destination, int32_t count) override {
      if (count < 0 || position_ + static_cast<size_t>(count) > bytes_->size())
        return false;
      std::copy_n(bytes_->data() + position_, static_cast<size_t>(count), static_cast<uint8_t *>(destination));
      position_ += static_cast<size_t>(count);
      return true;
    }
    bool TouchedContents() const { return position_ > static_cast<size_t>(kVolumeHeaderSize); }

  private:
    const Bytes *bytes_ = nullptr;
    size_t position_ = 0;
  };

  fs::path folder_;
  int page_;
  std::vector<FoundVolume> &found_;
  std::string name_;
  std::optional<Bytes> bytes_;
  Source source_;
};

} // namespace

InstallerReader::InstallerReader(const fs::path &path, int page) : code_page(page), folder_(path.parent_path()) {
  auto bytes = ReadFileBytes(path);
  if (!bytes)
    throw PackError("can't read '" + ShowPath(path) + "': " + WhyUnreadable(path));
  if (bytes->size() > INT32_MAX)
    throw PackError("'" + ShowPath(path) + "' is too large: an installer has less than 2 GiB");
  file = std::move(*bytes);
}

InstallerReader::~InstallerReader() {
  const uint8_t *block = cursor_.base();
  const bool in_file = block >= file.data() && block <= file.data() + file.size();
  if (!in_file && block != reinterpret_cast<const uint8_t *>(payload_.data()))
    std::free(const_cast<uint8_t *>(block)); // an unpacked payload
}

void InstallerReader::Read() {
  ResetRunValues(); // another installer may have been read before
  NoMachine machine(background);
  Read(machine);
}

void InstallerReader::Read(ConfigHost &machine) {
  try {
    ReadParts(machine);
  } catch (const ReportedDamage &report) {
    is_other_file = reached == Part::kNone && IsOtherFile(file);
    damage = is_other_file ? ReportedDamage("it carries no archive, so it is no installer that korbpack has built", 0)
             : report.text.starts_with("Out Of Memory") ? ReportedDamage("there is not enough memory to read it", 0)
                                                        : report;
  }
}

// The section as the loader maps it, no longer than the image.
ArchiveCursor InstallerReader::Section() const {
  const int64_t begin = location.section_file_pos, raw = location.section_raw_size;
  const int64_t missing = begin + raw - static_cast<int64_t>(file.size());
  if (begin < 0 || raw < 0 || missing > 0)
    throw ReportedDamage{missing > 0 ? "the file is cut off: " + std::to_string(missing) +
                                           " bytes of the archive's section are missing, so Windows won't start it"
                                     : "the archive's section is out of place",
                         0};
  uint32_t image_size = 0;
  BytesFile(file).ReadAt(location.pe_offset + pe::kImageSizeAt, &image_size, sizeof image_size);
  const int64_t mapped = int64_t{image_size} - location.section_address;
  return ArchiveCursor(file.data() + begin, static_cast<int32_t>(std::clamp<int64_t>(mapped, 0, raw)));
}

void InstallerReader::ReadParts(ConfigHost &machine) {
  if (AsksForUtf8(file))
    code_page = kUtf8;
  BytesFile source(file);
  location = LocateArchive(source);
  cursor_ = Section();
  reached = Part::kSection;

  ReadArchiveHeader(cursor_, header);
  reached = Part::kHeader;

  MemoryStream stream;
  DecodeConfig(cursor_, header, stream, machine);
  ReadConfigStream(stream, location.file_size, machine, config);
  reached = Part::kConfiguration;

  program = StateOfProgram();
  String uninstaller;
  BuildUninstallerImage(source, location, header, config, uninstaller);
  reached = Part::kProgram;
  uninstaller_size = uninstaller.length();

  VolumesBeside host(folder_, code_page, volumes);
  AssemblePayload(source, location, header, config, String(), host, payload_, cursor_);
  payload_cursor_ = cursor_;
  unpacked_size = cursor_.length();
  reached = Part::kPayload;

  ReadRecords();
  reached = Part::kFiles;

  CheckDeletions();
  reached = Part::kDeletions;
}

ProgramState InstallerReader::StateOfProgram() const {
  Bytes part(file.begin(), file.begin() + location.section_file_pos);
  if (ChecksumOf(part) == header.stub_checksum)
    return ProgramState::kAsBuilt;
  const size_t pe_header = static_cast<size_t>(location.pe_offset);
  if (!location.is_signed() || part.size() < pe_header + pe::kSignatureAt + pe::kSignatureEntrySize)
    return ProgramState::kChanged;
  SetU32(part, pe_header + pe::kImageChecksumAt, 0);
  SetU32(part, pe_header + pe::kSignatureAt, 0);
  SetU32(part, pe_header + pe::kSignatureAt + 4, 0);
  return ChecksumOf(part) == header.stub_checksum ? ProgramState::kSigned : ProgramState::kChanged;
}

void InstallerReader::ReadRecords() {
  for (int32_t i = 0; i < header.sizes.count; ++i) {
    PayloadRecord record;
    try {
      ReadPayloadRecord(cursor_, header.sizes.at(i), record);
      if (!HasDestination(record.dest_kind, record.file_flags, record.target))
        CorruptInstaller(DamageCode::FileKind);
    } catch (const ReportedDamage &report) {
      throw ReportedDamage("file " + std::to_string(i + 1) + " of " + std::to_string(header.sizes.count) + ": " +
                               report.text,
                           report.code);
    }
    records.push_back(record);
  }
}

// The installer looks at the condition only where the old file is there.
void InstallerReader::CheckDeletions() const {
  for (int32_t i = 0; i < config.deletions.count; ++i)
    if (!IsDeletionReadable(config.deletions.at(i)))
      CorruptInstaller(DamageCode::DeletionDate);
}

} // namespace korb::packer
