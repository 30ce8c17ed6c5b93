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

/// A product that nobody installed.
struct Crafted {
  std::string location = "C:\\Crafted", flags = "0";
  const char *record = nullptr; ///< its Uninstall.DAT; null for none
  std::string directory = kWork;
  std::vector<std::pair<std::string, std::string>> values = {}; ///< of its key, and in place of those above

  /// Uninstalls it quietly, from `directory`.
  void Uninstall() const {
    fs::create_directories("C:\\Crafted\\un");
    fs::remove("C:\\Crafted\\un\\Undo.exe");
    fs::copy_file("korb.exe", "C:\\Crafted\\un\\Undo.exe");
    const std::string key = kUninstallKey + "Crafted";
    RegDeleteKeyA(HKEY_LOCAL_MACHINE, key.c_str());
    SetRegistryText(HKEY_LOCAL_MACHINE, key, "InstallLocation", location);
    SetRegistryText(HKEY_LOCAL_MACHINE, key, "ProductFlags", flags);
    SetRegistryText(HKEY_LOCAL_MACHINE, key, "UninstallSubdir", "un");
    for (const auto &[name, value] : values)
      SetRegistryText(HKEY_LOCAL_MACHINE, key, name, value);
    fs::remove("C:\\Crafted\\un\\Uninstall.DAT");
    if (record)
      WriteFileBytes("C:\\Crafted\\un\\Uninstall.DAT", record);
    fs::create_directories(kWork);
    CHECK(Run("C:\\Crafted\\un\\Undo.exe /a /u:Crafted", directory) == DWORD{1});
    CHECK(WaitForSelfRemoval());
  }
};

/// Files that no run may take.
class Guards {
public:
  explicit Guards(std::vector<std::string> paths) : paths_(std::move(paths)) {
    for (const std::string &path : paths_) {
      fs::create_directories(fs::path(path).parent_path());
      WriteFileBytes(path, "there");
    }
  }
  void Check() const {
    for (const std::string &path : paths_)
      CHECK(DescribeFile(path) != "missing");
  }

private:
  std::vector<std::string> paths_;
};

} // namespace

TEST_CASE("a record that is no record deletes nothing that it does not name") {
  const CleanPlace place({"C:\\Crafted"}, {kUninstallKey + "Crafted"});
  fs::create_directories("C:\\Crafted\\kept\\empty");
  WriteFileBytes("C:\\Crafted\\kept\\file.txt", "kept");
  RegSetValueA(HKEY_CLASSES_ROOT, "Crafted\\child", REG_SZ, "kept", 4);
  RegSetValueA(HKEY_CLASSES_ROOT, "Victim\\child", REG_SZ, "kept", 4);
  const std::string long_line = "C:\\Crafted\\kept\\" + std::string(100000, 'x') + "\r\n~" + std::string(70000, '\\');
  // Names of a length that the system takes for none.
  const std::string empty_name = "!Crafted\\" + std::string(65536, 'x') + "\r\n[Strings]\r\n[Associations]\r\n." +
                                 std::string(65535, 'x') + "~!~EmptyClass~!~open\r\n.x~!~" + std::string(65536, 'x') +
                                 "~!~open";
  const char *const records[] = {
      nullptr,
      "",
      "C:\\Crafted\\kept\\file.tx",           // cut off
      "~\r\n!\r\n~~\r\n!!\r\n~!~\r\n",        // marks without names
      "!Crafted\r\n!Crafted\\child\\\r\n!\\", // no key, or none below one
      "~C:\\\r\n~C:\r\n~\\\r\n~C:\\windows\r\n~C:\\Program "
      "Files\r\n~C:\\Crafted\\kept\r\nC:\\windows\r\nC:\\Crafted\\kept",
      // No full path.
      "deep\\guard.txt\r\nC:deep\\guard.txt\r\n\\work\\deep\\guard.txt\r\n..\\work\\deep\\guard.txt\r\n~deep\\empty",
      "\"C:\\Crafted\\kept\\file.txt\"\r\nC:\\Crafted\\kept\\*.*\r\nC:\\Crafted\\kept\\file.txt;",
      "[Strings]\r\nC:\\Crafted\\kept\\file.txt\r\n~5\r\nC:\\Crafted\\kept\\file.txt\r\n[Associations]\r\n"
      "\\~!~Crafted~!~\\\r\n.none~!~Crafted\\~!~x\r\nC~!~Crafted~!~open\r\n"
      "Victim~!~EmptyClass~!~open",
      long_line.c_str(),
      empty_name.c_str(),
  };
  const Guards guards({kWork + "\\deep\\guard.txt"});
  fs::create_directories(kWork + "\\deep\\empty");
  for (const char *record : records) {
    RegSetValueA(HKEY_CLASSES_ROOT, "EmptyClass", REG_SZ, "", 0);
    CAPTURE(std::string(record ? record : "none").substr(0, 200));
    Crafted{.record = record}.Uninstall();
    guards.Check();
    CHECK(fs::exists(kWork + "\\deep\\empty"));
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
  const std::string short_name = buffer;
  REQUIRE(short_name != "C:\\Program Files");

  // Folders of the user and of the system where nobody has them by default.
  const std::string shell = "Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders";
  SetRegistryText(HKEY_CURRENT_USER, shell, "Personal", "C:\\own\\papers");
  SetRegistryText(HKEY_LOCAL_MACHINE, "Software\\Microsoft\\Windows\\CurrentVersion", "CommonFilesDir",
                  kProgramFiles + "\\Common Files");
  struct Row {
    std::string location, directory = kWork;
  };
  const Row rows[] = {
      // Where the run stands, and what is called from there.
      {"C:"},
      {"."},
      {".."},
      {"deep"},
      {"C:", "X:\\Program Files"},
      {"X:", "X:\\windows\\system32"},
      {".", "C:\\Way"},
      {"Common Files", kProgramFiles},
      {"C:\\windows\\..\\Beside"},
      // Other names of what is guarded.
      {"C:\\\\"},
      {"C:\\Beside\\.."},
      {kProgramFiles + "\\Common Files\\.."},
      {short_name},
      {short_name + "\\.\\"},
      {"X:\\Program Files"},
      {"X:" + short_name.substr(2)},
      {"X:\\windows\\system32"},
      {"C:\\Way\\system32"},
      {"C:\\Way\\..\\Program Files"},
      {"C:\\Beside/../Program Files"},
      {"\\\\?\\C:\\Program Files"},
      {"\\\\.\\C:\\Program Files"},
      // What holds it, and what belongs to all products, or to the user.
      {kProgramFiles + "\\Common Files"},
      {"X:" + kProgramFiles.substr(2) + "\\Common Files"},
      {"C:\\own\\papers"},
      {"C:\\own"},
      {"C:\\users"},
      // What no path can be.
      {std::string(1 << 20, 'x')},
      {"C:\\Beside\\" + std::string(40000, '.')},
      {"C:" + std::string(5000, '\\')},
  };
  for (const Row &row : rows) {
    CAPTURE(row.location.substr(0, 200));
    CAPTURE(row.directory);
    const Guards guards({"C:\\guard.txt", "C:\\windows\\system32\\guard.txt", "C:\\Program Files\\guard.txt",
                         kProgramFiles + "\\guard.txt", kProgramFiles + "\\Common Files\\guard.txt",
                         "C:\\own\\papers\\guard.txt", "C:\\users\\guard.txt", "C:\\Beside\\guard.txt",
                         kWork + "\\deep\\guard.txt"});
    Crafted{.location = row.location, .flags = kWholeDirectory, .directory = row.directory}.Uninstall();
    guards.Check();
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
    Crafted{.location = location, .flags = kWholeDirectory}.Uninstall();
    CHECK_FALSE(fs::exists("C:\\Crafted\\deep"));
  }
  CHECK_FALSE(fs::exists("C:\\Crafted"));
}

TEST_CASE("no value of a product's key reaches what is not a product's") {
  const CleanPlace place({"C:\\Crafted"}, {kUninstallKey + "Crafted"});
  const std::string long_text(1 << 20, 'x');
  const std::vector<std::pair<std::string, std::string>> rows[] = {
      {{"ProductFonts", R"("Face" "..\..\guard.txt" "Face" "..\..\work\deep\guard.txt" "Face" "C:\guard.txt")"}},
      {{"SharedFiles", R"("deep\guard.txt";"C:deep\guard.txt";"..\guard.txt^";"\guard.txt")"}},
      {{"ProductRegistry", "Microsoft"}},
      {{"ProductRegistry", "\\Microsoft\\\\\\Windows\\CurrentVersion\\"}},
      {{"ProductRegistry", "classes"}},
      {{"ProductStartMenu", R"(..\..\..\..\..\..)"},
       {"SharedPath", ".."},
       {"UninstallSubdir", R"(..\..\..\work\deep)"}},
      // Lines of batches.
      {{"InstallLocation", R"(C:\Crafted" & del C:\guard.txt & rem ")"}},
      {{"InstallLocation", "C:\\Crafted\r\ndel C:\\guard.txt\r\n"}, {"UninstallBatch1", "rem"}},
      {{"UninstallSubdir", R"(un" & del C:\guard.txt & rem ")"}},
      {{"UninstallSubdir", "un\"\r\ndel C:\\guard.txt"}},
      {{"InstallLocation", "C:\\Crafted & del C:\\guard.txt"}, {"UninstallBatch2", "rem"}},
      // Numbers, formats and lengths.
      {{"ProductFlags", "-9223372036854775808"}, {"TitleColor", "red"}, {"ShortcutMode", "1e999"}, {"MonoColor", "-1"}},
      {{"ProductFlags", "99999999999999999999999"}, {"DisplayName", "%s%n%d%999999999s"}, {"DisplayTitle", "%s%s"}},
      {{"DisplayName", long_text},
       {"DisplayTitle", long_text},
       {"SharedPath", long_text},
       {"UninstallSubdir", long_text}},
      {{"ProductFonts", '"' + long_text}, {"SharedFiles", '"' + long_text + "^\""}, {"ProductStartMenu", long_text}},
      {{"ProductFlags", long_text}, {"ProductRegistry", long_text}, {"TitleColor", long_text}},
  };
  const std::string guard_key = "Software\\Microsoft\\Guard";
  for (const auto &row : rows) {
    CAPTURE(row.front().first);
    CAPTURE(row.front().second.substr(0, 200));
    const Guards guards({"C:\\guard.txt", kWork + "\\deep\\guard.txt"});
    SetRegistryText(HKEY_LOCAL_MACHINE, guard_key, "there", "yes");
    Crafted{.values = row}.Uninstall();
    guards.Check();
    CHECK(MachineValue(guard_key, "there") == "yes");
    HKEY types;
    CHECK(RegOpenKeyA(HKEY_LOCAL_MACHINE, "Software\\Classes\\.txt", &types) == ERROR_SUCCESS);
    RegCloseKey(types);
  }
}
