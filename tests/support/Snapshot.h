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

/// All of C: but the test's own folders, and all of HKEY_LOCAL_MACHINE and HKEY_USERS.
Snapshot TakeSnapshot();

/// A line for each difference: "gone NAME", "new NAME", "other NAME".
std::vector<std::string> Differences(const Snapshot &before, const Snapshot &after);

/// All that is below a folder, but the test's own folders.
void AddFolder(Snapshot &all, const std::string &path);

/// A key and all that is below it.
void AddKey(Snapshot &all, HKEY root, const std::string &path);

} // namespace korb::test
