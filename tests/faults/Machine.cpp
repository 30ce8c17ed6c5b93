#include "tests/faults/Machine.h"

#include <algorithm>
#include <functional>
#include <stdexcept>

#include <tlhelp32.h>

#include "tests/support/Desktop.h"
#include "tests/support/PackedProduct.h"
#include "tests/support/Process.h"

namespace korb::faults {

using namespace korb::test;

namespace {

const char *const kUserKey = "S-1-5-21-0-0-0-1000";

bool EndsWith(const std::string &text, const std::string &end) {
  return text.size() >= end.size() && _stricmp(text.c_str() + text.size() - end.size(), end.c_str()) == 0;
}

/// What is in it depends on how often and when a run was made. A shortcut holds dates of its target.
bool TellsTime(const std::string &path) {
  return EndsWith(path, "\\Install.LOG") || EndsWith(path, ".LNK") || EndsWith(path, "\\atlas-batches.txt");
}

/// A date of the last days is that of the run.
std::string DateOf(const FILETIME &time) {
  static const uint64_t recent = [] {
    FILETIME now;
    GetSystemTimeAsFileTime(&now);
    return (uint64_t{now.dwHighDateTime} << 32 | now.dwLowDateTime) - uint64_t{3 * 86400} * 10000000;
  }();
  return (uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime) > recent
             ? "now"
             : std::to_string(time.dwHighDateTime) + "." + std::to_string(time.dwLowDateTime);
}

void AddFiles(State &state, const std::string &folder, const char *pattern = "*", bool inner = true) {
  WIN32_FIND_DATAA found;
  const HANDLE find = FindFirstFileA((folder + "\\" + pattern).c_str(), &found);
  if (find == INVALID_HANDLE_VALUE)
    return;
  do {
    const std::string name = found.cFileName, path = folder + "\\" + name;
    if (name == "." || name == "..")
      continue;
    const std::string attributes = " attributes " + std::to_string(found.dwFileAttributes);
    if (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) {
      state["file " + path] = "directory" + attributes;
      if (inner)
        AddFiles(state, path);
    } else if (TellsTime(path)) {
      state["file " + path] = found.nFileSizeLow > 0 ? "something" : "empty";
    } else {
      const std::string date = DateOf(found.ftLastWriteTime);
      state["file " + path] = std::to_string(found.nFileSizeLow) + " " +
                              std::to_string(std::hash<std::string>()(FileBytes(path))) + " date " + date + attributes;
    }
  } while (FindNextFileA(find, &found));
  FindClose(find);
}

/// The key with its values, open for its own keys; null when there is none.
HKEY AddValues(State &state, HKEY root, const std::string &shown, const std::string &path) {
  HKEY key;
  if (RegOpenKeyExA(root, path.c_str(), 0, KEY_READ, &key))
    return nullptr;
  const std::string full = shown + "\\" + path;
  state["key " + full] = "key";
  static char data[100000];
  char name[300];
  for (DWORD i = 0, type;; ++i) {
    DWORD name_size = sizeof name, size = sizeof data;
    if (RegEnumValueA(key, i, name, &name_size, nullptr, &type, reinterpret_cast<BYTE *>(data), &size))
      return key;
    if (_stricmp(name, "InstallDate") != 0)
      state["value " + full + "|" + name] = std::to_string(type) + " " + std::string(data, size);
  }
}

void AddKeys(State &state, HKEY root, const std::string &shown, const std::string &path) {
  const HKEY key = AddValues(state, root, shown, path);
  char name[300];
  for (DWORD i = 0; key && RegEnumKeyA(key, i, name, sizeof name) == ERROR_SUCCESS; ++i)
    AddKeys(state, root, shown, path + "\\" + name);
  RegCloseKey(key);
}

bool IsOneOf(const std::string &name, const std::vector<const char *> &names) {
  return std::any_of(names.begin(), names.end(), [&](const char *one) { return _stricmp(name.c_str(), one) == 0; });
}

/// The root and the path below it of a key's name.
std::pair<HKEY, std::string> RootOf(const std::string &name) {
  const size_t slash = name.find('\\');
  const std::string path = slash == std::string::npos ? "" : name.substr(slash + 1);
  return {name.starts_with("HKLM") ? HKEY_LOCAL_MACHINE : HKEY_USERS, path};
}

void RemovePath(const std::string &path) {
  SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_NORMAL);
  if (!DeleteFileA(path.c_str()))
    RemoveDirectoryA(path.c_str());
}

void PutFile(const std::string &path, const std::string &what, const Backup &backup) {
  if (what.starts_with("directory")) {
    CreateDirectoryA(path.c_str(), nullptr);
    return;
  }
  const auto bytes = backup.find(path);
  if (bytes == backup.end())
    return;
  SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_NORMAL);
  WriteFileBytes(path, bytes->second);
  const size_t date = what.find(" date "), attributes = what.find(" attributes ");
  if (date == std::string::npos)
    return;
  FILETIME time{};
  if (sscanf(what.c_str() + date, " date %lu.%lu", &time.dwHighDateTime, &time.dwLowDateTime) == 2) {
    const HANDLE file = CreateFileA(path.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    SetFileTime(file, nullptr, nullptr, &time);
    CloseHandle(file);
  }
  SetFileAttributesA(path.c_str(), static_cast<DWORD>(std::stoul(what.substr(attributes + 12))));
}

void RemoveTree(HKEY root, const std::string &path) {
  HKEY key;
  if (RegOpenKeyExA(root, path.c_str(), 0, KEY_READ, &key))
    return;
  char name[300];
  while (RegEnumKeyA(key, 0, name, sizeof name) == ERROR_SUCCESS) // as long as there is a first one
    RemoveTree(root, path + "\\" + name);
  RegCloseKey(key);
  RegDeleteKeyA(root, path.c_str());
}

void RemoveKey(const std::string &name) {
  const auto [root, path] = RootOf(name);
  RemoveTree(root, path);
}

void PutKey(const std::string &name) {
  const auto [root, path] = RootOf(name);
  HKEY key;
  if (RegCreateKeyA(root, path.c_str(), &key) == ERROR_SUCCESS)
    RegCloseKey(key);
}

/// Without `what`, the value goes.
void PutValue(const std::string &name, const std::string *what) {
  const size_t bar = name.find('|');
  const auto [root, path] = RootOf(name.substr(0, bar));
  HKEY key;
  if (RegCreateKeyA(root, path.c_str(), &key) != ERROR_SUCCESS)
    return;
  const std::string value = name.substr(bar + 1);
  if (what) {
    const size_t space = what->find(' ');
    RegSetValueExA(key, value.c_str(), 0, static_cast<DWORD>(std::stoul(*what)),
                   reinterpret_cast<const BYTE *>(what->data() + space + 1),
                   static_cast<DWORD>(what->size() - space - 1));
  } else {
    RegDeleteValueA(key, value.c_str());
  }
  RegCloseKey(key);
}

void PutBack(const std::string &difference, const State &wanted, const Backup &backup) {
  const size_t kind = difference.find(' ') + 1, at = difference.find(' ', kind) + 1;
  const std::string name = difference.substr(at);
  const auto had = wanted.find(difference.substr(kind));
  switch (difference[kind]) {
  case 'f':
    had == wanted.end() ? RemovePath(name) : PutFile(name, had->second, backup);
    break;
  case 'k':
    had == wanted.end() ? RemoveKey(name) : PutKey(name);
    break;
  default:
    PutValue(name, had == wanted.end() ? nullptr : &had->second);
  }
}

} // namespace

State TakeState() {
  State state;
  AddFiles(state, "C:", "*", false);
  for (const char *folder : {"C:\\Program Files", "C:\\ProgramData", "C:\\users"})
    AddFiles(state, folder);
  AddFiles(state, "C:\\windows", "*", false);
  AddFiles(state, "C:\\windows\\temp");
  AddFiles(state, "C:\\windows\\Fonts", "korb*");
  AddFiles(state, "C:\\windows\\system32", "atlas*");
  for (const char *key :
       {"Korb Examples", "Korb", "Classes\\.kmap", "Classes\\KorbAtlas.Map", "Classes\\Other.Map",
        "Microsoft\\Windows\\CurrentVersion\\Uninstall", "Microsoft\\Windows\\CurrentVersion\\SharedDLLs",
        "Microsoft\\Windows\\CurrentVersion\\Run", "Microsoft\\Windows\\CurrentVersion\\App Paths"})
    AddKeys(state, HKEY_LOCAL_MACHINE, "HKLM", std::string("Software\\") + key);
  AddKeys(state, HKEY_LOCAL_MACHINE, "HKLM", "System\\CurrentControlSet\\Control\\Session Manager\\Environment");
  RegCloseKey(AddValues(state, HKEY_LOCAL_MACHINE, "HKLM", "System\\CurrentControlSet\\Control\\Session Manager"));
  for (const char *key : {"Korb Examples", "Korb"})
    AddKeys(state, HKEY_USERS, "HKU", std::string(kUserKey) + "\\Software\\" + key);
  return state;
}

std::string BytesOf(const std::string &what) {
  return what.substr(0, what.find(" date "));
}

std::vector<std::string> Compare(const State &before, const State &after) {
  std::vector<std::string> lines;
  for (const auto &[name, what] : before) {
    const auto now = after.find(name);
    if (now == after.end())
      lines.push_back("gone " + name);
    else if (now->second != what)
      lines.push_back((BytesOf(now->second) == BytesOf(what) ? "dated " : "other ") + name);
  }
  for (const auto &[name, what] : after)
    if (!before.count(name))
      lines.push_back("new " + name);
  return lines;
}

Backup TakeBackup(const State &state) {
  Backup backup;
  for (const auto &[name, what] : state) {
    if (!name.starts_with("file ") || what.starts_with("directory"))
      continue;
    const std::string path = name.substr(5);
    backup[path] = FileBytes(path);
  }
  return backup;
}

bool Restore(const State &wanted, const Backup &backup, State now) {
  for (int attempt = 0; attempt < 3; ++attempt) {
    std::vector<std::string> differences = Compare(wanted, now);
    if (differences.empty())
      return true;
    // What is inside goes first, and comes last.
    std::sort(differences.rbegin(), differences.rend());
    for (const std::string &difference : differences)
      if (difference.starts_with("new "))
        PutBack(difference, wanted, backup);
    std::reverse(differences.begin(), differences.end());
    for (const std::string &difference : differences)
      if (!difference.starts_with("new "))
        PutBack(difference, wanted, backup);
    now = TakeState();
  }
  return Compare(wanted, now).empty();
}

bool IsMovePending() {
  return GetFileAttributesA("C:\\windows\\wininit.ini") != INVALID_FILE_ATTRIBUTES ||
         RegGetValueA(HKEY_LOCAL_MACHINE, "System\\CurrentControlSet\\Control\\Session Manager",
                      "PendingFileRenameOperations", RRF_RT_ANY, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
}

void Restart() {
  Run("C:\\windows\\system32\\wineboot.exe -r");
}

bool WaitForPrograms(int milliseconds) {
  return WaitUntil(milliseconds, [] {
    const HANDLE all = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
    PROCESSENTRY32 one;
    one.dwSize = sizeof one;
    bool running = false;
    for (BOOL more = Process32First(all, &one); more; more = Process32Next(all, &one))
      running = running || IsOneOf(one.szExeFile, {"cmd.exe", "setup.exe", "atlas-1.exe", "atlas-2.exe", "disks.exe",
                                                   "Remove Atlas.exe", "Uninstall.exe", "notepad.exe", "wineboot.exe"});
    CloseHandle(all);
    return !running;
  });
}

} // namespace korb::faults
