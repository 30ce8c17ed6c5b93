// What the readers of a manifest's parts share. Private to the manifest reader.
#pragma once

#include "packer/manifest/ManifestReader.h"
#include "packer/manifest/ManifestTable.h"

namespace korb::packer {

class ManifestContext {
public:
  /// `path` is empty for the standard input.
  ManifestContext(const std::filesystem::path &path, std::optional<int64_t> newest_date, Findings &report)
      : folder(path.parent_path()), newest(newest_date), findings(report) {
    if (!path.empty())
      manifest.inputs.push_back(path);
  }

  Product &product() { return manifest.product; }

  /// `utf8` in the code page of the product, or in `page`; a character that is missing there is reported.
  std::string Convert(const std::string &utf8, const Place &place, int page = 0);

  /// The code page that `key` of `table` names; that of the product when it names none, or, reported, none that is.
  int CodePage(ManifestTable &table, std::string_view key);

  /// Text `key` of `table` in the product's code page, and its place noted under the full name of the key. One line: a
  /// control character in it is reported. Absent: `fallback`.
  std::string Text(ManifestTable &table, std::string_view key, std::string fallback = {});

  /// Reports the control character of the text `name`, in which `control` is how TOML writes it.
  void TellControlCharacter(const std::string &name, const std::string &control, const Place &place);

  /// A text that stands in the manifest, or in a file: { file = "name" }. A file that is no UTF-8 is taken as being in
  /// the code page already, if that is another one. Line ends become CR LF.
  std::string TextOrFile(const toml::node &node, const std::string &name, int page = 0);

  /// The contents of an input file, `name` in UTF-8. Reports what can't be read.
  std::optional<Bytes> ReadInput(const std::string &name, const Place &place);

  /// The path of an input, `name` in UTF-8, which is relative to the folder of the file that names it at `place`.
  std::filesystem::path InputPath(const std::string &name, const Place &place) const;

  /// The version of the program `name`. Empty, and reported, when it can't be read or has none.
  std::string ProgramVersion(const std::string &name, const Place &place);

  /// Whether `path` is an output of this very manifest, which no tree brings: the installer, a volume of it, or what is
  /// left of an attempt to write one. Another file in the installer's place is none, and keeps it from being built.
  bool IsOutput(const std::filesystem::path &path) const;

  /// A date and time, or a date alone at midnight, of `key`; "none" gives none. `from_disk`, if given, is set by
  /// "mtime".
  std::optional<FileTime> Time(ManifestTable &table, std::string_view key, bool *from_disk = nullptr);

  /// Last write of a file on the disk, in universal time and not after `newest`.
  FileTime TimeOf(const std::filesystem::path &path) const;

  std::filesystem::path folder;
  struct IncludedFile {
    std::string name; ///< as places tell it
    std::filesystem::path folder;
  };
  std::vector<IncludedFile> included; ///< the tables of a later one come before those of an earlier one

  /// Which file `place` is in: 0 for the manifest, or the number in `included`, from 1.
  size_t FileNumber(const Place &place) const;
  std::optional<int64_t> newest;
  Findings &findings;
  Manifest manifest;
};

/// `text` with CR LF at the end of each line.
std::string WithDosLineEnds(const std::string &text);

} // namespace korb::packer
