// What the system says of its own version.
#pragma once

#include <cstdint>

#include "core/String.h"

namespace korb {

struct OsVersion {
  uint32_t platform = 0; ///< 0 Win32s, 1 Windows 9x, 2 Windows NT
  uint32_t major = 0;
  uint32_t minor = 0;
  String service_pack; ///< as the system words it, blanks included
};

/// Of the running system, asked anew at each call.
OsVersion RunningOs();
bool IsWindowsNT();

} // namespace korb
