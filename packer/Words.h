// The words that stand for numbers of an archive, for the reader of manifests and for what is told of an installer.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "format/Archive.h"

namespace korb::packer {

/// A word and the number that it stands for in an archive.
struct NamedValue {
  std::string_view name;
  int64_t value;
};

inline constexpr NamedValue kKinds[] = {{"program", KindProgram}, {"shared", KindShared},
                                        {"font", KindFont},       {"startup", KindStartup},
                                        {"system", KindSystem},   {"system-com", KindSystemCom}};
inline constexpr NamedValue kConditions[] = {
    {"always", FF_PLACE_ALWAYS}, {"never", FF_PLACE_NEVER}, {"over", FF_PLACE_OVER}, {"new", FF_PLACE_NEW}};
inline constexpr NamedValue kAttributes[] = {{"read-only", 0x1}, {"hidden", 0x2},      {"system", 0x4},
                                             {"archive", 0x20},  {"temporary", 0x100}, {"offline", 0x1000}};
inline constexpr NamedValue kDeletionKinds[] = {{"always", kDeleteAlways},        {"date-equal", kDeleteDateEqual},
                                                {"date-from", kDeleteDateFrom},   {"date-up-to", kDeleteDateUpTo},
                                                {"size-equal", kDeleteSizeEqual}, {"size-from", kDeleteSizeFrom},
                                                {"size-up-to", kDeleteSizeUpTo}};
inline constexpr NamedValue kValueKinds[] = {
    {"text", kUninstallText}, {"expand", kUninstallExpandText}, {"number", kUninstallNumber}};
inline constexpr NamedValue kShortcutModes[] = {{"user", 0}, {"all-users", kShortcutsForAllUsers}};
inline constexpr NamedValue kLayouts[] = {{"section", 0}, {"file", 1}};
inline constexpr NamedValue kCompressionLevels[] = {{"default", 0}, {"best", 1}};
/// As the program tells systems apart; "other" is everything that came later or is not known.
inline constexpr NamedValue kPlatforms[] = {{"other", 0x1}, {"win32s", 0x2}, {"95", 0x4},    {"98", 0x8},  {"me", 0x10},
                                            {"nt3", 0x20},  {"nt4", 0x40},   {"2000", 0x80}, {"xp", 0x100}};
/// Bytes that one file can have on a floppy disk with an empty FAT file system.
inline constexpr NamedValue kDiskSizes[] = {
    {"360K", 362496}, {"720K", 730112}, {"1.2M", 1213952}, {"1.44M", 1457664}, {"2.88M", 2915328}};

/// What installers replace in the texts that may hold path variables, in any case.
inline constexpr std::string_view kPathVariables[] = {"%InstallDir%",       "%InstallDrive%",   "%SharedDir%",
                                                      "%CommonDir%",        "%ProgramsDir%",    "%SystemDir%",
                                                      "%WinDir%",           "%Temp%",           "%FontDir%",
                                                      "%DesktopDir%",       "%DesktopAllDir%",  "%StartMenuDir%",
                                                      "%StartMenuAllDir%",  "%SMProgramsDir%",  "%SMProgramsAllDir%",
                                                      "%StartupDir%",       "%StartupAllDir%",  "%DocumentDir%",
                                                      "%DocumentAllDir%",   "%FavoritesDir%",   "%FavoritesAllDir%",
                                                      "%MediaDir%",         "%DeviceDir%",      "%BootDrive%",
                                                      "%InstallerDir%",     "%InstallerDrive%", "%InstallerFilename%",
                                                      "%InstallerFilepath%"};

/// The word for `value`, or the number itself.
std::string WordFor(std::span<const NamedValue> names, int64_t value);

} // namespace korb::packer
