#include "packer/check/FileCheck.h"

#include <algorithm>
#include <iterator>
#include <map>

#include "core/Text.h"
#include "format/Kinds.h"
#include "format/Record.h"
#include "format/Texts.h"
#include "format/Words.h"
#include "packer/CodePage.h"
#include "packer/FontFile.h"
#include "packer/PeResources.h"
#include "packer/Words.h"
#include "packer/check/TextRules.h"
#include "packer/check/VariableCheck.h"

namespace korb::packer {

namespace {

constexpr size_t kMaxPath = 259;
constexpr int32_t kFirstYear = 1601;
constexpr char kHome[] = "%installdir%\\";

// `path` with each "\\.." taken out that has a folder in front.
std::string WithoutWaysUp(std::string path) {
  for (size_t up, before; (up = path.find("\\..\\")) != path.npos && up > 0; path.erase(before, up + 3 - before))
    if ((before = path.rfind('\\', up - 1)) == path.npos)
      break;
  return path;
}

class FileChecker {
public:
  FileChecker(const Product &product, Findings &findings) : product_(product), findings_(findings) {
    for (const Deletion &deletion : product.deletions)
      deleted_.emplace(KeyOf(PathBelow(deletion.name, kHome)), &deletion);
  }

  void Check(const FileEntry &file) {
    file_ = &file;
    has_path_ = file.target.find('\\') != file.target.npos;
    name_ = file.target.empty() || has_path_ ? file.name : file.target;
    CheckName();
    CheckTarget();
    CheckKind();
    CheckShortcut();
    CheckDate();
    if (file.attributes & ~kSettableAttributes)
      Warn(Warning::kUnsettableAttributes, "only the attributes 0x1127 are given to a file");
    const std::string destination = KeyOf(Destination());
    CheckTwice(destination);
    CheckDeleted(destination);
  }

  // What only all files together show.
  void CheckIcons() {
    for (const FileEntry *file : icons_)
      if (!seen_.contains(KeyOf(WithoutWaysUp(InUninstallDir(file->icon)))))
        findings_.Warn(file->place, Warning::kMissingIcon,
                       "file '" + file->name + "': no file of the product is its icon '" + file->icon +
                           "' in the uninstaller's directory, to which it is relative");
  }

private:
  void Error(const std::string &message) { findings_.Error(file_->place, "file '" + file_->name + "': " + message); }
  void Warn(Warning warning, const std::string &message, std::vector<Note> notes = {}) {
    findings_.Warn(file_->place, warning, "file '" + file_->name + "': " + message, std::move(notes));
  }

  // None for what has no place.
  static std::vector<Note> NoteAt(const Place &place, std::string message) {
    return place.line == 0 ? std::vector<Note>() : std::vector<Note>{{place, std::move(message)}};
  }

  // By which two names in the product's code page are compared: the same for what is one file to Windows.
  std::string KeyOf(const std::string &path) const { return CapitalLetters(FromCodePage(path, product_.code_page)); }

  bool Is(uint32_t kind) const { return file_->kind == kind; }
  const KindRow &Kind() const { return RowOf(file_->kind); }
  bool WantsShortcut() const {
    return Kind().shortcuts == KindShortcuts::InStartupFolder ||
           (Kind().shortcuts == KindShortcuts::AsAsked && (file_->flags & FF_SHORTCUTS));
  }

  void CheckName() {
    if (file_->name.empty())
      return Error("it has no name");
    if (HoldsIllegalCharacter(name_) || name_.front() == '\\' || name_.back() == '\\')
      Error("'" + name_ + "' is no relative path that Windows could have");
    if (("\\" + name_ + "\\").find("\\..\\") != std::string::npos)
      Error("'..' in a name leads out of the product's directory: use 'target'");
    if (HasUnusablePart(name_))
      Error("a part of '" + name_ + "' is a device, or ends in a dot or a space, which Windows drops");
    for (const std::string *text : {&file_->name, &file_->target})
      if (HoldsRecordMarker(*text) || text->find(';') != text->npos)
        Error("a name must not hold ';', \"[Strings]\" or \"[Associations]\", which divide the uninstaller's record");
    CheckVariables(file_->arguments, file_->place, "file '" + file_->name + "': ", findings_);
    if (HasLongPart(name_))
      Error("a part of '" + name_ + "' has more than 255 bytes, which the installer could not find again");
    if (PathLength() > kMaxPath)
      Warn(Warning::kPathTooLong, "its path has more than 259 " +
                                      std::string(product_.code_page == kUtf8 ? "bytes" : "characters") +
                                      " where the product is proposed to go, which most systems refuse");
    const bool own_folder = Kind().folder != KindFolder::Product || (file_->flags & FF_UNINSTALL_DIR);
    if (own_folder && !has_path_ && !Is(KindFont) && name_.find('\\') != name_.npos)
      Warn(Warning::kFolderNotCreated,
           "the folder in its name is not created there: the file fails unless the folder exists");
  }

  void CheckTarget() {
    const std::string &target = file_->target;
    const std::string what = "file '" + file_->name + "': ";
    const auto is_in_target = [&](std::string_view variable) { return ContainsNoCase(target, variable); };
    if (has_path_)
      CheckTargetPath();
    else
      CheckVariables(target, file_->place, what, findings_);
    if (!has_path_ && std::any_of(std::begin(kPathVariables), std::end(kPathVariables), is_in_target))
      Warn(Warning::kVariableInName,
           "the target '" + target +
               "' is a file's name, in which no path variable is replaced: a folder ends in a backslash");
    if (has_path_ && target.find(':') == 1 && (target[0] | 0x20) != 'c' && MayBeReplacedLater())
      Warn(Warning::kRestartOnOtherDrive,
           "if it is in use, it is replaced at the restart only where the directory for temporary files is on drive " +
               target.substr(0, 2) + " as well");
  }

  void CheckTargetPath() {
    const std::string &target = file_->target;
    CheckPathText(target, file_->place, "file '" + file_->name + "': ", findings_);
    std::string path = WithSampleFolders(target);
    if (path.starts_with("\\\\.\\"))
      path.erase(0, 4); // of a device's full name, which nobody gives by chance
    if (HoldsIllegalCharacterInPath(path))
      Error("the target '" + target + "' is no path that Windows could have");
    else if (HasUnusablePart(path))
      Error("a part of the target '" + target + "' is a device, or ends in a dot or a space, which Windows drops");
    if (("\\" + target + "\\").find("\\..\\") != target.npos)
      Warn(Warning::kParentInTarget, "'..' in the target '" + target +
                                         "' leads to a place that depends on where the product is installed: a path "
                                         "variable names a folder for sure");
  }

  // Whether a file that is in use waits for the next start.
  bool MayBeReplacedLater() const { return product_.Has(IF_REPLACE_IN_USE) || Kind().replaced != KindReplaced::Always; }

  // Of the whole path, with the directory that is proposed on most systems; variables count as they are written.
  size_t PathLength() const {
    constexpr size_t kProgramFiles = 17; // C:\Program Files and a backslash
    const std::string &directory = product_.install_dir.empty() ? product_.name : product_.install_dir;
    const std::string &path = has_path_ ? file_->target : name_;
    const bool is_full = has_path_ && (path[0] == '%' || path.find(':') == 1);
    return is_full ? path.size() : kProgramFiles + directory.size() + 1 + path.size();
  }

  void CheckKind() {
    switch (file_->kind) {
    case KindProgram:
    case KindStartup:
      return;
    case KindShared:
      if (!product_.Has(IF_UNINSTALL))
        Error("a shared file needs an uninstaller: without one there is no directory for shared files");
      return;
    case KindFont:
      return CheckFont();
    case KindSystemCom:
      if (!Is32BitProgram(file_->contents))
        Warn(Warning::kUnregisteredLibrary,
             "it is no 32-bit library, so it can't register itself: that is what kind 'system-com' is for");
      [[fallthrough]];
    case KindSystem:
      if (file_->date.month == 0)
        Warn(Warning::kUndatedSystemFile, "without a date it never replaces a file that is there");
      if (HoldsHugeNumber(file_->label))
        Error("a number of its version doesn't fit into 32 bits");
      return;
    default:
      if (!HasDestination(file_->kind, file_->flags, file_->target))
        Error("kind " + std::to_string(file_->kind) + " has no folder of its own: give a 'target' with a folder");
    }
  }

  // The uninstaller finds a font by what was recorded of it: its face name and a file in the fonts folder, in quotes.
  void CheckFont() {
    if (!IsFontFile(file_->contents))
      Error("it is no font: a TrueType or OpenType font, a collection of them, or a .fon or .fnt file");
    else if (file_->label.empty())
      Error(
          "the name of its face isn't found in it, so it needs one as 'label': without one, no font of the product is "
          "removed any more");
    if (product_.Has(IF_UNINSTALL) && file_->date.month != 0 && !(file_->flags & FF_KEEP))
      Warn(Warning::kDatedFont,
           "with a date, it is up to date when it is installed again, is then no longer recorded as the product's, and "
           "stays at uninstall: leave out 'date', or make it \"none\"");
    if (file_->label.find('"') != file_->label.npos || name_.find('"') != name_.npos)
      Error("neither the face name nor the name of a font may hold a quote");
    if (name_.find('\\') != name_.npos || has_path_ || (file_->flags & FF_UNINSTALL_DIR))
      Error("a font can only go to the fonts folder itself");
  }

  void CheckShortcut() {
    if (!file_->icon.empty() && !(file_->flags & FF_SHORTCUTS))
      Warn(Warning::kNoEffect, "its icon is left out, since only desktop and start menu shortcuts have one");
    if (!WantsShortcut()) {
      if (file_->flags & FF_SHORTCUTS)
        Warn(Warning::kNoEffect, "its shortcuts are left out: only kinds program and startup have those");
      else if (!file_->label.empty() && Kind().shortcuts != KindShortcuts::None)
        Warn(Warning::kNoEffect, "its label has no effect without a shortcut");
      if (!file_->arguments.empty())
        Warn(Warning::kNoEffect, "its arguments have no effect without a shortcut");
      return;
    }
    if (!file_->icon.empty())
      icons_.push_back(file_);
    if (HoldsIllegalCharacter(file_->label) || HoldsRecordMarker(file_->label))
      Error("'" + file_->label + "' can't be the file name of a shortcut");
    if (!file_->label.empty()) {
      const uint32_t where = Is(KindStartup) ? 0 : file_->flags & FF_SHORTCUTS;
      const auto [before, is_new] = titles_.emplace(KeyOf(file_->label) + "|" + std::to_string(where), file_->place);
      if (!is_new)
        Warn(Warning::kSameShortcut, "its shortcut has the title of an earlier one, which it replaces",
             NoteAt(before->second, "the earlier one is made here"));
    }
    for (const Language &language : product_.languages)
      if (file_->label.empty() &&
          (language.texts.size() <= kTextShortcutTitle || IsBlank(language.texts[kTextShortcutTitle].c_str())))
        Error("its shortcut has no title, and text 38 (shortcut_title) of '" + language.name + "' is blank");
  }

  void CheckDate() {
    const FileTime &date = file_->date;
    if (date.month != 0 && (!IsCalendarDay(date.year, date.month, date.day) || date.hour < 0 || date.hour > 23 ||
                            date.minute < 0 || date.minute > 59 || date.second < 0 || date.second > 59))
      Error("its date doesn't exist");
    else if (date.month != 0 && date.year < kFirstYear)
      Error("its date is before 1601, where the dates of files begin");
  }

  std::string Destination() const {
    const std::string folder = Is(KindShared) ? "%shareddir%\\" : kHome;
    if (has_path_) {
      const bool is_folder = file_->target.back() == '\\';
      return PathBelow(file_->target, folder) +
             (is_folder ? name_.substr(name_.find_last_of('\\') + 1) : std::string());
    }
    if (file_->flags & FF_UNINSTALL_DIR)
      return InUninstallDir(name_);
    return (Is(KindFont) ? "%fontdir%\\" : Kind().folder == KindFolder::System ? "%systemdir%\\" : folder) + name_;
  }

  std::string InUninstallDir(const std::string &name) const {
    std::string folder = product_.uninstall_subdir;
    if (!folder.empty() && folder.back() != '\\')
      folder += '\\';
    return kHome + folder + name;
  }

  void CheckTwice(const std::string &destination) {
    if (product_.Has(IF_UNINSTALL))
      for (const std::string &own : {product_.uninstaller_name, std::string(kUninstallDataName),
                                     std::string(kInstallLogName), std::string(kBackgroundName)})
        if (destination == KeyOf(InUninstallDir(own)))
          Error("the installer writes its own '" + own + "' there");
    const auto [before, is_new] = seen_.emplace(destination, file_);
    if (!is_new && !(file_->flags & FF_CONDITION))
      Warn(Warning::kSameDestination, "it goes to the same place as '" + before->second->name + "'",
           NoteAt(before->second->place, "'" + before->second->name + "' comes from here"));
  }

  void CheckDeleted(const std::string &destination) {
    const uint32_t condition = file_->flags & FF_CONDITION;
    const auto [first, end] = deleted_.equal_range(destination);
    for (auto found = first; found != end && condition != FF_PLACE_NEVER; ++found) {
      const Deletion &deletion = *found->second;
      const auto warn = [&](Warning warning, const char *message) {
        findings_.Warn(deletion.place, warning, "old file '" + deletion.name + "': " + message,
                       NoteAt(file_->place, "the file '" + file_->name + "' comes from here"));
      };
      if (condition != 0 && deletion.kind == kDeleteAlways)
        warn(Warning::kDeletedFirst,
             "it goes before the product's own file is placed, whose 'condition' then finds none, and with it goes "
             "what the user has changed: leave one of the two out, or say 'when'");
      // In use, the old file is still there when the new one is placed, and what waits for a restart is then done in an
      // order that Windows 95 to Me turn round.
      if (deletion.options & kDeleteAtRestart)
        warn(Warning::kDeletedWhenInUse,
             "the product brings a file to the same place; when the old one is in use, the restart may leave neither. "
             "Leave out 'at_restart': 'options.replace_in_use' is for that");
    }
  }

  const Product &product_;
  Findings &findings_;
  const FileEntry *file_ = nullptr;
  bool has_path_ = false;                         // an explicit destination, not only a new name
  std::string name_;                              // under which it is installed
  std::map<std::string, const FileEntry *> seen_; // by the key of the destination
  std::map<std::string, Place> titles_;
  std::vector<const FileEntry *> icons_;                 // the files whose shortcuts have one of their own
  std::multimap<std::string, const Deletion *> deleted_; // by the key of the path
};

} // namespace

void CheckFiles(const Product &product, Findings &findings) {
  FileChecker checker(product, findings);
  for (const FileEntry &file : product.files)
    checker.Check(file);
  checker.CheckIcons();
  if (product.files.empty())
    findings.Warn({}, Warning::kNoFiles, "the product has no files");
}

} // namespace korb::packer
