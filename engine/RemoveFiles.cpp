#include "engine/RemoveFiles.h"

#include "core/RunValues.h"
#include "files/DeferredFiles.h"
#include "files/Directories.h"
#include "files/FileInfo.h"
#include "files/PathText.h"
#include "format/Record.h"
#include "format/Texts.h"
#include "registry/RegistryKey.h"
#include "ui/Progress.h"
#include "ui/TextLookup.h"

namespace korb {

namespace {

constexpr int32_t kFirstPercent = 10;
constexpr int32_t kPercents = 80; ///< of the bar, for all entries together

void RemoveFile(const String &path, String &report, UninstallList &left) {
  SetStepTextFormat("%s", path);
  // Asked only after a failure: the question costs as much as the deletion, and of what may not be opened it would
  // have told that there is none.
  if (DeleteOrSchedule(path) || !FileExists(path))
    return;
  report.append_format("%s %s\r\n", TextLookup(kTextRemoveFailed), path);
  left.AddUninstallEntry(path, kUninstallFile);
}

/// A key right below the root, without a backslash in its path, stays: all of a type would go with it.
void DeleteListedKey(const char *path) {
  RegistryKey key;
  key.DeleteKey(HandleOf(RegistryRoot::ClassesRoot), path);
}

/// Climbs from an empty directory to those that it leaves empty.
void RemoveEmptiedDirectories(String path) {
  SetStepTextFormat("%s", path);
  while (!path.equals_no_case(InstallDir) && RemoveEmptyDirectory(path)) {
    path.remove_last_if('\\');
    path = DirectoryPart(path);
  }
}

int CompareLength(const void *a, const void *b) {
  const auto length = [](const void *cell) { return (*static_cast<const String *const *>(cell))->length(); };
  return length(a) < length(b) ? 1 : length(a) > length(b) ? -1 : 0;
}

} // namespace

void RemoveListedFiles(const Vector<String> &entries, String &report, UninstallList &left) {
  StartPhase();
  Vector<String> directories;
  for (int32_t i = 0; i < entries.count; ++i) {
    const String &entry = entries.at(i);
    const char *rest = entry.c_str() + 1;
    switch (entry.first_char()) {
    case '\0':
      break;
    case kDirectoryMark:
      if (NamesOnePlace(rest))
        directories.append(rest);
      break;
    case kClassesKeyMark:
      DeleteListedKey(rest);
      break;
    default:
      SetProgress(kFirstPercent + static_cast<int32_t>(int64_t{kPercents} * i / entries.count));
      if (NamesOnePlace(entry))
        RemoveFile(entry, report, left);
    }
  }
  directories.sort(CompareLength); // the longest first: children before their parents
  for (int32_t i = 0; i < directories.count; ++i)
    RemoveEmptiedDirectories(directories.at(i));
}

} // namespace korb
