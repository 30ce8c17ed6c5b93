// The numbered texts: all that a user of an installer reads, in each language of the archive.
#pragma once

#include <cstdint>

namespace korb {

/// Where each text is shown. Numbers that are not here have no use in the program.
enum TextNumber : int32_t {
  kTextMainTitle = 0,              ///< title on the background window
  kTextNoticeCaption = 1,          ///< caption of the notice, kTextNotice
  kTextReinstallCaption = 2,       ///< caption of the question before installing over an earlier installation
  kTextReinstallInstalled = 3,     ///< its first line: an earlier one is there
  kTextReinstallSame = 4,          ///< ... of the same version
  kTextReinstallOlder = 5,         ///< ... an older one
  kTextReinstallNewer = 6,         ///< ... a newer one
  kTextReinstallQuestion = 7,      ///< its closing line
  kTextStepPayload = 8,            ///< step at 2 percent
  kTextReinstallRefused = 9,       ///< message: the product is there and this archive doesn't install over it
  kTextUninstallIncomplete = 10,   ///< format: %s, what could not be removed
  kTextDirectoryPrompt = 11,       ///< label, and title of the folder browser
  kTextMasterMissing = 12,         ///< format: %s, the product that must be there
  kTextCorrupt = 13,               ///< format: %d, the damage code; empty takes the built-in text
  kTextDirectoryIllegal = 14,      ///< line before the name
  kTextUninstalledCaption = 15,    ///< caption
  kTextDriveMissing = 16,          ///< format: %c, the drive
  kTextDirectoryShort = 17,        ///< message
  kTextDirectoryProgramFiles = 18, ///< format: %s, the folder
  kTextDiskSpace = 19,             ///< format: %s needed, %c drive, %s free
  kTextProductCaption = 20,        ///< caption: disk space, cancel, restart, things left behind at uninstall
  kTextErrorCaption = 21,          ///< caption of every error box; empty takes the built-in one
  kTextDirectoryExists = 22,       ///< format: %s
  kTextDirectoryMissing = 23,      ///< format: %s
  kTextDirectoryCaption = 24,      ///< caption of these two, and title of the directory dialog
  kTextDirectoryFailed = 25,       ///< line: a directory could not be created
  kTextVolumePrompt = 26,          ///< format: %d volume number, %c drive
  kTextVolumeCaption = 27,         ///< caption
  kTextCancelQuestion = 28,        ///< message
  kTextStepUnpack = 29,            ///< step at 40 percent
  kTextVolumeWrong = 30,           ///< line before kTextVolumePrompt
  kTextFileFailed = 31,            ///< line: a file could not be written
  kTextStepShortcuts = 32,         ///< step at 90 percent
  kTextUninstallerTitle = 33,      ///< title of the uninstaller's shortcut
  kTextUninstalled = 34,           ///< message
  kTextSharedCaption = 35,         ///< caption of kTextSharedQuestion
  kTextStepRecord = 36,            ///< step at 100 percent
  kTextRebootQuestion = 37,        ///< message
  kTextShortcutTitle = 38,         ///< format: %s file name; title of a shortcut whose record has no label
  kTextInstallLabel = 39,          ///< label of the progress dialog
  kTextLogQuestion = 40,           ///< format: %s, the log
  kTextLogCaption = 41,            ///< caption
  kTextInstalled = 42,             ///< message
  kTextInstalledCaption = 43,      ///< caption, and last line of the log of a clean run
  kTextLicenseTitle = 44,          ///< title
  kTextLicenseAccept = 45,         ///< button
  kTextLicenseRefuse = 46,         ///< button
  kTextLicensePrompt = 47,         ///< label
  kTextOkButton = 48,              ///< default button
  kTextCancelButton = 49,          ///< second button, and the progress dialog's
  kTextReadmeTitle = 50,           ///< title
  kTextReadmePrompt = 51,          ///< label
  kTextBrowseButton = 52,          ///< button
  kTextUninstallQuestion = 53,     ///< message
  kTextInstallTitle = 54,          ///< title
  kTextUninstallTitle = 55,        ///< caption of kTextUninstallQuestion, title of the progress dialog
  kTextFontQuestion = 56,          ///< format: %s
  kTextFontCaption = 57,           ///< caption
  kTextRemoveFailed = 58,          ///< line with the name after it
  kTextSharedQuestion = 59,        ///< format: %s
  kTextExpired = 60,               ///< message
  kTextPlatformRefused = 61,       ///< format: %s, the system's name
  kTextStepVerify = 62,            ///< step at 36 percent
  kTextFirstLicensePage = 63,      ///< first licence page
  kTextFirstReadmePage = 64,       ///< first readme page
  kTextNotice = 65,                ///< message
  kTextDirectoryNetwork = 66,      ///< message
  kTextStepFonts = 67,             ///< step at 5 percent
  kTextStepSharedFiles = 68,       ///< step at 90 percent
  kTextStepRegistry = 69,          ///< step at 95 percent
  kTextStepAssociations = 70,      ///< step at 1 percent
  kTextUninstallLabel = 71,        ///< label of the progress dialog at uninstall
};

/// What both sides know of a text.
struct TextRow {
  TextNumber number;
  const char *name; ///< its key in a manifest
  /// How the program uses it: "" as it is, "-" as a format without arguments, else as a format with one argument for
  /// each letter: s text, d number, c character.
  const char *form;
  bool saved; ///< an installation leaves it for its uninstaller, in Uninstall.DAT
};

/// By number.
inline constexpr TextRow kTextRows[] = {
    {kTextMainTitle, "main_title", "", false},
    {kTextNoticeCaption, "notice_caption", "", false},
    {kTextReinstallCaption, "reinstall_caption", "", false},
    {kTextReinstallInstalled, "reinstall_installed", "", false},
    {kTextReinstallSame, "reinstall_same", "", false},
    {kTextReinstallOlder, "reinstall_older", "", false},
    {kTextReinstallNewer, "reinstall_newer", "", false},
    {kTextReinstallQuestion, "reinstall_question", "", false},
    {kTextStepPayload, "step_payload", "-", false},
    {kTextReinstallRefused, "reinstall_refused", "", false},
    {kTextUninstallIncomplete, "uninstall_incomplete", "s", true},
    {kTextDirectoryPrompt, "directory_prompt", "", false},
    {kTextMasterMissing, "master_missing", "s", false},
    {kTextCorrupt, "corrupt", "d", false},
    {kTextDirectoryIllegal, "directory_illegal", "", false},
    {kTextUninstalledCaption, "uninstalled_caption", "", true},
    {kTextDriveMissing, "drive_missing", "c", false},
    {kTextDirectoryShort, "directory_short", "", false},
    {kTextDirectoryProgramFiles, "directory_program_files", "s", false},
    {kTextDiskSpace, "disk_space", "scs", false},
    {kTextProductCaption, "product_caption", "", true},
    {kTextErrorCaption, "error_caption", "", false},
    {kTextDirectoryExists, "directory_exists", "s", false},
    {kTextDirectoryMissing, "directory_missing", "s", false},
    {kTextDirectoryCaption, "directory_caption", "", false},
    {kTextDirectoryFailed, "directory_failed", "", false},
    {kTextVolumePrompt, "volume_prompt", "dc", false},
    {kTextVolumeCaption, "volume_caption", "", false},
    {kTextCancelQuestion, "cancel_question", "", false},
    {kTextStepUnpack, "step_unpack", "-", false},
    {kTextVolumeWrong, "volume_wrong", "", true},
    {kTextFileFailed, "file_failed", "", false},
    {kTextStepShortcuts, "step_shortcuts", "-", false},
    {kTextUninstallerTitle, "uninstaller_title", "", false},
    {kTextUninstalled, "uninstalled", "", true},
    {kTextSharedCaption, "shared_caption", "", true},
    {kTextStepRecord, "step_record", "-", false},
    {kTextRebootQuestion, "reboot_question", "", false},
    {kTextShortcutTitle, "shortcut_title", "s", false},
    {kTextInstallLabel, "install_label", "", true},
    {kTextLogQuestion, "log_question", "s", false},
    {kTextLogCaption, "log_caption", "", false},
    {kTextInstalled, "installed", "", false},
    {kTextInstalledCaption, "installed_caption", "", false},
    {kTextLicenseTitle, "license_title", "", false},
    {kTextLicenseAccept, "license_accept", "", false},
    {kTextLicenseRefuse, "license_refuse", "", false},
    {kTextLicensePrompt, "license_prompt", "", false},
    {kTextOkButton, "ok_button", "", false},
    {kTextCancelButton, "cancel_button", "", true},
    {kTextReadmeTitle, "readme_title", "", false},
    {kTextReadmePrompt, "readme_prompt", "", false},
    {kTextBrowseButton, "browse_button", "", false},
    {kTextUninstallQuestion, "uninstall_question", "", true},
    {kTextInstallTitle, "install_title", "", false},
    {kTextUninstallTitle, "uninstall_title", "", true},
    {kTextFontQuestion, "font_question", "s", true},
    {kTextFontCaption, "font_caption", "", true},
    {kTextRemoveFailed, "remove_failed", "", true},
    {kTextSharedQuestion, "shared_question", "s", true},
    {kTextExpired, "expired", "", false},
    {kTextPlatformRefused, "platform_refused", "s", false},
    {kTextStepVerify, "step_verify", "-", false},
    {kTextFirstLicensePage, "first_license_page", "", false},
    {kTextFirstReadmePage, "first_readme_page", "", false},
    {kTextNotice, "notice", "", false},
    {kTextDirectoryNetwork, "directory_network", "", false},
    {kTextStepFonts, "step_fonts", "-", true},
    {kTextStepSharedFiles, "step_shared_files", "-", true},
    {kTextStepRegistry, "step_registry", "-", true},
    {kTextStepAssociations, "step_associations", "-", true},
    {kTextUninstallLabel, "uninstall_label", "", true},
};
inline constexpr int32_t kTextCount = sizeof kTextRows / sizeof *kTextRows;

constexpr bool TextRowsAreInOrder() {
  for (int32_t i = 0; i < kTextCount; ++i)
    if (kTextRows[i].number != i)
      return false;
  return true;
}
static_assert(TextRowsAreInOrder());

constexpr int32_t CountSavedTexts() {
  int32_t count = 0;
  for (const TextRow &row : kTextRows)
    count += row.saved;
  return count;
}

/// The numbers of the texts that are saved, in their order in Uninstall.DAT. A negative one ends them.
struct SavedTexts {
  int8_t numbers[CountSavedTexts() + 1];

  constexpr SavedTexts() : numbers() {
    int8_t *next = numbers;
    for (const TextRow &row : kTextRows)
      if (row.saved)
        *next++ = static_cast<int8_t>(row.number);
    *next = -1;
  }
};
inline constexpr SavedTexts kSavedTexts;

} // namespace korb
