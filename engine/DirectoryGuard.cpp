#include "engine/DirectoryGuard.h"

#include <cstring>

namespace korb {

namespace {

/// Whether a path without a backslash at its end begins with the root of a drive or of a share, and goes on.
bool IsBelowRoot(const char *path) {
  if (path[0] != '\\')
    return path[0] != '\0' && path[1] == ':' && path[2] == '\\';
  if (path[1] != '\\' || path[2] == '?' || path[2] == '.') // a device
    return false;
  // After the server, and after the share.
  const char *const share = strchr(path + 2, '\\');
  return share && strchr(share + 1, '\\');
}

} // namespace

bool Holds(const String &path, const char *place) {
  if (text_compare_no_case(path, place, path.length()) != 0)
    return false;
  const char *const rest = place + path.length();
  // A 64-bit Windows has two folders of all programs, and tells a 32-bit program of "C:\Program Files (x86)".
  return *rest == '\0' || *rest == '\\' || rest[1] == '(';
}

bool MayDeleteWhole(const String &directory, const String &windows, const String &place) {
  String path(directory);
  path.trim_right_set("\\. "); // what the system drops; a root is no full path now
  return IsBelowRoot(path) && text_compare_no_case(path, windows, windows.length()) != 0 && !Holds(path, windows) &&
         !Holds(path, place);
}

} // namespace korb
