// What an installation leaves in the machine beside its files, what machines differ in, and what refuses.
#include <filesystem>

#include "tests/support/CleanPlace.h"
#include "tests/support/Doctest.h"
#include "tests/support/PackedProduct.h"
#include "tests/support/Windows64.h"

using namespace korb::test;

namespace {

const std::string kWindowsKey = "Software\\Microsoft\\Windows\\CurrentVersion\\";
const std::string kFonts = "C:\\windows\\Fonts\\";

std::string Product(const std::string &name, const std::string &more = "") {
  return "[product]\nname = \"" + name + "\"\n" + more + "[install]\ndirectory = 'C:\\" + name +
         "'\ncommon_directory = 'Counted'\n[file_defaults]\ndate = 2005-05-05T05:05:04\n[options]\n";
}

std::string File(const std::string &lines) {
  return "[[file]]\ncontents = \"new\"\n" + lines + "\n";
}

/// The words of a system error as they stand in a report.
std::string Words(DWORD error) {
  char text[200] = "";
  FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, error, 0, text, sizeof text,
                 nullptr);
  return text;
}

struct System {
  const char *version, *word, *name; ///< as Wine, a manifest and the program call it
};
const std::vector<System> kSystems = [] {
  std::vector<System> systems = {{"win95", "95", "Windows 95"},
                                 {"win98", "98", "Windows 98 A"},
                                 {"winme", "me", "Windows ME"},
                                 {"nt40", "nt4", "Windows NT 4.0 Service Pack 6a"},
                                 {"win2k", "2000", "Windows 2000 Service Pack 4"},
                                 {"winxp", "xp", "Windows XP Service Pack 3"},
                                 {"win7", "other", "Windows NT 6.1 Service Pack 1"},
                                 {"win10", "other", "Windows NT 10.0"}};
  // There is no 32-bit one. A Wine that has no word for it runs as the machine's own, which is Windows 10.
  if (kWindows64)
    systems.push_back({"win11", "other", "Windows NT 10.0"});
  return systems;
}();

/// A key below which nothing that lasts can be made.
void MakeVolatileKey(HKEY root, const char *path) {
  HKEY key;
  REQUIRE(RegCreateKeyExA(root, path, 0, nullptr, REG_OPTION_VOLATILE, KEY_ALL_ACCESS, nullptr, &key, nullptr) ==
          ERROR_SUCCESS);
  RegCloseKey(key);
}

/// The key becomes a link to one that can't be made, below the volatile one.
void MakeDeadLink(const std::string &path) {
  RegDeleteKeyA(HKEY_LOCAL_MACHINE, path.c_str());
  HKEY key;
  REQUIRE(RegCreateKeyExA(HKEY_LOCAL_MACHINE, path.c_str(), 0, nullptr, REG_OPTION_CREATE_LINK, KEY_ALL_ACCESS, nullptr,
                          &key, nullptr) == ERROR_SUCCESS);
  const wchar_t target[] = L"\\Registry\\Machine\\Software\\Refusing\\Counts";
  RegSetValueExW(key, L"SymbolicLinkValue", 0, REG_LINK, reinterpret_cast<const BYTE *>(target),
                 sizeof target - sizeof(wchar_t));
  RegCloseKey(key);
}

} // namespace

TEST_CASE("libraries register themselves and fonts are made known, the broken ones to no harm") {
  PackedProduct product(ProductManifest("register"));
  for (const char *file : {"atlas_com.dll", "atlas_core.dll", "korb-blocks.ttf"})
    product.Write(file, FileBytes(file));
  product.PackSpoiled([](auto &) {}); // the packer knows that one font is none
  product.Install();
  const std::string log = InstallLog("C:\\Register"), library = "Registering COM File \"C:\\windows\\system32\\";
  CHECK(log == library + "atlas_com.dll\"...OK\r\n" + library + "no library.dll\"...LoadLibrary() Failed\r\n" +
                   library + "never.dll\"...LoadLibrary() Failed\r\n" + library +
                   "atlas_core.dll\"...GetProcAddress() Failed\r\n\r\nFailed: " + kFonts + "no font.ttf\r\n" +
                   log.substr(log.rfind("no font.ttf\r\n") + 13));
  HKEY mark;
  CHECK(RegOpenKeyA(HKEY_LOCAL_MACHINE, "Software\\Korb Examples\\Atlas registered", &mark) == ERROR_SUCCESS);
  CHECK(std::filesystem::exists(kFonts + "no font.ttf"));
  CHECK(RemoveFontResourceA((kFonts + "korb-blocks.ttf").c_str()) == FALSE); // it is known by its bare name
}

TEST_CASE("one installer finds the folders and names the system on every version of it") {
  // Every folder that a batch is told, with the registry's answers and without them.
  PackedProduct product(ProductManifest("folders"));
  for (const bool empty : {false, true}) {
    if (empty) {
      RegDeleteKeyA(HKEY_CURRENT_USER, (kWindowsKey + "Explorer\\Shell Folders").c_str());
      RegDeleteKeyA(HKEY_LOCAL_MACHINE, (kWindowsKey + "Explorer\\Shell Folders").c_str());
    }
    for (const System &row : kSystems) {
      const CleanPlace place({"C:\\Folders", "C:\\windows\\system32\\korb.txt", "C:\\windows\\Fonts\\korb.txt"});
      CAPTURE(row.version);
      const std::string program = std::string(row.version) + ".exe";
      SetWindowsVersion(program, row.version);
      product.Pack(program);
      product.Install();
      CHECK(InstallLog("C:\\Folders") == std::string(row.name) + "\r\n\r\n");
      const std::string user = "C:\\users\\root\\", all = "C:\\users\\Public\\";
      const std::string startup = "C:\\ProgramData\\Microsoft\\Windows\\Start Menu\\Programs\\StartUp";
      const std::string programs = " C:\\windows\\Media C:\\windows\\INF\r\n" + kProgramFiles + " " + kProgramFiles +
                                   "\\Common Files C:\\windows\\system32\r\n";
      CHECK(FileBytes("C:\\folders.txt") ==
            (empty ? "C:\\windows\\Desktop C:\\windows\\Desktop\r\nC:\\windows\\Favorites c:\\My Documents\r\n"
                     "C:\\windows\\Start Menu\\Programs\\StartUp" +
                         programs
                   : user + "Desktop " + all + "Desktop\r\n" + user + "Favorites " + user + "Documents\r\n" + startup +
                         programs));
      CHECK(FileBytes("C:\\windows\\system32\\korb.txt") == "new");
      CHECK(FileBytes("C:\\windows\\Fonts\\korb.txt") == "new");
    }
  }
}

TEST_CASE("an installer that excludes a system refuses that one alone, in silence where it is told to ask nothing") {
  for (const System &system : kSystems)
    for (const bool others : {false, true}) {
      const CleanPlace place({"C:\\Picky"});
      CAPTURE(system.version);
      CAPTURE(others);
      std::string excluded;
      for (const System &other : kSystems)
        if ((std::string(other.word) != system.word) == others)
          excluded += std::string(excluded.empty() ? "'" : ", '") + other.word + "'";
      PackedProduct product(Product("Picky", "excluded_platforms = [" + excluded + "]\n") + "uninstall = false\n" +
                            File("name = 'a.txt'"));
      const std::string program = std::string(system.version) + ".exe";
      SetWindowsVersion(program, system.version);
      product.Pack(program);
      product.Install();
      CHECK(std::filesystem::exists("C:\\Picky") == others);
    }
}

TEST_CASE("whatever refuses is reported in its own words, and the rest is installed") {
  const CleanPlace place({"C:\\Refused", "E:\\large"});
  MakeVolatileKey(HKEY_LOCAL_MACHINE, "Software\\Refusing");
  MakeVolatileKey(HKEY_CLASSES_ROOT, "RefusingFile");
  MakeDeadLink(kWindowsKey + "SharedDLLs");
  std::filesystem::create_directories("C:\\Refused\\KORBBAT.BAT"); // no batch can be written
  std::filesystem::create_directories("C:\\Refused\\Uninstall.DAT");
  WriteFileBytes("C:\\Refused\\file", "in the way");
  PackedProduct product(ProductManifest("refused"));
  product.Write("large", std::string(500000, 'x'));
  product.Pack();
  REQUIRE(std::filesystem::exists("E:\\"));
  product.Install();
  CHECK(FileBytes("C:\\Refused\\last.txt") == "new");
  CHECK(FileBytes("C:\\Refused\\file") == "in the way");
  CHECK_FALSE(std::filesystem::exists("C:\\refused-ran"));
  const std::string no_batch = "C:\\Refused\\KORBBAT.BAT could not be run: " + Words(ERROR_ACCESS_DENIED) + "\r\n";
  CHECK(InstallLog("C:\\Refused") ==
        no_batch + no_batch + "\r\nNo directory: C:\\Refused\\file\r\n" + Words(ERROR_DIRECTORY) +
            "\r\nNot installed: C:\\Refused\\file\\a.txt\r\n\r\n" + "Failed: E:\\large\r\n" + Words(ERROR_DISK_FULL) +
            "\r\n" + "Failed: " + kProgramFiles + "\\Common Files\\Counted\\missing\\b.dat\r\n" +
            Words(ERROR_PATH_NOT_FOUND) +
            "\r\nRegistry error: unable to increment shared file reference counts.\r\n\r\n"
            "Error creating registry keys:\r\nRefusing\\Key\r\n\r\n"
            "Failed to associate file type:  \".refuse\".\r\n\r\n" +
            "Failed: C:\\Refused\\Uninstall.DAT\r\n" + Words(ERROR_ACCESS_DENIED) + "\r\n");
}

TEST_CASE("a run that is cut off harms no file but the one that it writes") {
  constexpr int kFiles = 24;
  const std::string before(300000, 'o'), after(300001, 'n');
  std::string manifest = Product("Cut") + "packed_payload = false\n";
  const auto path = [](int i) { return "C:\\Cut\\file" + std::to_string(i); };
  for (int i = 0; i < kFiles; ++i)
    manifest += "[[file]]\nsource = 'data'\nname = 'file" + std::to_string(i) + "'\n";
  PackedProduct product(manifest);
  product.Write("data", after);
  product.Pack();
  const CleanPlace place({"C:\\Cut"});
  std::filesystem::create_directories("C:\\Cut");
  int cut_short = 0;
  for (const int at : {0, 1, 7, 15, 22}) {
    CAPTURE(at);
    for (int i = 0; i < kFiles; ++i)
      WriteFileBytes(path(i), before);
    {
      Process setup = product.Start("/a");
      while (std::filesystem::file_size(path(at)) == before.size() && !setup.Wait(0)) {
      }
    } // ends the program
    int old = 0, done = 0, broken = 0;
    for (int i = 0; i < kFiles; ++i) {
      const std::string bytes = FileBytes(path(i));
      bytes == before ? ++old : bytes == after ? ++done : ++broken;
    }
    CHECK(done >= at);
    CHECK(broken <= 1);
    cut_short += old > 0;
  }
  CHECK(cut_short > 0);
}
