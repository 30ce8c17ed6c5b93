#include "engine/RecordNames.h"

#include "archive/RunValues.h"
#include "files/PathText.h"
#include "format/Record.h"

namespace korb {

String UninstallDataPath(const String &uninstall_dir) {
  return PathJoin(uninstall_dir, kUninstallDataName);
}

String InstallLogPath(const String &uninstall_dir) {
  return PathJoin(uninstall_dir, kInstallLogName);
}

String BackgroundBitmapPath(const String &uninstall_dir) {
  return PathJoin(uninstall_dir, kBackgroundName);
}

String BackupValueName() {
  return ProductName + " Backup";
}

} // namespace korb
