#include "system/SystemFolders.h"

#include "files/OsVersion.h"
#include "files/PathText.h"
#include "files/ProgramPaths.h"

namespace korb {

namespace {

constexpr char kSystemRoot[] = "%SystemRoot%";

String WithoutBackslash(String path) {
  if (path.length() > 3) // a root keeps its own
    path.remove_last_if('\\');
  return path;
}

String BelowWindows(const char *name) {
  return PathJoin(WindowsDirectory.c_str(), name);
}

/// `found`, or the folder of that name below the Windows directory.
String OrBelowWindows(String found, const char *name) {
  return found.is_empty() ? BelowWindows(name) : found;
}

/// The folder of all users, or that of the current one.
String AllUsersOr(const char *value, String (*of_user)()) {
  String folder = ShellFolder(value, true);
  return folder.is_empty() ? of_user() : folder;
}

} // namespace

String ShellFolder(const char *value, bool all_users) {
  const String path = str_format("Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders\\%s", value);
  return WithoutBackslash(all_users ? MachineSetting(path.c_str()) : UserSetting(path.c_str()));
}

String WindowsSetting(const char *value) {
  return WithoutBackslash(
      MachineSetting(str_format("Software\\Microsoft\\Windows\\CurrentVersion\\%s", value).c_str()));
}

String DesktopFolder() {
  return OrBelowWindows(ShellFolder("Desktop", false), "Desktop");
}

String DesktopAllFolder() {
  return AllUsersOr("Common Desktop", DesktopFolder);
}

String DocumentFolder() {
  const String folder = ShellFolder("Personal", false);
  return folder.is_empty() ? String("c:\\My Documents") : folder;
}

String DocumentAllFolder() {
  return AllUsersOr("Common Documents", DocumentFolder);
}

String FavoritesFolder() {
  return OrBelowWindows(ShellFolder("Favorites", false), "Favorites");
}

String FavoritesAllFolder() {
  return AllUsersOr("Common Favorites", FavoritesFolder);
}

String FontFolder() {
  return OrBelowWindows(ShellFolder("Fonts", false), "Fonts");
}

String StartMenuFolder() {
  return OrBelowWindows(ShellFolder("Start Menu", false), "Start Menu");
}

String StartMenuAllFolder() {
  return AllUsersOr("Common Start Menu", StartMenuFolder);
}

String StartMenuProgramsFolder() {
  const String folder = ShellFolder("Programs", false);
  return folder.is_empty() ? PathJoin(StartMenuFolder().c_str(), "Programs") : folder;
}

String StartMenuProgramsAllFolder() {
  return AllUsersOr("Common Programs", StartMenuProgramsFolder);
}

String StartupFolder() {
  const String folder = ShellFolder("Startup", false);
  return folder.is_empty() ? PathJoin(StartMenuProgramsFolder().c_str(), "StartUp") : folder;
}

String StartupAllFolder() {
  return AllUsersOr("Common Startup", StartupFolder);
}

String ProgramFilesFolder() {
  const String folder = WindowsSetting("ProgramFilesDir");
  return folder.is_empty() ? String("c:\\Program Files") : folder;
}

String CommonFilesFolder() {
  const String folder = WindowsSetting("CommonFilesDir");
  return folder.is_empty() ? PathJoin(ProgramFilesFolder().c_str(), "Common Files") : folder;
}

String MediaFolder() {
  return OrBelowWindows(WindowsSetting("MediaPath"), "Media");
}

String DeviceFolder() {
  String folder = WindowsSetting("DevicePath");
  if (folder.is_empty())
    return BelowWindows("INF");
  // The value is a list; only the first of its places is made readable, as nobody uses more.
  const int32_t place = folder.find(kSystemRoot, 0, FIND_IGNORE_CASE);
  if (place >= 0) {
    const String root = SystemRoot();
    if (!root.is_empty())
      folder.splice_string(place, static_cast<int32_t>(sizeof kSystemRoot) - 1, root);
  }
  return folder;
}

String SystemFolder() {
  const String folder = RawSystemDirectory();
  return folder.is_empty() ? BelowWindows(IsWindowsNT() ? "System32" : "System") : folder;
}

char BootDriveLetter() {
  const String directory = MachineSetting("Software\\Microsoft\\Windows\\CurrentVersion\\Setup\\BootDir");
  const char letter = DriveLetter(directory.c_str());
  return letter ? letter : 'C';
}

} // namespace korb
