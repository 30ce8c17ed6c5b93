// The files below a folder, chosen by patterns.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace korb::packer {

/// Whether `path`, relative and with '/', fits `pattern`: '*' stands for any characters but '/', '?' for one of them,
/// '**' for any characters at all, and "**/" also for nothing. A pattern without '/' is compared with the last part of
/// the path alone. Case counts.
bool MatchesPattern(std::string_view path, std::string_view pattern);

/// What a folder holds. Paths are relative to it, with '/'.
struct FileList {
  struct Fault {
    std::string path; ///< empty for the folder itself; one of a folder ends in a '/'
    std::string reason;
  };
  std::vector<std::string> files;
  std::vector<Fault> faults; ///< what could not be listed, or is neither folder nor file
};

/// The regular files below `folder`, links to files and to folders followed. A file belongs to the result when it fits
/// one of `include`, or that is empty, and none of `exclude`; so do the faults. Sorted in a way that depends neither on
/// the system nor on the order of its listings: folder by folder, by the bytes of the names with ASCII letters folded.
FileList ListFiles(const std::filesystem::path &folder, const std::vector<std::string> &include,
                   const std::vector<std::string> &exclude);

} // namespace korb::packer
