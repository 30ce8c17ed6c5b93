// Uninstalling as the system does.
#pragma once

#include <string>

#include "tests/support/Process.h"

namespace korb::test {

/// Below which each product has its own key.
inline const std::string kUninstallKey = "Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\";

/// A text of the Uninstall key of `name`; empty when there is none.
std::string UninstallValue(const std::string &name, const char *value);

/// Runs the key's QuietUninstallString to its end, and its batch too when one was left. Throws std::runtime_error when
/// there is no such product.
void UninstallQuietly(const std::string &name);

/// Waits until the batch that removes an uninstaller is done with itself. False when it doesn't come to that.
bool WaitForSelfRemoval();

} // namespace korb::test
