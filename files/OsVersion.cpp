#include "files/OsVersion.h"

#include "core/Windows.h"

namespace korb {

OsVersion RunningOs() {
  OSVERSIONINFOA info = {};
  info.dwOSVersionInfoSize = sizeof info;
  GetVersionExA(&info);
  OsVersion version;
  version.platform = info.dwPlatformId;
  version.major = info.dwMajorVersion;
  version.minor = info.dwMinorVersion;
  version.service_pack = info.szCSDVersion;
  return version;
}

bool IsWindowsNT() {
  return RunningOs().platform == VER_PLATFORM_WIN32_NT;
}

} // namespace korb
