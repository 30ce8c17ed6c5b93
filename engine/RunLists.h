// What an installation notes while it goes, for its later stages, its record and its log.
#pragma once

#include "core/String.h"
#include "core/Vector.h"
#include "engine/ShortcutRecord.h"

namespace korb {

/// Every step that failed, for the user at the end. Emptied when the progress dialog opens; a run with any text here
/// does not start the program of /r.
extern String ErrorReport;
/// Lines for Install.LOG, each ended by "\r\n". Starts empty and is never emptied.
extern String LogText;

/// InstallDir with UninstallSubdir. Set once the payload is there.
extern String UninstallDir;

/// Paths of placed files whose references are counted, each with a mark that the uninstaller reads: a trailing space
/// (the file stays on disk), '^' (it is unregistered first), or none.
extern Vector<String> SharedFileList;
/// Paths of files that register themselves.
extern Vector<String> ComFileList;
/// Pairs `"face name" "file name" `, the trailing space included, of fonts that go at uninstall.
extern String ProductFonts;
/// Shortcuts in the order in which they will be made.
extern Vector<ShortcutRecord> ShortcutList;

/// Empties the lists above, but neither the two reports nor UninstallDir, and the uninstall list.
void ResetPlacementLists();

} // namespace korb
