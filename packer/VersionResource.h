// The version among the resources of a program or library.
#pragma once

#include <optional>
#include <string>

#include "packer/Bytes.h"

namespace korb::packer {

/// The text "FileVersion" of a PE file, 32 or 64 bits wide: the US English one in code page 1252, which is what an
/// installer compares with, else the first one, else the number of the fixed part. Nothing when `file` has none. Any
/// bytes are a file.
std::optional<std::string> FileVersionOf(const Bytes &file);

} // namespace korb::packer
