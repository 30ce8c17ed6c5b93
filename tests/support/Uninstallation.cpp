#include "tests/support/Uninstallation.h"

#include <stdexcept>

#include "tests/support/PackedProduct.h"

namespace korb::test {

std::string UninstallValue(const std::string &name, const char *value) {
  const std::string text = MachineValue(kUninstallKey + name, value);
  return text == "missing" ? "" : text;
}

void UninstallQuietly(const std::string &name) {
  const std::string command = UninstallValue(name, "QuietUninstallString");
  if (command.empty())
    throw std::runtime_error("not installed: " + name);
  Run(command);
  if (!WaitForSelfRemoval())
    throw std::runtime_error("the batch goes on and on");
}

bool WaitForSelfRemoval() {
  for (int i = 0; i < 1200; ++i) {
    if (GetFileAttributesA("c:\\delunins.bat") == INVALID_FILE_ATTRIBUTES)
      return true;
    Sleep(50);
  }
  return false;
}

} // namespace korb::test
