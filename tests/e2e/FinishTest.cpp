// The batches of a run, its end, and what waits for the next start of the machine.
#include <doctest/doctest.h>

#include <filesystem>
#include <functional>

#include "tests/support/HeldFile.h"
#include "tests/support/PackedProduct.h"

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

} // namespace

TEST_CASE("batches run at their moments, and the program of /r only behind a clean run") {
  PackedProduct product(ProductManifest("batches"));
  product.Pack();
  const std::string install = "/a /r:\"cmd /c echo ran >> C:\\batches.txt\"";
  CHECK(product.Start(install).Wait());
  // Nothing waits for the program, and a clean run leaves no log.
  const std::string clean = "pre C:\\Batches \r\npost \r\nran \r\n";
  CHECK(Becomes([&] { return FileBytes("C:\\batches.txt") == clean; }));
  CHECK(FileBytes("C:\\autoexec.bat") == "\r\nPATH=%PATH%;C:\\Batches\r\n");

  std::filesystem::remove("C:\\autoexec.bat");
  std::filesystem::create_directory("C:\\autoexec.bat");
  std::filesystem::remove("C:\\Batches\\a.txt");
  CHECK(product.Start(install).Wait());
  std::filesystem::remove("C:\\autoexec.bat");
  CHECK(FileBytes("C:\\Batches\\un\\Install.LOG")
            .ends_with("\r\n\r\nUnable to modify C:\\autoexec.bat.  You will need to manually add C:\\Batches to the "
                       "PATH environment variable.\r\n\r\n"));
  Sleep(300);
  CHECK(FileBytes("C:\\batches.txt") == clean + "pre C:\\Batches \r\npost \r\nfinal \r\n");
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
    std::filesystem::remove_all(home);
    std::filesystem::create_directories(home);
    std::filesystem::remove("C:\\waiting");
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
    CHECK(FileBytes(home + "used file.txt") == "new");
    CHECK(Exists(home + "other.txt"));
  }
}
