#include "archive/Payload.h"

#include <cstring>

#include "archive/UnpackBlock.h"
#include "core/Checksum.h"
#include "core/Failure.h"
#include "core/MessagePump.h"
#include "core/RunValues.h"
#include "files/PathText.h"
#include "format/Damage.h"
#include "format/Texts.h"

namespace korb {

namespace {

constexpr const char *kUnreadable = "Error code 2: failed to read archive data";

// Percent of the whole run: what the volumes share, and where verifying and unpacking stand.
constexpr int32_t kVolumesFrom = 5;
constexpr int32_t kVolumesSpan = 30;
constexpr int32_t kVerifyAt = 36;
constexpr int32_t kUnpackAt = 40;

constexpr int32_t kLargePayload = 0x100000; ///< bytes; to verify or unpack a larger one may take longer than a frame

/// Reads the volume files in their order and asks for those that are not there.
class VolumeReader {
public:
  VolumeReader(const InstallConfig &config, const String &directory, PayloadHost &host)
      : config_(config), directory_(directory), host_(host), serial_(config.volume_serial) {}

  /// Fills the last `left` of the `size` bytes at `payload`.
  void Fill(uint8_t *payload, int32_t size, int32_t left);

private:
  ByteSource &OpenNext(int32_t &count);
  void AskFor(const String &path, bool wrong);

  const InstallConfig &config_;
  const String &directory_;
  PayloadHost &host_;
  uint32_t serial_;
  int32_t number_ = kFirstVolumeNumber;
};

void VolumeReader::Fill(uint8_t *payload, int32_t size, int32_t left) {
  while (left > 0) {
    host_.SetProgress(kVolumesFrom + static_cast<int32_t>(int64_t{size - left} * kVolumesSpan / size));
    int32_t count;
    ByteSource &volume = OpenNext(count);
    // A volume that brings more than is missing is left to the checksum; what passes the buffer is not read.
    if (!volume.Read(payload + (size - left), count < left ? count : left))
      CorruptInstaller(DamageCode::VolumeUnreadable);
    left -= count;
    host_.CloseVolume();
    ++number_;
  }
}

/// The next volume, its serial read and accepted, with `count` bytes of payload to come. The first try is made without
/// a question, since the next file usually lies beside the program.
ByteSource &VolumeReader::OpenNext(int32_t &count) {
  String name;
  name.format(kVolumeNameFormat, config_.volume_base_name, number_);
  const String path = PathJoin(directory_, name);
  for (int32_t tries = 0;;) {
    if (tries > 0)
      AskFor(path, tries > 1);
    int32_t size;
    ByteSource *volume = host_.OpenVolume(path, size);
    if (!volume) {
      ++tries;
      continue;
    }
    uint32_t serial;
    if (size > kVolumeHeaderSize && volume->ReadU32(serial) && serial == serial_) {
      ++serial_;
      count = size - kVolumeHeaderSize;
      return *volume;
    }
    host_.CloseVolume();
    tries = 2;
  }
}

void VolumeReader::AskFor(const String &path, bool wrong) {
  String message;
  if (wrong) {
    message = host_.Text(kTextVolumeWrong);
    message += "\r\n\r\n";
  }
  message.append_format(host_.Text(kTextVolumePrompt), number_, DriveLetter(path));
  if (!host_.AskForVolume(message))
    host_.AskCancel();
}

/// Bytes of the payload that the executable itself holds.
int64_t FirstPartSize(const ArchiveLocation &location, const ArchiveHeader &header, const InstallConfig &config,
                      int32_t section_length) {
  if (config.payload_in_file != 0)
    return location.file_size - (location.section_file_pos + header.payload_offset());
  const int32_t length = header.archive_length < section_length ? header.archive_length : section_length;
  return length - header.payload_offset();
}

/// The stored payload, all `header.payload_size` bytes of it, in the image or in `buffer`.
const uint8_t *GatherPayload(ArchiveFile &file, const ArchiveLocation &location, const ArchiveHeader &header,
                             const InstallConfig &config, const String &volume_directory, PayloadHost &host,
                             String &buffer, const ArchiveCursor &section) {
  const int32_t size = header.payload_size;
  const int64_t in_executable = FirstPartSize(location, header, config, section.length());
  if (in_executable < 0)
    FatalMessage(kUnreadable);
  // More than the payload may stand there: padding of the section, a signature after the file.
  const int32_t first = in_executable < size ? static_cast<int32_t>(in_executable) : size;
  const bool in_file = config.payload_in_file != 0;
  if (!in_file && first == size)
    return section.base() + header.payload_offset();

  buffer.set_length(size);
  uint8_t *payload = reinterpret_cast<uint8_t *>(buffer.data());
  if (!in_file)
    memcpy(payload, section.base() + header.payload_offset(), static_cast<size_t>(first));
  else if (!file.ReadAt(static_cast<int32_t>(location.section_file_pos + header.payload_offset()), payload, first))
    FatalMessage(kUnreadable);
  VolumeReader(config, volume_directory, host).Fill(payload, size, size - first);
  return payload;
}

} // namespace

void AssemblePayload(ArchiveFile &file, const ArchiveLocation &location, const ArchiveHeader &header,
                     const InstallConfig &config, const String &volume_directory, PayloadHost &host, String &buffer,
                     ArchiveCursor &cursor) {
  const uint8_t *payload = GatherPayload(file, location, header, config, volume_directory, host, buffer, cursor);
  int32_t size = header.payload_size;
  host.WaitPhase(config.min_phase_ms);
  host.SetStep(kTextStepVerify, kVerifyAt);
  const bool is_large = size > kLargePayload;
  if (is_large)
    ShowPendingProgress();
  if (Checksum32(payload, size) != header.payload_checksum)
    CorruptInstaller(DamageCode::PayloadChecksum);
  host.WaitPhase(config.min_phase_ms);

  if (HasInstallFlag(IF_PACKED_PAYLOAD) && size != 0) {
    host.SetStep(kTextStepUnpack, kUnpackAt);
    if (is_large)
      ShowPendingProgress();
    uint8_t *block = const_cast<uint8_t *>(payload); // only read
    if (!UnpackBlock(&block, &size))
      CorruptInstaller(DamageCode::PayloadPacked);
    payload = block;
    host.WaitPhase(config.min_phase_ms);
  }
  cursor = ArchiveCursor(payload, size);
}

} // namespace korb
