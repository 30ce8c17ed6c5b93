// Whether an old file is one that its record means.
#pragma once

#include <cstdint>

#include "archive/InstallConfig.h"
#include "core/Date.h"

namespace korb {

/// False for a condition on dates whose value is no date that the calendar has.
bool IsDeletionReadable(const FileDeletion &record);

/// True when the condition of `record` holds for a file with this last write (local time) and size in bytes. One that
/// is not readable is reported as damage and ends the run (code 65). `current_year` places years of two digits.
bool IsDeletionDue(const FileDeletion &record, const FileDate &modified, uint64_t size, int32_t current_year);

} // namespace korb
