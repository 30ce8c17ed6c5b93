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
#include "archive/RunValues.h"
#include "archive/UninstallerImage.h"
#include "core/Failure.h"
#include "core/MemoryStream.h"
#include "core/RunMode.h"
#include "core/Windows.h"
#include "engine/Associations.h"
#include "engine/FileError.h"
#include "engine/InstallLog.h"
#include "engine/InstalledProduct.h"
#include "engine/OldFiles.h"
#include "engine/PlaceFiles.h"
#include "engine/RecordNames.h"
#include "engine/RunLists.h"
#include "engine/SelfRegistration.h"
#include "engine/SharedFiles.h"
#include "engine/Shortcuts.h"
#include "engine/UninstallData.h"
#include "engine/UninstallList.h"
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
#include "ui/Notice.h"
#include "ui/PageDialog.h"
#include "ui/Progress.h"
#include "ui/TextLookup.h"
#include "ui/WindowHandles.h"

namespace korb {

namespace {

/// What passes between the phases and is nobody else's.
class Installation {
public:
  explicit Installation(DiskFile &own_file) : file_(own_file) {}

  void ReadArchive();
  void FindEarlierInstallation();
  void ShowPages();
  void SettleDirectory();
  void OpenProgress();
  void GatherPayload();
  void MakeUninstallDirectory();
  void PlaceAllFiles();
  void NameUninstaller();
  void LeaveUninstaller();
  void LeaveUninstallData();
  void Wait() { WaitPhase(config_.min_phase_ms); }
  void RunInstallBatch(const String &script, uint64_t hide);
  InstallConfig &config() { return config_; }
  Journal &journal() { return journal_; }
  const EarlierInstallation &earlier() const { return earlier_; }

private:
  DiskArchiveFile file_;
  ArchiveCursor cursor_;
  ArchiveHeader header_;
  ArchiveLocation location_;
  InstallConfig config_;
  EarlierInstallation earlier_;
  Journal journal_;
  String payload_; // holds the payload when it does not stay in the loaded image
};

/// The uninstaller's image is made although most runs may never write it: a file that is cut off must end the run
/// before the user has answered anything.
void Installation::ReadArchive() {
  location_ = LocateArchive(file_);
  cursor_ = SectionCursor(location_, OwnImage());
  ReadArchiveHeader(cursor_, header_);
  MachineConfigHost host;
  MemoryStream stream;
  DecodeConfig(cursor_, header_, stream, host);
  ReadConfigStream(stream, location_.file_size, host, config_);
  BuildUninstallerImage(file_, location_, header_, config_, UninstallerImage);
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
  if (IsReinstall)
    return;
  if (InstallDir.is_empty())
    InstallDir = config_.default_install_dir;
  if (AutomaticMode || !HasInstallFlag(IF_ASK_DIRECTORY))
    CreateDirectoryTree(InstallDir);
  else
    AskDirectory(header_.sizes);
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
  UninstallDir = PathJoin(InstallDir, UninstallSubdir);
  if (!UninstallSubdir.is_empty())
    CreateDirectoryTree(UninstallDir);
}

void Installation::PlaceAllFiles() {
  PlaceFiles(cursor_, header_.sizes, journal_);
}

/// Shortcuts to the uninstaller are made long before it is written.
void Installation::NameUninstaller() {
  if (!HasInstallFlag(IF_UNINSTALL))
    return;
  UninstallerPath = PathJoin(UninstallDir, config_.uninstaller_name);
  UninstallCommand = "/u:\"" + config_.uninstall_name + "\"";
}

void Installation::LeaveUninstaller() {
  if (HasInstallFlag(IF_UNINSTALL))
    WriteUninstaller(config_, journal_);
}

void Installation::LeaveUninstallData() {
  if (HasInstallFlag(IF_UNINSTALL) && !WriteUninstallData())
    AppendFileError(journal_.error_report, UninstallDataPath());
}

/// Listed for removal even where it can't be written: an earlier installation may have left one there.
void SaveBackground() {
  if (BackgroundImage.is_empty() || !HasInstallFlag(IF_BACKGROUND_BITMAP))
    return;
  const String path = BackgroundBitmapPath();
  BackgroundImage.save(path);
  AddUninstallEntry(path, kUninstallFile);
}

/// Whether a batch could be run is its author's business: no report tells the user. The log does, but for the last one,
/// as it is written by then.
void Installation::RunInstallBatch(const String &script, uint64_t hide) {
  RunBatch(InstallDir, script, HasInstallFlag(hide), journal_.log_text);
}

bool AskForRestart() {
  if (!HasInstallFlag(IF_REBOOT_NEEDED))
    return false;
  return AutomaticMode || MessageBoxA(DialogOwner(), TextLookup(kTextRebootQuestion), TextLookup(kTextProductCaption),
                                      MB_YESNO | MB_ICONQUESTION) == IDYES;
}

void RemoveEmptyDirectories() {
  RemoveEmptyDirectory(CommonDir);
  RemoveEmptyDirectory(UninstallDir);
  RemoveEmptyDirectory(InstallDir);
}

} // namespace

/// The order of the phases is the contract of this system: archives, uninstallers and authors' batches rely on what is
/// there at which moment.
void RunInstallation(DiskFile &own_file, const String &run_after) {
  Installation run(own_file);
  InstallConfig &config = run.config();
  Journal &journal = run.journal();
  run.ReadArchive();

  ChooseLanguage();
  ShowMainTitle();
  RefuseExpired(config);
  RefusePlatform(config);
  RequireMasterProduct(config);
  run.FindEarlierInstallation();
  if (!AutomaticMode && RunNotice())
    ExitInstaller();
  run.ShowPages();
  DecideOnReinstall(run.earlier());
  run.SettleDirectory();
  run.RunInstallBatch(config.pre_install_batch, IF_HIDE_PRE_BATCH);

  // From here on the user is asked before a cancel, and nothing that is done is undone.
  run.OpenProgress();
  run.GatherPayload();
  run.MakeUninstallDirectory();
  DeleteOldFiles(config.deletions, journal);
  run.PlaceAllFiles();
  CountSharedFiles(journal);
  RegisterComFiles(journal.log_text);

  run.Wait();
  SetStep(kTextStepShortcuts, 90);
  run.NameUninstaller();
  AddUninstallerShortcut();
  MakeShortcuts(config, journal);
  SetProgress(95);
  run.Wait();

  SaveBackground();
  CreateProductKeys(config.product_registry, journal);
  RegisterAssociations(config.associations, journal);
  if (HasInstallFlag(IF_EDIT_PATH))
    journal.error_report += EditAutoexecPath(true);
  run.LeaveUninstaller();
  run.Wait();
  SetStep(kTextStepRecord, 100);
  run.LeaveUninstallData();
  run.RunInstallBatch(config.post_install_batch, IF_HIDE_POST_BATCH);
  TellShellOfShortcuts(config);
  run.Wait();
  DestroyProgressDialog();

  WriteInstallLog(IsReinstall, true, journal);
  const bool restart = AskForRestart();
  run.RunInstallBatch(config.final_batch, IF_HIDE_FINAL_BATCH);
  RemoveEmptyDirectories();
  if (restart)
    ExitSystem(kExitRestart, false);
  else if (journal.error_report.is_empty() && !run_after.is_empty())
    RunProcess(run_after, RP_NONE, nullptr);
  ExitInstaller();
}

} // namespace korb
