// The text of a batch that an archive brings, as it is run.
#pragma once

#include "core/String.h"

namespace korb {

/// `script` behind lines that set an environment variable for each folder that path variables know: the same names,
/// without percent signs. `directory` is what InstallDir and InstallDrive become; both are left out when it is empty.
/// Unless `may_pause`, lines that only pause are left out, for nobody would end the pause. Every line ends in CR LF.
String BatchText(const char *directory, const String &script, bool may_pause);

} // namespace korb
