// The file of the uninstall record.
#pragma once

#include "engine/UninstallList.h"

namespace korb {

/// Writes UninstallRecordText to Uninstall.DAT in `uninstall_dir`, over whatever stands there. False when that fails; the system's last
/// error tells why.
bool WriteUninstallData(const String &uninstall_dir, const UninstallList &list, const String &association_lines);

} // namespace korb
