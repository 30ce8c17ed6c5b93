// Batches under the real command interpreter, and the real autoexec.bat of the prefix's boot drive.
#include "core/RunValues.h"
#include "core/Windows.h"
#include "files/FileInfo.h"
#include "files/ProgramPaths.h"
#include "files/WholeFile.h"
#include "system/BatchRunner.h"
#include "system/SearchPath.h"
#include "system/SystemFolders.h"
#include "tests/support/TempFolder.h"
#include "tests/support/Testing.h"

namespace {

/// Paths come back in any case.
std::string Upper(String text) {
  text.to_upper();
  return text.c_str();
}

std::string UpperContents(const String &path) {
  String text;
  ReadWholeFile(path.c_str(), text);
  return Upper(text);
}

/// What a batch in `directory` makes of `script`, with the lines of variables in front left out.
std::string Ran(const char *script, bool may_pause) {
  const String text = BatchText("", script, may_pause);
  const int32_t start = text.find("SET CommonDir=");
  REQUIRE(start > 0);
  return text.mid(text.find_line_end(start)).c_str();
}

constexpr char kAutoexec[] = "c:\\autoexec.bat";

/// A machine without the file, whose search path is to have the system's own directory.
struct Autoexec {
  Autoexec() {
    InitPaths();
    REQUIRE(BootDriveLetter() == 'C');
    InstallDir = "c:\\windows";
    DeleteFileA(kAutoexec);
  }
  ~Autoexec() { DeleteFileA(kAutoexec); }
};

} // namespace

TEST_CASE("a batch sees the folders as variables, runs where it is told, and leaves no file") {
  InitPaths();
  const TempFolder folder;
  const String directory = folder.Path().string().c_str();
  CommonDir = "c:\\Common Things";
  String log;
  for (const bool hidden : {false, true}) {
    CAPTURE(hidden);
    CHECK(
        RunBatch(directory,
                 "echo %InstallDir%^|%InstallDrive%^|%SharedDir%^|%InstallerDrive%^|%BootDrive%^|%SystemDir%> out.txt\n"
                 "cd >> out.txt\n"
                 "PAUSE >nul <nul\n"
                 "if not exist KORBBAT.BAT echo lost>> out.txt",
                 hidden, log));
    const String expected = directory + "|" + directory.mid(0, 2) + "|c:\\Common Things|" + ProgramDrive + ":|" +
                            BootDriveLetter() + ":|" + SystemFolder() + "\r\n" + directory + "\r\n";
    CHECK(UpperContents(directory + "\\out.txt") == Upper(expected));
    CHECK_FALSE(FileExists((directory + "\\KORBBAT.BAT").c_str()));
  }
}

TEST_CASE("a batch that did not run is told in the log, whatever one that ran came to") {
  InitPaths();
  const TempFolder folder;
  const String directory = folder.Path().string().c_str();
  String log;
  CHECK(RunBatch(directory, " \r\n\t", false, log));
  CHECK_FALSE(RunBatch(directory, "exit 3", false, log));
  CHECK(log == "");
  CHECK_FALSE(RunBatch(directory + "\\missing", "echo", false, log));
  CHECK(log.starts_with(directory + "\\missing\\KORBBAT.BAT could not be run: "));
}

TEST_CASE("a hidden or silent batch loses the lines that only pause") {
  struct Row {
    const char *script, *shown, *hidden;
  };
  const Row rows[] = {
      {"a\nPause\n @ pause \t\r\n@pause", "a\r\nPause\r\n @ pause \t\r\n@pause", "a\r\n"},
      {"@@pause\npause >nul\n echo pause", "@@pause\r\npause >nul\r\n echo pause",
       "@@pause\r\npause >nul\r\n echo pause\r\n"},
      {"a\r\rb\n\rc", "a\r\n\r\nb\r\nc", nullptr},
  };
  for (const Row &row : rows) {
    CAPTURE(row.script);
    CHECK(Ran(row.script, true) == row.shown);
    if (row.hidden)
      CHECK(Ran(row.script, false) == row.hidden);
  }
  CHECK(BatchText("", "x", true).find("InstallDir=") < 0);
}

TEST_CASE_FIXTURE(Autoexec, "the search path gets the directory once, and loses it again") {
  struct Row {
    const char *before;
    bool add;
    const char *after;
  };
  for (const Row &row : {Row{"", true, "\r\nPATH=%PATH%;C:\\windows\r\n"},
                         Row{"@echo off", true, "@echo off\r\nPATH=%PATH%;C:\\windows\r\n"},
                         Row{"@echo off\r\n", true, "@echo off\r\nPATH=%PATH%;C:\\windows\r\n"},
                         Row{"path=%path%;c:\\WINDOWS\r\n", true, "path=%path%;c:\\WINDOWS\r\n"},
                         Row{"PATH=%PATH%;C:\\windows", true, "PATH=%PATH%;C:\\windows\r\nPATH=%PATH%;C:\\windows\r\n"},
                         Row{"a\r\npath=%path%;c:\\WINDOWS\r\nb\r\nPATH=%PATH%;C:\\windows\r\n", false, "a\r\nb\r\n"},
                         Row{"a\r\nPATH=%PATH%;c:\\windows", false, "a\r\n"}, Row{"a\r\nb", false, "a\r\nb"}}) {
    CAPTURE(row.before);
    REQUIRE(WriteWholeFile(kAutoexec, String(row.before)));
    CHECK(EditAutoexecPath(row.add).is_empty());
    CHECK(UpperContents(kAutoexec) == Upper(row.after));
  }
}

TEST_CASE_FIXTURE(Autoexec,
                  "a search path without a file is told when it is to lose a directory, and made to get one") {
  CHECK(EditAutoexecPath(false) == "Unable to modify C:\\autoexec.bat.  You will need to manually remove c:\\windows "
                                   "from the PATH environment variable.\r\n\r\n");
  CHECK_FALSE(FileExists(kAutoexec));
  CHECK(EditAutoexecPath(true) == "");
  CHECK(UpperContents(kAutoexec) == "\r\nPATH=%PATH%;C:\\WINDOWS\r\n");
}
