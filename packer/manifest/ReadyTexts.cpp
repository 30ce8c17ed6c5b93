#include "packer/manifest/ReadyTexts.h"

#include <algorithm>
#include <map>

#include <toml++/toml.h>

#include "format/Texts.h"

namespace korb::packer {

namespace {

std::vector<std::string> TextsOf(const TranslationFile &file) {
  const toml::table table = toml::parse(file.contents, file.language);
  std::vector<std::string> texts;
  for (const TextRow &row : kTextRows)
    texts.push_back(table[row.name].value_or(std::string()));
  return texts;
}

} // namespace

const std::vector<std::string> *ReadyTexts(std::string_view language) {
  static std::map<std::string_view, std::vector<std::string>> read;
  const auto files = TranslationFiles();
  const auto file = std::ranges::find(files, language, &TranslationFile::language);
  if (file == files.end())
    return nullptr;
  const auto known = read.find(file->language);
  return &(known != read.end() ? known : read.emplace(file->language, TextsOf(*file)).first)->second;
}

const std::vector<std::string> &EnglishTexts() {
  return *ReadyTexts("en");
}

} // namespace korb::packer
