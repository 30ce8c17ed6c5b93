// What the rules on folders ask of the machine.

#include "core/Windows.h"
#include "files/ProgramPaths.h"
#include "registry/RegistryKey.h"
#include "system/SystemFolders.h"

namespace korb {

namespace {

String Setting(RegistryRoot root, const char *path) {
  RegistryKey key;
  String text;
  // Creates a key that is missing, as this program has always left it.
  key.ReadStringAt(text, HandleOf(root), path, "");
  text.sync_length(); // a text with environment variables, as most folders are, comes with its terminator
  return text;
}

} // namespace

String MachineSetting(const char *path) {
  return Setting(RegistryRoot::LocalMachine, path);
}

String UserSetting(const char *path) {
  return Setting(RegistryRoot::CurrentUser, path);
}

String RawSystemDirectory() {
  char path[MAX_PATH];
  path[0] = '\0';
  GetSystemDirectoryA(path, sizeof path);
  return path;
}

String SystemRoot() {
  String root("%SystemRoot%");
  return ExpandEnvironment(root) ? root : String();
}

} // namespace korb
