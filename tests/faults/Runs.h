// The runs of the program in which calls are refused.
#pragma once

#include <string>
#include <vector>

namespace korb::faults {

/// What the program does in a run, from which state, and how its product goes again.
struct RunKind {
  const char *name;
  const char *product; ///< of the Uninstall key
  const char *setup;   ///< what is started: an installer with its options, or empty for the installed uninstaller
  const char *before;  ///< an installation before it; empty for none
  const char *held;    ///< a file that somebody uses meanwhile; empty for none
  bool uninstalls() const { return *setup == '\0'; }
};

inline constexpr char kHeldFile[] = "C:\\Program Files\\Korb Atlas\\maps\\sea.kmap";

inline constexpr RunKind kRuns[] = {
    {"install", "KorbAtlas", "atlas-1.exe /a", "", ""},
    {"wizard", "KorbAtlas", "atlas-1.exe", "", ""},
    {"reinstall", "KorbAtlas", "atlas-1.exe /a", "atlas-1.exe /a", ""},
    {"upgrade", "KorbAtlas", "atlas-2.exe /a", "atlas-1.exe /a", ""},
    {"in-use", "KorbAtlas", "atlas-2.exe /a", "atlas-1.exe /a", kHeldFile},
    {"volumes", "Several disks", "disks.exe /a", "", ""},
    {"uninstall", "KorbAtlas", "", "atlas-1.exe /a", ""},
    {"uninstall-in-use", "KorbAtlas", "", "atlas-1.exe /a", kHeldFile},
};

/// What one start of the program came to.
struct Outcome {
  bool ended = false;
  unsigned long code = 0;
  std::vector<std::string> boxes; ///< what each box said, and what each other window was
  std::string report;             ///< the lines of Faults.cpp
};

/// Packs the products. Done once on a machine.
void MakeInstallers();

/// Starts the program of a run with a fault (GROUP:N, or empty), answers its windows as somebody who wants it done, and
/// waits for all that it started.
Outcome Start(const RunKind &kind, const std::string &fault);

/// Starts an installer, or with /a the product's uninstaller, in the same way.
Outcome StartSetup(const std::string &setup, const std::string &fault = "");
Outcome StartUninstaller(const RunKind &kind, bool silent, const std::string &fault = "");

/// Whether the system would still offer to remove it.
bool IsListed(const RunKind &kind);

} // namespace korb::faults
