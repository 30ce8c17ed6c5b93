// Files read, written and compared as a whole.
#pragma once

#include <cstdint>

#include "core/Options.h"
#include "core/String.h"
#include "files/DiskFile.h"

namespace korb {

/// Replaces `text` by the file's bytes. OPEN_NOT_LOADED, and an empty text, when the file can't be read
/// through; with any other refusal the text stays. A file too large for a DiskFile reads as an empty one.
OpenCode ReadWholeFile(const char *path, String &text);
/// Creates or overwrites the file; STRING_ALL measures a text. Null data or a count below 1 leaves it empty.
/// False when it can't be opened or written.
bool WriteWholeFile(const char *path, const void *data, int32_t count);
bool WriteWholeFile(const char *path, const String &text);

// How AppendToFile goes about it.
enum AppendOptions : uint32_t {
  AF_NONE = 0,
  AF_NEW_LINE = 0x1,    ///< end the file's last line first
  AF_ONE_ATTEMPT = 0x2, ///< else a failed write is tried ten times, 100 ms apart
  AF_EXISTING_ONLY = 0x4,
};
template <>
inline constexpr bool IsOptionWord<AppendOptions> = true;

/// Adds `text` to the end of the file, which is made when it is missing; null adds nothing. False when the file can't
/// be opened, which is not tried again, or written.
bool AppendToFile(const char *path, const char *text, AppendOptions flags = AF_NONE);
/// True when the file holds exactly these bytes.
bool FileMatches(const void *data, int32_t count, const char *path);

} // namespace korb
