// The files of a finished installer, given back.
#pragma once

#include <filesystem>
#include <ostream>

namespace korb::packer {

/// Writes every file of the installer below `folder`, which has to be empty or absent, under its name and with its
/// date, taken as universal time. `page` is as for InspectInstaller. No name leads out of the folder, whatever it
/// holds; names that meet are numbered. A damaged installer is not extracted. False, told to `problems`, when not every
/// file was written.
bool ExtractInstaller(const std::filesystem::path &path, const std::filesystem::path &folder, int page,
                      std::ostream &out, std::ostream &problems);

} // namespace korb::packer
