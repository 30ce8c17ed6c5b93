#include "engine/Shortcuts.h"

#include "archive/RunValues.h"
#include "core/RunPaths.h"
#include "core/Windows.h"
#include "engine/FileError.h"
#include "engine/RunLists.h"
#include "engine/ShellLink.h"
#include "engine/UninstallList.h"
#include "files/Directories.h"
#include "files/LastError.h"
#include "files/PathText.h"
#include "files/SystemFunction.h"
#include "format/Texts.h"
#include "system/PathVariables.h"
#include "system/SystemFolders.h"
#include "ui/TextLookup.h"

#include <shlobj.h>

namespace korb {

namespace {

/// Set when a shortcut on the desktop is wanted, made or not.
bool desktop_shortcut_made = false;

String Desktop(bool all_users) {
  return all_users ? DesktopAllFolder() : DesktopFolder();
}
String StartMenuPrograms(bool all_users) {
  return all_users ? StartMenuProgramsAllFolder() : StartMenuProgramsFolder();
}
String Startup(bool all_users) {
  return all_users ? StartupAllFolder() : StartupFolder();
}

class ShortcutMaker {
public:
  ShortcutMaker(const InstallConfig &config, Journal &journal)
      : config_(config), journal_(journal), all_users_(config.shortcut_mode == kShortcutsForAllUsers) {}

  void Make(ShortcutRecord &record);
  void MakeForUninstaller();

private:
  /// `directory` holds the shortcut's own file; `log_name` begins its line in a log of everything.
  void MakeIn(const String &directory, const ShortcutRecord &record, const char *log_name);
  void MakeForUninstaller(const String &directory);
  const String &DesktopGroup();

  const InstallConfig &config_;
  Journal &journal_;
  const bool all_users_;
  String desktop_group_; // empty until the first shortcut goes there
};

void ShortcutMaker::Make(ShortcutRecord &record) {
  ExpandPathVariables(record.arguments);
  if (record.desktop) {
    desktop_shortcut_made = true;
    if (config_.desktop_group.is_empty())
      MakeIn(Desktop(all_users_), record, "Desktop Shortcut");
    else
      MakeIn(DesktopGroup(), record, "Desktop Folder Shortcut");
  }
  if (record.start_menu)
    MakeIn(PathJoin(StartMenuPrograms(all_users_), config_.product_start_menu), record, "Start Menu Shortcut");
  if (record.startup)
    MakeIn(Startup(all_users_), record, "Startup Shortcut");
}

/// The folder is listed whatever became of it, and for shortcuts that stay too: the uninstall leaves a folder alone
/// that holds anything.
const String &ShortcutMaker::DesktopGroup() {
  if (desktop_group_.is_empty()) {
    desktop_group_ = PathJoin(Desktop(all_users_), config_.desktop_group);
    if (!CreateDirectoryTree(desktop_group_))
      journal_.error_report.append_format("Failed to create directory %s: %s\r\n", desktop_group_, LastErrorText());
    AddUninstallEntry(desktop_group_, kUninstallDirectory);
  }
  return desktop_group_;
}

void ShortcutMaker::MakeIn(const String &directory, const ShortcutRecord &record, const char *log_name) {
  String path = PathJoin(directory, record.title);
  if (!CreateShortcut(path, record.target, record.arguments, InstallDir, record.icon)) {
    AppendFileError(journal_.error_report, path);
    return;
  }
  if (HasInstallFlag(IF_VERBOSE_LOG))
    journal_.log_text.append_format("%s(%s) -> %s\r\n", log_name, record.title, path);
  if (!record.no_uninstall)
    AddUninstallEntry(path, kUninstallFile);
}

void ShortcutMaker::MakeForUninstaller(const String &directory) {
  String path = PathJoin(directory, TextLookup(kTextUninstallerTitle));
  // No working directory: the uninstaller could not remove the one that it runs in.
  if (!CreateShortcut(path, UninstallerPath, UninstallCommand, "", "")) {
    AppendFileError(journal_.error_report, path);
    return;
  }
  if (HasInstallFlag(IF_VERBOSE_LOG))
    journal_.log_text.append_format("Uninstaller Shortcut -> %s\r\n", path);
  AddUninstallEntry(path, kUninstallFile);
}

void ShortcutMaker::MakeForUninstaller() {
  if (HasInstallFlag(IF_UNINSTALL_START_MENU))
    MakeForUninstaller(PathJoin(StartMenuPrograms(all_users_), config_.product_start_menu));
  if (HasInstallFlag(IF_UNINSTALL_IN_FOLDER))
    MakeForUninstaller(UninstallDir);
}

} // namespace

void AddUninstallerShortcut() {
  if (!HasInstallFlag(IF_UNINSTALL) || !HasInstallFlag(IF_UNINSTALL_DESKTOP))
    return;
  ShortcutRecord record;
  record.desktop = true;
  record.target = UninstallerPath;
  record.arguments = UninstallCommand;
  record.title = TextLookup(kTextUninstallerTitle);
  ShortcutList.append(record);
}

void MakeShortcuts(const InstallConfig &config, Journal &journal) {
  ShortcutMaker maker(config, journal);
  for (int32_t i = 0; i < ShortcutList.count; ++i)
    maker.Make(ShortcutList.at(i));
  if (HasInstallFlag(IF_UNINSTALL))
    maker.MakeForUninstaller();
}

void TellShellOfShortcuts(const InstallConfig &config) {
  if (!desktop_shortcut_made)
    return;
  const auto notify = KORB_SYSTEM_FUNCTION("shell32.dll", SHChangeNotify);
  if (notify)
    notify(SHCNE_UPDATEDIR, SHCNF_PATHA, Desktop(config.shortcut_mode == kShortcutsForAllUsers), nullptr);
}

} // namespace korb
