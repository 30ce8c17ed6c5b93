#include "files/Directories.h"

#include "core/Windows.h"
#include "files/DeferredFiles.h"
#include "files/FileInfo.h"
#include "files/PathText.h"
#include "files/ProgramPaths.h"
#include "files/SystemFunction.h"

namespace korb {

namespace {

constexpr int32_t kLongestRoot = 3;
constexpr int32_t kLongestPath = 32767; ///< the system takes no longer one; each level costs a piece of the stack
constexpr DWORD kNameRoom = 1024;       ///< of a name that the system gives
constexpr int32_t kFollowedPrefix = 4;  ///< characters before the drive
constexpr DWORD kUsualDirectory = 98;   ///< characters that nearly every current directory fits in

/// GetFinalPathNameByHandleA, which the header of an old system doesn't have.
using FinalPathName = DWORD(WINAPI *)(HANDLE file, char *name, DWORD room, DWORD flags);

/// A link to a directory goes by itself: what it leads to belongs to somebody else.
bool DeleteEntry(const FileInfo &entry, const String &path) {
  if (!entry.IsDirectory())
    return DeleteOrSchedule(path);
  return entry.attributes & FILE_ATTRIBUTE_REPARSE_POINT ? RemoveEmptyDirectory(path)
                                                         : DeleteDirectoryTree(path.c_str());
}

} // namespace

String CurrentDirectory() {
  String directory;
  DWORD room = kUsualDirectory;
  for (;;) {
    directory.set_length(static_cast<int32_t>(room));
    const DWORD length = GetCurrentDirectoryA(room + 1, directory.data());
    if (length <= room) {
      directory.set_length(static_cast<int32_t>(length)); // 0 when the system can't say
      return directory;
    }
    room = length;
  }
}

bool DirectoryExists(const char *path) {
  if (!path || !*path)
    return false;
  const String saved = CurrentDirectory();
  if (!SetCurrentDirectoryA(path))
    return false;
  SetCurrentDirectoryA(saved);
  return true;
}

bool QuietDirectoryExists(const char *path) {
  const UINT mode = SetErrorMode(SEM_FAILCRITICALERRORS);
  const bool exists = DirectoryExists(path);
  SetErrorMode(mode);
  return exists;
}

String SystemName(const char *path) {
  char full[kNameRoom];
  char *file; // not wanted, but some systems write it unasked
  if (GetFullPathNameA(path, sizeof full, full, &file) - 1 >= sizeof full - 1) // too long; 0 when the system can't say
    full[0] = '\0';
  // "\\?\c:\dir". The other form, "\\?\UNC\server", is not looked at: it tells no drive, so a folder of the system
  // that is named by a share of this machine isn't recognised.
  char followed[kNameRoom];
  followed[kFollowedPrefix + 1] = '\0';
  const auto follow = reinterpret_cast<FinalPathName>(SystemFunction("kernel32.dll", "GetFinalPathNameByHandleA"));
  if (follow) {
    const HANDLE directory = CreateFileA(full, 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                         OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (directory != INVALID_HANDLE_VALUE) {
      follow(directory, followed, sizeof followed, 0);
      CloseHandle(directory);
    }
  }
  return followed[kFollowedPrefix + 1] == ':' ? String(followed + kFollowedPrefix) : ShortPath(full);
}

bool CreateDirectoryTree(const char *path) {
  const int32_t length = text_length(path);
  if (length < 1 || length > kLongestPath)
    return false;
  if (DirectoryExists(path))
    return true;
  const String parent = DirectoryPart(path);
  if (parent == path)
    return true;
  if (parent.length() > kLongestRoot && !CreateDirectoryTree(parent))
    return false;
  CreateDirectoryA(path, nullptr);
  return DirectoryExists(path); // somebody else may have made it
}

bool RemoveEmptyDirectory(const char *path) {
  String directory(path);
  if (directory.length() <= kLongestRoot)
    return false;
  directory.remove_last_if('\\');
  return RemoveDirectoryA(directory) != 0;
}

bool DeleteDirectoryTree(const char *path) {
  const String directory(path);
  if (directory.length() <= kLongestRoot || String(path).remove_prefix(WindowsDirectory))
    return false;

  FileFinder finder;
  FileInfo entry;
  if (!finder.FindFirst(PathJoin(path, "*.*"), &entry))
    return false;
  DWORD error = 0;
  bool failed = false;
  do {
    if (entry.IsDirectory() && (entry.name == "." || entry.name == ".."))
      continue;
    if (DeleteEntry(entry, PathJoin(path, entry.name)))
      continue;
    error = GetLastError();
    failed = true;
  } while (finder.FindNext(&entry));
  finder.FindClose();
  SetLastError(error);
  return RemoveEmptyDirectory(directory) && !failed;
}

} // namespace korb
