// What an author asks of a finished installer: what is in it, and whether it is sound.
#pragma once

#include <filesystem>
#include <ostream>

namespace korb::packer {

/// Writes everything that the installer at `path` holds, under the names of the manifest, as an outline or as JSON.
/// `page` is the code page of its texts, unless it asks for UTF-8: it tells no other one. Of a damaged one, what stands
/// before the damage is written, and the damage goes to `problems`. False when there is any. Throws PackError as
/// InstallerReader does.
bool InspectInstaller(const std::filesystem::path &path, int page, bool json, std::ostream &out,
                      std::ostream &problems);

/// Makes every test that the installer makes before and while it places its files, and writes a line for each. False
/// when one fails: the line tells the damage code that a user would read. A program part that is not as it was built
/// counts as a failure only when `strict` is set; signing is no such change.
bool VerifyInstaller(const std::filesystem::path &path, bool strict, std::ostream &out);

} // namespace korb::packer
