// The values of a run that every higher layer reads.
//
// Each is filled at the one place named with it, once, and only read afterwards. An install run takes them from the
// command line and the configuration stream, an uninstall run from what the installation recorded.
#pragma once

#include <cstdint>

#include "core/Array.h"
#include "core/RunPaths.h"
#include "core/String.h"
#include "format/Archive.h"

namespace korb {

/// The archive's option word, IF_... bits. Filled by DecodeConfig, or from the registry by the uninstall run. Only
/// IF_REBOOT_NEEDED is ever set afterwards, and no bit is ever cleared.
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

/// The product as the user knows it. Filled by /n:, else by the configuration stream.
extern String ProductName;

/// Every text by number (outer) and language (inner). Filled by the configuration stream, or from Uninstall.DAT with
/// language 0 alone. Look texts up through TextLookup, which puts in the names.
extern Array<Array<String>> TextTable;
/// Names of the archive's languages in its order; empty in an uninstall run.
extern Array<String> LanguageNames;
/// The language in force. Filled by the configuration stream, then by the choice of the language.
extern int32_t LanguageIndex;

/// Puts all of these, the two directories and the modes of the run back to what a process starts with, for whoever reads
/// more than one archive.
void ResetRunValues();

} // namespace korb
