// One file of the payload, as its record tells it.
#pragma once

#include <cstdint>

#include "archive/ArchiveCursor.h"
#include "core/Date.h"
#include "format/Archive.h"

namespace korb {

/// Texts and contents stay in the payload's block and are never null.
struct PayloadRecord {
  const char *name;        ///< never empty; may hold a relative path
  uint32_t dest_kind;      ///< DestKind, or a value without meaning
  uint32_t file_flags;     ///< FF_... bits
  uint32_t attributes;     ///< Win32 file attributes
  const uint8_t *contents; ///< at any address
  int32_t size;            ///< bytes of `contents`
  FileDate date;           ///< last write, local time; month 0 means none
  const char *label;       ///< shortcut title, font face name or version, by `dest_kind`
  const char *icon;        ///< empty without FF_SHORTCUTS
  const char *arguments;   ///< of the shortcut
  const char *target;      ///< explicit destination, may be empty
};

/// Reads the record at `cursor`, whose contents have `size` bytes by the header's size table, and moves past it. The
/// contents are verified whatever becomes of the file. Pumps messages once. Damage is reported and ends the run (codes
/// 70, 71, 72, 100).
void ReadPayloadRecord(ArchiveCursor &cursor, int32_t size, PayloadRecord &record);

} // namespace korb
