#include "tests/support/Snapshot.h"

#include <filesystem>
#include <functional>

#include "tests/support/PackedProduct.h"
#include "tests/support/Windows64.h"

namespace korb::test {

namespace {

std::string DescribeEntry(const std::filesystem::directory_entry &entry) {
  const std::string path = entry.path().string();
  if (entry.is_directory()) // its date is that of the last change in it
    return "directory " + std::to_string(GetFileAttributesA(path.c_str()));
  const std::string bytes = FileBytes(path);
  return DescribeFile(path) + " " + std::to_string(bytes.size()) + " " +
         std::to_string(std::hash<std::string>()(bytes));
}

void AddValues(Snapshot &all, HKEY key, const std::string &path) {
  std::string data(100000, '\0');
  char name[256];
  for (DWORD i = 0, type;; ++i) {
    DWORD name_size = sizeof name, size = static_cast<DWORD>(data.size());
    if (RegEnumValueA(key, i, name, &name_size, nullptr, &type, reinterpret_cast<BYTE *>(data.data()), &size))
      return;
    all[path + "|" + name] = std::to_string(type) + " " + data.substr(0, size);
  }
}

} // namespace

void AddKey(Snapshot &all, HKEY root, const std::string &path, REGSAM view) {
  HKEY key;
  if (RegOpenKeyExA(root, path.c_str(), 0, KEY_READ | view, &key))
    return;
  all[path] = "key";
  AddValues(all, key, path);
  char name[256];
  for (DWORD i = 0; RegEnumKeyA(key, i, name, sizeof name) == ERROR_SUCCESS; ++i)
    AddKey(all, root, path.empty() ? name : path + "\\" + name, view);
  RegCloseKey(key);
}

void AddFolder(Snapshot &all, const std::string &path) {
  const RealFiles real;
  const auto options = std::filesystem::directory_options::skip_permission_denied;
  for (std::filesystem::recursive_directory_iterator it(path, options), end; it != end; ++it) {
    if (it->path() == "C:\\test" || it->path() == std::filesystem::temp_directory_path().parent_path())
      it.disable_recursion_pending();
    else
      all[it->path().string()] = DescribeEntry(*it);
  }
}

Snapshot TakeSnapshot() {
  Snapshot all;
  AddFolder(all, "C:\\");
  AddKey(all, HKEY_LOCAL_MACHINE, "", KEY_WOW64_64KEY);
  AddKey(all, HKEY_USERS, "", KEY_WOW64_64KEY);
  return all;
}

std::vector<std::string> Differences(const Snapshot &before, const Snapshot &after) {
  std::vector<std::string> lines;
  for (const auto &[name, what] : before) {
    const auto now = after.find(name);
    if (now == after.end())
      lines.push_back("gone " + name);
    else if (now->second != what)
      lines.push_back("other " + name);
  }
  for (const auto &[name, what] : after)
    if (!before.count(name))
      lines.push_back("new " + name);
  return lines;
}

} // namespace korb::test
