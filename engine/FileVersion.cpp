#include "engine/FileVersion.h"

#include "core/Windows.h"
#include "engine/Version.h"
#include "files/SystemFunction.h"

#include <winver.h>

namespace korb {

namespace {

constexpr const char *kLibrary = "version.dll";

} // namespace

String ReadFileVersion(const char *path, bool normalise) {
  static const auto size_of = KORB_SYSTEM_FUNCTION(kLibrary, GetFileVersionInfoSizeA);
  static const auto read = KORB_SYSTEM_FUNCTION(kLibrary, GetFileVersionInfoA);
  static const auto query = KORB_SYSTEM_FUNCTION(kLibrary, VerQueryValueA);
  if (!size_of || !read || !query)
    return String();
  DWORD handle = 0;
  const DWORD size = size_of(path, &handle);
  if (size == 0 || size > 0x7FFFFFFF)
    return String();
  String block;
  block.set_length(static_cast<int32_t>(size));
  if (!read(path, 0, size, &block.at(0)))
    return String();
  // Old systems write into the name while they look it up.
  char name[] = "\\StringFileInfo\\040904E4\\FileVersion";
  void *value = nullptr;
  UINT length = 0;
  if (!query(&block.at(0), name, &value, &length))
    return String();
  String version;
  version.assign_limited(static_cast<const char *>(value), static_cast<int32_t>(length));
  if (normalise)
    NormaliseVersion(version);
  return version;
}

} // namespace korb
