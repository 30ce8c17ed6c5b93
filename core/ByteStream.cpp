#include "core/ByteStream.h"

#include <cstring>

#include "core/String.h"

namespace korb {

bool ByteSource::ReadBytes(String &text, int32_t count) {
  if (count <= 0)
    return true;
  const int32_t at = text.grow_by(count);
  if (Read(text.data() + at, count))
    return true;
  text.set_length(at);
  return false;
}

bool ByteSource::ReadText(String &text) {
  text.clear();
  uint8_t byte;
  if (!ReadByte(byte))
    return false;
  int32_t length = 0;
  while (byte != 0) {
    if (length == text.length()) // ahead in leaps, since a String grows only by what it is asked for
      text.set_length(length < STRING_ALL / 2 ? length + length / 2 + 64 : STRING_ALL);
    text.data()[length++] = static_cast<char>(byte);
    if (!ReadByte(byte))
      break;
  }
  text.set_length(length);
  return true;
}

bool ByteSource::ReadCounted(String &text, int32_t count) {
  text.set_length(count);
  if (Read(text.data(), count))
    return true;
  text.clear();
  return false;
}

bool ByteSource::ReadText8(String &text) {
  uint8_t count;
  return ReadByte(count) && ReadCounted(text, count);
}

bool ByteSource::ReadText16(String &text) {
  uint16_t count;
  return ReadU16(count) && ReadCounted(text, count);
}

bool ByteSource::ReadText32(String &text) {
  int32_t count;
  return ReadU32(count) && count >= 0 && text.try_set_length(count) && ReadCounted(text, count);
}

bool ByteSink::WriteText(const char *text) {
  return !text || Write(text, static_cast<int32_t>(strlen(text)));
}

namespace {

int32_t Counted(const char *text, int32_t length, int32_t most) {
  return !text || length < 1 ? 0 : length < most ? length : most;
}

} // namespace

bool ByteSink::WriteText8(const char *text, int32_t length) {
  const int32_t n = Counted(text, length, UINT8_MAX);
  return WriteByte(static_cast<uint8_t>(n)) && Write(text, n);
}

bool ByteSink::WriteText16(const char *text, int32_t length) {
  const int32_t n = Counted(text, length, UINT16_MAX);
  return WriteU16(static_cast<uint16_t>(n)) && Write(text, n);
}

bool ByteSink::WriteText32(const char *text, int32_t length) {
  const int32_t n = Counted(text, length, INT32_MAX);
  return WriteU32(static_cast<uint32_t>(n)) && Write(text, n);
}

bool ByteSink::WriteFill(int32_t value, int32_t count) {
  if (count <= 0)
    return false;
  constexpr int32_t kPiece = 1024;
  uint8_t piece[kPiece];
  memset(piece, value, static_cast<size_t>(count < kPiece ? count : kPiece));
  for (; count > 0; count -= kPiece)
    if (!Write(piece, count < kPiece ? count : kPiece))
      return false;
  return true;
}

} // namespace korb
