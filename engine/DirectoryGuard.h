// Which directories and keys may be deleted with everything in them.
#pragma once

#include "core/String.h"

namespace korb {

/// Whether `path` is `place` or above it, as texts, without regard to case; also where `place` is "C:\Dir (x86)" and
/// `path` is "C:\Dir". Neither ends in a backslash. True of keys as it is of directories.
bool Holds(const String &path, const char *place);

/// False for what is no full path, for white space before one, for the root of a drive or of a share, for what holds
/// `place` (of the folder of all programs: for either, where 32-bit programs have their own), for all that begins as
/// the Windows directory does, or holds it, and for the name of a device ("\\?\c:\dir"), which tells no folder.
/// Compares texts without regard to case, and to backslashes, dots and blanks at the end: whoever asks about a
/// directory asks once more by the names that the system has (SystemName).
bool MayDeleteWhole(const String &directory, const String &windows, const String &place);

} // namespace korb
