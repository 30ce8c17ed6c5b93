// What an archive says about its product, apart from the payload and from the values in core/RunValues.h.
//
// Filled by ReadConfigStream. A field that the archive leaves out keeps its default: an empty text or 0.
#pragma once

#include <cstdint>

#include "core/Array.h"
#include "core/Date.h"
#include "core/String.h"
#include "core/Vector.h"
#include "format/Archive.h"

namespace korb {

// The three kinds of record are read into their lists, and never copied.

/// An old file that goes before anything new is placed.
struct FileDeletion {
  FileDeletion() = default;
  FileDeletion(const FileDeletion &) = delete;

  String name;          ///< path variables allowed, relative to InstallDir
  int8_t kind = 0;      ///< DeletionKind
  String value;         ///< a date and time, or a size, by `kind`
  uint32_t options = 0; ///< kDeleteAtRestart
};

/// One verb of one file type.
struct FileAssociation {
  FileAssociation() = default;
  FileAssociation(const FileAssociation &) = delete;

  uint32_t flags = 0; ///< kDefaultVerb
  String extension;   ///< with or without its leading dot; an empty one is skipped at use
  String file_class;  ///< registry class; empty takes the one that the extension has
  String description; ///< of the class
  String verb;
  String verb_label; ///< the verb in menus
  String command;
  String language; ///< the record applies under this language only; empty means all
  String icon;
};

/// A value that the product adds to its own Uninstall key.
struct UninstallData {
  UninstallData() = default;
  UninstallData(const UninstallData &) = delete;

  String name;
  uint8_t kind = 0; ///< UninstallDataKind
  String value;     ///< path variables allowed
};

template <>
inline constexpr const char *TypeName<FileDeletion> = "FileDeletion";
template <>
inline constexpr const char *TypeName<FileAssociation> = "FileAssociation";
template <>
inline constexpr const char *TypeName<UninstallData> = "UninstallData";

/// What the background window is painted with. Colours are 0x00BBGGRR.
struct Looks {
  uint32_t title_color = 0;
  uint32_t top_color = 0;
  uint32_t bottom_color = 0;
  bool mono_color = true;   ///< one plain colour, top_color; kept apart, since bottom_color may never be read
  uint8_t title_shadow = 1; ///< distance of the title's shadow in pixels
};

/// The configuration's fields in their order.
struct InstallConfig {
  uint16_t min_phase_ms = 0;   ///< shortest time that a phase of the progress dialog stays readable, milliseconds
  uint8_t shortcut_mode = 0;   ///< kShortcutsForAllUsers, else the current user
  FileDate uninstaller_date{}; ///< given to the uninstaller file
  Looks looks;                 ///< as they were before, where the archive has none of its own
  String publisher;
  String product_start_menu;  ///< start menu group
  String default_install_dir; ///< absolute, or "<master>"
  String version;             ///< dotted, may be empty
  String product_registry;    ///< key path that the product owns, may be empty
  Array<String> license_pages;
  Array<String> readme_pages;
  String uninstall_subdir; ///< directory of the uninstaller, relative to InstallDir, may be empty
  String volume_base_name; ///< never blank
  String uninstaller_name; ///< file name
  String uninstall_name;   ///< key name under the system's Uninstall key; never blank unless ProductName is
  String master_product;   ///< with IF_MASTER_PRODUCT
  String desktop_group;    ///< folder on the desktop for shortcuts; empty means none
  String pre_install_batch;
  String post_install_batch;
  String final_batch;
  String uninstall_batch1;
  String uninstall_batch2;
  Date expiry_date;                ///< last day on which the installer runs, as stored: an invalid one means none
  uint32_t excluded_platforms = 0; ///< OsCode bits on which the archive does not run
  uint8_t payload_in_file = 0;     ///< not 0: the payload runs to the end of the file, else to the end of the archive
  uint32_t volume_serial = 0;      ///< serial of volume 2; each further one is one higher
  int32_t stub_patch_offset = 0;   ///< place of `stub_patch` in the uninstaller; 0 means no patch
  String stub_patch;               ///< kStubPatchSize bytes, or empty
  Vector<FileDeletion> deletions;
  Vector<FileAssociation> associations;
  Vector<UninstallData> uninstall_data;
};

} // namespace korb
