// The machine's search path, as the boot drive's autoexec.bat sets it.
#pragma once

#include "core/String.h"

namespace korb {

/// Adds InstallDir to the search path, or takes it out. Empty when the file could be opened and read, whether or not a
/// line had to be changed; else what to tell the user, who has to do it by hand.
String EditAutoexecPath(bool add);

// The rules on the text of that file.

/// "PATH=%PATH%;", the directory, which should be a short path, and a line break.
String SearchPathLine(const char *directory);

/// What has to be written after `text` so that it ends in `line`; empty when the line is there in any case of its
/// letters, break included.
String SearchPathAddition(const String &text, const String &line);

/// Takes every `line` out of `text`, without regard to case. When there is none, it is sought without its break, as it
/// may end the text; what begins a longer line goes then too. False when there was none either way.
bool RemoveSearchPathLine(String &text, const String &line);

} // namespace korb
