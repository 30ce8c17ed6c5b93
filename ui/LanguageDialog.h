// The choice of the language in which the rest of the run speaks.
#pragma once

#include <cstdint>

namespace korb {

/// Lets the user choose among the archive's languages, beginning with that of the system. `use` is told of every entry
/// that is looked at, so that what is on screen changes with it, and of the chosen one last: a language by its number.
/// A silent run, and an archive of one language, are not asked. Ends the run when the user declines.
void ChooseLanguage(void (*use)(int32_t language));

} // namespace korb
