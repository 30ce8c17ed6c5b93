#include <cstring>

#include "files/DeferredFiles.h"
#include "files/PathText.h"
#include "tests/support/Testing.h"

TEST_CASE("a directory and a name are joined by one backslash") {
  struct Row {
    const char *directory, *name, *path;
  };
  for (const Row &row :
       {Row{"c:\\", "\\x", "c:\\x"}, Row{"c:\\a\\", "b", "c:\\a\\b"}, Row{"c:\\a", "b", "c:\\a\\b"},
        Row{"c:", "foo", "c:foo"}, Row{"", "b", "b"}, Row{nullptr, "b", "b"}, Row{"c:\\a", "", "c:\\a"},
        Row{"c:\\a\\\\", "\\b", "c:\\a\\\\b"}, Row{"c:\\a", "d:\\b", "c:\\a\\d:\\b"}}) {
    CAPTURE(row.path);
    CHECK(Std(PathJoin(row.directory, row.name)) == row.path);
  }
}

TEST_CASE("a path falls into directory and name") {
  struct Row {
    const char *path, *directory, *file, *root;
  };
  for (const Row &row :
       {Row{"c:\\dir\\file", "c:\\dir", "file", "c:\\"}, Row{"c:\\file", "c:\\", "file", "c:\\"},
        Row{"c:\\", "c:\\", "", "c:\\"}, Row{"c:file", "c:", "file", "c:"}, Row{"file", "", "file", ""},
        Row{"\\file", "", "file", ""}, Row{"c:\\dir\\", "c:\\dir", "", "c:\\"},
        Row{"\\\\server\\share\\file", "\\\\server\\share", "file", ""}, Row{"\\\\server", "\\", "server", ""},
        Row{"c:\\a\\b;d:\\x\\y", "c:\\a", "y", "c:\\"}, // a list: its first directory, but its last name
        Row{"\"c:\\a;b\\c\"", "\"c:\\a;b", "c\"", ""},
        Row{"a;c:\\x", "a;c:", "x", ""}, // without a backslash in front of the list's end, any colon counts
        Row{nullptr, "", "", ""}}) {
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
  CHECK(Values{DriveLetter("c:\\x"), DriveLetter("1:\\x"), DriveLetter("c")} == Values{'C', 0, 0});
  CHECK(Std(DriveSpec("c-d")) == "c:");
  CHECK(Std(DriveSpec("\\\\s")) == "");
  CHECK(Std(DriveSpec('\0')) == "");
  CHECK(Values{ExtensionIndex("c:\\a.b\\c"), ExtensionIndex("a.b.c"), ExtensionIndex(".x")} == Values{-1, 3, 0});
  struct Row {
    const char *path, *extension, *result;
  };
  for (const Row &row :
       {Row{"setup", "EXE", "setup.EXE"}, Row{"setup", ".EXE", "setup.EXE"}, Row{"setup.", "EXE", "setup."},
        Row{"a.b\\c", "EXE", "a.b\\c.EXE"}, Row{" ", "EXE", " "}, Row{"setup", nullptr, "setup"}}) {
    String path(row.path);
    AddDefaultExtension(path, row.extension);
    CHECK(Std(path) == row.result);
  }
}

TEST_CASE("paths are compared and judged by their text") {
  CHECK(Values{SamePath("C:\\Dir\\", "c:\\dir"), SamePath("", ""), SamePath("\\\\", ""),
               SamePath("c:\\dir", "c:\\dir2")} == Values{1, 1, 1, 0});
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
      CHECK(IsLegalPath(row.path, PathOptions{flags}) == ((row.flags >> flags & 1) != 0));
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
  for (const Row &row :
       {Row{"\\x", "c:\\dir", "c:\\x", true}, Row{"x", "c:\\dir\\", "c:\\dir\\x", true},
        Row{"x", "c:\\dir", "c:\\dir\\x", true}, Row{"  x ", " c:\\dir", "c:\\dir\\x", true},
        Row{"d:foo", "c:\\dir", "d:\\dir\\foo", true}, // its own drive, the base's directory
        Row{"d:foo", "c:\\", "d:\\foo", true}, Row{"x", "\\\\server\\share", "\\\\server\\share\\x", true},
        Row{"x", "dir", "x", false}, Row{"x", nullptr, "x", false}, Row{" c:\\full ", "c:\\dir", "c:\\full", false},
        Row{"\\\\server\\x", "c:\\dir", "\\\\server\\x", false}, Row{"\\x", "\\\\server\\share", "\\x", false},
        Row{" ", "c:\\dir", "", false}}) {
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
  for (const Row &row :
       {Row{"", "\r\n[rename]\r\nNUL=c:\\x"}, Row{"[other]\r\na=b", "[other]\r\na=b\r\n[rename]\r\nNUL=c:\\x"},
        Row{"[other]\r\n", "[other]\r\n[rename]\r\nNUL=c:\\x"},
        Row{"[RENAME]\r\nNUL=c:\\y\r\n[z]", "[RENAME]\r\nNUL=c:\\x\r\nNUL=c:\\y\r\n[z]"},
        Row{"[rename]", "[rename]\r\nNUL=c:\\x"}}) {
    String text(row.before);
    AddRename(text, "NUL", "c:\\x");
    CHECK(Std(text) == row.after);
  }
}
