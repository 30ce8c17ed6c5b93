// How far bytes agree: with those of another place, and with each other.
#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <span>

namespace korb::packer {

/// The `count` bytes at `bytes`, 0 to 8, as one number. Its value is for comparing and hashing alone.
inline uint64_t LoadBytes(const uint8_t *bytes, size_t count) {
  uint64_t value = 0;
  std::memcpy(&value, bytes, count);
  return value;
}

/// Has the memory at `address`, which need not exist, on its way while something else is done. A function that does
/// nothing else is left out, as the compiler sees that it changes nothing.
[[gnu::always_inline]] inline void Fetch(const void *address) {
  __builtin_prefetch(address);
}

/// How far `a` and `b` agree from `length` on, at most up to `limit`.
inline uint32_t CommonLength(const uint8_t *a, const uint8_t *b, uint32_t length, uint32_t limit) {
  if constexpr (std::endian::native == std::endian::little) {
    while (length + 8 <= limit) {
      const uint64_t differing = LoadBytes(a + length, 8) ^ LoadBytes(b + length, 8);
      if (differing != 0)
        return length + static_cast<uint32_t>(std::countr_zero(differing)) / 8;
      length += 8;
    }
  }
  while (length < limit && a[length] == b[length])
    ++length;
  return length;
}

/// Runs of one byte, looked for at rising positions, in linear time.
class ByteRuns {
public:
  explicit ByteRuns(std::span<const uint8_t> data) : data_(data) {}

  /// How many equal bytes start at `position`.
  uint32_t LengthAt(uint32_t position) {
    if (position >= end_) {
      const uint32_t size = static_cast<uint32_t>(data_.size());
      end_ = position + 1;
      while (end_ < size && data_[end_] == data_[position])
        ++end_;
    }
    return end_ - position;
  }

private:
  std::span<const uint8_t> data_;
  uint32_t end_ = 0; // of the run that was last looked at
};

} // namespace korb::packer
