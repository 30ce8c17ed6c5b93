#include "engine/Placement.h"

#include "core/Failure.h"
#include "core/RunValues.h"
#include "engine/Version.h"
#include "files/PathText.h"
#include "format/Damage.h"
#include "format/Kinds.h"
#include "format/Record.h"
#include "format/Texts.h"
#include "ui/TextLookup.h"

namespace korb {

namespace {

/// Joined to the record's name when the record brings no target of its own.
String FolderOf(const PayloadRecord &record, const String &uninstall_dir, PlacementHost &host, bool &in_install_tree) {
  if ((record.file_flags & FF_UNINSTALL_DIR) != 0)
    return uninstall_dir;
  switch (RowOf(record.dest_kind).folder) {
  case KindFolder::Product:
    in_install_tree = true;
    return InstallDir;
  case KindFolder::Shared:
    return CommonDir;
  case KindFolder::Fonts:
    return host.FontFolder();
  case KindFolder::System:
    return host.SystemFolder();
  case KindFolder::None:
    break;
  }
  CorruptInstaller(DamageCode::FileKind);
}

/// A shared file or a font is replaced by a later one. Unlike IsNewerSystemFile, a date that is missing on either side
/// is a reason to replace.
bool IsUpToDate(const PayloadRecord &record, const String &path, PlacementHost &host) {
  FileDate present{};
  return record.date.has_date() && host.GetFileModified(path, present) && CompareFileDates(present, record.date) >= 0;
}

/// False always: the file stays.
bool LogNotNewer(const String &path, const char *what, String &log_text) {
  log_text.append_format("%s was not installed because its %s is not newer.\r\n", path, what);
  return false;
}

/// A system file belongs to others, so both its version and its date must be newer than those of the present one. A
/// record without a date is never newer.
bool IsNewerSystemFile(const PayloadRecord &record, const String &path, PlacementHost &host, String &log_text) {
  if (!IsBlank(record.label)) {
    const String version = host.ReadFileVersion(path);
    // Only the file's own letters were made capitals, so a small one in the record is newer.
    if (!IsBlank(version) && CompareVersions(record.label, version) <= 0)
      return LogNotNewer(path, "version", log_text);
  }
  FileDate present{};
  if (!host.GetFileModified(path, present))
    return false;
  return CompareFileDates(present, record.date) < 0 || LogNotNewer(path, "date", log_text);
}

bool IsFresher(const PayloadRecord &record, const String &path, PlacementHost &host, String &log_text, bool &replaces) {
  const KindReplaced replaced = RowOf(record.dest_kind).replaced;
  if (replaced == KindReplaced::Always || !host.FileExists(path))
    return true;
  if (replaced == KindReplaced::ByLaterDate) {
    log_text += path;
    if (IsUpToDate(record, path, host)) {
      log_text += " is up to date.\r\n";
      return false;
    }
  } else {
    if (!IsNewerSystemFile(record, path, host, log_text))
      return false;
    log_text += path;
  }
  log_text += " is out of date and will be replaced.\r\n";
  replaces = true;
  return true;
}

} // namespace

Destination ChooseDestination(const PayloadRecord &record, const String &uninstall_dir, PlacementHost &host) {
  Destination to;
  to.name = record.name;
  String target(record.target);
  if (!target.is_empty() && !target.contains_char('\\')) {
    to.name = target;
    target.clear();
  }
  if (target.is_empty()) {
    to.path = PathJoin(FolderOf(record, uninstall_dir, host, to.in_install_tree), to.name);
    return to;
  }
  host.ExpandPathVariables(target);
  NormalisePath(target, RowOf(record.dest_kind).folder == KindFolder::Shared ? CommonDir : InstallDir);
  if (target.ends_with_char('\\'))
    target += FilePart(to.name);
  to.path = target;
  to.in_install_tree = true;
  return to;
}

bool IsWanted(const PayloadRecord &record, const String &path, PlacementHost &host, InstallNotes &notes,
              bool &replaces) {
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
        notes.uninstall_list.AddUninstallEntry(path, kUninstallFile);
      return false;
    }
    break;
  default:
    break;
  }
  return IsFresher(record, path, host, notes.journal.log_text, replaces);
}

void NoteSharedFile(const PayloadRecord &record, const String &path, InstallNotes &notes) {
  const KindRow &kind = RowOf(record.dest_kind);
  if (kind.registers_itself)
    notes.com_file_list.append(path);
  if (kind.counted == KindCounted::No)
    return;
  String &marked = *notes.shared_file_list.append(path);
  if (kind.counted == KindCounted::Kept || (record.file_flags & FF_KEEP) != 0)
    marked += kKeepMark;
  else if (kind.counted == KindCounted::UnregisteredAndRemoved)
    marked += kUnregisterMark;
}

void NoteShortcut(const PayloadRecord &record, const String &path, InstallNotes &notes) {
  const KindShortcuts shortcuts = RowOf(record.dest_kind).shortcuts;
  const bool startup = shortcuts == KindShortcuts::InStartupFolder;
  if (!startup && (shortcuts == KindShortcuts::None || (record.file_flags & FF_SHORTCUTS) == 0))
    return;
  ShortcutRecord &shortcut = notes.shortcut_list.append_slot();
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
    shortcut.icon = PathJoin(notes.uninstall_dir, record.icon);
}

bool IsListedAtUninstall(const PayloadRecord &record) {
  return RowOf(record.dest_kind).listed && (record.file_flags & FF_KEEP) == 0;
}

} // namespace korb
