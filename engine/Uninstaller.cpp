#include "engine/Uninstaller.h"

#include "archive/RunValues.h"
#include "core/Clock.h"
#include "engine/PlaceFile.h"
#include "engine/RecordNames.h"
#include "engine/RunLists.h"
#include "files/PathText.h"
#include "files/ProgramPaths.h"
#include "format/Texts.h"
#include "registry/RegistryKey.h"
#include "system/PathVariables.h"
#include "ui/TextLookup.h"

namespace korb {

namespace {

const char kUninstallString[] = "UninstallString";

/// A version of one number has no parts to tell: whatever the key holds of an earlier one stays.
void WriteVersionNumbers(RegistryKey &key) {
  const int32_t dot = Version.find_char('.');
  if (dot < 0)
    return;
  key.WriteNumber("VersionMajor", Version.to_int(), 0);
  key.WriteNumber("VersionMinor", Version.mid(dot + 1).to_int(), 0);
}

/// What the background window of the uninstaller is painted with.
void WriteLooks(RegistryKey &key) {
  key.WriteString("DisplayTitle", TextLookup(kTextMainTitle), 0);
  // Without colours or a picture of the archive's own, the title is in the colour that the system has by then.
  if (HasInstallFlag(IF_CUSTOM_COLORS | IF_BACKGROUND_BITMAP))
    key.WriteNumber("TitleColor", static_cast<int32_t>(TitleColor), 0);
  else
    key.DeleteValue("TitleColor");
  key.WriteNumber("TopColor", static_cast<int32_t>(TopColor), 0);
  key.WriteNumber("BottomColor", static_cast<int32_t>(BottomColor), 0);
  key.WriteBoolean("MonoColor", MonoColor);
  key.WriteNumber("TitleShadow", TitleShadow, 0);
}

/// An entry that comes out empty, or as 0, takes an earlier installation's value away.
void WriteOwnValue(RegistryKey &key, const UninstallData &data) {
  String value = data.value;
  ExpandPathVariables(value);
  if (data.kind == kUninstallNumber)
    key.WriteNumber(data.name, value.to_int(), RK_DELETE_EMPTY);
  else
    key.WriteString(data.name, value, RK_DELETE_EMPTY | (data.kind == kUninstallExpandText ? RK_EXPAND : 0));
}

/// False when the key can't be opened, or does not give back what the system starts the uninstaller by.
bool WriteUninstallKey(const InstallConfig &config) {
  RegistryKey key;
  if (key.OpenSoftware(PathJoin(kUninstallKeys, config.uninstall_name), false, 0) == KEY_NOT_OPENED)
    return false;
  const String uninstall = UninstallerPath + " " + UninstallCommand;
  key.WriteString(kUninstallString, uninstall, 0);
  key.WriteString("QuietUninstallString", UninstallerPath + " /a " + UninstallCommand, 0);
  key.WriteString("DisplayName", ProductName, 0);
  key.WriteString("InstallSource", ProgramPath, 0);
  key.WriteString("DisplayVersion", Version, RK_DELETE_EMPTY);
  key.WriteString("Publisher", config.publisher, RK_DELETE_EMPTY);
  WriteVersionNumbers(key);
  key.WriteString("ProductRegistry", config.product_registry, RK_DELETE_EMPTY);
  key.WriteString("ProductStartMenu", config.product_start_menu, RK_DELETE_EMPTY);
  key.WriteString("SharedPath", CommonDir, RK_DELETE_EMPTY);
  key.WriteString("ProductFonts", ProductFonts, RK_DELETE_EMPTY);
  key.WriteString("ProductFlags", string_from_int64(static_cast<int64_t>(InstallFlags)), 0);
  key.WriteString("UninstallBatch1", config.uninstall_batch1, RK_DELETE_EMPTY);
  key.WriteString("UninstallBatch2", config.uninstall_batch2, RK_DELETE_EMPTY);
  key.WriteString("SharedFiles", SharedFiles, RK_DELETE_EMPTY);
  key.WriteString("UninstallSubdir", UninstallSubdir, RK_DELETE_EMPTY);
  key.WriteNumber("ShortcutMode", config.shortcut_mode, RK_DELETE_EMPTY);
  WriteLooks(key);
  for (int32_t i = 0; i < config.uninstall_data.count; ++i)
    WriteOwnValue(key, config.uninstall_data.at(i));
  key.WriteString("InstallLocation", InstallDir, 0);
  key.WriteString("InstallDate", Now().format_plain(kDateTimeFormat), 0);
  String kept;
  key.ReadString(kept, kUninstallString, "", 0);
  return kept == uninstall;
}

} // namespace

void WriteUninstaller(const InstallConfig &config) {
  PlaceFile(UninstallerPath, UninstallerImage.data(), UninstallerImage.length(), config.uninstaller_date, ErrorReport,
            0, true);
  if (!WriteUninstallKey(config))
    ErrorReport +=
        "Unable to save the uninstall information to the registry.  Uninstall will not work properly.\r\n\r\n";
}

} // namespace korb
