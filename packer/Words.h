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
#include "packer/CodePage.h"

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
inline constexpr NamedValue kCodePages[] = {{"utf-8", kUtf8}, {"UTF-8", kUtf8}}; ///< those that have a word
inline constexpr NamedValue kCompressionLevels[] = {{"default", 0}, {"best", 1}};
/// As the program tells systems apart; "other" is everything that came later or is not known.
inline constexpr NamedValue kPlatforms[] = {{"other", OS_OTHER},   {"win32s", OS_WIN32S},     {"95", OS_WINDOWS_95},
                                            {"98", OS_WINDOWS_98}, {"me", OS_WINDOWS_ME},     {"nt3", OS_NT_3},
                                            {"nt4", OS_NT_4},      {"2000", OS_WINDOWS_2000}, {"xp", OS_WINDOWS_XP}};
/// Bytes that one file can have on a floppy disk with an empty FAT file system.
inline constexpr NamedValue kDiskSizes[] = {
    {"360K", 362496}, {"720K", 730112}, {"1.2M", 1213952}, {"1.44M", 1457664}, {"2.88M", 2915328}};

/// A bit of the option word, and its key in a manifest.
struct FlagName {
  const char *name;
  uint64_t bit;
};

/// Every bit that has a name, in their order.
inline constexpr std::array<FlagName, 37> kFlagNames = {{
    {"refuse_reinstall", IF_REFUSE_REINSTALL},
    {"uninstall_start_menu", IF_UNINSTALL_START_MENU},
    {"uninstall", IF_UNINSTALL},
    {"notice", IF_NOTICE},
    {"ask_font_removal", IF_ASK_FONT_REMOVAL},
    {"packed_payload", IF_PACKED_PAYLOAD},
    {"always_log", IF_ALWAYS_LOG},
    {"ask_directory", IF_ASK_DIRECTORY},
    {"automatic", IF_AUTOMATIC},
    {"automatic_uninstall", IF_AUTOMATIC_UNINSTALL},
    {"no_uninstall_records", IF_NO_UNINSTALL_RECORDS},
    {"replace_in_use", IF_REPLACE_IN_USE},
    {"edit_path", IF_EDIT_PATH},
    {"custom_colors", IF_CUSTOM_COLORS},
    {"reboot_needed", IF_REBOOT_NEEDED},
    {"background_bitmap", IF_BACKGROUND_BITMAP},
    {"master_product", IF_MASTER_PRODUCT},
    {"ask_shared_removal", IF_ASK_SHARED_REMOVAL},
    {"verify_writes", IF_VERIFY_WRITES},
    {"clear_attributes", IF_CLEAR_ATTRIBUTES},
    {"verbose_log", IF_VERBOSE_LOG},
    {"no_cancel", IF_NO_CANCEL},
    {"no_done_message", IF_NO_DONE_MESSAGE},
    {"hide_pre_batch", IF_HIDE_PRE_BATCH},
    {"hide_post_batch", IF_HIDE_POST_BATCH},
    {"hide_final_batch", IF_HIDE_FINAL_BATCH},
    {"hide_uninstall_batch1", IF_HIDE_UNINSTALL_BATCH1},
    {"hide_uninstall_batch2", IF_HIDE_UNINSTALL_BATCH2},
    {"no_reinstall_question", IF_NO_REINSTALL_QUESTION},
    {"no_window", IF_NO_WINDOW},
    {"confirm_directory", IF_CONFIRM_DIRECTORY},
    {"verify_stub", IF_VERIFY_STUB},
    {"uninstall_desktop", IF_UNINSTALL_DESKTOP},
    {"show_errors", IF_SHOW_ERRORS},
    {"compare_versions", IF_COMPARE_VERSIONS},
    {"no_unc_paths", IF_NO_UNC_PATHS},
    {"uninstall_in_folder", IF_UNINSTALL_IN_FOLDER},
}};

/// What installers replace in the texts that may hold path variables, in any case.
inline constexpr auto kPathVariables = [] {
  std::array<std::string_view, std::size(kPathVariableNames)> names;
  std::copy(std::begin(kPathVariableNames), std::end(kPathVariableNames), names.begin());
  return names;
}();

/// The word for `value`, or the number itself.
inline std::string WordFor(std::span<const NamedValue> names, int64_t value) {
  const auto found =
      std::find_if(names.begin(), names.end(), [&](const NamedValue &named) { return named.value == value; });
  return found == names.end() ? std::to_string(value) : std::string(found->name);
}

} // namespace korb::packer
