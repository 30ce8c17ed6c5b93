#include "packer/check/ProductCheck.h"

#include <algorithm>
#include <chrono>
#include <iterator>

#include "archive/NameDefaults.h"
#include "core/Text.h"
#include "engine/DirectoryGuard.h"
#include "files/PathText.h"
#include "packer/check/CodePageCheck.h"
#include "packer/check/FileCheck.h"
#include "packer/check/ListCheck.h"
#include "packer/check/TextCheck.h"
#include "packer/check/TextRules.h"
#include "packer/check/VariableCheck.h"

namespace korb::packer {

namespace {

bool IsOver(const Day &day) {
  using namespace std::chrono;
  const year_month_day last{year(day.year), month(static_cast<unsigned>(day.month)),
                            std::chrono::day(static_cast<unsigned>(day.day))};
  return sys_days(last) < floor<days>(system_clock::now());
}

void CheckNames(const Product &product, Findings &findings) {
  const auto error = [&](const char *key, const char *message) {
    findings.Error(product.PlaceOf(key), "'" + std::string(key) + "' " + message);
  };
  if (IsBlank(product.name.c_str()))
    error("product.name", "is missing");
  if (product.name.find_first_of("\"\r\n") != product.name.npos)
    error("product.name", "must hold neither quotes nor line ends");
  if (ContainsNoCase(product.name, "<product>"))
    error("product.name", "can't hold <product>, which stands for the name itself");
  if (IsBlank(product.uninstall_name.c_str()) && product.name.find('\\') != product.name.npos)
    error("product.name", "holds a backslash: give an 'uninstall.name' that can be the name of a registry key");
  if (product.uninstall_name.find_first_of("\"\\\r\n") != product.uninstall_name.npos)
    error("uninstall.name", "must hold neither quotes nor backslashes: it is the name of a registry key");
  if (HoldsRecordMarker(product.name))
    error("product.name", "must not hold \"[Strings]\" or \"[Associations]\", which divide the uninstaller's record");
  if (HoldsHugeNumber(product.version))
    error("product.version", "holds a number that doesn't fit into 32 bits");
  if (!product.version.empty() && product.version.find_first_of("0123456789") == product.version.npos)
    findings.Warn(product.PlaceOf("product.version"), Warning::kVersionWithoutNumber,
                  "'product.version' has no number in it, so it is older than every other version");
  const std::string &volumes = product.volume_base_name;
  if (IsBlank(volumes.c_str()) || HoldsIllegalCharacter(volumes) || volumes.find('\\') != volumes.npos)
    error("payload.volume_name", "has to be the beginning of a file name, even without volumes");
  const Day &expiry = product.expiry;
  if (expiry.month != 0 && (!IsCalendarDay(expiry.year, expiry.month, expiry.day) || expiry.year < 1600))
    error("product.expires", "is a day that doesn't exist");
  else if (expiry.month != 0 && IsOver(expiry))
    findings.Warn(product.PlaceOf("product.expires"), Warning::kExpired,
                  "'product.expires' is over: the installer won't run");
  if (product.excluded_platforms & 1)
    findings.Warn(product.PlaceOf("product.excluded_platforms"), Warning::kCurrentWindowsExcluded,
                  "\"other\" is every Windows after XP: the installer won't run on any of them");
  const std::string &key = product.registry_key;
  if (LowerCase(key).starts_with("hklm\\") || LowerCase(key).starts_with("hkcu\\") ||
      LowerCase(key).starts_with("hkey_"))
    error("product.registry_key", "is a key below Software, of the machine and of the user: leave out the root");
  else if (LowerCase(key).starts_with("software\\"))
    findings.Warn(product.PlaceOf("product.registry_key"), Warning::kSoftwareKey,
                  "'product.registry_key' stands below Software already");
  else if (!key.empty() && key.find('\\') == key.npos && product.Has(IF_UNINSTALL))
    findings.Warn(
        product.PlaceOf("product.registry_key"), Warning::kPublisherKeyRemoved,
        "'product.registry_key' is removed at uninstall with all that it holds: below a publisher's key it would "
        "take only the product's own");
}

// What is wrong with the text of a folder, as the end of a message: nothing when Windows can have it.
std::string FolderFault(const std::string &text, bool is_path) {
  if (HoldsRecordMarker(text) || text.find(';') != text.npos)
    return "must not hold ';', \"[Strings]\" or \"[Associations]\", which divide the uninstaller's record";
  const std::string path = is_path ? WithSampleFolders(text) : text;
  if (is_path ? HoldsIllegalCharacterInPath(path) : HoldsIllegalCharacter(path))
    return "holds a character that no folder's name can have";
  if (HasLongPart(path))
    return "has a part of more than 255 bytes";
  if (HasUnusablePart(path))
    return "has a part that is a device, or ends in a dot or a space, which Windows drops";
  return {};
}

// What the configuration makes of the names where a folder isn't given.
std::string DefaultStartMenu(const Product &product) {
  String group;
  AppendDefaultGroup(group, product.publisher.c_str(), product.name.c_str());
  return group.c_str();
}

std::string DefaultSharedDir(const Product &product) {
  return DefaultCommonDir(product.publisher.c_str(), product.name.c_str()).c_str();
}

bool HasStartMenuShortcut(const Product &product) {
  return product.Has(IF_UNINSTALL) && product.Has(IF_UNINSTALL_START_MENU)
             ? true
             : std::any_of(product.files.begin(), product.files.end(), [](const FileEntry &file) {
                 return (file.flags & FF_START_MENU) && RowOf(file.kind).shortcuts != KindShortcuts::None;
               });
}

bool UsesSharedDir(const Product &product) {
  const auto names_it = [](std::string_view text) { return ContainsNoCase(text, "%SharedDir%"); };
  return std::any_of(product.files.begin(), product.files.end(),
                     [&](const FileEntry &file) {
                       return RowOf(file.kind).folder == KindFolder::Shared || names_it(file.target) ||
                              names_it(file.arguments);
                     }) ||
         std::any_of(product.associations.begin(), product.associations.end(),
                     [&](const Association &association) {
                       return names_it(association.command) || names_it(association.icon);
                     }) ||
         names_it(product.post_install_batch) || names_it(product.final_batch);
}

// A folder that the author has given, or that is made of the names.
struct Folder {
  const char *key;
  const std::string &text;
  std::string by_default;
  bool is_path;          // may be full, and may hold variables and marks
  bool is_default_meant; // something goes there when it isn't given
};

void CheckFolder(const Folder &folder, const Product &product, Findings &findings) {
  const std::string key = "'" + std::string(folder.key) + "'";
  if (!folder.text.empty()) {
    std::string text = folder.text;
    for (const char *mark : {"<os>", "<master>"})
      if (const size_t at = LowerCase(text).find(mark); folder.is_path && at != text.npos)
        text.replace(at, std::string_view(mark).size(), kSampleWindows);
    if (const std::string fault = FolderFault(text, folder.is_path); !fault.empty())
      findings.Error(product.PlaceOf(folder.key), key + " " + fault);
  } else if (folder.is_default_meant && !IsBlank(product.name.c_str())) {
    const std::string fault = FolderFault(folder.by_default, false);
    const bool publisher = !FolderFault(product.publisher, false).empty();
    if (!fault.empty())
      findings.Error(product.PlaceOf(publisher ? "product.publisher" : "product.name"),
                     key + ", by default '" + folder.by_default + "', " + fault + ": give another");
  }
}

void CheckInstallDir(const Product &product, Findings &findings) {
  const std::string &text = product.install_dir;
  const Place place = product.PlaceOf("install.directory");
  CheckPathText(text, place, "'install.directory': ", findings);
  if (LowerCase(text) == "<master>") {
    if (!product.Has(IF_MASTER_PRODUCT))
      findings.Error(place, "\"<master>\" needs a 'product.master_product'");
    if (product.Has(IF_UNINSTALL) && product.uninstall_subdir.empty())
      findings.Warn(place, Warning::kDirectoryNotOwn,
                    "'install.directory' is the master product's: without an 'uninstall.directory', uninstaller and "
                    "record take the places of its own");
    return;
  }
  std::string sample = text;
  if (const size_t os = LowerCase(sample).find("<os>"); os != sample.npos)
    sample.replace(os, 4, kSampleWindows);
  String path = WithSampleFolders(sample).c_str();
  NormalisePath(path, kSamplePrograms);
  const bool is_below_windows = ContainsNoCase(path.c_str(), kSampleWindows + std::string("\\")) &&
                                !SamePath(path, WithSampleFolders("%SystemDir%").c_str());
  if (!text.empty() && !is_below_windows && !MayDeleteWhole(path, kSampleWindows, kSamplePrograms))
    findings.Warn(place, Warning::kDirectoryNotOwn,
                  "'install.directory' is no folder of the product's own: the files, the uninstaller and its record "
                  "get among what is there");
}

// A folder whose name the interpreter cuts or changes where a batch asks for it.
void CheckFolderInBatches(const Folder &folder, const char *variable, const Product &product, Findings &findings) {
  const std::string &text = folder.text.empty() ? folder.by_default : folder.text;
  const std::string path = WithSampleFolders(text);
  const size_t sign = path.find_first_of("&^%");
  if (sign == path.npos)
    return;
  const char *source = !folder.text.empty() ? folder.key : text == product.name ? "product.name" : "product.publisher";
  const std::string *const batches[] = {&product.pre_install_batch, &product.post_install_batch, &product.final_batch,
                                        &product.uninstall_batch1, &product.uninstall_batch2};
  if (std::any_of(std::begin(batches), std::end(batches),
                  [&](const std::string *batch) { return ContainsNoCase(*batch, variable); }))
    findings.Warn(product.PlaceOf(source), Warning::kDirectoryBreaksBatch,
                  "the folder '" + text + "' holds a '" + path[sign] +
                      "', at which the interpreter of the batches cuts or changes their '" + variable + "': give '" +
                      folder.key + "' without it");
}

void CheckDirectories(const Product &product, Findings &findings) {
  const std::string none;
  const Folder folders[] = {
      {"install.directory", product.install_dir, product.name, true, true},
      {"install.common_directory", product.common_dir, DefaultSharedDir(product), true,
       product.Has(IF_UNINSTALL) && UsesSharedDir(product)},
      {"install.start_menu", product.start_menu, DefaultStartMenu(product), false, HasStartMenuShortcut(product)},
      {"install.desktop_group", product.desktop_group, none, false, false},
      {"uninstall.directory", product.uninstall_subdir, none, false, false}};
  for (const Folder &folder : folders)
    CheckFolder(folder, product, findings);
  CheckFolderInBatches(folders[0], "%InstallDir%", product, findings);
  CheckFolderInBatches(folders[1], "%SharedDir%", product, findings);
  CheckInstallDir(product, findings);
  const std::string &subdir = product.uninstall_subdir;
  if (subdir.starts_with('\\'))
    findings.Error(product.PlaceOf("uninstall.directory"), "'uninstall.directory' has to be relative");
  if (subdir.find('\\') < subdir.size() - 1 && !subdir.empty())
    findings.Warn(product.PlaceOf("uninstall.directory"), Warning::kNestedUninstaller,
                  "of several levels, the uninstaller removes the last one only");
  const std::string &uninstaller = product.uninstaller_name;
  if (product.Has(IF_UNINSTALL) &&
      (IsBlank(uninstaller.c_str()) || HoldsIllegalCharacter(uninstaller) ||
       uninstaller.find_first_of("\\;") != uninstaller.npos || HasUnusablePart(uninstaller) ||
       HasLongPart(uninstaller) || HoldsRecordMarker(uninstaller)))
    findings.Error(product.PlaceOf("uninstall.program"), "'uninstall.program' has to be a file name");
}

void CheckPages(const Product &product, Findings &findings) {
  if (product.license_pages.size() > kMaxPages)
    findings.Error(product.PlaceOf("pages.license"), "there are at most 20 licence pages");
  if (product.readme_pages.size() > kMaxPages)
    findings.Error(product.PlaceOf("pages.readme"), "there are at most 20 readme pages");
}

void CheckIcon(const Product &product, Findings &findings) {
  if (product.icon.empty())
    return;
  constexpr uint16_t kUsualSides[] = {16, 32};
  std::string lacking;
  for (const uint16_t side : kUsualSides)
    if (std::none_of(product.icon.begin(), product.icon.end(), [&](const IconImage &image) {
          return image.width == side && image.height == side && !image.is_png;
        }))
      lacking += (lacking.empty() ? "" : " and of ") + std::to_string(side) + " by " + std::to_string(side);
  if (!lacking.empty())
    findings.Warn(product.PlaceOf("product.icon"), Warning::kIconLacksSize,
                  "'product.icon' has no bitmap of " + lacking +
                      " pixels: Windows makes it of another size, and before Vista of none that is a PNG");
  if (product.Has(IF_UNINSTALL) && !product.stub_patch.empty() && product.icon.size() > 1)
    findings.Warn(product.PlaceOf("uninstall.icon"), Warning::kIconPartlyReplaced,
                  "'uninstall.icon' replaces one image of 'product.icon', that of 32 by 32 pixels in 256 colours: "
                  "where Windows shows another, the uninstaller looks like the installer");
}

struct FlagRule {
  uint64_t flag;
  bool without; // what makes it idle
  const char *key;
  const char *message;
  Warning warning = Warning::kNoEffect;
};

void CheckOptions(const Product &product, Findings &findings) {
  if (product.min_phase_ms > kMaxPhaseMs)
    findings.Error(product.PlaceOf("install.min_phase_ms"), "'install.min_phase_ms' is 9,999 at most");
  const bool no_uninstaller = !product.Has(IF_UNINSTALL);
  const char *const idle = "has no effect without 'options.uninstall'";
  const FlagRule rules[] = {
      {IF_REFUSE_REINSTALL, no_uninstaller, "options.refuse_reinstall", idle},
      {IF_UNINSTALL_START_MENU, no_uninstaller, "options.uninstall_start_menu", idle},
      {IF_UNINSTALL_DESKTOP, no_uninstaller, "options.uninstall_desktop", idle},
      {IF_UNINSTALL_IN_FOLDER, no_uninstaller, "options.uninstall_in_folder", idle},
      {IF_NO_UNINSTALL_RECORDS, !no_uninstaller, "options.no_uninstall_records",
       "makes the uninstaller delete the whole installation directory, the user's own files in it too",
       Warning::kDeletedWhole},
      {IF_BACKGROUND_BITMAP, product.background.empty(), "options.background_bitmap",
       "has no effect without 'appearance.background'"},
      {IF_REBOOT_NEEDED, true, "options.reboot_needed", "makes every installation ask for a restart",
       Warning::kRestartAlways},
      {IF_CONFIRM_DIRECTORY, !product.Has(IF_ASK_DIRECTORY), "options.confirm_directory",
       "has no effect without 'options.ask_directory'"},
  };
  if (product.payload.will_be_signed && product.Has(IF_VERIFY_STUB))
    findings.Error(product.PlaceOf("options.verify_stub"),
                   "'options.verify_stub' can't be combined with 'product.signed': signing changes the program part, "
                   "and the installer would refuse to run");
  for (const FlagRule &rule : rules)
    if (product.Has(rule.flag) && rule.without)
      findings.Warn(product.PlaceOf(rule.key), rule.warning, "'" + std::string(rule.key) + "' " + rule.message);
  if (!product.master_product.empty() && !product.Has(IF_MASTER_PRODUCT))
    findings.Warn(product.PlaceOf("product.master_product"), Warning::kNoEffect,
                  "without its option, the master product is not asked for");
  if (product.PlaceOf("appearance.title_color").line != 0 && !product.Has(IF_CUSTOM_COLORS) &&
      product.background.empty())
    findings.Warn(product.PlaceOf("appearance.title_color"), Warning::kNoEffect,
                  "'appearance.title_color' has no effect without 'options.custom_colors' or a picture");
  if (ContainsNoCase(product.uninstall_batch2, "%InstallDir%"))
    findings.Warn(product.PlaceOf("batch.uninstall_last"), Warning::kDirectoryGone,
                  "'batch.uninstall_last' runs when the directory is gone: "
                  "its '%InstallDir%' is the root of the drive");
  if (product.stub_patch_offset > 0 && no_uninstaller)
    findings.Warn(product.PlaceOf("uninstall.patch_offset"), Warning::kNoEffect,
                  "without an uninstaller there is nothing to patch");
}

} // namespace

void CheckProduct(const Product &product, Findings &findings) {
  Findings found; // which quote the product's texts
  CheckNames(product, found);
  CheckDirectories(product, found);
  CheckPages(product, found);
  CheckIcon(product, found);
  CheckOptions(product, found);
  CheckLists(product, found);
  CheckTexts(product, found);
  CheckFiles(product, found);
  CheckCodePage(product, found);
  found.ConvertTexts(product.code_page);
  findings.Merge(found);
}

} // namespace korb::packer
