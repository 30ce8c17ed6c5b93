// The numbers of the texts that an archive brings in each of its languages.
#pragma once

#include <cstdint>

namespace korb {

/// How a text is used stands with it. "format" lists the arguments that it is given; a step is a format without
/// arguments; everything else is shown as it stands. Numbers that are not here have no use in the program.
enum TextNumber : int32_t {
  kTextMainTitle = 0,                ///< title on the background window
  kTextNoticeCaption = 1,            ///< caption of the notice, kTextNotice
  kTextReinstallCaption = 2,         ///< caption of the question before installing over an earlier installation
  kTextReinstallPresent = 3,         ///< its first line: an earlier one is there
  kTextReinstallSame = 4,            ///< ... of the same version
  kTextReinstallOlder = 5,           ///< ... an older one
  kTextReinstallNewer = 6,           ///< ... a newer one
  kTextReinstallQuestion = 7,        ///< its closing line
  kTextStepStart = 8,                ///< step at 2 percent
  kTextReinstallRefused = 9,         ///< message: the product is there and this archive doesn't install over it
  kTextUninstallIncomplete = 10,     ///< format: %s, what could not be removed
  kTextDirectoryPrompt = 11,         ///< label, and title of the folder browser
  kTextMasterMissing = 12,           ///< format: %s, the product that must be there
  kTextCorrupt = 13,                 ///< format: %d, the damage code; empty takes the built-in text
  kTextIllegalDirectory = 14,        ///< line in front of the name
  kTextUninstallEndCaption = 15,     ///< caption
  kTextNoDrive = 16,                 ///< format: %c, the drive
  kTextDirectoryTooShort = 17,       ///< message
  kTextDirectoryIsProgramFiles = 18, ///< format: %s, the folder
  kTextDiskSpace = 19,               ///< format: %s needed, %c drive, %s free
  kTextWarningCaption = 20,          ///< caption: disk space, cancel, restart, things left behind at uninstall
  kTextErrorCaption = 21,            ///< caption of every error box; empty takes the built-in one
  kTextDirectoryExists = 22,         ///< format: %s
  kTextDirectoryCreate = 23,         ///< format: %s
  kTextDirectoryCaption = 24,        ///< caption of these two, and title of the directory dialog
  kTextCreateFailed = 25,            ///< line: a directory could not be created
  kTextInsertVolume = 26,            ///< format: %d volume number, %c drive
  kTextInsertVolumeCaption = 27,     ///< caption
  kTextCancelQuestion = 28,          ///< message
  kTextStepUnpack = 29,              ///< step at 40 percent
  kTextWrongVolume = 30,             ///< line in front of kTextInsertVolume
  kTextFileFailed = 31,              ///< line: a file could not be written
  kTextStepShortcuts = 32,           ///< step at 90 percent
  kTextUninstallerShortcut = 33,     ///< title of the uninstaller's shortcut
  kTextUninstallDone = 34,           ///< message
  kTextSharedCaption = 35,           ///< caption of kTextRemoveShared
  kTextStepEnd = 36,                 ///< step at 100 percent
  kTextRestartQuestion = 37,         ///< message
  kTextShortcutTitle = 38,           ///< format: %s file name; title of a shortcut whose record has no label
  kTextProgressLabel = 39,           ///< label of the progress dialog
  kTextShowLog = 40,                 ///< format: %s, the log
  kTextShowLogCaption = 41,          ///< caption
  kTextInstallDone = 42,             ///< message
  kTextInstallDoneCaption = 43,      ///< caption, and last line of the log of a clean run
  kTextLicenseTitle = 44,            ///< title
  kTextAccept = 45,                  ///< button
  kTextRefuse = 46,                  ///< button
  kTextLicensePrompt = 47,           ///< label
  kTextNext = 48,                    ///< default button
  kTextCancel = 49,                  ///< second button, and the progress dialog's
  kTextReadmeTitle = 50,             ///< title
  kTextReadmePrompt = 51,            ///< label
  kTextBrowse = 52,                  ///< button
  kTextUninstallQuestion = 53,       ///< message
  kTextProgressTitle = 54,           ///< title
  kTextUninstallTitle = 55,          ///< caption of kTextUninstallQuestion, title of the progress dialog
  kTextRemoveFont = 56,              ///< format: %s
  kTextRemoveFontCaption = 57,       ///< caption
  kTextFileStays = 58,               ///< line with the name behind it
  kTextRemoveShared = 59,            ///< format: %s
  kTextExpired = 60,                 ///< message
  kTextWrongSystem = 61,             ///< format: %s, the system's name
  kTextStepVerify = 62,              ///< step at 36 percent
  kTextLicensePage = 63,             ///< first licence page
  kTextReadmePage = 64,              ///< first readme page
  kTextNotice = 65,                  ///< message
  kTextNoNetworkPath = 66,           ///< message
  kTextUninstallStepFonts = 67,      ///< step at 5 percent
  kTextUninstallStepRegistry = 68,   ///< step at 90 percent
  kTextUninstallStepEnd = 69,        ///< step at 95 percent
  kTextUninstallStepStart = 70,      ///< step at 1 percent
  kTextUninstallLabel = 71,          ///< label of the progress dialog at uninstall
};

/// The texts that an installation leaves for its uninstaller, in their order in Uninstall.DAT. A negative number ends
/// the list.
inline constexpr int8_t kUninstallTexts[] = {10, 15, 20, 30, 34, 35, 39, 49, 53, 55,
                                             56, 57, 58, 59, 67, 68, 69, 70, 71, -1};

} // namespace korb
