#include "engine/InstallLog.h"

#include "archive/RunValues.h"
#include "engine/RunLists.h"

namespace korb {

/// Nothing long goes through a format, which has an end.
String InstallLogBlock(bool is_reinstall, const String &report, const DateTime &now) {
  String text = "\r\nInstallation log for: " + ProductName;
  text += "\r\nInstall date: " + now.format("d-M-yy h:ii:ssap");
  if (HasInstallFlag(IF_UNINSTALL))
    text.append_format("\r\nInstall type: %s", is_reinstall ? "Reinstall" : "New");
  text += "\r\nInstall location: " + InstallDir;
  text += "\r\nInstaller version: 11.0\r\n";
  if (!IsBlank(Version))
    text.append_format("Product version: %s\r\n", Version);
  text += "\r\n";
  if (!IsBlank(LogText))
    text += LogText + "\r\n";
  return text + report;
}

} // namespace korb
