// The numbered texts that every archive brings along, with the wording that an author starts from.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace korb::packer {

struct TextInfo {
  const char *name; ///< key in a manifest
  /// How the program uses it: "" as it stands, "-" as a format without arguments, else as a format with one argument
  /// for each letter: s text, d number, c character.
  const char *form;
  const char *english;
};

/// By number: every text that the program looks up.
extern const std::array<TextInfo, 72> kTexts;

/// The numbers that are saved for the uninstaller. Their lines must not begin with '~', which ends a text there.
extern const std::array<int, 19> kSavedTexts;

/// The built-in English wording, by number.
std::vector<std::string> EnglishTexts();

/// How many arguments `text` shows as a format.
size_t ShownArguments(std::string_view text);

/// What is wrong with `text` as a format for the arguments `form` (see TextInfo): empty when nothing is.
std::string FormatFault(std::string_view text, std::string_view form);

} // namespace korb::packer
