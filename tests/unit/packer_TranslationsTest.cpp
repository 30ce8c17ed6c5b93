#include <algorithm>

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
  packer::Findings findings, faults;
  const auto path = folder.Write("m.toml", "[product]\nname='Thing'\ncodepage=" + page +
                                               "\n[options]\nuninstall_desktop=true\n[[file]]\nname='thing.exe'\n"
                                               "contents=''\n" +
                                               texts);
  const packer::Product product = packer::ReadManifest(path, {}, findings).product;
  packer::CheckProduct(product, faults);
  findings.Merge(faults);
  return {product.languages.at(0).texts, findings.Report("m")};
}

/// The key that a button answers to, in small letters where they are ASCII; empty when it has none.
std::string Accelerator(const std::string &text) {
  const size_t at = text.find('&');
  return at == text.npos ? std::string() : packer::LowerCase(text.substr(at + 1, (text[at + 1] & 0x80) != 0 ? 2 : 1));
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

TEST_CASE("the ready texts of a language are whole, fit their places, and say which code page they need") {
  const struct {
    std::string language, page;
  } rows[] = {{"cs", "1250"}, {"de", "1252"},  {"el", "1253"},  {"en", "1252"},      {"es", "1252"}, {"fr", "1252"},
              {"it", "1252"}, {"ja", "65001"}, {"ko", "65001"}, {"nl", "1252"},      {"pl", "1250"}, {"pt", "1252"},
              {"ru", "1251"}, {"tr", "1254"},  {"uk", "1251"},  {"zh-hans", "65001"}};
  const std::vector<TextNumber> dialogs[] = {{kTextLicenseAccept, kTextLicenseRefuse},
                                             {kTextOkButton, kTextCancelButton, kTextBrowseButton}};
  const struct {
    TextNumber number;
    size_t most; // places on a line of its control
  } places[] = {{kTextBrowseButton, 16},  {kTextOkButton, 18},       {kTextCancelButton, 18},
                {kTextInstallLabel, 42},  {kTextUninstallLabel, 42}, {kTextDirectoryPrompt, 100},
                {kTextLicensePrompt, 110}};
  const test::TempFolder folder;
  const auto files = packer::TranslationFiles();
  REQUIRE(files.size() == std::size(rows));
  for (size_t i = 0; i < files.size(); ++i) {
    CAPTURE(rows[i].language);
    REQUIRE(files[i].language == rows[i].language);
    CHECK(files[i].contents.find("Not reviewed by a native speaker.") < 200);
    const std::vector<std::string> &ready = *packer::ReadyTexts(rows[i].language);
    for (const TextRow &row : kTextRows) {
      const std::string &text = ready.at(static_cast<size_t>(row.number)),
                        &english = packer::EnglishTexts()[static_cast<size_t>(row.number)];
      CAPTURE(row.name);
      CAPTURE(text);
      for (const char *kept : {"\n", "&", "<product>", " \n", "\n ", "%"})
        CHECK(Count(text, kept) == Count(english, kept));
      CHECK(text.ends_with(' ') == english.ends_with(' '));
      CHECK(text.ends_with("...") == english.ends_with("..."));
    }
    for (const auto &place : places)
      CHECK(Width(ready[place.number]) <= place.most + Count(ready[place.number], "<product>") * 9);
    for (const auto &dialog : dialogs) {
      std::vector<std::string> keys;
      for (TextNumber number : dialog)
        if (const std::string key = Accelerator(ready[number]); !key.empty())
          keys.push_back(key);
      std::ranges::sort(keys);
      CHECK(std::ranges::adjacent_find(keys) == keys.end());
    }
    const std::string as_ready = "[texts]\nlanguage='" + rows[i].language + "'",
                      as_file = "[[language]]\nname='X'\nfile='own.toml'";
    folder.Write("own.toml", std::string(files[i].contents));
    const Built built = Build(folder, rows[i].page, as_ready), copied = Build(folder, rows[i].page, as_file);
    for (const std::string &report : {built.report, copied.report})
      for (const char *complaint : {"error", "stay English", "is given"})
        CHECK(report.find(complaint) == std::string::npos);
    for (size_t number = 0; number < built.texts.size(); ++number)
      CHECK(packer::WithDosLineEnds(built.texts[number]) == copied.texts.at(number));
    if (rows[i].language != "en") { // which every page holds
      const std::string report = Build(folder, "1255", as_ready).report;
      CHECK(report.ends_with("the texts in '" + rows[i].language +
                             "' need codepage = " + (rows[i].page == "65001" ? "\"utf-8\"" : rows[i].page) + "\n"));
      CHECK(Count(report, "\n") == 1);
    }
  }
}
