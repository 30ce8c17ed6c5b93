#include "system/PathVariables.h"

#include "core/RunValues.h"
#include "files/PathText.h"
#include "files/ProgramPaths.h"
#include "files/TempFiles.h"
#include "format/Words.h"
#include "system/SystemFolders.h"

namespace korb {

namespace {

struct PathVariable {
  const char *name;
  String (*value)();
};

/// In the order of replacement, which is that of kPathVariableNames.
constexpr PathVariable kPathVariables[] = {
    {path_variable::kBootDrive, [] { return DriveSpec(BootDriveLetter()); }},
    {path_variable::kCommonDir, CommonFilesFolder},
    {path_variable::kInstallDir, [] { return InstallDir; }},
    {path_variable::kInstallDrive, [] { return DriveSpec(DriveLetter(InstallDir)); }},
    {path_variable::kProgramsDir, ProgramFilesFolder},
    {path_variable::kSharedDir, [] { return CommonDir; }},
    {path_variable::kSystemDir, SystemFolder},
    {path_variable::kInstallerDir, [] { return ProgramDirectory; }},
    // The letter alone, unlike the drive of the installation: texts in use count on either.
    {path_variable::kInstallerDrive, [] { return String(&ProgramDrive, ProgramDrive ? 1 : 0); }},
    {path_variable::kInstallerFilename, [] { return ProgramName; }},
    {path_variable::kInstallerFilepath, [] { return ProgramPath; }},
    {path_variable::kDeviceDir, DeviceFolder},
    {path_variable::kMediaDir, MediaFolder},
    {path_variable::kFavoritesDir, FavoritesFolder},
    {path_variable::kFavoritesAllDir, FavoritesAllFolder},
    {path_variable::kFontDir, FontFolder},
    {path_variable::kDesktopDir, DesktopFolder},
    {path_variable::kDesktopAllDir, DesktopAllFolder},
    {path_variable::kDocumentDir, DocumentFolder},
    {path_variable::kDocumentAllDir, DocumentAllFolder},
    {path_variable::kStartMenuDir, StartMenuFolder},
    {path_variable::kStartMenuAllDir, StartMenuAllFolder},
    {path_variable::kSMProgramsDir, StartMenuProgramsFolder},
    {path_variable::kSMProgramsAllDir, StartMenuProgramsAllFolder},
    {path_variable::kStartupDir, StartupFolder},
    {path_variable::kStartupAllDir, StartupAllFolder},
    {path_variable::kTemp, [] { return String(TempDirectory()); }},
    {path_variable::kWinDir, [] { return WindowsDirectory; }},
};

constexpr bool NamesAllVariables() {
  const char *const *name = kPathVariableNames;
  for (const PathVariable &variable : kPathVariables)
    if (variable.name != *name++)
      return false;
  return sizeof kPathVariables / sizeof *kPathVariables == sizeof kPathVariableNames / sizeof *kPathVariableNames;
}
static_assert(NamesAllVariables(), "the packer would know other variables than the program");

} // namespace

void ExpandPathVariables(String &text) {
  for (const PathVariable &variable : kPathVariables) {
    // The value is asked for only where it is wanted. All of them would be two dozen lookups in the registry for every
    // file that is placed, and one that nobody needs could do no more than create a key that is missing.
    if (text.find(variable.name, 0, FIND_IGNORE_CASE) < 0)
      continue;
    const String value = variable.value();
    text.replace(variable.name, value, FIND_IGNORE_CASE);
  }
}

String PathVariableValue(const char *name) {
  for (const PathVariable &variable : kPathVariables)
    if (variable.name == name)
      return variable.value();
  return String();
}

} // namespace korb
