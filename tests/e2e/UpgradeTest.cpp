// Releases installed over one another: the last one alone is what is left, and the user's own.
#include <filesystem>
#include <sstream>

#include "packer/Build.h"
#include "packer/read/ReadRelease.h"
#include "tests/support/CleanPlace.h"
#include "tests/support/Doctest.h"
#include "tests/support/PackedProduct.h"
#include "tests/support/Snapshot.h"
#include "tests/support/Uninstallation.h"

using namespace korb;
using namespace korb::test;
namespace fs = std::filesystem;

namespace {

const std::string kHome = "C:\\Program Files\\Thing";

std::string Text(const std::string &name, const std::string &contents, const std::string &more = "") {
  return "[[file]]\nname = '" + name + "'\ncontents = '" + contents + "'\n" + more;
}

/// All have a changed file, one that stays, and shortcuts; no two have the same uninstaller, group or folders.
const std::string kReleases[] = {
    "[uninstall]\ndirectory = 'un'\ndate = 2001-02-03\n[install]\nstart_menu = 'Maker\\Old'\nmin_phase_ms = 0\n"
    "[options]\nuninstall_start_menu = true\nalways_log = true\n" +
        Text("thing.txt", "one", "start_menu = true\ndesktop = true\nlabel = 'Thing one'\n") +
        Text("help/first/gone.txt", "gone") + Text("help/told.txt", "told") + Text("mine.txt", "mine") +
        Text("User/set.ini", "set", "condition = 'new'\n") + "[[uninstall_value]]\nname = 'HelpLink'\nvalue = 'here'\n",
    "[uninstall]\nprogram = 'Undo.exe'\ndate = 2001-02-03\n[install]\nmin_phase_ms = 0\n[upgrade]\nfrom = '1.exe'\n" +
        Text("thing.txt", "two!", "start_menu = true\nlabel = 'Thing two'\n") + Text("help/told.txt", "told again") +
        Text("help/read only.txt", "second", "attributes = ['read-only']\n"),
    "[uninstall]\ndate = 2001-02-03\n[install]\nmin_phase_ms = 0\n[upgrade]\nfrom = '?.exe'\n" +
        Text("thing.txt", "three", "start_menu = true\nlabel = 'Thing three'\n") + Text("first/new.txt", "new"),
};

class Releases {
public:
  Releases() {
    for (size_t i = 0; i < std::size(kReleases); ++i) {
      const std::string number = std::to_string(i + 1);
      packer::BuildRequest request;
      request.manifest =
          folder_.Write(number + ".toml", "[product]\nname = 'Thing'\npublisher = 'Maker'\nversion = '" + number +
                                              ".0'\n[file_defaults]\ndate = 2001-02-03\n" + kReleases[i]);
      request.output = folder_.Path() / (number + ".exe");
      request.stub = "korb.exe";
      request.read_release = packer::ReadRelease;
      std::ostringstream summary, problems;
      if (!packer::BuildFromManifest(request, summary, problems))
        throw std::runtime_error(problems.str());
    }
  }
  void Install(char release) const { Run((folder_.Path() / (std::string(1, release) + ".exe")).string() + " /a"); }

private:
  CleanPlace place_{{kHome}, {kUninstallKey + "Thing"}};
  TempFolder folder_;
};

/// Where these releases could leave anything.
Snapshot TakePart() {
  Snapshot all;
  AddFolder(all, "C:\\Program Files");
  AddFolder(all, "C:\\users");
  AddKey(all, HKEY_LOCAL_MACHINE, "Software\\Microsoft\\Windows");
  return all;
}

/// What is new or gone, and what is other but not by the time of the installation.
std::vector<std::string> Changes(const Snapshot &before, const Snapshot &after) {
  std::vector<std::string> lines;
  for (const std::string &line : Differences(before, after))
    if (!line.starts_with("other ") ||
        (!line.ends_with("InstallDate") && !line.ends_with(".LNK") && !line.ends_with("Uninstall.DAT")))
      lines.push_back(line);
  return lines;
}

} // namespace

TEST_CASE("any way to a release ends in what a fresh installation of it is") {
  const Releases releases;
  releases.Install('3');
  const Snapshot fresh = TakePart();
  const std::string record = FileBytes(kHome + "\\Uninstall.DAT");
  UninstallQuietly("Thing");
  const Snapshot before = TakePart();
  CHECK(Changes(before, fresh).size() > 10);
  for (const std::string order : {"123", "13", "23"}) {
    CAPTURE(order);
    for (char release : order)
      releases.Install(release);
    // A file that was once left to the user goes with neither release.
    const bool had_settings = fs::remove(kHome + "\\User\\set.ini");
    CHECK(had_settings == (order[0] == '1'));
    fs::remove(kHome + "\\User");
    for (const std::string &line : Changes(fresh, TakePart()))
      FAIL_CHECK(line);
    CHECK(FileBytes(kHome + "\\Uninstall.DAT") == record);
    UninstallQuietly("Thing");
    for (const std::string &line : Changes(before, TakePart()))
      FAIL_CHECK(line);
  }
}

TEST_CASE("an upgrade leaves what users have changed, added, or had before") {
  const Releases releases;
  fs::create_directories(kHome + "\\help");
  WriteFileBytes(kHome + "\\mine.txt", "of another size");
  releases.Install('3'); // no earlier release was here
  CHECK(FileBytes(kHome + "\\mine.txt") == "of another size");
  UninstallQuietly("Thing");

  releases.Install('1');
  WriteFileBytes(kHome + "\\help\\told.txt", "told, and noted");
  WriteFileBytes(kHome + "\\help\\first\\notes.txt", "notes");
  releases.Install('3');
  for (const char *kept : {"\\help\\told.txt", "\\help\\first\\notes.txt", "\\User\\set.ini"})
    CHECK(DescribeFile(kHome + kept) != "missing");
  for (const char *gone : {"\\help\\first\\gone.txt", "\\mine.txt", "\\un"})
    CHECK(DescribeFile(kHome + gone) == "missing");
  UninstallQuietly("Thing");
}
