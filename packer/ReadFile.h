// Files as they are, and their names.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "packer/Bytes.h"

namespace korb::packer {

/// The bytes of a regular file. Nothing when it can't be read as a whole.
std::optional<Bytes> ReadWholeFile(const std::filesystem::path &path);

/// The path that `utf8` names, on any system.
std::filesystem::path PathFromUtf8(const std::string &utf8);
/// A path as messages show it: in UTF-8, with the system's separators.
std::string ShowPath(const std::filesystem::path &path);
/// A path as a manifest holds it: in UTF-8, with '/'.
std::string ManifestPath(const std::filesystem::path &path);

} // namespace korb::packer
