// A finished installer as a release that others are compared with.
#pragma once

#include <filesystem>

#include "packer/release/Release.h"

namespace korb::packer {

/// The release that the installer at `path` installs, its volumes beside it. `page` is the code page of its texts,
/// unless it asks for UTF-8. Throws PackError when it can't be read or is damaged.
Release ReadRelease(const std::filesystem::path &path, int page);

} // namespace korb::packer
