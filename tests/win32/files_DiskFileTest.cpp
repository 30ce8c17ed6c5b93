// DiskFile on the real calls.
#include <cstring>

#include "core/Windows.h"
#include "files/DiskFile.h"
#include "files/FileInfo.h"
#include "files/LastError.h"
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

TEST_CASE_FIXTURE(Fixture, "who does not read or write lets others do it") {
  const String file = Write("shared", "x");
  DiskFile first;
  REQUIRE(first.Open(file, DF_READ_SHARED, kNormal) == OPEN_OK);
  DiskFile second; // a reader that shares reading shares writing too
  CHECK(second.Open(file, DF_OPEN_EXISTING | DF_SHARE_READ | DF_SHARE_WRITE, kNormal) == OPEN_OK);
  DiskFile third;
  CHECK(third.OpenQuiet(file, DF_OPEN_EXISTING | DF_NO_BUSY_RETRY, kNormal) == OPEN_LOCKED);
  first.Close();
  second.Close();
  // A writer that shares writing shares reading too.
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
    CHECK(Values{disk.ReadAll(&text), FileMatches("", -1, file), ReadWholeFile(file, text), text.is_empty()} ==
          Values{0, 0, OPEN_OK, 1});
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

TEST_CASE_FIXTURE(Fixture, "reads and writes say what went wrong") {
  DiskFile closed;
  char c;
  CHECK(Values{closed.Read(&c, 0), closed.Read(&c, -1)} == Values{1, 0});
  CHECK(closed.error_text() == "Illegal block size -1");
  CHECK_FALSE(closed.Read(nullptr, 1));
  CHECK(closed.error_text() == "NULL block pointer");
  CHECK_FALSE(closed.Read(&c, 1));
  CHECK(closed.error_text() == "Read access denied");
  CHECK(closed.Write("x", -1));
  CHECK(closed.error_text() == "Illegal block size");
  CHECK(closed.Write("x", 1)); // only the sentence tells
  CHECK(closed.error_text() == "Write access denied");
  CHECK(Values{closed.Size(), closed.Tell(), closed.HasMore(), closed.PopPosition()} == Values{-1, -1, 0, INT32_MIN});

  CHECK(closed.Open(Path("missing"), DF_OPEN_EXISTING, kNormal) == OPEN_NOT_FOUND);
  CHECK_FALSE(closed.Read(&c, 1)); // access was asked for, so now the file is what is missing
  CHECK(closed.error_text() == "File not open");
  CHECK_FALSE(closed.Write("x", 1));

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
  const String file = Write("span", "0123456789");
  DiskFile disk;
  REQUIRE(disk.Open(file, DF_READ_SHARED, kNormal) == OPEN_OK);
  REQUIRE(disk.Seek(3));
  String text("kept");
  CHECK(disk.ReadSpan(text, 4, 6));
  CHECK(text == "456789");
  CHECK_FALSE(disk.ReadSpan(text, 4, 7));
  CHECK(text == "456789");
  CHECK(Values{disk.ReadSpan(text, -1, 2), disk.ReadSpan(text, 0x7FFFFFFF, 0x7FFFFFFF)} == Values{0, 0});
  char tail[2];
  CHECK(disk.ReadTail(tail, 2));
  CHECK(std::string(tail, 2) == "89");
  CHECK(Values{disk.ReadTail(tail, 11), disk.ReadAll(&text), text.length(), disk.Size(), disk.Tell(),
               disk.PushPositionAndSeek(7)} == Values{0, 1, 10, 10, 3, 3});
  CHECK(disk.ReadCString() == "789");
  CHECK(Values{disk.HasMore(), disk.PopPosition(), disk.Tell(), disk.SeekFromEnd(-1), disk.Tell()} ==
        Values{0, 3, 3, 1, 9});
}

TEST_CASE_FIXTURE(Fixture, "contents are replaced, cut and ended by a line") {
  const String file = Write("text", "a long first line");
  DiskFile disk;
  REQUIRE(disk.Open(file, DF_OPEN_EXISTING, kNormal) == OPEN_OK);
  CHECK(Values{disk.ReplaceContents("short"), disk.EnsureNewline(), disk.EnsureNewline()} == Values{1, 1, 1});
  disk.Close();
  CHECK(Contents(file) == "short\r\n");
  REQUIRE(disk.Open(Write("empty", ""), DF_OPEN_EXISTING | DF_AT_END, kNormal) == OPEN_OK);
  CHECK(disk.EnsureNewline()); // an empty file has no line to end
  CHECK(disk.Size() == 0);
  disk.Close();
  CHECK_FALSE(disk.EnsureNewline());

  CHECK(AppendToFile(file, "more", AF_NEW_LINE));
  CHECK(AppendToFile(file, nullptr, AF_NEW_LINE));
  CHECK(Contents(file) == "short\r\nmore\r\n");
  CHECK(Values{AppendToFile(Path("new"), "x", AF_EXISTING_ONLY), AppendToFile(Path("new"), "x"),
               FileMatches("x", 1, Path("new")), FileMatches("y", 1, Path("new")), FileMatches("xx", 2, Path("new")),
               FileMatches(nullptr, 0, Path("empty"))} == Values{0, 1, 1, 0, 0, 1});
  const std::string large(0x2345, 'z');
  CHECK(WriteWholeFile(Path("large"), large.data(), static_cast<int32_t>(large.size())));
  CHECK(FileMatches(large.data(), static_cast<int32_t>(large.size()), Path("large")));
}

TEST_CASE_FIXTURE(Fixture, "a file in memory reaches the disk at its close") {
  const String file = Write("image", "0123456789");
  DiskFile disk;
  REQUIRE(disk.Open(file, DF_OPEN_EXISTING | DF_IN_MEMORY, kNormal) == OPEN_OK);
  CHECK(Values{disk.Seek(10), disk.Seek(11), disk.Seek(2), disk.Write("AB", 2), disk.Seek(6), disk.Truncate(),
               disk.Size()} == Values{1, 0, 1, 1, 1, 1, 6});
  disk.Close();
  CHECK(Contents(file) == "01AB45");
  CHECK_FALSE(disk.IsOpen());

  // Loading again keeps the image and forgets that it was changed.
  REQUIRE(disk.Open(file, DF_OPEN_EXISTING | DF_IN_MEMORY, kNormal) == OPEN_OK);
  CHECK(Values{disk.Write("--", 2), disk.LoadToMemory(), disk.Size()} == Values{1, 1, 6});
  disk.Close();
  CHECK(Contents(file) == "01AB45");

  DiskFile clean;
  REQUIRE(clean.Open(file, DF_OPEN_EXISTING | DF_IN_MEMORY, kNormal) == OPEN_OK);
  clean.Close(); // an unchanged image goes on answering for its size
  CHECK(Values{clean.IsOpen(), clean.Size()} == Values{1, 6});
  char c;
  CHECK_FALSE(clean.Read(&c, 1));

  // What nobody may write can still be cut in memory; the disk keeps it.
  DiskFile read_only;
  REQUIRE(read_only.Open(file, DF_READ_SHARED | DF_IN_MEMORY, kNormal) == OPEN_OK);
  CHECK(Values{read_only.Seek(2), read_only.Truncate(), read_only.Size()} == Values{1, 1, 2});
  read_only.Close();
  CHECK(Contents(file) == "01AB45");
}

TEST_CASE_FIXTURE(Fixture, "the date of a file is local time") {
  const String file = Write("dated", "x");
  for (const FileDate date : {FileDate{1999, 1, 31, 23, 59, 58}, FileDate{2001, 7, 1, 0, 0, 0}}) {
    DiskFile disk;
    REQUIRE(disk.Open(file, DF_OPEN_EXISTING, kNormal) == OPEN_OK);
    CHECK(disk.SetModified(date));
    disk.Close();
    FileDate read{};
    CHECK(Values{GetFileModified(file, read), CompareFileDates(read, date)} == Values{1, 0});
  }
  DiskFile disk;
  REQUIRE(disk.Open(file, DF_OPEN_EXISTING, kNormal) == OPEN_OK);
  CHECK_FALSE(disk.SetModified(FileDate{2001, 13, 1, 0, 0, 0}));
  disk.Close();
  CHECK_FALSE(disk.SetModified(FileDate{2001, 1, 1, 0, 0, 0}));
}

TEST_CASE("an error has the system's words") {
  ClearLastError();
  CHECK(std::string(LastErrorText()).empty());
  SetLastErrorCode(ERROR_FILE_NOT_FOUND);
  const std::string words = LastErrorText();
  CHECK_FALSE(words.empty());
  CHECK(words.substr(words.size() - 2) == "\r\n");
  SetLastErrorCode(ERROR_DISK_FULL);
  CHECK(std::string(LastErrorText()) != words);
}
