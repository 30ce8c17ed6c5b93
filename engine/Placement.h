// Decides for one file of the payload where it belongs, whether it goes there, and what is remembered about it: the
// rules, which write nothing (PlaceFile.h does).
#pragma once

#include "archive/PayloadRecord.h"
#include "core/Date.h"
#include "core/String.h"
#include "engine/InstallNotes.h"

namespace korb {

/// What the decision asks of the machine. A file that needs no answer asks for none.
class PlacementHost {
public:
  /// Directories without a trailing backslash.
  virtual String FontFolder() = 0;
  virtual String SystemFolder() = 0;
  virtual void ExpandPathVariables(String &text) = 0;
  virtual bool FileExists(const String &path) = 0;
  /// The last write of a file, local time; false when it can't be read.
  virtual bool GetFileModified(const String &path, FileDate &date) = 0;
  /// The version in a file's resources, normalised; empty when there is none.
  virtual String ReadFileVersion(const String &path) = 0;

protected:
  ~PlacementHost() = default;
};

/// Where one file goes.
struct Destination {
  String path;                  ///< full, unless InstallDir is not
  String name;                  ///< the record's name, or the one that its target gives it
  bool in_install_tree = false; ///< its directory may have to be made
};

/// The destination of `record`; `uninstall_dir` is the uninstaller's directory. One whose kind has no meaning where it
/// decides is reported as damage and ends the run (code 110).
Destination ChooseDestination(const PayloadRecord &record, const String &uninstall_dir, PlacementHost &host);

/// True when `record` is to be written to `path` now. Says so in the log where a present file is compared, and
/// `replaces` then tells that an older one is there. A skipped record may still leave its line in the uninstall list.
bool IsWanted(const PayloadRecord &record, const String &path, PlacementHost &host, InstallNotes &notes,
              bool &replaces);

/// Puts `path` on the lists of shared files and of those that register themselves as the record's kind asks.
void NoteSharedFile(const PayloadRecord &record, const String &path, InstallNotes &notes);

/// Puts the shortcuts that `record` asks for on their list.
void NoteShortcut(const PayloadRecord &record, const String &path, InstallNotes &notes);

/// True for the files whose lines the uninstall list takes: the product's own, unless they are to stay.
bool IsListedAtUninstall(const PayloadRecord &record);

} // namespace korb
