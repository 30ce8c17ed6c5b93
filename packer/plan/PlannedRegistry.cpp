// The registry of the machine of a plan. Keys are told by their paths; a handle only says that one is open.
#include "packer/plan/PlannedMachine.h"
#include "registry/RegistryKey.h"
#include "registry/RegistryPath.h"

namespace korb {

namespace {

using packer::PlannedMachine;

PlannedMachine &Machine() {
  return PlannedMachine::Current();
}

// What any open key has for a handle; no root does.
const RegistryHandle kOpenKey = HandleOf(RegistryRoot{1});

std::string Below(RegistryHandle root, const char *subkey) {
  const bool is_classes = root == HandleOf(RegistryRoot::ClassesRoot);
  const char *name = is_classes                   ? "HKEY_CLASSES_ROOT"
                     : root == SoftwareRoot(true) ? "HKEY_CURRENT_USER"
                                                  : "HKEY_LOCAL_MACHINE";
  return std::string(name) + "\\" + subkey;
}

} // namespace

RegistryKey::RegistryKey() = default;
RegistryKey::~RegistryKey() = default;

KeyOpened RegistryKey::Open(RegistryHandle root, const char *subkey, RegistryOptions options) {
  const std::string path = root == kOpenKey ? std::string(current_path_) + "\\" + subkey : Below(root, subkey);
  const bool exists = Machine().HasKey(path);
  if (!exists && ((options & RK_OPEN_ONLY) || !Machine().MakeKey(path)))
    return KEY_NOT_OPENED;
  key_stack_.append(current_key_);
  path_stack_.append(current_path_);
  current_key_ = kOpenKey;
  current_path_ = path.c_str();
  return exists ? KEY_OPENED : KEY_CREATED;
}

KeyOpened RegistryKey::OpenSoftware(const char *path, bool current_user, RegistryOptions options) {
  return Open(SoftwareRoot(current_user), SoftwarePath(path), options);
}

KeyOpened RegistryKey::OpenChild(const char *subkey, RegistryOptions options) {
  return current_key_ ? Open(current_key_, subkey, options) : KEY_NOT_OPENED;
}

void RegistryKey::Close() {
  current_key_ = key_stack_.take_at(key_stack_.count - 1);
  current_path_ = path_stack_.take_at(path_stack_.count - 1);
}

void RegistryKey::ReadString(String &text, const char *name, const char *fallback, RegistryOptions) const {
  const String *value = Machine().FindValue(current_path_.c_str(), name);
  text = value ? *value : String(fallback);
}

int32_t RegistryKey::ReadNumber(const char *name, int32_t fallback, RegistryOptions) const {
  const String *value = Machine().FindValue(current_path_.c_str(), name);
  return value ? value->to_int() : fallback;
}

RegistryOptions RegistryKey::KindOption(const char *) const {
  return RK_NONE; // on this machine, only texts of the same run are ever replaced
}

bool RegistryKey::WriteString(const char *name, const String &text, RegistryOptions options) {
  if (!current_key_)
    return false;
  if ((options & RK_DELETE_EMPTY) && text.is_empty())
    return DeleteValue(name);
  Machine().SetValue(current_path_.c_str(), name, options & RK_EXPAND ? "REG_EXPAND_SZ" : "REG_SZ", text,
                     Machine().Text(text));
  return true;
}

bool RegistryKey::WriteNumber(const char *name, int32_t number, RegistryOptions options) {
  if (!current_key_)
    return false;
  if ((options & RK_DELETE_EMPTY) && number == 0)
    return DeleteValue(name);
  Machine().SetValue(current_path_.c_str(), name, "REG_DWORD", string_from_int64(number), number);
  return true;
}

bool RegistryKey::DeleteValue(const char *) {
  return false; // nothing is there that an installation takes away
}

bool RegistryKey::ValueExists(const char *name) const {
  return Machine().FindValue(current_path_.c_str(), name) != nullptr;
}

} // namespace korb
