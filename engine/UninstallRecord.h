// The text of Uninstall.DAT: what an installation leaves for its uninstaller.
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
