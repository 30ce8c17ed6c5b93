// Deleting keys with all that is below them.

#include "core/Windows.h"
#include "registry/RegistryKey.h"
#include "registry/RegistryPath.h"

namespace korb {

DeleteStatus RegistryKey::DeleteChild(const char *subkey, RegistryOptions options) {
  if (!current_key_ || !subkey || !*subkey)
    return DELETE_NO_KEY;
  if ((options & RK_ONLY_IF_EMPTY) && !IsChildEmpty(subkey))
    return DELETE_NOT_EMPTY;
  // Only some systems delete a key together with its children.
  if (OpenChild(subkey, RK_OPEN_ONLY) == KEY_NOT_OPENED) {
    ReportFailure(options);
  } else {
    Vector<String> children;
    EnumerateSubKeys(children);
    for (int32_t i = 0; i < children.count; ++i)
      DeleteChild(children.at(i), options);
    Close();
  }
  if (RegDeleteKeyA(current_key_, subkey) == ERROR_SUCCESS)
    return DELETE_DONE;
  ReportFailure(options);
  return DELETE_REFUSED;
}

DeleteStatus RegistryKey::DeleteKey(RegistryHandle root, const char *path, RegistryOptions options) {
  String parent, child;
  if (!SplitRegistryPath(path, parent, child))
    return DELETE_NO_KEY;
  return DeleteKeyIn(root, parent, child, options);
}

DeleteStatus RegistryKey::DeleteKeyIn(RegistryHandle root, const char *parent, const char *child,
                                      RegistryOptions options) {
  if (Open(root, parent, RK_OPEN_ONLY) == KEY_NOT_OPENED)
    return DELETE_NO_KEY;
  const DeleteStatus status = DeleteChild(child, options);
  Close();
  return status;
}

DeleteStatus RegistryKey::DeleteSoftwareKey(const char *path, bool current_user, RegistryOptions options) {
  return DeleteKey(SoftwareRoot(current_user), SoftwarePath(path), options);
}

DeleteStatus RegistryKey::DeleteSoftwareChild(const char *parent, const char *child, bool current_user,
                                              RegistryOptions options) {
  return DeleteKeyIn(SoftwareRoot(current_user), SoftwarePath(parent), child, options);
}

} // namespace korb
