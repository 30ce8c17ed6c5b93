// Turns bytes in memory into a finished file.
#pragma once

#include <cstdint>

#include "core/FileDate.h"
#include "core/String.h"
#include "engine/Journal.h"

namespace korb {

/// Writes `size` bytes of `data` to `path`, over whatever is there, verifies them with IF_VERIFY_WRITES, and gives the
/// file its last-write `date` (month 0: the present time stays) and its `attributes`, of which read-only, hidden,
/// system, archive, temporary and offline are taken. The caller's block is not copied.
///
/// A target that can't be written is tried three times. With `may_replace_later` or IF_REPLACE_IN_USE, the bytes then
/// go to a temporary file that replaces the target at the next start: IF_REBOOT_NEEDED is set, the log tells of it, and
/// the result is false, as the file is not there yet. Every other failure is an error of `journal`; the target may
/// be left cut off, or with wrong bytes and the time of its write. A date or attributes that can't be set are no
/// failure. A negative `size` is damage (code 5).
bool PlaceFile(const char *path, const void *data, int32_t size, const FileDate &date, Journal &journal,
               uint32_t attributes, bool may_replace_later);

} // namespace korb
