// How findings are told: to people, to editors and to other programs. All of it is UTF-8.
#pragma once

#include <string>
#include <string_view>

namespace korb::packer {

enum class ReportForm {
  kText,  ///< as kShort, with the line of the file below each place, and a count at the end
  kShort, ///< one line each: "file:line:column: error: message", a warning's name behind it in brackets
  kJson,  ///< one array of objects, empty when there is nothing to tell
};

/// `text` with what would move a cursor, or is no UTF-8, written as TOML writes it: "\\t", "\\u001B", "\\xE9".
std::string EscapeControls(std::string_view text);

} // namespace korb::packer
