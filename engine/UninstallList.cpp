#include "engine/UninstallList.h"

#include "core/BucketTable.h"
#include "format/Record.h"

namespace korb {

namespace {

constexpr int32_t kChains = 40;
constexpr int32_t kShortestPath = 4;

BucketTable<bool, String> ListedPaths;

} // namespace

String UninstallList;

void ClearUninstallList() {
  UninstallList.clear();
  ListedPaths.reset(kChains);
}

void AddUninstallEntry(const char *path, UninstallEntryMode mode) {
  if (text_length(path) < kShortestPath)
    return;
  if (mode != kUninstallFile) {
    String key(path);
    key.to_upper();
    if (!ListedPaths.insert(key, true))
      return;
    UninstallList += mode == kUninstallDirectory ? kDirectoryMark : kClassesKeyMark;
  }
  UninstallList += path;
  UninstallList += "\r\n";
}

} // namespace korb
