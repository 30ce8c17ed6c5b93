// Directories, attributes, delayed moves and processes on the real calls.
#include "core/Windows.h"
#include "files/Attributes.h"
#include "files/DeferredFiles.h"
#include "files/Directories.h"
#include "files/DiskSpace.h"
#include "files/FileInfo.h"
#include "files/PathText.h"
#include "files/ProgramPaths.h"
#include "files/RunProcess.h"
#include "files/TempFiles.h"
#include "files/WholeFile.h"
#include "tests/support/HeldFile.h"
#include "tests/support/TempFolder.h"
#include "tests/support/Testing.h"

namespace {

struct Fixture {
  Fixture() { InitPaths(); }
  String Path(const char *name) const { return (folder.Path() / name).string().c_str(); }
  bool Exists(const char *name) const { return GetAttributes(Path(name)) != kNoAttributes; }

  TempFolder folder;
};

/// What the system has registered for its next start.
std::string PendingMoves() {
  char text[4096];
  DWORD size = sizeof text;
  HKEY key;
  if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, "System\\CurrentControlSet\\Control\\Session Manager", 0, KEY_READ, &key) != 0)
    return "";
  const LONG error =
      RegQueryValueExA(key, "PendingFileRenameOperations", nullptr, nullptr, reinterpret_cast<BYTE *>(text), &size);
  RegCloseKey(key);
  return error == 0 ? std::string(text, size) : std::string();
}

} // namespace

TEST_CASE("the program knows where it is") {
  InitPaths();
  CHECK(ProgramName.find(".exe", 0, FIND_IGNORE_CASE) > 0);
  CHECK(PathJoin(ProgramDirectory, ProgramName) == ProgramPath);
  CHECK(ProgramDrive == 'C');
  CHECK(ProgramRelative("x") == PathJoin(ProgramDirectory, "x"));
  CHECK(DirectoryExists(WindowsDirectory));
  CHECK(CommandInterpreter.find("cmd.exe", 0, FIND_IGNORE_CASE) > 0);
  String name("x");
  CHECK(NormaliseToProgram(name));
  CHECK(name == ProgramRelative("x"));
}

TEST_CASE("the variables of the environment are put in, and a text too long for that stays") {
  InitPaths();
  String text("%windir%\\x %unset_variable%");
  CHECK(ExpandEnvironment(text));
  CHECK(text.equals_no_case((WindowsDirectory + "\\x %unset_variable%").c_str()));
  String long_text("%windir%");
  long_text.insert_char('x', 0, 32000);
  CHECK_FALSE(ExpandEnvironment(long_text));
  CHECK(long_text.length() == 32008);
}

TEST_CASE_FIXTURE(Fixture, "a directory exists if it can be entered, and is left again") {
  const String before = CurrentDirectory();
  folder.Write("file", "x");
  CHECK(DirectoryExists(folder.Path().string().c_str()));
  for (const String &none : {Path("missing"), Path("file"), String("")})
    CHECK_FALSE_MESSAGE(DirectoryExists(none), none);
  CHECK_FALSE(DirectoryExists(nullptr));
  CHECK(CurrentDirectory() == before);
}

TEST_CASE_FIXTURE(Fixture, "a directory with a name longer than the first try has room for is told whole") {
  const String before = CurrentDirectory();
  String deep = Path("deep");
  for (int i = 0; i < 6; ++i)
    deep += "\\a-rather-long-name-of-a-directory";
  CHECK(CreateDirectoryTree(deep));
  REQUIRE(SetCurrentDirectoryA(deep));
  CHECK(SamePath(CurrentDirectory(), deep));
  SetCurrentDirectoryA(before);
}

TEST_CASE_FIXTURE(Fixture,
                  "a directory is made with those above it, where there is a drive and no file is in the way") {
  CHECK(CreateDirectoryTree(Path("a\\b\\c")));
  CHECK(Exists("a\\b\\c"));
  CHECK(CreateDirectoryTree(Path("a\\b\\c"))); // there already
  CHECK(CreateDirectoryTree("q:\\"));          // the root of a missing drive answers true
  folder.Write("file", "x");
  for (const String &none : {String("q:\\x"), String(""), Path("file\\below")})
    CHECK_FALSE_MESSAGE(CreateDirectoryTree(none), none);
}

TEST_CASE_FIXTURE(Fixture, "only an empty directory is removed alone") {
  CreateDirectoryTree(Path("a\\b"));
  CHECK_FALSE(RemoveEmptyDirectory(Path("a")));
  CHECK(RemoveEmptyDirectory(Path("a\\b\\")));
  CHECK_FALSE(RemoveEmptyDirectory("c:\\"));
}

TEST_CASE_FIXTURE(Fixture, "a tree is removed but for what can't be, and that the next time") {
  folder.Write("a/b/read-only", "x");
  SetReadOnly(Path("a\\b\\read-only"), true);
  folder.Write("a/d/held", "x");
  folder.Write("a/other", "x");
  {
    const HeldFile held(Path("a\\d\\held"));
    CHECK_FALSE(DeleteDirectoryTree(Path("a")));
    CHECK_FALSE(Exists("a\\b"));
    CHECK_FALSE(Exists("a\\other"));
    CHECK(Exists("a\\d\\held"));
  }
  CHECK(DeleteDirectoryTree(Path("a")));
  CHECK_FALSE(Exists("a"));
  CHECK_FALSE(DeleteDirectoryTree(Path("a")));
}

TEST_CASE_FIXTURE(Fixture, "what a link leads to is not removed with it") {
  folder.Write("elsewhere/kept", "x");
  folder.Write("tree/file", "x");
  // Windows can't make one everywhere, Wine's host can.
  RunProcess("z:\\bin\\ln -s ../elsewhere tree/link", RP_NONE, folder.Path().string().c_str());
  for (int i = 0; i < 100 && !Exists("tree\\link\\kept"); ++i)
    Sleep(20);
  DeleteDirectoryTree(Path("tree"));
  CHECK_FALSE(Exists("tree\\file"));
  CHECK(Exists("elsewhere\\kept"));
}

TEST_CASE_FIXTURE(Fixture, "a tree of the system is never removed") {
  const String below = PathJoin(WindowsDirectory, "korbtest");
  const String beside = WindowsDirectory + "2";
  for (const String *path : {&below, &beside}) {
    CAPTURE(*path);
    REQUIRE(CreateDirectoryTree(*path));
    CHECK_FALSE(DeleteDirectoryTree(*path));
    String other_case(*path);
    other_case.to_upper();
    CHECK_FALSE(DeleteDirectoryTree(other_case));
    CHECK(DirectoryExists(*path));
    CHECK(RemoveEmptyDirectory(*path));
  }
  CHECK_FALSE(DeleteDirectoryTree("c:\\"));
}

TEST_CASE_FIXTURE(Fixture, "a name with a semicolon is no name for a walk") {
  folder.Write("w/a;b", "x");
  folder.Write("w/c", "x");
  FileFinder finder;
  FileInfo info;
  int found = 0;
  for (bool more = finder.FindFirst(Path("w\\*.*"), &info); more; more = finder.FindNext(&info))
    found += !info.IsDirectory();
  CHECK(found == 1);
  CHECK_FALSE(finder.FindNext(&info));
  CHECK_FALSE(GetFileInfo(Path("w\\a;b"), &info));
  CHECK(GetFileInfo(Path("w\\c"), &info));
  CHECK(info.name == "c");
  CHECK(info.size == 1);
  CHECK_FALSE(DeleteDirectoryTree(Path("w")));
}

TEST_CASE_FIXTURE(Fixture, "a file exists if it can be opened") {
  folder.Write("file", "x");
  CHECK(FileExists(Path("file")));
  for (const String &none : {Path("missing"), Path("."), String("")})
    CHECK_FALSE_MESSAGE(FileExists(none), none);
}

TEST_CASE_FIXTURE(Fixture, "attributes change only as asked") {
  folder.Write("file", "x");
  const String file = Path("file");
  CHECK(SetReadOnly(file, true));
  CHECK((GetAttributes(file) & FILE_ATTRIBUTE_READONLY) != 0);
  CHECK(SetReadOnly(file, true));
  CHECK(ChangeAttributes(file, 0, FILE_ATTRIBUTE_HIDDEN)); // nothing to change, nothing lost
  CHECK((GetAttributes(file) & FILE_ATTRIBUTE_READONLY) != 0);
  CHECK(ClearAttributes(file, 7));
  CHECK((GetAttributes(file) & 7) == 0);
  CHECK_FALSE(SetReadOnly(Path("missing"), false));
  CHECK(GetAttributes(nullptr) == kNoAttributes);
}

TEST_CASE("what is no drive has no room") {
  CHECK(DriveFreeBytes("\\\\server\\share") == -1);
  CHECK(DriveFreeBytes("q:\\") == -1);
  CHECK(ClusterSize("1:") == -1);
  CHECK_FALSE(DiskSpace(nullptr, nullptr, nullptr));
  CHECK_FALSE(DriveExists("q:\\"));
}

TEST_CASE_FIXTURE(Fixture, "a temporary name is that of a new file") {
  CHECK(FileExists(TempFileName(folder.Path().string().c_str())));
  CHECK(TempFileName(Path("missing")).is_empty());
  CHECK_FALSE(String(TempDirectory()).ends_with_char('\\'));
}

TEST_CASE_FIXTURE(Fixture, "a short name names the same file") {
  folder.Write("a rather long name.text", "long");
  const String short_name = ShortPath(Path("a rather long name.text"));
  String text;
  CHECK(ReadWholeFile(short_name, text) == 0);
  CHECK(text == "long");
  CHECK(short_name.find_char(' ') < 0);
  CHECK(ShortPath(Path("missing file")) == Path("missing file"));
  CHECK(ShortPath("").is_empty());
}

TEST_CASE_FIXTURE(Fixture, "files are moved over others, and only as asked") {
  struct Row {
    const char *target;
    MoveOptions flags;
    bool moved;
  };
  for (const Row &row :
       {Row{"new", MV_NONE, true}, Row{"there", MV_NONE, true}, // read-only does not protect it
        Row{"there", MV_NO_OVERWRITE, false}, Row{"new", MV_TARGET_MUST_EXIST, false},
        Row{"there", MV_TARGET_MUST_EXIST | MV_NO_OVERWRITE, true}, Row{"made\\new", MV_NONE, false},
        Row{"made\\new", MV_CREATE_DIRECTORY, true}, Row{"SOURCE", MV_NONE, true}, // another spelling of the same file
        Row{"source", MV_NONE, false}}) {
    CAPTURE(row.target);
    CAPTURE(row.flags);
    const TempFolder place;
    const auto path = [&](const char *name) { return String((place.Path() / name).string().c_str()); };
    place.Write("source", "moved");
    place.Write("there", "old");
    SetReadOnly(path("there"), true);
    CHECK(MoveOrSchedule(path("source"), path(row.target), row.flags) == row.moved);
    CHECK(FileMatches("moved", 5, path(row.target)) == (row.moved || path("source") == path(row.target)));
    CHECK(FileMatches("moved", 5, path("source")) == (!row.moved || path("source").equals_no_case(path(row.target))));
    SetReadOnly(path("there"), false);
  }
  CHECK_FALSE(MoveOrSchedule(Path("missing"), Path("x")));
  CHECK_FALSE(MoveOrSchedule(nullptr, Path("x")));
}

TEST_CASE_FIXTURE(Fixture, "a protected file is deleted unless that is to be minded") {
  CHECK_FALSE(DeleteOrSchedule(nullptr));
  folder.Write("kept", "x");
  SetReadOnly(Path("kept"), true);
  CHECK_FALSE(DeleteOrSchedule(Path("kept"), DEL_KEEP_READONLY));
  CHECK(DeleteOrSchedule(Path("kept")));
}

TEST_CASE_FIXTURE(Fixture, "what can't be done now is left to the next start") {
  folder.Write("new", "x");
  folder.Write("held", "old");
  const HeldFile held(Path("held"));
  CHECK_FALSE(MoveOrSchedule(Path("new"), Path("held")));
  CHECK(MoveOrSchedule(Path("new"), Path("held"), MV_AT_RESTART | MV_TARGET_MUST_EXIST));
  CHECK(DeleteOrSchedule(Path("held"), DEL_AT_RESTART));
  const std::string pending = PendingMoves();
  CHECK(pending.find("\\new") != std::string::npos);
  CHECK(pending.find("!\\??\\") != std::string::npos);
}

TEST_CASE("the last rename is the first that a start without such a list carries out") {
  InitPaths();
  const String ini = PathJoin(WindowsDirectory, "wininit.ini");
  CHECK_FALSE(AddWininitRename(" ", "x"));
  CHECK(AddWininitRename("NUL", "c:\\one"));
  CHECK(AddWininitRename("c:\\two", "c:\\three"));
  String text;
  ReadWholeFile(ini, text);
  DeleteFileA(ini);
  CHECK(text == "\r\n[rename]\r\nc:\\two=c:\\three\r\nNUL=c:\\one");
}

TEST_CASE_FIXTURE(Fixture, "a process is awaited and gives its code") {
  const String shell = CommandInterpreter + " /c exit 6";
  CHECK(RunProcess(shell, RP_WAIT | RP_HIDE, nullptr) == 6);
  ClearTrap();
  CHECK(RunProcess(shell, RP_WAIT | RP_PUMP | RP_IDLE_PRIORITY | RP_MINIMIZE, nullptr) == 6);
  CHECK(PumpCount > 0);
  CHECK(RunProcess(shell, RP_NONE, nullptr) == kProcessCodeUnknown);
}

TEST_CASE("a process that there is no program for is not started") {
  CHECK(RunProcess("c:\\no such program.exe", RP_WAIT, nullptr) == kProcessNotStarted);
  CHECK(RunProcess("", RP_WAIT, nullptr) == kProcessNotStarted);
}
