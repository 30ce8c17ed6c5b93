// What the numbers and tokens of a packed block cost.
#pragma once

#include <bit>
#include <cstdint>

#include "format/Block.h"

namespace korb::packer {

/// How many ones the prefix of `value` has.
constexpr uint32_t PrefixOnes(NumberCode code, uint32_t value) {
  const uint32_t width = static_cast<uint32_t>(std::bit_width(value));
  return width <= code.base ? 0 : (width - code.base + code.step - 1) / code.step;
}

/// How many numbers need fewer bits than `value`: the least one that takes as many.
constexpr uint32_t NarrowerNumbers(NumberCode code, uint32_t value) {
  const uint32_t ones = PrefixOnes(code, value);
  return ones == 0 ? 0 : 1u << (code.base + (ones - 1) * code.step);
}

/// Bits that `value` takes, its prefix included.
constexpr uint32_t NumberBits(NumberCode code, uint32_t value) {
  const uint32_t ones = PrefixOnes(code, value);
  return ones + 1 + code.base + ones * code.step;
}

/// Bits of a literal run's head, without its bytes.
constexpr uint32_t LiteralHeadBits(uint32_t count) {
  return 1 + NumberBits(kLiteralCode, count - kMinLiteral);
}

constexpr uint32_t DistanceBits(uint32_t distance) {
  return NumberBits(kDistanceCode, distance - kMinDistance);
}

constexpr uint32_t LengthBits(uint32_t length) {
  return NumberBits(kLengthCode, length - kMinMatch);
}

constexpr uint32_t FillBits(uint32_t count) {
  return 2 + 8 + NumberBits(kFillCode, count - kMinFill);
}

} // namespace korb::packer
