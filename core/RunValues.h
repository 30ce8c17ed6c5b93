// The values of a run that many of its parts read, in all folders: the whole set, each with who fills it and when.
//
// An installation takes them from its command line (ParseCommandLine), then from its archive (DecodeConfig,
// ReadConfigStream), then from its user. An uninstall run takes them from its command line and from what the
// installation left in the product's key (app/Uninstallation.cpp). What only passes from one phase to the next is no
// such value.
//
// A run has one of each, and ends with its process. Whoever reads several archives in one process calls ResetRunValues
// in between.
#pragma once

#include <cstdint>

#include "core/Array.h"
#include "core/String.h"
#include "format/Archive.h"

namespace korb {

// ---- What kind of run this is ---------------------------------------------------------------------------------------

/// Names this program in the report of a registry key that can't be opened, which may come before any product is known.
inline constexpr const char *ApplicationName = "KORB Installer";

/// No question is asked that this guards. True by /a, or by IF_AUTOMATIC as DecodeConfig reads it (in an uninstall run
/// by the recorded IF_AUTOMATIC_UNINSTALL); false again when an installed product refuses to be installed over, which
/// the user must see.
inline bool AutomaticMode = false;

/// The run removes a product. Set by /u and never again.
inline bool UninstallMode = false;

/// The archive's option word, IF_... bits. DecodeConfig reads it before the rest of the configuration, since it decides
/// on the window, and ReadConfigStream once more in its place; an uninstall run takes what was recorded.
/// IF_REBOOT_NEEDED is set later on, by whatever is left to the next start of the machine; no bit is ever cleared.
extern uint64_t InstallFlags;

/// True when any bit of `flags` is set in InstallFlags.
[[gnu::always_inline]] inline bool HasInstallFlag(uint64_t flags) {
  // A test of one byte is half as long as one of two words, and there are many of them.
  if (__builtin_constant_p(flags) && flags != 0) {
    const int byte = __builtin_ctzll(flags) / 8;
    if (flags >> byte * 8 <= 0xFF)
      return (reinterpret_cast<const uint8_t *>(&InstallFlags)[byte] & flags >> byte * 8) != 0;
  }
  return (InstallFlags & flags) != 0;
}

// ---- The product and its places -------------------------------------------------------------------------------------

/// The product as the user knows it: by /n:, else by ReadConfigStream. An uninstall run takes the recorded name, and
/// that of its command line where none is.
extern String ProductName;

/// Where the product goes: by /d:, else the archive's default, taken once the archive is read. A reinstallation then
/// takes the earlier one's place, and the directory phase what the user typed, trimmed, after which it is settled. An
/// uninstall run takes what was recorded.
extern String InstallDir;
/// Directory for files that products share; empty without IF_UNINSTALL. Settled by ReadConfigStream; an uninstall run
/// takes what was recorded, once its user has agreed.
extern String CommonDir;

// ---- Texts and languages --------------------------------------------------------------------------------------------

/// Every text by number (outer) and language (inner). By ReadConfigStream; an uninstall run has those of Uninstall.DAT,
/// in language 0 alone. Look texts up through TextLookup, which puts the names into a text at its first lookup.
extern Array<Array<String>> TextTable;
/// Names of the archive's languages in its order, by ReadConfigStream; empty in an uninstall run.
extern Array<String> LanguageNames;
/// The language in force. ReadConfigStream takes the default one, then the choice of the language settles it.
extern int32_t LanguageIndex;

/// Makes all of them what they are at the start of a process.
void ResetRunValues();

} // namespace korb
