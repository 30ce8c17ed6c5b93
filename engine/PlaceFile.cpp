#include "engine/PlaceFile.h"

#include "core/Failure.h"
#include "core/RunValues.h"
#include "core/Windows.h"
#include "engine/FileError.h"
#include "files/Attributes.h"
#include "files/DeferredFiles.h"
#include "files/DiskFile.h"
#include "files/DiskSpace.h"
#include "files/LastError.h"
#include "files/ProgramPaths.h"
#include "files/TempFiles.h"
#include "files/WholeFile.h"
#include "format/Damage.h"
#include "format/Texts.h"
#include "format/Words.h"
#include "ui/TextLookup.h"

namespace korb {

namespace {

constexpr int32_t kAttempts = 3;

/// What a file is dated until it is whole. A run that ends before that, or a full disk, leaves a part that any other
/// version of the file is newer than: with the present date, it would be kept.
const FileDate kUnfinished{1980, 1, 1, 0, 0, 0};

enum class WriteResult { Written, Damaged, Refused };

/// Leaves `file` closed when the bytes are on disk, Written or Damaged. Refused leaves the system's last error.
///
/// On a fixed drive the date is given by the handle that writes: opening a small file again costs as much as its write.
/// Elsewhere what comes late could put the present time over it, so all is on its way before the date is set. A file
/// that is read back is opened again everywhere, since one that turns out damaged must not look like the right file.
WriteResult WriteBytes(DiskFile &file, const NewFile &wanted) {
  WriteResult result = WriteResult::Refused;
  for (int32_t attempt = 1; attempt <= kAttempts; ++attempt) {
    const bool opened = file.Open(wanted.path, DF_CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL) == OPEN_OK;
    if (wanted.date.has_date())
      file.SetModified(kUnfinished, false);
    if (!opened || !file.Write(wanted.data, wanted.size)) {
      result = WriteResult::Refused;
      if (attempt == 1 && HasInstallFlag(IF_CLEAR_ATTRIBUTES)) {
        file.Close();
        ClearAttributes(wanted.path, kProtectiveAttributes);
      }
      continue;
    }
    const bool again = !OnFixedDrive(wanted.path);
    if (again || HasInstallFlag(IF_VERIFY_WRITES)) {
      file.Close();
      if (HasInstallFlag(IF_VERIFY_WRITES) && !FileMatches(wanted.data, wanted.size, wanted.path)) {
        result = WriteResult::Damaged;
        continue;
      }
      if (wanted.date.has_date())
        file.Open(wanted.path, DF_OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL);
    }
    if (wanted.date.has_date())
      file.SetModified(wanted.date, again);
    file.Close();
    return WriteResult::Written;
  }
  return result;
}

/// Has the system put the bytes in place at its next start; tells in `message` what came of it. True when it will.
bool ReplaceAtRestart(const NewFile &wanted, String &message) {
  const String temporary = ShortPath(TempFileName(nullptr));
  const bool written = WriteWholeFile(temporary, wanted.data, wanted.size);
  if (!written || !MoveOrSchedule(temporary, wanted.path, MV_AT_RESTART)) {
    if (written)
      message.append_format("Failed to register '%s' for replacement: %s\r\n", wanted.path, LastErrorText());
    DeleteOrSchedule(temporary);
    return false;
  }
  InstallFlags |= IF_REBOOT_NEEDED;
  message.append_format("%s has been successfully registered for replacement.\r\nTemporary file is %s\r\nReboot will "
                        "be required.\r\n\r\n",
                        wanted.path, temporary);
  return true;
}

/// `file` may still be open, and its failure is the system's last error.
///
/// It is open when the disk took only a part of it, as a full one does. A part would pass for the file, and leave no
/// room for the log that tells of it.
void HandleRefusal(DiskFile &file, const NewFile &wanted, Journal &journal) {
  const String reason = LastErrorText();
  const bool is_part = file.IsOpen();
  // Our own handle would keep the system from replacing the file.
  file.Close();
  if (is_part)
    DeleteOrSchedule(wanted.path);
  String message(TextLookup(kTextFileFailed));
  message += ' ';
  message += wanted.path;
  message += "\r\n";
  if (!reason.is_empty()) {
    message += reason;
    message += "\r\n";
  }
  const bool waits = (wanted.may_wait || HasInstallFlag(IF_REPLACE_IN_USE)) && ReplaceAtRestart(wanted, message);
  (waits ? journal.log_text : journal.error_report) += message;
}

} // namespace

bool PlaceFile(const NewFile &wanted, Journal &journal) {
  if (wanted.size < 0)
    CorruptInstaller(DamageCode::FileDataSize);
  DiskFile file;
  switch (WriteBytes(file, wanted)) {
  case WriteResult::Written:
    break;
  case WriteResult::Damaged:
    // No call of the system failed, so there are no words of its own to show.
    ClearLastError();
    AppendFileError(journal.error_report, wanted.path);
    return false;
  case WriteResult::Refused:
    HandleRefusal(file, wanted, journal);
    return false;
  }
  ChangeAttributes(wanted.path, wanted.attributes, kSettableAttributes);
  return true;
}

} // namespace korb
