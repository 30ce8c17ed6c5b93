// The operating system by name and by bit.
#pragma once

#include <cstdint>

#include "files/OsVersion.h"

namespace korb {

/// One of the OS_ bits of format/Words.h.
uint32_t OsCodeOf(const OsVersion &version);
/// "Windows XP Service Pack 3".
String OsDisplayNameOf(const OsVersion &version);

// The same of the running system, asked anew at each call.
inline uint32_t OsCode() {
  return OsCodeOf(RunningOs());
}
inline String OsDisplayName() {
  return OsDisplayNameOf(RunningOs());
}

} // namespace korb
