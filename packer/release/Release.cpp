#include "packer/release/Release.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <map>

#include "archive/ConfigStream.h"
#include "core/MemoryStream.h"
#include "core/RunValues.h"
#include "engine/InstallNotes.h"
#include "engine/Placement.h"
#include "files/PathText.h"
#include "format/Record.h"
#include "format/Texts.h"
#include "format/Words.h"
#include "packer/CodePage.h"
#include "packer/release/NoMachine.h"
#include "packer/write/ConfigWriter.h"
#include "ui/DibImage.h"
#include "ui/TextLookup.h"

namespace korb::packer {

namespace {

constexpr std::string_view kDriveOfInstallation = "I:", kOtherDrive = "C:";

// The variable's value on the machine that isn't known: a folder whose name no folder can have, "C:\<WinDir>".
std::string StandIn(const char *variable) {
  const std::string name(variable + 1, text_length(variable) - 2);
  if (variable == path_variable::kInstallDrive)
    return std::string(kDriveOfInstallation);
  if (variable == path_variable::kBootDrive)
    return "B:";
  if (variable == path_variable::kInstallerDrive)
    return "E";
  if (variable == path_variable::kInstallerFilename)
    return "<" + name + ">";
  const bool is_home = variable == path_variable::kInstallDir;
  return std::string(is_home ? kDriveOfInstallation : kOtherDrive) + "\\<" + name + ">";
}

const auto &StandIns() {
  static const auto all = [] {
    std::array<std::string, std::size(kPathVariableNames)> values;
    std::transform(std::begin(kPathVariableNames), std::end(kPathVariableNames), values.begin(), StandIn);
    return values;
  }();
  return all;
}

void Expand(String &text) {
  for (size_t i = 0; i < StandIns().size(); ++i)
    text.replace(kPathVariableNames[i], StandIns()[i].c_str(), FIND_IGNORE_CASE);
}

// `path` with its variable in place of what stands in for it.
ReleasePath PathOf(const String &path, int page) {
  ReleasePath known{path.c_str()};
  for (size_t i = 0; i < StandIns().size(); ++i) {
    const std::string &folder = StandIns()[i];
    if (folder.size() < 4 || !known.text.starts_with(folder + "\\"))
      continue;
    known.text.replace(0, folder.size(), kPathVariableNames[i]);
    String again(known.text.c_str());
    Expand(again);
    NormalisePath(again, StandIn(path_variable::kInstallDir).c_str());
    known.is_known = again == path && path.find("<", static_cast<int32_t>(folder.size())) < 0 &&
                     (known.text + "\\").find("\\..\\") == std::string::npos;
    break;
  }
  known.text = FromCodePage(known.text, page);
  return known;
}

class UnknownMachine final : public PlacementHost {
public:
  String FontFolder() override { return StandIn(path_variable::kFontDir).c_str(); }
  String SystemFolder() override { return StandIn(path_variable::kSystemDir).c_str(); }
  void ExpandPathVariables(String &text) override { Expand(text); }
  bool FileExists(const String &) override { return false; }
  bool GetFileModified(const String &, FileDate &) override { return false; }
  String ReadFileVersion(const String &) override { return String(); }
};

// The shortcuts of one release, made once for each of its languages.
class ShortcutGatherer {
public:
  ShortcutGatherer(const InstallConfig &config, int page)
      : config_(config), page_(page), all_users_(config.shortcut_mode == kShortcutsForAllUsers) {}

  void AddLanguage(std::span<const PayloadRecord> records, const String &uninstall_dir) {
    UnknownMachine machine;
    for (const PayloadRecord &record : records) {
      const uint32_t condition = record.file_flags & FF_CONDITION;
      if (condition == FF_PLACE_NEVER)
        continue;
      InstallNotes notes;
      notes.uninstall_dir = uninstall_dir;
      NoteShortcut(record, ChooseDestination(record, uninstall_dir, machine).path, notes);
      if (notes.shortcut_list.count > 0)
        AddAll(notes.shortcut_list.at(0), condition == FF_PLACE_ALWAYS);
    }
    if (!HasInstallFlag(IF_UNINSTALL))
      return;
    const String title = TextLookup(kTextUninstallerTitle);
    if (HasInstallFlag(IF_UNINSTALL_DESKTOP))
      Add(Desktop(), title, false, true);
    if (HasInstallFlag(IF_UNINSTALL_START_MENU))
      Add(StartMenu(), title, false, true);
    if (HasInstallFlag(IF_UNINSTALL_IN_FOLDER))
      Add(uninstall_dir, title, false, true);
  }

  std::vector<ReleaseShortcut> Gathered() const {
    std::vector<ReleaseShortcut> list;
    for (const auto &[key, one] : found_) {
      list.push_back(one.shortcut);
      list.back().is_made_each_time = one.conditional || one.languages == LanguageNames.count;
    }
    return list;
  }

private:
  struct Found {
    ReleaseShortcut shortcut;
    bool conditional = true; // a run that finds the file leaves the shortcut of an earlier one
    int32_t language = -1, languages = 0;
  };

  const char *For(const char *user, const char *all) const { return all_users_ ? all : user; }
  String Desktop() const {
    return PathJoin(StandIn(For(path_variable::kDesktopDir, path_variable::kDesktopAllDir)).c_str(),
                    config_.desktop_group);
  }
  String StartMenu() const {
    return PathJoin(StandIn(For(path_variable::kSMProgramsDir, path_variable::kSMProgramsAllDir)).c_str(),
                    config_.product_start_menu);
  }

  void AddAll(const ShortcutRecord &record, bool in_any_case) {
    if (record.desktop)
      Add(Desktop(), record.title, record.no_uninstall, in_any_case);
    if (record.start_menu)
      Add(StartMenu(), record.title, record.no_uninstall, in_any_case);
    if (record.startup)
      Add(StandIn(For(path_variable::kStartupDir, path_variable::kStartupAllDir)).c_str(), record.title,
          record.no_uninstall, in_any_case);
  }

  void Add(const String &folder, const String &title, bool keep, bool in_any_case) {
    String path = PathJoin(folder, title);
    EnsureLinkExtension(path);
    const ReleasePath place = PathOf(path, page_);
    Found &found = found_[place.Key()];
    found.shortcut.path = place;
    found.shortcut.keep |= keep;
    found.conditional &= !in_any_case;
    found.languages += found.language != LanguageIndex;
    found.language = LanguageIndex;
  }

  const InstallConfig &config_;
  const int page_;
  const bool all_users_;
  std::map<std::string, Found> found_;
};

std::vector<ReleaseRecord> RecordsOf(const InstallConfig &config, const String &uninstall_dir, int32_t picture_size,
                                     int32_t uninstaller_size, int page) {
  const auto path = [&](const char *name) { return PathOf(PathJoin(uninstall_dir, name), page); };
  std::vector<ReleaseRecord> records{{path(kInstallLogName)}};
  if (HasInstallFlag(IF_BACKGROUND_BITMAP) && picture_size > 0)
    records.push_back({path(kBackgroundName), picture_size + DibImage::kFileHeader});
  if (HasInstallFlag(IF_UNINSTALL)) {
    records.push_back({path(kUninstallDataName)});
    records.push_back({path(config.uninstaller_name), uninstaller_size});
  }
  return records;
}

void CopyLists(const InstallConfig &config, int page, Release &release) {
  const auto utf8 = [page](const String &text) { return FromCodePage(text.c_str(), page); };
  for (int32_t i = 0; i < config.associations.count; ++i) {
    const FileAssociation &one = config.associations.at(i);
    release.associations.push_back({one.flags,
                                    utf8(one.extension),
                                    utf8(one.file_class),
                                    utf8(one.description),
                                    utf8(one.verb),
                                    utf8(one.verb_label),
                                    utf8(one.command),
                                    utf8(one.language),
                                    utf8(one.icon),
                                    {}});
  }
  for (int32_t i = 0; i < config.uninstall_data.count; ++i) {
    const UninstallData &one = config.uninstall_data.at(i);
    release.uninstall_values.push_back({utf8(one.name), one.kind, utf8(one.value), {}});
  }
  for (int32_t i = 0; i < LanguageNames.count; ++i)
    release.languages.push_back(utf8(LanguageNames.at(i)));
  for (int32_t number = 0; number < TextTable.count; ++number)
    for (int32_t i = 0; i < TextTable.at(number).count; ++i)
      release.text_count += !TextTable.at(number).at(i).is_empty();
}

PayloadRecord RecordOf(const FileEntry &file) {
  const FileTime &date = file.date;
  return {file.name.c_str(),
          file.kind,
          file.flags,
          file.attributes,
          file.contents.data(),
          static_cast<int32_t>(file.contents.size()),
          {date.year, date.month, date.day, date.hour, date.minute, date.second},
          file.label.c_str(),
          file.icon.c_str(),
          file.arguments.c_str(),
          file.target.c_str()};
}

} // namespace

bool ReleasePath::IsBelow(std::string_view variable) const {
  return is_known && text.starts_with(std::string(variable) + "\\");
}

std::string ReleasePath::Key() const {
  String key(text.c_str());
  key.to_upper();
  while (key.replace("\\\\", "\\") + key.replace("\\.\\", "\\") > 0) {
  }
  return key.c_str();
}

std::vector<ReleasePath> ReleasePath::Folders() const {
  std::vector<ReleasePath> folders;
  for (std::string folder = text; is_known;) {
    folder.erase(folder.rfind('\\'));
    if (folder.find('\\') == folder.npos)
      break;
    folders.push_back({folder, true});
  }
  return folders;
}

int64_t Release::InstalledSize() const {
  int64_t size = 0;
  for (const ReleaseFile &file : files)
    size += file.Condition() == FF_PLACE_NEVER ? 0 : file.size;
  return size;
}

ReleasePath DeletionPath(const std::string &name, int page) {
  String path(name.c_str());
  Expand(path);
  NormalisePath(path, StandIn(path_variable::kInstallDir).c_str());
  return PathOf(path, page);
}

Release ReleaseOf(const InstallConfig &config, std::span<const PayloadRecord> records, int32_t picture_size,
                  int32_t uninstaller_size, int page) {
  const auto utf8 = [page](const String &text) { return FromCodePage(text.c_str(), page); };
  InstallDir = StandIn(path_variable::kInstallDir).c_str();
  CommonDir = StandIn(path_variable::kSharedDir).c_str();
  OsNameInTexts = "<os>"; // differs from machine to machine
  Release release;
  release.name = utf8(ProductName);
  release.version = utf8(config.version);
  release.publisher = utf8(config.publisher);
  release.uninstall_name = utf8(config.uninstall_name);
  release.registry_key = utf8(config.product_registry);
  release.directory = utf8(config.default_install_dir);
  release.start_menu = utf8(config.product_start_menu);
  release.options = InstallFlags;
  const String uninstall_dir = PathJoin(InstallDir, config.uninstall_subdir);
  UnknownMachine machine;
  for (const PayloadRecord &record : records)
    release.files.push_back({PathOf(ChooseDestination(record, uninstall_dir, machine).path, page),
                             record.dest_kind,
                             record.file_flags,
                             record.attributes,
                             record.size,
                             record.date,
                             0,
                             {}});
  ShortcutGatherer shortcuts(config, page);
  for (LanguageIndex = 0; LanguageIndex < LanguageNames.count; ++LanguageIndex)
    shortcuts.AddLanguage(records, uninstall_dir);
  release.shortcuts = shortcuts.Gathered();
  release.records = RecordsOf(config, uninstall_dir, picture_size, uninstaller_size, page);
  CopyLists(config, page, release);
  return release;
}

Release ReleaseOf(const Product &product) {
  ResetRunValues();
  const Bytes bytes = WriteConfig(product);
  MemoryStream stream;
  stream.Write(bytes.data(), static_cast<int32_t>(bytes.size()));
  String picture;
  NoMachine machine(picture);
  InstallConfig config;
  ReadConfigStream(stream, INT32_MAX, machine, config);
  std::vector<PayloadRecord> records;
  for (const FileEntry &file : product.files)
    records.push_back(RecordOf(file));
  return ReleaseOf(config, records, picture.length(), -1, product.code_page);
}

} // namespace korb::packer
