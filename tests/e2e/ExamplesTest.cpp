// The products of examples/, built, verified and installed as an author's users would.
#include <algorithm>
#include <filesystem>
#include <sstream>

#include "packer/read/ExtractInstaller.h"
#include "packer/read/InstallerReport.h"
#include "tests/support/Doctest.h"
#include "tests/support/PackedProduct.h"

using namespace korb;
using namespace korb::test;
namespace fs = std::filesystem;

namespace {

// Builds `name` into a folder of its own, which is given, has it verified, and installs it silently.
fs::path InstallExample(const std::string &name) {
  const fs::path setup = BuildExample(name);
  std::ostringstream told;
  CHECK(packer::VerifyInstaller(setup, true, told));
  Run("\"" + setup.string() + "\" /a", setup.parent_path().string());
  return setup.parent_path();
}

} // namespace

TEST_CASE("what is extracted from an example is what it installs, on one disk and on several") {
  const struct {
    const char *example, *home;
    bool on_several;
  } rows[] = {{"hello", "C:\\Program Files\\Hello", false}, {"volumes", "C:\\Program Files\\Korb Sources", true}};
  for (const auto &row : rows) {
    CAPTURE(std::string(row.example));
    const fs::path folder = InstallExample(row.example), files = folder / "files";
    const fs::directory_iterator disks(folder);
    CHECK((std::distance(begin(disks), end(disks)) > 1) == row.on_several);
    std::ostringstream summary, problems;
    CHECK(packer::ExtractInstaller(folder / "setup.exe", files, 1252, summary, problems));
    size_t compared = 0;
    for (const auto &file : fs::recursive_directory_iterator(files))
      if (file.is_regular_file()) {
        const fs::path installed = row.home / file.path().lexically_relative(files);
        CHECK((FileBytes(file.path().string()) == FileBytes(installed.string())));
        ++compared;
      }
    CHECK(compared > 0);
  }
}
