// The operating system by name and by bit.
#pragma once

#include <cstdint>

#include "files/OsVersion.h"

namespace korb {

// Bits of OsCode, which archives combine to a mask of the systems that they refuse.
inline constexpr uint32_t OS_OTHER = 0x1;
inline constexpr uint32_t OS_WIN32S = 0x2;
inline constexpr uint32_t OS_WINDOWS_95 = 0x4;
inline constexpr uint32_t OS_WINDOWS_98 = 0x8;
inline constexpr uint32_t OS_WINDOWS_ME = 0x10;
inline constexpr uint32_t OS_NT_3 = 0x20;
inline constexpr uint32_t OS_NT_4 = 0x40;
inline constexpr uint32_t OS_WINDOWS_2000 = 0x80;
inline constexpr uint32_t OS_WINDOWS_XP = 0x100;

/// One OS_ bit.
uint32_t OsCodeOf(const OsVersion &version);
/// "Windows XP Service Pack 3".
String OsDisplayNameOf(const OsVersion &version);

// The same of the running system, asked anew at each call.
uint32_t OsCode();
String OsDisplayName();

} // namespace korb
