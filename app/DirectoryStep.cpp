#include "app/DirectoryStep.h"

#include "app/DirectoryRules.h"
#include "core/Failure.h"
#include "core/Number.h"
#include "core/RunValues.h"
#include "core/Windows.h"
#include "files/Directories.h"
#include "files/DiskSpace.h"
#include "files/LastError.h"
#include "files/PathText.h"
#include "format/Texts.h"
#include "system/SystemFolders.h"
#include "ui/DirectoryDialog.h"
#include "ui/Questions.h"
#include "ui/TextLookup.h"

namespace korb {

namespace {

/// Reports what is wrong with the directory. True when something is.
bool IsRefused() {
  const String program_files = ProgramFilesFolder();
  const int32_t number =
      RefusalOf(InstallDir, {DriveExists(InstallDir), HasInstallFlag(IF_NO_UNC_PATHS), program_files});
  const char *text = TextLookup(number);
  switch (number) {
  case 0:
    return false;
  case kTextDirectoryIllegal:
    ReportError("%s\r\n%s", text, InstallDir);
    break;
  case kTextDriveMissing:
    ReportError(text, DriveLetter(InstallDir));
    break;
  case kTextDirectoryProgramFiles:
    ReportError(text, program_files);
    break;
  default:
    ReportError("%s", text);
  }
  return true;
}

/// True when there is room, or the user thinks so. A disk that is filled to its last byte is full, and one that can't
/// be asked has -1 bytes free.
bool AcceptsRoom(const Vector<int32_t> &sizes) {
  const char drive = DriveLetter(InstallDir);
  if (drive == 0)
    return true;
  const int64_t need = BytesOnDisk(sizes, ClusterSize(InstallDir));
  const int64_t room = DriveFreeBytes(InstallDir);
  return need < room ||
         AskYesNo(str_format(TextLookup(kTextDiskSpace), FormatByteSize(need), drive, FormatByteSize(room)),
                  kTextProductCaption, BoxIcon::Stop);
}

bool MakeDirectory() {
  if (CreateDirectoryTree(InstallDir))
    return true;
  // Taken first: looking a text up may change the system's last error.
  String text = LastErrorText();
  text = str_format("%s\r\n%s\r\n\r\n%s", TextLookup(kTextDirectoryFailed), InstallDir, text);
  text.trim_right();
  ReportError("%s", text);
  return false;
}

bool AcceptsDirectory(const Vector<int32_t> &sizes) {
  if (InstallDir.is_empty() || IsRefused() || !AcceptsRoom(sizes))
    return false;
  const bool exists = QuietDirectoryExists(InstallDir);
  if (HasInstallFlag(IF_CONFIRM_DIRECTORY) &&
      !AskYesNo(str_format(TextLookup(exists ? kTextDirectoryExists : kTextDirectoryMissing), InstallDir),
                kTextDirectoryCaption))
    return false;
  return exists || MakeDirectory();
}

} // namespace

void AskDirectory(const Vector<int32_t> &sizes) {
  do {
    if (!ChooseDirectory(InstallDir))
      CancelInstall();
    InstallDir.trim();
  } while (!AcceptsDirectory(sizes));
}

} // namespace korb
