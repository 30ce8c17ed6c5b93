#include "engine/Placement.h"

#include "archive/RunValues.h"
#include "core/Failure.h"
#include "engine/RunLists.h"
#include "engine/UninstallList.h"
#include "engine/Version.h"
#include "files/PathText.h"
#include "format/Damage.h"
#include "format/Texts.h"
#include "ui/TextLookup.h"

namespace korb {

namespace {

/// Joined to the record's name when the record brings no target of its own.
String KindFolder(const PayloadRecord &record, PlacementHost &host, bool &in_install_tree) {
  if ((record.file_flags & FF_UNINSTALL_DIR) != 0)
    return UninstallDir;
  switch (record.dest_kind) {
  case KindProgram:
  case KindStartup:
    in_install_tree = true;
    return InstallDir;
  case KindShared:
    return CommonDir;
  case KindFont:
    return host.FontFolder();
  case KindSystem:
  case KindSystemCom:
    return host.SystemFolder();
  default:
    CorruptInstaller(DamageCode::FileKind);
  }
}

/// A shared file or a font is replaced by a later one. Unlike IsNewerSystemFile, a date that is missing on either side
/// is a reason to replace.
bool IsUpToDate(const PayloadRecord &record, const String &path, PlacementHost &host) {
  FileDate present{};
  return record.date.has_date() && host.GetFileModified(path, present) && CompareFileDates(present, record.date) >= 0;
}

/// A system file belongs to others, so both its version and its date must be newer than those of the present one. A
/// record without a date is never newer.
bool IsNewerSystemFile(const PayloadRecord &record, const String &path, PlacementHost &host) {
  if (!IsBlank(record.label)) {
    const String version = host.ReadFileVersion(path);
    // Only the file's own letters were made capitals, so a small one in the record is newer.
    if (!IsBlank(version) && CompareVersions(record.label, version.c_str()) <= 0) {
      LogText += path;
      LogText += " was not installed because its version is not newer.\r\n";
      return false;
    }
  }
  FileDate present{};
  if (!host.GetFileModified(path, present))
    return false;
  if (CompareFileDates(present, record.date) >= 0) {
    LogText += path;
    LogText += " was not installed because its date is not newer.\r\n";
    return false;
  }
  return true;
}

bool IsFresher(const PayloadRecord &record, const String &path, PlacementHost &host, bool &replaces) {
  switch (record.dest_kind) {
  case KindShared:
  case KindFont:
    if (!host.FileExists(path))
      return true;
    LogText += path;
    if (IsUpToDate(record, path, host)) {
      LogText += " is up to date.\r\n";
      return false;
    }
    break;
  case KindSystem:
  case KindSystemCom:
    if (!host.FileExists(path))
      return true;
    if (!IsNewerSystemFile(record, path, host))
      return false;
    LogText += path;
    break;
  default:
    return true; // The product's own files are overwritten unseen.
  }
  LogText += " is out of date and will be replaced.\r\n";
  replaces = true;
  return true;
}

} // namespace

Destination ChooseDestination(const PayloadRecord &record, PlacementHost &host) {
  Destination to;
  to.name = record.name;
  String target(record.target);
  if (!target.is_empty() && !target.contains_char('\\')) {
    to.name = target;
    target.clear();
  }
  if (target.is_empty()) {
    to.path = PathJoin(KindFolder(record, host, to.in_install_tree), to.name);
    return to;
  }
  host.ExpandPathVariables(target);
  NormalisePath(target, record.dest_kind == KindShared ? CommonDir : InstallDir);
  if (target.ends_with_char('\\'))
    target += FilePart(to.name);
  to.path = target;
  to.in_install_tree = true;
  return to;
}

bool IsWanted(const PayloadRecord &record, const String &path, PlacementHost &host, bool &replaces) {
  replaces = false;
  switch (record.file_flags & FF_CONDITION) {
  case FF_PLACE_NEVER:
    return false;
  case FF_PLACE_OVER:
    if (!host.FileExists(path))
      return false;
    break;
  case FF_PLACE_NEW:
    if (host.FileExists(path)) {
      // The file was kept for the user, but it is the product's: it goes with it, also where single files are not
      // recorded.
      if (IsListedAtUninstall(record))
        AddUninstallEntry(path.c_str(), kUninstallFile);
      return false;
    }
    break;
  default:
    break;
  }
  return IsFresher(record, path, host, replaces);
}

void NoteSharedFile(const PayloadRecord &record, const String &path) {
  const bool stays = (record.file_flags & FF_KEEP) != 0;
  if (record.dest_kind == KindSystemCom)
    ComFileList.append(path);
  switch (record.dest_kind) {
  case KindShared:
    SharedFileList.append(stays ? path + ' ' : path);
    break;
  case KindSystem:
    SharedFileList.append(path + ' ');
    break;
  case KindSystemCom:
    SharedFileList.append(path + (stays ? ' ' : '^'));
    break;
  default:
    break;
  }
}

void NoteShortcut(const PayloadRecord &record, const String &path) {
  const bool startup = record.dest_kind == KindStartup;
  if (!startup && (record.dest_kind != KindProgram || (record.file_flags & FF_SHORTCUTS) == 0))
    return;
  ShortcutRecord &shortcut = ShortcutList.append_slot();
  shortcut.desktop = (record.file_flags & FF_DESKTOP) != 0;
  shortcut.start_menu = (record.file_flags & FF_START_MENU) != 0;
  shortcut.startup = startup;
  shortcut.no_uninstall = (record.file_flags & FF_KEEP) != 0;
  shortcut.target = path;
  shortcut.arguments = record.arguments;
  shortcut.title = record.label;
  if (shortcut.title.is_empty())
    shortcut.title.format(TextLookup(kTextShortcutTitle), FilePart(path));
  if (!IsBlank(record.icon))
    shortcut.icon = PathJoin(UninstallDir, record.icon);
}

bool IsListedAtUninstall(const PayloadRecord &record) {
  return (record.dest_kind == KindProgram || record.dest_kind == KindStartup) && (record.file_flags & FF_KEEP) == 0;
}

} // namespace korb
