// The batches of a run, its end, and what waits for the next start of the machine.
#include <filesystem>
#include <fstream>
#include <functional>

#include "tests/support/CleanPlace.h"
#include "tests/support/Doctest.h"
#include "tests/support/HeldFile.h"
#include "tests/support/PackedProduct.h"
#include "tests/support/Uninstallation.h"

using namespace korb::test;

namespace {

bool Becomes(const std::function<bool()> &condition) {
  for (int i = 0; i < 400; ++i) {
    if (condition())
      return true;
    Sleep(50);
  }
  return false;
}

bool Exists(const std::string &path) {
  return std::filesystem::exists(path);
}

/// Where a run takes this program for its command interpreter, it tells how it was called, and ends.
const bool kCalled = [] {
  if (GetEnvironmentVariableA("KORB_CALLED", nullptr, 0) == 0)
    return false;
  WriteFileBytes("C:\\called.txt", GetCommandLineA());
  ExitProcess(0);
}();

} // namespace

namespace {

/// A product with a batch for each moment, each of which writes to one file, as does the program of /r.
struct Batches {
  Batches() { product.Pack(); }
  bool Install() const { return product.Start("/a /r:\"cmd /c echo ran >> C:\\batches.txt\"").Wait().has_value(); }

  CleanPlace place{{"C:\\Batches", "C:\\batches.txt", "C:\\autoexec.bat"}, {kUninstallKey + "Batches"}};
  PackedProduct product{ProductManifest("batches")};
};

} // namespace

TEST_CASE_FIXTURE(Batches, "batches run at their moments, and the program of /r after a clean run") {
  CHECK(Install());
  // Nothing waits for the program, and a clean run leaves no log.
  CHECK(Becomes([] { return FileBytes("C:\\batches.txt") == "pre C:\\Batches \r\npost \r\nran \r\n"; }));
  CHECK(FileBytes("C:\\autoexec.bat") == "\r\nPATH=%PATH%;C:\\Batches\r\n");
}

TEST_CASE_FIXTURE(Batches, "a run with a report has its log before the last batch, and no program of /r") {
  std::filesystem::create_directory("C:\\autoexec.bat");
  CHECK(Install());
  CHECK(FileBytes("C:\\Batches\\un\\Install.LOG")
            .ends_with("\r\n\r\nUnable to modify C:\\autoexec.bat.  You will need to manually add C:\\Batches to the "
                       "PATH environment variable.\r\n\r\n"));
  Sleep(300);
  CHECK(FileBytes("C:\\batches.txt") == "pre C:\\Batches \r\npost \r\nfinal \r\n");
}

TEST_CASE("batches run wherever the product is, whatever the interpreter makes of the signs in its name") {
  const std::string name = "Batches everywhere";
  for (const char *home : {"Program Files (x86)\\Thing", "Tom & Jerry", "App(x)", "A^B C", "A,B", "A@B C", "100% Pure",
                           "blanks at\\several places in it"}) {
    CAPTURE(home);
    const CleanPlace place({"C:\\ran.txt"});
    PackedProduct product("[product]\nname = '" + name + "'\n[install]\ndirectory = 'C:\\" + home +
                          "'\nmin_phase_ms = 0\n[batch]\npre_install = 'echo 1 >> C:\\ran.txt'\n"
                          "post_install = 'echo 2 >> C:\\ran.txt'\nfinal = 'echo 3 >> C:\\ran.txt'\n"
                          "uninstall_first = 'echo 4 >> C:\\ran.txt'\nuninstall_last = 'echo 5 >> C:\\ran.txt'\n"
                          "[options]\nalways_log = true\n[[file]]\ncontents = 'a'\nname = 'a.txt'\n");
    product.Pack();
    product.Install();
    CHECK(FileBytes("C:\\ran.txt") == "1 \r\n2 \r\n3 \r\n");
    UninstallQuietly(name);
    CHECK(FileBytes("C:\\ran.txt") == "1 \r\n2 \r\n3 \r\n4 \r\n5 \r\n");
    CHECK_FALSE(Exists(std::string("C:\\") + home)); // gone with the uninstaller
  }
}

TEST_CASE("each system's interpreter gets a batch in its own form, and one that can't be started is told in the log") {
  PackedProduct product("[product]\nname = 'Form'\n[install]\ndirectory = 'C:\\Form'\n[batch]\npre_install = 'x'\n"
                        "[options]\nuninstall = false\nalways_log = true\n[[file]]\ncontents = 'a'\nname = 'a.txt'\n");
  for (const auto &[version, quote] : {std::pair("win98", ""), std::pair("winxp", "\"")}) {
    CAPTURE(version);
    const std::string program = std::string(version) + ".exe";
    SetWindowsVersion(program, version);
    product.Pack(program);
    SetEnvironmentVariableA("COMSPEC", "C:\\test\\e2e_finish.exe");
    SetEnvironmentVariableA("KORB_CALLED", "1");
    product.Install();
    SetEnvironmentVariableA("KORB_CALLED", nullptr);
    CHECK(FileBytes("C:\\called.txt") ==
          std::string("C:\\test\\e2e_finish.exe /e:5000 /c ") + quote + "\"C:\\Form\\KORBBAT.BAT\"" + quote);
  }
  SetEnvironmentVariableA("COMSPEC", "C:\\nowhere\\cmd.exe");
  product.Install();
  SetEnvironmentVariableA("COMSPEC", "C:\\windows\\system32\\cmd.exe");
  CHECK(InstallLog("C:\\Form").starts_with("C:\\Form\\KORBBAT.BAT could not be run: "));
  CHECK_FALSE(Exists("C:\\Form\\KORBBAT.BAT"));
}

TEST_CASE("a run that places nothing leaves no empty directories") {
  PackedProduct product(ProductManifest("nothing"));
  product.Pack();
  product.Install();
  CHECK_FALSE(Exists("C:\\Nothing"));
}

TEST_CASE("what is in use waits for the restart that the run asks for") {
  PackedProduct product(ProductManifest("restart"));
  const std::string home = "C:\\Restarted\\";
  for (const char *version : {"winxp", "win98"}) {
    CAPTURE(version);
    const std::string name = std::string(version) + ".exe";
    SetWindowsVersion(name, version);
    product.Pack(name);
    const CleanPlace place({home, "C:\\waiting", "C:\\go", "C:\\windows\\wininit.ini"});
    std::filesystem::create_directories(home);
    for (const char *file : {"used file.txt", "old file.txt", "other.txt"})
      WriteFileBytes(home + file, "old");
    HeldFile used((home + "used file.txt").c_str()), old((home + "old file.txt").c_str()),
        other((home + "other.txt").c_str());

    Process setup = product.Start("/a");
    REQUIRE(Becomes([] { return Exists("C:\\waiting"); }));
    const std::string in_use = "Sharing violation.\r\n";
    const std::string said = InstallLog(home);
    const size_t temporary_at = said.find("Temporary file is ") + 18;
    const std::string temporary = said.substr(temporary_at, said.find("\r\n", temporary_at) - temporary_at);
    CHECK(said == "File '" + home + "old file.txt' will be deleted after rebooting: " + in_use +
                      "\r\nFailed to delete file '" + home + "other.txt': " + in_use + "\r\nFailed: " + home +
                      "used file.txt\r\n" + in_use + "\r\n" + home +
                      "used file.txt has been successfully registered for replacement.\r\nTemporary file is " +
                      temporary + "\r\nReboot will be required.\r\n\r\n\r\nDone\r\n\r\n");
    CHECK(FileBytes(temporary) == "new");
    if (std::string(version) == "win98") {
      char short_name[MAX_PATH];
      const auto short_path = [&](const char *file) {
        GetShortPathNameA((home + file).c_str(), short_name, sizeof short_name);
        return std::string(short_name);
      };
      const std::string used_line = short_path("used file.txt") + "=" + temporary;
      CHECK(FileBytes("C:\\windows\\wininit.ini") ==
            "\r\n[rename]\r\n" + used_line + "\r\nNUL=" + short_path("old file.txt"));
      CHECK(used_line.find(' ') == std::string::npos);
    } else {
      CHECK_FALSE(Exists("C:\\windows\\wininit.ini"));
    }
    used.Release();
    old.Release();
    WriteFileBytes("C:\\go", "");
    CHECK(setup.Wait() == DWORD{1});
    CHECK(Becomes([&] { return !Exists(home + "old file.txt") && !Exists(temporary); }));
    // The system may hold what it has just renamed for a moment.
    CHECK(Becomes([&] { return std::ifstream(home + "used file.txt").good(); }));
    CHECK(FileBytes(home + "used file.txt") == "new");
    CHECK(Exists(home + "other.txt"));
  }
}
