// What an installation notes while it goes, for its later phases, its record and its log.
#pragma once

#include "core/String.h"
#include "core/Vector.h"
#include "engine/Journal.h"
#include "engine/ShortcutRecord.h"
#include "engine/UninstallRecord.h"

namespace korb {

/// One run has one, which travels through its phases. Each field tells which phase fills it; later ones only read it.
struct InstallNotes {
  Journal journal; ///< every phase

  /// InstallDir with the archive's subdirectory of the uninstaller. Set once the payload is there.
  String uninstall_dir;
  /// The uninstaller's file, and its arguments `/u:"name"`. Set before the shortcuts are made, with IF_UNINSTALL.
  String uninstaller_path;
  String uninstall_command;

  // PlaceFiles:

  /// Paths of placed files whose references are counted, each with a mark that the uninstaller reads: a trailing space
  /// (the file stays on disk), '^' (it is unregistered first), or none.
  Vector<String> shared_file_list;
  /// Paths of files that register themselves.
  Vector<String> com_file_list;
  /// Pairs `"face name" "file name" `, the trailing space included, of fonts that go at uninstall.
  String product_fonts;
  /// Shortcuts in the order in which they will be made; AddUninstallerShortcut may add one.
  Vector<ShortcutRecord> shortcut_list;

  /// Quoted entries of shared_file_list, joined by semicolons: CountSharedFiles.
  String shared_files;
  /// Lines `extension~!~class~!~verb`, one for each association that was tried, for Uninstall.DAT:
  /// RegisterAssociations.
  String association_lines;

  /// What the uninstaller removes by name: PlaceFiles, MakeShortcuts, and the picture of the background.
  UninstallList uninstall_list;
};

} // namespace korb
