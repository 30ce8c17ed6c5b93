// What an installation leaves in the shell: shortcuts and file types.
#include <filesystem>

#include "registry/RegistryKey.h"
#include "tests/support/Doctest.h"
#include "tests/support/PackedProduct.h"
#include "tests/support/Snapshot.h"
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

/// The list of what goes at uninstall.
std::string Recorded(const std::string &home) {
  const std::string record = FileBytes(home + "\\Uninstall.DAT");
  return record.substr(0, record.find("\r\n\r\n[Strings]"));
}

} // namespace

TEST_CASE("shortcuts open what they should, and are recorded unless they stay") {
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
  const std::string log = InstallLog("C:\\Links");
  CHECK_MESSAGE(log.find("\r\nDesktop Shortcut(Do A) -> " + desktop + "Do A.LNK\r\n") != std::string::npos, log);
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

// What becomes of each part of a file type is told by engine_AssociationsTest, of all of them by the round trips.
TEST_CASE("the expandable class of an extension is kept, the first time only, and given back as such") {
  RegistryKey owned;
  owned.Open(HandleOf(RegistryRoot::ClassesRoot), ".owned");
  owned.WriteString("", String("%Their%File"), RK_EXPAND);
  const auto values = [] {
    Snapshot all;
    AddKey(all, HKEY_CLASSES_ROOT, ".owned");
    return all;
  };
  const Snapshot before = values();
  REQUIRE(before.at(".owned|").starts_with("2 %Their%File"));
  PackedProduct product("[product]\nname = 'Types'\n[install]\ndirectory = 'C:\\Types'\n[[association]]\n"
                        "extension = 'owned'\nclass = 'Mine'\nverb = 'print'\ncommand = 'x'\n");
  product.Pack();
  for (int run = 1; run <= 2; ++run) {
    CAPTURE(run);
    product.Install();
    CHECK(values().at(".owned|").starts_with("1 Mine"));
    CHECK(values().at(".owned|Types Backup") == before.at(".owned|"));
  }
  UninstallQuietly("Types");
  CHECK(values() == before);
}
