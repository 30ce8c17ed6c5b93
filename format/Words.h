// Words and bits that an archive uses and the machine gives a meaning: path variables, systems, attributes of files.
#pragma once

#include <cstdint>

namespace korb {

// ---- Path variables: replaced, in any case, in the texts that may hold them -----------------------------------------

// Arrays, not pointers: a variable is known by the address of its name, which is one in the whole program.
namespace path_variable {
inline constexpr char kBootDrive[] = "%BootDrive%"; ///< with its colon, as %InstallDrive%
inline constexpr char kCommonDir[] = "%CommonDir%"; ///< the system's folder of common files
inline constexpr char kInstallDir[] = "%InstallDir%";
inline constexpr char kInstallDrive[] = "%InstallDrive%";
inline constexpr char kProgramsDir[] = "%ProgramsDir%";
inline constexpr char kSharedDir[] = "%SharedDir%"; ///< the archive's CommonDir
inline constexpr char kSystemDir[] = "%SystemDir%";
inline constexpr char kInstallerDir[] = "%InstallerDir%";
inline constexpr char kInstallerDrive[] = "%InstallerDrive%"; ///< the letter alone
inline constexpr char kInstallerFilename[] = "%InstallerFilename%";
inline constexpr char kInstallerFilepath[] = "%InstallerFilepath%";
inline constexpr char kDeviceDir[] = "%DeviceDir%";
inline constexpr char kMediaDir[] = "%MediaDir%";
inline constexpr char kFavoritesDir[] = "%FavoritesDir%";
inline constexpr char kFavoritesAllDir[] = "%FavoritesAllDir%";
inline constexpr char kFontDir[] = "%FontDir%";
inline constexpr char kDesktopDir[] = "%DesktopDir%";
inline constexpr char kDesktopAllDir[] = "%DesktopAllDir%";
inline constexpr char kDocumentDir[] = "%DocumentDir%";
inline constexpr char kDocumentAllDir[] = "%DocumentAllDir%";
inline constexpr char kStartMenuDir[] = "%StartMenuDir%";
inline constexpr char kStartMenuAllDir[] = "%StartMenuAllDir%";
inline constexpr char kSMProgramsDir[] = "%SMProgramsDir%";
inline constexpr char kSMProgramsAllDir[] = "%SMProgramsAllDir%";
inline constexpr char kStartupDir[] = "%StartupDir%";
inline constexpr char kStartupAllDir[] = "%StartupAllDir%";
inline constexpr char kTemp[] = "%Temp%";
inline constexpr char kWinDir[] = "%WinDir%";
} // namespace path_variable

/// All of them, in the order of replacement.
inline constexpr const char *kPathVariableNames[] = {
    path_variable::kBootDrive,
    path_variable::kCommonDir,
    path_variable::kInstallDir,
    path_variable::kInstallDrive,
    path_variable::kProgramsDir,
    path_variable::kSharedDir,
    path_variable::kSystemDir,
    path_variable::kInstallerDir,
    path_variable::kInstallerDrive,
    path_variable::kInstallerFilename,
    path_variable::kInstallerFilepath,
    path_variable::kDeviceDir,
    path_variable::kMediaDir,
    path_variable::kFavoritesDir,
    path_variable::kFavoritesAllDir,
    path_variable::kFontDir,
    path_variable::kDesktopDir,
    path_variable::kDesktopAllDir,
    path_variable::kDocumentDir,
    path_variable::kDocumentAllDir,
    path_variable::kStartMenuDir,
    path_variable::kStartMenuAllDir,
    path_variable::kSMProgramsDir,
    path_variable::kSMProgramsAllDir,
    path_variable::kStartupDir,
    path_variable::kStartupAllDir,
    path_variable::kTemp,
    path_variable::kWinDir,
};

// ---- Batches -------------------------------------------------------------------------------------------------------

/// The file of an author's batch while it runs, in the directory where it begins.
inline constexpr const char *kBatchName = "KORBBAT.BAT";

// ---- Systems: bits of OsCode, which archives combine to a mask of the systems that they refuse ----------------------

inline constexpr uint32_t OS_OTHER = 0x1; ///< everything that came later or is not known
inline constexpr uint32_t OS_WIN32S = 0x2;
inline constexpr uint32_t OS_WINDOWS_95 = 0x4;
inline constexpr uint32_t OS_WINDOWS_98 = 0x8;
inline constexpr uint32_t OS_WINDOWS_ME = 0x10;
inline constexpr uint32_t OS_NT_3 = 0x20;
inline constexpr uint32_t OS_NT_4 = 0x40;
inline constexpr uint32_t OS_WINDOWS_2000 = 0x80;
inline constexpr uint32_t OS_WINDOWS_XP = 0x100;

// ---- Attributes of files, by the platform's own numbers -------------------------------------------------------------

inline constexpr uint32_t kReadOnlyAttribute = 0x1;
inline constexpr uint32_t kHiddenAttribute = 0x2;
inline constexpr uint32_t kSystemAttribute = 0x4;
inline constexpr uint32_t kArchiveAttribute = 0x20;
inline constexpr uint32_t kTemporaryAttribute = 0x100;
inline constexpr uint32_t kOfflineAttribute = 0x1000;

/// Those that keep a file from being replaced or deleted.
inline constexpr uint32_t kProtectiveAttributes = kReadOnlyAttribute | kHiddenAttribute | kSystemAttribute;
/// Those of a record that an installed file is given; all others are left out.
inline constexpr uint32_t kSettableAttributes =
    kProtectiveAttributes | kArchiveAttribute | kTemporaryAttribute | kOfflineAttribute;

} // namespace korb
