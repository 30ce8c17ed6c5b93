#include "packer/manifest/FileTree.h"

#include <algorithm>
#include <cctype>

#include "packer/FileIo.h"

namespace korb::packer {

namespace fs = std::filesystem;

namespace {

bool Fits(std::string_view path, std::string_view pattern) {
  while (!pattern.empty()) {
    if (pattern.starts_with("**/") && Fits(path, pattern.substr(3)))
      return true;
    if (pattern[0] == '*') {
      const bool any = pattern.starts_with("**");
      const std::string_view rest = pattern.substr(any ? 2 : 1);
      for (size_t taken = 0; taken <= path.size(); ++taken) {
        if (Fits(path.substr(taken), rest))
          return true;
        if (taken < path.size() && path[taken] == '/' && !any)
          return false;
      }
      return false;
    }
    if (path.empty() || (pattern[0] == '?' ? path[0] == '/' : path[0] != pattern[0]))
      return false;
    path.remove_prefix(1);
    pattern.remove_prefix(1);
  }
  return path.empty();
}

// The order of a listing: a separator counts below every character of a name, so a folder's files stand together.
int OrderOf(char c) {
  return c == '/' ? -1 : std::tolower(static_cast<unsigned char>(c));
}

bool Before(const std::string &a, const std::string &b) {
  const auto fold = [](char x, char y) { return OrderOf(x) < OrderOf(y); };
  if (std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(), fold))
    return true;
  return !std::lexicographical_compare(b.begin(), b.end(), a.begin(), a.end(), fold) && a < b;
}

} // namespace

bool MatchesPattern(std::string_view path, std::string_view pattern) {
  if (pattern.find('/') == pattern.npos && path.find('/') != path.npos)
    path = path.substr(path.rfind('/') + 1);
  return Fits(path, pattern);
}

namespace {

class FolderWalk {
public:
  FolderWalk(const fs::path &folder, const std::vector<std::string> &include, const std::vector<std::string> &exclude)
      : top_(folder), include_(include), exclude_(exclude) {}

  FileList List() {
    Walk(top_, {});
    std::sort(list_.files.begin(), list_.files.end(), Before);
    return std::move(list_);
  }

private:
  bool IsExcluded(const std::string &path) const { return FitsOne(path, exclude_); }
  bool IsWanted(const std::string &path) const {
    return (include_.empty() || FitsOne(path, include_)) && !IsExcluded(path);
  }
  static bool FitsOne(const std::string &path, const std::vector<std::string> &patterns) {
    return std::any_of(patterns.begin(), patterns.end(),
                       [&](const std::string &pattern) { return MatchesPattern(path, pattern); });
  }

  void Walk(const fs::path &folder, const std::string &prefix);
  void Visit(const fs::directory_entry &entry, const std::string &path);

  const fs::path top_;
  const std::vector<std::string> &include_, &exclude_;
  std::vector<fs::path> above_; // the folders that are being walked through, by their true names
  FileList list_;
};

// `prefix` is the folder below the top, with a separator after it.
void FolderWalk::Walk(const fs::path &folder, const std::string &prefix) {
  std::error_code error;
  const fs::path name = fs::canonical(folder, error);
  const bool is_needed = !IsExcluded(prefix + "?"); // whatever is in a folder that is left out may stay unknown
  if (std::find(above_.begin(), above_.end(), name) != above_.end()) {
    if (is_needed)
      list_.faults.push_back({prefix, "it is a link that leads back to a folder around it"});
    return;
  }
  above_.push_back(name);
  fs::directory_iterator entry(folder, error);
  for (; !error && entry != fs::directory_iterator(); entry.increment(error))
    Visit(*entry, prefix + ManifestPath(entry->path().filename()));
  if (error && is_needed)
    list_.faults.push_back({prefix, error.message()});
  above_.pop_back();
}

void FolderWalk::Visit(const fs::directory_entry &entry, const std::string &path) {
  std::error_code error;
  if (entry.is_directory(error))
    Walk(entry.path(), path + "/");
  else if (!IsWanted(path))
    return;
  else if (entry.is_regular_file(error))
    list_.files.push_back(path);
  else
    list_.faults.push_back({path, WhyUnreadable(entry.path())});
}

} // namespace

FileList ListFiles(const fs::path &folder, const std::vector<std::string> &include,
                   const std::vector<std::string> &exclude) {
  return FolderWalk(folder, include, exclude).List();
}

} // namespace korb::packer
