#include "core/RunValues.h"
#include "engine/InstallLog.h"

#include "engine/RunLists.h"

namespace korb {

/// Nothing long goes through a format, which has an end.
String InstallLogBlock(bool is_reinstall, const String &report, const DateTime &now) {
  String text("\r\nInstallation log for: ");
  text += ProductName;
  text += "\r\nInstall date: ";
  text += now.format_plain("d-M-yy h:ii:ssap");
  if (HasInstallFlag(IF_UNINSTALL))
    text += is_reinstall ? "\r\nInstall type: Reinstall" : "\r\nInstall type: New";
  text += "\r\nInstall location: ";
  text += InstallDir;
  text += "\r\nInstaller version: " KORB_VERSION "\r\n";
  if (!IsBlank(Version))
    text.append_format("Product version: %s\r\n", Version);
  text += "\r\n";
  if (!IsBlank(LogText)) {
    text += LogText;
    text += "\r\n";
  }
  text += report;
  return text;
}

} // namespace korb
