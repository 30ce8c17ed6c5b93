// Which directory may be deleted with everything in it.
#pragma once

#include "core/String.h"

namespace korb {

/// False for what is no full path, for white space before one, for the root of a drive or of a share, for the folder of
/// all programs (for either, where 32-bit programs have their own), for all that begins as the Windows directory does,
/// and for the name of a device ("\\?\c:\dir"), which tells no folder. Compares texts without regard to case, and to
/// backslashes, dots and blanks at the end: whoever asks about a directory asks once more by the names that the system
/// has (SystemName).
bool MayDeleteWhole(const String &directory, const String &windows, const String &program_files);

} // namespace korb
