#include "files/DeferredFiles.h"

#include "core/Windows.h"
#include "files/Attributes.h"
#include "files/Directories.h"
#include "files/DiskFile.h"
#include "files/FileInfo.h"
#include "files/OsVersion.h"
#include "files/PathText.h"
#include "files/ProgramPaths.h"
#include "files/SystemFunction.h"

namespace korb {

namespace {

/// The system's own delayed move; a null target deletes. False where there is none: Windows 9x has no working one.
bool MoveAtRestart(const char *source, const char *target, DWORD flags) {
  static const auto function = KORB_SYSTEM_FUNCTION("kernel32.dll", MoveFileExA);
  return function && function(source, target, flags);
}

/// Registers a move by whatever means the system has. An NT that refuses its own takes the other one if the program
/// that carries it out is there.
bool Register(const char *source, const char *target, DWORD flags) {
  if (IsWindowsNT()) {
    if (MoveAtRestart(source, target, flags))
      return true;
    if (!FileExists(PathJoin(WindowsDirectory, "wininit.exe")))
      return false;
  }
  // In short names: long ones do not exist yet when the section is carried out.
  return AddWininitRename(target ? ShortPath(target).c_str() : "NUL", ShortPath(source).c_str());
}

/// Makes room at the target. False refuses the move. A target that can't go now, since somebody uses it, refuses
/// nothing: a move at the next start replaces it, and one at once fails by itself.
bool SettleTarget(const char *target, MoveOptions flags) {
  if (flags & MV_TARGET_MUST_EXIST) {
    if (!FileExists(target))
      return false;
  } else if (flags & MV_NO_OVERWRITE) {
    return !FileExists(target);
  }
  DeleteOrSchedule(target);
  return true;
}

} // namespace

bool DeleteOrSchedule(const char *path, DeleteOptions flags) {
  if (!path)
    return false;
  const bool now = !(flags & DEL_AT_RESTART);
  // Few files are read-only, so the question waits until it matters.
  if (now && DeleteFileA(path))
    return true;
  if (!(flags & DEL_KEEP_READONLY))
    SetReadOnly(path, false);
  if (now)
    return DeleteFileA(path) != 0;
  return Register(path, nullptr, MOVEFILE_DELAY_UNTIL_REBOOT);
}

bool MoveOrSchedule(const char *source, const char *target, MoveOptions flags) {
  if (!source || !target)
    return false;
  const String from(source);
  if (from == target || !FileExists(source))
    return false;
  if (!from.equals_no_case(target) && !SettleTarget(target, flags))
    return false;
  if ((flags & MV_CREATE_DIRECTORY) && !CreateDirectoryTree(DirectoryPart(target)))
    return false;
  if (!(flags & MV_AT_RESTART))
    return MoveFileA(source, target) != 0;
  return Register(source, target, MOVEFILE_REPLACE_EXISTING | MOVEFILE_DELAY_UNTIL_REBOOT);
}

bool AddWininitRename(const char *left, const char *right) {
  SetLastError(0);
  if (IsBlank(left) || IsBlank(right))
    return false;
  DiskFile file;
  String text;
  if (file.Open(PathJoin(WindowsDirectory, "wininit.ini"), DF_OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL) != OPEN_OK ||
      !file.ReadAll(&text))
    return false;
  AddRename(text, left, right);
  return file.ReplaceContents(text);
}

} // namespace korb
