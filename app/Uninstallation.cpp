#include "app/Uninstallation.h"

#include "core/Failure.h"
#include "core/MessagePump.h"
#include "core/RunValues.h"
#include "engine/DirectoryGuard.h"
#include "engine/RemoveFiles.h"
#include "engine/RemoveFonts.h"
#include "engine/RemoveSelf.h"
#include "engine/RestoreAssociations.h"
#include "engine/SharedFiles.h"
#include "engine/UninstallRecord.h"
#include "engine/Uninstaller.h"
#include "files/DeferredFiles.h"
#include "files/Directories.h"
#include "files/DiskFile.h"
#include "files/FileInfo.h"
#include "files/PathText.h"
#include "files/ProgramPaths.h"
#include "files/WholeFile.h"
#include "format/Record.h"
#include "format/Texts.h"
#include "registry/RegistryKey.h"
#include "system/BatchRunner.h"
#include "system/SearchPath.h"
#include "system/SystemFolders.h"
#include "ui/BackgroundWindow.h"
#include "ui/Progress.h"
#include "ui/Questions.h"
#include "ui/TextLookup.h"
#include "ui/WindowHandles.h"

namespace korb {

namespace {

constexpr int32_t kPhaseMs = 500; ///< shortest time that a phase stays readable
constexpr int32_t kMaxLevels = 20;
constexpr int32_t kLongestInLine = 8000; ///< characters; the interpreter gives up a batch at 8,192

/// Folders of all products, of the user and of all users. No product is one of them, or has one in itself.
constexpr String (*kNobodysOwn[])() = {ProgramFilesFolder, CommonFilesFolder,       DocumentFolder,
                                       DesktopFolder,      StartMenuProgramsFolder, StartMenuProgramsAllFolder};

void Wait() {
  WaitPhase(kPhaseMs);
}

/// Nothing has changed by then, so a later run can do it all.
[[noreturn]] void RefuseCorrupt() {
  ReportError("The uninstall information for %s is corrupt.\r\n\r\nThe uninstallation cannot be performed.",
              ProductName);
  ExitInstaller();
}

/// An uninstall run as its phases.
class Uninstallation {
public:
  explicit Uninstallation(const String &name) : name_(name) {}

  [[noreturn]] void Run();

private:
  bool Open();
  void ReadValues();
  void ShowWindow();
  void ReadRecord();
  void Ask();
  void RunFirstBatch();
  void UndoAssociations();
  void UndoFonts();
  void UndoFiles();
  void RewriteRecord();
  void RemoveStartMenuGroup();
  void UndoSharedFiles();
  void RemoveProductKeys();
  void RemoveWholeDirectory();
  void RemoveRecord();
  bool Finish();

  void Read(String &text, const char *value) const { key_.ReadString(text, value, ""); }
  void RunBatchOnce(const char *value, const String &directory, uint64_t hide_flag);
  void RemoveKeyUpward(String path, bool current_user);

  const String &name_;
  RegistryKey key_;
  Looks looks_ = SystemLooks();
  String uninstall_subdir_; // relative to InstallDir
  String uninstall_dir_;
  String fonts_;
  bool for_all_users_ = false;
  UninstallRecord record_;
  String report_;      // what could not be removed, for the user
  UninstallList left_; // and for a second run
};

/// The archive's flags are not known before the key has told them, so these reports show unless /a was typed.
bool Uninstallation::Open() {
  const String path = PathJoin(kUninstallKeys, name_);
  if (!RegistryKey::SoftwareKeyExists(path, false)) {
    ReportError("No product named '%s' is installed.", name_);
    return false;
  }
  if (key_.OpenSoftware(path, false) == KEY_NOT_OPENED) {
    ReportError("Unable to access the uninstall information for:\r\n%s\r\n\r\nThe uninstallation cannot be performed.",
                ProductName);
    return false;
  }
  Read(ProductName, product_value::kDisplayName);
  if (IsBlank(ProductName))
    ProductName = name_;
  Read(InstallDir, product_value::kInstallLocation);
  Read(uninstall_subdir_, product_value::kUninstallSubdir);
  uninstall_dir_ = PathJoin(InstallDir, uninstall_subdir_);
  // Both get into lines of batches, which no directory's name can end.
  if (IsBlank(InstallDir) || uninstall_dir_.find_any("\"\r\n") >= 0 || uninstall_dir_.length() > kLongestInLine)
    RefuseCorrupt();
  String flags;
  Read(flags, product_value::kProductFlags);
  InstallFlags = static_cast<uint64_t>(flags.to_int64());
  if (HasInstallFlag(IF_AUTOMATIC_UNINSTALL))
    AutomaticMode = true;
  return true;
}

/// What is missing keeps the system's colours.
void Uninstallation::ReadValues() {
  Read(MainTitle, product_value::kDisplayTitle);
  const auto color = [this](uint32_t &looks, const char *value) {
    looks = static_cast<uint32_t>(key_.ReadNumber(value, static_cast<int32_t>(looks)));
  };
  color(looks_.title_color, product_value::kTitleColor);
  color(looks_.top_color, product_value::kTopColor);
  color(looks_.bottom_color, product_value::kBottomColor);
  looks_.mono_color = key_.ReadBoolean(product_value::kMonoColor, looks_.mono_color);
  looks_.title_shadow = static_cast<uint8_t>(key_.ReadNumber(product_value::kTitleShadow, looks_.title_shadow));
  Read(fonts_, product_value::kProductFonts);
  for_all_users_ = key_.ReadNumber(product_value::kShortcutMode, 0) == kShortcutsForAllUsers;
  if (key_.refused)
    RefuseCorrupt();
}

/// Made before the record is read, so without any text of the archive's.
void Uninstallation::ShowWindow() {
  if (HasInstallFlag(IF_BACKGROUND_BITMAP))
    BackgroundImage.load(BackgroundBitmapPath(uninstall_dir_));
  if (!HasInstallFlag(IF_NO_WINDOW))
    CreateMainWindow(InstanceHandle, nullptr, looks_);
}

/// Without the file there is nothing to delete by name, and no text to show; the rest is undone all the same. One that
/// is there and can't be read would be lost with all that it tells.
void Uninstallation::ReadRecord() {
  String text;
  const String path = UninstallDataPath(uninstall_dir_);
  if (ReadWholeFile(path, text) == OPEN_OK)
    ReadUninstallRecord(text, record_);
  else if (FileExists(path))
    RefuseCorrupt();
}

void Uninstallation::Ask() {
  if (!AutomaticMode && !AskYesNo(TextLookup(kTextUninstallQuestion), kTextUninstallTitle))
    ExitInstaller();
  CreateProgressDialog();
  Read(CommonDir, product_value::kSharedPath);
}

/// A second run, after one that left something behind, doesn't run it again, not even one that could not be started:
/// no run of this kind writes the log, and the report is kept for what could not be removed.
void Uninstallation::RunBatchOnce(const char *value, const String &directory, uint64_t hide_flag) {
  String script;
  Read(script, value);
  if (script.is_empty())
    return;
  String log; // for nobody
  RunBatch(directory, script, HasInstallFlag(hide_flag), log);
  key_.DeleteValue(value);
}

void Uninstallation::RunFirstBatch() {
  RunBatchOnce(product_value::kUninstallBatch1, InstallDir, IF_HIDE_UNINSTALL_BATCH1);
}

void Uninstallation::UndoAssociations() {
  if (record_.associations.is_empty())
    return;
  SetStep(kTextStepAssociations, 1);
  RestoreAssociations(record_.associations);
  Wait();
}

void Uninstallation::UndoFonts() {
  if (fonts_.is_empty())
    return;
  SetStep(kTextStepFonts, 5);
  RemoveFonts(key_, fonts_);
  Wait();
}

void Uninstallation::UndoFiles() {
  RemoveListedFiles(record_.entries, report_, left_);
  Wait();
}

/// A later run finds what stayed, and nothing else: associations are undone by now.
void Uninstallation::RewriteRecord() {
  SetStep(kTextStepSharedFiles, 90);
  DeleteOrSchedule(InstallLogPath(uninstall_dir_));
  WriteUninstallData(uninstall_dir_, left_, "");
}

void Uninstallation::RemoveStartMenuGroup() {
  String group;
  Read(group, product_value::kProductStartMenu);
  String path = PathJoin(for_all_users_ ? StartMenuProgramsAllFolder() : StartMenuProgramsFolder(), group);
  for (int32_t level = 0; level < kMaxLevels && RemoveEmptyDirectory(path); ++level) {
    path.remove_last_if('\\');
    if (!CutToDirectory(path))
      break;
  }
}

void Uninstallation::UndoSharedFiles() {
  String files;
  Read(files, product_value::kSharedFiles);
  if (!files.is_empty() && !ReleaseSharedFiles(files))
    report_ += "REGISTRY ERROR:  Unable to adjust shared file reference counts.\r\n\r\n";
  RemoveEmptyDirectory(CommonDir);
  Wait();
}

/// The product's key goes with all that it holds, the keys above it only where that leaves them empty.
void Uninstallation::RemoveKeyUpward(String path, bool current_user) {
  RegistryOptions options = RK_NONE;
  for (int32_t level = 0; level < kMaxLevels; ++level) {
    path.remove_last_if('\\');
    if (path.is_empty() || key_.DeleteSoftwareKey(path, current_user, options) != DELETE_DONE || !CutToDirectory(path))
      break;
    options = RK_ONLY_IF_EMPTY;
  }
}

/// A key that holds the list of all products, or all types, is none of a product.
void Uninstallation::RemoveProductKeys() {
  SetStep(kTextStepRegistry, 95);
  String path;
  Read(path, product_value::kProductRegistry);
  while (path.replace("\\\\", "\\", FIND_IGNORE_CASE) > 0) // which the system takes for one
    ;
  path.remove_first_if('\\');
  path.remove_last_if('\\');
  if (!path.is_empty() && !Holds(path, kUninstallKeys) && !Holds(path, "Classes")) {
    RemoveKeyUpward(path, false);
    RemoveKeyUpward(path, true);
    key_.DeleteValue(product_value::kProductRegistry);
  }
  Wait();
}

/// The name that was recorded is judged first, so that nothing is taken for a place near where the run stands; then
/// the system's, since a short name, a link or another drive may lead to what is guarded. The recorded one is deleted:
/// the system's may have lost characters that the code page lacks.
void Uninstallation::RemoveWholeDirectory() {
  if (!HasInstallFlag(IF_NO_UNINSTALL_RECORDS))
    return;
  ShowPendingProgress();
  const String directory = SystemName(InstallDir), windows = SystemName(WindowsDirectory);
  for (String (*const folder)() : kNobodysOwn) {
    String place = folder();
    if (!MayDeleteWhole(InstallDir, WindowsDirectory, place))
      return;
    place = SystemName(place);
    if (!MayDeleteWhole(directory, windows, place))
      return;
  }
  DeleteDirectoryTree(InstallDir);
}

/// Only when all is undone: else they tell a second run what is left. A product that is still listed keeps its
/// uninstaller, or nobody could take it off the list.
void Uninstallation::RemoveRecord() {
  if (!report_.is_empty())
    return;
  DeleteOrSchedule(UninstallDataPath(uninstall_dir_));
  if (HasInstallFlag(IF_EDIT_PATH)) {
    const String complaint = EditAutoexecPath(false);
    if (!AutomaticMode)
      ReportError("%s", complaint);
  }
  RunBatchOnce(product_value::kUninstallBatch2, PathRoot(InstallDir), IF_HIDE_UNINSTALL_BATCH2);
  if (key_.DeleteSoftwareChild(kUninstallKeys, name_, false) != DELETE_DONE)
    report_.append_format("%s %s\r\n", TextLookup(kTextRemoveFailed), name_);
}

/// True when nothing is left.
bool Uninstallation::Finish() {
  key_.Close();
  DestroyProgressDialog();
  const bool done = report_.is_empty();
  if (AutomaticMode)
    return done;
  const HWND owner = DialogOwner(); // the user may have closed the background
  if (done)
    MessageBoxA(owner, TextLookup(kTextUninstalled), TextLookup(kTextUninstalledCaption), MB_ICONINFORMATION);
  else
    MessageBoxA(owner, str_format(TextLookup(kTextUninstallIncomplete), report_), TextLookup(kTextProductCaption),
                MB_ICONWARNING);
  return done;
}

/// The order counts: batches and registered files find the product still there, and the key that tells all goes last.
void Uninstallation::Run() {
  if (!Open())
    ExitInstaller();
  ReadValues();
  ShowWindow();
  ReadRecord();
  Ask();
  RunFirstBatch();
  UndoAssociations();
  UndoFonts();
  UndoFiles();
  RewriteRecord();
  RemoveStartMenuGroup();
  UndoSharedFiles();
  RemoveProductKeys();
  RemoveWholeDirectory();
  RemoveRecord();
  if (Finish())
    RemoveSelf(uninstall_subdir_);
  ExitInstaller();
}

} // namespace

void RunUninstall(const String &name) {
  static Uninstallation run(name); // the code that reaches its fields is shorter than for one on the stack
  run.Run();
}

} // namespace korb
