// What each key of a manifest may hold, as its readers ask for it: the facts that messages and the schema tell.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace korb::packer {

struct KeyForm {
  enum Kind {
    kText,
    kTextOrFile, ///< a text, or { file = "name" }
    kTexts,      ///< texts in an array; one alone counts as an array of one
    kPages,      ///< kTextOrFile in an array, or one alone
    kInteger,
    kBoolean,
    kWord,        ///< one of `words`, or its number
    kWords,       ///< some of `words` in an array, or the number of all of them
    kNames,       ///< some of `words` in an array; one alone counts as an array of one
    kDate,        ///< or "none"
    kFileDate,    ///< or "none", or "mtime"
    kColor,       ///< "#RRGGBB", or a number
    kValue,       ///< a text, a number or a date
    kDefinitions, ///< a table of names of the author's own, each with a text or { env = "NAME", default = "text" }
    kTable,
    kTables, ///< an array of tables
  };
  Kind kind;
  std::vector<std::string_view> words = {};
  int64_t least = INT64_MIN, most = INT64_MAX; ///< of a number
};

/// By full names, with the table in front: "product.name", "file.source".
struct KeyForms : std::map<std::string, KeyForm, std::less<>> {};

} // namespace korb::packer
