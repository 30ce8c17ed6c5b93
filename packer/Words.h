// The words that stand for numbers of an archive, for the reader of manifests and for what is told of an installer.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>
#include <span>
#include <string>
#include <string_view>

#include "format/Archive.h"
#include "format/Kinds.h"
#include "format/Words.h"

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
inline constexpr NamedValue kAttributes[] = {{"read-only", kReadOnlyAttribute},  {"hidden", kHiddenAttribute},
                                             {"system", kSystemAttribute},       {"archive", kArchiveAttribute},
                                             {"temporary", kTemporaryAttribute}, {"offline", kOfflineAttribute}};
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
inline constexpr NamedValue kPlatforms[] = {{"other", OS_OTHER},   {"win32s", OS_WIN32S},     {"95", OS_WINDOWS_95},
                                            {"98", OS_WINDOWS_98}, {"me", OS_WINDOWS_ME},     {"nt3", OS_NT_3},
                                            {"nt4", OS_NT_4},      {"2000", OS_WINDOWS_2000}, {"xp", OS_WINDOWS_XP}};
/// Bytes that one file can have on a floppy disk with an empty FAT file system.
inline constexpr NamedValue kDiskSizes[] = {
    {"360K", 362496}, {"720K", 730112}, {"1.2M", 1213952}, {"1.44M", 1457664}, {"2.88M", 2915328}};

/// What installers replace in the texts that may hold path variables, in any case.
inline constexpr auto kPathVariables = [] {
  std::array<std::string_view, std::size(kPathVariableNames)> names;
  std::copy(std::begin(kPathVariableNames), std::end(kPathVariableNames), names.begin());
  return names;
}();

/// The word for `value`, or the number itself.
std::string WordFor(std::span<const NamedValue> names, int64_t value);

} // namespace korb::packer
