#include "packer/release/Upgrade.h"

#include <algorithm>
#include <map>
#include <set>

#include "core/Text.h"
#include "engine/Version.h"
#include "format/Kinds.h"
#include "format/Record.h"
#include "format/Words.h"
#include "packer/CodePage.h"
#include "packer/Words.h"
#include "packer/check/TextRules.h"

namespace korb::packer {

namespace {

constexpr char kUnknownPlace[] = "not known to be below the product's directory";

std::string SizeText(int32_t size) {
  return size < 0 ? std::string() : std::to_string(size);
}

bool IsAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

std::string_view Extension(const Association &association) {
  return std::string_view(association.extension).substr(association.extension.starts_with('.') ? 1 : 0);
}

class UpgradePlanner {
public:
  UpgradePlanner(const Place &place, Product &product) : place_(place), product_(product), now_(ReleaseOf(product)) {}

  void RefuseStrangers(const std::vector<Release> &earlier, Findings &findings) const;
  UpgradeResult Plan(const std::vector<Release> &earlier, Findings &findings);

private:
  struct Gone {
    ReleasePath path;
    std::set<std::string> sizes;  // that it had; empty where any may go
    std::set<std::string> brings; // labels of the releases
    std::string stays;            // why it is left; empty when it isn't
  };

  void NotePresent();
  void AddFiles(const Release &release);
  void AddShortcuts(const Release &release);
  void AddRecords(const Release &release);
  void AddValues(const Release &release);
  void NoteRegistered(const Release &release);
  Gone *NoteGone(const ReleasePath &path, const Release &release);
  void NoteFolders(const ReleasePath &path);
  std::string WhyItStays(const ReleaseFile &file) const;
  void Leave(const std::string &why, const std::string &what);
  void Delete(const Gone &gone);
  void RemoveFolders();
  void WarnOfFolders(Findings &findings) const;

  const Place &place_;
  Product &product_;
  const Release now_;
  std::set<std::string> present_, present_folders_;   // keys of what this release places, and of the folders around it
  std::set<std::string> deleted_;                     // keys of what its author deletes in any case
  std::set<std::string> removed_;                     // names of uninstall values that are removed
  std::map<std::string, Gone> gone_;                  // what earlier releases placed and this one doesn't, by keys
  std::map<std::string, ReleasePath> folders_;        // around it, by keys
  std::map<std::string, std::set<std::string>> left_; // what stays, by the reason
  UpgradeResult result_;
};

void UpgradePlanner::RefuseStrangers(const std::vector<Release> &earlier, Findings &findings) const {
  for (const Release &release : earlier) {
    if (LowerCase(release.uninstall_name) != LowerCase(now_.uninstall_name))
      findings.Error(place_, "'" + release.label + "' installs another product: its uninstall name is '" +
                                 release.uninstall_name + "', not '" + now_.uninstall_name + "'");
    else if (CompareVersions(release.version.c_str(), now_.version.c_str()) > 0)
      findings.Warn(place_, Warning::kEarlierIsNewer,
                    "'" + release.label + "' is newer than this release: it has version " + release.version);
    else if (!release.Has(IF_UNINSTALL))
      findings.Warn(place_, Warning::kEarlierNotFound,
                    "'" + release.label +
                        "' has no uninstaller, so no later release finds where it was installed: what it "
                        "left goes only where the user chooses the same directory");
  }
}

void UpgradePlanner::NotePresent() {
  const auto note = [&](const ReleasePath &path) {
    present_.insert(path.Key());
    for (const ReleasePath &folder : path.Folders())
      present_folders_.insert(folder.Key());
  };
  for (const ReleaseFile &file : now_.files)
    if (file.Condition() != FF_PLACE_NEVER)
      note(file.path);
  for (const ReleaseRecord &record : now_.records)
    note(record.path);
  for (const ReleaseShortcut &shortcut : now_.shortcuts) {
    for (const ReleasePath &folder : shortcut.path.Folders())
      present_folders_.insert(folder.Key());
    // Made anew after the deletions where it is wanted, which it isn't in a run in another language.
    if (shortcut.is_made_each_time)
      present_.insert(shortcut.path.Key());
  }
  for (const Deletion &deletion : product_.deletions)
    if (deletion.kind == kDeleteAlways)
      deleted_.insert(DeletionPath(deletion.name, product_.code_page).Key());
}

void UpgradePlanner::NoteFolders(const ReleasePath &path) {
  for (const ReleasePath &folder : path.Folders())
    folders_.emplace(folder.Key(), folder);
}

// Null for what this release has as well.
UpgradePlanner::Gone *UpgradePlanner::NoteGone(const ReleasePath &path, const Release &release) {
  const std::string key = path.Key();
  if (present_.contains(key) || deleted_.contains(key))
    return nullptr;
  Gone &gone = gone_[key];
  gone.path = path;
  gone.brings.insert(release.label);
  return &gone;
}

std::string UpgradePlanner::WhyItStays(const ReleaseFile &file) const {
  if (!RowOf(file.kind).listed)
    return "of a kind that belongs to the system or to several products";
  if (file.flags & FF_KEEP)
    return "left to the user by 'keep'";
  if (file.Condition() == FF_PLACE_NEW)
    return "left to the user by 'condition = \"new\"'";
  if (file.Condition() == FF_PLACE_OVER)
    return "only placed over what was there already";
  if (!file.path.IsBelow(path_variable::kInstallDir))
    return kUnknownPlace;
  return {};
}

void UpgradePlanner::AddFiles(const Release &release) {
  for (const ReleaseFile &file : release.files) {
    if (file.Condition() == FF_PLACE_NEVER)
      continue;
    if (file.path.IsBelow(path_variable::kInstallDir))
      NoteFolders(file.path);
    if (Gone *gone = NoteGone(file.path, release)) {
      gone->sizes.insert(SizeText(file.size));
      if (const std::string why = WhyItStays(file); !why.empty())
        gone->stays = why;
    }
  }
}

void UpgradePlanner::AddShortcuts(const Release &release) {
  for (const ReleaseShortcut &shortcut : release.shortcuts) {
    NoteFolders(shortcut.path);
    Gone *gone = NoteGone(shortcut.path, release);
    if (gone && shortcut.keep)
      gone->stays = "left to the user by 'keep'";
    else if (gone && !shortcut.path.is_known)
      gone->stays = "a shortcut whose name differs from machine to machine";
  }
}

// A record may be the one of another product that shares the directory, but then this product's earlier release has
// replaced it. The directory of a master product is shared by design.
void UpgradePlanner::AddRecords(const Release &release) {
  if (!product_.Has(IF_UNINSTALL)) {
    if (release.Has(IF_UNINSTALL))
      Leave("since this release has no uninstaller", "the uninstaller of " + release.label);
    return;
  }
  const bool is_shared = LowerCase(release.directory) == "<master>";
  for (const ReleaseRecord &record : release.records) {
    NoteFolders(record.path);
    if (Gone *gone = NoteGone(record.path, release)) {
      if (record.size >= 0)
        gone->sizes.insert(SizeText(record.size));
      if (!record.path.is_known)
        gone->stays = kUnknownPlace;
      else if (is_shared && record.size < 0)
        gone->stays = "perhaps the record of the master product";
    }
  }
}

// An empty value removes the one that is there.
void UpgradePlanner::AddValues(const Release &release) {
  for (const UninstallValue &value : release.uninstall_values) {
    const std::string key = LowerCase(value.name);
    const auto is_it = [&](const UninstallValue &other) { return LowerCase(other.name) == key; };
    const auto is_called = [&](const char *name) { return LowerCase(name) == key; };
    const bool is_own = std::any_of(std::begin(kReplaceableValues), std::end(kReplaceableValues), is_called) ||
                        is_called(product_value::kInstallLocation) || is_called(product_value::kInstallDate);
    std::string missing;
    const auto name = ToCodePage(value.name, product_.code_page, missing);
    if (product_.Has(IF_UNINSTALL) && !is_own && name &&
        std::none_of(now_.uninstall_values.begin(), now_.uninstall_values.end(), is_it) && removed_.insert(key).second)
      product_.uninstall_values.push_back({*name, kUninstallText, {}, place_});
  }
}

// What the program registers, only its uninstaller takes back, by the record that the new release replaces.
void UpgradePlanner::NoteRegistered(const Release &release) {
  const std::string why = "since an upgrade doesn't undo what " + release.label + " has registered";
  for (const Association &old : release.associations) {
    const auto is_same = [&](const Association &other) {
      return LowerCase(Extension(other)) == LowerCase(Extension(old)) &&
             LowerCase(other.file_class) == LowerCase(old.file_class) && LowerCase(other.verb) == LowerCase(old.verb);
    };
    if (std::none_of(now_.associations.begin(), now_.associations.end(), is_same))
      Leave(why, "the verb '" + old.verb + "' of file type ." + std::string(Extension(old)) +
                     (old.file_class.empty() ? "" : " (" + old.file_class + ")"));
  }
  if (!release.registry_key.empty() && LowerCase(release.registry_key) != LowerCase(now_.registry_key))
    Leave(why, "the registry key 'Software\\" + release.registry_key + "'");
  if (release.Has(IF_EDIT_PATH) && !now_.Has(IF_EDIT_PATH))
    Leave(why, "the line in autoexec.bat");
}

void UpgradePlanner::Leave(const std::string &why, const std::string &what) {
  left_[why].insert(what);
}

// The size holds what is of the same name by chance: in a directory that the user chose, or changed since. In use, a
// file waits for the restart only where the product's own files may; never where a letter beyond ASCII might make two
// names of one file, since a file that is placed anew would go then.
void UpgradePlanner::Delete(const Gone &gone) {
  std::string missing;
  const auto name = ToCodePage(gone.path.text, product_.code_page, missing);
  if (!name)
    return Leave("since this release's code page lacks '" + missing + "'", gone.path.text);
  Deletion deletion{*name, kDeleteAlways, {}, 0, place_};
  if (product_.Has(IF_REPLACE_IN_USE) && IsAscii(gone.path.text) && !gone.sizes.empty())
    deletion.options |= kDeleteAtRestart;
  if (product_.deletions.size() + std::max<size_t>(gone.sizes.size(), 1) > kMaxDeletions)
    return Leave("since an installer can't hold as many deletions", gone.path.text);
  if (gone.sizes.empty())
    product_.deletions.push_back(deletion);
  for (const std::string &size : gone.sizes) {
    deletion.kind = kDeleteSizeEqual;
    deletion.value = size;
    product_.deletions.push_back(deletion);
  }
  ++result_.deletions;
}

// A deletion takes files alone, but `rd` takes a folder that is empty. The batch begins in the installation directory,
// unless that is on the network; it then isn't found there. The directory's own name is avoided, since the interpreter
// reads its letters beyond ASCII as others.
void UpgradePlanner::RemoveFolders() {
  std::vector<std::string> lines;
  for (const auto &[key, folder] : folders_) {
    if (present_folders_.contains(key))
      continue;
    if (!IsAscii(folder.text)) {
      Leave("since a batch can't name it, if it is empty then", "the folder " + folder.text);
      continue;
    }
    const size_t end = folder.text.find('\\');
    const bool is_home = folder.IsBelow(path_variable::kInstallDir);
    std::string name = folder.text.substr(is_home ? end + 1 : end);
    for (size_t at = 0; (at = name.find('%', at)) != name.npos; at += 2)
      name.insert(at, 1, '%');
    lines.push_back(is_home ? std::string("if exist ") + kBatchName + " rd \"" + name + "\"\r\n"
                            : "rd \"" + folder.text.substr(0, end) + name + "\"\r\n");
  }
  if (lines.empty())
    return;
  // Keys are sorted, so what is inside a folder comes after it.
  std::string batch;
  for (auto line = lines.rbegin(); line != lines.rend(); ++line)
    batch += *line;
  result_.folders = lines.size();
  if (IsBlank(product_.post_install_batch.c_str()))
    product_.flags |= IF_HIDE_POST_BATCH;
  product_.post_install_batch.insert(0, batch);
}

// A file can't be placed where the earlier release has a folder, which goes only later.
void UpgradePlanner::WarnOfFolders(Findings &findings) const {
  for (const ReleaseFile &file : now_.files)
    if (folders_.contains(file.path.Key()))
      findings.Warn(place_, Warning::kEarlierFolder,
                    "'" + file.path.text + "' was a folder in an earlier release: an upgrade can't place a file there");
}

UpgradeResult UpgradePlanner::Plan(const std::vector<Release> &earlier, Findings &findings) {
  NotePresent();
  for (const Release &release : earlier) {
    AddFiles(release);
    AddShortcuts(release);
    AddRecords(release);
    AddValues(release);
    NoteRegistered(release);
  }
  WarnOfFolders(findings);
  for (const auto &[key, gone] : gone_)
    if (gone.stays.empty())
      Delete(gone);
    else
      Leave("as it is " + gone.stays, gone.path.text);
  RemoveFolders();
  for (const auto &[why, things] : left_)
    for (const std::string &thing : things)
      findings.Tell(place_, thing + " stays, " + why);
  return result_;
}

} // namespace

UpgradeResult PlanUpgrade(const std::vector<Release> &earlier, const Place &place, Product &product,
                          Findings &findings) {
  UpgradePlanner planner(place, product);
  planner.RefuseStrangers(earlier, findings);
  return findings.HasErrors() ? UpgradeResult{} : planner.Plan(earlier, findings);
}

} // namespace korb::packer
