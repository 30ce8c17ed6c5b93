#include "system/OsIdentity.h"

#include "format/Words.h"

namespace korb {

uint32_t OsCodeOf(const OsVersion &version) {
  switch (version.platform) {
  case 0:
    return OS_WIN32S;
  case 1:
    if (version.major != 4)
      return OS_OTHER;
    return version.minor < 10 ? OS_WINDOWS_95 : (version.minor < 90 ? OS_WINDOWS_98 : OS_WINDOWS_ME);
  case 2:
    if (version.major <= 3)
      return OS_NT_3;
    if (version.major == 4)
      return OS_NT_4;
    if (version.major == 5 && version.minor <= 1)
      return version.minor == 0 ? OS_WINDOWS_2000 : OS_WINDOWS_XP;
    return OS_OTHER;
  default:
    return OS_OTHER;
  }
}

String OsDisplayNameOf(const OsVersion &version) {
  String name("Windows ");
  switch (version.platform) {
  case 0:
    name.append_format("%d.%d", version.major, version.minor);
    break;
  case 1:
    if (version.major == 4)
      name += version.minor < 10 ? "95" : (version.minor < 90 ? "98" : "ME");
    else
      name.append_format("9x %d.%d", version.major, version.minor);
    break;
  case 2:
    if (version.major == 5 && version.minor <= 1)
      name += version.minor == 0 ? "2000" : "XP";
    else
      name.append_format("NT %d.%d", version.major, version.minor);
    break;
  }
  if (!version.service_pack.starts_with_char(' '))
    name += ' ';
  name += version.service_pack;
  name.trim_right();
  return name;
}

} // namespace korb
