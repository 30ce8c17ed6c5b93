#include "packer/manifest/ReadyTexts.h"

#include <algorithm>

#include <toml++/toml.h>

#include "format/Texts.h"

namespace korb::packer {

namespace {

std::vector<std::string> TextsOf(std::string_view language) {
  const auto files = TranslationFiles();
  const auto file = std::ranges::find(files, language, &TranslationFile::language);
  const toml::table table = toml::parse(file->contents, file->language);
  std::vector<std::string> texts;
  for (const TextRow &row : kTextRows)
    texts.push_back(table[row.name].value_or(std::string()));
  return texts;
}

} // namespace

const std::vector<std::string> &EnglishTexts() {
  static const std::vector<std::string> texts = TextsOf("en");
  return texts;
}

} // namespace korb::packer
