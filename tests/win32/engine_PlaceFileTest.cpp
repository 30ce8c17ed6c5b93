// Placement against the real file system.
#include "archive/RunValues.h"
#include "core/Windows.h"
#include "engine/PlaceFile.h"
#include "engine/PlaceFiles.h"
#include "engine/RunLists.h"
#include "engine/UninstallList.h"
#include "files/FileInfo.h"
#include "packer/RecordWriter.h"
#include "tests/support/TempFolder.h"
#include "tests/support/Testing.h"

namespace {

constexpr FileDate kDate{2001, 5, 17, 10, 30, 2};
constexpr DWORD kChosen = FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN;

struct Fixture {
  Fixture() {
    InstallFlags = 0;
    InstallDir = folder.Path().string().c_str();
    UninstallDir = Path("Un");
    LogText.clear();
    ErrorReport.clear();
    ResetPlacementLists();
    TextTable.clear();
    TextTable.set_count(32);
    for (const int32_t number : {25, 31}) {
      TextTable.at(number).set_count(1);
      TextTable.at(number).at(0) = number == 25 ? "no directory" : "no file";
    }
    LanguageIndex = 0;
  }

  bool Place(const char *name, const std::string &bytes, bool may_wait = false, uint32_t attributes = 0x20,
             const FileDate &date = kDate) {
    return PlaceFile(Path(name), bytes.data(), static_cast<int32_t>(bytes.size()), date, ErrorReport, attributes,
                     may_wait);
  }

  String Path(const char *name) const { return (folder.Path() / name).string().c_str(); }
  DWORD Attributes(const char *name) const { return GetFileAttributesA(Path(name)) & kChosen; }
  /// What a disk keeps of `attributes`: not every one under Wine knows hidden files.
  DWORD Kept(DWORD attributes) {
    folder.Write("probe", "");
    SetFileAttributesA(Path("probe"), attributes);
    const DWORD kept = Attributes("probe");
    SetFileAttributesA(Path("probe"), FILE_ATTRIBUTE_NORMAL);
    return kept;
  }
  FileDate Date(const char *name) const {
    FileDate date{};
    CHECK(GetFileModified(Path(name), date));
    return date;
  }

  TempFolder folder;
};

} // namespace

TEST_CASE_FIXTURE(Fixture, "a placed file has its bytes, its date and its attributes") {
  for (const uint64_t flags : {uint64_t{0}, IF_VERIFY_WRITES}) {
    InstallFlags = flags;
    const std::string large(0x100001, 'x');
    CHECK(Place("a", large, false, kChosen));
    CHECK(folder.Read("a") == large);
    CHECK(CompareFileDates(Date("a"), kDate) == 0);
    CHECK(Attributes("a") == Kept(kChosen));
    SetFileAttributesA(Path("a"), FILE_ATTRIBUTE_NORMAL);

    CHECK(Place("a", "", false, 0)); // cut to nothing
    CHECK(Values{folder.Read("a").empty(), Attributes("a")} == Values{1, 0});
  }
  CHECK(Place("now", "x", false, 0x20, FileDate{}));
  CHECK(Date("now").year > 2020);
  CHECK(Values{ErrorReport.is_empty(), LogText.is_empty()} == Values{1, 1});
}

TEST_CASE_FIXTURE(Fixture, "a file that can't be written is reported and nothing waits for a restart") {
  CHECK_FALSE(Place("missing\\a", "x"));
  const std::string report = ErrorReport.c_str();
  const std::string head = std::string("no file ") + Path("missing\\a").c_str() + "\r\n";
  REQUIRE(report.size() > head.size() + 4);
  CHECK(report.substr(0, head.size()) == head);
  CHECK(report.substr(report.size() - 4) == "\r\n\r\n"); // the system's words bring a line end of their own
  CHECK(Values{LogText.is_empty(), HasInstallFlag(IF_REBOOT_NEEDED)} == Values{1, 0});

  // Written, but not to be read back: there is no word of the system for that.
  ErrorReport.clear();
  InstallFlags = IF_VERIFY_WRITES | IF_REPLACE_IN_USE;
  CHECK_FALSE(PlaceFile("NUL", "x", 1, FileDate{}, ErrorReport, 0, true));
  CHECK(ErrorReport == "no file NUL\r\n\r\n");

  CHECK(TrappedCode([&] { PlaceFile(Path("a"), "", -1, kDate, ErrorReport, 0, false); }) == 5);
}

TEST_CASE_FIXTURE(Fixture, "a protected target is opened only if its attributes may go") {
  folder.Write("a", "old");
  SetFileAttributesA(Path("a"), FILE_ATTRIBUTE_READONLY);
  CHECK(Values{Place("a", "new"), ErrorReport.is_empty()} == Values{0, 0});
  CHECK(folder.Read("a") == "old");

  ErrorReport.clear();
  InstallFlags = IF_CLEAR_ATTRIBUTES;
  CHECK(Values{Place("a", "new"), ErrorReport.is_empty()} == Values{1, 1});
  CHECK(folder.Read("a") == "new");
  CHECK(Attributes("a") == 0);
}

TEST_CASE_FIXTURE(Fixture, "a file in use is replaced at the next start, if it may") {
  folder.Write("a", "old");
  const HANDLE lock = CreateFileA(Path("a"), GENERIC_READ, 0, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  REQUIRE(lock != INVALID_HANDLE_VALUE);
  const std::string path = Path("a").c_str();

  CHECK(Values{Place("a", "new"), std::string(ErrorReport.c_str()).find("no file " + path + "\r\n"),
               HasInstallFlag(IF_REBOOT_NEEDED)} == Values{0, 0, 0});

  ErrorReport.clear();
  CHECK(Values{Place("a", "new", true), HasInstallFlag(IF_REBOOT_NEEDED), ErrorReport.is_empty()} == Values{0, 1, 1});
  const std::string log = LogText.c_str();
  CHECK(log.find("no file " + path + "\r\n") == 0);
  const std::string told = path + " has been successfully registered for replacement.\r\nTemporary file is ";
  REQUIRE(log.find(told) != std::string::npos);
  std::string rest = log.substr(log.find(told) + told.size());
  const std::string temporary = rest.substr(0, rest.find("\r\n"));
  CHECK(rest.substr(temporary.size()) == "\r\nReboot will be required.\r\n\r\n");
  CHECK(std::filesystem::file_size(temporary) == 3);
  DeleteFileA(temporary.c_str());
  CloseHandle(lock);
  CHECK(folder.Read("a") == "old");
}

TEST_CASE_FIXTURE(Fixture, "the payload's files are placed, listed and logged one after the other") {
  packer::Product product;
  product.flags = 0;
  const auto add = [&](const char *name, const std::string &bytes, const char *target = "", uint32_t flags = 0) {
    packer::FileEntry file;
    file.name = name;
    file.contents.assign(bytes.begin(), bytes.end());
    file.date = {2001, 5, 17, 10, 30, 2};
    file.target = target;
    file.flags = flags;
    product.files.push_back(file);
  };
  add("one", "1");
  add("sub\\two", "22");
  add("sub\\three", "333");
  add("four", "4444", "other\\");
  add("kept\\five", "", "", FF_KEEP);
  add("one\\six", "6"); // a file stands where its directory should be
  add("dir\\seven", "7", "", FF_UNINSTALL_DIR);
  const packer::Payload payload = packer::WritePayload(product);
  Vector<int32_t> sizes;
  for (const int32_t size : payload.sizes)
    sizes.append(size);

  InstallFlags = IF_VERBOSE_LOG;
  ArchiveCursor cursor(payload.stored.data(), static_cast<int32_t>(payload.stored.size()));
  PlaceFiles(cursor, sizes);
  CHECK(cursor.left() == 0);
  CHECK(folder.Read("one") == "1");
  CHECK(folder.Read("sub\\two") == "22");
  CHECK(folder.Read("sub\\three") == "333");
  CHECK(folder.Read("other\\four") == "4444");
  CHECK(folder.Read("kept\\five").empty());
  CHECK(CompareFileDates(Date("sub\\three"), kDate) == 0);

  const std::string root = InstallDir.c_str();
  const auto line = [&](const char *name) { return root + "\\" + name + "\r\n"; };
  // The last one is listed too: what a failed write leaves must go. Its directory is never made, so it fails.
  CHECK(UninstallList == (line("one") + "~" + line("sub") + line("sub\\two") + line("sub\\three") + "~" +
                          line("other") + line("other\\four") + line("Un\\dir\\seven"))
                             .c_str());
  CHECK(LogText == ("one -> " + line("one") + "sub\\two -> " + line("sub\\two") + "sub\\three -> " +
                    line("sub\\three") + "four -> " + line("other\\four") + "kept\\five -> " + line("kept\\five"))
                       .c_str());
  const std::string report = ErrorReport.c_str();
  CHECK(report.find("no directory " + line("one")) == 0);
  CHECK(report.find("Not installed: " + root + "\\one\\six\r\n\r\nno file " + line("Un\\dir\\seven")) !=
        std::string::npos);

  // A run that keeps no list of files still lists none of its directories.
  InstallFlags = IF_NO_UNINSTALL_RECORDS;
  ArchiveCursor again(payload.stored.data(), static_cast<int32_t>(payload.stored.size()));
  PlaceFiles(again, sizes);
  CHECK(UninstallList.is_empty());
}

TEST_CASE_FIXTURE(Fixture, "a path from the root has none in an installation without a drive") {
  packer::Product product;
  product.flags = 0;
  product.files.emplace_back();
  product.files[0].name = "a";
  product.files[0].target = "\\a";
  const packer::Payload payload = packer::WritePayload(product);
  Vector<int32_t> sizes;
  sizes.append(0);
  InstallDir = "\\\\server\\share";
  ArchiveCursor cursor(payload.stored.data(), static_cast<int32_t>(payload.stored.size()));
  PlaceFiles(cursor, sizes);
  CHECK(std::string(ErrorReport.c_str()).find("Not installed: \\a\r\n") != std::string::npos);
}
