// Writer of the packed block's bit stream: least significant bit first, no alignment.
#pragma once

#include <span>

#include "packer/Bytes.h"

namespace korb::packer {

/// Appends bits to a byte block, from its end on. `Flush` must be the last call.
class BitWriter {
public:
  explicit BitWriter(Bytes &out) : out_(out) {}

  /// The low `count` bits of `value`, 0 to 32; the bits above them must be 0.
  void Put(uint32_t value, uint32_t count) {
    pending_ |= static_cast<uint64_t>(value) << filled_;
    filled_ += count;
    while (filled_ >= 8) {
      out_.push_back(static_cast<uint8_t>(pending_));
      pending_ >>= 8;
      filled_ -= 8;
    }
  }

  void PutBytes(std::span<const uint8_t> bytes) {
    for (uint8_t byte : bytes)
      Put(byte, 8);
  }

  /// Fills the last byte with zeros.
  void Flush() {
    if (filled_ > 0)
      Put(0, 8 - filled_);
  }

private:
  Bytes &out_;
  uint64_t pending_ = 0;
  uint32_t filled_ = 0;
};

} // namespace korb::packer
