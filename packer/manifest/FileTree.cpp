#include "packer/manifest/FileTree.h"

#include <algorithm>
#include <cctype>

#include "packer/FileIo.h"

namespace korb::packer {

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

std::vector<std::string> ListFiles(const std::filesystem::path &folder, const std::vector<std::string> &include,
                                   const std::vector<std::string> &exclude) {
  const auto fits_one = [](const std::string &path, const std::vector<std::string> &patterns) {
    return std::any_of(patterns.begin(), patterns.end(),
                       [&](const std::string &pattern) { return MatchesPattern(path, pattern); });
  };
  std::vector<std::string> files;
  for (const auto &entry : std::filesystem::recursive_directory_iterator(folder)) {
    if (!entry.is_regular_file())
      continue;
    std::string path = ManifestPath(entry.path().lexically_relative(folder));
    if ((include.empty() || fits_one(path, include)) && !fits_one(path, exclude))
      files.push_back(std::move(path));
  }
  std::sort(files.begin(), files.end(), Before);
  return files;
}

} // namespace korb::packer
