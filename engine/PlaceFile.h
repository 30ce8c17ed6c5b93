// Turns bytes in memory into a finished file: the write itself. Whether and where a file of the payload is written is
// decided in Placement.h; PlaceFiles.h goes through all of them.
#pragma once

#include <cstdint>

#include "core/Date.h"
#include "core/String.h"
#include "engine/Journal.h"

namespace korb {

/// A file as it is to be. Nothing is copied.
struct NewFile {
  const char *path;
  const void *data;
  int32_t size;         ///< bytes; a negative one is damage
  const FileDate &date; ///< its last write; month 0: the present time stays
  uint32_t attributes;  ///< of which read-only, hidden, system, archive, temporary and offline are taken
  bool may_wait;        ///< a target in use may be replaced at the next start
};

/// Writes `wanted` over whatever is there, verifies it with IF_VERIFY_WRITES, and gives it its date and attributes.
///
/// A target that can't be written is tried three times. With `may_wait` or IF_REPLACE_IN_USE, the bytes then go to a
/// temporary file that replaces the target at the next start: IF_REBOOT_NEEDED is set, the log tells of it, and the
/// result is false, as the file is not there yet. Every other failure is an error of `journal`; the target may be left
/// cut off, or with wrong bytes and the time of its write. A date or attributes that can't be set are no failure. A
/// negative size ends the run (code 5).
bool PlaceFile(const NewFile &wanted, Journal &journal);

} // namespace korb
