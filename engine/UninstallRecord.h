// What an installation leaves for its uninstaller to read: where the files of the record stand, the list of what is to
// be removed, and the text of Uninstall.DAT.
//
//     C:\Program Files\Thing\thing.exe       a line for each file,
//     ~C:\Program Files\Thing\help           a directory after '~',
//     !CLSID\{...}                           a key below HKEY_CLASSES_ROOT after '!'; has a backslash
//                                            two empty lines
//     [Strings]
//     ~10                                    the number of a text,
//     These could not be removed:            and its lines, up to the next that begins with '~'
//     %s
//     ...
//                                            two empty lines, and these, only when there are associations
//     [Associations]
//     .thg~!~ThingFile~!~open                extension, class, verb
//
// Lines end in CR LF, and nothing is escaped: the packer refuses what a reader could misunderstand.
#pragma once

#include <cstdint>

#include "archive/InstallConfig.h"
#include "core/String.h"
#include "core/Vector.h"

namespace korb {

/// Whether a recorded path means one place wherever the run stands. A product that was itself installed by a path that
/// doesn't, into ".", say, has only such paths, and they are taken.
bool NamesOnePlace(const char *path);

// Files beside the uninstaller, whose directory is `uninstall_dir`.

/// What was installed, and the texts of the uninstaller.
String UninstallDataPath(const String &uninstall_dir);
/// What happened in each installation.
String InstallLogPath(const String &uninstall_dir);
/// The picture that the uninstaller's window shows.
String BackgroundBitmapPath(const String &uninstall_dir);

enum UninstallEntryMode : int32_t {
  kUninstallFile = 0,
  kUninstallDirectory = 1,
  kUninstallKey = 2, ///< '!' and a registry path; read by uninstallers, never written by an installation
};

/// What an uninstall removes by name.
class UninstallList {
public:
  /// Appends the line for `path`, whose case is kept. A path of 3 characters or fewer is passed over, so that no
  /// drive's root gets in. A directory is listed once, whatever its case; a file as often as it comes.
  void AddUninstallEntry(const char *path, UninstallEntryMode mode);

  /// Lines ended by "\r\n", in the order of the calls: a file's path, or '~' and a directory's.
  const String &text() const { return text_; }

private:
  String text_;
  Vector<String> listed_paths_; // sorted, in capitals, and no files
};

struct UninstallRecord {
  Vector<String> entries;               ///< lines of the list as they stand, empty ones included
  Vector<FileAssociation> associations; ///< only the extension, with its dot, the class and the verb; none blank
};

/// The text for `entries`, the lines of an UninstallList, `association_lines` and what the text table holds.
String UninstallRecordText(const String &entries, const String &association_lines);

/// Reads any bytes: `record` gets what is understood, and texts go to TextTable, which only grows, under language 0. A
/// file that is cut off gives what it still has.
void ReadUninstallRecord(String text, UninstallRecord &record);

} // namespace korb
