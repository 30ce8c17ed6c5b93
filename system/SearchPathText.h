// The line of autoexec.bat that puts a directory on the search path.
#pragma once

#include "core/String.h"

namespace korb {

/// "PATH=%PATH%;", the directory, which should be a short path, and a line break.
String SearchPathLine(const char *directory);

/// What has to be written behind `text` so that it ends in `line`; empty when the line is there in any case of its
/// letters, break included.
String SearchPathAddition(const String &text, const String &line);

/// Takes every `line` out of `text`, without regard to case. When there is none, it is sought without its break, as it
/// may end the text; what begins a longer line goes then too. False when there was none either way.
bool RemoveSearchPathLine(String &text, const String &line);

} // namespace korb
