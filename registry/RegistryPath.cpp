#include "registry/RegistryPath.h"

namespace korb {

String SoftwarePath(const char *path) {
  return str_format("Software\\%s", path);
}

bool SplitRegistryPath(const char *path, String &key, String &name) {
  const String whole(path);
  const int32_t backslash = whole.rfind_char('\\');
  if (backslash < 0 && whole.char_at(1) != ':')
    return false;
  key = whole.mid(0, backslash < 0 ? 2 : backslash);
  name = whole.mid(backslash < 0 ? 2 : backslash + 1);
  return true;
}

} // namespace korb
