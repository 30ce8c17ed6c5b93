// The packing side of the archive's block format.
#pragma once

#include <span>

#include "packer/Bytes.h"
#include "packer/Progress.h"

namespace korb::packer {

/// Packs `plain` into one block: magic, size, tokens. Any input of up to 2,147,483,647 bytes packs and unpacks to
/// itself; an incompressible one grows by its head and some 50 bits. The same input gives the same bytes on every
/// machine. Time is near linear; memory is about 9 bytes for each byte of input, beside the result.
Bytes PackBlock(std::span<const uint8_t> plain, const Progress &progress = {});

} // namespace korb::packer
