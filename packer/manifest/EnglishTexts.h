// The wording of the numbered texts that an author starts from.
#pragma once

#include <string>
#include <vector>

namespace korb::packer {

/// The built-in English wording, by number.
std::vector<std::string> EnglishTexts();

} // namespace korb::packer
