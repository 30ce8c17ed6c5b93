#include "core/RunValues.h"
#include "engine/InstalledProduct.h"
#include "tests/support/MemoryMachine.h"
#include "tests/support/Testing.h"

namespace {

const std::string kKey = "machine\\Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Thing";

} // namespace

TEST_CASE("a product is installed when it can be uninstalled, one way or the other") {
  for (const char *value : {"UninstallString", "QuietUninstallString"}) {
    CAPTURE(std::string(value));
    MemoryMachine machine;
    String location("before");
    CHECK_FALSE(IsProductInstalled("Thing", &location));
    CHECK(location.is_empty());
    machine.Set(kKey, "InstallLocation", "C:\\Thing");
    CHECK_FALSE(IsProductInstalled("Thing", &location));
    CHECK(location.is_empty());
    machine.Set(kKey, value, "");
    CHECK(IsProductInstalled("Thing", nullptr));
    CHECK(IsProductInstalled("Thing", &location));
    CHECK(location == "C:\\Thing");
  }
}

TEST_CASE("an earlier installation counts when its directory exists, and is read in any case") {
  MemoryMachine machine;
  EarlierInstallation none;
  none.Find("Thing");
  CHECK_FALSE(none.is_there);
  CHECK(machine.Registry() == ""); // looking for it makes no key

  machine.Set(kKey, "InstallLocation", "C:\\Thing");
  machine.Set(kKey, "DisplayVersion", "1.2");
  machine.Set(kKey, "SharedFiles", "\"c:\\a\"");
  EarlierInstallation gone;
  gone.Find("Thing");
  CHECK_FALSE(gone.is_there);
  CHECK(gone.location == "C:\\Thing");
  CHECK(gone.version == "1.2");
  CHECK(gone.shared_files == "\"c:\\a\"");

  machine.files = {"C:\\Thing"};
  EarlierInstallation there;
  there.Find("Thing");
  CHECK(there.is_there);
}

TEST_CASE("the question before a reinstallation tells which version is newer, where it may and can") {
  const struct {
    uint64_t flags;
    const char *earlier, *version;
    TextNumber text;
  } rows[] = {
      {IF_COMPARE_VERSIONS, "1.9", "1.10", kTextReinstallOlder},
      {IF_COMPARE_VERSIONS, "1.10", "1.9", kTextReinstallNewer},
      {IF_COMPARE_VERSIONS, "1.010", "1.10", kTextReinstallSame},
      {IF_COMPARE_VERSIONS, "", "1.10", kTextReinstallInstalled},
      {IF_COMPARE_VERSIONS, "1.9", "", kTextReinstallInstalled},
      {0, "1.9", "1.10", kTextReinstallInstalled},
  };
  for (const auto &row : rows) {
    CAPTURE(std::string(row.earlier));
    InstallFlags = row.flags;
    EarlierInstallation earlier;
    earlier.version = row.earlier;
    CHECK(earlier.ReinstallText(row.version) == row.text);
  }
}
