// DiskFile on the real calls.
#include <cstring>

#include "core/Windows.h"
#include "files/DiskFile.h"
#include "files/FileInfo.h"
#include "files/WholeFile.h"
#include "tests/support/HeldFile.h"
#include "tests/support/TempFolder.h"
#include "tests/support/Testing.h"

namespace {

constexpr uint32_t kNormal = FILE_ATTRIBUTE_NORMAL;

struct Fixture {
  String Path(const char *name) const { return (folder.Path() / name).string().c_str(); }
  /// Writes a file and gives its path.
  String Write(const char *name, const std::string &contents) {
    folder.Write(name, contents);
    return Path(name);
  }
  std::string Contents(const String &path) {
    String text;
    CHECK(ReadWholeFile(path, text) == OPEN_OK);
    return std::string(text.c_str(), static_cast<size_t>(text.length()));
  }

  TempFolder folder;
};

} // namespace

TEST_CASE_FIXTURE(Fixture, "each refusal of an open has its code and its sentence") {
  const String file = Write("there", "x");
  Write("folder/x", "");
  struct Row {
    String name;
    FileOptions flags;
    OpenCode code;
    const char *sentence;
  };
  for (const Row &row : {Row{file, DF_READ_SHARED, OPEN_OK, ""}, Row{Path("made"), DF_OPEN_ALWAYS, OPEN_OK, ""},
                         Row{file, DF_OPEN_EXISTING | DF_NO_READ | DF_NO_WRITE, OPEN_OK, ""},
                         Row{"", DF_OPEN_ALWAYS, OPEN_BAD_NAME, "The filename is invalid."},
                         Row{"", DF_TEMP_IN_DIR, OPEN_BAD_NAME, "The filename is invalid."},
                         Row{"", DF_TEMP_DEFAULT | DF_TEMP_IN_DIR, OPEN_NO_DIRECTORY,
                             "The directory does not exist."}, // nowhere special, and yet not refused
                         Row{Path("a?b"), DF_OPEN_EXISTING, OPEN_BAD_NAME, "The filename is invalid."},
                         Row{Path("missing"), DF_OPEN_EXISTING, OPEN_NOT_FOUND, "The file was not found."},
                         Row{Path("no\\such\\x"), DF_OPEN_ALWAYS, OPEN_NO_DIRECTORY, "The directory does not exist."},
                         Row{file, DF_CREATE_NEW, OPEN_EXISTS, "The file already exists."},
                         Row{Path("folder"), DF_OPEN_EXISTING, OPEN_UNKNOWN, "An unknown error occurred."}}) {
    DiskFile disk;
    CAPTURE(row.name.c_str());
    CAPTURE(row.flags);
    CHECK(disk.Open(row.name, row.flags, kNormal) == row.code);
    CHECK(disk.error_text() == row.sentence);
    CHECK(disk.IsOpen() == (row.code == OPEN_OK));
  }
}

TEST_CASE_FIXTURE(Fixture, "a required file that is missing ends the run with its name") {
  const String missing = Path("missing");
  DiskFile required;
  CHECK(Trapped([&] { required.Open(missing, DF_OPEN_EXISTING | DF_REQUIRED, kNormal); }) ==
        "Failed to open required file:\r\n" + std::string(missing) + "\r\n\r\nThe file was not found.");
}

TEST_CASE_FIXTURE(Fixture, "a locked file is tried again for a while") {
  const String file = Write("held", "x");
  const HeldFile held(file);
  struct Row {
    FileOptions flags;
    DWORD least, most; // milliseconds
  };
  const Row rows[] = {{DF_READ_SHARED, 500, 900},
                      {DF_READ_SHARED | DF_RETRY_ONCE, 350, 750},
                      {DF_READ_SHARED | DF_NO_BUSY_RETRY, 0, 90}};
  for (const Row &row : rows) {
    CAPTURE(row.flags);
    DiskFile disk;
    const DWORD start = GetTickCount();
    CHECK(disk.OpenQuiet(file, row.flags, kNormal) == OPEN_LOCKED);
    const DWORD took = GetTickCount() - start;
    CAPTURE(took);
    CHECK(took + 20 >= row.least); // the clock moves in steps
    CHECK(took <= row.most);
  }
  CHECK(FileExists(file)); // held, but there
}

TEST_CASE_FIXTURE(Fixture, "a reader that shares reading shares writing with those who do") {
  const String file = Write("shared", "x");
  DiskFile first;
  REQUIRE(first.Open(file, DF_READ_SHARED, kNormal) == OPEN_OK);
  DiskFile second;
  CHECK(second.Open(file, DF_OPEN_EXISTING | DF_SHARE_READ | DF_SHARE_WRITE, kNormal) == OPEN_OK);
  DiskFile third;
  CHECK(third.OpenQuiet(file, DF_OPEN_EXISTING | DF_NO_BUSY_RETRY, kNormal) == OPEN_LOCKED);
}

TEST_CASE_FIXTURE(Fixture, "a writer that shares writing shares reading too") {
  const String file = Write("shared", "x");
  DiskFile first, third;
  REQUIRE(third.Open(file, DF_OPEN_EXISTING | DF_NO_READ | DF_SHARE_WRITE, kNormal) == OPEN_OK);
  CHECK(first.OpenQuiet(file, DF_READ_SHARED | DF_NO_BUSY_RETRY, kNormal) == OPEN_OK);
}

TEST_CASE_FIXTURE(Fixture, "a file beyond 2 GiB has no size and is not read") {
  const String file = Write("large", "");
  for (const LONG high : {0, 1}) { // too large for 31 bits, and for 32
    const HANDLE handle = CreateFileA(file, GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    LONG top = high;
    SetFilePointer(handle, high ? 5 : LONG_MIN, &top, FILE_BEGIN);
    CHECK(SetEndOfFile(handle));
    CloseHandle(handle);
    DiskFile disk;
    REQUIRE(disk.Open(file, DF_READ_SHARED, kNormal) == OPEN_OK);
    CHECK(disk.Size() == -1);
    String text("x");
    CHECK_FALSE(disk.ReadAll(&text));
    CHECK_FALSE(FileMatches("", -1, file));
    CHECK(ReadWholeFile(file, text) == OPEN_OK);
    CHECK(text.is_empty());
  }
}

TEST_CASE_FIXTURE(Fixture, "temporary files go where they are asked to") {
  char directory[MAX_PATH];
  GetTempPathA(MAX_PATH, directory);
  Write("d/x", "");
  struct Row {
    String name;
    FileOptions flags;
    String place;
  };
  for (const Row &row :
       {Row{"", DF_TEMP_DEFAULT, directory}, Row{Path("d"), DF_TEMP_IN_DIR, Path("d\\")},
        Row{Path("d\\x"), DF_TEMP_BESIDE, Path("d\\")}, Row{"korbtemp.x", DF_IN_TEMP_DIR, directory}}) {
    DiskFile disk;
    CHECK(disk.Open(row.name, row.flags, kNormal) == OPEN_OK);
    CHECK(String(disk.name()).remove_prefix(row.place));
    disk.Close();
    CHECK(DeleteFileA(disk.name()));
  }
}

TEST_CASE_FIXTURE(Fixture, "a file that was never opened says why nothing is read or written") {
  DiskFile closed;
  char c;
  CHECK(closed.Read(&c, 0));
  CHECK_FALSE(closed.Read(&c, -1));
  CHECK(closed.error_text() == "Illegal block size -1");
  CHECK_FALSE(closed.Read(nullptr, 1));
  CHECK(closed.error_text() == "NULL block pointer");
  CHECK_FALSE(closed.Read(&c, 1));
  CHECK(closed.error_text() == "Read access denied");
  CHECK(closed.Write("x", -1));
  CHECK(closed.error_text() == "Illegal block size");
  CHECK(closed.Write("x", 1)); // only the sentence tells
  CHECK(closed.error_text() == "Write access denied");
}

TEST_CASE_FIXTURE(Fixture, "a file that was never opened has no size, no place and no line to end") {
  DiskFile closed;
  CHECK(closed.Size() == -1);
  CHECK(closed.Tell() == -1);
  CHECK_FALSE(closed.HasMore());
  CHECK(closed.PopPosition() == INT32_MIN);
  CHECK_FALSE(closed.EnsureNewline());
}

TEST_CASE_FIXTURE(Fixture, "after an open that failed, the file is what is missing, not the access") {
  DiskFile closed;
  char c;
  CHECK(closed.Open(Path("missing"), DF_OPEN_EXISTING, kNormal) == OPEN_NOT_FOUND);
  CHECK_FALSE(closed.Read(&c, 1));
  CHECK(closed.error_text() == "File not open");
  CHECK_FALSE(closed.Write("x", 1));
}

TEST_CASE_FIXTURE(Fixture, "a read past the end gives what is there, and a reader writes nothing") {
  const String file = Write("short", "abc");
  DiskFile disk;
  REQUIRE(disk.Open(file, DF_READ_SHARED, kNormal) == OPEN_OK);
  char four[4] = {'-', '-', '-', '-'};
  CHECK_FALSE(disk.Read(four, 4));
  CHECK(disk.error_text() == "Read past end of file");
  CHECK(std::string(four, 4) == "abc-");
  CHECK(disk.Write("x", 1));
  CHECK(disk.error_text() == "Write access denied");
  CHECK_FALSE(disk.Truncate());
}

TEST_CASE_FIXTURE(Fixture, "spans are read without moving the position") {
  DiskFile disk;
  REQUIRE(disk.Open(Write("span", "0123456789"), DF_READ_SHARED, kNormal) == OPEN_OK);
  REQUIRE(disk.Seek(3));
  String text("kept");
  CHECK(disk.ReadSpan(text, 4, 6));
  CHECK(text == "456789");
  for (const auto &[from, count] : {std::pair{4, 7}, {-1, 2}, {0x7FFFFFFF, 0x7FFFFFFF}})
    CHECK_FALSE_MESSAGE(disk.ReadSpan(text, from, count), from);
  CHECK(text == "456789");
  char tail[2];
  CHECK(disk.ReadTail(tail, 2));
  CHECK(std::string(tail, 2) == "89");
  CHECK_FALSE(disk.ReadTail(tail, 11));
  CHECK(disk.ReadAll(&text));
  CHECK(text == "0123456789");
  CHECK(disk.Tell() == 3);
}

TEST_CASE_FIXTURE(Fixture, "a position is put away and found again") {
  DiskFile disk;
  REQUIRE(disk.Open(Write("place", "0123456789"), DF_READ_SHARED, kNormal) == OPEN_OK);
  REQUIRE(disk.Seek(3));
  CHECK(disk.PushPositionAndSeek(7) == 3);
  CHECK(disk.ReadCString() == "789");
  CHECK_FALSE(disk.HasMore());
  CHECK(disk.PopPosition() == 3);
  CHECK(disk.Tell() == 3);
  CHECK(disk.SeekFromEnd(-1));
  CHECK(disk.Tell() == 9);
}

TEST_CASE_FIXTURE(Fixture, "contents are replaced, and their last line ended once") {
  const String file = Write("text", "a long first line");
  DiskFile disk;
  REQUIRE(disk.Open(file, DF_OPEN_EXISTING, kNormal) == OPEN_OK);
  CHECK(disk.ReplaceContents("short"));
  CHECK(disk.EnsureNewline());
  CHECK(disk.EnsureNewline());
  disk.Close();
  CHECK(Contents(file) == "short\r\n");
  REQUIRE(disk.Open(Write("empty", ""), DF_OPEN_EXISTING | DF_AT_END, kNormal) == OPEN_OK);
  CHECK(disk.EnsureNewline()); // an empty file has no line to end
  CHECK(disk.Size() == 0);
}

TEST_CASE_FIXTURE(Fixture, "a text is appended, on a line of its own if asked, to a file that may be new") {
  const String file = Write("text", "short\r\n");
  CHECK(AppendToFile(file, "more", AF_NEW_LINE));
  CHECK(AppendToFile(file, nullptr, AF_NEW_LINE));
  CHECK(Contents(file) == "short\r\nmore\r\n");
  CHECK_FALSE(AppendToFile(Path("new"), "x", AF_EXISTING_ONLY));
  CHECK(AppendToFile(Path("new"), "x"));
  CHECK(Contents(Path("new")) == "x");
}

TEST_CASE_FIXTURE(Fixture, "a file matches its own bytes, and no others") {
  const String one = Write("one", "x");
  CHECK(FileMatches("x", 1, one));
  CHECK_FALSE(FileMatches("y", 1, one));
  CHECK_FALSE(FileMatches("xx", 2, one));
  CHECK(FileMatches(nullptr, 0, Write("empty", "")));
  const std::string large(0x2345, 'z');
  CHECK(WriteWholeFile(Path("large"), large.data(), static_cast<int32_t>(large.size())));
  CHECK(FileMatches(large.data(), static_cast<int32_t>(large.size()), Path("large")));
}

namespace {

/// A file of ten bytes, open in memory.
struct InMemory : Fixture {
  void Open(FileOptions flags = DF_OPEN_EXISTING) {
    REQUIRE(disk.Open(file, flags | DF_IN_MEMORY, kNormal) == OPEN_OK);
  }

  const String file = Write("image", "0123456789");
  DiskFile disk;
};

} // namespace

TEST_CASE_FIXTURE(InMemory, "a file in memory reaches the disk at its close") {
  Open();
  CHECK(disk.Seek(10));
  CHECK_FALSE(disk.Seek(11));
  CHECK(disk.Seek(2));
  CHECK(disk.Write("AB", 2));
  CHECK(disk.Seek(6));
  CHECK(disk.Truncate());
  CHECK(disk.Size() == 6);
  disk.Close();
  CHECK(Contents(file) == "01AB45");
  CHECK_FALSE(disk.IsOpen());
}

TEST_CASE_FIXTURE(InMemory, "loading a file again forgets that its image was changed") {
  Open();
  CHECK(disk.Write("--", 2));
  CHECK(disk.LoadToMemory());
  CHECK(disk.Size() == 10);
  disk.Close();
  CHECK(Contents(file) == "0123456789");
}

TEST_CASE_FIXTURE(InMemory, "an unchanged image goes on answering for its size") {
  Open();
  disk.Close();
  CHECK(disk.IsOpen());
  CHECK(disk.Size() == 10);
  char c;
  CHECK_FALSE(disk.Read(&c, 1));
}

TEST_CASE_FIXTURE(InMemory, "what nobody may write can still be cut in memory, and the disk keeps it") {
  Open(DF_READ_SHARED);
  CHECK(disk.Seek(2));
  CHECK(disk.Truncate());
  CHECK(disk.Size() == 2);
  disk.Close();
  CHECK(Contents(file) == "0123456789");
}

TEST_CASE_FIXTURE(Fixture, "the date of a file is local time") {
  const String file = Write("dated", "x");
  for (const FileDate date : {FileDate{1999, 1, 31, 23, 59, 58}, FileDate{2001, 7, 1, 0, 0, 0}}) {
    DiskFile disk;
    REQUIRE(disk.Open(file, DF_OPEN_EXISTING, kNormal) == OPEN_OK);
    CHECK(disk.SetModified(date));
    disk.Close();
    FileDate read{};
    CHECK(GetFileModified(file, read));
    CHECK(CompareFileDates(read, date) == 0);
  }
}

TEST_CASE_FIXTURE(Fixture, "a date that is none, or of a closed file, is not set") {
  const String file = Write("dated", "x");
  DiskFile disk;
  REQUIRE(disk.Open(file, DF_OPEN_EXISTING, kNormal) == OPEN_OK);
  CHECK_FALSE(disk.SetModified(FileDate{2001, 13, 1, 0, 0, 0}));
  disk.Close();
  CHECK_FALSE(disk.SetModified(FileDate{2001, 1, 1, 0, 0, 0}));
}
