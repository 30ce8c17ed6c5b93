#include "engine/SharedFiles.h"

#include "archive/RunValues.h"
#include "engine/RecordNames.h"
#include "engine/SharedEntry.h"
#include "format/Record.h"
#include "registry/RegistryKey.h"

namespace korb {

namespace {

/// A file that is in the new list too is counted again right after this, so a reinstall changes no count in the end.
void TakeBackEarlierCounts(RegistryKey &counts, String entries) {
  SharedEntry entry;
  while (TakeSharedEntry(entries, entry)) {
    const char *name = entry.path.c_str();
    const int32_t count = counts.ReadNumber(name, 0);
    if (count <= 1)
      counts.DeleteValue(name);
    else
      counts.WriteNumber(name, count - 1);
  }
}

} // namespace

void CountSharedFiles(InstallNotes &notes, const String &earlier, bool is_reinstall) {
  if (!HasInstallFlag(IF_UNINSTALL))
    return;
  RegistryKey counts;
  if (!counts.OpenSoftware(kSharedFileKey, false)) {
    notes.shared_files = earlier;
    notes.journal.error_report += "Registry error: unable to increment shared file reference counts.\r\n\r\n";
    return;
  }
  if (is_reinstall)
    TakeBackEarlierCounts(counts, earlier);
  for (int32_t i = 0; i < notes.shared_file_list.count; ++i) {
    const String &marked_path = notes.shared_file_list.at(i);
    const String name = ReadSharedEntry(marked_path).path;
    counts.WriteNumber(name, counts.ReadNumber(name, 0) + 1);
    AppendSharedEntry(notes.shared_files, marked_path);
  }
}

} // namespace korb
