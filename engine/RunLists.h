// What an installation notes while it goes, for its later stages, its record and its log.
#pragma once

#include "core/String.h"
#include "core/Vector.h"
#include "engine/ShortcutRecord.h"

namespace korb {

/// InstallDir with UninstallSubdir. Set once the payload is there.
extern String UninstallDir;
/// The uninstaller's file, and its arguments `/u:"name"`. Set before the shortcuts are made, with IF_UNINSTALL.
extern String UninstallerPath;
extern String UninstallCommand;

/// The run goes over an earlier installation, at its place. Set by the decision on a reinstall.
extern bool IsReinstall;

/// Paths of placed files whose references are counted, each with a mark that the uninstaller reads: a trailing space
/// (the file stays on disk), '^' (it is unregistered first), or none.
extern Vector<String> SharedFileList;
/// Paths of files that register themselves.
extern Vector<String> ComFileList;
/// Quoted entries of SharedFileList, joined by semicolons. Filled from the earlier installation's record when one is
/// found; CountSharedFiles takes those counts back and leaves the entries of this run.
extern String SharedFiles;
/// Lines `extension~!~class~!~verb`, one for each association that was tried, for Uninstall.DAT.
extern String AssociationLines;
/// Pairs `"face name" "file name" `, the trailing space included, of fonts that go at uninstall.
extern String ProductFonts;
/// Shortcuts in the order in which they will be made.
extern Vector<ShortcutRecord> ShortcutList;

/// Empties what placement fills: the lists of files, fonts and shortcuts, and the uninstall list.
void ResetPlacementLists();

} // namespace korb
