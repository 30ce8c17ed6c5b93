#include "engine/RecordNames.h"

#include "archive/RunValues.h"
#include "files/PathText.h"

namespace korb {

static String BesideUninstaller(const char *name) {
  return PathJoin(InstallDir, PathJoin(UninstallSubdir, name));
}

String UninstallDataPath() {
  return BesideUninstaller("Uninstall.DAT");
}

String InstallLogPath() {
  return BesideUninstaller("Install.LOG");
}

String BackgroundBitmapPath() {
  return BesideUninstaller("Installer Background.BMP");
}

String BackupValueName() {
  return ProductName + " Backup";
}

} // namespace korb
