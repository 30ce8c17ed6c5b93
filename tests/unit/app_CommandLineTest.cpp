#include "app/CommandLine.h"
#include "core/RunValues.h"
#include "tests/support/Testing.h"

namespace {

/// What a command line may ask for.
struct Asked {
  bool automatic = false, uninstall = false;
  std::string directory = {}, name = {}, uninstall_name = {}, run_after = {};
};

/// Reads a command line, and gives the complaint that ended the run.
std::string Parse(const std::string &text, Asked &asked) {
  AutomaticMode = UninstallMode = false;
  InstallDir.clear();
  ProductName.clear();
  CommandLine options;
  const std::string complaint = Trapped([&] { ParseCommandLine(text.c_str(), options); });
  asked = {AutomaticMode,         UninstallMode, Std(InstallDir), Std(ProductName), Std(options.uninstall_name),
           Std(options.run_after)};
  return complaint;
}

void CheckAsked(const std::string &text, const Asked &expected) {
  CAPTURE(text);
  Asked asked;
  CHECK(Parse(text, asked) == "");
  CHECK(asked.automatic == expected.automatic);
  CHECK(asked.uninstall == expected.uninstall);
  CHECK(asked.directory == expected.directory);
  CHECK(asked.name == expected.name);
  CHECK(asked.uninstall_name == expected.uninstall_name);
  CHECK(asked.run_after == expected.run_after);
}

void CheckComplaint(const std::string &text, const char *expected) {
  CAPTURE(text);
  Asked asked;
  CHECK(Parse(text, asked) == expected);
}

std::string Times(int n, const char *text) {
  std::string all;
  while (n-- > 0)
    all += text;
  return all;
}

} // namespace

TEST_CASE("options are read from the command line") {
  CheckAsked("", {});
  CheckAsked(" \t\r\n ", {});
  CheckAsked("/a", {.automatic = true});
  CheckAsked("-A /a", {.automatic = true});
  CheckAsked("/ - /a", {.automatic = true}); // a lone switch character is nothing
  CheckAsked("/d:c:\\x", {.directory = "c:\\x"});
  CheckAsked("/d:\"c:\\my dir\" /a", {.automatic = true, .directory = "c:\\my dir"});
  CheckAsked("/D:\"\"", {});
  CheckAsked("/d:\"c:\\a\"b", {.directory = "\"c:\\a\"b"}); // quotes go only when they stand at both ends
  CheckAsked("/d:x /d:y", {.directory = "y"});
  CheckAsked("/n:\"a\"\"b\"", {.name = "a\"b"});
  CheckAsked("/n:\"open end", {.name = "open end"});
  CheckAsked("/n:a\"b c\"d", {.name = "a\"b c\"d"});
  CheckAsked("/u:\"My Product\"", {.uninstall = true, .uninstall_name = "My Product"});
  CheckAsked("/u /u:x", {.uninstall = true, .uninstall_name = "x"});
  CheckAsked("/r:\"a b\"", {.run_after = "a b"});
  CheckAsked("/R:\"prog\"x", {.run_after = "prog\"x"});
}

TEST_CASE("a command line that can't be understood is told back") {
  struct Row {
    const char *text, *complaint;
  };
  for (const Row &row : {
           Row{"a", "Unexpected command line parameter:\na"},
           Row{"\"/a\"", "Unexpected command line parameter:\n\"/a\""},
           Row{"/r:\"prog\" arg", "Unexpected command line parameter:\narg"},
           Row{"/a setup", "Unexpected command line parameter:\nsetup"}, Row{"/x", "Illegal command line atom:\nx"},
           Row{"//a", "Illegal command line atom:\n/a"}, Row{"/ab", "Illegal command line atom:\nab"},
           Row{"/d", "Illegal command line atom:\nd"}, Row{"/r:prog", "Illegal command line atom:\nr:prog"},
           Row{"/u", "Product name required"}, Row{"/u:", "Product name required"},
           Row{"/u:\"\"", "Product name required"},
           Row{"/unknown:\"x\"", "Product name required"} // anything with a U in front means an uninstall
       }) {
    CheckComplaint(row.text, row.complaint);
  }
}

TEST_CASE("what comes after nineteen atoms is dropped") {
  CheckAsked(Times(19, "/a ") + "bogus /u:\"x\"", {.automatic = true});
  CheckAsked(Times(18, "/ ") + "/u:x /a", {.uninstall = true, .uninstall_name = "x"});
  CheckComplaint(Times(18, "/a ") + "bogus", "Unexpected command line parameter:\nbogus");
}

TEST_CASE("the running file is the one that was typed") {
  struct Row {
    const char *line, *path;
  };
  for (const Row &row :
       {Row{"setup", "setup.EXE"}, Row{" \t..\\setup.com /a", "..\\setup.com"},
        Row{"\"c:\\my dir\\setup\" /a", "c:\\my dir\\setup.EXE"}, Row{"\"c:\\v1.0\\setup\"/a", "c:\\v1.0\\setup.EXE"},
        Row{"setup\t/a b", "setup\t/a.EXE"}, // only a space ends it
        Row{"\"setup.exe", "setup.exe"}}) {
    CAPTURE(std::string(row.line));
    CHECK(OwnPath(row.line) == row.path);
  }
}
