#include "packer/plan/InstallationPlan.h"

#include "app/DirectoryRules.h"
#include "archive/ConfigHost.h"
#include "core/RunValues.h"
#include "engine/Associations.h"
#include "engine/InstallNotes.h"
#include "engine/OldFiles.h"
#include "engine/PlaceFiles.h"
#include "engine/Placement.h"
#include "engine/SelfRegistration.h"
#include "engine/SharedFiles.h"
#include "engine/Shortcuts.h"
#include "engine/UninstallRecord.h"
#include "engine/Uninstaller.h"
#include "files/Directories.h"
#include "files/PathText.h"
#include "files/ProgramPaths.h"
#include "format/Record.h"
#include "format/Texts.h"
#include "packer/ActiveCodePage.h"
#include "packer/FileIo.h"
#include "packer/Product.h"
#include "packer/Words.h"
#include "packer/plan/PlanText.h"
#include "packer/plan/PlannedMachine.h"
#include "packer/read/InstallerReader.h"
#include "system/BatchRunner.h"
#include "system/OsIdentity.h"
#include "system/PathVariables.h"
#include "system/SearchPath.h"
#include "system/SystemFolders.h"
#include "ui/DibImage.h"
#include "ui/TextLookup.h"

namespace korb::packer {

namespace {

constexpr int32_t kUsualCluster = 4096;

class PlannedConfigHost final : public ConfigHost {
public:
  explicit PlannedConfigHost(String &background) : background_(background) {}
  void CreateMainWindow() override {}
  String CommonFilesFolder() override { return korb::CommonFilesFolder(); }
  String ProgramFilesFolder() override { return korb::ProgramFilesFolder(); }
  String WindowsDirectory() override { return korb::WindowsDirectory; }
  void ExpandPathVariables(String &text) override {
    RefuseHuge(text);
    korb::ExpandPathVariables(text);
  }
  void NormalisePath(String &path, const String &base) override {
    RefuseHuge(path);
    korb::NormalisePath(path, base);
  }
  void CreateDirectoryTree(const String &path) override { korb::CreateDirectoryTree(path); }
  void LoadBackground(const String &block) override { background_ = block; }

private:
  // What stands in many other texts for a variable could make them larger than all memory.
  static void RefuseHuge(const String &path) {
    constexpr int32_t kHuge = 2000;
    if (path.length() > kHuge || ProductName.length() > kHuge)
      throw ReportedDamage("the product's name or one of its directories is longer than any path", 0);
  }

  String &background_;
};

// A machine on which a file is there, or is not, to learn when the program replaces it.
class SupposedFile final : public PlacementHost {
public:
  SupposedFile() = default;
  SupposedFile(bool has_newer_date, bool has_newer_version)
      : is_there_(true), date_(has_newer_date ? FileDate{9999, 1, 1, 0, 0, 0} : FileDate{1, 1, 1, 0, 0, 0}),
        version_(has_newer_version ? "99999.0" : "0") {}
  String FontFolder() override { return korb::FontFolder(); }
  String SystemFolder() override { return korb::SystemFolder(); }
  void ExpandPathVariables(String &text) override { korb::ExpandPathVariables(text); }
  bool FileExists(const String &) override { return is_there_; }
  bool GetFileModified(const String &, FileDate &date) override {
    date = date_;
    return is_there_;
  }
  String ReadFileVersion(const String &) override { return version_; }

private:
  bool is_there_ = false;
  FileDate date_{};
  const char *version_ = "";
};

// What the program does with one file, depending on what is there.
struct FileRule {
  std::string words;
  bool goes_over = false; // a file that is there may give way
  bool waits = false;     // and one in use is then replaced at the restart
};

FileRule RuleOf(const PayloadRecord &record, const String &path) {
  const auto is_placed = [&](SupposedFile machine, bool &replaces) {
    InstallNotes notes;
    return IsWanted(record, path, machine, notes, replaces);
  };
  FileRule rule;
  bool ignored = false;
  const bool when_none = is_placed({}, ignored), over_older = is_placed({false, false}, rule.waits);
  const bool over_newer_date = is_placed({true, false}, ignored),
             over_newer_version = is_placed({false, true}, ignored);
  rule.goes_over = over_older;
  rule.waits |= HasInstallFlag(IF_REPLACE_IN_USE);
  const char *over = !over_older          ? ""
                     : over_newer_date    ? "any"
                     : over_newer_version ? "an older one by date"
                                          : "an older one by version and date";
  if (when_none && *over == '\0')
    rule.words = "only where there is none";
  else if (when_none)
    rule.words = over_newer_date ? "always" : "where there is none, or " + std::string(over);
  else
    rule.words = *over == '\0'     ? "never"
                 : over_newer_date ? "only over one that is there"
                                   : "only over " + std::string(over);
  return rule;
}

class Planner {
public:
  explicit Planner(const PlanRequest &request)
      : request_(request), installer_(request.installer, request.page),
        machine_(*request.system, request.has_64_bits, SettledPage(), ShowPath(request.installer.filename())) {}

  // False, and the damage told, when there is any.
  bool Make(Json &plan, std::ostream &problems);

private:
  const int &SettledPage();
  void ReadInstaller();
  bool IsRefused();
  void AskQuestions();
  void RunPhases();
  void NoteBatch(const char *name, const String &script, uint64_t hide);
  void DeleteOld();
  void PlaceAll();
  void LeaveLog();
  void End();

  std::string Text(const String &text) const { return machine_.Text(text); }
  void SettleMaster();
  Json TellMachine() const;
  Json TellRun() const;
  const char *RestartMeans() const { return machine_.system.IsNt() ? "the system's delayed moves" : "wininit.ini"; }
  Json TellRestarts() const;

  const PlanRequest &request_;
  InstallerReader installer_;
  PlannedMachine machine_;
  InstallNotes notes_;
  std::string refusal_;
  size_t waiting_files_ = 0;
};

// Known before anything is read, since the machine is told texts while the configuration is.
const int &Planner::SettledPage() {
  if (AsksForUtf8(installer_.file))
    installer_.code_page = kUtf8;
  return installer_.code_page;
}

OsVersion VersionOf(const TargetSystem &system) {
  OsVersion version;
  version.platform = system.platform;
  version.major = system.major;
  version.minor = system.minor;
  return version;
}

void Planner::ReadInstaller() {
  ResetRunValues();
  OsNameInTexts = OsDisplayNameOf(VersionOf(*request_.system));
  AutomaticMode = request_.silent;
  std::string missing;
  const auto directory = ToCodePage(request_.directory, installer_.code_page, missing);
  if (!directory)
    throw PackError("the code page " + std::to_string(installer_.code_page) + " has no '" + missing + "' for '" +
                    request_.directory + "'");
  InstallDir = directory->c_str();
  installer_.config.looks.top_color = 0xFFFFFF; // as most desktops have it: black on white
  machine_.Begin("configuration");
  PlannedConfigHost host(installer_.background);
  installer_.Read(host);
}

// The product that has to be there is assumed to be, in the folder that it would have by itself.
void Planner::SettleMaster() {
  InstallConfig &config = installer_.config;
  if (config.master_product.is_empty())
    config.master_product = ProductName;
  if (HasInstallFlag(IF_MASTER_PRODUCT) && config.default_install_dir.equals_no_case("<master>"))
    config.default_install_dir = PathJoin(ProgramFilesFolder(), config.master_product);
}

bool Planner::IsRefused() {
  if (InstallDir.is_empty())
    InstallDir = installer_.config.default_install_dir;
  if ((OsCodeOf(VersionOf(*request_.system)) & installer_.config.excluded_platforms) != 0) {
    refusal_ = "'product.excluded_platforms' has this system";
    return true;
  }
  if (AutomaticMode || !HasInstallFlag(IF_ASK_DIRECTORY))
    return false;
  const int32_t number = InstallDir.is_empty()
                             ? kTextDirectoryIllegal
                             : RefusalOf(InstallDir, {true, HasInstallFlag(IF_NO_UNC_PATHS), ProgramFilesFolder()});
  if (number != 0)
    refusal_ = "the directory '" + Text(InstallDir) + "' is not taken (text '" + kTextRows[number].name + "')";
  return number != 0;
}

void Planner::AskQuestions() {
  if (AutomaticMode)
    return;
  const auto ask = [&](bool is_asked, const char *about) {
    if (is_asked)
      machine_.Note("ask", {{"about", about}});
  };
  ask(LanguageNames.count != 1, "the language");
  ask(HasInstallFlag(IF_NOTICE) && !IsBlank(TextLookup(kTextNotice)), "the notice");
  ask(installer_.config.license_pages.count > 0, "the licence");
  ask(installer_.config.readme_pages.count > 0, "the readme pages");
  ask(HasInstallFlag(IF_ASK_DIRECTORY), "the directory");
}

void Planner::NoteBatch(const char *name, const String &script, uint64_t hide) {
  if (IsBlank(script))
    return;
  const bool hidden = HasInstallFlag(hide);
  machine_.Note("batch", {{"name", name},
                          {"directory", Text(InstallDir)},
                          {"interpreter", machine_.system.IsNt() ? "cmd.exe" : "command.com"},
                          {"hidden", hidden},
                          {"script", Text(script)},
                          {"text", Text(BatchText(InstallDir, script, !AutomaticMode && !hidden))}});
}

// On a machine without any, what is looked for is all that can be told.
void Planner::DeleteOld() {
  Vector<FileDeletion> &deletions = installer_.config.deletions;
  DeleteOldFiles(deletions, notes_.journal); // which makes full paths of the names
  for (int32_t i = 0; i < deletions.count; ++i) {
    const FileDeletion &one = deletions.at(i);
    Json step = {{"path", Text(one.name)}, {"when", WordFor(kDeletionKinds, one.kind)}};
    if (one.kind != kDeleteAlways)
      step["value"] = Text(one.value);
    step["in_use"] = one.options & kDeleteAtRestart ? "waits for a restart" : "stays";
    machine_.Note("delete", std::move(step));
  }
}

void Planner::PlaceAll() {
  ArchiveCursor cursor = installer_.Payload();
  SupposedFile machine;
  for (size_t i = 0; i < installer_.records.size(); ++i) {
    const PayloadRecord &record = installer_.records[i];
    const size_t before = machine_.steps.size();
    Vector<int32_t> one;
    one.append(record.size);
    PlaceFiles(cursor, one, notes_);
    const String path = ChooseDestination(record, notes_.uninstall_dir, machine).path;
    const FileRule rule = RuleOf(record, path);
    Json more = {{"kind", WordFor(kKinds, record.dest_kind)}, {"placed", rule.words}};
    if (rule.goes_over)
      more["in_use"] = rule.waits ? "waits for a restart" : "an error";
    waiting_files_ += rule.goes_over && rule.waits;
    more["keep"] = (record.file_flags & FF_KEEP) != 0;
    Json *file = nullptr;
    for (size_t at = before; at < machine_.steps.size(); ++at) {
      if (machine_.steps[at]["action"] == "file")
        file = &machine_.steps[at];
      if (machine_.steps[at]["action"] == "font")
        machine_.steps[at]["face"] = machine_.Text(record.label);
    }
    if (file)
      file->update(more);
    else if (machine_.steps.size() == before)
      machine_.Note("no file", {{"path", Text(path)}}).update(more);
  }
}

void Planner::LeaveLog() {
  const bool always = HasInstallFlag(IF_ALWAYS_LOG) || !notes_.journal.error_report.is_empty();
  const String path = InstallLogPath(notes_.uninstall_dir);
  if (!always)
    machine_.Note("no file", {{"path", Text(path)}, {"placed", "only after an error"}});
  else if (Json *step = machine_.MakeFile(path))
    (*step)["placed"] = "added to the one that is there";
}

void Planner::End() {
  InstallConfig &config = installer_.config;
  machine_.Begin("end");
  LeaveLog();
  const bool restarts = HasInstallFlag(IF_REBOOT_NEEDED);
  if (restarts && !AutomaticMode)
    machine_.Note("ask", {{"about", "the restart"}});
  NoteBatch("final", config.final_batch, IF_HIDE_FINAL_BATCH);
  RemoveEmptyDirectory(CommonDir);
  RemoveEmptyDirectory(notes_.uninstall_dir);
  RemoveEmptyDirectory(InstallDir);
  if (restarts)
    machine_.Note("restart");
}

// The phases of Installation::Run, after the questions.
void Planner::RunPhases() {
  InstallConfig &config = installer_.config;
  machine_.Begin("directory");
  CreateDirectoryTree(InstallDir);
  machine_.Begin("pre_install");
  NoteBatch("pre_install", config.pre_install_batch, IF_HIDE_PRE_BATCH);

  machine_.Begin("old files");
  notes_.uninstall_dir = PathJoin(InstallDir, config.uninstall_subdir);
  if (!config.uninstall_subdir.is_empty())
    CreateDirectoryTree(notes_.uninstall_dir);
  DeleteOld();
  machine_.Begin("files");
  PlaceAll();
  machine_.Begin("shared files");
  CountSharedFiles(notes_, String(), false);
  RegisterComFiles(notes_.com_file_list, notes_.journal.log_text);

  machine_.Begin("shortcuts");
  if (HasInstallFlag(IF_UNINSTALL)) {
    notes_.uninstaller_path = PathJoin(notes_.uninstall_dir, config.uninstaller_name);
    notes_.uninstall_command = "/u:\"" + config.uninstall_name + "\"";
  }
  AddUninstallerShortcut(notes_);
  MakeShortcuts(config, notes_);

  machine_.Begin("registration");
  DibImage background;
  background.set_block(installer_.background, installer_.background.length());
  if (!background.is_empty() && HasInstallFlag(IF_BACKGROUND_BITMAP)) {
    const String path = BackgroundBitmapPath(notes_.uninstall_dir);
    if (Json *step = machine_.MakeFile(path))
      (*step)["size"] = installer_.background.length() + DibImage::kFileHeader;
    notes_.uninstall_list.AddUninstallEntry(path, kUninstallFile);
  }
  CreateProductKeys(config.product_registry, notes_.journal);
  RegisterAssociations(config.associations, notes_);
  if (HasInstallFlag(IF_EDIT_PATH)) {
    String line = SearchPathLine(InstallDir);
    line.trim();
    const String file = String(DriveSpec(BootDriveLetter())) + "\\autoexec.bat";
    machine_.Note("edit", {{"path", Text(file)}, {"line", Text(line)}});
  }

  machine_.Begin("uninstaller");
  if (HasInstallFlag(IF_UNINSTALL)) {
    String image;
    image.set_length(installer_.uninstaller_size);
    WriteUninstaller(config, image, notes_);
    WriteUninstallData(notes_.uninstall_dir, notes_.uninstall_list, notes_.association_lines);
  }
  machine_.Begin("post_install");
  NoteBatch("post_install", config.post_install_batch, IF_HIDE_POST_BATCH);
  End();
}

Json Planner::TellMachine() const {
  const InstallConfig &config = installer_.config;
  Json assumed =
      Json::array({"the folders of an English Windows on C:, and the user '" + std::string(kAssumedUser) + "'",
                   "none of the product's files and keys is there, nor an earlier installation",
                   "the installer is started as '" + Text(ProgramPath) + "'"});
  if (HasInstallFlag(IF_MASTER_PRODUCT))
    assumed.push_back("the product '" + Text(config.master_product) + "' is installed");
  if (!config.expiry_date.is_invalid())
    assumed.push_back("it runs on " + std::string(config.expiry_date.format("yy-mm-dd").c_str()) + " or before");
  if (LanguageNames.count > 1)
    assumed.push_back("the language is '" + Text(LanguageNames.at(LanguageIndex)) + "'");
  return {{"windows", request_.system->title}, {"bits", request_.has_64_bits ? 64 : 32}, {"assumed", assumed}};
}

Json Planner::TellRun() const {
  int64_t bytes = 0;
  for (const PayloadRecord &record : installer_.records)
    bytes += record.size;
  return {{"silent", AutomaticMode},
          {"directory", Text(InstallDir)},
          {"file_bytes", bytes},
          {"disk_bytes", BytesOnDisk(installer_.header.sizes, kUsualCluster)}};
}

// What would need a restart, and when.
Json Planner::TellRestarts() const {
  Json reasons = Json::array();
  if (HasInstallFlag(IF_REBOOT_NEEDED))
    reasons.push_back({{"when", "always"}, {"why", "'options.reboot_needed'"}});
  size_t deletions = 0;
  for (int32_t i = 0; i < installer_.config.deletions.count; ++i)
    deletions += (installer_.config.deletions.at(i).options & kDeleteAtRestart) != 0;
  // A file that waits lies in the user's directory for temporary files until then.
  const bool stays = machine_.system.IsNt() && DriveLetter(InstallDir) != DriveLetter(machine_.system.folders.temp);
  const auto add = [&](size_t count, const std::string &what, bool is_moved = true) {
    if (count == 0)
      return;
    reasons.push_back({{"when", "in use"}, {"why", what}, {"files", count}, {"by", RestartMeans()}});
    if (is_moved && stays)
      reasons.back()["but"] = "one on another drive than C: is not replaced then";
  };
  add(deletions, "old files that are to go", false);
  add(waiting_files_, "files that are there, and are to be replaced");
  if (HasInstallFlag(IF_UNINSTALL))
    add(1, "an earlier uninstaller");
  return reasons;
}

bool Planner::Make(Json &plan, std::ostream &problems) {
  try {
    ReadInstaller();
    if (installer_.damage) {
      problems << ShowPath(request_.installer) << ": error: " << installer_.damage->what() << "\n";
      return false;
    }
    SettleMaster();
    machine_.Begin("questions");
    if (!IsRefused()) {
      AskQuestions();
      RunPhases();
    }
  } catch (const ReportedDamage &report) {
    problems << ShowPath(request_.installer) << ": error: " << report.what() << "\n";
    return false;
  }
  plan = {{"installer", ShowPath(request_.installer)},
          {"product", Text(ProductName)},
          {"version", Text(installer_.config.version)},
          {"machine", TellMachine()},
          {"run", TellRun()}};
  if (!refusal_.empty())
    plan["refused"] = refusal_;
  plan["steps"] = Json::array();
  for (Json &step : machine_.steps) {
    if (step["action"] == "value" && step["name"] == product_value::kInstallDate)
      step["data"] = "the time of the run";
    plan["steps"].push_back(std::move(step));
  }
  plan["restart"] = refusal_.empty() ? TellRestarts() : Json::array();
  return true;
}

} // namespace

bool WritePlan(const PlanRequest &request, std::ostream &out, std::ostream &problems) {
  Json plan;
  if (!Planner(request).Make(plan, problems))
    return false;
  if (request.json)
    out << Written(plan, 2) << "\n";
  else
    WritePlanText(plan, out);
  return true;
}

} // namespace korb::packer
