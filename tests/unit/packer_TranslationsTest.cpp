#include "format/Texts.h"
#include "packer/check/ProductCheck.h"
#include "packer/check/TextRules.h"
#include "packer/manifest/ManifestContext.h"
#include "packer/manifest/ReadyTexts.h"
#include "tests/support/Doctest.h"
#include "tests/support/TempFolder.h"

using namespace korb;

namespace {

struct Built {
  std::vector<std::string> texts;
  std::string report;
};

/// The texts of a product's language, and what building has to say.
Built Build(const test::TempFolder &folder, const std::string &page, const std::string &texts) {
  packer::Findings findings;
  const auto path = folder.Write("m.toml", "[product]\nname='Thing'\ncodepage=" + page +
                                               "\n[options]\nuninstall_desktop=true\n[[file]]\nname='thing.exe'\n"
                                               "contents=''\n" +
                                               texts);
  const packer::Product product = packer::ReadManifest(path, {}, findings).product;
  packer::CheckProduct(product, findings);
  return {product.languages.at(0).texts, findings.Report("m")};
}

/// The key that a button answers to, in small letters where they are ASCII.
std::string AccessKey(const std::string &text) {
  const size_t at = text.find('&') + 1;
  return packer::LowerCase(text.substr(at, (text.at(at) & 0x80) != 0 ? 2 : 1));
}

size_t Count(const std::string &text, const std::string &part) {
  size_t count = 0;
  for (size_t at = text.find(part); at != text.npos; at = text.find(part, at + 1))
    ++count;
  return count;
}

/// Places that a text takes on the screen; characters of the far east take two.
size_t Width(const std::string &text) {
  size_t width = 0;
  for (char c : text)
    width += (c & 0xC0) == 0x80 || c == '&' ? 0 : static_cast<uint8_t>(c) >= 0xE0 ? 2 : 1;
  return width;
}

} // namespace

TEST_CASE("a translation has the lines, names and access keys of the English texts, and fits their places") {
  const struct {
    TextNumber number;
    size_t most; // places on the lines of its control
  } places[] = {{kTextBrowseButton, 16},  {kTextOkButton, 18},       {kTextCancelButton, 18},
                {kTextInstallLabel, 42},  {kTextUninstallLabel, 42}, {kTextDirectoryPrompt, 100},
                {kTextLicensePrompt, 110}};
  for (const packer::TranslationFile &file : packer::TranslationFiles()) {
    CAPTURE(file.language);
    CHECK(file.contents.find("eviewed by") < 200);
    const std::vector<std::string> &texts = *packer::ReadyTexts(file.language), &english = packer::EnglishTexts();
    for (size_t number = 0; number < std::size(kTextRows); ++number) {
      CAPTURE(texts[number]);
      for (const char *kept : {"\n", "&", "<product>", "%"})
        CHECK(Count(texts[number], kept) == Count(english[number], kept));
      for (const char *end : {" ", "..."})
        CHECK(texts[number].ends_with(end) == english[number].ends_with(end));
    }
    CHECK(AccessKey(texts[kTextLicenseAccept]) != AccessKey(texts[kTextLicenseRefuse]));
    for (const auto &place : places)
      CHECK(Width(texts[place.number]) <= place.most + Count(texts[place.number], "<product>") * 9);
  }
}

TEST_CASE("a translation is whole, in the manifest or as a file of its own, and says which code page it needs") {
  const struct {
    std::string language, page;
  } rows[] = {{"cs", "1250"}, {"de", "1252"},  {"el", "1253"},  {"en", "1252"},      {"es", "1252"}, {"fr", "1252"},
              {"it", "1252"}, {"ja", "65001"}, {"ko", "65001"}, {"nl", "1252"},      {"pl", "1250"}, {"pt", "1252"},
              {"ru", "1251"}, {"tr", "1254"},  {"uk", "1251"},  {"zh-hans", "65001"}};
  const test::TempFolder folder;
  const auto files = packer::TranslationFiles();
  REQUIRE(files.size() == std::size(rows));
  for (size_t i = 0; i < files.size(); ++i) {
    CAPTURE(rows[i].language);
    REQUIRE(files[i].language == rows[i].language);
    folder.Write("own.toml", std::string(files[i].contents));
    const std::string as_ready = "[texts]\nlanguage='" + rows[i].language + "'";
    const Built ready = Build(folder, rows[i].page, as_ready),
                copied = Build(folder, rows[i].page, "[[language]]\nname='X'\nfile='own.toml'");
    for (const std::string &report : {ready.report, copied.report})
      for (const char *complaint : {"error", "stay English", "is given"})
        CHECK(report.find(complaint) == std::string::npos);
    for (size_t number = 0; number < ready.texts.size(); ++number)
      CHECK(packer::WithDosLineEnds(ready.texts[number]) == copied.texts.at(number));
    if (rows[i].language == "en") // any page will do
      continue;
    const std::string report = Build(folder, "1255", as_ready).report;
    CHECK(report.ends_with("the texts in '" + rows[i].language +
                           "' need codepage = " + (rows[i].page == "65001" ? "\"utf-8\"" : rows[i].page) + "\n"));
    CHECK(Count(report, "\n") == 1);
  }
}
