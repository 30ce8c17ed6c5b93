#include "engine/InstallLogBlock.h"

#include "core/RunValues.h"

namespace korb {

/// Nothing long goes through a format, which has an end.
String InstallLogBlock(const String &version, bool is_reinstall, const String &report, const String &log_text,
                       const DateTime &now) {
  String text("\r\nInstallation log for: ");
  text += ProductName;
  text += "\r\nInstall date: ";
  text += now.format_plain("d-M-yy h:ii:ssap");
  if (HasInstallFlag(IF_UNINSTALL))
    text += is_reinstall ? "\r\nInstall type: Reinstall" : "\r\nInstall type: New";
  text += "\r\nInstall location: ";
  text += InstallDir;
  text += "\r\nInstaller version: " KORB_VERSION "\r\n";
  if (!IsBlank(version))
    text.append_format("Product version: %s\r\n", version);
  text += "\r\n";
  if (!IsBlank(log_text)) {
    text += log_text;
    text += "\r\n";
  }
  text += report;
  return text;
}

} // namespace korb
