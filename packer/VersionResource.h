// The version among the resources of a program or library: its numbers, and texts about it.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "packer/Bytes.h"

namespace korb::packer {

/// The text "FileVersion" of a PE file, 32 or 64 bits wide: the US English one in code page 1252, which is what an
/// installer compares with, else the first one, else the number of the fixed part. Nothing when `file` has none. Any
/// bytes are a file.
std::optional<std::string> FileVersionOf(const Bytes &file);

/// What a version resource says.
struct VersionInfo {
  std::array<uint16_t, 4> numbers{};                      ///< of the file, the first counts most
  std::vector<std::pair<std::string, std::string>> texts; ///< by name, as in "ProductName"; UTF-8
};

/// As in "1.2.0.0".
std::string DottedNumbers(const std::array<uint16_t, 4> &numbers);

/// A version resource of a 32-bit program, in Unicode. Throws PackError when the texts don't fit into one.
Bytes VersionResource(const VersionInfo &info);

/// The first version resource of a PE file, with the texts of its first language. Nothing when `file` has none. Any
/// bytes are a file.
std::optional<VersionInfo> ReadVersionInfo(const Bytes &file);

} // namespace korb::packer
