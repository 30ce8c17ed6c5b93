#include "packer/manifest/ManifestFiles.h"

#include <algorithm>
#include <set>

#include "packer/CodePage.h"
#include "packer/PeResources.h"
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
  return settings;
}

class FileReader {
public:
  FileReader(ManifestContext &context, const Settings &defaults) : context_(context), defaults_(defaults) {}

  // Files with an entry of their own are left out of trees.
  void Claim(const toml::table &file) {
    if (const auto source = file["source"].value<std::string>())
      claimed_.insert(Canonical(context_.InputPath(*source)));
  }

  // Remembers where a tree brings its files from and to; its faults are told by AddTree.
  void NoteTree(const toml::table &node) {
    Findings ignored;
    ManifestTable table(&node, "tree", ignored);
    if (const auto source = table.Text("source"))
      branches_.push_back({Canonical(context_.InputPath(*source)) + "/", AsFolder(table.Text("into").value_or("")),
                           AsFolder(table.Text("target").value_or("")), table.Texts("include"),
                           table.Texts("exclude")});
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
      NameAfter(*source, entry, table.Raw()->contains("target"));
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
    std::vector<std::string> files;
    try {
      files = ListFiles(context_.InputPath(*source), include, exclude);
    } catch (const fs::filesystem_error &) {
      context_.findings.Error(place, "can't list the folder '" + *source + "'");
      return;
    }
    if (files.empty())
      context_.findings.Error(place, "no file of '" + *source + "' fits");
    for (const std::string &pattern : include)
      if (std::none_of(files.begin(), files.end(),
                       [&](const std::string &file) { return MatchesPattern(file, pattern); }) &&
          !files.empty())
        context_.findings.Warn(table.PlaceOfKey("include"), "no file of '" + *source + "' fits '" + pattern + "'");
    for (const std::string &file : files) {
      const std::string path = *source + "/" + file;
      if (claimed_.contains(Canonical(context_.InputPath(path))))
        continue;
      Settings one = settings;
      const auto name = NameIn(file, place);
      if (!name)
        continue;
      one.entry.name = into + *name;
      if (!target.empty())
        one.entry.target = target + *name;
      Take(path, place, one);
    }
  }

private:
  // The name of a tree's file, if the code page has its characters; the report says which of the files it is.
  std::optional<std::string> NameIn(const std::string &file, const Place &place) {
    std::string missing;
    const auto name = ToCodePage(file, context_.product().code_page, missing);
    if (name)
      return WithBackslashes(*name);
    context_.findings.Error(place, "the name of '" + file + "' can't be packed: '" + missing +
                                       "' doesn't exist in code page " + std::to_string(context_.product().code_page));
    return std::nullopt;
  }

  struct Branch {
    std::string folder, into, target; // each ends in its separator, or is empty
    std::vector<std::string> include, exclude;

    // The path of `file` below the folder, or nothing when this tree would not have brought it.
    std::string Below(const std::string &file) const {
      const auto fits = [&](const std::string &pattern) { return MatchesPattern(file.substr(folder.size()), pattern); };
      const bool brings = file.starts_with(folder) &&
                          (include.empty() || std::any_of(include.begin(), include.end(), fits)) &&
                          std::none_of(exclude.begin(), exclude.end(), fits);
      return brings ? file.substr(folder.size()) : std::string();
    }
  };

  // A file that has no name goes where its tree would have brought it; without a tree, it keeps its own name alone.
  void NameAfter(const std::string &source, FileEntry &entry, bool has_target) {
    const std::string path = Canonical(context_.InputPath(source));
    for (const Branch &branch : branches_)
      if (const std::string name = branch.Below(path); !name.empty()) {
        entry.name = context_.Convert(branch.into + WithBackslashes(name), entry.place);
        if (!has_target && !branch.target.empty())
          entry.target = context_.Convert(branch.target + WithBackslashes(name), entry.place);
        return;
      }
    entry.name = context_.Convert(source.substr(source.find_last_of('/') + 1), entry.place);
  }

  static std::string AsFolder(std::string path) {
    path = WithBackslashes(path);
    return path.empty() || path.back() == '\\' ? path : path + '\\';
  }

  static std::string Canonical(const fs::path &path) {
    std::error_code error;
    return fs::weakly_canonical(path, error).generic_string();
  }

  void Take(const std::string &source, const Place &place, Settings &settings) {
    auto contents = context_.ReadInput(source, place);
    if (!contents)
      return;
    settings.entry.contents = std::move(*contents);
    if (!settings.has_label && RowOf(settings.entry.kind).replaced == KindReplaced::ByNewerVersionAndDate)
      settings.entry.label = VersionLabel(settings.entry.contents);
    Add(settings.entry, settings.date ? *settings.date : context_.TimeOf(context_.InputPath(source)));
  }

  void Add(FileEntry &entry, FileTime date) {
    entry.date = date;
    context_.product().files.push_back(std::move(entry));
  }

  ManifestContext &context_;
  Settings defaults_;
  std::set<std::string> claimed_;
  std::vector<Branch> branches_;
};

} // namespace

void ReadFiles(ManifestContext &context, ManifestTable &root) {
  ManifestTable table = root.Table("file_defaults");
  const Settings defaults = ReadSettings(context, table, {});
  table.RefuseUnknown();

  // Files and trees are two arrays for the parser but one list for the author.
  struct Entry {
    const toml::table *table;
    bool is_tree;
  };
  std::vector<Entry> entries;
  for (const toml::table *file : root.Tables("file"))
    entries.push_back({file, false});
  for (const toml::table *tree : root.Tables("tree"))
    entries.push_back({tree, true});
  std::stable_sort(entries.begin(), entries.end(), [](const Entry &a, const Entry &b) {
    return a.table->source().begin.line < b.table->source().begin.line;
  });

  FileReader reader(context, defaults);
  for (const Entry &entry : entries)
    if (entry.is_tree)
      reader.NoteTree(*entry.table);
    else
      reader.Claim(*entry.table);
  for (const Entry &entry : entries)
    if (entry.is_tree)
      reader.AddTree(*entry.table);
    else
      reader.AddFile(*entry.table);
}

} // namespace korb::packer
