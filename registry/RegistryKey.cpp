#include "registry/RegistryKey.h"

#include "core/Failure.h"
#include "core/MessagePump.h"
#include "core/RunValues.h"
#include "core/Windows.h"
#include "files/LastError.h"
#include "registry/RegistryPath.h"

namespace korb {

namespace {

/// Null for a handle that is no root.
const char *RootName(RegistryHandle root) {
  switch (static_cast<RegistryRoot>(reinterpret_cast<uintptr_t>(root))) {
  case RegistryRoot::ClassesRoot:
    return "HKEY_CLASSES_ROOT\\";
  case RegistryRoot::CurrentUser:
    return "HKEY_CURRENT_USER\\";
  case RegistryRoot::LocalMachine:
    return "HKEY_LOCAL_MACHINE\\";
  case RegistryRoot::Users:
    return "HKEY_USERS\\";
  case RegistryRoot::CurrentConfig:
    return "HKEY_CURRENT_CONFIG\\";
  }
  return nullptr;
}

} // namespace

void RegistryKey::ReportFailure(RegistryOptions options) {
  if (!(options & RK_REPORT))
    return;
  const char *reason = LastErrorText();
  if (!IsBlank(reason)) {
    ShowPendingProgress();
    MessageBoxA(nullptr, reason, "Registry Error", MB_ICONHAND);
  }
}

void RegistryKey::RequiredValueMissing(const char *name) const {
  FatalFormat(
      "The following registry key is required by %s, but is invalid or does not exist:\n\n%s%s\n\nIf you have "
      "tried moving this program to a different computer by copying files, this will not work.  This program must "
      "be reinstalled.",
      ApplicationName, current_path_, name);
}

// Out of line, as every function that looks into the registry would carry them.
RegistryKey::RegistryKey() = default;

RegistryKey::~RegistryKey() {
  CloseAll();
}

KeyOpened RegistryKey::Open(RegistryHandle root, const char *subkey, RegistryOptions options) {
  HKEY key;
  DWORD disposition = REG_OPENED_EXISTING_KEY;
  const LONG result = options & RK_OPEN_ONLY
                          ? RegOpenKeyExA(root, subkey, 0, KEY_ALL_ACCESS, &key)
                          : RegCreateKeyExA(root, subkey, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, &disposition);
  if (result != ERROR_SUCCESS) {
    ReportFailure(options);
    return KEY_NOT_OPENED;
  }
  key_stack_.push(current_key_);
  current_key_ = key;
  path_stack_.push(current_path_);
  if (const char *name = RootName(root))
    current_path_ = name;
  current_path_ += subkey;
  if (disposition == REG_OPENED_EXISTING_KEY)
    return KEY_OPENED;
  return disposition == REG_CREATED_NEW_KEY ? KEY_CREATED : KEY_NOT_OPENED;
}

KeyOpened RegistryKey::OpenSoftware(const char *path, bool current_user, RegistryOptions options) {
  return Open(SoftwareRoot(current_user), SoftwarePath(path), options);
}

KeyOpened RegistryKey::OpenChild(const char *subkey, RegistryOptions options) {
  return current_key_ ? Open(current_key_, subkey, options) : KEY_NOT_OPENED;
}

void RegistryKey::Close() {
  if (current_key_)
    RegCloseKey(current_key_);
  current_key_ = nullptr;
  if (key_stack_.count > 0)
    current_key_ = key_stack_.pop();
  if (path_stack_.count > 0)
    current_path_ = path_stack_.pop();
}

void RegistryKey::CloseAll() {
  while (key_stack_.count > 0)
    Close();
}

bool RegistryKey::KeyExists(RegistryHandle root, const char *subkey) {
  HKEY key;
  if (!subkey || !*subkey || RegOpenKeyExA(root, subkey, 0, KEY_ALL_ACCESS, &key) != ERROR_SUCCESS)
    return false;
  RegCloseKey(key);
  return true;
}

bool RegistryKey::SoftwareKeyExists(const char *path, bool current_user) {
  return KeyExists(SoftwareRoot(current_user), SoftwarePath(path));
}

bool RegistryKey::Counts(uint32_t &subkeys, uint32_t &values) const {
  DWORD keys, entries;
  if (!current_key_ || RegQueryInfoKeyA(current_key_, nullptr, nullptr, nullptr, &keys, nullptr, nullptr, &entries,
                                        nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS)
    return false;
  subkeys = keys;
  values = entries;
  return true;
}

int32_t RegistryKey::SubKeyCount() const {
  uint32_t subkeys, values;
  return Counts(subkeys, values) ? static_cast<int32_t>(subkeys) : -1;
}

bool RegistryKey::IsEmpty() const {
  uint32_t subkeys, values;
  return Counts(subkeys, values) && subkeys == 0 && values == 0;
}

bool RegistryKey::IsChildEmpty(const char *subkey) {
  if (OpenChild(subkey, RK_OPEN_ONLY) == KEY_NOT_OPENED)
    return false;
  const bool empty = IsEmpty();
  Close();
  return empty;
}

int32_t RegistryKey::EnumerateSubKeys(Vector<String> &names) const {
  char name[199];
  int32_t found = 0;
  for (;; ++found) {
    const LONG error = RegEnumKeyA(current_key_, static_cast<DWORD>(found), name, sizeof name);
    if (error != ERROR_SUCCESS) {
      SetLastError(error == ERROR_NO_MORE_ITEMS ? 0 : static_cast<DWORD>(error));
      return found;
    }
    names.append(name);
  }
}

} // namespace korb
