// The file of the uninstall record.
#pragma once

namespace korb {

/// Writes UninstallRecordText to Uninstall.DAT, over whatever stands there. False when that fails; the system's last
/// error tells why.
bool WriteUninstallData();

} // namespace korb
