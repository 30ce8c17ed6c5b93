// Files that appear whole or not at all.
#pragma once

#include <filesystem>
#include <vector>

#include "packer/Bytes.h"

namespace korb::packer {

struct OutputFile {
  std::filesystem::path path;
  const Bytes *bytes;
};

/// Writes all of `files`, each beside its place first; only when every one is complete, they take their names, the last
/// one last. Throws PackError, and leaves nothing behind, when one can't be written.
void WriteOutputFiles(const std::vector<OutputFile> &files);

/// Whether both names lead to the same file, whether or not it exists.
bool IsSameFile(const std::filesystem::path &a, const std::filesystem::path &b);

} // namespace korb::packer
