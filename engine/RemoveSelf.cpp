#include "engine/RemoveSelf.h"

#include "core/RunValues.h"
#include "core/Windows.h"
#include "engine/SelfRemovalText.h"
#include "files/DeferredFiles.h"
#include "files/ProgramPaths.h"
#include "files/WholeFile.h"

namespace korb {

namespace {

/// The product's key is gone, so no second run comes to take the uninstaller away.
void LeaveToRestart() {
  DeleteOrSchedule(kSelfRemovalBatch);
  DeleteOrSchedule(ProgramPath, DEL_AT_RESTART);
}

} // namespace

/// The only process that RunProcess does not start: the batch gets a console of its own, since this process ends first.
SelfRemoval RemoveSelf(const String &subdirectory) {
  const char *program = ProgramPath, *directory = InstallDir, *inner = subdirectory;
  if (GetACP() == CP_UTF8) {
    // The interpreter would take UTF-8 for its own code page, but what its environment holds is told without one. With
    // no subdirectory, its line names the directory itself.
    SetEnvironmentVariableA("P", program);
    SetEnvironmentVariableA("D", directory);
    SetEnvironmentVariableA("S", inner);
    program = "\1P\1";
    directory = "\1D\1";
    inner = "\1S\1";
  }
  String text = SelfRemovalText(program, directory, inner);
  text.replace("\1", "%", FIND_IGNORE_CASE); // no path has the one, and the other would have been doubled
  if (!WriteWholeFile(kSelfRemovalBatch, text)) {
    LeaveToRestart();
    return SELF_REMOVAL_NOT_WRITTEN;
  }
  STARTUPINFOA startup{};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESHOWWINDOW;
  startup.wShowWindow = SW_MINIMIZE;
  String command = str_format("\"%s\" /c %s", CommandInterpreter, kSelfRemovalBatch);
  PROCESS_INFORMATION process;
  if (!CreateProcessA(CommandInterpreter, command.data(), nullptr, nullptr, FALSE, CREATE_NEW_CONSOLE, nullptr, nullptr,
                      &startup, &process)) {
    LeaveToRestart();
    return SELF_REMOVAL_NOT_STARTED;
  }
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  return SELF_REMOVAL_STARTED;
}

} // namespace korb
