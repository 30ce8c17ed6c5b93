// Manifests are UTF-8; an installer's texts are in a single-byte code page of the systems that it runs on, or in UTF-8
// where they take that for one.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace korb::packer {

inline constexpr int kDefaultCodePage = 1252;
inline constexpr int kUtf8 = 65001; ///< as Windows numbers it

/// Whether `page` is one of the pages known here: 1250 to 1258, and kUtf8.
bool IsCodePage(int page);

/// Whether `text` is well-formed UTF-8.
bool IsUtf8(std::string_view text);

/// `utf8` in code page `page`, which must be known. Nothing when a character doesn't exist there: `missing` is then
/// that character in UTF-8, or empty when the text is no UTF-8.
std::optional<std::string> ToCodePage(std::string_view utf8, int page, std::string &missing);

/// `text` of code page `page`, which must be known, in UTF-8. A byte that the page doesn't use, or that begins no
/// well-formed character, becomes U+FFFD, and so do the control characters above 0x7F: nothing but what is below 0x20,
/// and 0x7F, controls a terminal.
std::string FromCodePage(std::string_view text, int page);

/// `utf8` with capital letters in place of the small ones of the Latin, Greek, Cyrillic and Armenian scripts: where two
/// names of files give the same, they are one file to Windows.
std::string CapitalLetters(std::string_view utf8);

/// `utf8` in UTF-16, and the other way round. What is not well-formed becomes U+FFFD.
std::u16string ToUtf16(std::string_view utf8);
std::string FromUtf16(std::u16string_view text);

} // namespace korb::packer
