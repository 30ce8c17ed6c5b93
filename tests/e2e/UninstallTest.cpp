// Uninstallations that meet what nobody wishes for: refusals, files in use, other people's files.
#include <algorithm>
#include <cstdlib>
#include <filesystem>

#include "tests/support/CleanPlace.h"
#include "tests/support/Desktop.h"
#include "tests/support/Doctest.h"
#include "tests/support/HeldFile.h"
#include "tests/support/PackedProduct.h"
#include "tests/support/Snapshot.h"
#include "tests/support/Uninstallation.h"
#include "tests/support/Windows64.h"

using namespace korb::test;
namespace fs = std::filesystem;

namespace {

const std::string kHome = kProgramFiles + "\\Thing", kShared = kProgramFiles + "\\Common Files\\Thing";
const std::string kCounts = "Software\\Microsoft\\Windows\\CurrentVersion\\SharedDLLs";

struct Installed {
  Installed() {
    product.Pack();
    product.Install();
  }
  CleanPlace place{{kHome, kShared, "C:\\ran.txt"}, {kUninstallKey + "Thing", kCounts}};
  PackedProduct product{ProductManifest("thing")};
};

/// Waits for the box with these words, answers it, and gives what it says.
std::string Answer(const std::string &words, const std::string &button) {
  const Window box = AnswerWindow(words, button);
  std::string said = box.title + ": " + box.Message();
  said.erase(std::remove(said.begin(), said.end(), '\r'), said.end());
  return said;
}

/// The list of a record: what stands in front of the texts.
std::string Listed() {
  const std::string record = FileBytes(kHome + "\\un\\Uninstall.DAT");
  return record.substr(0, record.find("\r\n\r\n[Strings]\r\n"));
}

} // namespace

TEST_CASE_FIXTURE(Installed, "who declines changes nothing") {
  const std::string record = FileBytes(kHome + "\\un\\Uninstall.DAT");
  Process uninstaller(UninstallValue("Thing", "UninstallString"), "C:\\windows");
  Answer("Do you want to remove Thing", "No");
  CHECK(uninstaller.Wait() == DWORD{1});
  CHECK(FileBytes(kHome + "\\un\\Uninstall.DAT") == record);
  CHECK(FileBytes(kHome + "\\a.txt") == "a");
  CHECK_FALSE(fs::exists("C:\\ran.txt"));
}

TEST_CASE_FIXTURE(Installed, "an uninstallation is not cancelled: closing its background declines what is asked") {
  Process uninstaller(UninstallValue("Thing", "UninstallString"), "C:\\windows");
  Answer("Do you want to remove Thing", "Yes");
  const auto question = WaitForWindow("shared.txt");
  REQUIRE(question);
  // Nothing is cancelled here, whoever sends the command of the button that is grey.
  PostMessageA(GetWindow(question->handle, GW_OWNER), WM_COMMAND, 1003, 0);
  Sleep(300);
  CHECK(OpenWindows().size() == 1);
  // Closing the background takes the question with it, but not the report at the end.
  PostMessageA(FindWindowA("KRB Window Class", nullptr), WM_CLOSE, 0, 0);
  CHECK(Answer("has been removed", "OK") == "Uninstall Thing: Thing has been removed.");
  CHECK(uninstaller.Wait() == DWORD{1});
  CHECK(WaitForSelfRemoval());
  CHECK(FileBytes(kShared + "\\shared.txt") == "shared");
}

namespace {

/// An uninstallation that met a file in use.
struct Incomplete : Installed {
  Incomplete() {
    const HeldFile held((kHome + "\\deep\\er\\b.txt").c_str());
    Process uninstaller(UninstallValue("Thing", "UninstallString"), "C:\\windows");
    Answer("Do you want to remove Thing", "Yes");
    Answer("shared.txt", "Yes");
    said = Answer("could not be removed", "OK");
    CHECK(uninstaller.Wait() == DWORD{1});
  }
  std::string said;
};

} // namespace

TEST_CASE_FIXTURE(Incomplete, "a file in use stays with its record and the uninstaller, and is told") {
  CHECK(said ==
        "Thing: Some parts of Thing could not be removed:\n\nUnable to remove: " + kHome + "\\deep\\er\\b.txt\n");
  CHECK_FALSE(fs::exists("C:\\delunins.bat"));
  CHECK(Listed() == kHome + "\\deep\\er\\b.txt\r\n");
  CHECK(DescribeFile(kHome + "\\a.txt") == "missing");
  CHECK(fs::exists(kHome + "\\un\\Uninstall.exe"));
}

TEST_CASE_FIXTURE(Incomplete, "a second run takes what the first had to leave") {
  Process uninstaller(UninstallValue("Thing", "UninstallString"), "C:\\windows");
  Answer("Do you want to remove Thing", "Yes");
  Answer("has been removed", "OK");
  CHECK(uninstaller.Wait() == DWORD{1});
  CHECK(WaitForSelfRemoval());
  CHECK(UninstallValue("Thing", "UninstallString").empty());
  // Its directory is not on the list any more, and the batch takes only the two that it knows.
  CHECK(fs::is_empty(kHome + "\\deep\\er"));
  CHECK(FileBytes("C:\\ran.txt") == "first \r\nlast \r\n");
}

TEST_CASE_FIXTURE(Installed, "other people's files and the folders around them survive") {
  for (const char *file : {"\\mine.txt", "\\deep\\mine.txt", "\\un\\mine.txt"})
    WriteFileBytes(kHome + file, "mine");
  UninstallQuietly("Thing");
  std::string left;
  for (const auto &entry : fs::recursive_directory_iterator(kHome))
    left += entry.path().string().substr(kHome.size()) + " ";
  CHECK(left == "\\deep \\deep\\mine.txt \\mine.txt \\un \\un\\mine.txt ");
}

TEST_CASE("a product that is not there, or that does not say where, is refused") {
  const CleanPlace place({}, {kUninstallKey + "Blank"});
  SetRegistryText(HKEY_LOCAL_MACHINE, kUninstallKey + "Blank", "Nothing", "that says where");
  const std::pair<const char *, const char *> rows[] = {
      {"Nobody", "Error: No product named 'Nobody' is installed."},
      {"Blank", "Error: The uninstall information for Blank is corrupt.\n\nThe uninstallation cannot be performed."},
  };
  for (const auto &[name, says] : rows) {
    Process program("korb.exe /u:" + std::string(name));
    CHECK(Answer(name, "OK") == says);
    CHECK(program.Wait() == DWORD{1});
  }
  CHECK(fs::exists("korb.exe"));
}
