// A shortcut that the installation is to make.
#pragma once

#include "core/Collection.h"
#include "core/String.h"

namespace korb {

struct ShortcutRecord {
  bool desktop = false;      ///< on the desktop
  bool start_menu = false;   ///< in the product's start menu group
  bool startup = false;      ///< in the Startup folder
  bool no_uninstall = false; ///< stays at uninstall
  String target;             ///< full path of what it opens
  String title;              ///< its own file name, without extension
  String icon;               ///< full path of the icon's file; empty takes the target's
  String arguments;          ///< command line, with path variables
};

template <>
inline constexpr const char *TypeName<ShortcutRecord> = "ShortcutRecord";

} // namespace korb
