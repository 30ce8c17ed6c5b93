#include "core/MemoryStream.h"

#include <cstddef>
#include <cstring>

namespace korb {

bool MemoryStream::Read(void *destination, int32_t count) {
  if (count < 1)
    return count == 0;
  if (!destination)
    return false;
  const int32_t here = position_ < 0 || position_ > length() ? length() : position_;
  const int32_t left = length() - here;
  const int32_t n = count < left ? count : left;
  if (n > 0)
    memcpy(destination, data() + here, static_cast<size_t>(n));
  memset(static_cast<uint8_t *>(destination) + n, 0, static_cast<size_t>(count - n));
  Skip(count);
  return n == count;
}

bool MemoryStream::ReadBytes(String &text, int32_t count) {
  // A damaged count must not cost more memory than there are bytes to read.
  if (count > 0 && (position_ < 0 || count > length() - position_)) {
    Skip(count);
    return false;
  }
  return ByteSource::ReadBytes(text, count);
}

bool MemoryStream::HasMore() const {
  return position_ >= 0 && position_ < length();
}

bool MemoryStream::Write(const void *source, int32_t count) {
  if (count < 1)
    return count == 0;
  if (!source || position_ < 0)
    return false;
  const char *from = static_cast<const char *>(source);
  const bool inside = data() && from >= data() && from < data() + length();
  const ptrdiff_t offset = inside ? from - data() : 0;
  uint8_t *to = Reserve(count);
  memmove(to, inside ? data() + offset : from, static_cast<size_t>(count));
  return true;
}

bool MemoryStream::Seek(int32_t offset) {
  if (offset < 0 || offset > length())
    return false;
  position_ = offset;
  return true;
}

bool MemoryStream::SeekFromEnd(int32_t offset) {
  return offset <= 0 && Seek(length() + offset);
}

void MemoryStream::Skip(int32_t count) {
  const int64_t position = int64_t{position_} + count;
  position_ = static_cast<int32_t>(position < INT32_MIN ? INT32_MIN : position > INT32_MAX ? INT32_MAX : position);
}

void MemoryStream::Truncate() {
  if (position_ >= 0 && position_ < length())
    set_length(position_);
}

void MemoryStream::Clear() {
  position_ = 0;
  clear();
}

uint8_t *MemoryStream::Reserve(int32_t count) {
  if (position_ < 0 || count < 0)
    return nullptr;
  const int32_t at = position_;
  const int32_t old_length = length();
  Skip(count);
  if (position_ > old_length) {
    set_length(position_);
    memset(data() + old_length, 0, static_cast<size_t>(position_ - old_length));
  }
  return reinterpret_cast<uint8_t *>(data()) + at;
}

bool MemoryStream::CopyWithin(int32_t from, int32_t count) {
  if (from < 0 || count <= 0 || position_ < 0 || position_ > length() || from > position_ - count)
    return false;
  uint8_t *to = Reserve(count);
  memcpy(to, data() + from, static_cast<size_t>(count));
  return true;
}

} // namespace korb
