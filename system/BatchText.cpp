#include "system/BatchText.h"

#include "core/RunPaths.h"
#include "files/PathText.h"
#include "files/ProgramPaths.h"
#include "system/SystemFolders.h"

namespace korb {

namespace {

struct BatchVariable {
  const char *name;
  String (*value)();
};

// Scripts in use count on these names. The drive of the installer has its colon here, unlike the path variable of that
// name, and CommonDir is the system's folder of common files: the product's own is SharedDir.
constexpr BatchVariable kBatchVariables[] = {
    {"SharedDir", [] { return CommonDir; }},
    {"InstallerFilepath", [] { return ProgramPath; }},
    {"InstallerDir", [] { return ProgramDirectory; }},
    {"InstallerFilename", [] { return ProgramName; }},
    {"InstallerDrive", [] { return DriveSpec(ProgramDrive); }},
    {"SystemDir", SystemFolder},
    {"DeviceDir", DeviceFolder},
    {"MediaDir", MediaFolder},
    {"FavoritesDir", FavoritesFolder},
    {"FavoritesAllDir", FavoritesAllFolder},
    {"FontDir", FontFolder},
    {"DesktopDir", DesktopFolder},
    {"DesktopAllDir", DesktopAllFolder},
    {"DocumentDir", DocumentFolder},
    {"DocumentAllDir", DocumentAllFolder},
    {"ProgramsDir", ProgramFilesFolder},
    {"StartMenuDir", StartMenuFolder},
    {"StartMenuAllDir", StartMenuAllFolder},
    {"SMProgramsDir", StartMenuProgramsFolder},
    {"SMProgramsAllDir", StartMenuProgramsAllFolder},
    {"StartupDir", StartupFolder},
    {"StartupAllDir", StartupAllFolder},
    {"BootDrive", [] { return DriveSpec(BootDriveLetter()); }},
    {"CommonDir", CommonFilesFolder},
};

void AppendVariable(String &text, const char *name, const char *value) {
  text.append_format("SET %s=%s\r\n", name, value);
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
    AppendVariable(text, "InstallDir", directory);
    AppendVariable(text, "InstallDrive", DriveSpec(DriveLetter(directory)).c_str());
  }
  for (const BatchVariable &variable : kBatchVariables)
    AppendVariable(text, variable.name, variable.value().c_str());
  text += may_pause ? script : WithoutPauses(script);
  text.normalize_line_ends();
  return text;
}

} // namespace korb
