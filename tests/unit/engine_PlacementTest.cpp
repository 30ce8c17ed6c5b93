#include <map>
#include <optional>

#include "core/RunValues.h"
#include "engine/InstallNotes.h"
#include "engine/Placement.h"
#include "format/Kinds.h"
#include "tests/support/Testing.h"

namespace {

struct PresentFile {
  FileDate date{};
  std::string version;
  bool dateless = false;
};

/// A machine with known folders, and with the files that a case puts there.
class Machine final : public PlacementHost {
public:
  String FontFolder() override { return "W:\\Fonts"; }
  String SystemFolder() override { return "W:\\System"; }
  void ExpandPathVariables(String &text) override { text.replace("%Win%", "W:"); }
  bool FileExists(const String &path) override { return files.count(path.c_str()) != 0; }
  bool GetFileModified(const String &path, FileDate &date) override {
    const PresentFile &file = files.at(path.c_str());
    date = file.date;
    return !file.dateless;
  }
  String ReadFileVersion(const String &path) override { return files.at(path.c_str()).version.c_str(); }

  std::map<std::string, PresentFile> files;
};

constexpr FileDate kDate{2001, 5, 17, 10, 30, 2};
constexpr FileDate kEarlier{2001, 5, 17, 10, 30, 0};
constexpr FileDate kLater{2001, 5, 17, 10, 30, 4};

struct Case {
  Case() {
    InstallFlags = 0;
    InstallDir = "C:\\App";
    CommonDir = "C:\\Shared";
    notes.uninstall_dir = "C:\\App\\Un";
  }

  std::string To(uint32_t kind, const char *name, const char *target, uint32_t flags = 0) {
    record.dest_kind = kind;
    record.name = name;
    record.target = target;
    record.file_flags = flags;
    const Destination to = ChooseDestination(record, notes.uninstall_dir, machine);
    return std::string(to.path.c_str()) + (to.in_install_tree ? " +" : "") +
           (to.name == name ? "" : std::string(" as ") + to.name.c_str());
  }

  /// "write", "replace" or "skip", and what was logged.
  std::string Verdict() {
    String &log_text = notes.journal.log_text;
    log_text.clear();
    bool replaces = false;
    const bool wanted = IsWanted(record, "f", machine, notes, replaces);
    CHECK((wanted || !replaces));
    return (!wanted    ? "skip"
            : replaces ? "replace"
                       : "write") +
           (log_text.is_empty() ? std::string() : std::string(": ") + log_text.c_str());
  }

  Machine machine;
  InstallNotes notes;
  PayloadRecord record{"n", 0, 0, 0, nullptr, 0, kDate, "", "", "", ""};
};

} // namespace

TEST_CASE("a file goes where its target, its flags and its kind say, in this order") {
  struct Row {
    uint32_t kind;
    const char *name, *target;
    uint32_t flags;
    const char *path;
  };
  const Row rows[] = {
      {KindProgram, "a\\b.txt", "", 0, "C:\\App\\a\\b.txt +"},
      {KindShared, "b", "", 0, "C:\\Shared\\b"},
      {KindFont, "b.ttf", "", 0, "W:\\Fonts\\b.ttf"},
      {KindSystemCom, "b", "", 0, "W:\\System\\b"},
      // A target without a folder is a new name; variables are not looked for in it.
      {KindFont, "b.ttf", "%Win%.ttf", 0, "W:\\Fonts\\%Win%.ttf as %Win%.ttf"},
      {KindProgram, "a\\b", "c", FF_UNINSTALL_DIR, "C:\\App\\Un\\c as c"},
      // Any other is the path itself, or its folder.
      {KindProgram, "b", "sub\\c.txt", 0, "C:\\App\\sub\\c.txt +"},
      {KindProgram, "a\\b.dll", "sub\\", 0, "C:\\App\\sub\\b.dll +"},
      {KindShared, "b", "sub\\c", 0, "C:\\Shared\\sub\\c +"},
      {KindSystem, "b", "sub\\c", 0, "C:\\App\\sub\\c +"},
      {KindFont, "b", "%Win%\\c", 0, "W:\\c +"},
      {KindProgram, "b", "\\top\\", 0, "C:\\top\\b +"},
      {KindProgram, "b", "\\\\server\\share\\c", FF_UNINSTALL_DIR, "\\\\server\\share\\c +"},
      // The flag stands before the kind, so that a kind without meaning passes with it, and with a target.
      {KindShared, "b", "", FF_UNINSTALL_DIR, "C:\\App\\Un\\b"},
      {3, "b", "", FF_UNINSTALL_DIR, "C:\\App\\Un\\b"},
      {8, "b", "sub\\c", 0, "C:\\App\\sub\\c +"},
  };
  Case c;
  for (const Row &row : rows) {
    CAPTURE(row.kind);
    CAPTURE(std::string(row.target));
    CHECK(c.To(row.kind, row.name, row.target, row.flags) == row.path);
  }
  for (const uint32_t kind : {2u, 3u, 8u, 0xFFFFFFFFu})
    CHECK(TrappedCode([&] { c.To(kind, "b", ""); }) == 110);
  CHECK(TrappedCode([&] { c.To(3, "b", "newname"); }) == 110);
}

// Whole runs show the rest: how each file is counted, and the shortcuts with all they hold.
TEST_CASE("a file that the condition keeps still goes with the product") {
  Case c;
  const auto wanted = [&](uint32_t flags, const char *path) {
    c.record.file_flags = flags;
    bool replaces = false;
    return IsWanted(c.record, path, c.machine, c.notes, replaces);
  };
  c.machine.files["C:\\App\\old"] = {};
  InstallFlags = IF_NO_UNINSTALL_RECORDS;
  CHECK_FALSE(wanted(FF_PLACE_NEW | FF_KEEP, "C:\\App\\old"));
  c.record.dest_kind = KindSystem;
  CHECK_FALSE(wanted(FF_PLACE_NEW, "C:\\App\\old"));
  CHECK(c.notes.uninstall_list.text() == "");
  c.record.dest_kind = KindStartup;
  CHECK_FALSE(wanted(FF_PLACE_NEW, "C:\\App\\old"));
  CHECK(c.notes.uninstall_list.text() == "C:\\App\\old\r\n");
}

TEST_CASE("a file replaces another only as its condition, its version and its date allow") {
  using Present = std::optional<PresentFile>;
  const Present none, older = PresentFile{kEarlier, "", false}, same = PresentFile{kDate, "", false},
                      newer = PresentFile{kLater, "", false}, dateless = PresentFile{kDate, "", true},
                      version_11 = PresentFile{kEarlier, "0000000011.0000000000", false},
                      newer_11 = PresentFile{kLater, "0000000011.0000000000", false};
  const std::string replaced = "replace: f is out of date and will be replaced.\r\n",
                    current = "skip: f is up to date.\r\n",
                    version = "skip: f was not installed because its version is not newer.\r\n",
                    date = "skip: f was not installed because its date is not newer.\r\n";
  const struct {
    uint32_t kind, flags;
    const char *label;
    Present present;
    std::string verdict;
  } rows[] = {
      {KindProgram, 0, "", newer, "write"},
      {KindProgram, FF_PLACE_NEVER, "", none, "skip"},
      {KindProgram, FF_PLACE_OVER, "", none, "skip"},
      {KindProgram, FF_PLACE_OVER, "", newer, "write"},
      {KindProgram, FF_PLACE_NEW, "", older, "skip"},
      {3, 0, "", same, "write"},
      {KindShared, 0, "", none, "write"},
      {KindShared, 0, "", older, replaced},
      {KindShared, 0, "", same, current},
      {KindShared, FF_PLACE_NEW, "", older, "skip"},
      {KindFont, 0, "", none, "write"},
      {KindFont, 0, "", dateless, replaced},
      {KindFont, 0, "", same, current},
      {KindSystem, 0, "", none, "write"},
      {KindSystem, 0, "", older, replaced},
      {KindSystem, 0, "", same, date},
      {KindSystem, 0, "", dateless, "skip"},
      {KindSystem, 0, " \t", version_11, replaced},
      {KindSystem, 0, "12", older, replaced}, // without a version there is nothing to compare
      {KindSystem, 0, "11.0", version_11, version},
      {KindSystem, 0, "11", version_11, version},
      {KindSystem, 0, "11.0.0", version_11, replaced},
      {KindSystem, 0, "11.0a", version_11, replaced},
      {KindSystem, 0, "12", newer_11, date},
  };
  Case c;
  for (const auto &row : rows) {
    CAPTURE(&row - rows);
    c.machine.files.clear();
    if (row.present)
      c.machine.files["f"] = *row.present;
    c.record.dest_kind = row.kind;
    c.record.file_flags = row.flags;
    c.record.label = row.label;
    CHECK(c.Verdict() == row.verdict);
  }
}

TEST_CASE("without a date a shared file replaces what is there, and a system file does not") {
  Case c;
  c.record.date = {};
  c.machine.files["f"] = {kLater, "", false};
  c.record.dest_kind = KindShared;
  CHECK(c.Verdict() == "replace: f is out of date and will be replaced.\r\n");
  c.record.dest_kind = KindSystem;
  CHECK(c.Verdict() == "skip: f was not installed because its date is not newer.\r\n");
}

TEST_CASE("shortcuts are noted for programs that ask and for every startup file") {
  Case c;
  const auto note = [&](uint32_t kind, uint32_t flags) {
    c.notes.shortcut_list.clear();
    c.record.dest_kind = kind;
    c.record.file_flags = flags;
    NoteShortcut(c.record, "C:\\App\\a.exe", c.notes);
    return c.notes.shortcut_list.count;
  };
  c.record.label = c.record.icon = " ";
  CHECK(note(KindProgram, FF_KEEP) == 0);
  CHECK(note(KindShared, FF_SHORTCUTS) == 0);
  CHECK(note(KindStartup, FF_START_MENU | FF_KEEP) == 1);
  const ShortcutRecord shortcut = c.notes.shortcut_list.at(0);
  CHECK((!shortcut.desktop && shortcut.start_menu && shortcut.startup && shortcut.no_uninstall));
  CHECK(shortcut.title == " ");
  CHECK(shortcut.icon.is_empty());
  c.record.icon = "a.ico";
  CHECK(note(KindProgram, FF_DESKTOP) == 1);
  CHECK(c.notes.shortcut_list.at(0).icon == "C:\\App\\Un\\a.ico");
}

TEST_CASE("the uninstall list takes directories once and no drive's root") {
  UninstallList list;
  list.AddUninstallEntry("C:\\", kUninstallDirectory);
  list.AddUninstallEntry(nullptr, kUninstallFile);
  list.AddUninstallEntry("C:\\App", kUninstallDirectory);
  list.AddUninstallEntry("c:\\aPP", kUninstallDirectory);
  list.AddUninstallEntry("C:\\f", kUninstallFile);
  list.AddUninstallEntry("C:\\f", kUninstallFile);
  list.AddUninstallEntry("Software\\X", kUninstallKey);
  CHECK(list.text() == "~C:\\App\r\nC:\\f\r\nC:\\f\r\n!Software\\X\r\n");
}
