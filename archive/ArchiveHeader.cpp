#include "archive/ArchiveHeader.h"

#include "archive/Scramble.h"
#include "archive/UnpackBlock.h"
#include "core/Checksum.h"
#include "core/Failure.h"
#include "core/RunValues.h"
#include "format/Damage.h"

namespace korb {

namespace {

constexpr const char *kNewerArchive =
    "The installer version (%d.%d) does not match the version of KORB (%d.%d).  Close all "
    "applications and reinstall KORB.";

/// A signed field that must not be negative.
int32_t ReadSize(ArchiveCursor &cursor, DamageCode code) {
  const int32_t value = static_cast<int32_t>(cursor.CursorReadU32());
  if (value < 0)
    CorruptInstaller(code);
  return value;
}

} // namespace

void ReadArchiveHeader(ArchiveCursor &cursor, ArchiveHeader &header) {
  if (cursor.CursorReadU32() != kArchiveMagic)
    CorruptInstaller(DamageCode::HeaderMagic);
  // One-sided: a lower version, even a negative one, is an older archive and is read.
  const int32_t version = static_cast<int32_t>(cursor.CursorReadU32());
  if (version > kNewestReadableVersion) {
    const int32_t tenths = version / 10 + (version % 10 >= 5 ? 1 : 0);
    FatalFormat(kNewerArchive, kFormatVersion / 100, kFormatVersion / 10 % 10, tenths / 10, tenths % 10);
  }
  header.config_size = static_cast<int32_t>(cursor.CursorReadU32());
  if (header.config_size <= 0 || header.config_size >= kConfigSizeLimit)
    CorruptInstaller(DamageCode::ConfigSize);
  header.config_key = cursor.CursorReadU32();
  header.stub_checksum = cursor.CursorReadU32();
  header.archive_length = ReadSize(cursor, DamageCode::ArchiveLength);
  const int32_t file_count = ReadSize(cursor, DamageCode::FileCount);
  header.payload_size = ReadSize(cursor, DamageCode::PayloadSize);
  header.payload_checksum = cursor.CursorReadU32();

  // A table that passes the end of the block would read as zeros, which are good sizes, two billion times over.
  if (file_count > cursor.left() / 4)
    CorruptInstaller(DamageCode::SizeTable);
  header.sizes.clear();
  for (int32_t i = 0; i < file_count; ++i) {
    const int32_t size = ReadSize(cursor, DamageCode::SizeTable);
    if (size > kMaxFileSize)
      CorruptInstaller(DamageCode::SizeTable);
    header.sizes.append(size);
  }
}

void DecodeConfig(ArchiveCursor &cursor, const ArchiveHeader &header, MemoryStream &stream, ConfigHost &host) {
  stream.Clear();
  cursor.CursorReadBlock(stream, header.config_size);
  ScrambleBlock(stream.data(), stream.length(), header.config_key);
  if (!UnpackString(stream))
    CorruptInstaller(DamageCode::ConfigPacked);

  stream.ReadU64(InstallFlags);
  stream.Rewind();
  if (HasInstallFlag(IF_AUTOMATIC))
    AutomaticMode = true;
  if (!HasInstallFlag(IF_NO_WINDOW))
    host.CreateMainWindow();

  // The key that unlocked the block is the checksum of what it holds.
  if (Checksum32(stream.data(), stream.length()) != header.config_key)
    CorruptInstaller(DamageCode::ConfigChecksum);
}

} // namespace korb
