// What a whole machine holds, for comparing it with itself.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "core/Windows.h"

namespace korb::test {

/// By name what it is: a file of C: by its attributes, date and bytes, a directory by its attributes, a key of the
/// registry, or a value as `key|name` by its type and bytes.
using Snapshot = std::map<std::string, std::string>;

/// All of C: but the test's own folders, and all of HKEY_LOCAL_MACHINE and HKEY_USERS. On a 64-bit Windows these are
/// the real places: what 32-bit programs see, and what all others do.
Snapshot TakeSnapshot();

/// A line for each difference: "gone NAME", "new NAME", "other NAME".
std::vector<std::string> Differences(const Snapshot &before, const Snapshot &after);

/// All that is below a folder, but the test's own folders.
void AddFolder(Snapshot &all, const std::string &path);

/// A key and all that is below it, in the view of the registry that 32-bit programs have, or in the other one.
void AddKey(Snapshot &all, HKEY root, const std::string &path, REGSAM view = KEY_WOW64_32KEY);

} // namespace korb::test
