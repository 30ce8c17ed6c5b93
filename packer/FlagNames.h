// The names that the bits of an archive's option word have in a manifest.
#pragma once

#include <array>

#include "format/Archive.h"

namespace korb::packer {

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

} // namespace korb::packer
