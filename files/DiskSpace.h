// Drives and the room on them.
#pragma once

#include <cstdint>

namespace korb {

/// True when the system knows the drive that the first character of `path` names, a disk in it or not.
bool DriveExists(const char *path);
/// True when that drive is a fixed one of this machine: not removable, not on the network, and known to the system,
/// which is asked only where the letter is not that of the call before.
bool OnFixedDrive(const char *path);
/// Bytes on the volume at `root` ("c:\"): free ones, whoever may use them, and all. Either may be null. False when the
/// system can't say.
bool DiskSpace(const char *root, uint64_t *free_bytes, uint64_t *total_bytes);
/// Of the drive that `path` begins with; -1 when there is none or it can't say.
int64_t DriveFreeBytes(const char *path);
/// Bytes of one cluster of that drive; -1 as above.
int32_t ClusterSize(const char *path);

} // namespace korb
