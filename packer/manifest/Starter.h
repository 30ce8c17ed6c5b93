// A manifest to begin with.
#pragma once

#include <filesystem>
#include <string>

namespace korb::packer {

/// A commented manifest for the files below `folder`, which builds as it is. `manifest` is where it will stand: its
/// paths are relative to there, and neither it nor the installer beside it will pack itself. Throws PackError when
/// there is no such folder, or no file in it.
std::string StarterManifest(const std::filesystem::path &folder, const std::filesystem::path &manifest);

} // namespace korb::packer
