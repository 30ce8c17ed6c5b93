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

enum class Source { User, AllUsers, Setting };

/// The folder that `source` has under `value`, or what stands in for it: `name` below `base`, or either alone.
String Folder(Source source, const char *value, String (*base)(), const char *name) {
  String folder = source == Source::Setting ? WindowsSetting(value) : ShellFolder(value, source == Source::AllUsers);
  return folder.is_empty() ? PathJoin(base ? base().c_str() : nullptr, name) : folder;
}

String Windows() {
  return WindowsDirectory;
}

} // namespace

String ShellFolder(const char *value, bool all_users) {
  const String path = str_format("Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders\\%s", value);
  return WithoutBackslash(all_users ? MachineSetting(path.c_str()) : UserSetting(path.c_str()));
}

String WindowsSetting(const char *value) {
  return WithoutBackslash(MachineSetting(str_format("Software\\Microsoft\\Windows\\CurrentVersion\\%s", value)));
}

String DesktopFolder() {
  return Folder(Source::User, "Desktop", Windows, "Desktop");
}

String DesktopAllFolder() {
  return Folder(Source::AllUsers, "Common Desktop", DesktopFolder, nullptr);
}

String DocumentFolder() {
  return Folder(Source::User, "Personal", nullptr, "c:\\My Documents");
}

String DocumentAllFolder() {
  return Folder(Source::AllUsers, "Common Documents", DocumentFolder, nullptr);
}

String FavoritesFolder() {
  return Folder(Source::User, "Favorites", Windows, "Favorites");
}

String FavoritesAllFolder() {
  return Folder(Source::AllUsers, "Common Favorites", FavoritesFolder, nullptr);
}

String FontFolder() {
  return Folder(Source::User, "Fonts", Windows, "Fonts");
}

String StartMenuFolder() {
  return Folder(Source::User, "Start Menu", Windows, "Start Menu");
}

String StartMenuAllFolder() {
  return Folder(Source::AllUsers, "Common Start Menu", StartMenuFolder, nullptr);
}

String StartMenuProgramsFolder() {
  return Folder(Source::User, "Programs", StartMenuFolder, "Programs");
}

String StartMenuProgramsAllFolder() {
  return Folder(Source::AllUsers, "Common Programs", StartMenuProgramsFolder, nullptr);
}

String StartupFolder() {
  return Folder(Source::User, "Startup", StartMenuProgramsFolder, "StartUp");
}

String StartupAllFolder() {
  return Folder(Source::AllUsers, "Common Startup", StartupFolder, nullptr);
}

String ProgramFilesFolder() {
  return Folder(Source::Setting, "ProgramFilesDir", nullptr, "c:\\Program Files");
}

String CommonFilesFolder() {
  return Folder(Source::Setting, "CommonFilesDir", ProgramFilesFolder, "Common Files");
}

String MediaFolder() {
  return Folder(Source::Setting, "MediaPath", Windows, "Media");
}

String DeviceFolder() {
  String folder = Folder(Source::Setting, "DevicePath", Windows, "INF");
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
  return folder.is_empty() ? PathJoin(WindowsDirectory, IsWindowsNT() ? "System32" : "System") : folder;
}

char BootDriveLetter() {
  const String directory = MachineSetting("Software\\Microsoft\\Windows\\CurrentVersion\\Setup\\BootDir");
  const char letter = DriveLetter(directory);
  return letter ? letter : 'C';
}

} // namespace korb
