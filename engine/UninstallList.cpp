#include "engine/UninstallList.h"

#include "format/Record.h"

namespace korb {

namespace {

constexpr int32_t kChains = 40;
constexpr int32_t kShortestPath = 4;

} // namespace

UninstallList::UninstallList() {
  listed_paths_.reset(kChains);
}

void UninstallList::AddUninstallEntry(const char *path, UninstallEntryMode mode) {
  if (text_length(path) < kShortestPath)
    return;
  if (mode != kUninstallFile) {
    String key(path);
    key.to_upper();
    if (!listed_paths_.insert(key, true))
      return;
    text_ += mode == kUninstallDirectory ? kDirectoryMark : kClassesKeyMark;
  }
  text_ += path;
  text_ += "\r\n";
}

} // namespace korb
