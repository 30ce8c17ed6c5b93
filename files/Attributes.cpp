#include "files/Attributes.h"

#include "core/Windows.h"

namespace korb {

uint32_t GetAttributes(const char *path) {
  return path ? GetFileAttributesA(path) : kNoAttributes;
}

bool SetAttributes(const char *path, uint32_t attributes) {
  return path && SetFileAttributesA(path, attributes);
}

bool ClearAttributes(const char *path, uint32_t mask) {
  return ChangeAttributes(path, 0, mask);
}

bool ChangeAttributes(const char *path, uint32_t value, uint32_t mask) {
  const uint32_t present = GetAttributes(path);
  if (present == kNoAttributes)
    return false;
  const uint32_t wanted = (present & ~mask) | (value & mask);
  return wanted == present || SetAttributes(path, wanted);
}

bool SetReadOnly(const char *path, bool read_only) {
  return ChangeAttributes(path, read_only ? FILE_ATTRIBUTE_READONLY : 0, FILE_ATTRIBUTE_READONLY);
}

} // namespace korb
