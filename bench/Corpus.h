// Data for benchmarks, gathered from what the machine has.
#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <vector>

namespace korb::bench {

using Bytes = std::vector<uint8_t>;

struct Source {
  const char *folder;     ///< taken with all below it, in the order of the paths
  const char *extensions; ///< ".a.b": these only; empty: all
  size_t megabytes;       ///< at most, no file giving more than 3
};

/// Empty when it can't be read.
Bytes ReadFile(const std::filesystem::path &path);

/// The sources one after the other, each divided by `divisor`: the same bytes on every run on one machine.
Bytes GatherCorpus(std::span<const Source> sources, size_t divisor);

/// `size` bytes of what doesn't compress: files of 30 to 600 KB, half of them noise, as films and sound are to a
/// packer, half with the same head of 600 bytes and zeros after each 0xFF, as photographs have. The same on every
/// machine.
Bytes MakeMedia(size_t size);

} // namespace korb::bench
