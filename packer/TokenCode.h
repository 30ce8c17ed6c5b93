// The packed block's number code and what its tokens cost.
//
// A number is `k` one bits, a zero bit, and then a value of base + k * step bits, at most 32. The shortest width that
// holds the value is taken. The three tokens:
//
//     0    literal run      count - 1 in kLiteralCode, then the bytes
//     10   back reference   length - 4 in kLengthCode, distance - 4 in kDistanceCode; distance not below length
//     11   fill             a byte, count - 3 in kFillCode
#pragma once

#include <bit>
#include <cstdint>

namespace korb::packer {

struct NumberCode {
  uint32_t base; ///< bits of the shortest form
  uint32_t step; ///< bits that each leading one adds
};

inline constexpr NumberCode kLiteralCode{2, 2};
inline constexpr NumberCode kLengthCode{2, 1};
inline constexpr NumberCode kDistanceCode{12, 2};
inline constexpr NumberCode kFillCode{1, 1};

inline constexpr uint32_t kMinMatch = 4;
inline constexpr uint32_t kMinDistance = 4;
inline constexpr uint32_t kMinFill = 3;

/// How many leading ones `value` needs.
constexpr uint32_t LeadingOnes(NumberCode code, uint32_t value) {
  const uint32_t width = static_cast<uint32_t>(std::bit_width(value));
  return width <= code.base ? 0 : (width - code.base + code.step - 1) / code.step;
}

/// How many numbers need fewer bits than `value`: the least one that takes as many.
constexpr uint32_t NarrowerNumbers(NumberCode code, uint32_t value) {
  const uint32_t ones = LeadingOnes(code, value);
  return ones == 0 ? 0 : 1u << (code.base + (ones - 1) * code.step);
}

/// Bits that `value` takes, its prefix included.
constexpr uint32_t NumberBits(NumberCode code, uint32_t value) {
  const uint32_t ones = LeadingOnes(code, value);
  return ones + 1 + code.base + ones * code.step;
}

/// Bits of a literal run's head, without its bytes.
constexpr uint32_t LiteralHeadBits(uint32_t count) {
  return 1 + NumberBits(kLiteralCode, count - 1);
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
