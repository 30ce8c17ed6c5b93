#include "system/PathVariables.h"

#include "core/RunPaths.h"
#include "files/PathText.h"
#include "files/ProgramPaths.h"
#include "files/TempFiles.h"
#include "system/SystemFolders.h"

namespace korb {

namespace {

struct PathVariable {
  const char *name;
  String (*value)();
};

/// In the order of replacement.
constexpr PathVariable kPathVariables[] = {
    {"%BootDrive%", [] { return DriveSpec(BootDriveLetter()); }},
    {"%CommonDir%", CommonFilesFolder},
    {"%InstallDir%", [] { return InstallDir; }},
    {"%InstallDrive%", [] { return DriveSpec(DriveLetter(InstallDir.c_str())); }},
    {"%ProgramsDir%", ProgramFilesFolder},
    {"%SharedDir%", [] { return CommonDir; }},
    {"%SystemDir%", SystemFolder},
    {"%InstallerDir%", [] { return ProgramDirectory; }},
    // The letter alone, unlike the drive of the installation: texts in use count on either.
    {"%InstallerDrive%", [] { return String(&ProgramDrive, ProgramDrive ? 1 : 0); }},
    {"%InstallerFilename%", [] { return ProgramName; }},
    {"%InstallerFilepath%", [] { return ProgramPath; }},
    {"%DeviceDir%", DeviceFolder},
    {"%MediaDir%", MediaFolder},
    {"%FavoritesDir%", FavoritesFolder},
    {"%FavoritesAllDir%", FavoritesAllFolder},
    {"%FontDir%", FontFolder},
    {"%DesktopDir%", DesktopFolder},
    {"%DesktopAllDir%", DesktopAllFolder},
    {"%DocumentDir%", DocumentFolder},
    {"%DocumentAllDir%", DocumentAllFolder},
    {"%StartMenuDir%", StartMenuFolder},
    {"%StartMenuAllDir%", StartMenuAllFolder},
    {"%SMProgramsDir%", StartMenuProgramsFolder},
    {"%SMProgramsAllDir%", StartMenuProgramsAllFolder},
    {"%StartupDir%", StartupFolder},
    {"%StartupAllDir%", StartupAllFolder},
    {"%Temp%", [] { return String(TempDirectory()); }},
    {"%WinDir%", [] { return WindowsDirectory; }},
};

} // namespace

void ExpandPathVariables(String &text) {
  for (const PathVariable &variable : kPathVariables) {
    // The value is asked for only where it is wanted. All of them would be two dozen lookups in the registry for every
    // file that is placed, and one that nobody needs could do no more than create a key that is missing.
    if (text.find(variable.name, 0, FIND_IGNORE_CASE) < 0)
      continue;
    const String value = variable.value();
    text.replace(variable.name, value.c_str(), FIND_IGNORE_CASE);
  }
}

} // namespace korb
