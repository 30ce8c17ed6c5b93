// What an installation leaves in the shell: shortcuts and file types.
#include <doctest/doctest.h>

#include <filesystem>

#include "registry/RegistryKey.h"
#include "tests/support/PackedProduct.h"
#include "tests/support/Uninstallation.h"

#include <windows.h>

#include <shlobj.h>

using namespace korb;
using namespace korb::test;

namespace {

std::string ShellFolder(int csidl) {
  char path[MAX_PATH] = "";
  SHGetFolderPathA(nullptr, csidl, nullptr, 0, path);
  return path;
}

/// "target|arguments|working directory|icon,index", as the shell reads the file.
std::string DescribeLink(const std::string &path) {
  CoInitialize(nullptr);
  std::string text = "missing";
  IShellLinkA *link = nullptr;
  IPersistFile *file = nullptr;
  if (CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkA,
                       reinterpret_cast<void **>(&link)) == S_OK &&
      link->QueryInterface(IID_IPersistFile, reinterpret_cast<void **>(&file)) == S_OK &&
      file->Load(std::wstring(path.begin(), path.end()).c_str(), STGM_READ) == S_OK) {
    char target[MAX_PATH] = "", arguments[MAX_PATH] = "", directory[MAX_PATH] = "", icon[MAX_PATH] = "";
    int index = -1;
    link->GetPath(target, MAX_PATH, nullptr, SLGP_RAWPATH);
    link->GetArguments(arguments, MAX_PATH);
    link->GetWorkingDirectory(directory, MAX_PATH);
    link->GetIconLocation(icon, MAX_PATH, &index);
    text = std::string(target) + "|" + arguments + "|" + directory + "|" + icon + "," + std::to_string(index);
  }
  if (file)
    file->Release();
  if (link)
    link->Release();
  CoUninitialize();
  return text;
}

/// The key and those below it, one in brackets each, with their texts.
void AppendKey(std::string &text, HKEY parent, const std::string &name, const std::string &shown) {
  HKEY key;
  if (RegOpenKeyExA(parent, name.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS)
    return;
  text += "[" + shown + "]";
  char item[256], value[256];
  for (const char *value_name : {"", "Types Backup"}) {
    DWORD type, size = sizeof value;
    if (RegQueryValueExA(key, value_name, nullptr, &type, reinterpret_cast<BYTE *>(value), &size) == ERROR_SUCCESS)
      text += std::string(" ") + (*value_name ? "was " : "") + (type == REG_EXPAND_SZ ? "expanding " : "") +
              (size ? value : ""); // an empty one has no bytes
  }
  text += "\n";
  for (DWORD i = 0; RegEnumKeyA(key, i, item, sizeof item) == ERROR_SUCCESS; ++i)
    AppendKey(text, key, item, shown + "\\" + item);
  RegCloseKey(key);
}

std::string Classes(std::initializer_list<const char *> names) {
  std::string text;
  for (const char *name : names)
    AppendKey(text, HKEY_CLASSES_ROOT, name, name);
  return text;
}

/// The list of what goes at uninstall.
std::string Recorded(const std::string &home) {
  const std::string record = FileBytes(home + "\\Uninstall.DAT");
  return record.substr(0, record.find("\r\n\r\n[Strings]"));
}

} // namespace

TEST_CASE("shortcuts open what they should, are logged, and are recorded unless they stay") {
  PackedProduct product(ProductManifest("links"));
  product.Pack();
  product.Install();
  const std::string desktop = ShellFolder(CSIDL_DESKTOPDIRECTORY) + "\\";
  const std::string menu = ShellFolder(CSIDL_PROGRAMS) + "\\Maker\\Links\\";
  const std::string startup = ShellFolder(CSIDL_STARTUP) + "\\Sub\\My.Lnk.file";
  const std::string a = "C:\\Links\\a.exe|\"C:\\Links\\b\" %SharedDir|C:\\Links|C:\\Links\\a.ico,0";
  const std::string uninstaller = "C:\\Links\\Uninstall.exe|/u:\"Links\"|";
  CHECK(DescribeLink(desktop + "Do A.LNK") == a);
  CHECK(DescribeLink(menu + "Do A.LNK") == a);
  CHECK(DescribeLink(startup) == "C:\\Links\\b.exe||C:\\Links|C:\\Links\\b.exe,0");
  CHECK(DescribeLink(desktop + "Shortcut to c.exe.LNK") == "C:\\Links\\c.exe||C:\\Links|C:\\Links\\c.exe,0");
  CHECK(DescribeLink(desktop + "Drop it.LNK") == uninstaller + "C:\\Links|C:\\Links\\Uninstall.exe,0");
  CHECK(DescribeLink(menu + "Drop it.LNK") == uninstaller + "|C:\\Links\\Uninstall.exe,0");
  CHECK(DescribeLink("C:\\Links\\Drop it.LNK") == uninstaller + "|C:\\Links\\Uninstall.exe,0");

  CHECK(Recorded("C:\\Links") == "C:\\Links\\a.exe\r\nC:\\Links\\b.exe\r\n" + desktop + "Do A.LNK\r\n" + menu +
                                     "Do A.LNK\r\n" + startup + "\r\n" + desktop + "Drop it.LNK\r\n" + menu +
                                     "Drop it.LNK\r\nC:\\Links\\Drop it.LNK\r\n");
  CHECK(InstallLog("C:\\Links") ==
        "a.exe -> C:\\Links\\a.exe\r\nb.exe -> C:\\Links\\b.exe\r\nc.exe -> C:\\Links\\c.exe\r\n"
        "Desktop Shortcut(Do A) -> " +
            desktop + "Do A.LNK\r\nStart Menu Shortcut(Do A) -> " + menu +
            "Do A.LNK\r\nStartup Shortcut(Sub\\My.Lnk.file) -> " + startup +
            "\r\nDesktop Shortcut(Shortcut to c.exe) -> " + desktop +
            "Shortcut to c.exe.LNK\r\nDesktop Shortcut(Drop it) -> " + desktop +
            "Drop it.LNK\r\nUninstaller Shortcut -> " + menu +
            "Drop it.LNK\r\nUninstaller Shortcut -> C:\\Links\\Drop it.LNK\r\n\r\nDone\r\n\r\n");
}

TEST_CASE("a folder on everybody's desktop takes the shortcuts, and what is in its way is reported") {
  PackedProduct product(ProductManifest("group"));
  product.Pack();
  const std::string group = ShellFolder(CSIDL_COMMON_DESKTOPDIRECTORY) + "\\My Group";
  const std::string menu = ShellFolder(CSIDL_COMMON_PROGRAMS) + "\\Group\\A.LNK";
  WriteFileBytes(group, "in the way");
  product.Install();
  const std::string log = InstallLog("C:\\Group");
  CHECK(log.find("Failed to create directory " + group + ": ") != std::string::npos);
  CHECK(log.find("Failed: " + group + "\\A.LNK\r\n") != std::string::npos);
  CHECK(log.find("Start Menu Shortcut(A) -> " + menu + "\r\n") != std::string::npos);
  CHECK(Recorded("C:\\Group") == "~" + group + "\r\n");

  std::filesystem::remove(group);
  std::filesystem::remove("C:\\Group\\Install.LOG");
  product.Install();
  CHECK(DescribeLink(group + "\\A.LNK") == "C:\\Group\\a.exe||C:\\Group|C:\\Group\\a.exe,0");
  CHECK(InstallLog("C:\\Group").find("Desktop Folder Shortcut(A) -> " + group + "\\A.LNK\r\n") != std::string::npos);
  CHECK(Recorded("C:\\Group") == "~" + group + "\r\n");
}

// Which texts are kept and what goes is told by engine_AssociationsTest; here the system's own keys are asked.
TEST_CASE("file types are the system's while the product is there, and what they were after it") {
  PackedProduct product(ProductManifest("types"));
  RegistryKey owned;
  owned.Open(HandleOf(RegistryRoot::ClassesRoot), ".owned");
  owned.WriteString("", String("%Their%File", sizeof "%Their%File"), RK_EXPAND);
  product.Pack();
  const auto classes = [] { return Classes({".free", ".owned", "FreeFile"}); };
  for (int run = 1; run <= 2; ++run) {
    CAPTURE(run);
    product.Install();
    CHECK(classes() == "[.free] FreeFile\n"
                       "[.owned] FreeFile was expanding %Their%File\n"
                       "[FreeFile] A free file\n"
                       "[FreeFile\\DefaultIcon] C:\\Types\\a.exe,1\n"
                       "[FreeFile\\shell] open\n"
                       "[FreeFile\\shell\\open] &Open it\n"
                       "[FreeFile\\shell\\open\\command] \"C:\\Types\\a.exe\" \"%1\"\n"
                       "[FreeFile\\shell\\print] \n"
                       "[FreeFile\\shell\\print\\command] C:\\print.exe\n");
    CHECK(InstallLog("C:\\Types").find("Failed to associate") == std::string::npos);
    CHECK(FileBytes("C:\\Types\\Uninstall.DAT")
              .ends_with("\r\n\r\n[Associations]\r\n.free~!~FreeFile~!~open\r\n.owned~!~FreeFile~!~print\r\n"));
    for (const bool of_user : {false, true})
      CHECK(RegistryKey::SoftwareKeyExists("Maker\\Types", of_user));
  }
  UninstallQuietly("Types");
  CHECK(classes() == "[.owned] expanding %Their%File\n");
}
