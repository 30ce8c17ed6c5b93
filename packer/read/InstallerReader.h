// Reads a finished installer, with the installer's own code (archive/), so that both always agree on what is in one.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "archive/ArchiveCursor.h"
#include "archive/ArchiveHeader.h"
#include "archive/ArchiveLocation.h"
#include "archive/ConfigHost.h"
#include "archive/InstallConfig.h"
#include "archive/PayloadRecord.h"
#include "packer/Bytes.h"
#include "packer/CodePage.h"
#include "packer/read/ReportedDamage.h"

namespace korb::packer {

/// What of an installer is read, in the installer's own order. A part that was read is sound.
enum class Part {
  kNone,
  kSection,       ///< the PE headers led to the archive's section
  kHeader,        ///< and its header and size table are within their limits
  kConfiguration, ///< it unpacks, has its checksum, and every field is within its limits
  kProgram,       ///< the executable part is what it was, where the archive asks for that
  kPayload,       ///< gathered from all volumes, it has its checksum and unpacks
  kFiles,         ///< every record has its checksum and a place to go
  kDeletions,     ///< every date that an old file is compared with is one
};

/// The executable part, by the checksum that was taken when the installer was built.
enum class ProgramState {
  kAsBuilt,
  kSigned, ///< as built, but for what signing fills in
  kChanged,
};

/// A volume file that was found beside the installer.
struct FoundVolume {
  std::string name; ///< UTF-8
  int32_t size;     ///< bytes of the file
};

/// An installer and its volumes. The fields that a run keeps as run-wide values (core/RunValues.h) are there too, so
/// only one reader is in use at a time.
class InstallerReader {
public:
  /// Throws PackError when there is no such file, or it is too large to be an installer.
  /// `page` is the code page of its texts, unless it asks for UTF-8.
  explicit InstallerReader(const std::filesystem::path &path, int page = kDefaultCodePage);
  /// An installer that is no file; its volumes lie in `folder`.
  InstallerReader(Bytes installer, std::filesystem::path folder)
      : file(std::move(installer)), folder_(std::move(folder)) {}
  ~InstallerReader();
  InstallerReader(const InstallerReader &) = delete;

  /// Reads everything, up to the first damage. Any bytes end in a value of `reached`. There is no machine, so
  /// directories stay as the archive gives them.
  void Read();
  /// The same, by a machine that answers what the configuration asks, and with the run's values and the looks of
  /// `config` as they are now.
  void Read(ConfigHost &machine);
  /// The records of the files, once they were read, to be read again.
  ArchiveCursor Payload() const { return payload_cursor_; }

  Part reached = Part::kNone;
  std::optional<ReportedDamage> damage; ///< why it went no further
  bool is_other_file = false;           ///< it has no look of an installer, not even of a damaged one

  Bytes file;
  ArchiveLocation location;
  ArchiveHeader header;
  InstallConfig config;
  String background;                             ///< the bitmap without its file header
  ProgramState program = ProgramState::kChanged; ///< read with the configuration
  int code_page = kDefaultCodePage;              ///< of the texts
  int64_t unpacked_size = 0;
  int32_t uninstaller_size = 0; ///< bytes
  std::vector<FoundVolume> volumes;
  std::vector<PayloadRecord> records; ///< their texts and contents stay in this object

private:
  void ReadParts(ConfigHost &machine);
  ArchiveCursor Section() const;
  ProgramState StateOfProgram() const;
  void ReadRecords();
  void CheckDeletions() const;

  std::filesystem::path folder_;
  ArchiveCursor cursor_;
  ArchiveCursor payload_cursor_; // at the first record
  String payload_;               // holds it when it doesn't stand in the file as a whole
};

} // namespace korb::packer
