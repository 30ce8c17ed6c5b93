#include <functional>

#include "packer/CodePage.h"
#include "packer/check/ProductCheck.h"
#include "packer/check/TextCheck.h"
#include "packer/manifest/FileTree.h"
#include "packer/manifest/ManifestReader.h"
#include "packer/manifest/ReadyTexts.h"
#include "tests/support/Doctest.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestData.h"

using namespace korb;
using packer::Product;

namespace {

/// What building `manifest` has to say; a name and a file stand in it where it has none of its own.
std::string ReportOf(const test::TempFolder &folder, std::string manifest) {
  if (manifest.find("product.name =") == std::string::npos)
    manifest += "product.name = 'Thing'\n";
  if (manifest.find("file =") == std::string::npos)
    manifest += "file = [{ contents = '', name = 'thing.exe' }]\n";
  packer::Findings findings;
  packer::CheckProduct(packer::ReadManifest(folder.Write("m.toml", manifest), {}, findings).product, findings);
  return findings.Report("m");
}

} // namespace

TEST_CASE("what the installer or the uninstaller would trip over or lose is refused, what is idle is warned of") {
  const test::TempFolder folder;
  for (const test::ManifestRow &row : test::ManifestRows("product-faults.txt")) {
    CAPTURE(row.manifest);
    CHECK(ReportOf(folder, row.manifest) == row.report);
  }
}

TEST_CASE("products that no manifest brings, and the limits of long lists, are looked at as well") {
  const auto associate = [](Product &p, size_t count) {
    packer::Association association;
    association.extension = association.file_class = association.verb = "x";
    association.command = "%1";
    p.associations.assign(count, association);
  };
  const struct {
    std::string report; // "" for none
    std::function<void(Product &)> change;
  } rows[] = {
      {"", [](auto &) {}},
      {"error: 'product.expires' is a day that doesn't exist",
       [](auto &p) {
         p.expiry = {2001, 2, 29};
       }},
      {"warning: 'product.icon' has no bitmap of 16 by 16 and of 32 by 32 pixels: Windows makes it of another size, "
       "and "
       "before Vista of none that is a PNG [icon-lacks-size]",
       [](auto &p) {
         p.icon = {{16, 16, 32, true, {}}, {48, 48, 8, false, {}}};
       }},
      {"error: 'install.min_phase_ms' is 9,999 at most", [](auto &p) { p.min_phase_ms = 10000; }},
      {"error: text 22 (directory_exists) of 'English' is wrong with the product's name in it: '% s' has no argument: "
       "there are only 1",
       [](auto &p) {
         p.name = "5% saved";
         p.languages[0].texts = std::vector<std::string>(22);
         p.languages[0].texts.push_back("%s <product>");
       }},
      {"error: an installer has from 1 to 100 languages", [](auto &p) { p.languages.clear(); }},
      {"warning: file '" + std::string(238, 'x') +
           "': its path has more than 259 characters where the product is proposed to go, which most systems refuse "
           "[path-too-long]",
       [](auto &p) { p.files[0].name.assign(238, 'x'); }},
      {"", [](auto &p) { p.files[0].name.assign(236, 'x'); }},
      {"error: file 'thing.exe': its date doesn't exist", [](auto &p) { p.files[0].date = {2001, 2, 30, 0, 0, 0}; }},
      {"warning: file 'thing.exe': it goes to the same place as 'thing.exe' [same-destination]",
       [](auto &p) { p.files.push_back(p.files[0]); }},
      {"error: there are 1002 old files, but 1001 at most can be packed",
       [](auto &p) {
         p.deletions.assign(1002, {"x", 0, "", 0, {}});
       }},
      {"", [&](auto &p) { associate(p, 499); }},
      {"warning: the uninstaller takes back no more than 499 associations [too-many-associations]",
       [&](auto &p) { associate(p, 500); }},
  };
  for (const auto &row : rows) {
    Product product;
    product.name = "Thing";
    product.languages = {{"English", packer::EnglishTexts(), {}}};
    product.files.resize(1);
    product.files[0].name = "thing.exe";
    row.change(product);
    packer::Findings findings;
    packer::CheckProduct(product, findings);
    CHECK(findings.Report("m") == (row.report.empty() ? "" : "m: " + row.report + "\n"));
  }
}

TEST_CASE("a text is held to the arguments that it is given") {
  const struct {
    const char *text, *form, *fault;
  } formats[] = {
      {"%s %c: %s", "scs", ""},
      {"%-10.3ld 5%%", "d", ""},
      {"%s %s", "s", "'%s' has no argument: there are only 1"},
      {"%n", "s", "'%n' is no conversion; a percent sign is written as %%"},
      {"%1000d", "d", "'%1000d' makes it wider than any screen"},
      {"%*d", "d", "'%*' is no conversion; a percent sign is written as %%"},
  };
  for (const auto &row : formats)
    CHECK(packer::FormatFault(row.text, row.form) == row.fault);
}

TEST_CASE("patterns choose files as authors expect") {
  struct Row {
    const char *path, *pattern;
    bool fits;
  };
  for (const Row &row : {Row{"a.txt", "*.txt", true}, Row{"d/a.txt", "*.txt", true}, Row{"d/a.txt", "/*.txt", false},
                         Row{"d/a.txt", "d/*", true}, Row{"d/e/a.txt", "d/*", false}, Row{"d/e/a.txt", "d/**", true},
                         Row{"a.txt", "**/a.txt", true}, Row{"d/e/a.txt", "**/a.txt", true},
                         Row{"d/ba.txt", "**/a.txt", false}, Row{"d/x/e/a", "d/**/e/a", true},
                         Row{"d/e/a", "d/**/e/a", true}, Row{"a.TXT", "*.txt", false}, Row{"ab", "a?", true},
                         Row{"a/", "a?", false}, Row{"abc", "a*c*", true}, Row{"", "*", true}, Row{"a", "", false}}) {
    CAPTURE(row.path);
    CAPTURE(row.pattern);
    CHECK(packer::MatchesPattern(row.path, row.pattern) == row.fits);
  }

  // These have more readings than could be tried one by one.
  std::string stars = "b", folders = "b", deep = "a";
  for (int i = 0; i < 40; ++i) {
    stars = "*a" + stars;
    folders = "**/" + folders;
    deep = "d/" + deep;
  }
  CHECK(!packer::MatchesPattern(std::string(120, 'a'), stars));
  CHECK(packer::MatchesPattern(std::string(120, 'a') + "b", stars));
  CHECK(!packer::MatchesPattern(deep, folders));
  CHECK(packer::MatchesPattern(deep, "**/**/d/**/**/d/a"));
}

TEST_CASE("code pages take what they have and name what they lack") {
  std::string missing;
  CHECK(packer::ToCodePage("a€é", 1252, missing) == "a\x80\xE9");
  CHECK(packer::ToCodePage("Ж", 1251, missing) == "\xC6");
  CHECK(!packer::ToCodePage("aЖ", 1252, missing));
  CHECK(missing == "Ж");
  for (const char *bad : {"\xFF", "\xC0\x80", "\xE2\x82", "\xED\xA0\x80", "\xF5\x80\x80\x80", "\x80", "a\xC3"}) {
    CHECK(!packer::IsUtf8(bad));
    for (int page : {1252, packer::kUtf8}) {
      CHECK(!packer::ToCodePage(bad, page, missing));
      CHECK(missing.empty());
    }
  }
  CHECK(packer::ToCodePage("aЖ日🎁", packer::kUtf8, missing) == "aЖ日🎁");
  CHECK(packer::FromCodePage("a\x80\xE9\x81", 1252) == "a€é\uFFFD");
  CHECK(packer::FromCodePage("aЖ🎁\xE6\xC2\x9B\xC2\xA0", packer::kUtf8) == "aЖ🎁\uFFFD\uFFFD\u00A0");
  CHECK(!packer::IsCodePage(437));
}
