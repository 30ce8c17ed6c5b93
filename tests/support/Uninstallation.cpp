#include "tests/support/Uninstallation.h"

#include <stdexcept>

namespace korb::test {

std::string UninstallValue(const std::string &name, const char *value) {
  const std::string key = "Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\" + name;
  HKEY opened;
  if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, key.c_str(), 0, KEY_READ, &opened))
    return std::string();
  char text[5000] = "";
  DWORD size = sizeof text - 1;
  RegQueryValueExA(opened, value, nullptr, nullptr, reinterpret_cast<BYTE *>(text), &size);
  RegCloseKey(opened);
  return text;
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
