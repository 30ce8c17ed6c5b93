// Records and registry values of a product that nobody installed, and that are after somebody's files.
#include <filesystem>

#include "tests/support/CleanPlace.h"
#include "tests/support/Doctest.h"
#include "tests/support/PackedProduct.h"
#include "tests/support/Uninstallation.h"
#include "tests/support/Windows64.h"

using namespace korb::test;
namespace fs = std::filesystem;

namespace {

const std::string kWork = "C:\\work"; // where crafted runs start: an everyday directory

/// A product that nobody installed: `record` is its Uninstall.DAT, null for none.
void RunCrafted(const std::string &location, const std::string &flags, const char *record) {
  fs::create_directories("C:\\Crafted\\un");
  fs::copy_file("korb.exe", "C:\\Crafted\\un\\Undo.exe", fs::copy_options::overwrite_existing);
  for (const auto &[name, value] : {std::pair<const char *, std::string>{"InstallLocation", location},
                                    {"ProductFlags", flags},
                                    {"UninstallSubdir", "un"}})
    SetRegistryText(HKEY_LOCAL_MACHINE, kUninstallKey + "Crafted", name, value);
  fs::remove("C:\\Crafted\\un\\Uninstall.DAT");
  if (record)
    WriteFileBytes("C:\\Crafted\\un\\Uninstall.DAT", record);
  fs::create_directories(kWork);
  Run("C:\\Crafted\\un\\Undo.exe /a /u:Crafted", kWork);
  CHECK(WaitForSelfRemoval());
}

} // namespace

TEST_CASE("a record that is no record deletes nothing that it does not name") {
  const CleanPlace place({"C:\\Crafted"}, {kUninstallKey + "Crafted"});
  fs::create_directories("C:\\Crafted\\kept\\empty");
  WriteFileBytes("C:\\Crafted\\kept\\file.txt", "kept");
  RegSetValueA(HKEY_CLASSES_ROOT, "Crafted\\child", REG_SZ, "kept", 4);
  RegSetValueA(HKEY_CLASSES_ROOT, "Victim\\child", REG_SZ, "kept", 4);
  RegSetValueA(HKEY_CLASSES_ROOT, "EmptyClass", REG_SZ, "", 0);
  const std::string long_line = "C:\\Crafted\\kept\\" + std::string(100000, 'x') + "\r\n~" + std::string(70000, '\\');
  const char *const records[] = {
      nullptr,
      "",
      "C:\\Crafted\\kept\\file.tx",           // cut off
      "~\r\n!\r\n~~\r\n!!\r\n~!~\r\n",        // marks without names
      "!Crafted\r\n!Crafted\\child\\\r\n!\\", // no key, or none below one
      "~C:\\\r\n~C:\r\n~\\\r\n~C:\\windows\r\n~C:\\Program "
      "Files\r\n~C:\\Crafted\\kept\r\nC:\\windows\r\nC:\\Crafted\\kept",
      "kept\\file.txt", // no full path
      "\"C:\\Crafted\\kept\\file.txt\"\r\nC:\\Crafted\\kept\\*.*\r\nC:\\Crafted\\kept\\file.txt;",
      "[Strings]\r\nC:\\Crafted\\kept\\file.txt\r\n~5\r\nC:\\Crafted\\kept\\file.txt\r\n[Associations]\r\n"
      "\\~!~Crafted~!~\\\r\n.none~!~Crafted\\~!~x\r\nC~!~Crafted~!~open\r\n"
      "Victim~!~EmptyClass~!~open",
      long_line.c_str(),
  };
  for (const char *record : records) {
    CAPTURE(std::string(record ? record : "none").substr(0, 200));
    RunCrafted("C:\\Crafted", "0", record);
    CHECK(FileBytes("C:\\Crafted\\kept\\file.txt") == "kept");
    CHECK(fs::exists("C:\\Crafted\\kept\\empty"));
    char value[9];
    LONG size = sizeof value;
    for (const char *key : {"Crafted\\child", "Victim\\child"})
      CHECK(RegQueryValueA(HKEY_CLASSES_ROOT, key, value, &size) == ERROR_SUCCESS);
    CHECK(UninstallValue("Crafted", "InstallLocation").empty());
    CHECK_FALSE(fs::exists("C:\\Crafted\\un"));
  }
}

const std::string kWholeDirectory = "1024";

/// Makes a link below C:\, or a drive if it is beside the drives; `shown_as` is something that it leads to.
void MakeLink(const std::string &target, const std::string &link, const std::string &shown_as) {
  if (fs::exists(shown_as))
    return;
  // Windows can't make one everywhere, Wine's host can. What Wine gives as handles of a program of its host is
  // anybody's: they must not be closed.
  std::string command = "z:\\bin\\ln -s " + target + " " + link;
  STARTUPINFOA startup{};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION not_ours;
  REQUIRE(CreateProcessA(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, "C:\\", &startup, &not_ours));
  for (int i = 0; i < 100 && !fs::exists(shown_as); ++i)
    Sleep(20);
  REQUIRE(fs::exists(shown_as));
}

TEST_CASE("a directory never goes whole that is not a product's, whatever it is called") {
  MakeLink("../drive_c", "../dosdevices/x:", "X:\\windows");
  MakeLink("windows", "Way", "C:\\Way\\system32");
  char buffer[MAX_PATH] = "";
  GetShortPathNameA("C:\\Program Files", buffer, sizeof buffer);
  const char *const short_name = buffer;
  REQUIRE(std::string(short_name) != "C:\\Program Files");

  const std::string guards[] = {"C:\\guard.txt",
                                "C:\\windows\\system32\\guard.txt",
                                "C:\\Program Files\\guard.txt",
                                kProgramFiles + "\\guard.txt",
                                "C:\\Beside\\guard.txt",
                                kWork + "\\deep\\guard.txt"};
  const std::string locations[] = {// Where the run stands, and what is called from there.
                                   "C:", ".", "..", "deep", "C:\\windows\\..\\Beside",
                                   // Other names of what is guarded.
                                   "C:\\\\", kProgramFiles + "\\Common Files\\..", short_name, "X:\\Program Files",
                                   "X:\\windows\\system32", "C:\\Way\\system32", "\\\\?\\C:\\Program Files"};
  for (const std::string &location : locations) {
    CAPTURE(location);
    for (const std::string &guard : guards) {
      fs::create_directories(fs::path(guard).parent_path());
      WriteFileBytes(guard, "there");
    }
    RunCrafted(location, kWholeDirectory, nullptr);
    for (const std::string &guard : guards)
      CHECK(DescribeFile(guard) != "missing");
  }
}

TEST_CASE("a directory goes whole by any of its names") {
  const CleanPlace place({"C:\\Crafted"}, {kUninstallKey + "Crafted"});
  fs::create_directories("C:\\Crafted");
  MakeLink("../drive_c", "../dosdevices/x:", "X:\\windows");
  MakeLink("Crafted", "Link", "C:\\Link");
  for (const char *location : {"X:\\Crafted", "C:\\Link", "C:\\Crafted"}) {
    CAPTURE(std::string(location));
    fs::create_directories("C:\\Crafted\\deep\\er");
    WriteFileBytes("C:\\Crafted\\deep\\mine.txt", "mine");
    RunCrafted(location, kWholeDirectory, nullptr);
    CHECK_FALSE(fs::exists("C:\\Crafted\\deep"));
  }
  CHECK_FALSE(fs::exists("C:\\Crafted"));
}
