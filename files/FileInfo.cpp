#include "files/FileInfo.h"

#include "core/Windows.h"
#include "files/DiskFile.h"
#include "files/PathText.h"

namespace korb {

namespace {

constexpr FileOptions kExistenceProbe =
    DF_OPEN_EXISTING | DF_NO_READ | DF_NO_WRITE | DF_SHARE_READ | DF_SHARE_WRITE | DF_PROBE;

FileDate LocalDate(const FILETIME &universal) {
  FILETIME local;
  SYSTEMTIME parts;
  if (!FileTimeToLocalFileTime(&universal, &local) || !FileTimeToSystemTime(&local, &parts))
    return FileDate{};
  return FileDate{parts.wYear, parts.wMonth, parts.wDay, parts.wHour, parts.wMinute, parts.wSecond};
}

/// Fills `info`, unless it is null; false for an entry that no walk delivers.
bool Deliver(const WIN32_FIND_DATAA &found, FileInfo *info) {
  if (!IsPlainFileName(found.cFileName))
    return false;
  if (info) {
    info->accessed = LocalDate(found.ftLastAccessTime);
    info->attributes = found.dwFileAttributes;
    info->modified = LocalDate(found.ftLastWriteTime);
    info->created = LocalDate(found.ftCreationTime);
    info->name = found.cFileName;
    info->short_name = found.cAlternateFileName;
    info->size = uint64_t{found.nFileSizeHigh} << 32 | found.nFileSizeLow;
  }
  return true;
}

} // namespace

bool FileFinder::FindFirst(const char *pattern, FileInfo *info) {
  FindClose();
  WIN32_FIND_DATAA found;
  const HANDLE handle = FindFirstFileA(pattern, &found);
  if (handle == INVALID_HANDLE_VALUE)
    return false;
  handle_ = handle;
  return Deliver(found, info) || FindNext(info);
}

bool FileFinder::FindNext(FileInfo *info) {
  if (!handle_)
    return false;
  WIN32_FIND_DATAA found;
  while (FindNextFileA(handle_, &found))
    if (Deliver(found, info))
      return true;
  FindClose();
  return false;
}

void FileFinder::FindClose() {
  if (handle_)
    ::FindClose(handle_);
  handle_ = nullptr;
}

bool GetFileInfo(const char *path, FileInfo *info) {
  FileFinder finder;
  return finder.FindFirst(path, info);
}

bool GetFileModified(const char *path, FileDate &date) {
  FileInfo info;
  if (!GetFileInfo(path, &info))
    return false;
  date = info.modified;
  return true;
}

bool FileExists(const char *path) {
  DiskFile file;
  const OpenCode code = file.OpenQuiet(path, kExistenceProbe, FILE_ATTRIBUTE_NORMAL);
  return code == OPEN_OK || code == OPEN_LOCKED;
}

} // namespace korb
