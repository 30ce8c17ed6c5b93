#include "archive/PayloadRecord.h"

#include "core/Checksum.h"
#include "core/Failure.h"
#include "core/MessagePump.h"
#include "format/Damage.h"

namespace korb {

void ReadPayloadRecord(ArchiveCursor &cursor, int32_t size, PayloadRecord &record) {
  record.name = cursor.CursorReadText();
  if (*record.name == 0)
    CorruptInstaller(DamageCode::FileName);
  record.dest_kind = cursor.CursorReadU32();
  record.file_flags = cursor.CursorReadU32();
  record.attributes = cursor.CursorReadU32();

  // The header's reader checked the same, so these two speak only if the table changed since.
  if (size < 0)
    CorruptInstaller(DamageCode::FileSizeNegative);
  if (size > kMaxFileSize)
    CorruptInstaller(DamageCode::FileSizeLimit);
  const bool all_there = size <= cursor.left();
  record.size = size;
  record.contents = cursor.CursorSkip(size);
  const uint32_t checksum = cursor.CursorReadU32();
  // The size table has no checksum of its own: a size beyond the payload shows here.
  if (!all_there || Checksum32(record.contents, size) != checksum)
    CorruptInstaller(DamageCode::FileChecksum);
  PumpMessages();

  cursor.CursorReadBytes(&record.date, kFileDateSize);
  record.label = cursor.CursorReadText();
  record.icon = (record.file_flags & FF_SHORTCUTS) != 0 ? cursor.CursorReadText() : "";
  record.arguments = cursor.CursorReadText();
  record.target = cursor.CursorReadText();
}

} // namespace korb
