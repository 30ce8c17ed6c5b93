// The systems that a plan can be made for, with the folders that each has as it comes: in English, on drive C:.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "files/OsVersion.h"

namespace korb::packer {

/// The account that is assumed to install.
inline constexpr char kAssumedUser[] = "User";

/// Absolute paths, without a backslash at the end. Null where such a system has no folder of its own for that.
struct TargetFolders {
  const char *windows, *system;
  const char *desktop, *desktop_all;
  const char *documents, *documents_all;
  const char *favorites, *favorites_all;
  const char *start_menu, *start_menu_all;
  const char *startup; ///< its name in the folder of programs of a start menu
  const char *temp;
};

struct TargetSystem {
  std::string_view name;           ///< as it is typed: "xp"
  std::string_view title;          ///< "Windows XP"
  uint32_t platform, major, minor; ///< as an installer is told them (files/OsVersion.h)
  bool has_32_bits, has_64_bits;
  const TargetFolders &folders;

  bool IsNt() const { return platform == 2; }
};

/// From the oldest to the newest.
std::span<const TargetSystem> TargetSystems();

/// The system of that name, or null.
const TargetSystem *FindTargetSystem(std::string_view name);

} // namespace korb::packer
