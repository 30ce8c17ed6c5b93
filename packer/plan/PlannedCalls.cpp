// What the program asks of files, shell and screen, as the machine of a plan answers it.
#include "core/Clock.h"
#include "core/MessagePump.h"
#include "engine/FileError.h"
#include "engine/FileVersion.h"
#include "engine/PlaceFile.h"
#include "engine/SelfRegistration.h"
#include "engine/ShellLink.h"
#include "engine/SystemFonts.h"
#include "files/Attributes.h"
#include "files/DeferredFiles.h"
#include "files/Directories.h"
#include "files/DiskSpace.h"
#include "files/FileInfo.h"
#include "files/LastError.h"
#include "files/OsVersion.h"
#include "files/PathText.h"
#include "files/ProgramPaths.h"
#include "files/TempFiles.h"
#include "files/WholeFile.h"
#include "packer/Words.h"
#include "packer/check/TextRules.h"
#include "packer/plan/PlannedMachine.h"
#include "system/SystemFolders.h"
#include "ui/Progress.h"
#include "ui/Questions.h"

namespace korb {

using packer::Json;
using packer::PlannedMachine;

String WindowsDirectory;
String ProgramPath;
String ProgramName;
String ProgramDirectory;
char ProgramDrive;

namespace {

PlannedMachine &Machine() {
  return PlannedMachine::Current();
}

// A text of the registry by the name of its value, in small letters; null when there is none.
const char *ShellFolderOf(const packer::TargetFolders &its, bool all_users, const std::string &value) {
  const struct {
    const char *name, *user, *all;
  } rows[] = {{"desktop", its.desktop, its.desktop_all},
              {"documents", nullptr, its.documents_all},
              {"personal", its.documents, nullptr},
              {"favorites", its.favorites, its.favorites_all},
              {"start menu", its.start_menu, its.start_menu_all}};
  for (const auto &row : rows)
    if (value == (all_users ? "common " : "") + std::string(row.name))
      return all_users ? row.all : row.user;
  return nullptr;
}

} // namespace

// The machine's settings.

String UserSetting(const char *path) {
  const std::string value = packer::LowerCase(FilePart(path).c_str());
  const auto &its = Machine().system.folders;
  if (value == "fonts")
    return PathJoin(its.windows, "Fonts");
  const bool is_startup = value == "startup";
  if (is_startup || value == "programs")
    return PathJoin(its.start_menu, "Programs") + (is_startup ? std::string("\\") + its.startup : "").c_str();
  return ShellFolderOf(its, false, value);
}

String MachineSetting(const char *path) {
  const std::string value = packer::LowerCase(FilePart(path).c_str());
  const auto &its = Machine().system.folders;
  const String programs = Machine().has_64_bits ? "C:\\Program Files (x86)" : "C:\\Program Files";
  if (value == "programfilesdir")
    return programs;
  if (value == "commonfilesdir")
    return PathJoin(programs, "Common Files");
  if (value == "mediapath")
    return PathJoin(its.windows, "Media");
  if (value == "devicepath")
    return PathJoin(its.windows, "INF");
  const bool is_startup = value == "common startup";
  if (its.start_menu_all && (is_startup || value == "common programs"))
    return PathJoin(its.start_menu_all, "Programs") + (is_startup ? std::string("\\") + its.startup : "").c_str();
  return ShellFolderOf(its, true, value);
}

String RawSystemDirectory() {
  return Machine().system.folders.system;
}

String SystemRoot() {
  return WindowsDirectory;
}

const char *TempDirectory() {
  return Machine().system.folders.temp;
}

bool IsWindowsNT() {
  return Machine().system.IsNt();
}

DateTime Now() {
  return DateTime::from(FileDate{2000, 1, 1, 0, 0, 0}); // nothing that a plan tells depends on it
}

// Files and directories. None is there but what the run has made.

bool CreateDirectoryTree(const char *path) {
  return Machine().MakeFolder(path);
}

bool RemoveEmptyDirectory(const char *path) {
  return Machine().RemoveFolder(path);
}

bool QuietDirectoryExists(const char *path) {
  return Machine().HasFolder(path);
}

bool FileExists(const char *path) {
  return Machine().FindFile(path) != nullptr;
}

bool GetFileModified(const char *path, FileDate &date) {
  const FileDate *found = Machine().FindFile(path);
  if (found)
    date = *found;
  return found != nullptr;
}

bool GetFileInfo(const char *, FileInfo *) {
  return false;
}

bool ClearAttributes(const char *, uint32_t) {
  return false;
}

bool DeleteOrSchedule(const char *, DeleteOptions) {
  return false;
}

bool OnFixedDrive(const char *) {
  return true;
}

const char *LastErrorText() {
  return "";
}

String ReadFileVersion(const char *, bool) {
  return String();
}

bool WriteWholeFile(const char *path, const String &text) {
  Json *step = Machine().MakeFile(path);
  if (step)
    (*step)["size"] = text.length();
  return step != nullptr;
}

bool PlaceFile(const NewFile &wanted, Journal &journal) {
  Json *step = Machine().MakeFile(wanted.path, wanted.date);
  if (step)
    step->update({{"size", wanted.size},
                  {"date", packer::DateText(wanted.date)},
                  {"attributes", packer::WordsOf(packer::kAttributes, wanted.attributes & kSettableAttributes)}});
  else
    AppendFileError(journal.error_report, wanted.path);
  return step != nullptr;
}

// The system and its shell.

bool AddSystemFont(const char *name) {
  Machine().Note("font", {{"file", Machine().Text(name)}});
  return true;
}

void TellOfFonts() {}

void RegisterComFiles(const Vector<String> &com_files, String &) {
  for (int32_t i = 0; i < com_files.count; ++i)
    Machine().Note("register", {{"path", Machine().Text(com_files.at(i))}});
}

void UnregisterServer(const char *) {}

bool CreateShortcut(String &path, const char *target, const char *arguments, const char *working_dir,
                    const char *icon) {
  EnsureLinkExtension(path);
  CreateDirectoryTree(DirectoryPart(path));
  Json *step = Machine().MakeFile(path);
  if (!step)
    return false;
  (*step)["action"] = "shortcut";
  for (const auto &[name, text] : {std::pair{"target", target}, std::pair{"arguments", arguments},
                                   std::pair{"directory", working_dir}, std::pair{"icon", icon}})
    if (*text)
      (*step)[name] = Machine().Text(text);
  return true;
}

void TellShellOfFolder(const char *) {}

// Nobody looks on, and nobody is asked.

void SetProgress(int32_t) {}
void SetStepTextArgs(const char *, const FormatArgs &) {}

bool MayRemove(uint64_t, int32_t, int32_t, const String &) {
  return false;
}

} // namespace korb
