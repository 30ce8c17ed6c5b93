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

/// The built-in English wording, by number.
const std::vector<std::string> &EnglishTexts();

} // namespace korb::packer
