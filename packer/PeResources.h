// The resources of a program or library.
#pragma once

#include <optional>
#include <vector>

#include "packer/Bytes.h"

namespace korb::packer {

inline constexpr uint32_t kIconResource = 3, kVersionResource = 16, kManifestResource = 24;

/// Where one resource lies in the file; the file holds all of it.
struct Resource {
  uint32_t offset;
  uint32_t size;
};

/// The resources of `type` in a PE file, 32 or 64 bits wide, in the order of its tables. Any bytes are a file; those
/// without such resources give none.
std::vector<Resource> FindResources(const Bytes &file, uint32_t type);

/// Whether `file` is a program or library, and whether one of 32 bits. Any bytes are a file.
bool IsProgram(const Bytes &file);
bool Is32BitProgram(const Bytes &file);

/// Whether `file` is an installer, sound or not. Any bytes are a file.
bool CarriesArchive(const Bytes &file);

} // namespace korb::packer
