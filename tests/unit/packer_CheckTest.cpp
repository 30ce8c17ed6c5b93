#include <doctest/doctest.h>

#include <functional>

#include "packer/CodePage.h"
#include "packer/FileTree.h"
#include "packer/ProductCheck.h"
#include "packer/Texts.h"

using namespace korb;
using packer::Day;
using packer::Product;

namespace {

Product Sound() {
  Product product;
  product.name = "Thing";
  product.languages = {{"English", packer::EnglishTexts(), {}}};
  packer::FileEntry file;
  file.name = "thing.exe";
  product.files = {file};
  return product;
}

struct Row {
  std::string report; // "" for none
  std::function<void(Product &)> change;
};

void CheckRows(const std::vector<Row> &rows) {
  for (const Row &row : rows) {
    Product product = Sound();
    row.change(product);
    packer::Findings findings;
    packer::CheckProduct(product, findings);
    CHECK(findings.Report("m") == (row.report.empty() ? "" : "m: " + row.report + "\n"));
  }
}

void Font(Product &product) {
  product.files[0].kind = KindFont;
  product.files[0].label = "Face";
}

} // namespace

TEST_CASE("names and options that an installer can't work with are refused, idle ones are warned of") {
  CheckRows({
      {"", [](auto &) {}},
      {"error: 'product.name' is missing", [](auto &p) { p.name = " "; }},
      {"error: 'product.name' must hold neither quotes nor line ends",
       [](auto &p) { p.name = "a\"b", p.install_dir = "x"; }},
      {"error: 'product.name' can't hold <product>, which stands for the name itself",
       [](auto &p) { p.name = "<PRODUCT>", p.install_dir = "x"; }},
      {"error: 'product.name' holds a backslash: give an 'uninstall.name' that can be the name of a registry key",
       [](auto &p) { p.name = "a\\b", p.languages[0].texts[33] = "x"; }},
      {"", [](auto &p) { p.name = "a\\b", p.uninstall_name = "ab"; }},
      {"warning: 'product.name' can't be the name of a directory: give an 'install.directory'",
       [](auto &p) { p.name = "a: b"; }},
      {"error: 'uninstall.name' must hold neither quotes nor backslashes: it is the name of a registry key",
       [](auto &p) { p.uninstall_name = "a\"b"; }},
      {"error: 'product.version' holds a number that doesn't fit into 32 bits",
       [](auto &p) { p.version = "1.2147483648"; }},
      {"", [](auto &p) { p.version = "1.2147483647"; }},
      {"error: 'payload.volume_name' has to be the beginning of a file name, even without volumes",
       [](auto &p) { p.volume_base_name = " \t"; }},
      {"warning: 'product.expires' is over: the installer won't run",
       [](auto &p) {
         p.expiry = Day{2001, 2, 28};
       }},
      {"warning: \"other\" is every Windows after XP: the installer won't run on any of them",
       [](auto &p) { p.excluded_platforms = 0x41; }},
      {"warning: 'product.registry_key' stands below Software already",
       [](auto &p) { p.registry_key = "SOFTWARE\\Maker\\Thing"; }},
      {"error: 'install.directory' holds a character that no folder's name can have",
       [](auto &p) { p.install_dir = "C:\\a?"; }},
      {"", [](auto &p) { p.install_dir = "<OS>\\%Temp%\\x", p.common_dir = "D:\\x"; }},
      {"error: 'install.start_menu' holds a character that no folder's name can have",
       [](auto &p) { p.start_menu = "Maker/Thing"; }},
      {"error: 'product.expires' is a day that doesn't exist",
       [](auto &p) {
         p.expiry = {2001, 2, 29};
       }},
      {"error: 'install.directory' must not hold ';', \"[Strings]\" or \"[Associations]\", which divide the "
       "uninstaller's record",
       [](auto &p) { p.install_dir = "x[strings]"; }},
      {"error: \"<master>\" needs a 'product.master_product'", [](auto &p) { p.install_dir = "<Master>"; }},
      {"warning: of several levels, the uninstaller removes the last one only",
       [](auto &p) { p.uninstall_subdir = "a\\b"; }},
      {"", [](auto &p) { p.uninstall_subdir = "a\\"; }},
      {"error: 'uninstall.program' has to be a file name", [](auto &p) { p.uninstaller_name = ""; }},
      {"", [](auto &p) { p.uninstaller_name = "", p.flags &= ~IF_UNINSTALL; }},
      {"error: there are at most 20 licence pages", [](auto &p) { p.license_pages.resize(21); }},
      {"", [](auto &p) { p.license_pages.resize(20), p.readme_pages.resize(20); }},
      {"error: 'install.min_phase_ms' is 9,999 at most", [](auto &p) { p.min_phase_ms = 10000; }},
      {"warning: 'options.no_uninstall_records' makes the uninstaller delete the whole installation directory, the "
       "user's own files in it too",
       [](auto &p) { p.flags |= IF_NO_UNINSTALL_RECORDS; }},
      {"warning: 'options.uninstall_desktop' has no effect without 'options.uninstall'",
       [](auto &p) { p.flags = IF_UNINSTALL_DESKTOP; }},
  });
}

TEST_CASE("texts are held to the use that the program makes of them") {
  CheckRows({
      {"error: text 10 (uninstall_incomplete) of 'English' is wrong: '%d' is of the wrong kind: %s belongs there",
       [](auto &p) { p.languages[0].texts[10] = "%d"; }},
      {"error: text 29 (step_unpack) of 'English' is wrong: '% d' has no argument: this text has none",
       [](auto &p) { p.languages[0].texts[29] = "100% done"; }},
      {"error: text 22 (directory_exists) of 'English' is wrong with the product's name in it: '% s' has no argument: "
       "there are only 1",
       [](auto &p) {
         p.name = "5% saved";
         p.languages[0].texts = std::vector<std::string>(22);
         p.languages[0].texts.push_back("%s <product>");
       }},
      {"", [](auto &p) { p.languages[0].texts[29] = "100%%", p.languages[0].texts[9] = "100% done"; }},
      {"warning: text 13 (corrupt) of 'English' doesn't show all that it is given, which is %d",
       [](auto &p) { p.languages[0].texts[13] = "100%% damaged"; }},
      {"error: text 34 (uninstalled) of 'English' has a line that begins with '~', which ends the text in the "
       "uninstaller's record",
       [](auto &p) { p.name = "~x", p.languages[0].texts[20] = "x", p.languages[0].texts[34] = "a\n<PRODUCT>"; }},
      {"error: text 71 (uninstall_label) of 'English' holds \"[Associations]\", which ends the texts in the "
       "uninstaller's "
       "record",
       [](auto &p) { p.languages[0].texts[71] = "x[ASSOCIATIONS]"; }},
      {"error: text 33 (uninstaller_title) of 'English' can't be the name of a shortcut, and the uninstaller is to "
       "have "
       "one",
       [](auto &p) { p.flags |= IF_UNINSTALL_START_MENU, p.languages[0].texts[33] = " "; }},
      {"warning: text 65 (notice) of 'English' is blank, so no notice is shown", [](auto &p) { p.flags |= IF_NOTICE; }},
      {"error: there are two languages called 'English'", [](auto &p) { p.languages.push_back(p.languages[0]); }},
      {"error: an installer has from 1 to 100 languages", [](auto &p) { p.languages.clear(); }},
  });
  const struct {
    const char *text, *form, *fault;
  } formats[] = {
      {"%s %c: %s", "scs", ""},
      {"%-10.3ld 5%%", "d", ""},
      {"%s", "", ""},
      {"%s %s", "s", "'%s' has no argument: there are only 1"},
      {"%n", "s", "'%n' is no conversion; a percent sign is written as %%"},
      {"50%", "-", "'%' is no conversion; a percent sign is written as %%"},
      {"%*d", "d", "'%*' is no conversion; a percent sign is written as %%"},
  };
  for (const auto &row : formats)
    CHECK(packer::FormatFault(row.text, row.form) == row.fault);
}

TEST_CASE("files are refused that the installer or the uninstaller would lose") {
  CheckRows({
      {"error: file 'thing.exe': a shared file needs an uninstaller: without one there is no directory for shared "
       "files",
       [](auto &p) { p.files[0].kind = KindShared, p.flags &= ~IF_UNINSTALL; }},
      {"", [](auto &p) { p.files[0].kind = KindShared; }},
      {"error: file 'thing.exe': kind 2 has no folder of its own: give a 'target' with a folder",
       [](auto &p) { p.files[0].kind = 2, p.files[0].target = "other.exe"; }},
      {"", [](auto &p) { p.files[0].kind = 2, p.files[0].target = "sub\\"; }},
      {"", [](auto &p) { p.files[0].kind = 9, p.files[0].flags = FF_UNINSTALL_DIR; }},
      {"", Font},
      {"error: file 'thing.exe': a font needs its face name as 'label': without one, no font of the product is removed "
       "any more",
       [](auto &p) { p.files[0].kind = KindFont; }},
      {"error: file 'thing.exe': neither the face name nor the name of a font may hold a quote",
       [](auto &p) { Font(p), p.files[0].label = "a\"b"; }},
      {"error: file 'a\\b.ttf': a font can only go to the fonts folder itself",
       [](auto &p) { Font(p), p.files[0].name = "a\\b.ttf"; }},
      {"error: file 'thing.exe': a font can only go to the fonts folder itself",
       [](auto &p) { Font(p), p.files[0].target = "x\\"; }},
      {"error: file 'a;b': a name must not hold ';', \"[Strings]\" or \"[Associations]\", which divide the "
       "uninstaller's record",
       [](auto &p) { p.files[0].name = "a;b"; }},
      {"warning: file '" + std::string(238, 'x') +
           "': its path has more than 259 characters where the product is proposed to go, which most systems refuse",
       [](auto &p) { p.files[0].name.assign(238, 'x'); }},
      {"", [](auto &p) { p.files[0].name.assign(236, 'x'); }},
      {"error: file 'a\\AUX.h': a part of 'a\\AUX.h' is a device, or ends in a dot or a space, which Windows drops",
       [](auto &p) { p.files[0].name = "a\\AUX.h"; }},
      {"warning: file 'b': its shortcut has the title of an earlier one, which it replaces",
       [](auto &p) {
         p.files[0].label = "T", p.files[0].flags = FF_DESKTOP;
         p.files.push_back(p.files[0]), p.files[1].name = "b";
       }},
      {"error: file 'a*b': 'a*b' is no relative path that Windows could have",
       [](auto &p) { p.files[0].name = "a*b"; }},
      {"error: file '..\\x': '..' in a name leads out of the product's directory: use 'target'",
       [](auto &p) { p.files[0].name = "..\\x"; }},
      {"error: file '': it has no name", [](auto &p) { p.files[0].name = ""; }},
      {"error: file 'thing.exe': its date doesn't exist", [](auto &p) { p.files[0].date = {2001, 2, 30, 0, 0, 0}; }},
      {"error: file 'thing.exe': its shortcut has no title, and text 38 (shortcut_title) of 'English' is blank",
       [](auto &p) { p.files[0].flags = FF_DESKTOP, p.languages[0].texts[38] = ""; }},
      {"error: file 'thing.exe': 'a:b' can't be the file name of a shortcut",
       [](auto &p) { p.files[0].kind = KindStartup, p.files[0].label = "a:b"; }},
      {"warning: file 'thing.exe': its icon is left out, since only desktop and start menu shortcuts have one",
       [](auto &p) { p.files[0].icon = "x.ico"; }},
      {"warning: file 'thing.exe': without a date it never replaces a file that is there",
       [](auto &p) { p.files[0].kind = KindSystem; }},
      {"warning: file 'a\\b': the folder in its name is not created there: the file fails unless the folder exists",
       [](auto &p) { p.files[0].name = "a\\b", p.files[0].flags = FF_UNINSTALL_DIR; }},
      {"warning: file 'THING.EXE': it goes to the same place as another",
       [](auto &p) { p.files.push_back(p.files[0]), p.files[1].name = "THING.EXE"; }},
      {"warning: file 'thing.exe': '%ProgramFiles%' is no path variable and stays as it is; did you mean "
       "'%ProgramsDir%'?",
       [](auto &p) { p.files[0].target = "%TEMP%\\%ProgramFiles%\\50%\\"; }},
      {"", [](auto &p) { p.files[0].arguments = "\"%1\" 5% %InstallDir%%windir%"; }},
      {"warning: file 'maps\\a': it goes to the same place as another",
       [](auto &p) {
         p.files.push_back(p.files[0]), p.files[0].name = "A", p.files[0].target = "%InstallDir%\\Maps\\";
         p.files[1].name = "maps\\a";
       }},
      {"error: file 'UNDO\\uninstall.dat': the installer writes its own 'Uninstall.DAT' there",
       [](auto &p) { p.uninstall_subdir = "Undo", p.files[0].name = "UNDO\\uninstall.dat"; }},
      {"error: file 'uninstall.exe': the installer writes its own 'Uninstall.exe' there",
       [](auto &p) { p.files[0].name = "uninstall.exe", p.files[0].flags = FF_UNINSTALL_DIR; }},
      {"warning: file 'thing.exe': only the attributes 0x1127 are given to a file",
       [](auto &p) { p.files[0].attributes = 0x800; }},
      {"warning: the product has no files", [](auto &p) { p.files.clear(); }},
  });
}

TEST_CASE("lists are refused where the installer would call them damaged or the uninstaller would lose its way") {
  using packer::Association;
  const auto associate = [](Product &p, const char *extension, const char *file_class, const char *verb) {
    Association association;
    association.extension = extension, association.file_class = file_class, association.verb = verb;
    association.command = "x.exe";
    p.associations.push_back(association);
  };
  const auto remove = [](int8_t kind, const char *value) {
    return [=](Product &p) { p.deletions = {{"x", kind, value, 0, {}}}; };
  };
  CheckRows({
      {"", remove(kDeleteAlways, "whatever")},
      {"", remove(kDeleteDateEqual, "12/31/1999 10:00")},
      {"", remove(kDeleteDateEqual, "5-Jan-2001")},
      {"error: old file 'x': its condition needs a date", remove(kDeleteDateFrom, "13/1/1999")},
      {"", remove(kDeleteSizeFrom, "2,147,483,647")},
      {"error: old file 'x': its size doesn't fit into 32 bits", remove(kDeleteSizeFrom, "2147483648")},
      {"error: old file 'x': its condition needs a size in bytes", remove(kDeleteSizeUpTo, "1 KB")},
      {"error: old file '~~THE END~~': this name ends the list",
       [](auto &p) {
         p.deletions = {{"~~THE END~~", 0, "", 0, {}}};
       }},
      {"error: there are 1002 old files, but 1001 at most can be packed",
       [](auto &p) {
         p.deletions.assign(1002, {"x", 0, "", 0, {}});
       }},
      {"", [&](auto &p) { associate(p, "x", "", "open"); }},
      {"error: association of 'x': it has no verb, so the uninstaller can't take it back",
       [&](auto &p) { associate(p, "x", "X", " "); }},
      {"error: association of '': without an extension it is passed over",
       [&](auto &p) { associate(p, "", "X", "v"); }},
      {"error: association of 'x': extension, class and verb must not hold \"~!~\", a line end, \"[Strings]\" or "
       "\"[Associations]\"",
       [&](auto &p) { associate(p, "x", "a~!~b", "v"); }},
      {"warning: association of 'x': no language is called 'english', so it never applies",
       [&](auto &p) { associate(p, "x", "X", "v"), p.associations[0].language = "english"; }},
      {"", [&](auto &p) { associate(p, "x", "X", "v"), p.associations.resize(499, p.associations[0]); }},
      {"warning: the uninstaller takes back no more than 499 associations",
       [&](auto &p) { associate(p, "x", "X", "v"), p.associations.resize(500, p.associations[0]); }},
      {"warning: uninstall value 'displayName': it overwrites a value that the uninstaller reads, and saved "
       "associations are then looked for under another name",
       [](auto &p) {
         p.uninstall_values = {{"displayName", 1, "x", {}}};
       }},
      {"error: uninstall value 'n': the number doesn't fit into 32 bits",
       [](auto &p) {
         p.uninstall_values = {{"n", kUninstallNumber, "4294967296", {}}};
       }},
  });
}

TEST_CASE("patterns choose files as authors expect") {
  const struct {
    const char *path, *pattern;
    bool fits;
  } rows[] = {
      {"a.txt", "*.txt", true},
      {"d/a.txt", "*.txt", true},
      {"d/a.txt", "/*.txt", false},
      {"d/a.txt", "d/*", true},
      {"d/e/a.txt", "d/*", false},
      {"d/e/a.txt", "d/**", true},
      {"a.txt", "**/a.txt", true},
      {"d/e/a.txt", "**/a.txt", true},
      {"d/ba.txt", "**/a.txt", false},
      {"d/x/e/a", "d/**/e/a", true},
      {"d/e/a", "d/**/e/a", true},
      {"a.TXT", "*.txt", false},
      {"ab", "a?", true},
      {"a/", "a?", false},
      {"abc", "a*c*", true},
      {"", "*", true},
      {"a", "", false},
  };
  for (const auto &row : rows) {
    CAPTURE(row.path);
    CAPTURE(row.pattern);
    CHECK(packer::MatchesPattern(row.path, row.pattern) == row.fits);
  }
}

TEST_CASE("code pages take what they have and name what they lack") {
  std::string missing;
  CHECK(packer::ToCodePage("a€é", 1252, missing) == "a\x80\xE9");
  CHECK(packer::ToCodePage("Ж", 1251, missing) == "\xC6");
  CHECK(!packer::ToCodePage("aЖ", 1252, missing));
  CHECK(missing == "Ж");
  for (const char *bad : {"\xFF", "\xC0\x80", "\xE2\x82", "\xED\xA0\x80", "\xF5\x80\x80\x80", "\x80", "a\xC3"}) {
    CHECK(!packer::IsUtf8(bad));
    CHECK(!packer::ToCodePage(bad, 1252, missing));
    CHECK(missing.empty());
  }
  CHECK(packer::FromCodePage("a\x80\xE9\x81", 1252) == "a€é\uFFFD");
  CHECK(!packer::IsCodePage(437));
}
