// Reads an archive's header, configuration block and payload records from a block in memory.
#pragma once

#include <cstdint>

#include "core/String.h"

namespace korb {

/// A read point in a block that somebody else owns and that outlives every pointer handed out here.
///
/// Reads never leave the block, whatever its bytes say. Past the end there are zeros and empty texts, and the read
/// point stops at the end: damage thus ends in the check of what was read, as it does in a MemoryStream.
class ArchiveCursor {
public:
  ArchiveCursor() = default;
  /// Stands at the first of `length` bytes at `base`. A null `base` or a negative `length` makes an empty block.
  ArchiveCursor(const void *base, int32_t length);

  /// The next 4 bytes, little-endian, at any address.
  uint32_t CursorReadU32();
  /// The 0-terminated text that stands here, in place. Without a terminator in the block: the empty text, and the read
  /// point goes to the end.
  const char *CursorReadText();
  /// Replaces `block` by the next `count` bytes; `count` must not be negative.
  void CursorReadBlock(String &block, int32_t count);
  /// Fills the `count` bytes at `destination`.
  void CursorReadBytes(void *destination, int32_t count);
  /// Moves over `count` bytes, not below 0, and gives where they stand.
  const uint8_t *CursorSkip(int32_t count);

  /// The whole block, without regard to the read point.
  const uint8_t *base() const { return base_; }
  int32_t length() const { return length_; }
  /// Where the read point stands, 0 to length().
  int32_t position() const { return position_; }
  const uint8_t *here() const { return base_ + position_; }
  /// Bytes from the read point to the end of the block.
  int32_t left() const { return length_ - position_; }

private:
  const uint8_t *base_ = nullptr;
  int32_t length_ = 0;
  int32_t position_ = 0;
};

} // namespace korb
