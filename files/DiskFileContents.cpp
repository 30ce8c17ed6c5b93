// What a DiskFile can do by its own reads and writes.

#include "files/DiskFile.h"

namespace korb {

bool DiskFile::ReadAt(int32_t offset, void *destination, int32_t count) {
  PushPosition();
  const bool read = Seek(offset) && Read(destination, count);
  PopPosition();
  return read;
}

bool DiskFile::ReadTail(void *destination, int32_t count) {
  if (!IsOpen() || count < 1)
    return false;
  const int32_t size = Size();
  return size >= count && ReadAt(size - count, destination, count);
}

bool DiskFile::ReadSpan(String &text, int32_t offset, int32_t count) {
  if (offset < 0 || count < 0 || int64_t{offset} + count > Size())
    return false;
  text.set_length(count);
  if (ReadAt(offset, text.data(), count))
    return true;
  text.clear();
  return false;
}

bool DiskFile::ReadAll(String *text) {
  if (!text || !IsOpen())
    return false;
  const int32_t size = Size();
  return size >= 0 && ReadSpan(*text, 0, size);
}

String DiskFile::ReadCString() {
  String text;
  char c;
  while (IsOpen() && Read(&c, 1) && c != '\0')
    text += c;
  return text;
}

bool DiskFile::ReplaceContents(const String &text) {
  return Seek(0) && WriteString(text) && Truncate();
}

bool DiskFile::EndsLine() {
  char c;
  return !ReadTail(&c, 1) || is_line_break(c);
}

bool DiskFile::EnsureNewline() {
  return IsOpen() && (EndsLine() || Write("\r\n", 2));
}

bool DiskFile::LoadToMemory() {
  // An image that is there counts as what the file holds: it stays, and its changes are not written back.
  if (!in_memory_ && !ReadAll(&memory_))
    return false;
  in_memory_ = true;
  memory_dirty_ = false;
  return true;
}

} // namespace korb
