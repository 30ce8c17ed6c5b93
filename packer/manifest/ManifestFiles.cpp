#include "packer/manifest/ManifestFiles.h"

#include <algorithm>
#include <map>

#include "packer/CodePage.h"
#include "packer/FileIo.h"
#include "packer/FontFile.h"
#include "packer/PeResources.h"
#include "packer/VersionResource.h"
#include "packer/manifest/FileTree.h"

namespace korb::packer {

namespace fs = std::filesystem;

namespace {

constexpr int64_t kMaxU32 = 0xFFFFFFFF;

std::string WithBackslashes(std::string path) {
  std::replace(path.begin(), path.end(), '/', '\\');
  return path;
}

// What [[file]] and [[tree]] have in common, and the date as said there.
struct Settings {
  FileEntry entry;
  std::optional<FileTime> date; // nothing: the file's own
  bool is_date_said = false;
  bool has_label = false;
};

// The version that a present file is compared with. The installer takes that file's version in capitals, and letters
// count, so this one has to be in capitals too.
std::string VersionLabel(const Bytes &file) {
  std::string version = FileVersionOf(file).value_or(std::string());
  for (char &c : version)
    if (c >= 'a' && c <= 'z')
      c = static_cast<char>(c - 'a' + 'A');
  return version;
}

Settings ReadSettings(ManifestContext &context, ManifestTable &table, const Settings &fallback) {
  Settings settings = fallback;
  FileEntry &entry = settings.entry;
  entry.place = table.PlaceOfTable();
  entry.kind = static_cast<uint32_t>(table.Named("kind", kKinds, 0, kMaxU32).value_or(entry.kind));
  entry.flags = static_cast<uint32_t>(table.Integer("flags", 0, kMaxU32).value_or(entry.flags));
  if (const auto condition = table.Named("condition", kConditions, 0, 0))
    entry.flags = (entry.flags & ~FF_CONDITION) | static_cast<uint32_t>(*condition);
  const std::pair<const char *, uint32_t> switches[] = {
      {"desktop", FF_DESKTOP}, {"start_menu", FF_START_MENU}, {"keep", FF_KEEP}, {"uninstall_dir", FF_UNINSTALL_DIR}};
  for (const auto &[key, bit] : switches)
    if (const auto on = table.Boolean(key))
      entry.flags = *on ? entry.flags | bit : entry.flags & ~bit;
  entry.attributes = static_cast<uint32_t>(table.NamedBits("attributes", kAttributes).value_or(entry.attributes));
  bool from_disk = false;
  if (const auto date = context.Time(table, "date", &from_disk))
    settings.date = date;
  if (from_disk)
    settings.date.reset();
  settings.is_date_said = settings.is_date_said || table.Has("date");
  return settings;
}

class FileReader {
public:
  FileReader(ManifestContext &context, const Settings &defaults) : context_(context), defaults_(defaults) {}

  // Remembers where a tree brings its files from and to; its faults are told by AddTree.
  void NoteTree(const toml::table &node) {
    Findings ignored;
    ManifestTable table(&node, "tree", ignored);
    if (const auto source = table.Text("source")) {
      const fs::path folder = context_.InputPath(*source, table.PlaceOfKey("source"));
      branches_.push_back({&node, Canonical(folder) + "/", Plain(folder) + "/",
                           AsFolder(table.Text("into").value_or("")), AsFolder(table.Text("target").value_or("")),
                           table.Texts("include"), table.Texts("exclude")});
    }
  }

  // A file with an entry of its own is left out of the tree that it would go to the same place with, and of all trees
  // when it goes elsewhere. After all trees.
  void Claim(const toml::table &file) {
    const auto *source = file.get_as<std::string>("source");
    if (!source)
      return;
    const fs::path path = context_.InputPath(source->get(), PlaceOf(*source));
    const bool moves = file.contains("name") || file.contains("target");
    const Branch *branch = BranchOf(path);
    claimed_.insert({Canonical(path), moves || !branch ? nullptr : branch->node});
  }

  void AddFile(const toml::table &node) {
    ManifestTable table(&node, "file", context_.findings);
    Settings settings = ReadSettings(context_, table, defaults_);
    FileEntry &entry = settings.entry;
    const auto source = table.Text("source");
    const auto inline_text = table.Text("contents");
    if (source.has_value() == inline_text.has_value())
      context_.findings.Error(table.PlaceOfTable(), "a [[file]] needs either 'source' or 'contents'");
    entry.name = WithBackslashes(context_.Text(table, "name"));
    entry.label = context_.Text(table, "label");
    settings.has_label = table.Raw()->contains("label");
    entry.icon = context_.Text(table, "icon");
    entry.arguments = context_.Text(table, "arguments");
    entry.target = context_.Text(table, "target");
    table.RefuseUnknown();
    if (source && !table.Raw()->contains("name"))
      NameAfter(*source, table.PlaceOfKey("source"), entry, table.Raw()->contains("target"));
    if (inline_text)
      entry.contents.assign(inline_text->begin(), inline_text->end());
    if (source && source->find_first_of("*?") != source->npos)
      context_.findings.Error(table.PlaceOfKey("source"), "'source' of a [[file]] names one file: for several, give a "
                                                          "[[tree]] their folder and 'include' the pattern");
    else if (source)
      Take(*source, table.PlaceOfKey("source"), settings);
    else
      Add(entry, settings.date.value_or(FileTime{}));
  }

  void AddTree(const toml::table &node) {
    ManifestTable table(&node, "tree", context_.findings);
    Settings settings = ReadSettings(context_, table, defaults_);
    const auto source = table.Text("source");
    const std::string into = AsFolder(context_.Text(table, "into")), target = AsFolder(context_.Text(table, "target"));
    const auto include = table.Texts("include"), exclude = table.Texts("exclude");
    table.RefuseUnknown();
    if (!source) {
      context_.findings.Error(table.PlaceOfTable(), "a [[tree]] needs a 'source', the folder whose files it brings");
      return;
    }
    const Place place = table.PlaceOfKey("source");
    for (const std::string &file : FilesOf(*source, table, include, exclude)) {
      const std::string path = *source + "/" + file;
      if (IsClaimed(context_.InputPath(path, place), node))
        continue;
      Settings one = settings;
      auto name = NameIn(file, place);
      if (!name)
        continue;
      if (RowOf(settings.entry.kind).folder == KindFolder::Fonts)
        name->erase(0, name->rfind('\\') + 1); // all fonts are in one folder
      one.entry.name = into + *name;
      if (!target.empty())
        one.entry.target = target + *name;
      if (!Take(path, place, one))
        continue;
      if (CarriesArchive(context_.product().files.back().contents))
        context_.findings.Warn(place, Warning::kNestedInstaller,
                               "'" + path +
                                   "' is an installer itself, maybe an earlier one of this product: "
                                   "'exclude' it, or give it a [[file]]");
    }
  }

private:
  // The files that a tree brings; what it can't bring, and patterns that choose nothing, are reported.
  std::vector<std::string> FilesOf(const std::string &source, ManifestTable &table,
                                   const std::vector<std::string> &include, const std::vector<std::string> &exclude) {
    const Place place = table.PlaceOfKey("source");
    const fs::path folder = context_.InputPath(source, place);
    FileList list = ListFiles(folder, include, exclude);
    for (const FileList::Fault &fault : list.faults)
      context_.findings.Error(place, "can't " + std::string(fault.path.empty() ? "list the folder '" : "take '") +
                                         source + (fault.path.empty() ? "" : "/") + fault.path + "': " + fault.reason);
    std::erase_if(list.files, [&](const std::string &file) { return context_.IsOutput(folder / PathFromUtf8(file)); });
    if (list.files.empty() && list.faults.empty())
      context_.findings.Error(place, "no file of '" + source + "' fits");
    else if (list.faults.empty())
      TellIdlePatterns(source, table, list.files, include, exclude);
    return list.files;
  }

  void TellIdlePatterns(const std::string &source, ManifestTable &table, const std::vector<std::string> &files,
                        const std::vector<std::string> &include, const std::vector<std::string> &exclude) {
    const auto tell = [&](const char *key, const std::string &pattern, const std::vector<std::string> &among) {
      if (std::any_of(among.begin(), among.end(),
                      [&](const std::string &file) { return MatchesPattern(file, pattern); }))
        return;
      const bool is_folder = pattern.ends_with('/');
      context_.findings.Warn(table.PlaceOfKey(key), Warning::kIdlePattern,
                             "no file of '" + source + "' fits '" + pattern + "'" +
                                 (is_folder                  ? ": what is in a folder is '" + pattern + "**'"
                                  : pattern.starts_with('/') ? ": patterns are relative, without a '/' in front"
                                                             : ""));
    };
    for (const std::string &pattern : include)
      tell("include", pattern, files);
    if (exclude.empty())
      return;
    const fs::path folder = context_.InputPath(source, table.PlaceOfKey("source"));
    FileList list = ListFiles(folder, include, {});
    for (FileList::Fault &fault : list.faults)
      list.files.push_back(std::move(fault.path));
    for (const std::string &pattern : exclude)
      if (!context_.IsOutput(folder / PathFromUtf8(pattern))) // which may not be there yet
        tell("exclude", pattern, list.files);
  }

  bool IsClaimed(const fs::path &path, const toml::table &tree) const {
    const auto claim = claimed_.find(Canonical(path));
    return claim != claimed_.end() && (!claim->second || claim->second == &tree);
  }

  // The name of a tree's file, if the code page has its characters; the report says which of the files it is.
  std::optional<std::string> NameIn(const std::string &file, const Place &place) {
    std::string missing;
    const auto name = ToCodePage(file, context_.product().code_page, missing);
    if (name)
      return WithBackslashes(*name);
    const bool combines =
        missing.size() == 2 && (missing[0] == '\xCC' || (missing[0] == '\xCD' && missing[1] < '\xB0'));
    context_.findings.Error(place, "the name of '" + file + "' can't be packed: " +
                                       (missing.empty()
                                            ? "it is no UTF-8"
                                            : "'" + missing + "' doesn't exist in code page " +
                                                  std::to_string(context_.product().code_page) +
                                                  (combines ? "; it stands beside its letter, as some systems write "
                                                              "names: rename the file with both as one"
                                                            : "")));
    return std::nullopt;
  }

  struct Branch {
    const toml::table *node;
    std::string folder, plain, into, target; // each ends in its separator, or is empty
    std::vector<std::string> include, exclude;

    // The path of a file below the folder, or nothing when this tree would not have brought it.
    std::string Below(const std::string &file, const std::string &top) const {
      const auto fits = [&](const std::string &pattern) { return MatchesPattern(file.substr(top.size()), pattern); };
      const bool brings = file.starts_with(top) &&
                          (include.empty() || std::any_of(include.begin(), include.end(), fits)) &&
                          std::none_of(exclude.begin(), exclude.end(), fits);
      return brings ? file.substr(top.size()) : std::string();
    }

    // By its true name, or, below a linked folder, by the one that it has in the tree.
    std::string Below(const fs::path &file) const {
      const std::string name = Below(Canonical(file), folder);
      return name.empty() ? Below(Plain(file), plain) : name;
    }
  };

  // The first tree that would bring a file, or null.
  const Branch *BranchOf(const fs::path &path) const {
    const auto found = std::find_if(branches_.begin(), branches_.end(),
                                    [&](const Branch &branch) { return !branch.Below(path).empty(); });
    return found == branches_.end() ? nullptr : &*found;
  }

  // A file that has no name goes where its tree would have brought it; without a tree, it keeps its own name alone.
  void NameAfter(const std::string &source, const Place &place, FileEntry &entry, bool has_target) {
    const fs::path path = context_.InputPath(source, place);
    const Branch *branch = BranchOf(path);
    if (!branch) {
      entry.name = context_.Convert(source.substr(source.find_last_of('/') + 1), entry.place);
      return;
    }
    const std::string name = WithBackslashes(branch->Below(path));
    entry.name = context_.Convert(branch->into + name, entry.place);
    if (!has_target && !branch->target.empty())
      entry.target = context_.Convert(branch->target + name, entry.place);
  }

  static std::string AsFolder(std::string path) {
    path = WithBackslashes(path);
    return path.empty() || path.back() == '\\' ? path : path + '\\';
  }

  static std::string Canonical(const fs::path &path) {
    std::error_code error;
    return fs::weakly_canonical(path, error).generic_string();
  }

  // The path with neither links nor other folders looked up.
  static std::string Plain(const fs::path &path) {
    std::error_code error;
    return fs::absolute(path, error).lexically_normal().generic_string();
  }

  // Adds a file with what is in `source`; false, and reported, when that can't be read.
  bool Take(const std::string &source, const Place &place, Settings &settings) {
    auto contents = context_.ReadInput(source, place);
    if (!contents)
      return false;
    settings.entry.contents = std::move(*contents);
    if (!settings.has_label && RowOf(settings.entry.kind).replaced == KindReplaced::ByNewerVersionAndDate)
      settings.entry.label = VersionLabel(settings.entry.contents);
    if (!settings.has_label && settings.entry.kind == KindFont)
      settings.entry.label = FontLabel(settings.entry.contents);
    // A font that is found up to date is no longer recorded as the product's.
    if (settings.entry.kind == KindFont && !settings.is_date_said)
      settings.date = FileTime{};
    Add(settings.entry, settings.date ? *settings.date : context_.TimeOf(context_.InputPath(source, place)));
    return true;
  }

  // The first name of the font that the code page has all characters of, or nothing.
  std::string FontLabel(const Bytes &file) const {
    std::string missing;
    for (std::string name : FontNames(file)) {
      std::replace(name.begin(), name.end(), '"', '\'');
      if (auto label = ToCodePage(name, context_.product().code_page, missing))
        return *label;
    }
    return {};
  }

  void Add(FileEntry &entry, FileTime date) {
    entry.date = date;
    context_.product().files.push_back(std::move(entry));
  }

  ManifestContext &context_;
  Settings defaults_;
  std::vector<Branch> branches_;
  std::map<std::string, const toml::table *> claimed_; // by true name; of the one tree that leaves it out, or of all
};

} // namespace

void ReadFiles(ManifestContext &context, ManifestTable &root) {
  ManifestTable table = root.Table("file_defaults");
  const Settings defaults = ReadSettings(context, table, {});
  table.RefuseUnknown();

  // Files and trees are two arrays for the parser but one list for the author, in each of the files that are one.
  struct Entry {
    const toml::table *table;
    bool is_tree;
  };
  std::vector<Entry> entries;
  for (const toml::table *file : root.Tables("file"))
    entries.push_back({file, false});
  for (const toml::table *tree : root.Tables("tree"))
    entries.push_back({tree, true});
  std::stable_sort(entries.begin(), entries.end(), [&](const Entry &a, const Entry &b) {
    const Place one = PlaceOf(*a.table), other = PlaceOf(*b.table);
    return std::pair(context.FileNumber(other), one.line) < std::pair(context.FileNumber(one), other.line);
  });

  FileReader reader(context, defaults);
  for (const Entry &entry : entries)
    if (entry.is_tree)
      reader.NoteTree(*entry.table);
  for (const Entry &entry : entries)
    if (!entry.is_tree)
      reader.Claim(*entry.table);
  for (const Entry &entry : entries)
    if (entry.is_tree)
      reader.AddTree(*entry.table);
    else
      reader.AddFile(*entry.table);
}

} // namespace korb::packer
