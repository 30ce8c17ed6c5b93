#include "system/BatchRunner.h"

#include "core/RunValues.h"
#include "files/PathText.h"
#include "files/ProgramPaths.h"
#include "format/Words.h"
#include "system/PathVariables.h"

namespace korb {

namespace {

// Scripts in use count on these names. They mean what the path variables of the same names do, but for the drive of
// the installer, which has its colon here.
constexpr const char *kBatchVariables[] = {
    path_variable::kSharedDir,         path_variable::kInstallerFilepath, path_variable::kInstallerDir,
    path_variable::kInstallerFilename, path_variable::kInstallerDrive,    path_variable::kSystemDir,
    path_variable::kDeviceDir,         path_variable::kMediaDir,          path_variable::kFavoritesDir,
    path_variable::kFavoritesAllDir,   path_variable::kFontDir,           path_variable::kDesktopDir,
    path_variable::kDesktopAllDir,     path_variable::kDocumentDir,       path_variable::kDocumentAllDir,
    path_variable::kProgramsDir,       path_variable::kStartMenuDir,      path_variable::kStartMenuAllDir,
    path_variable::kSMProgramsDir,     path_variable::kSMProgramsAllDir,  path_variable::kStartupDir,
    path_variable::kStartupAllDir,     path_variable::kBootDrive,         path_variable::kCommonDir,
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
  for (const char *variable : kBatchVariables)
    AppendVariable(text, variable,
                   variable == path_variable::kInstallerDrive ? DriveSpec(ProgramDrive) : PathVariableValue(variable));
  text += may_pause ? script : WithoutPauses(script);
  text.normalize_line_ends();
  return text;
}

} // namespace korb
