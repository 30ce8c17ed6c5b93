// The system's counts of shared files, as products come, come again and go.
#include "core/RunValues.h"
#include "engine/SharedFiles.h"
#include "tests/support/MemoryMachine.h"
#include "tests/support/Testing.h"

namespace {

using Calls = std::vector<std::string>;

const std::string kCounts = "machine\\Software\\Microsoft\\Windows\\CurrentVersion\\SharedDLLs";

struct Counts {
  Counts() {
    ResetRunValues();
    InstallFlags = IF_UNINSTALL;
    InstallDir = "c:\\app";
    for (const char *path : {"c:\\a.dll", "c:\\b.dll ", "c:\\c.dll^"})
      notes.shared_file_list.append(path);
    machine.files = {"c:\\a.dll", "c:\\b.dll", "c:\\c.dll"};
  }

  std::string Count(const std::string &path) { return machine.keys[kCounts][path].text; }

  MemoryMachine machine;
  InstallNotes notes;
};

} // namespace

TEST_CASE_FIXTURE(Counts, "an installation counts each of its files once more, without its marks") {
  machine.Set(kCounts, "c:\\a.dll", "2");
  CountSharedFiles(notes, "", false);
  CHECK(machine.Registry().ends_with("] c:\\a.dll=3 c:\\b.dll=1 c:\\c.dll=1\n"));
  CHECK(notes.shared_files == "\"c:\\a.dll\";\"c:\\b.dll \";\"c:\\c.dll^\"");
}

TEST_CASE_FIXTURE(Counts, "a file that has no full path is given back, and neither run nor deleted") {
  machine.files = {"evil.dll", "C:evil.dll"};
  CHECK(ReleaseSharedFiles("\"evil.dll^\";\"C:evil.dll\""));
  CHECK(machine.calls.empty());
}

TEST_CASE_FIXTURE(Counts, "a product that comes again counts once, and gives back what it has no more") {
  machine.Set(kCounts, "c:\\a.dll", "2");
  machine.Set(kCounts, "c:\\old.dll", "1");
  machine.Set(kCounts, "c:\\theirs.dll", "2");
  CountSharedFiles(notes, "\"c:\\a.dll\";\"c:\\old.dll^\";\"c:\\theirs.dll \"", true);
  CHECK(Count("c:\\a.dll") == "2");
  CHECK(Count("c:\\theirs.dll") == "1");
  CHECK(machine.keys[kCounts].count("c:\\old.dll") == 0);
  CHECK(machine.files.size() == 3); // files are not touched
}

TEST_CASE_FIXTURE(Counts, "the entries of an installation whose directory is gone are not given back") {
  machine.Set(kCounts, "c:\\a.dll", "1");
  CountSharedFiles(notes, "\"c:\\a.dll\"", false);
  CHECK(Count("c:\\a.dll") == "2");
}

TEST_CASE_FIXTURE(Counts, "nothing is counted that nobody would count down") {
  InstallFlags = 0;
  CountSharedFiles(notes, "", false);
  CHECK(machine.Registry() == "");
  CHECK(notes.shared_files.is_empty());
}

TEST_CASE_FIXTURE(Counts, "counts that can't be reached are an error, and the earlier entries stay recorded") {
  machine.refuses_keys = true;
  CountSharedFiles(notes, "\"c:\\a.dll\"", true);
  CHECK(notes.shared_files == "\"c:\\a.dll\"");
  CHECK(notes.journal.error_report == "Registry error: unable to increment shared file reference counts.\r\n\r\n");
  CHECK_FALSE(ReleaseSharedFiles("\"c:\\a.dll\""));
  CHECK(machine.calls.empty());
}

TEST_CASE_FIXTURE(Counts,
                  "the last product takes its shared files along, unregistered first, but none that is to stay") {
  CountSharedFiles(notes, "", false);
  CHECK(ReleaseSharedFiles(notes.shared_files));
  CHECK(machine.calls ==
        Calls{"ask c:\\a.dll", "delete c:\\a.dll", "unregister c:\\c.dll", "ask c:\\c.dll", "delete c:\\c.dll"});
  CHECK(machine.keys[kCounts].empty());
}

TEST_CASE_FIXTURE(Counts, "a file that another product counts stays, with one count less") {
  machine.Set(kCounts, "c:\\a.dll", "2");
  CHECK(ReleaseSharedFiles("\"c:\\a.dll\""));
  CHECK(machine.calls.empty());
  CHECK(Count("c:\\a.dll") == "1");
}

TEST_CASE_FIXTURE(Counts, "a file that nobody counts goes, when it is there and the user agrees") {
  machine.says_yes = false;
  CHECK(ReleaseSharedFiles("\"c:\\a.dll\";\"c:\\gone.dll^\""));
  CHECK(machine.calls == Calls{"ask c:\\a.dll", "unregister c:\\gone.dll"});
}
