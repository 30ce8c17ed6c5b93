// System folders and path variables from the real registry.
#include "core/RunValues.h"
#include "core/Windows.h"
#include "files/PathText.h"
#include "files/ProgramPaths.h"
#include "files/TempFiles.h"
#include "registry/RegistryKey.h"
#include "system/PathVariables.h"
#include "system/SystemFolders.h"
#include "tests/support/Testing.h"

namespace {

constexpr char kShellFolders[] = "Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders";
constexpr char kSettings[] = "Microsoft\\Windows\\CurrentVersion";

/// One value of the registry for the length of a test; a null text takes it away.
struct Setting {
  Setting(const char *key_path, bool of_user, const char *value, const char *text, RegistryOptions kind = RK_NONE)
      : name(value) {
    REQUIRE(key.OpenSoftware(key_path, of_user) != KEY_NOT_OPENED);
    key.ReadString(old, name, "");
    key.WriteString(name, text, RK_DELETE_EMPTY | kind);
  }
  ~Setting() { key.WriteString(name, old, RK_DELETE_EMPTY); }

  RegistryKey key;
  const char *name;
  String old;
};

} // namespace

TEST_CASE("a folder comes from the registry, or from what stands in for it") {
  InitPaths();
  struct Row {
    const char *key;
    bool user;
    const char *value;
    String (*folder)();
    String fallback;
  };
  const String &windows = WindowsDirectory;
  const Row rows[] = {
      {kShellFolders, true, "Desktop", DesktopFolder, windows + "\\Desktop"},
      {kShellFolders, false, "Common Desktop", DesktopAllFolder, DesktopFolder()},
      {kShellFolders, true, "Personal", DocumentFolder, "c:\\My Documents"},
      {kShellFolders, false, "Common Documents", DocumentAllFolder, DocumentFolder()},
      {kShellFolders, true, "Favorites", FavoritesFolder, windows + "\\Favorites"},
      {kShellFolders, false, "Common Favorites", FavoritesAllFolder, FavoritesFolder()},
      {kShellFolders, true, "Fonts", FontFolder, windows + "\\Fonts"},
      {kShellFolders, true, "Start Menu", StartMenuFolder, windows + "\\Start Menu"},
      {kShellFolders, false, "Common Start Menu", StartMenuAllFolder, StartMenuFolder()},
      {kShellFolders, true, "Programs", StartMenuProgramsFolder, StartMenuFolder() + "\\Programs"},
      {kShellFolders, false, "Common Programs", StartMenuProgramsAllFolder, StartMenuProgramsFolder()},
      {kShellFolders, true, "Startup", StartupFolder, StartMenuProgramsFolder() + "\\StartUp"},
      {kShellFolders, false, "Common Startup", StartupAllFolder, StartupFolder()},
      {kSettings, false, "ProgramFilesDir", ProgramFilesFolder, "c:\\Program Files"},
      {kSettings, false, "CommonFilesDir", CommonFilesFolder, ProgramFilesFolder() + "\\Common Files"},
      {kSettings, false, "MediaPath", MediaFolder, windows + "\\Media"},
      {kSettings, false, "DevicePath", DeviceFolder, windows + "\\INF"},
  };
  for (const Row &row : rows) {
    CAPTURE(row.value);
    for (const RegistryOptions kind : {RK_NONE, RK_EXPAND}) {
      const Setting set(row.key, row.user, row.value, "d:\\some where\\", kind);
      CHECK(row.folder() == "d:\\some where"); // one backslash less
    }
    const Setting missing(row.key, row.user, row.value, nullptr);
    CHECK(row.folder() == row.fallback);
  }
}

TEST_CASE("a folder may be a root, have a variable, or be asked of the system") {
  InitPaths();
  const String &windows = WindowsDirectory;
  const Setting root(kShellFolders, true, "Desktop", "d:\\");
  CHECK(DesktopFolder() == "d:\\");
  const Setting devices(kSettings, false, "DevicePath", "%systemroot%\\inf;%SystemRoot%\\x");
  CHECK(DeviceFolder().equals_no_case((windows + "\\inf;%SystemRoot%\\x").c_str()));
  CHECK(SystemFolder().equals_no_case((windows + "\\system32").c_str()));
}

TEST_CASE("the boot drive is a letter whatever the registry says") {
  struct Row {
    const char *text;
    char letter;
  };
  for (const Row &row : {Row{"d:\\", 'D'}, Row{"1:\\", 'C'}, Row{"d", 'C'}, Row{nullptr, 'C'}}) {
    CAPTURE(row.letter);
    const Setting boot("Microsoft\\Windows\\CurrentVersion\\Setup", false, "BootDir", row.text);
    CHECK(BootDriveLetter() == row.letter);
  }
}

TEST_CASE("path variables take their values in the order of the table") {
  InitPaths();
  struct Row {
    const char *install_dir, *text;
    String result;
  };
  CommonDir = "c:\\shared";
  for (const Row &row :
       {Row{"c:\\app", "", ""}, Row{"c:\\app", "%installdir%\\x;%INSTALLDIR%", "c:\\app\\x;c:\\app"},
        Row{"c:\\", "%InstallDir%\\bin", "c:\\\\bin"}, Row{"c:\\app", "%InstallDrive%\\x", "C:\\x"}, // always a capital
        Row{"\\\\server\\x", "%InstallDrive%\\x", "\\x"},
        Row{"c:\\app", "%SharedDir%|%CommonDir%", String("c:\\shared|") + CommonFilesFolder()},
        Row{"c:\\app", "%InstallerDrive%:\\x %InstallerFilename%", String("C:\\x ") + ProgramName},
        Row{"c:\\app", "%InstallerDir%|%InstallerFilepath%", ProgramDirectory + "|" + ProgramPath},
        Row{"c:\\app", "%Temp%|%WinDir%|%SystemDir%",
            String(TempDirectory()) + "|" + WindowsDirectory + "|" + SystemFolder()},
        Row{"c:\\app", "100% %Unknown% %", "100% %Unknown% %"},
        Row{"%Temp%\\x", "%InstallDir%", String(TempDirectory()) + "\\x"}, // a later variable in a value
        Row{"%CommonDir%\\x", "%InstallDir%", "%CommonDir%\\x"},           // an earlier one
        Row{"c:\\app", "%ProgramsDir%%FontDir%%BootDrive%",
            ProgramFilesFolder() + FontFolder() + DriveSpec(BootDriveLetter())}}) {
    CAPTURE(row.text);
    InstallDir = row.install_dir;
    String text(row.text);
    ExpandPathVariables(text);
    CHECK(text == row.result);
  }
}

TEST_CASE("a path variable that holds its own name, or is the text itself, is put in once") {
  InitPaths();
  InstallDir = "c:\\app";
  ExpandPathVariables(InstallDir);
  InstallDir = "%InstallDir%";
  String text("%InstallDir%");
  ExpandPathVariables(text);
  CHECK(text == "%InstallDir%");
}
