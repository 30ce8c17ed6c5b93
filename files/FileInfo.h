// What a directory says of its entries, and walks over them.
#pragma once

#include <cstdint>

#include "core/Date.h"
#include "core/String.h"

namespace korb {

/// One entry of a directory. Dates are local time.
struct FileInfo {
  FileDate accessed{};
  uint32_t attributes = 0;
  FileDate modified{};
  FileDate created{};
  String name;       ///< without a path
  String short_name; ///< empty when the system gave none
  uint64_t size = 0; ///< bytes

  bool IsDirectory() const { return (attributes & 0x10) != 0; } ///< the system's bit
};

/// A walk over the entries that match a pattern. Entries whose names hold a separator, a wildcard or a `;` are passed
/// over: paths in lists could not name them.
class FileFinder {
public:
  FileFinder() = default;
  ~FileFinder() { FindClose(); }
  FileFinder(const FileFinder &) = delete;
  FileFinder &operator=(const FileFinder &) = delete;

  /// Begins a walk; `info`, which may be null, takes the first entry. False when there is none.
  bool FindFirst(const char *pattern, FileInfo *info);
  /// False at the end, which also closes the walk.
  bool FindNext(FileInfo *info);
  void FindClose();

private:
  void *handle_ = nullptr;
};

/// False when there is no such file or directory.
bool GetFileInfo(const char *path, FileInfo *info);
/// Local time of the last write; false as above.
bool GetFileModified(const char *path, FileDate &date);

/// True when the file could be opened or somebody else holds it; false for a directory and for a file that may not be
/// touched.
bool FileExists(const char *path);

} // namespace korb
