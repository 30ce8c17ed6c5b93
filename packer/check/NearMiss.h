// What was probably meant by a word that is not known.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace korb::packer {

/// The one of `words` that `word` was probably meant to be, within two or three typing slips; empty for none.
std::string_view NearMiss(std::string_view word, std::span<const std::string_view> words);

/// The same as the end of a message: "; did you mean '...'?", or nothing.
std::string Suggestion(std::string_view word, std::span<const std::string_view> words);

} // namespace korb::packer
