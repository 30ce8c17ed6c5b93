// The texts that the packer brings along, so that an author need not write them: the files of translations/.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace korb::packer {

/// A file of translations/, as the build has put it in.
struct TranslationFile {
  std::string_view language; ///< its name without the extension
  std::string_view contents; ///< texts by their names, as a file of texts has them
};

/// All of them, by name.
std::span<const TranslationFile> TranslationFiles();

/// The texts that are ready in `language`, which is the name of a file, in UTF-8 and by number; those that an author
/// alone can say are empty. Null when there is no such file.
const std::vector<std::string> *ReadyTexts(std::string_view language);

/// Those in English, which are there in any case.
const std::vector<std::string> &EnglishTexts();

} // namespace korb::packer
