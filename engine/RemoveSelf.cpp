#include "engine/RemoveSelf.h"

#include "core/RunValues.h"
#include "core/Windows.h"
#include "engine/SelfRemovalText.h"
#include "files/ProgramPaths.h"
#include "files/WholeFile.h"

namespace korb {

/// The only process that RunProcess does not start: the batch gets a console of its own, since this process ends first.
SelfRemoval RemoveSelf(const String &subdirectory) {
  if (!WriteWholeFile(kSelfRemovalBatch, SelfRemovalText(ProgramPath, InstallDir, subdirectory)))
    return SELF_REMOVAL_NOT_WRITTEN;
  STARTUPINFOA startup{};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESHOWWINDOW;
  startup.wShowWindow = SW_MINIMIZE;
  String command = "\"" + CommandInterpreter + "\" /c " + kSelfRemovalBatch;
  PROCESS_INFORMATION process;
  if (!CreateProcessA(CommandInterpreter, command.data(), nullptr, nullptr, FALSE, CREATE_NEW_CONSOLE, nullptr, nullptr,
                      &startup, &process))
    return SELF_REMOVAL_NOT_STARTED;
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  return SELF_REMOVAL_STARTED;
}

} // namespace korb
