// The choice of the language in which the rest of the run speaks.
#pragma once

namespace korb {

/// Lets the user choose LanguageIndex among the archive's languages, beginning with that of the system; what is on
/// screen changes with every entry that is looked at. A silent run, and an archive of one language, are not asked. Ends
/// the run when the user declines.
void ChooseLanguage();

} // namespace korb
