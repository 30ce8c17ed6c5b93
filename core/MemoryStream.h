// A stream over a block in memory.
#pragma once

#include "core/ByteStream.h"
#include "core/String.h"

namespace korb {

/// A String with a place in it: the bytes of the stream are the String's, its length is the stream's, and code that
/// works on the whole block (checksum, scrambler, decoder) takes the stream as the String that it is.
///
/// A read past the end stops nothing: it gives what is there, then zeros, moves on by the full count and says false. So
/// a reader may walk a whole format, look at few results, and yet see nothing but zeros and empty texts after the end.
/// The place only ever moves by what was asked, and stays within 32 signed bits.
class MemoryStream : public String, public PositionedStream {
public:
  MemoryStream() = default;

  /// A count of 0 is true even with a null destination; otherwise null is false.
  bool Read(void *destination, int32_t count) override;
  /// As in ByteSource. A count beyond what is left is false at once: it moves on and takes no memory.
  bool ReadBytes(String &text, int32_t count);
  /// True while a byte can be read.
  virtual bool HasMore() const;
  /// Overwrites, and grows the stream after its end; never shortens it. `source` may lie in the stream. False for a
  /// negative count, a null source and a negative place.
  bool Write(const void *source, int32_t count) override;

  /// The place of the next byte, counted from 0.
  int32_t Tell() const { return position_; }
  void Rewind() { position_ = 0; }
  /// False, and nothing moves, when `offset` is negative or beyond the length; the end itself is a place.
  bool Seek(int32_t offset);
  /// `offset` is counted from the end, so it is 0 or negative.
  bool SeekFromEnd(int32_t offset);
  /// Moves by `count` without any check. Stops at the largest 32-bit place.
  void Skip(int32_t count);
  /// Cuts the stream at its place; a place beyond the end changes nothing.
  void Truncate();
  /// Empties the stream and frees its block.
  void Clear();

  // What a decoder needs of its output. That of the tests uses them; the program's writes to a bare block.

  /// Moves the place on by `count` bytes, which then exist, and gives where the first of them stands until
  /// the stream next grows. New bytes are zeros. Null when the place or the count is negative.
  uint8_t *Reserve(int32_t count);
  /// Copies `count` bytes from place `from` to the present one and moves on. False, and nothing changes, unless the
  /// source is at least one byte and ends at or before the place, and the place is not beyond the end: a copy never
  /// sees its own output.
  bool CopyWithin(int32_t from, int32_t count);
};

} // namespace korb
