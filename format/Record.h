// What an installation leaves for its uninstaller: where it is, how it is written, and by which limits it is read.
//
// Uninstallers of other versions read it, so a name, a mark or a heading never changes its meaning.
#pragma once

#include <cstdint>

namespace korb {

// ---- Places
// ------------------------------------------------------------------------------------------------------------

// Files in the uninstaller's directory.
inline constexpr const char *kUninstallDataName = "Uninstall.DAT"; ///< what was installed, and the uninstaller's texts
inline constexpr const char *kInstallLogName = "Install.LOG";      ///< what happened in each installation
inline constexpr const char *kBackgroundName = "Installer Background.BMP"; ///< the picture that the uninstaller shows

/// Below "Software\" of the machine: a key for each product, whose name is its uninstall name.
inline constexpr const char *kUninstallKeys = "Microsoft\\Windows\\CurrentVersion\\Uninstall";
/// The system's reference counts: a number for each file, named by its full path.
inline constexpr const char *kSharedFileKey = "Microsoft\\Windows\\CurrentVersion\\SharedDLLs";

// ---- Uninstall.DAT
// -------------------------------------------------------------------------------------------------------

// Marks before a line of the list; a file has none.
inline constexpr char kDirectoryMark = '~';
inline constexpr char kClassesKeyMark = '!'; ///< a key below HKEY_CLASSES_ROOT; read, but written by no installation

inline constexpr const char *kStringsHeading = "[Strings]";
inline constexpr char kTextMark = '~'; ///< before the number of a text, whose lines follow
inline constexpr const char *kAssociationsHeading = "[Associations]";
inline constexpr char kAssociationSeparator[] = "~!~"; ///< between extension, class and verb
inline constexpr const char *kAssociationFormat = "%s~!~%s~!~%s\r\n";

/// Lines of associations that a reader looks at, empty ones included. The first is empty, since it ends the heading's.
inline constexpr int32_t kMaxAssociationLines = 500;
/// Texts, and lines that are none, that a reader looks at.
inline constexpr int32_t kMaxTextEntries = 500;
/// Texts of a higher number are passed over.
inline constexpr int32_t kMaxTextNumber = 1000;

// ---- The product's key
// -----------------------------------------------------------------------------------------------------

namespace product_value {
inline constexpr const char *kUninstallString = "UninstallString";
inline constexpr const char *kQuietUninstallString = "QuietUninstallString";
inline constexpr const char *kDisplayName = "DisplayName";
inline constexpr const char *kInstallSource = "InstallSource";
inline constexpr const char *kDisplayVersion = "DisplayVersion";
inline constexpr const char *kPublisher = "Publisher";
inline constexpr const char *kVersionMajor = "VersionMajor";
inline constexpr const char *kVersionMinor = "VersionMinor";
inline constexpr const char *kProductRegistry = "ProductRegistry";
inline constexpr const char *kProductStartMenu = "ProductStartMenu";
inline constexpr const char *kSharedPath = "SharedPath";
inline constexpr const char *kProductFonts = "ProductFonts";
inline constexpr const char *kProductFlags = "ProductFlags"; ///< InstallFlags, as a signed decimal text
inline constexpr const char *kUninstallBatch1 = "UninstallBatch1";
inline constexpr const char *kUninstallBatch2 = "UninstallBatch2";
inline constexpr const char *kSharedFiles = "SharedFiles";
inline constexpr const char *kUninstallSubdir = "UninstallSubdir";
inline constexpr const char *kShortcutMode = "ShortcutMode";
inline constexpr const char *kDisplayTitle = "DisplayTitle";
inline constexpr const char *kTitleColor = "TitleColor";
inline constexpr const char *kTopColor = "TopColor";
inline constexpr const char *kBottomColor = "BottomColor";
inline constexpr const char *kMonoColor = "MonoColor";
inline constexpr const char *kTitleShadow = "TitleShadow";
// The archive's own values are written here, and then these two.
inline constexpr const char *kInstallLocation = "InstallLocation";
inline constexpr const char *kInstallDate = "InstallDate";
} // namespace product_value

/// Those that are written before the archive's own values, which can replace them.
inline constexpr const char *kReplaceableValues[] = {
    product_value::kUninstallString, product_value::kQuietUninstallString,
    product_value::kDisplayName,     product_value::kInstallSource,
    product_value::kDisplayVersion,  product_value::kPublisher,
    product_value::kVersionMajor,    product_value::kVersionMinor,
    product_value::kProductRegistry, product_value::kProductStartMenu,
    product_value::kSharedPath,      product_value::kProductFonts,
    product_value::kProductFlags,    product_value::kUninstallBatch1,
    product_value::kUninstallBatch2, product_value::kSharedFiles,
    product_value::kUninstallSubdir, product_value::kShortcutMode,
    product_value::kDisplayTitle,    product_value::kTitleColor,
    product_value::kTopColor,        product_value::kBottomColor,
    product_value::kMonoColor,       product_value::kTitleShadow,
};

// Marks after the path of a shared file in the value SharedFiles.
inline constexpr char kKeepMark = ' ';       ///< it stays on disk when nobody counts it any more
inline constexpr char kUnregisterMark = '^'; ///< it is unregistered before it goes

} // namespace korb
