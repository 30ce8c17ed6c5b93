#include "engine/SharedFiles.h"

#include <utility>

#include "core/RunValues.h"
#include "engine/SelfRegistration.h"
#include "engine/UninstallRecord.h"
#include "files/DeferredFiles.h"
#include "files/FileInfo.h"
#include "format/Record.h"
#include "format/Texts.h"
#include "registry/RegistryKey.h"
#include "ui/Questions.h"

namespace korb {

namespace {

bool TakeMark(String &path, char mark) {
  const bool marked = path.ends_with_char(mark);
  path.remove_last_if(mark);
  return marked;
}

/// A file that is in the new list too is counted again right after this, so a reinstall changes no count in the end.
void TakeBackEarlierCounts(RegistryKey &counts, String entries) {
  SharedEntry entry;
  while (TakeSharedEntry(entries, entry)) {
    const char *name = entry.path;
    const int32_t count = counts.ReadNumber(name, 0);
    if (counts.refused)
      return;
    if (count <= 1)
      counts.DeleteValue(name);
    else
      counts.WriteNumber(name, count - 1);
  }
}

/// A count that can't be read stays: it may be that of many products.
void CountAll(RegistryKey &counts, InstallNotes &notes) {
  for (int32_t i = 0; i < notes.shared_file_list.count; ++i) {
    const String &marked_path = notes.shared_file_list.at(i);
    const String name = ReadSharedEntry(marked_path).path;
    const int32_t count = counts.ReadNumber(name, 0);
    if (!counts.refused)
      counts.WriteNumber(name, count + 1);
    AppendSharedEntry(notes.shared_files, marked_path);
  }
}

/// True when nobody else counts the file. One that is not counted at all is nobody's; where the system doesn't tell, it
/// may be anybody's.
bool IsLastReference(RegistryKey &counts, const String &path) {
  int32_t count = counts.ReadNumber(path, 0);
  if (counts.refused)
    return false;
  if (count < 1)
    return true;
  counts.WriteNumber(path, --count, RK_DELETE_EMPTY);
  return count < 1;
}

/// The file is unregistered before anybody is asked whether it goes, and whether or not it is there.
void RemoveSharedFile(const SharedEntry &entry) {
  if (entry.registers_itself)
    UnregisterServer(entry.path);
  if (FileExists(entry.path) && MayRemove(IF_ASK_SHARED_REMOVAL, kTextSharedQuestion, kTextSharedCaption, entry.path))
    DeleteOrSchedule(entry.path);
}

} // namespace

SharedEntry ReadSharedEntry(String marked_path) {
  SharedEntry entry;
  entry.registers_itself = TakeMark(marked_path, kUnregisterMark);
  entry.keep = TakeMark(marked_path, kKeepMark);
  entry.path = std::move(marked_path);
  return entry;
}

bool TakeSharedEntry(String &text, SharedEntry &entry) {
  entry = ReadSharedEntry(text.take_quoted(0));
  if (entry.path.is_empty())
    return false;
  text.remove_first_if(';');
  return true;
}

void AppendSharedEntry(String &text, const String &marked_path) {
  if (!text.is_empty())
    text += ';';
  text += '"';
  text += marked_path;
  text += '"';
}

void CountSharedFiles(InstallNotes &notes, const String &earlier, bool is_reinstall) {
  if (!HasInstallFlag(IF_UNINSTALL))
    return;
  RegistryKey counts;
  if (!counts.OpenSoftware(kSharedFileKey, false)) {
    notes.shared_files = earlier;
    counts.refused = true;
  } else {
    if (is_reinstall)
      TakeBackEarlierCounts(counts, earlier);
    CountAll(counts, notes);
  }
  if (counts.refused)
    notes.journal.error_report += "Registry error: unable to increment shared file reference counts.\r\n\r\n";
}

bool ReleaseSharedFiles(String files) {
  RegistryKey counts;
  if (!counts.OpenSoftware(kSharedFileKey, false))
    return false;
  SharedEntry entry;
  while (TakeSharedEntry(files, entry))
    if (IsLastReference(counts, entry.path) && !entry.keep && NamesOnePlace(entry.path))
      RemoveSharedFile(entry);
  return true;
}

} // namespace korb
