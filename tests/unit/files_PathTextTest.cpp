#include <doctest/doctest.h>

#include <cstring>
#include <string>

#include "files/PathText.h"
#include "files/RenameSection.h"

using namespace korb;

namespace {

std::string Std(const String &text) {
  return std::string(text.c_str(), static_cast<size_t>(text.length()));
}

} // namespace

TEST_CASE("a directory and a name are joined by one backslash") {
  struct Row {
    const char *directory, *name, *path;
  };
  const Row rows[] = {
      {"c:\\", "\\x", "c:\\x"},
      {"c:\\a\\", "b", "c:\\a\\b"},
      {"c:\\a", "b", "c:\\a\\b"},
      {"c:", "foo", "c:foo"},
      {"", "b", "b"},
      {nullptr, "b", "b"},
      {"c:\\a", "", "c:\\a"},
      {"c:\\a\\\\", "\\b", "c:\\a\\\\b"},
      {"c:\\a", "d:\\b", "c:\\a\\d:\\b"},
  };
  for (const Row &row : rows) {
    CAPTURE(row.path);
    CHECK(Std(PathJoin(row.directory, row.name)) == row.path);
  }
}

TEST_CASE("a path falls into directory and name") {
  struct Row {
    const char *path, *directory, *file, *root;
  };
  const Row rows[] = {
      {"c:\\dir\\file", "c:\\dir", "file", "c:\\"},
      {"c:\\file", "c:\\", "file", "c:\\"},
      {"c:\\", "c:\\", "", "c:\\"},
      {"c:file", "c:", "file", "c:"},
      {"file", "", "file", ""},
      {"\\file", "", "file", ""},
      {"c:\\dir\\", "c:\\dir", "", "c:\\"},
      {"\\\\server\\share\\file", "\\\\server\\share", "file", ""},
      {"\\\\server", "\\", "server", ""},
      {"c:\\a\\b;d:\\x\\y", "c:\\a", "y", "c:\\"}, // a list: its first directory, but its last name
      {"\"c:\\a;b\\c\"", "\"c:\\a;b", "c\"", ""},
      {"a;c:\\x", "a;c:", "x", ""}, // without a backslash in front of the list's end, any colon counts
      {nullptr, "", "", ""},
  };
  for (const Row &row : rows) {
    CAPTURE(row.path);
    CHECK(Std(DirectoryPart(row.path)) == row.directory);
    CHECK(Std(FilePart(row.path)) == row.file);
    CHECK(Std(PathRoot(row.path)) == row.root);
  }
  String path("c:\\dir\\file");
  CHECK(CutToDirectory(path));
  CHECK(Std(path) == "c:\\dir\\");
  String bare("file");
  CHECK_FALSE(CutToDirectory(bare));
  CHECK(Std(bare) == "file");
}

TEST_CASE("drives and extensions") {
  CHECK(DriveLetter("c:\\x") == 'C');
  CHECK(DriveLetter("1:\\x") == 0);
  CHECK(DriveLetter("c") == 0);
  CHECK(Std(DriveSpec("c-d")) == "c:");
  CHECK(Std(DriveSpec("\\\\s")) == "");
  CHECK(Std(DriveSpec('\0')) == "");
  CHECK(ExtensionIndex("c:\\a.b\\c") == -1);
  CHECK(ExtensionIndex("a.b.c") == 3);
  CHECK(ExtensionIndex(".x") == 0);
  struct Row {
    const char *path, *extension, *result;
  };
  const Row rows[] = {
      {"setup", "EXE", "setup.EXE"},
      {"setup", ".EXE", "setup.EXE"},
      {"setup.", "EXE", "setup."},
      {"a.b\\c", "EXE", "a.b\\c.EXE"},
      {" ", "EXE", " "},
      {"setup", nullptr, "setup"},
  };
  for (const Row &row : rows) {
    String path(row.path);
    AddDefaultExtension(path, row.extension);
    CHECK(Std(path) == row.result);
  }
}

TEST_CASE("paths are compared and judged by their text") {
  CHECK(SamePath("C:\\Dir\\", "c:\\dir"));
  CHECK(SamePath("", ""));
  CHECK(SamePath("\\\\", ""));
  CHECK_FALSE(SamePath("c:\\dir", "c:\\dir2"));
  for (const char *full : {"c:\\", "  c:\\x", "\\\\server", "1:\\x"})
    CHECK(IsFullPath(full));
  for (const char *part : {"", "  ", "x", "c:x", "\\x", "c", "c:"})
    CHECK_FALSE(IsFullPath(part));
  CHECK_FALSE(IsFullPath(nullptr));

  struct Row {
    const char *path;
    int flags; // one bit for each value of the flags, 0 to 3, under which the path is legal
  };
  const Row rows[] = {
      {"c:\\dir", 15}, {"c:\\a:b", 0},       {"1:\\dir", 0},   {"\"c:\\dir\"", 15}, {"", 0},    {"a/b", 0},
      {"a;b", 0},      {"*.txt", 2 | 4 | 8}, {"?.txt", 4 | 8}, {"a|b", 0},          {"\"a", 0}, {"c:", 15},
  };
  for (const Row &row : rows)
    for (uint32_t flags = 0; flags < 4; ++flags) {
      CAPTURE(row.path);
      CAPTURE(flags);
      CHECK(IsLegalPath(row.path, flags) == ((row.flags >> flags & 1) != 0));
    }
  for (const char *name : {"", "a;b", "a*", "c:x", "a\"b"})
    CHECK_FALSE(IsPlainFileName(name));
  CHECK(IsPlainFileName("a b.txt"));
}

TEST_CASE("a name is made absolute, or left alone") {
  struct Row {
    const char *path, *base, *result;
    bool changed;
  };
  const Row rows[] = {
      {"\\x", "c:\\dir", "c:\\x", true},
      {"x", "c:\\dir\\", "c:\\dir\\x", true},
      {"x", "c:\\dir", "c:\\dir\\x", true},
      {"  x ", " c:\\dir", "c:\\dir\\x", true},
      {"d:foo", "c:\\dir", "d:\\dir\\foo", true}, // its own drive, the base's directory
      {"d:foo", "c:\\", "d:\\foo", true},
      {"x", "\\\\server\\share", "\\\\server\\share\\x", true},
      {"x", "dir", "x", false},
      {"x", nullptr, "x", false},
      {" c:\\full ", "c:\\dir", "c:\\full", false},
      {"\\\\server\\x", "c:\\dir", "\\\\server\\x", false},
      {"\\x", "\\\\server\\share", "\\x", false},
      {" ", "c:\\dir", "", false},
  };
  for (const Row &row : rows) {
    CAPTURE(row.path);
    String path(row.path);
    CHECK(NormalisePath(path, row.base) == row.changed);
    CHECK(Std(path) == row.result);
  }
}

TEST_CASE("a rename becomes the first line of its section") {
  struct Row {
    const char *before, *after;
  };
  const Row rows[] = {
      {"", "\r\n[rename]\r\nNUL=c:\\x"},
      {"[other]\r\na=b", "[other]\r\na=b\r\n[rename]\r\nNUL=c:\\x"},
      {"[other]\r\n", "[other]\r\n[rename]\r\nNUL=c:\\x"},
      {"[RENAME]\r\nNUL=c:\\y\r\n[z]", "[RENAME]\r\nNUL=c:\\x\r\nNUL=c:\\y\r\n[z]"},
      {"[rename]", "[rename]\r\nNUL=c:\\x"},
  };
  for (const Row &row : rows) {
    String text(row.before);
    AddRename(text, "NUL", "c:\\x");
    CHECK(Std(text) == row.after);
  }
}
