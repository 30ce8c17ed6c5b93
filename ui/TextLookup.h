// The texts that a user sees: all come with the archive, by number and language.
#pragma once

#include <cstdint>

#include "core/String.h"

namespace korb {

/// What "<os>" stands for in texts and pages: the system's display name. Filled by the entry point before the first
/// lookup.
extern String OsNameInTexts;

/// Puts ProductName in for every "<product>" of `text`, unless it holds one itself, then the system's name for every
/// "<os>", an "<os>" inside the product's name included. Case is ignored.
void SubstituteNames(String &text);

/// Text `number` in the language in force. Never null: an unknown number, or one that lacks the language, gives the
/// empty text. The stored text is substituted in place at its first lookup, so a later change of ProductName does not
/// show. Valid as long as TextTable is.
const char *TextLookup(int32_t number);

} // namespace korb
