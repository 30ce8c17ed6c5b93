// Packed blocks written down bit by bit.
#pragma once

#include <cstdint>
#include <string>

namespace korb::test {

/// The bits that `text` writes down in the order of the stream: 0 and 1 for themselves, [ab] for the 8 bits of each
/// byte within, <n:w> for the number n in w bits; anything else is for the eye.
std::string BitsOf(const std::string &text);

/// A packed block that states `size` bytes and holds these bits, padded with `padding` bits to a whole byte.
std::string BlockOf(const std::string &text, uint32_t size, char padding = '0');

} // namespace korb::test
