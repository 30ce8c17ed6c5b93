// The wording of the numbered texts that an author starts from, and tests of an author's own.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace korb::packer {

/// The built-in English wording, by number.
std::vector<std::string> EnglishTexts();

/// How many arguments `text` shows as a format.
size_t ShownArguments(std::string_view text);

/// What is wrong with `text` as a format for the arguments `form` (see TextRow): empty when nothing is.
std::string FormatFault(std::string_view text, std::string_view form);

} // namespace korb::packer
