#include "packer/plan/PlannedMachine.h"

#include <algorithm>

#include "files/PathText.h"
#include "files/ProgramPaths.h"
#include "packer/CodePage.h"
#include "packer/check/TextRules.h"

namespace korb::packer {

namespace {

// What the system itself takes at most.
constexpr size_t kLongestPath = 259, kLongestFolder = 247, kLongestKeyName = 255;

constexpr const char *kKnownKeys[] = {"HKEY_CLASSES_ROOT", "HKEY_CURRENT_USER\\Software",
                                      "HKEY_LOCAL_MACHINE\\Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall",
                                      "HKEY_LOCAL_MACHINE\\Software\\Microsoft\\Windows\\CurrentVersion\\SharedDLLs"};

PlannedMachine *the_machine = nullptr;

std::string KeyOf(std::string path) {
  while (path.size() > 3 && path.ends_with('\\'))
    path.pop_back();
  return LowerCase(path);
}

} // namespace

PlannedMachine::PlannedMachine(const TargetSystem &target, bool is_64_bit, const int &page,
                               const std::string &installer)
    : system(target), has_64_bits(is_64_bit), page_(page) {
  the_machine = this;
  WindowsDirectory = system.folders.windows;
  ProgramDirectory = "C:\\Setup";
  ProgramDrive = 'C';
  std::string missing;
  ProgramName = ToCodePage(installer, page, missing).value_or("setup.exe").c_str();
  ProgramPath = PathJoin(ProgramDirectory, ProgramName);
  const TargetFolders &its = system.folders;
  for (const char *folder : {its.windows, its.system, its.desktop, its.desktop_all, its.documents, its.documents_all,
                             its.favorites, its.favorites_all, its.start_menu, its.start_menu_all, its.temp})
    if (folder)
      AddKnownFolder(folder);
  for (const char *menu : {its.start_menu, its.start_menu_all})
    if (menu)
      AddKnownFolder(std::string(menu) + "\\Programs\\" + its.startup);
  for (const char *folder : {"\\Fonts", "\\INF", "\\Media"})
    AddKnownFolder(its.windows + std::string(folder));
  for (const char *programs : {"C:\\Program Files", "C:\\Program Files (x86)"})
    if (has_64_bits || std::string_view(programs).ends_with("s"))
      AddKnownFolder(std::string(programs) + "\\Common Files");
  for (const char *key : kKnownKeys)
    MakeKey(key);
  steps.clear();
}

PlannedMachine::~PlannedMachine() {
  the_machine = nullptr;
}

PlannedMachine &PlannedMachine::Current() {
  return *the_machine;
}

std::string PlannedMachine::Text(const char *text) const {
  return FromCodePage(text, page_);
}

Json &PlannedMachine::Note(const char *action, Json with) {
  Json step = {{"phase", phase_}, {"action", action}};
  step.update(with);
  steps.push_back(std::move(step));
  return steps.back();
}

// Where a 64-bit system keeps what 32-bit programs see under `path`.
void PlannedMachine::AddPlace(Json &step, const char *name, const std::string &path) const {
  step[name] = Text(path.c_str());
  if (!has_64_bits)
    return;
  const std::string system_folder = std::string(system.folders.system) + "\\",
                    software = "HKEY_LOCAL_MACHINE\\Software";
  const std::string lower = LowerCase(path);
  if (lower.starts_with(LowerCase(system_folder)))
    step["place"] = std::string(system.folders.windows) + "\\SysWOW64\\" + Text(path.c_str() + system_folder.size());
  else if (lower.starts_with(LowerCase(software + "\\")) && !lower.starts_with(LowerCase(software + "\\Classes\\")))
    step["place"] = software + "\\Wow6432Node" + Text(path.c_str() + software.size());
}

void PlannedMachine::AddKnownFolder(const std::string &path) {
  for (size_t at = path.find('\\'); at != path.npos; at = path.find('\\', at + 1))
    folders_.insert(LowerCase(path.substr(0, at)));
  folders_.insert(LowerCase(path));
}

bool PlannedMachine::HasFolder(const char *path) const {
  return folders_.contains(KeyOf(path));
}

bool PlannedMachine::MakeFolder(const char *path) {
  const std::string whole(path);
  if (*PathRoot(path) == '\0' && !whole.starts_with("\\\\"))
    return HasFolder(path);
  if (whole.size() > kLongestFolder || !IsLegalPath(path)) {
    Note("failure", {{"path", Text(path)},
                     {"why", whole.size() > kLongestFolder ? "the path is too long" : "no folder can have this name"}});
    return false;
  }
  // The root, or the share, is there.
  size_t at = whole.find('\\', 2);
  if (whole.starts_with("\\\\") && at != whole.npos)
    at = whole.find('\\', at + 1);
  while (at != whole.npos) {
    at = whole.find('\\', at + 1);
    const std::string part = whole.substr(0, at);
    if (!part.ends_with('\\') && folders_.insert(LowerCase(part)).second)
      AddPlace(Note("directory"), "path", part);
  }
  return true;
}

bool PlannedMachine::RemoveFolder(const char *path) {
  const std::string folder = KeyOf(path), inside = folder + "\\";
  const auto file = files_.lower_bound(inside);
  const auto within = folders_.lower_bound(inside);
  if (folder.size() < 4 || (file != files_.end() && file->first.starts_with(inside)) ||
      (within != folders_.end() && within->starts_with(inside)) || folders_.erase(folder) == 0)
    return false;
  AddPlace(Note("remove directory"), "path", path);
  return true;
}

Json *PlannedMachine::MakeFile(const char *path, const FileDate &date) {
  const std::string whole(path);
  if (whole.size() > kLongestPath || !IsLegalPath(path)) {
    Note("failure", {{"path", Text(path)},
                     {"why", whole.size() > kLongestPath ? "the path is too long" : "no file can have this name"}});
    return nullptr;
  }
  constexpr FileDate kTimeOfRun{9999, 12, 31, 0, 0, 0}; // later than all that a product brings
  files_[KeyOf(path)] = date.has_date() ? date : kTimeOfRun;
  Json &step = Note("file");
  AddPlace(step, "path", whole);
  return &step;
}

const FileDate *PlannedMachine::FindFile(const char *path) const {
  const auto file = files_.find(KeyOf(path));
  return file == files_.end() ? nullptr : &file->second;
}

bool PlannedMachine::HasKey(const std::string &path) const {
  return registry_.contains(KeyOf(path));
}

bool PlannedMachine::MakeKey(const std::string &path) {
  constexpr std::ptrdiff_t kDeepest = 500;
  if (HasKey(path))
    return true;
  bool is_possible = std::count(path.begin(), path.end(), '\\') <= kDeepest;
  for (size_t begin = 0, end; is_possible && begin < path.size(); begin = end + 1) {
    end = std::min(path.find('\\', begin), path.size());
    is_possible = end - begin <= kLongestKeyName;
    if (is_possible && end > begin && registry_.try_emplace(KeyOf(path.substr(0, end))).second)
      AddPlace(Note("key"), "key", path.substr(0, end));
  }
  if (!is_possible)
    Note("failure", {{"path", Text(path.c_str())}, {"why", "no key can have this name"}});
  return is_possible;
}

const String *PlannedMachine::FindValue(const std::string &key, const char *name) const {
  const auto values = registry_.find(KeyOf(key));
  if (values == registry_.end())
    return nullptr;
  const auto value = values->second.find(LowerCase(name));
  return value == values->second.end() ? nullptr : &value->second;
}

void PlannedMachine::SetValue(const std::string &key, const char *name, const char *type, const String &text,
                              const Json &data) {
  registry_[KeyOf(key)][LowerCase(name)] = text;
  Json &step = Note("value");
  AddPlace(step, "key", key);
  step.update({{"name", Text(name)}, {"type", type}, {"data", data}});
}

} // namespace korb::packer
