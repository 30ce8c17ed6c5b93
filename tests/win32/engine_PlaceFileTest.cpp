// What whole runs don't show of the placement: large and emptied files, writes that can't be read back, and names
// without a drive.
#include "core/RunValues.h"
#include "core/Windows.h"
#include "engine/InstallNotes.h"
#include "engine/PlaceFile.h"
#include "engine/PlaceFiles.h"
#include "files/FileInfo.h"
#include "packer/write/RecordWriter.h"
#include "tests/support/TempFolder.h"
#include "tests/support/Testing.h"

namespace {

constexpr FileDate kDate{2001, 5, 17, 10, 30, 2};

struct Fixture {
  Fixture() {
    InstallFlags = 0;
    InstallDir = folder.Path().string().c_str();
    TextTable.clear();
    TextTable.set_count(32);
    TextTable.at(31).append("no file");
    LanguageIndex = 0;
  }

  bool Place(const char *name, const std::string &bytes, const FileDate &date = kDate) {
    return PlaceFile({Path(name), bytes.data(), static_cast<int32_t>(bytes.size()), date, 0, false}, journal);
  }
  /// Places one file with this name and target, as a payload brings it.
  void PlacePayload(const char *name, const char *target, InstallNotes &notes) {
    packer::Product product;
    product.flags = 0;
    product.files.emplace_back();
    product.files[0].name = name;
    product.files[0].target = target;
    const packer::Payload payload = packer::WritePayload(product);
    Vector<int32_t> sizes;
    sizes.append(0);
    ArchiveCursor cursor(payload.stored.data(), static_cast<int32_t>(payload.stored.size()));
    PlaceFiles(cursor, sizes, notes);
    CHECK(cursor.left() == 0);
  }

  String Path(const char *name) const { return (folder.Path() / name).string().c_str(); }

  TempFolder folder;
  Journal journal;
};

} // namespace

TEST_CASE_FIXTURE(Fixture, "large files are written whole, and emptied ones cut") {
  for (const uint64_t flags : {uint64_t{0}, IF_VERIFY_WRITES}) {
    CAPTURE(flags);
    InstallFlags = flags;
    const std::string large(0x100001, 'x');
    CHECK(Place("a", large));
    CHECK(folder.Read("a") == large);
    CHECK(Place("a", ""));
    CHECK(folder.Read("a").empty());
  }
}

TEST_CASE_FIXTURE(Fixture, "a file without a date is of now, and a clean placement says nothing") {
  FileDate date{};
  CHECK(Place("now", "x", FileDate{}));
  CHECK(GetFileModified(Path("now"), date));
  CHECK(date.year > 2020);
  CHECK(journal.error_report == "");
  CHECK(journal.log_text == "");
}

TEST_CASE_FIXTURE(Fixture, "what can't be read back is reported without a word of the system") {
  InstallFlags = IF_VERIFY_WRITES | IF_REPLACE_IN_USE;
  CHECK_FALSE(PlaceFile({"NUL", "x", 1, FileDate{}, 0, true}, journal));
  CHECK(journal.error_report == "no file NUL\r\n\r\n");
}

TEST_CASE_FIXTURE(Fixture, "a file of a negative size is damage") {
  CHECK(TrappedCode([&] { PlaceFile({Path("a"), "", -1, kDate, 0, false}, journal); }) == 5);
}

TEST_CASE_FIXTURE(Fixture, "away from a fixed drive a file is opened a second time for its date, and not without one") {
  struct Pipe {
    HANDLE handle = CreateNamedPipeA("\\\\.\\pipe\\korb", PIPE_ACCESS_DUPLEX, PIPE_NOWAIT, 2, 64, 64, 0, nullptr);
    ~Pipe() { CloseHandle(handle); }
    bool Opened() { return ConnectNamedPipe(handle, nullptr) || GetLastError() != ERROR_PIPE_LISTENING; }
  };
  for (const FileDate &date : {kDate, FileDate{}}) {
    CAPTURE(date.month);
    Pipe first, second;
    CHECK(PlaceFile({"\\\\.\\pipe\\korb", "x", 1, date, 0, false}, journal));
    CHECK(first.Opened());
    CHECK(second.Opened() == (date.month != 0));
  }
  CHECK(journal.error_report.is_empty());
}

TEST_CASE_FIXTURE(Fixture, "a run that keeps no list of files lists none of its directories") {
  for (const uint64_t flags : {uint64_t{0}, IF_NO_UNINSTALL_RECORDS}) {
    InstallFlags = flags;
    InstallNotes notes;
    PlacePayload("sub\\a", "", notes);
    CHECK((flags != 0) == notes.uninstall_list.text().is_empty());
    std::filesystem::remove_all(folder.Path() / "sub");
  }
}

TEST_CASE_FIXTURE(Fixture, "a path from the root has none in an installation without a drive") {
  InstallDir = "\\\\server\\share";
  InstallNotes notes;
  PlacePayload("a", "\\a", notes);
  CHECK(notes.journal.error_report.find("Not installed: \\a\r\n") >= 0);
}
