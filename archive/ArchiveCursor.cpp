#include "archive/ArchiveCursor.h"

#include <cstring>

namespace korb {

ArchiveCursor::ArchiveCursor(const void *base, int32_t length)
    : base_(static_cast<const uint8_t *>(base)), length_(base && length > 0 ? length : 0) {}

const uint8_t *ArchiveCursor::CursorSkip(int32_t count) {
  const uint8_t *place = here();
  position_ += count < left() ? count : left();
  return place;
}

void ArchiveCursor::CursorReadBytes(void *destination, int32_t count) {
  const int32_t there = count < left() ? count : left();
  if (there > 0)
    memcpy(destination, here(), static_cast<size_t>(there));
  memset(static_cast<uint8_t *>(destination) + there, 0, static_cast<size_t>(count - there));
  position_ += there;
}

uint32_t ArchiveCursor::CursorReadU32() {
  uint32_t value;
  CursorReadBytes(&value, sizeof value);
  return value;
}

const char *ArchiveCursor::CursorReadText() {
  const uint8_t *place = here();
  const void *end = left() > 0 ? memchr(place, 0, static_cast<size_t>(left())) : nullptr;
  if (!end) {
    position_ = length_;
    return "";
  }
  position_ += static_cast<int32_t>(static_cast<const uint8_t *>(end) - place) + 1;
  return reinterpret_cast<const char *>(place);
}

void ArchiveCursor::CursorReadBlock(String &block, int32_t count) {
  block.set_length(count);
  CursorReadBytes(block.data(), count);
}

} // namespace korb
