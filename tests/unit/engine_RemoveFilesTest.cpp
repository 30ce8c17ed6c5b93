// What the list of a record takes off the machine.
#include "core/RunValues.h"
#include "engine/RemoveFiles.h"
#include "format/Texts.h"
#include "tests/support/MemoryMachine.h"
#include "tests/support/Testing.h"

namespace {

using Calls = std::vector<std::string>;
using Files = std::set<std::string>;

struct Removal {
  Removal() {
    ResetRunValues();
    InstallDir = "C:\\App";
    TextTable.set_count(kTextRemoveFailed + 1);
    TextTable.at(kTextRemoveFailed).append("stays:");
  }

  void Remove(std::initializer_list<const char *> lines) {
    Vector<String> entries;
    for (const char *line : lines)
      entries.append(line);
    RemoveListedFiles(entries, report, left);
  }

  MemoryMachine machine;
  String report;
  UninstallList left;
};

} // namespace

TEST_CASE_FIXTURE(Removal, "files go in the order of the list, and what is missing is no failure") {
  machine.files = {"C:\\App\\b", "C:\\App\\a"};
  Remove({"C:\\App\\b", "", "C:\\App\\missing", "C:\\App\\a"});
  CHECK(machine.calls == Calls{"delete C:\\App\\b", "delete C:\\App\\missing", "delete C:\\App\\a"});
  CHECK(report.is_empty());
  CHECK(left.text().is_empty());
}

TEST_CASE_FIXTURE(Removal, "a file that can't be deleted is told, and is all that a second run finds") {
  machine.files = machine.held = {"C:\\App\\held"};
  machine.files.insert("C:\\App\\a");
  Remove({"C:\\App\\held", "C:\\App\\a", "~C:\\App\\sub"});
  CHECK(machine.files == Files{"C:\\App\\held"});
  CHECK(report == "stays: C:\\App\\held\r\n");
  CHECK(left.text() == "C:\\App\\held\r\n");
}

TEST_CASE_FIXTURE(Removal, "empty directories go after all files, inner ones first, with those that they leave empty") {
  machine.files = {"C:\\App", "C:\\App\\d", "C:\\App\\d\\e", "C:\\App\\d\\e\\f", "C:\\App\\d\\e\\f\\a"};
  Remove({"~C:\\App\\d\\e", "~C:\\App\\d\\e\\f", "C:\\App\\d\\e\\f\\a"});
  CHECK(machine.files == Files{"C:\\App"}); // whose end is the uninstaller's own business
}

TEST_CASE_FIXTURE(Removal, "a directory with anything in it stays, and those above it") {
  machine.files = {"C:\\App\\d", "C:\\App\\d\\e", "C:\\App\\d\\mine"};
  Remove({"~C:\\App\\d\\e"});
  CHECK(machine.files == Files{"C:\\App\\d", "C:\\App\\d\\mine"});
  CHECK(report.is_empty());
}

TEST_CASE_FIXTURE(Removal, "what a path means only where the run stands stays, unless the product is there so itself") {
  machine.files = {"a", "C:a", "\\a", "..\\d", "C:\\App\\..\\a"};
  const Files all_relative = {"a", "C:a", "\\a", "..\\d"};
  Remove({"a", "C:a", "\\a", "~..\\d", "C:\\App\\..\\a"});
  CHECK(machine.files == all_relative);
  InstallDir = ".";
  Remove({"a", "C:a", "\\a", "~..\\d"});
  CHECK(machine.files.empty());
}

TEST_CASE_FIXTURE(Removal, "a key of the classes goes with all below it, but no type as a whole") {
  machine.Set("CLSID\\{1}\\deep", "", "");
  Remove({"!CLSID", "!CLSID\\{1}"});
  CHECK(machine.Registry() == "[CLSID]\n");
}
