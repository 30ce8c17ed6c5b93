// What the packer's writing of files needs of the system: files that nobody else has, and their end when the program is
// told to end.
#pragma once

#include <cstdio>
#include <filesystem>
#include <string>

namespace korb::packer {

/// Creates the file `path` and opens it for writing bytes. Null, with errno set, when it can't be, or when there is
/// anything of that name: a link is not followed. It can be removed while it is open.
std::FILE *CreateNewFile(const std::filesystem::path &path);

/// Why the present file `path` can't be replaced: empty when it can, when there is none, or when nothing tells.
std::string WhyNotReplaceable(const std::filesystem::path &path);

/// From now on, `path` is removed when the user interrupts the program, closes its console or ends its session, and the
/// program ends as it would have. A wish that such a thing should not end it is left alone.
void RemoveAtInterrupt(const std::filesystem::path &path);

/// Takes that back.
void ForgetUnfinished(const std::filesystem::path &path);

} // namespace korb::packer
