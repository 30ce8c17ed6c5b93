#include "engine/RecordNames.h"

#include "core/RunValues.h"
#include "files/PathText.h"
#include "format/Record.h"

namespace korb {

static String BesideUninstaller(const char *name) {
  return PathJoin(InstallDir, PathJoin(UninstallSubdir, name));
}

String UninstallDataPath() {
  return BesideUninstaller(kUninstallDataName);
}

String InstallLogPath() {
  return BesideUninstaller(kInstallLogName);
}

String BackgroundBitmapPath() {
  return BesideUninstaller(kBackgroundName);
}

String BackupValueName() {
  return ProductName + " Backup";
}

} // namespace korb
