#include "packer/manifest/FileTree.h"

#include <algorithm>
#include <cctype>

#include "packer/FileIo.h"

namespace korb::packer {

namespace fs = std::filesystem;

namespace {

// The places in a pattern that a path can have come to so far, all followed at once, so that no pattern takes long.
class PatternPlaces {
public:
  explicit PatternPlaces(std::string_view pattern) : pattern_(pattern), places_(pattern.size() + 1, kNone) { Enter(0); }

  void Take(char c) {
    std::vector<Place> before(places_.size(), kNone);
    before.swap(places_);
    for (size_t i = 0; i < pattern_.size(); ++i) {
      if (before[i] == kNone)
        continue;
      if (const size_t stars = StarsAt(i); stars == 0) {
        if (pattern_[i] == '?' ? c != '/' : c == pattern_[i])
          Enter(i + 1);
      } else if (stars == 2 || c != '/') {
        places_[i] = std::max(places_[i], kWithin);
        Enter(i + stars);
      }
    }
  }

  bool IsAtEnd() const { return places_.back() != kNone; }

private:
  enum Place : uint8_t { kNone, kWithin, kEntered }; // a star that stands for something already is not entered again

  size_t StarsAt(size_t i) const { return pattern_[i] != '*' ? 0 : pattern_.substr(i).starts_with("**") ? 2 : 1; }

  // With all that follows where stars stand for nothing.
  void Enter(size_t i) {
    if (places_[i] == kEntered)
      return;
    places_[i] = kEntered;
    if (i == pattern_.size() || StarsAt(i) == 0)
      return;
    Enter(i + StarsAt(i));
    if (pattern_.substr(i).starts_with("**/"))
      Enter(i + 3);
  }

  std::string_view pattern_;
  std::vector<Place> places_;
};

bool Fits(std::string_view path, std::string_view pattern) {
  PatternPlaces places(pattern);
  for (const char c : path)
    places.Take(c);
  return places.IsAtEnd();
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
