// What a case makes on the machine that it shares with the other cases of its program.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "core/Windows.h"

namespace korb::test {

/// Files, directories, and keys below HKEY_LOCAL_MACHINE without keys of their own, that are not there when a case
/// begins, and not after it either, however it ends.
class CleanPlace {
public:
  explicit CleanPlace(std::vector<std::string> paths, std::vector<std::string> keys = {})
      : paths_(std::move(paths)), keys_(std::move(keys)) {
    Clear();
  }
  ~CleanPlace() { Clear(); }
  CleanPlace(const CleanPlace &) = delete;

  /// Takes away what is there by now, protected files too.
  void Clear() const {
    std::error_code ignored;
    for (const std::string &path : paths_) {
      SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_NORMAL);
      for (const auto &entry : std::filesystem::recursive_directory_iterator(path, ignored))
        SetFileAttributesA(entry.path().string().c_str(), FILE_ATTRIBUTE_NORMAL);
      std::filesystem::remove_all(path, ignored);
    }
    for (const std::string &key : keys_)
      RegDeleteKeyA(HKEY_LOCAL_MACHINE, key.c_str());
  }

private:
  std::vector<std::string> paths_, keys_;
};

} // namespace korb::test
