#include "tests/support/MemoryMachine.h"

#include <algorithm>
#include <cstdlib>

#include "engine/SelfRegistration.h"
#include "files/DeferredFiles.h"
#include "files/Directories.h"
#include "files/FileInfo.h"
#include "registry/RegistryKey.h"
#include "system/PathVariables.h"
#include "ui/Progress.h"
#include "ui/Questions.h"

namespace korb {

namespace {

test::MemoryMachine *the_machine = nullptr;

std::string Below(RegistryHandle root, const std::string &path) {
  switch (static_cast<RegistryRoot>(reinterpret_cast<uintptr_t>(root))) {
  case RegistryRoot::ClassesRoot:
    return path;
  case RegistryRoot::LocalMachine:
    return "machine\\" + path;
  default:
    return "user\\" + path;
  }
}

bool IsBelow(const std::string &path, const std::string &key) {
  return path.size() > key.size() && path[key.size()] == '\\' &&
         text_compare_no_case(path.c_str(), key.c_str(), static_cast<int32_t>(key.size())) == 0;
}

void MakeKey(const std::string &path) {
  for (size_t at = path.find('\\'); at != path.npos; at = path.find('\\', at + 1))
    the_machine->keys[path.substr(0, at)];
  the_machine->keys[path];
}

DeleteStatus Delete(const std::string &path) {
  if (the_machine->keys.count(path) == 0)
    return DELETE_REFUSED;
  std::erase_if(the_machine->keys, [&](const auto &key) { return key.first == path || IsBelow(key.first, path); });
  return DELETE_DONE;
}

test::RegistryText *Find(const String &path, const char *name) {
  auto &values = the_machine->keys[path.c_str()];
  const auto found = values.find(name);
  return found == values.end() ? nullptr : &found->second;
}

} // namespace

namespace test {

MemoryMachine::MemoryMachine() {
  the_machine = this;
}

MemoryMachine::~MemoryMachine() {
  the_machine = nullptr;
}

void MemoryMachine::Set(const std::string &path, const std::string &name, const std::string &text, bool expands) {
  MakeKey(path);
  keys[path][name] = {text, expands};
}

std::string MemoryMachine::Registry() const {
  std::string all;
  for (const auto &[path, values] : keys) {
    all += "[" + path + "]";
    for (const auto &[name, value] : values)
      all += " " + (name.empty() ? "" : name + "=") + (value.expands ? "%" : "") + value.text;
    all += "\n";
  }
  return all;
}

} // namespace test

// Keys are told by their paths; a handle only says that one is open.

RegistryKey::RegistryKey() = default;
RegistryKey::~RegistryKey() = default;

KeyOpened RegistryKey::Open(RegistryHandle root, const char *subkey, RegistryOptions options) {
  const std::string path = Below(root, subkey);
  const bool exists = the_machine->keys.count(path) != 0;
  if (the_machine->refuses_keys || (!exists && (options & RK_OPEN_ONLY)))
    return KEY_NOT_OPENED;
  MakeKey(path);
  path_stack_.append(current_path_);
  current_path_ = path.c_str();
  current_key_ = root;
  return exists ? KEY_OPENED : KEY_CREATED;
}

KeyOpened RegistryKey::OpenSoftware(const char *path, bool current_user, RegistryOptions options) {
  return Open(SoftwareRoot(current_user), (std::string("Software\\") + path).c_str(), options);
}

KeyOpened RegistryKey::OpenChild(const char *subkey, RegistryOptions options) {
  return Open(HandleOf(RegistryRoot::ClassesRoot), (std::string(current_path_) + "\\" + subkey).c_str(), options);
}

void RegistryKey::Close() {
  current_path_ = path_stack_.take_at(path_stack_.count - 1);
}

bool RegistryKey::ValueExists(const char *name) const {
  return Find(current_path_, name) != nullptr;
}

int32_t RegistryKey::SubKeyCount() const {
  const std::string key(current_path_);
  return static_cast<int32_t>(std::count_if(the_machine->keys.begin(), the_machine->keys.end(), [&](const auto &one) {
    return IsBelow(one.first, key) && one.first.find('\\', key.size() + 1) == std::string::npos;
  }));
}

void RegistryKey::ReadString(String &text, const char *name, const char *fallback, RegistryOptions) const {
  const auto *value = Find(current_path_, name);
  text = value ? value->text.c_str() : fallback;
}

int32_t RegistryKey::ReadNumber(const char *name, int32_t fallback, RegistryOptions) const {
  const auto *value = Find(current_path_, name);
  return value ? atoi(value->text.c_str()) : fallback;
}

RegistryOptions RegistryKey::KindOption(const char *name) const {
  const auto *value = Find(current_path_, name);
  return value && value->expands ? RK_EXPAND : RK_NONE;
}

bool RegistryKey::WriteString(const char *name, const String &text, RegistryOptions options) {
  if ((options & RK_DELETE_EMPTY) && text.is_empty())
    return DeleteValue(name);
  the_machine->Set(std::string(current_path_), name, text.c_str(), (options & RK_EXPAND) != 0);
  return true;
}

bool RegistryKey::WriteNumber(const char *name, int32_t number, RegistryOptions options) {
  if ((options & RK_DELETE_EMPTY) && number == 0)
    return DeleteValue(name);
  the_machine->Set(std::string(current_path_), name, std::to_string(number));
  return true;
}

bool RegistryKey::DeleteValue(const char *name) {
  return the_machine->keys[current_path_.c_str()].erase(name) != 0;
}

DeleteStatus RegistryKey::DeleteChild(const char *subkey, RegistryOptions) {
  return Delete(std::string(current_path_) + "\\" + subkey);
}

DeleteStatus RegistryKey::DeleteKey(RegistryHandle root, const char *path, RegistryOptions) {
  return std::string(path).find('\\') == std::string::npos ? DELETE_NO_KEY : Delete(Below(root, path));
}

DeleteStatus RegistryKey::DeleteKeyIn(RegistryHandle root, const char *parent, const char *child, RegistryOptions) {
  const std::string above(parent);
  return *child == '\0' ? DELETE_NO_KEY : Delete(Below(root, above.empty() ? child : above + "\\" + child));
}

// Calls about files.

// Nothing shows the course.
void StartPhase() {}
void SetProgress(int32_t) {}
void SetStepTextArgs(const char *, const FormatArgs &) {}

void ExpandPathVariables(String &text) {
  text.replace("%InstallDir%", "C:\\App");
}

bool QuietDirectoryExists(const char *path) {
  return the_machine->files.count(path) != 0;
}

bool FileExists(const char *path) {
  return the_machine->files.count(path) != 0;
}

bool DeleteOrSchedule(const char *path, DeleteOptions) {
  the_machine->calls.push_back(std::string("delete ") + path);
  return the_machine->held.count(path) == 0 && the_machine->files.erase(path) != 0;
}

bool RemoveEmptyDirectory(const char *path) {
  const std::string directory(path);
  auto &files = the_machine->files;
  const auto inside = files.upper_bound(directory + "\\");
  return (inside == files.end() || !IsBelow(*inside, directory)) && files.erase(directory) != 0;
}

void UnregisterServer(const char *path) {
  the_machine->calls.push_back(std::string("unregister ") + path);
}

bool MayRemove(uint64_t, int32_t, int32_t, const String &name) {
  the_machine->calls.push_back(std::string("ask ") + name.c_str());
  return the_machine->says_yes;
}

} // namespace korb
