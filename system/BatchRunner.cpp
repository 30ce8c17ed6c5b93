#include "system/BatchRunner.h"

#include "core/RunValues.h"
#include "files/PathText.h"
#include "files/ProgramPaths.h"
#include "format/Words.h"
#include "system/SystemFolders.h"

namespace korb {

namespace {

struct BatchVariable {
  const char *name; ///< of the path variable that it is called after
  String (*value)();
};

// Scripts in use count on these names. The drive of the installer has its colon here, unlike the path variable of that
// name, and CommonDir is the system's folder of common files: the product's own is SharedDir.
constexpr BatchVariable kBatchVariables[] = {
    {path_variable::kSharedDir, [] { return CommonDir; }},
    {path_variable::kInstallerFilepath, [] { return ProgramPath; }},
    {path_variable::kInstallerDir, [] { return ProgramDirectory; }},
    {path_variable::kInstallerFilename, [] { return ProgramName; }},
    {path_variable::kInstallerDrive, [] { return DriveSpec(ProgramDrive); }},
    {path_variable::kSystemDir, SystemFolder},
    {path_variable::kDeviceDir, DeviceFolder},
    {path_variable::kMediaDir, MediaFolder},
    {path_variable::kFavoritesDir, FavoritesFolder},
    {path_variable::kFavoritesAllDir, FavoritesAllFolder},
    {path_variable::kFontDir, FontFolder},
    {path_variable::kDesktopDir, DesktopFolder},
    {path_variable::kDesktopAllDir, DesktopAllFolder},
    {path_variable::kDocumentDir, DocumentFolder},
    {path_variable::kDocumentAllDir, DocumentAllFolder},
    {path_variable::kProgramsDir, ProgramFilesFolder},
    {path_variable::kStartMenuDir, StartMenuFolder},
    {path_variable::kStartMenuAllDir, StartMenuAllFolder},
    {path_variable::kSMProgramsDir, StartMenuProgramsFolder},
    {path_variable::kSMProgramsAllDir, StartMenuProgramsAllFolder},
    {path_variable::kStartupDir, StartupFolder},
    {path_variable::kStartupAllDir, StartupAllFolder},
    {path_variable::kBootDrive, [] { return DriveSpec(BootDriveLetter()); }},
    {path_variable::kCommonDir, CommonFilesFolder},
};

/// Sets the variable that is called as a path variable is, but for the percent signs.
void AppendVariable(String &text, const char *path_variable, const char *value) {
  text += "SET ";
  text += path_variable + 1;
  text.remove_last(1);
  text.append_format("=%s\r\n", value);
}

/// Case and blanks don't matter, and one @ in front may keep the line from being shown.
bool IsPause(String line) {
  line.trim();
  line.remove_first_if('@');
  line.trim_left();
  return line.equals_no_case("PAUSE");
}

String WithoutPauses(String script) {
  String text;
  while (!script.is_empty()) {
    const String line = script.take_line();
    if (IsPause(line))
      continue;
    text += line;
    text += "\r\n";
  }
  return text;
}

} // namespace

String BatchText(const char *directory, const String &script, bool may_pause) {
  String text("@echo off\r\n");
  if (*directory) {
    AppendVariable(text, path_variable::kInstallDir, directory);
    AppendVariable(text, path_variable::kInstallDrive, DriveSpec(DriveLetter(directory)));
  }
  for (const BatchVariable &variable : kBatchVariables)
    AppendVariable(text, variable.name, variable.value());
  text += may_pause ? script : WithoutPauses(script);
  text.normalize_line_ends();
  return text;
}

} // namespace korb
