// How a file becomes a decision stands in Placement.cpp; what the machine does about it stands here.
#include "engine/PlaceFiles.h"

#include "archive/PayloadRecord.h"
#include "core/MessagePump.h"
#include "core/RunValues.h"
#include "engine/FileError.h"
#include "engine/FileVersion.h"
#include "engine/PlaceFile.h"
#include "engine/Placement.h"
#include "engine/SystemFonts.h"
#include "files/Directories.h"
#include "files/DiskSpace.h"
#include "files/FileInfo.h"
#include "files/LastError.h"
#include "files/PathText.h"
#include "format/Kinds.h"
#include "format/Texts.h"
#include "system/PathVariables.h"
#include "system/SystemFolders.h"
#include "ui/Progress.h"
#include "ui/TextLookup.h"

namespace korb {

namespace {

constexpr int32_t kLargeFile = 0x10000; ///< bytes; checking and writing a larger one may take longer than a frame

class MachineHost final : public PlacementHost {
public:
  String FontFolder() override { return Once(font_folder_, korb::FontFolder); }
  String SystemFolder() override { return Once(system_folder_, korb::SystemFolder); }
  void ExpandPathVariables(String &text) override { korb::ExpandPathVariables(text); }
  bool FileExists(const String &path) override { return korb::FileExists(path); }
  bool GetFileModified(const String &path, FileDate &date) override { return korb::GetFileModified(path, date); }
  String ReadFileVersion(const String &path) override { return korb::ReadFileVersion(path, true); }

private:
  /// A folder is asked for at its first file: the answer stands in the registry and costs more than a file's record.
  static const String &Once(String &folder, String (*find)()) {
    if (folder.is_empty())
      folder = find();
    return folder;
  }

  String font_folder_;
  String system_folder_;
};

class FilePlacer {
public:
  explicit FilePlacer(InstallNotes &notes) : notes_(notes) {}

  void Place(const PayloadRecord &record);
  bool fonts_changed() const { return fonts_changed_; }

private:
  bool MakeDirectory(const PayloadRecord &record, const String &path);
  bool AddFont(const PayloadRecord &record, const Destination &to);

  InstallNotes &notes_;
  MachineHost host_;
  String last_directory_; // known to exist
  bool is_directory_listed_ = false;
  bool fonts_changed_ = false;
};

/// Makes the directory of `path` and lists it for the uninstall. InstallDir itself is there already, and its end is the
/// uninstaller's own business.
bool FilePlacer::MakeDirectory(const PayloadRecord &record, const String &path) {
  const String directory = DirectoryPart(path);
  if (directory.compare(InstallDir.c_str(), false) == 0)
    return true;
  // Files of one directory come one after the other, and asking for it costs more than a small file's write.
  if (directory.is_empty() || directory != last_directory_) {
    if (!CreateDirectoryTree(directory)) {
      const String reason = LastErrorText();
      notes_.journal.error_report.append_format("%s %s\r\n%s\r\nNot installed: %s\r\n\r\n",
                                                TextLookup(kTextDirectoryFailed), directory, reason, path);
      return false;
    }
    last_directory_ = directory;
    is_directory_listed_ = false;
  }
  if (!is_directory_listed_ && IsListedAtUninstall(record) && !HasInstallFlag(IF_NO_UNINSTALL_RECORDS)) {
    notes_.uninstall_list.AddUninstallEntry(directory, kUninstallDirectory);
    is_directory_listed_ = true;
  }
  return true;
}

bool FilePlacer::AddFont(const PayloadRecord &record, const Destination &to) {
  if (!AddSystemFont(to.name)) {
    AppendFileError(notes_.journal.error_report, to.path);
    return false;
  }
  if ((record.file_flags & FF_KEEP) == 0)
    notes_.product_fonts.append_format("\"%s\" \"%s\" ", record.label, to.name);
  fonts_changed_ = true;
  return true;
}

/// The order is the uninstaller's and the next run's: a reference is counted and a shortcut wanted for a file that is
/// then not written, and a file is listed before its write, so that a failed one is undone too.
void FilePlacer::Place(const PayloadRecord &record) {
  const Destination to = ChooseDestination(record, notes_.uninstall_dir, host_);
  NoteSharedFile(record, to.path, notes_);
  bool replaces = false;
  if (!IsWanted(record, to.path, host_, notes_, replaces))
    return;
  if (!OnFixedDrive(to.path))
    ShowPendingProgress(); // a slow drive, or one that waits for its disk
  NoteShortcut(record, to.path, notes_);
  if (to.in_install_tree && !MakeDirectory(record, to.path))
    return;
  if (IsListedAtUninstall(record) && !HasInstallFlag(IF_NO_UNINSTALL_RECORDS))
    notes_.uninstall_list.AddUninstallEntry(to.path, kUninstallFile);
  if (!PlaceFile({to.path, record.contents, record.size, record.date, record.attributes, replaces}, notes_.journal))
    return;
  if (RowOf(record.dest_kind).folder == KindFolder::Fonts && !AddFont(record, to))
    return;
  SetStepTextFormat("%s -> %s", to.name, to.path);
  if (HasInstallFlag(IF_VERBOSE_LOG))
    notes_.journal.log_text.append_format("%s -> %s\r\n", to.name, to.path);
}

} // namespace

void PlaceFiles(ArchiveCursor &cursor, const Vector<int32_t> &sizes, InstallNotes &notes) {
  FilePlacer placer(notes);
  for (int32_t i = 0; i < sizes.count; ++i) {
    SetProgress(45 + static_cast<int32_t>(int64_t{i} * 40 / sizes.count));
    if (sizes.at(i) > kLargeFile)
      ShowPendingProgress();
    PayloadRecord record;
    ReadPayloadRecord(cursor, sizes.at(i), record);
    placer.Place(record);
  }
  if (placer.fonts_changed()) {
    ShowPendingProgress(); // any window of the system may keep this waiting
    TellOfFonts();
  }
  SetProgress(87);
}

} // namespace korb
