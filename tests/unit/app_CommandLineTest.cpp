#include "app/CommandLine.h"
#include "archive/RunValues.h"
#include "core/RunMode.h"
#include "tests/support/Testing.h"

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
  for (const Row &row :
       {Row{"", "|||"}, Row{" \t\r\n ", "|||"}, Row{"/a", "A |||"}, Row{"-A /a", "A |||"},
        Row{"/ - /a", "A |||"}, // a lone switch character is nothing
        Row{"/d:c:\\x", "c:\\x|||"}, Row{"/d:\"c:\\my dir\" /a", "A c:\\my dir|||"}, Row{"/D:\"\"", "|||"},
        Row{"/d:\"c:\\a\"b", "\"c:\\a\"b|||"}, // quotes go only when they stand at both ends
        Row{"/d:x /d:y", "y|||"}, Row{"/n:\"a\"\"b\"", "|a\"b||"}, Row{"/n:\"open end", "|open end||"},
        Row{"/n:a\"b c\"d", "|a\"b c\"d||"}, Row{"/u:\"My Product\"", "U ||My Product|"}, Row{"/u /u:x", "U ||x|"},
        Row{"/r:\"a b\"", "|||a b"}, Row{"/R:\"prog\"x", "|||prog\"x"}}) {
    CAPTURE(std::string(row.text));
    CHECK(Parse(row.text) == row.result);
  }
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
    CAPTURE(std::string(row.text));
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
  for (const Row &row :
       {Row{"setup", "setup.EXE"}, Row{" \t..\\setup.com /a", "..\\setup.com"},
        Row{"\"c:\\my dir\\setup\" /a", "c:\\my dir\\setup.EXE"}, Row{"\"c:\\v1.0\\setup\"/a", "c:\\v1.0\\setup.EXE"},
        Row{"setup\t/a b", "setup\t/a.EXE"}, // only a space ends it
        Row{"\"setup.exe", "setup.exe"}}) {
    CAPTURE(std::string(row.line));
    CHECK(OwnPath(row.line) == row.path);
  }
}
