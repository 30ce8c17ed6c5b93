// A machine on which an installation changes nothing: what the program's own code (engine/, system/) would do to the
// machine ends in this one, which notes it, in its order.
//
// Whoever links this folder has no real machine: its objects define the calls that the program makes (files, registry,
// shell, fonts), also on Windows, so that no plan ever touches the machine it is made on.
#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "core/Date.h"
#include "core/String.h"
#include "packer/plan/TargetSystem.h"
#include "packer/read/ReportText.h"

namespace korb::packer {

class PlannedMachine {
public:
  /// As `system` comes. One machine exists at a time. What it is told is in code page `page`, which has to outlive it;
  /// the installer is started under the name `installer`, in UTF-8.
  PlannedMachine(const TargetSystem &system, bool has_64_bits, const int &page, const std::string &installer);
  ~PlannedMachine();
  PlannedMachine(const PlannedMachine &) = delete;

  /// The one that the program's calls end in.
  static PlannedMachine &Current();

  /// All that follows belongs to this phase.
  void Begin(const char *phase) { phase_ = phase; }
  /// Notes a step: what is done and what it is done with. It may be added to until the next one.
  Json &Note(const char *action, Json with = Json::object());
  /// UTF-8 of a text of the installer.
  std::string Text(const char *text) const;

  // The program's calls. Paths are in the installer's code page.

  bool MakeFolder(const char *path); ///< with those above it; a step for each that is new
  bool HasFolder(const char *path) const;
  bool RemoveFolder(const char *path); ///< if it is empty
  /// A file is there from now on, by default with the time of the run. Null, and the failure is noted, where no such
  /// path can be.
  Json *MakeFile(const char *path, const FileDate &date = {});
  /// The last write of a file that the run has made. Null when there is none: before the run there was no file.
  const FileDate *FindFile(const char *path) const;
  bool MakeKey(const std::string &path); ///< with those above it; a step for each that is new
  bool HasKey(const std::string &path) const;
  /// The text of a value; of a number its digits. Null when there is none.
  const String *FindValue(const std::string &key, const char *name) const;
  void SetValue(const std::string &key, const char *name, const char *type, const String &text, const Json &data);

  const TargetSystem &system;
  const bool has_64_bits;
  std::vector<Json> steps;

private:
  void AddKnownFolder(const std::string &path);
  void AddPlace(Json &step, const char *name, const std::string &path) const;

  const int &page_;
  const char *phase_ = "";
  std::set<std::string> folders_;                                 // in small letters
  std::map<std::string, FileDate> files_;                         // the same
  std::map<std::string, std::map<std::string, String>> registry_; // the same
};

} // namespace korb::packer
