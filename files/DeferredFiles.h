// Deleting and moving files, now or at the next start of the machine when somebody uses them.
#pragma once

#include <cstdint>

#include "core/Options.h"
#include "core/String.h"

namespace korb {

enum DeleteOptions : uint32_t {
  DEL_NONE = 0,
  DEL_KEEP_READONLY = 0x1, ///< do not clear the read-only attribute first
  DEL_AT_RESTART = 0x2,
};
template <>
inline constexpr bool IsOptionWord<DeleteOptions> = true;

enum MoveOptions : uint32_t {
  MV_NONE = 0,
  MV_TARGET_MUST_EXIST = 0x1, ///< and is deleted first
  MV_NO_OVERWRITE = 0x2,      ///< refuse when the target exists
  MV_CREATE_DIRECTORY = 0x4,  ///< make the target's directories
  MV_AT_RESTART = 0x8,
};
template <>
inline constexpr bool IsOptionWord<MoveOptions> = true;

/// True when the file is gone, or with DEL_AT_RESTART when its end is registered. False for a file that is missing or
/// held, with the system's error standing; at the restart neither needs to be a refusal.
bool DeleteOrSchedule(const char *path, DeleteOptions flags = DEL_NONE);
/// Moves a file, over an existing target unless told otherwise. With MV_AT_RESTART the target goes at once if it can,
/// and true means that the move is registered. False for equal names and a missing source too.
bool MoveOrSchedule(const char *source, const char *target, MoveOptions flags = MV_NONE);
/// Registers a move in wininit.ini; a left side of NUL deletes. False when the file can't be read or
/// written, and, with no error standing, when a side is blank.
bool AddWininitRename(const char *left, const char *right);
/// The rule on that file's text, by which Windows 9x moves and deletes files at its next start: adds "left=right" as
/// the first entry of the section [rename], which is made at the end when there is none. The system moves `right` to
/// `left`.
void AddRename(String &text, const char *left, const char *right);

} // namespace korb
