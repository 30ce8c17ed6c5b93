// Files as they are.
#pragma once

#include <filesystem>
#include <optional>

#include "packer/Bytes.h"

namespace korb::packer {

/// The bytes of a regular file. Nothing when it can't be read as a whole.
std::optional<Bytes> ReadWholeFile(const std::filesystem::path &path);

} // namespace korb::packer
