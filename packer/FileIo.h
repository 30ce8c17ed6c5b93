// Files of the machine that packs, and their names.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "packer/Bytes.h"

namespace korb::packer {

/// The bytes of a regular file. Nothing when it can't be read as a whole.
std::optional<Bytes> ReadFileBytes(const std::filesystem::path &path);

/// Why ReadFileBytes could not read `path`, as a part of a sentence: "it is a folder", or the system's own reason.
std::string WhyUnreadable(const std::filesystem::path &path);

struct OutputFile {
  std::filesystem::path path;
  const Bytes *bytes;
};

/// Writes all of `files`, each beside its place first, under a name that nothing had; only when every one is complete,
/// they take their names, the last one last. Throws PackError, and leaves nothing behind, when one can't be written.
/// Nothing is left either when the user or the system ends the program meanwhile, but by force.
void WriteOutputFiles(const std::vector<OutputFile> &files);

/// Throws PackError when no file can be written to `path`, as far as that can be known without writing one of any size.
/// Leaves nothing behind.
void TryOutput(const std::filesystem::path &path);

/// Whether WriteOutputFiles gives files such a name until they are complete.
bool IsUnfinishedName(std::string_view name);

/// Whether both names lead to the same file, whether or not it exists.
bool IsSameFile(const std::filesystem::path &a, const std::filesystem::path &b);

/// The path that `utf8` names, on any system.
std::filesystem::path PathFromUtf8(const std::string &utf8);
/// A path as messages show it: in UTF-8, with the system's separators.
std::string ShowPath(const std::filesystem::path &path);
/// A path as a manifest holds it: in UTF-8, with '/'.
std::string ManifestPath(const std::filesystem::path &path);

} // namespace korb::packer
