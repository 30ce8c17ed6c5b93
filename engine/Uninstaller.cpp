#include "engine/Uninstaller.h"

#include "core/Clock.h"
#include "core/RunValues.h"
#include "engine/PlaceFile.h"
#include "engine/UninstallRecord.h"
#include "files/PathText.h"
#include "files/ProgramPaths.h"
#include "files/WholeFile.h"
#include "format/Record.h"
#include "format/Texts.h"
#include "registry/RegistryKey.h"
#include "system/PathVariables.h"
#include "ui/TextLookup.h"

namespace korb {

namespace {

/// A version of one number has no parts to tell: whatever the key holds of an earlier one stays.
void WriteVersionNumbers(RegistryKey &key, const String &version) {
  const int32_t dot = version.find_char('.');
  if (dot < 0)
    return;
  key.WriteNumber(product_value::kVersionMajor, version.to_int());
  key.WriteNumber(product_value::kVersionMinor, version.mid(dot + 1).to_int());
}

/// What the background window of the uninstaller is painted with.
void WriteLooks(RegistryKey &key, const Looks &looks) {
  key.WriteString(product_value::kDisplayTitle, TextLookup(kTextMainTitle));
  // Without colours or a picture of the archive's own, the title is in the colour that the system has by then.
  if (HasInstallFlag(IF_CUSTOM_COLORS | IF_BACKGROUND_BITMAP))
    key.WriteNumber(product_value::kTitleColor, static_cast<int32_t>(looks.title_color));
  else
    key.DeleteValue(product_value::kTitleColor);
  key.WriteNumber(product_value::kTopColor, static_cast<int32_t>(looks.top_color));
  key.WriteNumber(product_value::kBottomColor, static_cast<int32_t>(looks.bottom_color));
  key.WriteBoolean(product_value::kMonoColor, looks.mono_color);
  key.WriteNumber(product_value::kTitleShadow, looks.title_shadow);
}

/// An entry that comes out empty, or as 0, takes an earlier installation's value away.
void WriteOwnValue(RegistryKey &key, const UninstallData &data) {
  String value = data.value;
  ExpandPathVariables(value);
  if (data.kind == kUninstallNumber)
    key.WriteNumber(data.name, value.to_int(), RK_DELETE_EMPTY);
  else
    key.WriteString(data.name, value, RK_DELETE_EMPTY | (data.kind == kUninstallExpandText ? RK_EXPAND : RK_NONE));
}

/// False when the key can't be opened, refuses a value, or does not give back what the system starts the uninstaller
/// by.
bool WriteUninstallKey(const InstallConfig &config, const InstallNotes &notes) {
  RegistryKey key;
  if (key.OpenSoftware(PathJoin(kUninstallKeys, config.uninstall_name), false) == KEY_NOT_OPENED)
    return false;
  const String uninstall = str_format("%s %s", notes.uninstaller_path, notes.uninstall_command);
  key.WriteString(product_value::kUninstallString, uninstall);
  key.WriteString(product_value::kQuietUninstallString,
                  str_format("%s /a %s", notes.uninstaller_path, notes.uninstall_command));
  key.WriteString(product_value::kDisplayName, ProductName);
  key.WriteString(product_value::kInstallSource, ProgramPath);
  key.WriteString(product_value::kDisplayVersion, config.version, RK_DELETE_EMPTY);
  key.WriteString(product_value::kPublisher, config.publisher, RK_DELETE_EMPTY);
  WriteVersionNumbers(key, config.version);
  key.WriteString(product_value::kProductRegistry, config.product_registry, RK_DELETE_EMPTY);
  key.WriteString(product_value::kProductStartMenu, config.product_start_menu, RK_DELETE_EMPTY);
  key.WriteString(product_value::kSharedPath, CommonDir, RK_DELETE_EMPTY);
  key.WriteString(product_value::kProductFonts, notes.product_fonts, RK_DELETE_EMPTY);
  key.WriteString(product_value::kProductFlags, string_from_int64(static_cast<int64_t>(InstallFlags)));
  key.WriteString(product_value::kUninstallBatch1, config.uninstall_batch1, RK_DELETE_EMPTY);
  key.WriteString(product_value::kUninstallBatch2, config.uninstall_batch2, RK_DELETE_EMPTY);
  key.WriteString(product_value::kSharedFiles, notes.shared_files, RK_DELETE_EMPTY);
  key.WriteString(product_value::kUninstallSubdir, config.uninstall_subdir, RK_DELETE_EMPTY);
  key.WriteNumber(product_value::kShortcutMode, config.shortcut_mode, RK_DELETE_EMPTY);
  WriteLooks(key, config.looks);
  for (int32_t i = 0; i < config.uninstall_data.count; ++i)
    WriteOwnValue(key, config.uninstall_data.at(i));
  key.WriteString(product_value::kInstallLocation, InstallDir);
  key.WriteString(product_value::kInstallDate, Now().format_plain(kDateTimeFormat));
  String kept;
  key.ReadString(kept, product_value::kUninstallString, "");
  return kept == uninstall && !key.refused;
}

} // namespace

void WriteUninstaller(const InstallConfig &config, const String &image, InstallNotes &notes) {
  PlaceFile({notes.uninstaller_path, image.c_str(), image.length(), config.uninstaller_date, 0, true}, notes.journal);
  if (!WriteUninstallKey(config, notes))
    notes.journal.error_report +=
        "Unable to save the uninstall information to the registry.  Uninstall will not work properly.\r\n\r\n";
}

bool WriteUninstallData(const String &uninstall_dir, const UninstallList &list, const String &association_lines) {
  return WriteWholeFile(UninstallDataPath(uninstall_dir), UninstallRecordText(list.text(), association_lines));
}

} // namespace korb
