// The text of Uninstall.DAT: what an installation leaves for its uninstaller.
//
//     C:\Program Files\Thing\thing.exe       UninstallList: a line for each file,
//     ~C:\Program Files\Thing\help           a directory behind '~',
//     !CLSID\{...}                           a key below HKEY_CLASSES_ROOT behind '!'; has a backslash
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

/// Lines of associations that a reader looks at, empty ones included. The first is empty, since it ends the heading's.
inline constexpr int32_t kMaxAssociationLines = 500;
/// Texts, and lines that are none, that a reader looks at.
inline constexpr int32_t kMaxTextEntries = 500;
/// Texts of a higher number are passed over.
inline constexpr int32_t kMaxTextNumber = 1000;
/// Stands between the fields of an association.
inline constexpr char kAssociationSeparator[] = "~!~";

struct UninstallRecord {
  Vector<String> entries;               ///< lines of the list as they stand, empty ones included
  Vector<FileAssociation> associations; ///< only the extension, with its dot, the class and the verb; none blank
};

/// The text for what UninstallList, the text table and AssociationLines hold now.
String UninstallRecordText();

/// Reads any bytes: `record` gets what is understood, and texts go to TextTable, which only grows, under language 0. A
/// file that is cut off gives what it still has.
void ReadUninstallRecord(String text, UninstallRecord &record);

} // namespace korb
