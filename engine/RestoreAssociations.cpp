#include "engine/RestoreAssociations.h"

#include "engine/Associations.h"
#include "registry/RegistryKey.h"

namespace korb {

namespace {

/// Makes the backup in the open key its default value again. True when there was one, even if it could not be written:
/// nothing is to be deleted on its account.
bool RestoreDefault(RegistryKey &key, const String &backup_name) {
  String backup;
  key.ReadString(backup, backup_name, "");
  if (IsBlank(backup))
    return false;
  if (key.WriteString("", backup, key.KindOption(backup_name)))
    key.DeleteValue(backup_name);
  return true;
}

/// Deletes a type or an extension: a key right below the root, or deeper when the name is a path.
void DeleteType(RegistryKey &key, const String &path) {
  const RegistryHandle root = HandleOf(RegistryRoot::ClassesRoot);
  if (path.contains_char('\\'))
    key.DeleteKey(root, path);
  else
    key.DeleteKeyIn(root, "", path);
}

/// Below "shell", the open key. A verb without a backup came with the installation and goes.
void RestoreVerb(RegistryKey &key, const String &verb, const String &backup_name) {
  if (key.OpenChild(verb) == KEY_NOT_OPENED)
    return;
  bool is_ours = true;
  if (key.OpenChild("command", RK_OPEN_ONLY) != KEY_NOT_OPENED) {
    is_ours = !RestoreDefault(key, backup_name) && !key.refused;
    key.Close();
  }
  key.Close();
  if (is_ours)
    key.DeleteChild(verb);
}

void RestoreShell(RegistryKey &key, const String &verb, const String &backup_name) {
  if (key.OpenChild("shell", RK_OPEN_ONLY) == KEY_NOT_OPENED)
    return;
  RestoreDefault(key, backup_name);
  RestoreVerb(key, verb, backup_name);
  const bool is_empty = key.SubKeyCount() == 0;
  key.Close();
  if (is_empty)
    key.DeleteChild("shell");
}

/// True when the extension is somebody else's: it had an owner before, who may have it back from a run that didn't come
/// to its end, or the system doesn't tell.
bool RestoreExtension(const FileAssociation &association, const String &backup_name) {
  RegistryKey key;
  if (key.Open(HandleOf(RegistryRoot::ClassesRoot), association.extension, RK_OPEN_ONLY) == KEY_NOT_OPENED)
    return false;
  const bool restored = RestoreDefault(key, backup_name);
  String owner;
  key.ReadString(owner, "", "");
  return restored || key.refused || !(owner.is_empty() || owner.equals_no_case(association.file_class));
}

/// True when the class is gone with all that it held.
bool RestoreClass(const FileAssociation &association, const String &backup_name) {
  RegistryKey key;
  if (key.Open(HandleOf(RegistryRoot::ClassesRoot), association.file_class, RK_OPEN_ONLY) == KEY_NOT_OPENED)
    return false;
  RestoreDefault(key, backup_name);
  // A class with an icon is taken for the product's own. Its icon's key stays open, so no verb is found below it, and
  // it is the icon's subkeys that are counted: there are none, and the class goes as a whole.
  if (key.OpenChild("DefaultIcon", RK_OPEN_ONLY) != KEY_NOT_OPENED)
    RestoreDefault(key, backup_name);
  RestoreShell(key, association.verb, backup_name);
  const bool is_empty = key.SubKeyCount() == 0;
  key.Close();
  if (is_empty)
    DeleteType(key, association.file_class);
  return is_empty;
}

bool Contains(const Vector<String> &names, const String &name) {
  for (int32_t i = 0; i < names.count; ++i)
    if (names.at(i).equals_no_case(name))
      return true;
  return false;
}

} // namespace

void RestoreAssociations(const Vector<FileAssociation> &associations) {
  const String backup_name = BackupValueName();
  // The backup is gone after an extension's first verb; it must not fall to the second.
  Vector<String> given_back;
  for (int32_t i = 0; i < associations.count; ++i) {
    const FileAssociation &association = associations.at(i);
    if (RestoreExtension(association, backup_name))
      given_back.append(association.extension);
    RegistryKey key;
    if (RestoreClass(association, backup_name) && !Contains(given_back, association.extension))
      DeleteType(key, association.extension);
  }
}

} // namespace korb
