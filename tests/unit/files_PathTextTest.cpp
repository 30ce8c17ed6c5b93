#include <cstring>

#include "files/DeferredFiles.h"
#include "files/PathText.h"
#include "tests/support/Testing.h"

TEST_CASE("a directory and a name are joined by one backslash") {
  struct Row {
    const char *directory, *name, *path;
  };
  for (const Row &row : {Row{"c:\\", "\\x", "c:\\x"}, Row{"c:\\a", "b", "c:\\a\\b"}, Row{"c:", "foo", "c:foo"},
                         Row{"", "b", "b"}, Row{nullptr, "b", "b"}, Row{"c:\\a", "", "c:\\a"},
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
}

TEST_CASE("a path is cut to its directory, if it has one") {
  String path("c:\\dir\\file");
  CHECK(CutToDirectory(path));
  CHECK(Std(path) == "c:\\dir\\");
  String bare("file");
  CHECK_FALSE(CutToDirectory(bare));
  CHECK(Std(bare) == "file");
}

TEST_CASE("a drive is a letter with a colon") {
  CHECK(DriveLetter("c:\\x") == 'C');
  CHECK(DriveLetter("1:\\x") == '\0');
  CHECK(DriveLetter("c") == '\0');
  CHECK(Std(DriveSpec("c-d")) == "c:");
  CHECK(Std(DriveSpec("\\\\s")) == "");
  CHECK(Std(DriveSpec('\0')) == "");
}

TEST_CASE("an extension is of the file's name, and is added where there is none") {
  CHECK(ExtensionIndex("c:\\a.b\\c") == -1);
  CHECK(ExtensionIndex("a.b.c") == 3);
  CHECK(ExtensionIndex(".x") == 0);
  struct Row {
    const char *path, *extension, *result;
  };
  for (const Row &row :
       {Row{"setup", "EXE", "setup.EXE"}, Row{"setup", ".EXE", "setup.EXE"}, Row{"setup.", "EXE", "setup."},
        Row{"a.b\\c", "EXE", "a.b\\c.EXE"}, Row{" ", "EXE", " "}, Row{"setup", nullptr, "setup"}}) {
    CAPTURE(row.path);
    String path(row.path);
    AddDefaultExtension(path, row.extension);
    CHECK(Std(path) == row.result);
  }
}

TEST_CASE("paths are the same in any case, with or without a backslash at the end") {
  CHECK(SamePath("C:\\Dir\\", "c:\\dir"));
  CHECK(SamePath("\\\\", ""));
  CHECK_FALSE(SamePath("c:\\dir", "c:\\dir2"));
}

TEST_CASE("a path is full from its drive or its server on") {
  for (const char *full : {"c:\\", "  c:\\x", "\\\\server", "1:\\x"})
    CHECK_MESSAGE(IsFullPath(full), std::string(full));
  for (const char *part : {"", "  ", "x", "c:x", "\\x", "c", "c:"})
    CHECK_MESSAGE(!IsFullPath(part), std::string(part));
  CHECK_FALSE(IsFullPath(nullptr));
}

TEST_CASE("a path is legal by its characters, wildcards as the flags say") {
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
}

TEST_CASE("a plain file name has nothing of a path") {
  for (const char *name : {"", "a;b", "a*", "c:x", "a\"b"})
    CHECK_MESSAGE(!IsPlainFileName(name), std::string(name));
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
    CAPTURE(row.before);
    String text(row.before);
    AddRename(text, "NUL", "c:\\x");
    CHECK(Std(text) == row.after);
  }
}
