#include "files/Directories.h"

#include "core/Windows.h"
#include "files/DeferredFiles.h"
#include "files/FileInfo.h"
#include "files/PathText.h"
#include "files/ProgramPaths.h"

namespace korb {

namespace {

constexpr int32_t kLongestRoot = 3;
constexpr int32_t kLongestPath = 32767; ///< the system takes no longer one; each level costs a piece of the stack
constexpr DWORD kUsualDirectory = 98;   ///< characters that nearly every current directory fits in

/// A link to a directory goes by itself: what it leads to belongs to somebody else.
bool DeleteEntry(const FileInfo &entry, const String &path) {
  if (!entry.IsDirectory())
    return DeleteOrSchedule(path.c_str(), 0);
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
  SetCurrentDirectoryA(saved.c_str());
  return true;
}

bool QuietDirectoryExists(const char *path) {
  const UINT mode = SetErrorMode(SEM_FAILCRITICALERRORS);
  const bool exists = DirectoryExists(path);
  SetErrorMode(mode);
  return exists;
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
  if (parent.length() > kLongestRoot && !CreateDirectoryTree(parent.c_str()))
    return false;
  CreateDirectoryA(path, nullptr);
  return DirectoryExists(path); // somebody else may have made it
}

bool RemoveEmptyDirectory(String path) {
  if (path.length() <= kLongestRoot)
    return false;
  path.remove_last_if('\\');
  return RemoveDirectoryA(path.c_str()) != 0;
}

bool DeleteDirectoryTree(const char *path) {
  const String directory(path);
  if (directory.length() <= kLongestRoot || String(path).remove_prefix(WindowsDirectory.c_str()))
    return false;

  FileFinder finder;
  FileInfo entry;
  if (!finder.FindFirst(PathJoin(path, "*.*").c_str(), &entry))
    return false;
  DWORD error = 0;
  bool failed = false;
  do {
    if (entry.IsDirectory() && (entry.name == "." || entry.name == ".."))
      continue;
    if (DeleteEntry(entry, PathJoin(path, entry.name.c_str())))
      continue;
    error = GetLastError();
    failed = true;
  } while (finder.FindNext(&entry));
  finder.FindClose();
  SetLastError(error);
  return RemoveEmptyDirectory(directory) && !failed;
}

} // namespace korb
