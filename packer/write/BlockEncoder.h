// The packing side of the archive's block format.
#pragma once

#include <functional>
#include <optional>
#include <span>

#include "packer/Product.h"

namespace korb::packer {

/// Told now and then what is being done, in a word or two, and how much of it, 0 to 100. May be empty.
using ProgressCallback = std::function<void(const char *step, int percent)>;

/// Packs `plain` into one block: magic, size, tokens. Any input of up to 2,147,483,647 bytes packs and unpacks to
/// itself; an incompressible one grows by its head and some 50 bits. The same input and level give the same bytes on
/// every machine, however many processors it has. Time is linear for any input, all zeros, periodic ones and noise too;
/// memory is up to 9 bytes for each byte of input, and some 130 MB, beside the result. Throws std::bad_alloc when that
/// isn't there.
Bytes PackBlock(std::span<const uint8_t> plain, CompressionLevel level = CompressionLevel::kDefault,
                const ProgressCallback &progress = {});

/// The same; but nothing, as soon as that is known, when the block would have more than `limit` bytes.
std::optional<Bytes> PackBlockWithin(size_t limit, std::span<const uint8_t> plain, CompressionLevel level,
                                     const ProgressCallback &progress);

} // namespace korb::packer
