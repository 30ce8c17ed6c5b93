// What one release of a product leaves on a machine, as far as its installer tells: for comparing releases.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "archive/InstallConfig.h"
#include "archive/PayloadRecord.h"
#include "packer/Product.h"

namespace korb::packer {

/// A place on a machine that isn't known: the path begins with the path variable of its folder, as in
/// "%InstallDir%\help\a.txt".
struct ReleasePath {
  std::string text;
  /// False where the path can't be told: it isn't below such a folder, another variable or ".." stands in its middle,
  /// or an installer that reads `text` as a path would look elsewhere.
  bool is_known = false;

  bool IsBelow(std::string_view variable) const; ///< known, and in the folder of path_variable or deeper
  std::string Key() const;                       ///< to compare with others as the program does: without regard to case
  /// The folders above it up to that of the variable, which is not among them; the innermost first.
  std::vector<ReleasePath> Folders() const;
};

struct ReleaseFile {
  ReleasePath path;
  uint32_t kind = 0;       ///< DestKind
  uint32_t flags = 0;      ///< FF_... bits
  uint32_t attributes = 0; ///< Win32 file attributes
  int32_t size = 0;
  FileDate date{};
  uint32_t checksum = 0; ///< of the contents; only of a finished installer, as the next one
  std::string version;   ///< by its resources; empty for none

  uint32_t Condition() const { return flags & FF_CONDITION; }
};

struct ReleaseShortcut {
  ReleasePath path;
  bool keep = false;             ///< the uninstaller leaves it
  bool is_made_each_time = true; ///< false: not under every condition, or in every language
};

/// What an installation writes for its uninstaller.
struct ReleaseRecord {
  ReleasePath path;
  int32_t size = -1; ///< bytes; -1 when that differs from machine to machine
};

/// Texts are in UTF-8: releases of a product may have different code pages.
struct Release {
  std::string label; ///< how messages call it: the path of the installer
  std::string name, version, publisher, uninstall_name, registry_key, directory, start_menu;
  uint64_t options = 0; ///< IF_... bits
  std::vector<ReleaseFile> files;
  std::vector<ReleaseShortcut> shortcuts; ///< each place once
  std::vector<ReleaseRecord> records;
  std::vector<Association> associations;
  std::vector<UninstallValue> uninstall_values;
  std::vector<std::string> languages;
  size_t text_count = 0;      ///< texts of all languages that are not empty
  int64_t installer_size = 0; ///< bytes with all volumes; only of a finished installer

  bool Has(uint64_t flag) const { return (options & flag) != 0; }
  int64_t InstalledSize() const; ///< bytes of all files that are placed
};

/// The path that a `[[delete]]` of this name, in code page `page`, means; names are relative to the installation
/// directory.
ReleasePath DeletionPath(const std::string &name, int page);

/// The release whose configuration was just read: the values that a run keeps (core/RunValues.h) are part of it. `page`
/// is the code page of its texts. `picture_size` are the bytes of its background bitmap, `uninstaller_size` those of
/// the uninstaller, -1 when unknown.
Release ReleaseOf(const InstallConfig &config, std::span<const PayloadRecord> records, int32_t picture_size,
                  int32_t uninstaller_size, int page);

/// The release that would be packed from `product`, in which there is nothing wrong any more. Takes the run's values
/// for itself, as a reader of installers does.
Release ReleaseOf(const Product &product);

} // namespace korb::packer
