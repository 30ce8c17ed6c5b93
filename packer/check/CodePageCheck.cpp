#include "packer/check/CodePageCheck.h"

#include <algorithm>
#include <iterator>

#include "format/Texts.h"

namespace korb::packer {

namespace {

constexpr size_t kNamedInWarning = 5;

bool HoldsMoreThanAscii(const std::string &text) {
  return std::any_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) >= 0x80; });
}

// What isn't the same in every code page, by the names of the manifest; of many, the first and a count.
class Affected {
public:
  void Add(const std::string &name, std::initializer_list<const std::string *> texts) {
    if (std::none_of(texts.begin(), texts.end(), [](const std::string *text) { return HoldsMoreThanAscii(*text); }))
      return;
    if (++count_ <= kNamedInWarning)
      named_ += (count_ == 1 ? "" : ", ") + name;
  }
  bool IsEmpty() const { return count_ == 0; }
  std::string Tell() const {
    return named_ + (count_ > kNamedInWarning ? " and " + std::to_string(count_ - kNamedInWarning) + " more" : "");
  }

private:
  std::string named_;
  size_t count_ = 0;
};

Affected TextsOf(const Product &product) {
  Affected texts;
  const std::pair<const char *, const std::string &> values[] = {{"product.name", product.name},
                                                                 {"product.version", product.version},
                                                                 {"product.publisher", product.publisher},
                                                                 {"product.registry_key", product.registry_key},
                                                                 {"product.master_product", product.master_product},
                                                                 {"install.directory", product.install_dir},
                                                                 {"install.common_directory", product.common_dir},
                                                                 {"install.start_menu", product.start_menu},
                                                                 {"install.desktop_group", product.desktop_group},
                                                                 {"uninstall.directory", product.uninstall_subdir},
                                                                 {"uninstall.program", product.uninstaller_name},
                                                                 {"uninstall.name", product.uninstall_name},
                                                                 {"payload.volume_name", product.volume_base_name},
                                                                 {"batch.pre_install", product.pre_install_batch},
                                                                 {"batch.post_install", product.post_install_batch},
                                                                 {"batch.final", product.final_batch},
                                                                 {"batch.uninstall_first", product.uninstall_batch1},
                                                                 {"batch.uninstall_last", product.uninstall_batch2}};
  for (const auto &[key, text] : values)
    texts.Add(key, {&text});
  for (const std::string &page : product.license_pages)
    texts.Add("pages.license", {&page});
  for (const std::string &page : product.readme_pages)
    texts.Add("pages.readme", {&page});
  for (const Deletion &deletion : product.deletions)
    texts.Add("old file '" + deletion.name + "'", {&deletion.name});
  for (const Association &one : product.associations)
    texts.Add("association of '" + one.extension + "'", {&one.extension, &one.file_class, &one.description, &one.verb,
                                                         &one.verb_label, &one.command, &one.language, &one.icon});
  for (const UninstallValue &value : product.uninstall_values)
    texts.Add("uninstall value '" + value.name + "'", {&value.name, &value.value});
  for (const Language &language : product.languages) {
    texts.Add("language '" + language.name + "'", {&language.name});
    for (size_t number = 0; number < language.texts.size(); ++number)
      texts.Add("text " + (number < std::size(kTextRows) ? kTextRows[number].name : std::to_string(number)) + " of '" +
                    language.name + "'",
                {&language.texts[number]});
  }
  return texts;
}

Affected FilesOf(const Product &product) {
  Affected files;
  for (const FileEntry &file : product.files)
    files.Add("'" + file.name + "'", {&file.name, &file.label, &file.icon, &file.arguments, &file.target});
  return files;
}

} // namespace

void CheckCodePage(const Product &product, Findings &findings) {
  if (product.code_page != kUtf8)
    return;
  const Affected files = FilesOf(product), texts = TextsOf(product);
  if (files.IsEmpty() && texts.IsEmpty())
    return;
  findings.Warn(product.PlaceOf("product.codepage"), Warning::kUtf8OnOldSystems,
                "systems before Windows 10 1903 don't know UTF-8 and will have these wrongly: " + texts.Tell() +
                    (files.IsEmpty() || texts.IsEmpty() ? "" : "; ") + (files.IsEmpty() ? "" : "files ") +
                    files.Tell());
}

} // namespace korb::packer
