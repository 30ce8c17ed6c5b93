// Reading and writing values.

#include <cstring>

#include "core/Windows.h"
#include "registry/RegistryKey.h"
#include "registry/RegistryPath.h"

namespace korb {

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

bool RegistryKey::WriteString(const char *name, const String &text, RegistryOptions options) {
  if (!current_key_)
    return false;
  if ((options & RK_DELETE_EMPTY) && text.is_empty())
    return DeleteValue(name);
  const DWORD type = options & RK_BINARY ? REG_BINARY : (options & RK_EXPAND ? REG_EXPAND_SZ : REG_SZ);
  return RegSetValueExA(current_key_, name, 0, type, reinterpret_cast<const BYTE *>(text.c_str()),
                        static_cast<DWORD>(text.length())) == ERROR_SUCCESS;
}

bool RegistryKey::WriteNumber(const char *name, int32_t number, RegistryOptions options) {
  if (!current_key_)
    return false;
  if ((options & RK_DELETE_EMPTY) && number == 0)
    return DeleteValue(name);
  return RegSetValueExA(current_key_, name, 0, REG_DWORD, reinterpret_cast<const BYTE *>(&number), sizeof number) ==
         ERROR_SUCCESS;
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

} // namespace korb
