// The resources of a program or library.
#pragma once

#include <vector>

#include "packer/Bytes.h"

namespace korb::packer {

inline constexpr uint32_t kIconResource = 3, kVersionResource = 16;

/// Where one resource lies in the file; the file holds all of it.
struct Resource {
  uint32_t offset;
  uint32_t size;
};

/// The resources of `type` in a PE file, 32 or 64 bits wide, in the order of its tables. Any bytes are a file; those
/// without such resources give none.
std::vector<Resource> FindResources(const Bytes &file, uint32_t type);

} // namespace korb::packer
