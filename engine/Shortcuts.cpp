#include "engine/Shortcuts.h"

#include "core/RunValues.h"
#include "engine/FileError.h"
#include "engine/ShellLink.h"
#include "files/Directories.h"
#include "files/LastError.h"
#include "files/PathText.h"
#include "format/Texts.h"
#include "system/PathVariables.h"
#include "system/SystemFolders.h"
#include "ui/TextLookup.h"

namespace korb {

namespace {

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
  ShortcutMaker(const InstallConfig &config, InstallNotes &notes)
      : config_(config), notes_(notes), all_users_(config.shortcut_mode == kShortcutsForAllUsers) {}

  void Make(ShortcutRecord &record);
  void MakeForUninstaller();
  bool desktop_shortcut_made() const { return desktop_shortcut_made_; }

private:
  /// `directory` holds the shortcut's own file; `log_name` begins its line in a log of everything.
  void MakeIn(const String &directory, const ShortcutRecord &record, const char *log_name);
  void MakeForUninstaller(const String &directory);
  const String &DesktopGroup();

  const InstallConfig &config_;
  InstallNotes &notes_;
  const bool all_users_;
  bool desktop_shortcut_made_ = false;
  String desktop_group_; // empty until the first shortcut goes there
};

void ShortcutMaker::Make(ShortcutRecord &record) {
  ExpandPathVariables(record.arguments);
  if (record.desktop) {
    desktop_shortcut_made_ = true;
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
      notes_.journal.error_report.append_format("Failed to create directory %s: %s\r\n", desktop_group_,
                                                LastErrorText());
    notes_.uninstall_list.AddUninstallEntry(desktop_group_, kUninstallDirectory);
  }
  return desktop_group_;
}

void ShortcutMaker::MakeIn(const String &directory, const ShortcutRecord &record, const char *log_name) {
  String path = PathJoin(directory, record.title);
  if (!CreateShortcut(path, record.target, record.arguments, InstallDir, record.icon)) {
    AppendFileError(notes_.journal.error_report, path);
    return;
  }
  if (HasInstallFlag(IF_VERBOSE_LOG))
    notes_.journal.log_text.append_format("%s(%s) -> %s\r\n", log_name, record.title, path);
  if (!record.no_uninstall)
    notes_.uninstall_list.AddUninstallEntry(path, kUninstallFile);
}

void ShortcutMaker::MakeForUninstaller(const String &directory) {
  String path = PathJoin(directory, TextLookup(kTextUninstallerTitle));
  // No working directory: the uninstaller could not remove the one that it runs in.
  if (!CreateShortcut(path, notes_.uninstaller_path, notes_.uninstall_command, "", "")) {
    AppendFileError(notes_.journal.error_report, path);
    return;
  }
  if (HasInstallFlag(IF_VERBOSE_LOG))
    notes_.journal.log_text.append_format("Uninstaller Shortcut -> %s\r\n", path);
  notes_.uninstall_list.AddUninstallEntry(path, kUninstallFile);
}

void ShortcutMaker::MakeForUninstaller() {
  if (HasInstallFlag(IF_UNINSTALL_START_MENU))
    MakeForUninstaller(PathJoin(StartMenuPrograms(all_users_), config_.product_start_menu));
  if (HasInstallFlag(IF_UNINSTALL_IN_FOLDER))
    MakeForUninstaller(notes_.uninstall_dir);
}

} // namespace

void AddUninstallerShortcut(InstallNotes &notes) {
  if (!HasInstallFlag(IF_UNINSTALL) || !HasInstallFlag(IF_UNINSTALL_DESKTOP))
    return;
  ShortcutRecord record;
  record.desktop = true;
  record.target = notes.uninstaller_path;
  record.arguments = notes.uninstall_command;
  record.title = TextLookup(kTextUninstallerTitle);
  notes.shortcut_list.append(record);
}

bool MakeShortcuts(const InstallConfig &config, InstallNotes &notes) {
  ShortcutMaker maker(config, notes);
  for (int32_t i = 0; i < notes.shortcut_list.count; ++i)
    maker.Make(notes.shortcut_list.at(i));
  if (HasInstallFlag(IF_UNINSTALL))
    maker.MakeForUninstaller();
  return maker.desktop_shortcut_made();
}

void TellShellOfShortcuts(const InstallConfig &config) {
  TellShellOfFolder(Desktop(config.shortcut_mode == kShortcutsForAllUsers));
}

} // namespace korb
