// What an installation leaves for its uninstaller: where it is, how it is written, and by which limits it is read.
//
// Uninstallers of other versions read it, so a name, a mark or a heading never changes its meaning.
#pragma once

#include <cstdint>

namespace korb {

// ---- Places
// ------------------------------------------------------------------------------------------------------------

// Files in the uninstaller's directory.
inline constexpr char kUninstallDataName[] = "Uninstall.DAT"; ///< what was installed, and the uninstaller's texts
inline constexpr char kInstallLogName[] = "Install.LOG";      ///< what happened in each installation
inline constexpr char kBackgroundName[] = "Installer Background.BMP"; ///< the picture that the uninstaller shows

/// Below "Software\" of the machine: a key for each product, whose name is its uninstall name.
inline constexpr char kUninstallKeys[] = "Microsoft\\Windows\\CurrentVersion\\Uninstall";
/// The system's reference counts: a number for each file, named by its full path.
inline constexpr char kSharedFileKey[] = "Microsoft\\Windows\\CurrentVersion\\SharedDLLs";

// ---- Uninstall.DAT
// -------------------------------------------------------------------------------------------------------

// Marks before a line of the list; a file has none.
inline constexpr char kDirectoryMark = '~';
inline constexpr char kClassesKeyMark = '!'; ///< a key below HKEY_CLASSES_ROOT; read, but written by no installation

inline constexpr char kStringsHeading[] = "[Strings]";
inline constexpr char kTextMark = '~'; ///< before the number of a text, whose lines follow
inline constexpr char kAssociationsHeading[] = "[Associations]";
inline constexpr char kAssociationSeparator[] = "~!~"; ///< between extension, class and verb
inline constexpr char kAssociationFormat[] = "%s~!~%s~!~%s\r\n";

/// Lines of associations that a reader looks at, empty ones included. The first is empty, since it ends the heading's.
inline constexpr int32_t kMaxAssociationLines = 500;
/// Texts, and lines that are none, that a reader looks at.
inline constexpr int32_t kMaxTextEntries = 500;
/// Texts of a higher number are passed over.
inline constexpr int32_t kMaxTextNumber = 1000;

// ---- The product's key
// -----------------------------------------------------------------------------------------------------

namespace product_value {
inline constexpr char kUninstallString[] = "UninstallString";
inline constexpr char kQuietUninstallString[] = "QuietUninstallString";
inline constexpr char kDisplayName[] = "DisplayName";
inline constexpr char kInstallSource[] = "InstallSource";
inline constexpr char kDisplayVersion[] = "DisplayVersion";
inline constexpr char kPublisher[] = "Publisher";
inline constexpr char kVersionMajor[] = "VersionMajor";
inline constexpr char kVersionMinor[] = "VersionMinor";
inline constexpr char kProductRegistry[] = "ProductRegistry";
inline constexpr char kProductStartMenu[] = "ProductStartMenu";
inline constexpr char kSharedPath[] = "SharedPath";
inline constexpr char kProductFonts[] = "ProductFonts";
inline constexpr char kProductFlags[] = "ProductFlags"; ///< InstallFlags, as a signed decimal text
inline constexpr char kUninstallBatch1[] = "UninstallBatch1";
inline constexpr char kUninstallBatch2[] = "UninstallBatch2";
inline constexpr char kSharedFiles[] = "SharedFiles";
inline constexpr char kUninstallSubdir[] = "UninstallSubdir";
inline constexpr char kShortcutMode[] = "ShortcutMode";
inline constexpr char kDisplayTitle[] = "DisplayTitle";
inline constexpr char kTitleColor[] = "TitleColor";
inline constexpr char kTopColor[] = "TopColor";
inline constexpr char kBottomColor[] = "BottomColor";
inline constexpr char kMonoColor[] = "MonoColor";
inline constexpr char kTitleShadow[] = "TitleShadow";
// The archive's own values are written here, and then these two.
inline constexpr char kInstallLocation[] = "InstallLocation";
inline constexpr char kInstallDate[] = "InstallDate";
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
