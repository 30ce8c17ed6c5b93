// What packing would come to, told without packing.
#pragma once

#include <cstdint>
#include <span>

namespace korb::packer {

/// About how many bytes `plain` packs to, without its head: by a sample of at most 16 MB from all of its parts, and by
/// how much of it is a repeat. Rather too many than too few, since a sample knows less to copy from. Takes some seconds
/// where packing takes minutes.
uint64_t EstimatePackedSize(std::span<const uint8_t> plain);

} // namespace korb::packer
