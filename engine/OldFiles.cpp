#include "engine/OldFiles.h"

#include "core/Clock.h"
#include "core/RunValues.h"
#include "engine/DeletionRule.h"
#include "files/Attributes.h"
#include "files/DeferredFiles.h"
#include "files/FileInfo.h"
#include "files/LastError.h"
#include "files/PathText.h"
#include "format/Words.h"
#include "system/PathVariables.h"

namespace korb {

namespace {

void DeleteOldFile(const char *name, bool may_wait, Journal &journal) {
  ClearAttributes(name, kProtectiveAttributes);
  if (DeleteOrSchedule(name)) {
    journal.log_text.append_format("Deleted file: %s\r\n", name);
    return;
  }
  if (!may_wait) {
    journal.log_text.append_format("Failed to delete file '%s': %s\r\n", name, LastErrorText());
    return;
  }
  // The line comes before the attempt, so that the log tells why the file had to wait.
  journal.log_text.append_format("File '%s' will be deleted after rebooting: %s\r\n", name, LastErrorText());
  if (DeleteOrSchedule(name, DEL_AT_RESTART))
    InstallFlags |= IF_REBOOT_NEEDED;
  else
    journal.error_report.append_format("Failed to register '%s' for deletion: %s\r\n", name, LastErrorText());
}

} // namespace

void DeleteOldFiles(Vector<FileDeletion> &records, Journal &journal) {
  for (int32_t i = 0; i < records.count; ++i) {
    FileDeletion &record = records.at(i);
    ExpandPathVariables(record.name);
    NormalisePath(record.name, InstallDir);
    FileInfo info;
    if (GetFileInfo(record.name, &info) && IsDeletionDue(record, info.modified, info.size, today().year))
      DeleteOldFile(record.name, (record.options & kDeleteAtRestart) != 0, journal);
  }
}

} // namespace korb
