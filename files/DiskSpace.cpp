#include "files/DiskSpace.h"

#include "core/Windows.h"
#include "files/PathText.h"
#include "files/SystemFunction.h"

namespace korb {

namespace {

String RootOf(const char *path) {
  return str_format("%c:\\", path ? *path : '\0');
}

struct Clusters {
  DWORD sectors; ///< in one
  DWORD bytes;   ///< in one sector
  DWORD free;
  DWORD all;

  bool Ask(const char *root) { return GetDiskFreeSpaceA(root, &sectors, &bytes, &free, &all) != 0; }
};

} // namespace

bool DriveExists(const char *path) {
  return GetDriveTypeA(RootOf(path)) != DRIVE_NO_ROOT_DIR;
}

bool OnFixedDrive(const char *path) {
  static char asked;
  static bool fixed;
  if (*path != asked) {
    asked = *path;
    fixed = GetDriveTypeA(RootOf(path)) == DRIVE_FIXED;
  }
  return fixed;
}

bool DiskSpace(const char *root, uint64_t *free_bytes, uint64_t *total_bytes) {
  if (!root)
    return false;
  // The first Windows 95 does without.
  static auto function = KORB_SYSTEM_FUNCTION("kernel32.dll", GetDiskFreeSpaceExA);
  if (function) {
    ULARGE_INTEGER available, total, free;
    if (function(root, &available, &total, &free)) {
      if (free_bytes)
        *free_bytes = free.QuadPart;
      if (total_bytes)
        *total_bytes = total.QuadPart;
      return true;
    }
    if (GetLastError() != ERROR_CALL_NOT_IMPLEMENTED)
      return false;
    function = nullptr; // there, but not working: never again
  }
  Clusters clusters;
  if (!clusters.Ask(root))
    return false;
  const uint64_t size = uint64_t{clusters.sectors} * clusters.bytes;
  if (free_bytes)
    *free_bytes = size * clusters.free;
  if (total_bytes)
    *total_bytes = size * clusters.all;
  return true;
}

int64_t DriveFreeBytes(const char *path) {
  uint64_t bytes;
  if (!path || !IsDriveLetter(*path) || !DiskSpace(RootOf(path), &bytes, nullptr))
    return -1;
  return static_cast<int64_t>(bytes);
}

int32_t ClusterSize(const char *path) {
  Clusters clusters;
  if (!path || !IsDriveLetter(*path) || !clusters.Ask(RootOf(path)))
    return -1;
  return static_cast<int32_t>(clusters.sectors * clusters.bytes);
}

} // namespace korb
