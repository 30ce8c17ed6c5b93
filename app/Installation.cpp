#include "app/Installation.h"

#include "app/DialogPayloadHost.h"
#include "app/DirectoryStep.h"
#include "app/Gates.h"
#include "app/MachineConfigHost.h"
#include "archive/ArchiveHeader.h"
#include "archive/ArchiveLocation.h"
#include "archive/ConfigStream.h"
#include "archive/DiskArchiveFile.h"
#include "archive/LoadedImage.h"
#include "archive/Payload.h"
#include "archive/UninstallerImage.h"
#include "core/Failure.h"
#include "core/MemoryStream.h"
#include "core/RunValues.h"
#include "core/Windows.h"
#include "engine/Associations.h"
#include "engine/FileError.h"
#include "engine/InstallLog.h"
#include "engine/InstallNotes.h"
#include "engine/InstalledProduct.h"
#include "engine/OldFiles.h"
#include "engine/PlaceFiles.h"
#include "engine/SelfRegistration.h"
#include "engine/SharedFiles.h"
#include "engine/Shortcuts.h"
#include "engine/Uninstaller.h"
#include "files/Directories.h"
#include "files/PathText.h"
#include "files/ProgramPaths.h"
#include "files/RunProcess.h"
#include "format/Texts.h"
#include "system/BatchRunner.h"
#include "system/ExitSystem.h"
#include "system/SearchPath.h"
#include "ui/BackgroundWindow.h"
#include "ui/LanguageDialog.h"
#include "ui/PageDialog.h"
#include "ui/Progress.h"
#include "ui/Questions.h"
#include "ui/TextLookup.h"

namespace korb {

namespace {

/// An installation as its phases. One that is a single call stands in Run as that call, which shows what it is given;
/// a longer one is a method of its own.
class Installation {
public:
  explicit Installation(DiskFile &own_file) : file_(own_file) {}

  [[noreturn]] void Run(const String &run_after);

private:
  void ReadArchive();
  void FindEarlierInstallation();
  void ShowPages();
  void SettleDirectory();
  void OpenProgress();
  void GatherPayload();
  void MakeUninstallDirectory();
  void NameUninstaller();
  void SaveBackground();
  void EditSearchPath();
  void LeaveUninstaller();
  void LeaveUninstallData();
  void RunInstallBatch(const String &script, uint64_t hide);
  void Wait() { WaitPhase(config_.min_phase_ms); }
  void RemoveEmptyDirectories();
  [[noreturn]] void End(bool restart, const String &run_after);

  DiskArchiveFile file_;
  ArchiveCursor cursor_;
  ArchiveHeader header_;
  ArchiveLocation location_;
  String payload_;           // holds the payload when it does not stay in the loaded image
  String uninstaller_image_; // the executable without its archive, which becomes the product's uninstaller
  EarlierInstallation earlier_;
  InstallNotes notes_;
  InstallConfig config_;
};

/// The uninstaller's image is made although most runs may never write it: a file that is cut off must end the run
/// before the user has answered anything.
void Installation::ReadArchive() {
  location_ = LocateArchive(file_);
  cursor_ = SectionCursor(location_, OwnImage());
  ReadArchiveHeader(cursor_, header_);
  config_.looks = SystemLooks();
  MachineConfigHost host(config_.looks);
  MemoryStream stream;
  DecodeConfig(cursor_, header_, stream, host);
  ReadConfigStream(stream, location_.file_size, host, config_);
  BuildUninstallerImage(file_, location_, header_, config_, uninstaller_image_);
}

void UseLanguage(int32_t language) {
  LanguageIndex = language;
  ShowMainTitle();
}

void Installation::FindEarlierInstallation() {
  if (HasInstallFlag(IF_UNINSTALL))
    earlier_.Find(config_.uninstall_name);
}

void Installation::ShowPages() {
  if (!AutomaticMode) {
    ShowLicensePages(config_.license_pages);
    ShowReadmePages(config_.readme_pages);
  }
  config_.license_pages.clear();
  config_.readme_pages.clear();
}

/// A silent run, and an archive that asks for no dialog, take the directory as it comes: whether it can be made shows
/// in the first file.
void Installation::SettleDirectory() {
  if (InstallDir.is_empty())
    InstallDir = config_.default_install_dir;
  if (AutomaticMode || !HasInstallFlag(IF_ASK_DIRECTORY))
    CreateDirectoryTree(InstallDir);
  else
    AskDirectory(header_.sizes);
}

/// Whether a batch could be run is its author's business: no report tells the user. The log does, but for the last one,
/// as it is written by then.
void Installation::RunInstallBatch(const String &script, uint64_t hide) {
  RunBatch(InstallDir, script, HasInstallFlag(hide), notes_.journal.log_text);
}

void Installation::OpenProgress() {
  CreateProgressDialog();
  SetStep(kTextStepPayload, 2);
}

void Installation::GatherPayload() {
  DialogPayloadHost host;
  AssemblePayload(file_, location_, header_, config_, ProgramDirectory, host, payload_, cursor_);
  // Placing the files shows no step text of its own.
  StartPhase();
}

void Installation::MakeUninstallDirectory() {
  notes_.uninstall_dir = PathJoin(InstallDir, config_.uninstall_subdir);
  if (!config_.uninstall_subdir.is_empty())
    CreateDirectoryTree(notes_.uninstall_dir);
}

/// Shortcuts to the uninstaller are made long before it is written.
void Installation::NameUninstaller() {
  if (!HasInstallFlag(IF_UNINSTALL))
    return;
  notes_.uninstaller_path = PathJoin(notes_.uninstall_dir, config_.uninstaller_name);
  notes_.uninstall_command.format("/u:\"%s\"", config_.uninstall_name);
}

/// Listed for removal even where it can't be written: an earlier installation may have left one there.
void Installation::SaveBackground() {
  if (BackgroundImage.is_empty() || !HasInstallFlag(IF_BACKGROUND_BITMAP))
    return;
  const String path = BackgroundBitmapPath(notes_.uninstall_dir);
  if (!BackgroundImage.save(path))
    AppendFileError(notes_.journal.log_text, path);
  notes_.uninstall_list.AddUninstallEntry(path, kUninstallFile);
}

void Installation::EditSearchPath() {
  if (HasInstallFlag(IF_EDIT_PATH))
    notes_.journal.error_report += EditAutoexecPath(true);
}

void Installation::LeaveUninstaller() {
  if (HasInstallFlag(IF_UNINSTALL))
    WriteUninstaller(config_, uninstaller_image_, notes_);
}

void Installation::LeaveUninstallData() {
  if (HasInstallFlag(IF_UNINSTALL) &&
      !WriteUninstallData(notes_.uninstall_dir, notes_.uninstall_list, notes_.association_lines))
    AppendFileError(notes_.journal.error_report, UninstallDataPath(notes_.uninstall_dir));
}

bool AskForRestart() {
  if (!HasInstallFlag(IF_REBOOT_NEEDED))
    return false;
  return AutomaticMode || AskYesNo(TextLookup(kTextRebootQuestion), kTextProductCaption);
}

void Installation::RemoveEmptyDirectories() {
  RemoveEmptyDirectory(CommonDir);
  RemoveEmptyDirectory(notes_.uninstall_dir);
  RemoveEmptyDirectory(InstallDir);
}

void Installation::End(bool restart, const String &run_after) {
  if (restart)
    ExitSystem(kExitRestart, false);
  else if (notes_.journal.error_report.is_empty() && !run_after.is_empty())
    RunProcess(run_after, RP_NONE, nullptr);
  ExitInstaller();
}

/// The order of the phases is the contract of this system: archives, uninstallers and authors' batches rely on what is
/// there at which moment.
void Installation::Run(const String &run_after) {
  ReadArchive();
  ChooseLanguage(UseLanguage);
  ShowMainTitle();
  RefuseExpired(config_);
  RefusePlatform(config_);
  RequireMasterProduct(config_);
  FindEarlierInstallation();
  if (!AutomaticMode && RunNotice())
    ExitInstaller();
  ShowPages();
  const bool is_reinstall = DecideOnReinstall(earlier_, config_.version);
  if (!is_reinstall)
    SettleDirectory();
  RunInstallBatch(config_.pre_install_batch, IF_HIDE_PRE_BATCH);

  // From here on the user is asked before a cancel, and nothing that is done is undone.
  OpenProgress();
  GatherPayload();
  MakeUninstallDirectory();
  DeleteOldFiles(config_.deletions, notes_.journal);
  PlaceFiles(cursor_, header_.sizes, notes_);
  CountSharedFiles(notes_, earlier_.shared_files, is_reinstall);
  RegisterComFiles(notes_.com_file_list, notes_.journal.log_text);
  Wait();

  SetStep(kTextStepShortcuts, 90);
  NameUninstaller();
  AddUninstallerShortcut(notes_);
  const bool desktop_shortcut_made = MakeShortcuts(config_, notes_);
  SetProgress(95);
  Wait();

  SaveBackground();
  CreateProductKeys(config_.product_registry, notes_.journal);
  RegisterAssociations(config_.associations, notes_);
  EditSearchPath();
  LeaveUninstaller();
  Wait();

  SetStep(kTextStepRecord, 100);
  LeaveUninstallData();
  RunInstallBatch(config_.post_install_batch, IF_HIDE_POST_BATCH);
  if (desktop_shortcut_made)
    TellShellOfShortcuts(config_);
  Wait();
  DestroyProgressDialog();

  WriteInstallLog(config_, notes_, is_reinstall, true);
  const bool restart = AskForRestart();
  RunInstallBatch(config_.final_batch, IF_HIDE_FINAL_BATCH);
  RemoveEmptyDirectories();
  End(restart, run_after);
}

} // namespace

void RunInstallation(DiskFile &own_file, const String &run_after) {
  static Installation run(own_file); // the code that reaches its fields is shorter than for one on the stack
  run.Run(run_after);
}

} // namespace korb
