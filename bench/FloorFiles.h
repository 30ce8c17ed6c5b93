// What bench/install hands to its floor program: a file of FloorFile entries, then, from ContentsAt, their contents one
// after the other.
#pragma once

#include <cstdint>

namespace korb::bench {

constexpr uint32_t kFloorDirectory = 0xFFFFFFFF; ///< as a size: the entry is a directory

struct FloorFile {
  uint32_t size;
  uint32_t attributes;
  uint64_t modified; ///< FILETIME, universal
  char name[48];     ///< relative, with backslashes
};

/// Where the contents begin: at a page, as an installer's do.
constexpr uint32_t ContentsAt(uint32_t count) {
  return (count * static_cast<uint32_t>(sizeof(FloorFile)) + 0xFFF) & ~0xFFFu;
}

} // namespace korb::bench
