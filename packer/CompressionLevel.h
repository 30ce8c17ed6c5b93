// How much work packing a block may cost.
#pragma once

namespace korb::packer {

enum class CompressionLevel {
  kDefault, ///< for every day; its blocks also have fewer tokens, and unpack a little faster
  kBest,    ///< some tenths of a percent smaller, in up to twice the time
};

} // namespace korb::packer
