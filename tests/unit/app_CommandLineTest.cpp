#include <doctest/doctest.h>

#include <string>

#include "app/CommandLine.h"
#include "archive/RunValues.h"
#include "core/RunMode.h"
#include "tests/support/FailureTrap.h"

using namespace korb;
using namespace korb::test;

namespace {

/// What a command line came to, as "A U dir|name|uninstall name|program", or the complaint that ended the run.
std::string Parse(const char *text) {
  AutomaticMode = UninstallMode = false;
  InstallDir.clear();
  ProductName.clear();
  CommandLine options;
  const std::string complaint = Trapped([&] { ParseCommandLine(text, options); });
  if (!complaint.empty())
    return complaint;
  return std::string(AutomaticMode ? "A " : "") + (UninstallMode ? "U " : "") + InstallDir.c_str() + "|" +
         ProductName.c_str() + "|" + options.uninstall_name.c_str() + "|" + options.run_after.c_str();
}

std::string Times(int n, const char *text) {
  std::string all;
  while (n-- > 0)
    all += text;
  return all;
}

} // namespace

TEST_CASE("options are read from the command line") {
  struct Row {
    const char *text, *result;
  };
  const Row rows[] = {
      {"", "|||"},
      {" \t\r\n ", "|||"},
      {"/a", "A |||"},
      {"-A /a", "A |||"},
      {"/ - /a", "A |||"}, // a lone switch character is nothing
      {"/d:c:\\x", "c:\\x|||"},
      {"/d:\"c:\\my dir\" /a", "A c:\\my dir|||"},
      {"/D:\"\"", "|||"},
      {"/d:\"c:\\a\"b", "\"c:\\a\"b|||"}, // quotes go only when they stand at both ends
      {"/d:x /d:y", "y|||"},
      {"/n:\"a\"\"b\"", "|a\"b||"},
      {"/n:\"open end", "|open end||"},
      {"/n:a\"b c\"d", "|a\"b c\"d||"},
      {"/u:\"My Product\"", "U ||My Product|"},
      {"/u /u:x", "U ||x|"},
      {"/r:\"a b\"", "|||a b"},
      {"/R:\"prog\"x", "|||prog\"x"},
  };
  for (const Row &row : rows) {
    CAPTURE(row.text);
    CHECK(Parse(row.text) == row.result);
  }
}

TEST_CASE("a command line that can't be understood is told back") {
  struct Row {
    const char *text, *complaint;
  };
  const Row rows[] = {
      {"a", "Unexpected command line parameter:\na"},
      {"\"/a\"", "Unexpected command line parameter:\n\"/a\""},
      {"/r:\"prog\" arg", "Unexpected command line parameter:\narg"},
      {"/a setup", "Unexpected command line parameter:\nsetup"},
      {"/x", "Illegal command line atom:\nx"},
      {"//a", "Illegal command line atom:\n/a"},
      {"/ab", "Illegal command line atom:\nab"},
      {"/d", "Illegal command line atom:\nd"},
      {"/r:prog", "Illegal command line atom:\nr:prog"},
      {"/u", "Product name required"},
      {"/u:", "Product name required"},
      {"/u:\"\"", "Product name required"},
      {"/unknown:\"x\"", "Product name required"}, // anything with a U in front means an uninstall
  };
  for (const Row &row : rows) {
    CAPTURE(row.text);
    CHECK(Parse(row.text) == row.complaint);
  }
}

TEST_CASE("what stands behind nineteen atoms is dropped") {
  CHECK(Parse((Times(19, "/a ") + "bogus /u:\"x\"").c_str()) == "A |||");
  CHECK(Parse((Times(18, "/ ") + "/u:x /a").c_str()) == "U ||x|");
  CHECK(Parse((Times(18, "/a ") + "bogus").c_str()) == "Unexpected command line parameter:\nbogus");
}

TEST_CASE("the running file is the one that was typed") {
  struct Row {
    const char *line, *path;
  };
  const Row rows[] = {
      {"setup", "setup.EXE"},
      {" \t..\\setup.com /a", "..\\setup.com"},
      {"\"c:\\my dir\\setup\" /a", "c:\\my dir\\setup.EXE"},
      {"\"c:\\v1.0\\setup\"/a", "c:\\v1.0\\setup.EXE"},
      {"setup\t/a b", "setup\t/a.EXE"}, // only a space ends it
      {"\"setup.exe", "setup.exe"},
  };
  for (const Row &row : rows) {
    CAPTURE(row.line);
    CHECK(OwnPath(row.line) == row.path);
  }
}
