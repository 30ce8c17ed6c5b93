// Sources and sinks of bytes, and the typed reads and writes on them.
//
// A class that can fill a buffer is a ByteSource, one that can take a buffer is a ByteSink; both get the typed
// operations by that. Integers are little-endian. No format of today has counted texts or fills (ReadText8, WriteText8
// and the like, WriteFill); what nobody calls the program doesn't carry.
#pragma once

#include <cstdint>
#include <type_traits>

namespace korb {

class String;

/// Something that bytes are read from. Every read says whether all its bytes were there; what a failed read leaves in
/// the destination is the source's own affair (a MemoryStream gives zeros).
class ByteSource {
public:
  /// Reads `count` bytes to `destination`. A count of 0 is true, a negative one false.
  virtual bool Read(void *destination, int32_t count) = 0;

  bool ReadByte(uint8_t &value) { return Read(&value, 1); }
  bool ReadU16(uint16_t &value) { return Read(&value, 2); }
  bool ReadU32(uint32_t &value) { return Read(&value, 4); }
  bool ReadU32(int32_t &value) { return Read(&value, 4); }
  bool ReadU64(uint64_t &value) { return Read(&value, 8); }
  /// The plain bytes of a fixed record.
  template <class T>
  bool ReadRecord(T &record) {
    static_assert(std::is_trivially_copyable_v<T>);
    return Read(&record, sizeof(T));
  }

  /// Appends `count` bytes to `text`. On failure `text` is as before, though the bytes that were there are consumed.
  /// A count not above 0 is true and reads nothing.
  bool ReadBytes(String &text, int32_t count);
  /// Replaces `text` by the bytes up to a 0 byte, which is consumed. False only when not even one byte could be read:
  /// a text that the end of the data cuts off is good.
  bool ReadText(String &text);
  /// Replace `text` by a text after its count of 1, 2 or 4 bytes. On failure of the count `text` is left alone, on
  /// failure of the bytes it is emptied. A negative count is refused, and so is one that the heap can't hold.
  bool ReadText8(String &text);
  bool ReadText16(String &text);
  bool ReadText32(String &text);

protected:
  ~ByteSource() = default;

private:
  bool ReadCounted(String &text, int32_t count);
};

/// Something that bytes are written to.
class ByteSink {
public:
  /// Writes `count` bytes. A count of 0 is true.
  virtual bool Write(const void *source, int32_t count) = 0;

  bool WriteByte(uint8_t value) { return Write(&value, 1); }
  bool WriteU16(uint16_t value) { return Write(&value, 2); }
  bool WriteU32(uint32_t value) { return Write(&value, 4); }
  /// The bytes of `text` without any terminator or count, so ReadText can't read them back. Null writes nothing and
  /// is true.
  bool WriteText(const char *text);
  /// A count of 1, 2 or 4 bytes, then as many bytes of `text`: at most 255 and 65,535 with the first two. Null, or a
  /// length below 1, writes a count of 0.
  bool WriteText8(const char *text, int32_t length);
  bool WriteText16(const char *text, int32_t length);
  bool WriteText32(const char *text, int32_t length);
  /// `count` times the low byte of `value`, in writes of up to 1,024 bytes. A count not above 0 is false.
  bool WriteFill(int32_t value, int32_t count);

protected:
  ~ByteSink() = default;
};

/// Both roles in one.
class ByteStream : public ByteSource, public ByteSink {
protected:
  ~ByteStream() = default;
};

/// A stream that itself holds the place of its next read or write.
class PositionedStream : public ByteStream {
protected:
  ~PositionedStream() = default;

  int32_t position_ = 0; ///< bytes from the start; may stand beyond the end
};

} // namespace korb
