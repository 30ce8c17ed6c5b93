// Files of the machine that packs, and their names.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "packer/Bytes.h"

namespace korb::packer {

/// The bytes of a regular file. Nothing when it can't be read as a whole.
std::optional<Bytes> ReadFileBytes(const std::filesystem::path &path);

struct OutputFile {
  std::filesystem::path path;
  const Bytes *bytes;
};

/// Writes all of `files`, each beside its place first; only when every one is complete, they take their names, the last
/// one last. Throws PackError, and leaves nothing behind, when one can't be written.
void WriteOutputFiles(const std::vector<OutputFile> &files);

/// Whether both names lead to the same file, whether or not it exists.
bool IsSameFile(const std::filesystem::path &a, const std::filesystem::path &b);

/// The path that `utf8` names, on any system.
std::filesystem::path PathFromUtf8(const std::string &utf8);
/// A path as messages show it: in UTF-8, with the system's separators.
std::string ShowPath(const std::filesystem::path &path);
/// A path as a manifest holds it: in UTF-8, with '/'.
std::string ManifestPath(const std::filesystem::path &path);

} // namespace korb::packer
