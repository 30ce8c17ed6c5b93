#include "registry/RegistryKey.h"

#include <cstring>

#include "core/Failure.h"
#include "core/MessagePump.h"
#include "core/RunValues.h"
#include "core/Windows.h"
#include "files/LastError.h"
#include "registry/RegistryPath.h"

namespace korb {

namespace {

/// The system counts a name in 16 bits: with 64 KB of characters it is empty, and means the key above it.
constexpr int32_t kLongestName = 32767;

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
  if (text_length(subkey) > kLongestName)
    return KEY_NOT_OPENED;
  HKEY key;
  DWORD disposition = REG_OPENED_EXISTING_KEY;
  const LONG result = options & RK_OPEN_ONLY
                          ? RegOpenKeyExA(root, subkey, 0, KEY_ALL_ACCESS, &key)
                          : RegCreateKeyExA(root, subkey, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, &disposition);
  if (result != ERROR_SUCCESS) {
    ReportFailure(options);
    return KEY_NOT_OPENED;
  }
  key_stack_.append(current_key_);
  current_key_ = key;
  path_stack_.append(current_path_);
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
  // Without an earlier key there is none, and no path.
  current_key_ = key_stack_.take_at(key_stack_.count - 1);
  current_path_ = path_stack_.take_at(path_stack_.count - 1);
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

// ---- Values -------------------------------------------------------------------------------------------------------

bool RegistryKey::ValueExists(const char *name) const {
  return current_key_ && RegQueryValueExA(current_key_, name, nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
}

bool RegistryKey::ReadValue(const char *name, Value &value, RegistryOptions options) const {
  if (!current_key_)
    return false;
  char small[32];
  DWORD type;
  DWORD size = sizeof small;
  const LONG error = RegQueryValueExA(current_key_, name, nullptr, &type, reinterpret_cast<BYTE *>(small), &size);
  if (error == ERROR_SUCCESS) {
    switch (type) {
    case REG_DWORD: {
      if (size != 4)
        return false;
      int32_t number;
      memcpy(&number, small, sizeof number);
      value = Value(int64_t{number});
      return true;
    }
    case REG_SZ: // its terminator goes; the other kinds keep theirs
      if (size > 0)
        --size;
      [[fallthrough]];
    case REG_EXPAND_SZ:
    case REG_BINARY:
    case REG_MULTI_SZ:
      value = Value(String(small, static_cast<int32_t>(size)));
      return true;
    }
    return false;
  }
  if (error == ERROR_MORE_DATA) {
    // What is long is taken as text, whatever it is. The query wants room for all of it, and then these two lose the
    // terminator.
    const bool terminated = type == REG_SZ || type == REG_MULTI_SZ;
    String text;
    text.set_length(static_cast<int32_t>(size));
    if (RegQueryValueExA(current_key_, name, nullptr, nullptr, reinterpret_cast<BYTE *>(text.data()), &size) !=
        ERROR_SUCCESS)
      return false;
    text.remove_last(terminated ? 1 : 0);
    value = Value(text);
    return true;
  }
  if (error != ERROR_FILE_NOT_FOUND)
    refused = true;
  if ((error == ERROR_FILE_NOT_FOUND || error == ERROR_BADKEY) && (options & RK_REQUIRED))
    RequiredValueMissing(name);
  return false;
}

void RegistryKey::ReadString(String &text, const char *name, const char *fallback, RegistryOptions options) const {
  Value value;
  text = ReadValue(name, value, options) ? value.to_string() : String(fallback);
}

int32_t RegistryKey::ReadNumber(const char *name, int32_t fallback, RegistryOptions options) const {
  Value value;
  return ReadValue(name, value, options) ? value.to_int() : fallback;
}

bool RegistryKey::ReadBoolean(const char *name, bool fallback, RegistryOptions options) const {
  Value value;
  return ReadValue(name, value, options) ? value.to_boolean() : fallback;
}

RegistryOptions RegistryKey::KindOption(const char *name) const {
  DWORD type = REG_NONE;
  RegQueryValueExA(current_key_, name, nullptr, &type, nullptr, nullptr);
  return type == REG_EXPAND_SZ ? RK_EXPAND : RK_NONE;
}

bool RegistryKey::ReadStringIn(RegistryHandle root, const char *key, const char *name, String &text,
                               RegistryOptions options) {
  if (Open(root, key, options & RK_OPEN_ONLY) == KEY_NOT_OPENED)
    return false;
  ReadString(text, name, "");
  Close();
  return true;
}

void RegistryKey::ReadStringAt(String &text, RegistryHandle root, const char *path, const char *fallback,
                               RegistryOptions options) {
  String key, name;
  if (!SplitRegistryPath(path, key, name) || !ReadStringIn(root, key, name, text, options))
    text = fallback;
}

bool RegistryKey::SetValue(const char *name, uint32_t type, const void *data, int32_t size) {
  const bool set = RegSetValueExA(current_key_, name, 0, type, static_cast<const BYTE *>(data),
                                  static_cast<DWORD>(size)) == ERROR_SUCCESS;
  if (!set)
    refused = true;
  return set;
}

bool RegistryKey::WriteString(const char *name, const String &text, RegistryOptions options) {
  if (!current_key_)
    return false;
  if ((options & RK_DELETE_EMPTY) && text.is_empty())
    return DeleteValue(name);
  return SetValue(name, options & RK_BINARY ? REG_BINARY : (options & RK_EXPAND ? REG_EXPAND_SZ : REG_SZ), text.c_str(),
                  text.length());
}

bool RegistryKey::WriteNumber(const char *name, int32_t number, RegistryOptions options) {
  if (!current_key_)
    return false;
  if ((options & RK_DELETE_EMPTY) && number == 0)
    return DeleteValue(name);
  return SetValue(name, REG_DWORD, &number, sizeof number);
}

bool RegistryKey::Exchange(const char *name, Value &value) {
  if (!writing)
    return ReadValue(name, value);
  if (value.kind() == Value::Kind::Integer)
    return WriteNumber(name, value.to_int());
  return WriteString(name, value.to_string());
}

bool RegistryKey::DeleteValue(const char *name) {
  return current_key_ && RegDeleteValueA(current_key_, name) == ERROR_SUCCESS;
}

// ---- Deletions ----------------------------------------------------------------------------------------------------

DeleteStatus RegistryKey::DeleteChild(const char *subkey, RegistryOptions options) {
  if (!current_key_ || !subkey || !*subkey || text_length(subkey) > kLongestName)
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
