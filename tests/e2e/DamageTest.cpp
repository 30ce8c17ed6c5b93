// Damaged installers, and machines that refuse, as the user meets them.
#include <filesystem>

#include "tests/support/CleanPlace.h"
#include "tests/support/Desktop.h"
#include "tests/support/Doctest.h"
#include "tests/support/PackedProduct.h"
#include "tests/support/TestInstaller.h"

using namespace korb;
using namespace korb::test;

namespace {

const std::string kHome = "C:\\Program Files\\Damaged";
const char kCorrupt[] =
    "This installation program is corrupt.  This is usually caused by a faulty download, but it can also be caused by "
    "a virus on your computer.  The installation cannot proceed.\r\n\r\nDelete the corrupted installer (to prevent "
    "caching), then re-download it.  If the problem persists, check your system for viruses.\r\n\r\nError code: ";

/// Where the last section's entry and its bytes stand.
size_t SectionEntry(const Bytes &file) {
  const size_t pe = packer::GetU32(file, pe::kHeaderOffsetAt);
  return pe + pe::kOptionalHeaderAt + packer::GetU16(file, pe + pe::kOptionalHeaderSizeAt) +
         (packer::GetU16(file, pe + pe::kSectionCountAt) - 1u) * pe::kSectionEntrySize;
}

size_t ArchivePos(const Bytes &file) {
  return packer::GetU32(file, SectionEntry(file) + pe::kRawPointerAt);
}

/// A setup.exe around the real program, with places to spoil it.
struct Setup : TestInstaller {
  Setup() {
    const std::string korb = FileBytes("korb.exe");
    stub.assign(korb.begin(), korb.end());
    product = {};
    product.name = "Damaged";
    product.flags = IF_VERIFY_STUB;
    product.languages = {{"English", std::vector<std::string>(72), {}}};
    packer::FileEntry file;
    file.name = "one.txt";
    file.contents.assign(300, 'x');
    product.files = {file};
  }

  /// Runs it with /a; what the first box says, or nothing when none came.
  std::string Run(const std::string &arguments = "/a") const {
    const std::string path = (folder.Path() / "setup.exe").string();
    const Bytes file = Build().executable;
    WriteFileBytes(path, std::string(file.begin(), file.end()));
    Process process("\"" + path + "\" " + arguments, folder.Path().string());
    std::string said;
    while (!process.Wait(0)) {
      if (const auto box = WaitForWindow("FATAL ERROR", 50)) {
        said = box->Message();
        Click(*box, "OK");
      }
    }
    CHECK(process.Wait() == DWORD{1});
    return said;
  }

  CleanPlace place{{kHome}};
  TempFolder folder;
};

template <size_t at, uint32_t value>
void Header(Setup &setup) {
  setup.executable = [](Bytes &file) { Put(file, ArchivePos(file) + at, Raw(value)); };
}

} // namespace

TEST_CASE("each damage ends in a box with its number, and nothing is installed") {
  struct Row {
    const char *code;
    void (*damage)(Setup &);
  };
  // From the program's own file to the last record: every number has its test where installers are read.
  const Row rows[] = {
      {"9", [](Setup &s) { s.executable = [](Bytes &f) { Put(f, SectionEntry(f) + pe::kRawPointerAt, Raw(0)); }; }},
      {"40", [](Setup &s) { s.executable = [](Bytes &f) { f[0x50] ^= 1; }; }}, // in the text that DOS would show
      {"100", [](Setup &s) { s.payload = [](Bytes &p) { p[100] ^= 1; }; }},
      {"110", [](Setup &s) { s.product.files[0].kind = 3; }},
  };
  for (const Row &row : rows) {
    CAPTURE(row.code);
    Setup setup;
    row.damage(setup);
    CHECK(setup.Run() == std::string(kCorrupt) + row.code);
    CHECK_FALSE(std::filesystem::exists(kHome + "\\one.txt"));
  }
}

TEST_CASE("an installer without damage has nothing to say") {
  const Setup sound;
  CHECK(sound.Run().empty());
  CHECK(FileBytes(kHome + "\\one.txt") == std::string(300, 'x'));
}

TEST_CASE("an archive from the future says so") {
  Setup newer;
  Header<header::kVersionAt, 1102>(newer);
  CHECK(newer.Run() == "The installer version (11.0) does not match the version of KORB (11.0).  Close all "
                       "applications and reinstall KORB.");
}

TEST_CASE("a program that lost its archive says so") {
  Setup named;
  named.executable = [](Bytes &file) { file[SectionEntry(file)] = '?'; };
  CHECK(named.Run() ==
        "This program performs installations and uninstallations.\r\nThere is no installation archive present.\r\nNo "
        "Uninstallation parameters were specified.\r\n\r\nYou should not delete this program or execute it directly.");
}

TEST_CASE("a command line that can't be understood gets the usage") {
  CHECK(
      Setup().Run("bogus") ==
      "Unexpected command line parameter:\nbogus\n\nUsage:\nsetup.exe [/a] [/d:\"dir\"] [/n:\"name\"] [/u:\"name\"] "
      "[/r:\"program\"]\n\n/a                  \tAutomatic mode\n/d:\"dir\"        \tOverride installation directory\n"
      "/n:\"name\"\tOverride product name\n/u:\"name\"\tUninstall product by name\r\n/r:\"program\"\tRun the specified "
      "program after a successful installation");
}

TEST_CASE("a directory that can't be made costs the installation, and nothing else") {
  Setup setup;
  const std::string in_the_way = (setup.folder.Path() / "file").string();
  WriteFileBytes(in_the_way, "mine");
  CHECK(setup.Run("/a /d:\"" + in_the_way + "\"").empty());
  CHECK(FileBytes(in_the_way) == "mine");
  CHECK(setup.folder.Count() == 2);
}
