#include "engine/FileVersion.h"

#include "core/Windows.h"
#include "engine/Version.h"

#include <winver.h>

namespace korb {

String ReadFileVersion(const char *path, bool normalise) {
  DWORD handle = 0;
  const DWORD size = GetFileVersionInfoSizeA(path, &handle);
  if (size == 0 || size > 0x7FFFFFFF)
    return String();
  String block;
  block.set_length(static_cast<int32_t>(size));
  if (!GetFileVersionInfoA(path, 0, size, &block.at(0)))
    return String();
  // Old systems write into the name while they look it up.
  char name[] = "\\StringFileInfo\\040904E4\\FileVersion";
  void *value = nullptr;
  UINT length = 0;
  if (!VerQueryValueA(&block.at(0), name, &value, &length))
    return String();
  String version;
  version.assign_limited(static_cast<const char *>(value), static_cast<int32_t>(length));
  if (normalise)
    NormaliseVersion(version);
  return version;
}

} // namespace korb
