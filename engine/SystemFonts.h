// The fonts that the system has for every program.
#pragma once

namespace korb {

/// Adds the font of this file, which is in the folder of fonts, until the next start. False when the system refuses.
bool AddSystemFont(const char *name);

/// Tells all windows that fonts have come or gone.
void TellOfFonts();

} // namespace korb
