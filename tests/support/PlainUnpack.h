// The packed block read the obvious way, bit by bit and with every rule checked: what the packer's output is held
// against.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <vector>

namespace korb::test {

struct TokenCounts {
  size_t literals = 0, copies = 0, fills = 0;
};

class PlainUnpacker {
public:
  explicit PlainUnpacker(const std::vector<uint8_t> &block) : block_(block) {}

  /// The unpacked bytes. Throws when the block breaks a rule.
  std::vector<uint8_t> Unpack() {
    if (Bits(32) != 0x9EC72BA1)
      throw std::runtime_error("no packed block");
    const size_t size = Bits(32);
    while (out_.size() < size)
      Token();
    if (out_.size() > size)
      throw std::runtime_error("the last token runs past the size");
    return out_;
  }

  TokenCounts counts;

private:
  void Token() {
    if (Bits(1) == 0) {
      ++counts.literals;
      for (uint64_t left = Number(2, 2) + 1; left > 0; --left)
        out_.push_back(static_cast<uint8_t>(Bits(8)));
    } else if (Bits(1) == 0) {
      ++counts.copies;
      const uint64_t length = Number(2, 1) + 4, distance = Number(12, 2) + 4;
      if (distance > out_.size() || length > distance)
        throw std::runtime_error("a copy from what isn't there yet");
      for (uint64_t i = 0; i < length; ++i)
        out_.push_back(out_[out_.size() - static_cast<size_t>(distance)]);
    } else {
      ++counts.fills;
      const uint8_t byte = static_cast<uint8_t>(Bits(8));
      out_.insert(out_.end(), static_cast<size_t>(Number(1, 1) + 3), byte);
    }
  }

  uint64_t Number(uint32_t width, uint32_t step) {
    while (Bits(1))
      width += step;
    if (width > 32)
      throw std::runtime_error("a number of more than 32 bits");
    return Bits(width);
  }

  uint32_t Bits(uint32_t count) {
    uint32_t value = 0;
    for (uint32_t i = 0; i < count; ++i, ++bit_) {
      if (bit_ / 8 >= block_.size())
        throw std::runtime_error("the block ends too early");
      value |= static_cast<uint32_t>(block_[bit_ / 8] >> bit_ % 8 & 1) << i;
    }
    return value;
  }

  const std::vector<uint8_t> &block_;
  size_t bit_ = 0;
  std::vector<uint8_t> out_;
};

} // namespace korb::test
