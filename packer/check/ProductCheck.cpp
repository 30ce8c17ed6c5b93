#include "packer/check/ProductCheck.h"

#include <algorithm>
#include <chrono>
#include <iterator>

#include "core/Text.h"
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
  if (product.install_dir.empty() &&
      (HoldsIllegalCharacter(product.name) || product.name.find(';') != std::string::npos))
    findings.Warn(product.PlaceOf("product.name"),
                  "'product.name' can't be the name of a directory: give an 'install.directory'");
  if (HoldsHugeNumber(product.version))
    error("product.version", "holds a number that doesn't fit into 32 bits");
  const std::string &volumes = product.volume_base_name;
  if (IsBlank(volumes.c_str()) || HoldsIllegalCharacter(volumes) || volumes.find('\\') != volumes.npos)
    error("payload.volume_name", "has to be the beginning of a file name, even without volumes");
  const Day &expiry = product.expiry;
  if (expiry.month != 0 && (!IsCalendarDay(expiry.year, expiry.month, expiry.day) || expiry.year < 1600))
    error("product.expires", "is a day that doesn't exist");
  else if (expiry.month != 0 && IsOver(expiry))
    findings.Warn(product.PlaceOf("product.expires"), "'product.expires' is over: the installer won't run");
  if (product.excluded_platforms & 1)
    findings.Warn(product.PlaceOf("product.excluded_platforms"),
                  "\"other\" is every Windows after XP: the installer won't run on any of them");
  const std::string &key = product.registry_key;
  if (LowerCase(key).starts_with("software\\"))
    findings.Warn(product.PlaceOf("product.registry_key"), "'product.registry_key' stands below Software already");
  else if (!key.empty() && key.find('\\') == key.npos && product.Has(IF_UNINSTALL))
    findings.Warn(
        product.PlaceOf("product.registry_key"),
        "'product.registry_key' is removed at uninstall with all that it holds: below a publisher's key it would "
        "take only the product's own");
}

// What the installation directory or the common one may be: a path, perhaps with variables, or with one of the marks.
bool IsDirectoryText(std::string text) {
  for (const char *mark : {"<os>", "<master>"})
    if (const size_t at = LowerCase(text).find(mark); at != text.npos)
      text.erase(at, std::string_view(mark).size());
  if (text.size() > 1 && text[1] == ':')
    text.erase(1, 1);
  return !HoldsIllegalCharacter(text);
}

void CheckDirectories(const Product &product, Findings &findings) {
  const std::pair<const char *, const std::string &> texts[] = {
      {"install.directory", product.install_dir},        {"install.common_directory", product.common_dir},
      {"install.desktop_group", product.desktop_group},  {"install.start_menu", product.start_menu},
      {"uninstall.directory", product.uninstall_subdir}, {"uninstall.program", product.uninstaller_name}};
  for (const auto &[key, text] : texts)
    if (HoldsRecordMarker(text) || text.find(';') != text.npos)
      findings.Error(product.PlaceOf(key), "'" + std::string(key) +
                                               "' must not hold ';', \"[Strings]\" or \"[Associations]\", which divide "
                                               "the uninstaller's record");
  for (const auto &[key, text] : texts)
    if (HasLongPart(text))
      findings.Error(product.PlaceOf(key), "'" + std::string(key) + "' has a part of more than 255 bytes");
  for (size_t i = 0; i < 4; ++i) // those that lead to folders
    if (i < 2 ? !IsDirectoryText(texts[i].second) : HoldsIllegalCharacter(texts[i].second))
      findings.Error(product.PlaceOf(texts[i].first),
                     "'" + std::string(texts[i].first) + "' holds a character that no folder's name can have");
  if (LowerCase(product.install_dir) == "<master>" && !product.Has(IF_MASTER_PRODUCT))
    findings.Error(product.PlaceOf("install.directory"), "\"<master>\" needs a 'product.master_product'");
  CheckPathText(product.install_dir, product.PlaceOf("install.directory"), "'install.directory': ", findings);
  const std::string &subdir = product.uninstall_subdir;
  if (HoldsIllegalCharacter(subdir) || subdir.starts_with('\\'))
    findings.Error(product.PlaceOf("uninstall.directory"), "'uninstall.directory' has to be relative");
  if (subdir.find('\\') < subdir.size() - 1 && !subdir.empty())
    findings.Warn(product.PlaceOf("uninstall.directory"),
                  "of several levels, the uninstaller removes the last one only");
  const std::string &uninstaller = product.uninstaller_name;
  if (product.Has(IF_UNINSTALL) && (IsBlank(uninstaller.c_str()) || HoldsIllegalCharacter(uninstaller) ||
                                    uninstaller.find('\\') != uninstaller.npos))
    findings.Error(product.PlaceOf("uninstall.program"), "'uninstall.program' has to be a file name");
}

void CheckPages(const Product &product, Findings &findings) {
  if (product.license_pages.size() > kMaxPages)
    findings.Error(product.PlaceOf("pages.license"), "there are at most 20 licence pages");
  if (product.readme_pages.size() > kMaxPages)
    findings.Error(product.PlaceOf("pages.readme"), "there are at most 20 readme pages");
}

struct FlagRule {
  uint64_t flag;
  bool without; // what makes it idle
  const char *key;
  const char *message;
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
       "makes the uninstaller delete the whole installation directory, the user's own files in it too"},
      {IF_BACKGROUND_BITMAP, product.background.empty(), "options.background_bitmap",
       "has no effect without 'appearance.background'"},
      {IF_REBOOT_NEEDED, true, "options.reboot_needed", "makes every installation ask for a restart"},
      {IF_CONFIRM_DIRECTORY, !product.Has(IF_ASK_DIRECTORY), "options.confirm_directory",
       "has no effect without 'options.ask_directory'"},
  };
  if (product.payload.will_be_signed && product.Has(IF_VERIFY_STUB))
    findings.Error(product.PlaceOf("options.verify_stub"),
                   "'options.verify_stub' can't be combined with 'product.signed': signing changes the program part, "
                   "and the installer would refuse to run");
  for (const FlagRule &rule : rules)
    if (product.Has(rule.flag) && rule.without)
      findings.Warn(product.PlaceOf(rule.key), "'" + std::string(rule.key) + "' " + rule.message);
  if (!product.master_product.empty() && !product.Has(IF_MASTER_PRODUCT))
    findings.Warn(product.PlaceOf("product.master_product"), "without its option, the master product is not asked for");
  if (product.PlaceOf("appearance.title_color").line != 0 && !product.Has(IF_CUSTOM_COLORS) &&
      product.background.empty())
    findings.Warn(product.PlaceOf("appearance.title_color"),
                  "'appearance.title_color' has no effect without 'options.custom_colors' or a picture");
  if (ContainsNoCase(product.uninstall_batch2, "%InstallDir%"))
    findings.Warn(product.PlaceOf("batch.uninstall_last"), "'batch.uninstall_last' runs when the directory is gone: "
                                                           "its '%InstallDir%' is the root of the drive");
  if (product.stub_patch_offset > 0 && no_uninstaller)
    findings.Warn(product.PlaceOf("uninstall.patch_offset"), "without an uninstaller there is nothing to patch");
}

} // namespace

void CheckProduct(const Product &product, Findings &findings) {
  CheckNames(product, findings);
  CheckDirectories(product, findings);
  CheckPages(product, findings);
  CheckOptions(product, findings);
  CheckLists(product, findings);
  CheckTexts(product, findings);
  CheckFiles(product, findings);
  CheckCodePage(product, findings);
}

} // namespace korb::packer
