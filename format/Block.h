// The packed block: the configuration always, the payload with IF_PACKED_PAYLOAD.
//
// Its head is kPackedMagic, u32, and the unpacked size, i32. At byte kPackedHeaderSize a stream of tokens begins, bit
// after bit from the lowest of each byte, until the unpacked size is reached:
//
//     0    literal run      count - kMinLiteral in kLiteralCode, then the bytes
//     10   back reference   length - kMinMatch in kLengthCode, distance - kMinDistance in kDistanceCode;
//                           distance not below length
//     11   fill             a byte, count - kMinFill in kFillCode
//
// A number is `n` one bits, a zero bit, and then a value of base + n * step bits. Wider values than kMaxValueBits are
// cut to that. A writer takes the shortest width that holds the value; a reader takes any.
#pragma once

#include <cstdint>

namespace korb {

inline constexpr uint32_t kPackedMagic = 0x9EC72BA1;
inline constexpr int32_t kPackedHeaderSize = 8;
/// Bytes of the largest block: its bits are counted in 32 signed bits.
inline constexpr int32_t kMaxPackedBlock = 0x0FFFFFFF;

struct NumberCode {
  uint32_t base; ///< bits of the shortest value
  uint32_t step; ///< bits that each leading one adds
};

inline constexpr NumberCode kLiteralCode{2, 2};
inline constexpr NumberCode kLengthCode{2, 1};
inline constexpr NumberCode kDistanceCode{12, 2};
inline constexpr NumberCode kFillCode{1, 1};
inline constexpr uint32_t kMaxValueBits = 32;

inline constexpr uint32_t kMinLiteral = 1;
inline constexpr uint32_t kMinMatch = 4;
inline constexpr uint32_t kMinDistance = 4;
inline constexpr uint32_t kMinFill = 3;

} // namespace korb
