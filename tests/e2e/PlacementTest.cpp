// Where an installation puts its files, which ones, and over what.
#include <filesystem>
#include <map>
#include <memory>

#include "tests/support/CleanPlace.h"
#include "tests/support/Doctest.h"
#include "tests/support/HeldFile.h"
#include "tests/support/PackedProduct.h"
#include "tests/support/Windows64.h"

using namespace korb::test;

namespace {

const std::string kShared = kProgramFiles + "\\Common Files\\Placed\\";
const std::string kSystem = "C:\\windows\\system32\\";
const std::string kUninstallKey = "Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\";
const std::string kCounts = "Software\\Microsoft\\Windows\\CurrentVersion\\SharedDLLs";

std::string Product(const std::string &name, const std::string &options = "") {
  return "[product]\nname = \"" + name + "\"\n[install]\ndirectory = 'C:\\" + name +
         "'\ncommon_directory = 'Placed'\n[uninstall]\ndirectory = \"un\"\n[options]\nalways_log = true\n" + options +
         "[texts]\ninstalled_caption = \"Done\"\nfile_failed = \"Failed:\"\n"
         "[file_defaults]\ndate = 2005-05-05T05:05:04\n";
}

std::string File(const std::string &lines) {
  return "[[file]]\ncontents = \"new\"\n" + lines + "\n";
}

void SetDate(const std::string &path, WORD year) {
  const SYSTEMTIME local = {year, 5, 0, 5, 5, 5, 4, 0};
  FILETIME time, universal;
  SystemTimeToFileTime(&local, &time);
  LocalFileTimeToFileTime(&time, &universal);
  const HANDLE file = CreateFileA(path.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  SetFileTime(file, nullptr, nullptr, &universal);
  CloseHandle(file);
}

std::string Contents(const std::string &path) {
  return std::filesystem::exists(path) ? FileBytes(path) : "none";
}

/// Waits until the system has carried out what was left to its next start.
void WaitForRestart() {
  constexpr char kManager[] = "System\\CurrentControlSet\\Control\\Session Manager";
  for (int i = 0; i < 400; ++i) {
    if (RegGetValueA(HKEY_LOCAL_MACHINE, kManager, "PendingFileRenameOperations", RRF_RT_ANY, nullptr, nullptr,
                     nullptr) == ERROR_FILE_NOT_FOUND)
      return;
    Sleep(50);
  }
  FAIL("no restart");
}

} // namespace

TEST_CASE(
    "each kind of file goes to its folder or target, is counted by its kind, and is listed if it is the product's") {
  const struct {
    const char *lines;
    std::string path;
    std::string list;   ///< its lines in the list of what goes at uninstall
    const char *shared; ///< how it stands among the shared files; null when it doesn't
  } rows[] = {
      {"name = 'a.txt'", "C:\\Kinds\\a.txt", "C:\\Kinds\\a.txt\r\n", nullptr},
      {"name = 'b\\b.txt'", "C:\\Kinds\\b\\b.txt", "~C:\\Kinds\\b\r\nC:\\Kinds\\b\\b.txt\r\n", nullptr},
      {"name = 'b\\c.txt'\ntarget = 'd\\'", "C:\\Kinds\\d\\c.txt", "~C:\\Kinds\\d\r\nC:\\Kinds\\d\\c.txt\r\n", nullptr},
      {"name = 'd.txt'\ntarget = 'e.txt'", "C:\\Kinds\\e.txt", "C:\\Kinds\\e.txt\r\n", nullptr},
      {"name = 'f.txt'\ntarget = '%sharedDIR%\\f2.txt'", kShared + "f2.txt",
       "~" + kShared.substr(0, kShared.size() - 1) + "\r\n" + kShared + "f2.txt\r\n", nullptr},
      {"name = 'k.txt'\nkeep = true\ntarget = 'kept\\'", "C:\\Kinds\\kept\\k.txt", "", nullptr},
      {"name = 'u.txt'\nuninstall_dir = true", "C:\\Kinds\\un\\u.txt", "C:\\Kinds\\un\\u.txt\r\n", nullptr},
      {"name = 's.txt'\nkind = 'startup'", "C:\\Kinds\\s.txt", "C:\\Kinds\\s.txt\r\n", nullptr},
      {"name = 'x.bin'\nkind = 3\ntarget = 'x\\'", "C:\\Kinds\\x\\x.bin", "", nullptr},
      {"name = 'a.dat'\nkind = 'shared'", kShared + "a.dat", "", ""},
      {"name = 'b.dat'\nkind = 'shared'\nkeep = true\ntarget = 'deep\\'", kShared + "deep\\b.dat", "", " "},
      {"name = 'c.dat'\nkind = 'shared'\ncondition = 'never'", kShared + "c.dat", "", ""},
      {"name = 'korba.dll'\nkind = 'system'", kSystem + "korba.dll", "", " "},
      {"name = 'korbb.dll'\nkind = 'system'\ntarget = '%InstallDir%\\sys\\'", "C:\\Kinds\\sys\\korbb.dll", "", " "},
      {"name = 'korbc.dll'\nkind = 'system-com'", kSystem + "korbc.dll", "", "^"},
      {"name = 'korbd.dll'\nkind = 'system-com'\nkeep = true", kSystem + "korbd.dll", "", " "},
      {"name = 'korbe.dll'\nkind = 'system'\nkeep = true", kSystem + "korbe.dll", "", " "},
  };
  const CleanPlace place({"C:\\Kinds", kShared}, {kUninstallKey + "Kinds", kCounts});
  std::string manifest = Product("Kinds"), list, shared;
  for (const auto &row : rows) {
    manifest += File(row.lines);
    list += row.list;
    if (row.shared)
      shared += (shared.empty() ? "\"" : ";\"") + row.path + row.shared + "\"";
  }
  PackedProduct product(manifest);
  product.Pack();
  product.Install();
  for (const auto &row : rows) {
    CAPTURE(row.path);
    const bool never = std::string(row.lines).find("never") != std::string::npos;
    CHECK(DescribeFile(row.path) == (never ? "missing" : "archive 2005-05-05 05:05:04"));
    if (row.shared)
      CHECK(MachineValue(kCounts, row.path) == "1");
  }
  CHECK(InstallLog("C:\\Kinds\\un").find("Registering COM File \"" + kSystem + "korbd.dll\"") != std::string::npos);
  const std::string record = FileBytes("C:\\Kinds\\un\\Uninstall.DAT");
  const std::string lines_of_files = record.substr(0, record.find("\r\n\r\n[Strings]"));
  CHECK(lines_of_files.substr(0, list.size()) == list); // its rest is the shortcut of the startup file
  CHECK(MachineValue(kUninstallKey + "Kinds", "SharedFiles") == shared);
}

// Which file replaces which is told by engine_PlacementTest; here real files have their dates and versions.
TEST_CASE("dates and versions of the files that are there decide") {
  const std::string program = FileBytes("korb.exe"); // of version 11.0
  const struct {
    const char *lines;
    std::string present;
    WORD year; ///< of its date; the new one has 2005
    bool written;
    const char *log;
  } rows[] = {
      {"kind = 'shared'", "old", 2004, true, " is out of date and will be replaced.\r\n"},
      {"kind = 'shared'", "old", 2005, false, " is up to date.\r\n"},
      {"kind = 'system'\nlabel = '11.0'", program, 2004, false,
       " was not installed because its version is not newer.\r\n"},
      {"kind = 'system'\nlabel = '12'", program, 2006, false, " was not installed because its date is not newer.\r\n"},
      {"kind = 'system-com'\nlabel = '11.1'", program, 2004, true, " is out of date and will be replaced.\r\n"},
  };
  const CleanPlace place({"C:\\Fresh"});
  std::filesystem::create_directories("C:\\Fresh");
  std::string manifest = Product("Fresh"), log;
  std::map<std::string, std::string> expected;
  for (const auto &row : rows) {
    const std::string name = "f" + std::to_string(expected.size()), path = "C:\\Fresh\\" + name;
    manifest += File("name = '" + name + "'\ntarget = 'C:\\Fresh\\'\n" + row.lines);
    WriteFileBytes(path, row.present);
    SetDate(path, row.year);
    expected[path] = row.written ? "new" : row.present;
    log += path + row.log;
  }
  PackedProduct product(manifest);
  product.Pack();
  product.Install();
  for (const auto &[path, contents] : expected) {
    CAPTURE(path);
    CHECK((FileBytes(path) == contents));
  }
  CHECK(InstallLog("C:\\Fresh\\un") == log + "Registering COM File \"C:\\Fresh\\f4\"...LoadLibrary() Failed\r\n\r\n"
                                             "Done\r\n\r\n");
}

TEST_CASE("files that are protected or in use are replaced now, at the next start or not at all") {
  struct Row {
    const char *name, *lines;
    DWORD attributes; ///< of the file that is there
    bool held, exists_counts;
  };
  const Row rows[] = {
      {"read-only", "attributes = ['archive', 'hidden']", FILE_ATTRIBUTE_READONLY, false, false},
      {"hidden", "", FILE_ATTRIBUTE_HIDDEN, false, false},
      {"system", "attributes = ['archive', 'system']", FILE_ATTRIBUTE_SYSTEM, false, false},
      {"held", "", FILE_ATTRIBUTE_NORMAL, true, false},
      {"held-shared", "kind = 'shared'\ntarget = 'C:\\Held\\'", FILE_ATTRIBUTE_NORMAL, true, true},
  };
  for (const bool clear : {false, true})
    for (const bool replace : {false, true}) {
      CAPTURE(clear);
      CAPTURE(replace);
      const CleanPlace place({"C:\\Held"});
      std::filesystem::create_directories("C:\\Held");
      std::string manifest =
          Product("Held", std::string(clear ? "clear_attributes = true\nverify_writes = true\n" : "") +
                              (replace ? "replace_in_use = true\n" : ""));
      std::vector<std::unique_ptr<HeldFile>> held;
      for (const Row &row : rows) {
        const std::string path = std::string("C:\\Held\\") + row.name;
        manifest += File("name = '" + std::string(row.name) + "'\n" + row.lines);
        WriteFileBytes(path, "old");
        SetDate(path, 2004);
        SetFileAttributesA(path.c_str(), row.attributes);
        if (row.held)
          held.push_back(std::make_unique<HeldFile>(path.c_str()));
      }
      PackedProduct product(manifest);
      product.Pack();
      product.Install();
      WaitForRestart();
      held.clear();
      const std::string log = InstallLog("C:\\Held\\un");
      for (const Row &row : rows) {
        const std::string path = std::string("C:\\Held\\") + row.name;
        CAPTURE(path);
        const bool refused = row.held || (row.attributes == FILE_ATTRIBUTE_READONLY && !clear);
        const bool waits = refused && (replace || row.exists_counts);
        const std::string failed =
            "Failed: " + path + "\r\n" + (row.held ? "Sharing violation." : "Access denied.") + "\r\n\r\n";
        CHECK((log.find(failed) != std::string::npos) == refused);
        CHECK((log.find(failed + path + " has been successfully registered for replacement.\r\n") !=
               std::string::npos) == waits);
        const bool replaced_later = waits && !row.held; // what is held at the restart stays
        CHECK(Contents(path) == (!refused || replaced_later ? "new" : "old"));
        if (!refused) {
          const std::string words = row.attributes == FILE_ATTRIBUTE_READONLY ? "archive hidden "
                                    : row.attributes == FILE_ATTRIBUTE_SYSTEM ? "archive system "
                                                                              : "archive ";
          CHECK(DescribeFile(path) == words + "2005-05-05 05:05:04");
        }
      }
    }
}
