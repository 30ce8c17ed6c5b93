#include "registry/TreeWalker.h"

namespace korb {

bool TreeWalker::Descend(const char *) {
  return false;
}

bool TreeWalker::GoToRoot() {
  return false;
}

bool TreeWalker::ChangePath(const char *path) {
  if (!path)
    return false;
  if (*path == '\0')
    return GoToRoot();
  if (*path == separator) {
    if (!GoToRoot())
      return false;
    ++path;
  }
  const String rest(path);
  int32_t start = 0;
  for (int32_t end; (end = rest.find_char(separator, start)) >= 0; start = end + 1)
    if (!Descend(rest.mid(start, end - start).c_str()))
      return false;
  return true;
}

} // namespace korb
