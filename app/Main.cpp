#include "app/CommandLine.h"
#include "app/FailureTexts.h"
#include "app/Installation.h"
#include "app/Uninstallation.h"
#include "core/Failure.h"
#include "core/RunValues.h"
#include "core/Windows.h"
#include "files/DiskFile.h"
#include "files/ProgramPaths.h"
#include "system/OsIdentity.h"
#include "ui/Dialogs.h"
#include "ui/TextLookup.h"
#include "ui/WindowHandles.h"

using namespace korb;

/// The first code of the program's own. `arguments` is the command line without the program's name. Every road ends in
/// ExitInstaller.
int WINAPI WinMain(HINSTANCE instance, HINSTANCE, char *arguments, int) {
  InitControls();
  InitPaths();
  InstanceHandle = instance;
  OsNameInTexts = OsDisplayName();

  CommandLine options;
  ParseCommandLine(arguments, options);
  if (UninstallMode)
    RunUninstall(options.uninstall_name);
  const String own_path = OwnPath(GetCommandLineA());
  DiskFile own_file;
  if (own_file.Open(own_path, DF_READ_SHARED, FILE_ATTRIBUTE_NORMAL) != OPEN_OK)
    FatalFormat(kOwnFileFormat, own_path);
  RunInstallation(own_file, options.run_after);
}
