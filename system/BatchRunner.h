// The batches that an archive brings: their text, and running them.
#pragma once

#include "core/String.h"

namespace korb {

/// The text of a batch as it is run: `script` after lines that set an environment variable for each folder that path
/// variables know: the same names, without percent signs. `directory` is what InstallDir and InstallDrive become; both
/// are left out when it is empty. Unless `may_pause`, lines that only pause are left out, for nobody would end the
/// pause. Every line ends in CR LF.
String BatchText(const char *directory, const String &script, bool may_pause);

/// Writes `script` with the variables of BatchText into a file in `directory`, runs it there under the command
/// interpreter, hidden or not, waits for its end while the windows stay alive, and deletes the file. A silent run drops
/// pauses, and so does a hidden one. True when the interpreter ended with 0, which tells little of the script, and for
/// a blank script. Where the file could not be written or the interpreter not be started it is false, and `log` gets a
/// line that says so.
bool RunBatch(const String &directory, const String &script, bool hidden, String &log);

} // namespace korb
