// What the user typed after the program's name.
//
//     /a             ask nothing
//     /d:"dir"       install to this directory
//     /n:"name"      the product's name
//     /u:"name"      remove the product of this name
//     /r:"program"   run this after a clean installation
//
// A dash does for the slash, and case does not matter.
#pragma once

#include <cstdint>

#include "core/String.h"

namespace korb {

/// Atoms that are looked at; whatever comes after them is dropped without a word.
inline constexpr int32_t kMaxAtoms = 19;

/// The options that only the entry point needs. The others go to the values of the run that they fill.
struct CommandLine {
  String uninstall_name; ///< of /u:; never empty in an uninstall run
  String run_after;      ///< of /r:, a command line
};

/// Reads `text`, the command line without the program's own name: fills `options`, AutomaticMode, UninstallMode,
/// InstallDir and ProductName. A text that can't be understood, and an uninstall run without a name, end in UsageError.
void ParseCommandLine(const char *text, CommandLine &options);

/// The running file as it was typed, from the whole `command_line`, the program's name included; ".EXE" is added to a
/// name without an extension. It may be relative to the current directory, and no search path was applied.
String OwnPath(const char *command_line);

} // namespace korb
