// What an installer takes away for those who have an earlier release.
#include <algorithm>

#include "format/Texts.h"
#include "format/Words.h"
#include "packer/manifest/ReadyTexts.h"
#include "packer/release/Upgrade.h"
#include "tests/support/Doctest.h"

using namespace korb;
using namespace korb::packer;

namespace {

struct TestProduct : Product {
  explicit TestProduct(const char *release = "1.0") {
    name = "Thing";
    version = release;
    languages = {{"English", EnglishTexts(), {}}};
  }
  TestProduct &Bring(const std::string &file, uint32_t file_flags = 0, const std::string &target = "",
                     uint32_t kind = KindProgram, const std::string &title = "") {
    FileEntry entry;
    entry.name = file;
    entry.flags = file_flags;
    entry.target = target;
    entry.kind = kind;
    entry.label = title;
    entry.contents = {'1', '2', '3'};
    files.push_back(entry);
    return *this;
  }
};

Release Released(const Product &product) {
  Release release = ReleaseOf(product);
  release.label = "old.exe";
  return release;
}

// The deletions that `product` gets, its batch, and what is told, in lines.
std::string Upgraded(const std::vector<Release> &earlier, Product product) {
  Findings findings;
  PlanUpgrade(earlier, {}, product, findings);
  std::string text;
  for (const Deletion &deletion : product.deletions)
    text += deletion.name + (deletion.kind == kDeleteSizeEqual ? " of " + deletion.value : "") +
            (deletion.options ? " later\n" : "\n");
  std::string batch = product.post_install_batch;
  std::erase(batch, '\r');
  text += batch;
  for (const Finding &finding : findings.List())
    text += (finding.severity == Severity::kError     ? "error: "
             : finding.severity == Severity::kWarning ? "warning: "
                                                      : "") +
            finding.message + "\n";
  return text;
}

std::string Upgraded(const Product &earlier, const Product &product) {
  return Upgraded(std::vector{Released(earlier)}, product);
}

} // namespace

TEST_CASE("what a release no longer brings goes, unless it may be another's") {
  const TestProduct now("2.0");
  const struct {
    const char *name, *target;
    uint32_t flags, kind;
    std::string wanted;
  } rows[] = {
      {"a.txt", "", 0, KindProgram, "%InstallDir%\\a.txt of 3\n"},
      {"a.txt", "b.txt", 0, KindProgram, "%InstallDir%\\b.txt of 3\n"},
      {"a.txt", "%installdir%\\b\\", 0, KindProgram, "%InstallDir%\\b\\a.txt of 3\nif exist KORBBAT.BAT rd \"b\"\n"},
      {"a b\\50% \xE9.txt", "", 0, KindProgram,
       "%InstallDir%\\a b\\50% \xE9.txt of 3\nif exist KORBBAT.BAT rd \"a b\"\n"},
      {"50%\\c\\a", "", 0, KindProgram,
       "%InstallDir%\\50%\\c\\a of 3\nif exist KORBBAT.BAT rd \"50%%\\c\"\nif exist KORBBAT.BAT rd \"50%%\"\n"},
      {"a.txt", "", FF_PLACE_NEVER, KindProgram, ""},
      {"a.txt", "", FF_KEEP, KindProgram, "%InstallDir%\\a.txt stays, as it is left to the user by 'keep'\n"},
      {"a.txt", "", FF_PLACE_NEW, KindProgram,
       "%InstallDir%\\a.txt stays, as it is left to the user by 'condition = \"new\"'\n"},
      {"a.txt", "", FF_PLACE_OVER, KindProgram,
       "%InstallDir%\\a.txt stays, as it is only placed over what was there already\n"},
      {"a.txt", "", 0, KindShared,
       "%SharedDir%\\a.txt stays, as it is of a kind that belongs to the system or to several products\n"},
  };
  for (const auto &row : rows) {
    CAPTURE(row.name);
    CAPTURE(row.target);
    CAPTURE(row.flags);
    CHECK(Upgraded(TestProduct().Bring(row.name, row.flags, row.target, row.kind), now) == row.wanted);
  }
  // A place that isn't known to be the product's own, or that no deletion can name.
  for (const char *target :
       {"%SystemDir%\\", "%InstallDrive%\\Thing\\", "%BootDrive%\\", "D:x\\", "\\x\\", "..\\x\\", "%InstallDir%\\..\\",
        "\\\\server\\x\\", "%InstallDir%\\%InstallerFilename%", "x\\%Temp%\\"}) {
    CAPTURE(target);
    const std::string told = Upgraded(TestProduct().Bring("a.txt", 0, target), now);
    CHECK(told.find("stays, as it is not known to be below the product's directory\n") != told.npos);
    CHECK(told.find(" of 3") == told.npos);
  }
  CHECK(Upgraded(TestProduct().Bring("%Temp%.txt"), now).find(" of 3") == std::string::npos);
}

TEST_CASE("what this release has, or its author deletes, is no longer looked at") {
  TestProduct old, now("2.0");
  old.Bring("Help\\A.txt").Bring("b.txt").Bring("help\\new\\c.txt");
  now.Bring("help\\a.TXT", FF_PLACE_NEW).Bring("x.txt", 0, "%InstallDir%\\\\.\\B.TXT");
  CHECK(Upgraded(old, now) == "%InstallDir%\\help\\new\\c.txt of 3\nif exist KORBBAT.BAT rd \"help\\new\"\n");
  now.deletions.push_back({"HELP\\new\\c.txt", kDeleteAlways, {}, 0, {}});
  CHECK(Upgraded(old, now) == "HELP\\new\\c.txt\nif exist KORBBAT.BAT rd \"help\\new\"\n");
}

TEST_CASE("over several releases, each size counts, and what one of them left to the user stays") {
  TestProduct now("3.0");
  now.flags |= IF_REPLACE_IN_USE;
  TestProduct first("1.0"), second("2.0");
  first.Bring("a.dll").Bring("user.ini");
  second.Bring("a.dll").Bring("user.ini", FF_PLACE_NEW);
  second.files[0].contents.push_back('4');
  const std::string wanted = "%InstallDir%\\a.dll of 3 later\n%InstallDir%\\a.dll of 4 later\n"
                             "%InstallDir%\\user.ini stays, as it is left to the user by 'condition = \"new\"'\n";
  CHECK(Upgraded({Released(first), Released(second)}, now) == wanted);
  CHECK(Upgraded({Released(second), Released(first)}, now) == wanted);
}

TEST_CASE("shortcuts go from where they were made, and their folders when they are empty") {
  TestProduct old, now("2.0");
  old.publisher = now.publisher = "Firm";
  old.desktop_group = "Icons";
  old.shortcut_mode = kShortcutsForAllUsers;
  old.Bring("t.exe", FF_SHORTCUTS, "", KindProgram, "Old").Bring("s.exe", 0, "", KindStartup, "Start");
  old.Bring("k.exe", FF_DESKTOP | FF_KEEP, "", KindProgram, "Kept");
  now.files = old.files;
  now.files[0].label = "New";
  CHECK(Upgraded(old, now) == "%DesktopAllDir%\\Icons\\Old.LNK\n"
                              "%SMProgramsAllDir%\\Firm\\Thing\\Old.LNK\n"
                              "%StartupAllDir%\\Start.LNK\n"
                              "rd \"%SMProgramsAllDir%\\Firm\\Thing\"\n"
                              "rd \"%SMProgramsAllDir%\\Firm\"\n"
                              "rd \"%DesktopAllDir%\\Icons\"\n"
                              "%DesktopAllDir%\\Icons\\Kept.LNK stays, as it is left to the user by 'keep'\n");
  now.desktop_group = old.desktop_group;
  now.shortcut_mode = old.shortcut_mode;
  CHECK(Upgraded(old, now) == "%DesktopAllDir%\\Icons\\Old.LNK\n%SMProgramsAllDir%\\Firm\\Thing\\Old.LNK\n");
}

TEST_CASE("a title by language goes unless each language makes it again") {
  TestProduct old, now("2.0");
  old.Bring("t.exe", FF_DESKTOP);
  old.languages.push_back({"Deutsch", EnglishTexts(), {}});
  old.languages[1].texts[kTextShortcutTitle] = "%s starten";
  now.languages = old.languages;
  now.files = old.files;
  CHECK(Upgraded(old, now) == "%DesktopDir%\\Shortcut to t.exe.LNK\n%DesktopDir%\\t.exe starten.LNK\n");
  now.languages.pop_back();
  CHECK(Upgraded(old, now) == "%DesktopDir%\\t.exe starten.LNK\n");
}

TEST_CASE("the uninstaller and its record go from where they were") {
  TestProduct old, now("2.0");
  old.uninstall_subdir = "un";
  const std::string moved = "%InstallDir%\\un\\Install.LOG\n%InstallDir%\\un\\Uninstall.DAT\n"
                            "%InstallDir%\\un\\Uninstall.exe\nif exist KORBBAT.BAT rd \"un\"\n";
  CHECK(Upgraded(old, now) == moved);
  now.uninstaller_name = "Undo.exe";
  CHECK(Upgraded(TestProduct(), now) == "%InstallDir%\\Uninstall.exe\n");
  // Another product's, if that shares its directory.
  old.install_dir = "<master>";
  CHECK(Upgraded(old, now).find("un\\Uninstall.DAT stays") != std::string::npos);
  now.flags &= ~IF_UNINSTALL;
  CHECK(Upgraded(TestProduct(), now) == "the uninstaller of old.exe stays, since this release has no uninstaller\n");
}

TEST_CASE("what was registered is told, or removed by what removes it") {
  TestProduct old, now("2.0");
  old.registry_key = "Firm\\Thing";
  old.flags |= IF_EDIT_PATH;
  old.associations = {{0, ".thg", "Thing.Doc", "", "open", "", "x", "", "", {}},
                      {0, "old", "", "", "show", "", "x", "", "", {}}};
  now.associations = {{0, "THG", "thing.doc", "", "Open", "", "y", "", "", {}}};
  const std::string why = " stays, since an upgrade doesn't undo what old.exe has registered\n";
  CHECK(Upgraded(old, now) == "the line in autoexec.bat" + why + "the registry key 'Software\\Firm\\Thing'" + why +
                                  "the verb 'show' of file type .old" + why);
  for (const char *name : {"HelpLink", "Here", "Publisher", "InstallDate"})
    old.uninstall_values.push_back({name, kUninstallText, "x", {}});
  now.uninstall_values = {{"here", kUninstallText, "y", {}}};
  Findings findings;
  PlanUpgrade({Released(old)}, {}, now, findings);
  REQUIRE(now.uninstall_values.size() == 2);
  CHECK(now.uninstall_values[1].name == "HelpLink");
  CHECK(now.uninstall_values[1].value == "");
}

TEST_CASE("another product is refused; a later release, and what can't work, is warned of") {
  TestProduct old, now("1.0");
  old.uninstall_name = "Other";
  CHECK(Upgraded(old, now) ==
        "error: 'old.exe' installs another product: its uninstall name is 'Other', not 'Thing'\n");
  CHECK(Upgraded(TestProduct("1.0.1"), now) == "warning: 'old.exe' is newer than this release: it has version 1.0.1\n");
  old = TestProduct().Bring("data\\a.txt");
  now.Bring("DATA");
  CHECK(Upgraded(old, now).find("a folder in an earlier release: an upgrade can't place a file there") !=
        std::string::npos);
  old = TestProduct();
  for (int i = 0; i < kMaxDeletions + 2; ++i)
    old.Bring(std::to_string(i));
  const std::string told = Upgraded(old, TestProduct("2.0"));
  CHECK(std::count(told.begin(), told.end(), '\n') == kMaxDeletions + 2);
  CHECK(told.find("stays, since an installer can't hold as many deletions\n") != told.npos);
}
